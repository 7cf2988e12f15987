// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/canonical_form.h"
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/support/pdf_fixture.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Documents that are joined, so many that files made of the result are made of extracts of
/// extracts.
constexpr int kJoined = 20;

/// The same page lists cut into lists of `count` pages.
QList<QList<PdfSourcePage>> inParts(const QList<PdfSourcePage> &pages, int count)
{
    QList<QList<PdfSourcePage>> parts;
    for (qsizetype first = 0; first < pages.size(); first += count) {
        parts.append(pages.mid(first, count));
    }
    return parts;
}

/// What differs between files that are written together and each by itself; at most one file. Of
/// long lists every `step`th file is compared.
QString difference(const QList<QList<PdfSourcePage>> &parts, const EngineCalls::Folder &folder,
                   const QString &password = {}, int step = 1)
{
    QList<PdfOutputFile> files;
    for (const QList<PdfSourcePage> &pages : parts) {
        files.append({pages, folder.path(u"part%1.pdf"_s.arg(files.size()))});
    }
    const QList<PdfSaveOutcome> outcomes = PdfEditorBackend::saveDocuments(files);
    if (outcomes.size() != files.size()) {
        return u"%1 outcomes"_s.arg(outcomes.size());
    }
    const QString alone = folder.path(u"alone.pdf"_s);
    for (qsizetype i = 0; i < files.size(); i += step) {
        const EngineCalls::Outcome saved = EngineCalls::save(files.at(i).pages, alone);
        if (!saved.ok || outcomes.at(i).error != PdfBackendError::None) {
            return u"file %1: \"%2\", \"%3\""_s.arg(QString::number(i), outcomes.at(i).message,
                                                    saved.message);
        }
        const QByteArray together = canonicalForm(files.at(i).path, password);
        if (together.startsWith("not readable") || together != canonicalForm(alone, password)) {
            return u"file %1 of %2 differs"_s.arg(QString::number(i),
                                                  QString::number(files.size()));
        }
    }
    return {};
}

} // namespace

/// Files that are written together hold what each would hold if it was written alone.
class TestFidelitySeveral : public QObject
{
    Q_OBJECT

private slots:
    void partsOfAFullDocument_data();
    void partsOfAFullDocument();
    void partsOfALongDocument_data();
    void partsOfALongDocument();
    void partsOfADocumentWithLateLabels();
    void partsOfAProtectedDocument_data();
    void partsOfAProtectedDocument();
    void partsOfARepairedDocument();
};

void TestFidelitySeveral::partsOfAFullDocument_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<int>("count");
    QTest::newRow("every page, three times") << u"M1-8 M1-8 M1-8"_s << 1;
    QTest::newRow("pairs") << u"M1-8 M8-1 M1-8"_s << 2;
    QTest::newRow("threes, backwards") << u"M8-1 M8-1 M8-1 M8-1"_s << 3;
    QTest::newRow("turned") << u"M1+90 M2+180 M3+270 M4+90 M5+90 M6+180 M7+270 M8+90 M1-2"_s << 1;
    QTest::newRow("a page twice in a file")
        << u"M1 M1 M2 M2 M3 M3 M4 M4 M5 M5 M6 M6 M7 M7 M8 M8 M1 M1"_s << 2;
    QTest::newRow("with blank pages") << u"M1 _ M2 _ M3 _ M4 _ M5 _ M6 _ M7 _ M8 _ M1 _"_s << 2;
    QTest::newRow("blank files among them") << u"M1-4 _ _ M5-8 M1-4 _"_s << 1;
    QTest::newRow("of two documents") << u"M1-8 O1-8 M1-8 O8-1"_s << 1;
    QTest::newRow("of two documents in turn")
        << u"M1 O1 M2 O2 M3 O3 M4 O4 M5 O5 M6 O6 M7 O7 M8 O8 M1 O1"_s << 1;
    QTest::newRow("of two documents in each file") << u"M1 O1 M2 O2 M3 O3 M4 O4 M5 M6 O5 O6"_s << 2;
}

