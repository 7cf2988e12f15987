// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

#include <QFileInfo>

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

std::vector<QPDFObjGen> identities(QPDFObjectHandle list)
{
    std::vector<QPDFObjGen> found;
    for (const QPDFObjectHandle &item : list.getArrayAsVector()) {
        found.push_back(QPDFObjectHandle(item).getObjGen());
    }
    return found;
}

} // namespace

/// Lists of very much that very many objects have in common: a save takes as long as it takes to
/// write each list down once.
class TestFidelitySharedLists : public QObject
{
    Q_OBJECT

private slots:
    void actionsBehindManyLinks_data();
    void actionsBehindManyLinks();
    void annotationsOfManyPages();
    void fieldsOfManyButtons_data();
    void fieldsOfManyButtons();
};

void TestFidelitySharedLists::actionsBehindManyLinks_data()
{
    QTest::addColumn<QString>("list");
    for (const QString &list : {u"M1 M1"_s, u"P1 M1 M1"_s}) {
        QTest::newRow(qPrintable(list)) << list;
    }
}

void TestFidelitySharedLists::actionsBehindManyLinks()
{
    // Every link is followed by all the actions of one list, of which one leads to page 2.
    constexpr int kMany = 8'000;
    constexpr int kGone = 4'321;
    QFETCH(QString, list);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    for (int i = 0; i < kMany; ++i) {
        const Bytes number = Bytes::number(i);
        document.set("action" + number, i == kGone ? Bytes("<< /S /GoTo /D [{page2} /Fit] >>")
                                                   : "<< /S /URI /URI (u" + number + ") >>");
        document.set("link" + number, "<< /Type /Annot /Subtype /Link /Rect [1 2 3 4] /A << /S "
                                      "/URI /URI (a) /Next {list} >> >>");
    }
    document.set("list", '[' + references("action", kMany) + ']');
    document.addEntries("page1", "/Annots [" + references("link", kMany) + ']');
    FidelityCase test;
    const QString source = test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    saveList(test, list);
    if (QTest::currentTestFailed()) {
        return;
    }
    QVERIFY(QFileInfo(test.output()).size() < QFileInfo(source).size() * list.count(u"M1"));
    FidelityDocument output(test.output());
    QVERIFY(!output.marks().contains(u"MAIN-2"_s));
    std::set<QPDFObjGen> known;
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        if (output.marks().at(page) != u"MAIN-1") {
            continue;
        }
        QCOMPARE(output.annotations(page).size(), std::size_t{kMany});
        for (QPDFObjectHandle link : output.annotations(page)) {
            QPDFObjectHandle next = link.getKey("/A").getKey("/Next");
            QVERIFY(next.isArray());
            if (next.isIndirect() && !known.insert(next.getObjGen()).second) {
                continue;
            }
            QStringList found;
            QStringList wanted;
            for (QPDFObjectHandle &action : next.getArrayAsVector()) {
                found.append(fidelityText(action.getKey("/URI")));
            }
            for (int i = 0; i < kMany; ++i) {
                if (i != kGone) {
                    wanted.append(u'u' + QString::number(i));
                }
            }
            QCOMPARE(found, wanted);
        }
    }
    NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(output));
}

void TestFidelitySharedLists::annotationsOfManyPages()
{
    constexpr int kMany = 700;
    FidelityAssembly document = withManyPages(kMany, "/Annots {list}");
    for (int i = 0; i < kMany; ++i) {
        document.set("square" + Bytes::number(i),
                     "<< /Type /Annot /Subtype /Square /Rect [0 0 1 1] >>");
    }
    document.set("list", '[' + references("square", kMany) + ']');
    FidelityCase test;
    test.add("MAIN", document.file());
    saveList(test, u"M1-%1"_s.arg(kMany));
    if (QTest::currentTestFailed()) {
        return;
    }
    FidelityDocument output(test.output());
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        QCOMPARE(output.page(page).getKey("/Annots").getArrayNItems(), kMany);
    }
}

void TestFidelitySharedLists::fieldsOfManyButtons_data()
{
    QTest::addColumn<QString>("list");
    for (const QString &list : {u"M1 M1"_s, u"M1 O1"_s}) {
        QTest::newRow(qPrintable(list)) << list;
    }
}

void TestFidelitySharedLists::fieldsOfManyButtons()
{
    constexpr int kMany = 3'000;
    QFETCH(QString, list);
    FidelityCase test;
    for (const char *prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = FidelityFixture::plain(prefix, 1);
        document.addEntries("catalogue", "/AcroForm << /Fields {list} >>");
        document.addEntries("page1", "/Annots {list}");
        for (int i = 0; i < kMany; ++i) {
            const Bytes number = Bytes::number(i);
            document.set("field" + number,
                         "<< /Type /Annot /Subtype /Widget /FT /Btn /T (f" + number +
                             ") /Rect [0 0 1 1] /A << /S /ResetForm /Fields {list} >> >>");
        }
        document.set("list", '[' + references("field", kMany) + ']');
        test.add(prefix, document.file());
    }
    saveList(test, list);
    if (QTest::currentTestFailed()) {
        return;
    }
    QVERIFY(QFileInfo(test.output()).size() <= QFileInfo(test.path('M')).size());
    FidelityDocument output(test.output());
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        const std::vector<QPDFObjGen> own = identities(output.page(page).getKey("/Annots"));
        QCOMPARE(own.size(), std::size_t{kMany});
        std::set<QPDFObjGen> known;
        for (QPDFObjectHandle button : output.annotations(page)) {
            QPDFObjectHandle fields = below(button, {"/A", "/Fields"});
            QVERIFY(fields.isArray());
            if (!fields.isIndirect() || known.insert(fields.getObjGen()).second) {
                QVERIFY(identities(fields) == own);
            }
        }
    }
    NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(output));
    NO_PROBLEMS(FidelityFields::problems(output));
}

QTEST_GUILESS_MAIN(TestFidelitySharedLists)
#include "tst_fidelity_shared_lists.moc"
