// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QTest>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include <algorithm>
#include <functional>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// As many pages as a document has that keeps its form.
constexpr int kMany = 1000;

QByteArray rewritten(const QByteArray &file, const std::function<void(QPDFWriter &)> &settle)
{
    QPDF document;
    document.processMemoryFile("document", file.constData(), static_cast<size_t>(file.size()));
    QPDFWriter writer(document);
    writer.setOutputMemory();
    settle(writer);
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    return {reinterpret_cast<const char *>(buffer->getBuffer()),
            static_cast<qsizetype>(buffer->getSize())};
}

QByteArray packed(const QByteArray &file)
{
    return rewritten(file, [](QPDFWriter &writer) { writer.setObjectStreamMode(qpdf_o_generate); });
}

/// A document of PDF 1.4 with this metadata.
QByteArray withMetadata(const QByteArray &metadata)
{
    return PdfFixture::fromObjects(
               {"<< /Type /Catalog /Pages 2 0 R /Metadata 4 0 R >>",
                "<< /Type /Pages /Kids [3 0 R 5 0 R] /Count 2 >>",
                "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 90 90] >>",
                PdfFixture::streamBody("/Type /Metadata /Subtype /XML", metadata),
                "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 80 80] >>"})
        .replace("%PDF-1.7", "%PDF-1.4");
}

/// Whether the file has objects in object streams.
bool isPacked(const QString &path)
{
    QPDF document;
    document.processFile(path.toUtf8().constData());
    const auto entries = document.getXRefTable();
    return std::any_of(entries.begin(), entries.end(),
                       [](const auto &entry) { return entry.second.getType() == 2; });
}

QString versionOf(const QString &path)
{
    return QString::fromLatin1(contentOf(path).mid(5, 3));
}

} // namespace

/// Whether the objects of a saved document are packed into object streams.
class TestFidelityPacking : public QObject
{
    Q_OBJECT

private slots:
    void shortDocumentsArePacked();
    void longDocumentsKeepTheirForm_data();
    void longDocumentsKeepTheirForm();
    void formIsThatOfTheMainDocument();
    void blankPagesArePacked();
    void archivesArePackedWhereTheyMayBe_data();
    void archivesArePackedWhereTheyMayBe();
    void partsOfArchivesAreNotPacked();
};

void TestFidelityPacking::shortDocumentsArePacked()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(3));
    QVERIFY(!isPacked(source));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save({filePage(source, 2), filePage(source, 0)}, target).ok);
    QVERIFY(isPacked(target));
}

void TestFidelityPacking::longDocumentsKeepTheirForm_data()
{
    QTest::addColumn<int>("pages");
    QTest::addColumn<bool>("isSourcePacked");
    QTest::addColumn<bool>("isResultPacked");
    QTest::newRow("one less") << kMany - 1 << false << true;
    QTest::newRow("not packed") << kMany << false << false;
    QTest::newRow("packed") << kMany << true << true;
}

void TestFidelityPacking::longDocumentsKeepTheirForm()
{
    QFETCH(int, pages);
    QFETCH(bool, isSourcePacked);
    QFETCH(bool, isResultPacked);
    Folder folder;
    const QByteArray document = PdfFixture::pagesByNumber(pages);
    const QString source = folder.add(u"in.pdf"_s, isSourcePacked ? packed(document) : document);
    QCOMPARE(isPacked(source), isSourcePacked);
    QList<PdfSourcePage> list;
    for (int i = pages - 1; i >= 0; --i) {
        list.append(filePage(source, i));
    }
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save(list, target).ok);
    QCOMPARE(isPacked(target), isResultPacked);
    QCOMPARE(inspect(target).pageSizes.size(), pages);
}

void TestFidelityPacking::formIsThatOfTheMainDocument()
{
    Folder folder;
    const QByteArray document = PdfFixture::pagesByNumber(kMany);
    const QString plain = folder.add(u"plain.pdf"_s, document);
    const QString tight = folder.add(u"tight.pdf"_s, packed(document));
    QList<PdfSourcePage> pages;
    for (int i = 0; i < kMany; ++i) {
        pages.append(filePage(i % 2 == 0 ? plain : tight, i));
    }
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save(pages, target).ok);
    QVERIFY(!isPacked(target));
    for (PdfSourcePage &page : pages) {
        page.isOfMainDocument = page.filePath == tight;
    }
    QVERIFY(save(pages, target).ok);
    QVERIFY(isPacked(target));
}

void TestFidelityPacking::blankPagesArePacked()
{
    const Folder folder;
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save({blankPage({90, 90})}, target).ok);
    QVERIFY(isPacked(target));
}

void TestFidelityPacking::archivesArePackedWhereTheyMayBe_data()
{
    QTest::addColumn<QByteArray>("metadata");
    QTest::addColumn<bool>("isResultPacked");
    QTest::newRow("part 1") << QByteArray("<pdfaid:part>1</pdfaid:part>") << false;
    QTest::newRow("part 1 as an attribute")
        << QByteArray("<rdf:Description pdfaid:part=\"1\" pdfaid:conformance=\"B\"/>") << false;
    QTest::newRow("part 1 in another line")
        << QByteArray("<pdfaid:part>\n 1\n</pdfaid:part>") << false;
    QTest::newRow("part 2") << QByteArray("<pdfaid:part>2</pdfaid:part>") << true;
    QTest::newRow("part 10") << QByteArray("<pdfaid:part>10</pdfaid:part>") << true;
    QTest::newRow("no part") << QByteArray("<pdfuaid:part>1</pdfuaid:part>") << true;
    QTest::newRow("cut off") << QByteArray("<pdfaid:part>") << true;
    QTest::newRow("empty") << QByteArray() << true;
}

void TestFidelityPacking::archivesArePackedWhereTheyMayBe()
{
    QFETCH(QByteArray, metadata);
    QFETCH(bool, isResultPacked);
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, withMetadata(metadata));
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save({filePage(source, 1), filePage(source, 0)}, target).ok);
    QCOMPARE(isPacked(target), isResultPacked);
    // Object streams are of PDF 1.5.
    QCOMPARE(versionOf(target), isResultPacked ? u"1.5"_s : versionOf(source));
}

void TestFidelityPacking::partsOfArchivesAreNotPacked()
{
    Folder folder;
    const QString source = folder.add(u"in.pdf"_s, withMetadata("<pdfaid:part>1</pdfaid:part>"));
    const QList<PdfOutputFile> files{
        {{filePage(source, 0)}, folder.path(u"0.pdf"_s)},
        {{filePage(source, 1)}, folder.path(u"1.pdf"_s)},
        {{filePage(source, 1), filePage(source, 0)}, folder.path(u"2.pdf"_s)},
    };
    for (const PdfSaveOutcome &outcome : PdfEditorBackend::saveDocuments(files)) {
        QCOMPARE(outcome.error, PdfBackendError::None);
    }
    for (const PdfOutputFile &file : files) {
        QVERIFY2(!isPacked(file.path), qPrintable(file.path));
        QCOMPARE(versionOf(file.path), versionOf(source));
    }
}

QTEST_GUILESS_MAIN(TestFidelityPacking)
#include "tst_fidelity_packing.moc"