void TestFidelitySeveral::partsOfAFullDocument()
{
    QFETCH(const QString, list);
    QFETCH(const int, count);
    const FidelityCase documents({"MAIN", "OTHER"});
    QCOMPARE(difference(inParts(documents.pages(list), count), documents.folder()), QString());
}

void TestFidelitySeveral::partsOfALongDocument_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("every page") << 1;
    QTest::newRow("threes") << 3;
}

void TestFidelitySeveral::partsOfALongDocument()
{
    QFETCH(const int, count);
    FidelityCase documents;
    QString list;
    for (int i = 0; i < kJoined; ++i) {
        const auto letter = static_cast<char>('A' + i);
        documents.add(QByteArray(1, letter), FidelityFixture::everything({1, letter}).file());
        list += QChar::fromLatin1(letter) + u"1-8 "_s;
    }
    const QString path = documents.folder().path(u"Z.pdf"_s);
    QVERIFY(EngineCalls::save(documents.pages(list), path).ok);
    documents.use(path);
    const QList<PdfSourcePage> pages = documents.pages(u"Z1-160"_s);
    constexpr int kStep = 11;
    QCOMPARE(difference(inParts(pages, count), documents.folder(), {}, kStep), QString());
}

/// Pages before the first label are numbered by their place in the file that is written.
void TestFidelitySeveral::partsOfADocumentWithLateLabels()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 40);
    document.addEntries("catalogue", "/PageLabels << /Nums [30 << /S /r >>] >>");
    FidelityCase documents;
    documents.add("MAIN", document.file());
    const QList<PdfSourcePage> pages = documents.pages(u"M1-40"_s);
    QCOMPARE(difference(inParts(pages, 1), documents.folder()), QString());
    QCOMPARE(difference(inParts(pages, 2), documents.folder()), QString());
}

void TestFidelitySeveral::partsOfAProtectedDocument_data()
{
    QTest::addColumn<int>("revision");
    QTest::addColumn<QString>("given");
    for (const int revision : {3, 4, 6}) {
        QTest::addRow("revision %d, user password", revision) << revision << u"user"_s;
        QTest::addRow("revision %d, owner password", revision) << revision << u"owner"_s;
    }
}

void TestFidelitySeveral::partsOfAProtectedDocument()
{
    QFETCH(const int, revision);
    QFETCH(const QString, given);
    FidelityCase documents;
    documents.add("MAIN",
                  PdfFixture::encrypted(FidelityFixture::everything("MAIN").file(),
                                        {"user", "owner", revision}),
                  given);
    const QList<PdfSourcePage> pages = documents.pages(u"M1-8 M1-8 M1-4"_s);
    QCOMPARE(difference(inParts(pages, 1), documents.folder(), given), QString());
    QCOMPARE(EngineCalls::inspect(documents.folder().path(u"part9.pdf"_s)).error,
             PdfBackendError::PasswordRequired);
    QVERIFY(EngineCalls::inspect(documents.folder().path(u"part9.pdf"_s), u"user"_s).ok);
    QVERIFY(EngineCalls::inspect(documents.folder().path(u"part9.pdf"_s), u"owner"_s).ok);
}

void TestFidelitySeveral::partsOfARepairedDocument()
{
    QByteArray file = FidelityFixture::everything("MAIN").file();
    file.truncate(file.lastIndexOf("startxref"));
    file.replace("xref", "none");
    FidelityCase documents;
    documents.add("MAIN", file);
    const QList<PdfSourcePage> pages = documents.pages(u"M1-8 M1-8"_s);
    QCOMPARE(difference(inParts(pages, 1), documents.folder()), QString());
}

QTEST_GUILESS_MAIN(TestFidelitySeveral)
#include "tst_fidelity_several.moc"
