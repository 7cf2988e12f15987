// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_outline.h"
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/support/pdf_fixture.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// The titles of the saved outline, indented by level.
QStringList savedTitles(FidelityCase &test, const QString &list)
{
    const auto saved = test.save(list);
    return FidelityOutline::titles(FidelityOutline::read(saved->output()));
}

/// A document of `count` pages with the given outline entries: each is the object "item<i>", and
/// `first` and `last` name the ends of the top level.
FidelityAssembly withOutline(const QByteArray &prefix, int count, const QList<QByteArray> &items,
                             int first, int last)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, count);
    document.addEntries("catalogue", "/Outlines {outline}");
    document.set("outline", "<< /Type /Outlines /First {item" + QByteArray::number(first) +
                                "} /Last {item" + QByteArray::number(last) + "} >>");
    for (qsizetype i = 0; i < items.size(); ++i) {
        document.set("item" + QByteArray::number(i), items.at(i));
    }
    return document;
}

/// A document of four pages with one entry, which leads to page 3 by the given entries.
FidelityAssembly withOneEntry(const QByteArray &entries)
{
    return withOutline("MAIN", 4,
                       {"<< /Title (Third @MAIN-3) /Parent {outline} " + entries + " >>"}, 0, 0);
}

} // namespace

/// What a save makes of the outlines of its sources.
class TestFidelityOutline : public QObject
{
    Q_OBJECT

private slots:
    void entriesFollowTheirPages_data() { FidelityCase::addLists(); }
    void entriesFollowTheirPages();
    void unchangedListKeepsEveryEntry();
    void entriesGoWithTheirPages();
    void childrenMoveUp();
    void childrenMoveUpThroughSeveralLevels();
    void headingsGoWithTheirChildren();
    void headingWithoutChildrenStays();
    void outlinesFollowEachOther();
    void outlinesComeInTheOrderOfTheirPages();
    void coloursFlagsAndStateStay();
    void actionsStay_data();
    void actionsStay();
    void destinationsOfEveryKind_data();
    void destinationsOfEveryKind();
    void destinationsOfEveryKindToAPageThatIsGone_data() { destinationsOfEveryKind_data(); }
    void destinationsOfEveryKindToAPageThatIsGone();
    void destinationsOfEveryKindInAnotherDocument_data() { destinationsOfEveryKind_data(); }
    void destinationsOfEveryKindInAnotherDocument();
    void equalNamesOfTwoDocuments();
    void repeatedPageLeadsToItsFirstUse();
    void protectedDocument();
    void documentsWithoutOutlineGetNone();
    void nothingLeft();
    void structureElementsOfForeignEntriesStayBehind();
};

void TestFidelityOutline::entriesFollowTheirPages()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    NO_PROBLEMS(test.save(list)->outlineProblems());
}

void TestFidelityOutline::unchangedListKeepsEveryEntry()
{
    FidelityCase test({"MAIN"});
    FidelityDocument source(test.path('M'));
    QCOMPARE(savedTitles(test, u"M1-8"_s), FidelityOutline::titles(FidelityOutline::read(source)));
}

void TestFidelityOutline::entriesGoWithTheirPages()
{
    FidelityCase test({"MAIN"});
    QCOMPARE(savedTitles(test, u"M1 M2 M4 M8"_s),
             QStringList({u"Über @MAIN-1"_s, u"Part one"_s, u"  Chapter @MAIN-2"_s,
                          u"    Section @MAIN-4"_s, u"  Web"_s, u"Part two"_s,
                          u"  Chapter @MAIN-8"_s, u"Elsewhere"_s}));
}

void TestFidelityOutline::childrenMoveUp()
{
    FidelityCase test({"MAIN"});
    QCOMPARE(savedTitles(test, u"M3 M4 M5"_s),
             QStringList({u"Part one"_s, u"  Section @MAIN-3"_s, u"  Section @MAIN-4"_s,
                          u"  Chapter @MAIN-5"_s, u"    Web"_s, u"Elsewhere"_s}));
}

void TestFidelityOutline::childrenMoveUpThroughSeveralLevels()
{
    const auto item = [](int number, const QByteArray &entries) -> QByteArray {
        const QByteArray k = QByteArray::number(number);
        return "<< /Title (Entry @MAIN-" + k + ") /Dest [{page" + k + "} /Fit] " + entries + " >>";
    };
    FidelityCase test;
    test.add("MAIN",
             withOutline("MAIN", 5,
                         {item(1, "/Parent {outline} /First {item1} /Last {item1} /Count 4"),
                          item(2, "/Parent {item0} /First {item2} /Last {item2} /Count 3"),
                          item(3, "/Parent {item1} /First {item3} /Last {item4} /Count 2"),
                          item(4, "/Parent {item2} /Next {item4}"),
                          item(5, "/Parent {item2} /Prev {item3}")},
                         0, 0)
                 .file());
    QCOMPARE(savedTitles(test, u"M5 M4"_s), QStringList({u"Entry @MAIN-4"_s, u"Entry @MAIN-5"_s}));
    QCOMPARE(savedTitles(test, u"M1 M5 M4"_s),
             QStringList({u"Entry @MAIN-1"_s, u"  Entry @MAIN-4"_s, u"  Entry @MAIN-5"_s}));
}

void TestFidelityOutline::headingsGoWithTheirChildren()
{
    FidelityCase test({"MAIN"});
    QVERIFY(!savedTitles(test, u"M1 M2"_s).contains(u"Part two"_s));
    QVERIFY(savedTitles(test, u"M1 M8"_s).contains(u"Part two"_s));
    // The web link under it keeps the first part, though all of its pages are gone.
    QVERIFY(savedTitles(test, u"M1 M8"_s).contains(u"Part one"_s));
}

void TestFidelityOutline::headingWithoutChildrenStays()
{
    FidelityCase test;
    test.add("MAIN",
             withOutline("MAIN", 2, {"<< /Title (Heading) /Parent {outline} >>"}, 0, 0).file());
    QCOMPARE(savedTitles(test, u"M2"_s), QStringList{u"Heading"_s});
}

void TestFidelityOutline::outlinesFollowEachOther()
{
    FidelityCase test({"MAIN", "OTHER"});
    QCOMPARE(savedTitles(test, u"M1 O1 M7 O8"_s),
             QStringList({u"Über @MAIN-1"_s, u"Part one"_s, u"  Web"_s, u"Part two"_s,
                          u"  Chapter @MAIN-7"_s, u"Elsewhere"_s, u"Über @OTHER-1"_s, u"Part one"_s,
                          u"  Web"_s, u"Part two"_s, u"  Chapter @OTHER-8"_s, u"Elsewhere"_s}));
}

void TestFidelityOutline::outlinesComeInTheOrderOfTheirPages()
{
    FidelityCase test({"MAIN", "OTHER"});
    QList<PdfSourcePage> pages = test.pages(u"O1 M1"_s);
    pages[1].isOfMainDocument = true;
    const auto saved = test.save(pages);
    const QStringList titles = FidelityOutline::titles(FidelityOutline::read(saved->output()));
    QVERIFY(titles.contains(u"Über @MAIN-1"_s));
    QCOMPARE(titles.value(0), u"Über @OTHER-1"_s);
}

void TestFidelityOutline::coloursFlagsAndStateStay()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M4 M2 M1 M7"_s);
    QStringList problems;
    QCOMPARE(FidelityOutline::lines(FidelityOutline::read(saved->output(), &problems)),
             QStringList({u"Über @MAIN-1 -> MAIN-1 /XYZ 0 400 0; C [1 0 0] F 2"_s,
                          u"Part one ->  ; C null F 1; open"_s,
                          u"  Chapter @MAIN-2 -> MAIN-2 /XYZ 10 302 1.5; C [0 0.5 1] F null; "
                          "closed"_s,
                          u"    Section @MAIN-4 -> MAIN-4 /FitB; C null F 3"_s,
                          u"  Web ->  <</S /URI /URI (https://example.org/MAIN)>>; C null F null"_s,
                          u"Part two ->  ; C null F null; closed"_s,
                          u"  Chapter @MAIN-7 -> MAIN-7 /FitV 7; C null F null"_s,
                          u"Elsewhere ->  <</D [3 /Fit] /F (other.pdf) /S /GoToR>>; C null F "
                          "null"_s}));
    NO_PROBLEMS(problems);
}

void TestFidelityOutline::actionsStay_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::newRow("web") << QByteArray("<< /S /URI /URI (https://example.org) /IsMap false >>");
    QTest::newRow("other file") << QByteArray("<< /S /GoToR /F (a.pdf) /D (name) >>");
    QTest::newRow("attached file")
        << QByteArray("<< /S /GoToE /T << /R /C /N (data.csv) >> /D [0 /Fit] >>");
    QTest::newRow("program") << QByteArray("<< /S /Launch /F (a.txt) >>");
    QTest::newRow("named") << QByteArray("<< /S /Named /N /LastPage >>");
    QTest::newRow("script") << QByteArray("<< /S /JavaScript /JS (app.beep(0);) >>");
    QTest::newRow("optional content") << QByteArray("<< /S /SetOCGState /State [/Toggle] >>");
    QTest::newRow("one after another")
        << QByteArray("<< /S /Named /N /LastPage /Next [<< /S /URI /URI (b) >>] >>");
}

void TestFidelityOutline::actionsStay()
{
    QFETCH(QByteArray, action);
    FidelityCase test;
    test.add("MAIN", withOneEntry("/A " + action).file());
    FidelityDocument source(test.path('M'));
    const auto saved = test.save(u"M4 M1"_s);
    const QList<FidelityOutlineEntry> entries = FidelityOutline::read(saved->output());
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.constFirst().target.other,
             FidelityOutline::read(source).constFirst().target.other);
}

void TestFidelityOutline::destinationsOfEveryKind_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::newRow("array") << QByteArray("/Dest [{page3} /XYZ 1 2 3]");
    QTest::newRow("array of its own") << QByteArray("/Dest {array}");
    QTest::newRow("page number") << QByteArray("/Dest [2 /XYZ 1 2 3]");
    QTest::newRow("name") << QByteArray("/Dest /old");
    QTest::newRow("name of a dictionary") << QByteArray("/Dest /oldDictionary");
    QTest::newRow("string") << QByteArray("/Dest (new)");
    QTest::newRow("hexadecimal string") << QByteArray("/Dest <6E6577>");
    QTest::newRow("string of a dictionary") << QByteArray("/Dest (newDictionary)");
    QTest::newRow("dictionary") << QByteArray("/Dest << /D [{page3} /XYZ 1 2 3] >>");
    QTest::newRow("action with an array")
        << QByteArray("/A << /S /GoTo /D [{page3} /XYZ 1 2 3] >>");
    QTest::newRow("action with a page number") << QByteArray("/A << /S /GoTo /D [2 /XYZ 1 2 3] >>");
    QTest::newRow("action with a name") << QByteArray("/A << /S /GoTo /D /old >>");
    QTest::newRow("action with a string") << QByteArray("/A << /S /GoTo /D (new) >>");
    QTest::newRow("action of its own") << QByteArray("/A {action}");
}

/// withOneEntry() with the names that destinationsOfEveryKind_data() uses.
static FidelityAssembly withNames(const QByteArray &entries)
{
    FidelityAssembly document = withOneEntry(entries);
    const QByteArray page = "{page3} /XYZ 1 2 3";
    document.addEntries("catalogue", "/Dests << /old [" + page + "] /oldDictionary << /D [" + page +
                                         "] >> >> /Names << /Dests << /Names [(new) [" + page +
                                         "] (newDictionary) << /D [" + page + "] >>] >> >>");
    document.set("array", '[' + page + ']');
    document.set("action", "<< /S /GoTo /D {array} >>");
    return document;
}

void TestFidelityOutline::destinationsOfEveryKind()
{
    QFETCH(QByteArray, entries);
    FidelityCase test;
    test.add("MAIN", withNames(entries).file());
    const auto saved = test.save(u"M4-1"_s);
    const QList<FidelityOutlineEntry> found = FidelityOutline::read(saved->output());
    QCOMPARE(found.size(), 1);
    QCOMPARE(found.constFirst().target.mark, u"MAIN-3"_s);
    QCOMPARE(found.constFirst().target.index, 1);
    QCOMPARE(found.constFirst().target.view, QByteArray("/XYZ 1 2 3"));
}

void TestFidelityOutline::destinationsOfEveryKindToAPageThatIsGone()
{
    QFETCH(QByteArray, entries);
    FidelityCase test;
    test.add("MAIN", withNames(entries).file());
    QCOMPARE(savedTitles(test, u"M4 M1 M2"_s), QStringList());
}

void TestFidelityOutline::destinationsOfEveryKindInAnotherDocument()
{
    QFETCH(QByteArray, entries);
    FidelityCase test({"OTHER"});
    test.add("MAIN", withNames(entries).file());
    const auto saved = test.save(u"O1 O2 M3"_s);
    const QList<FidelityOutlineEntry> found = FidelityOutline::read(saved->output());
    QVERIFY(!found.isEmpty());
    QCOMPARE(found.constLast().title, u"Third @MAIN-3"_s);
    QCOMPARE(found.constLast().target.mark, u"MAIN-3"_s);
    QCOMPARE(found.constLast().target.view, QByteArray("/XYZ 1 2 3"));
}

void TestFidelityOutline::equalNamesOfTwoDocuments()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M2 M3 M4 M7 O2 O3 O4 O7"_s);
    QList<FidelityOutlineEntry> waiting = FidelityOutline::read(saved->output());
    int checked = 0;
    while (!waiting.isEmpty()) {
        const FidelityOutlineEntry entry = waiting.takeLast();
        if (entry.title.contains(u'@')) {
            QCOMPARE(entry.target.mark, FidelityFixture::markInText(entry.title));
            ++checked;
        }
        waiting += entry.children;
    }
    QCOMPARE(checked, 8);
}

void TestFidelityOutline::repeatedPageLeadsToItsFirstUse()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M8 M1 _ M1 M1+90"_s);
    const QList<FidelityOutlineEntry> entries = FidelityOutline::read(saved->output());
    QVERIFY(!entries.isEmpty());
    QCOMPARE(entries.constFirst().title, u"Über @MAIN-1"_s);
    QCOMPARE(entries.constFirst().target.index, 1);
    QCOMPARE(FidelityOutline::titles(entries).filter(u"MAIN-1"_s).size(), 1);
}

void TestFidelityOutline::protectedDocument()
{
    FidelityCase test;
    test.add("MAIN",
             PdfFixture::encrypted(FidelityFixture::everything("MAIN").file(), {"", "owner"}));
    NO_PROBLEMS(test.save(u"M8-1"_s)->outlineProblems());
}

void TestFidelityOutline::documentsWithoutOutlineGetNone()
{
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 3).file());
    const auto saved = test.save(u"M3 M1"_s);
    NO_PROBLEMS(saved->pageProblems());
    QVERIFY(FidelityOutline::read(saved->output()).isEmpty());
}

void TestFidelityOutline::nothingLeft()
{
    FidelityCase test;
    test.add("MAIN", withOneEntry("/Dest [{page3} /Fit]").file());
    const auto saved = test.save(u"M1 M2"_s);
    NO_PROBLEMS(saved->problems());
    QVERIFY(FidelityOutline::read(saved->output()).isEmpty());
}

void TestFidelityOutline::structureElementsOfForeignEntriesStayBehind()
{
    FidelityCase test;
    for (const QByteArray prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = withOutline(
            prefix, 2,
            {"<< /Title (Entry) /Parent {outline} /Dest [{page1} /Fit] /SE {element} >>"}, 0, 0);
        document.addEntries("catalogue", "/StructTreeRoot {tree} /MarkInfo << /Marked true >>");
        document.set("tree", "<< /Type /StructTreeRoot /K [{element}] >>");
        document.set("element",
                     "<< /S /H1 /P {tree} /Pg {page1} /T (element of " + prefix + ") >>");
        test.add(prefix, document.file());
    }
    const auto saved = test.save(u"M1 O1"_s);
    QPDFObjectHandle own = saved->output().catalogue().getKey("/Outlines").getKey("/First");
    QCOMPARE(fidelityText(own.getKey("/SE").getKey("/T")), u"element of MAIN"_s);
    QPDFObjectHandle foreign = own.getKey("/Next");
    QCOMPARE(fidelityText(foreign.getKey("/Title")), u"Entry"_s);
    QVERIFY(!foreign.hasKey("/SE"));
    QVERIFY(!FidelityPieces::everythingIn(saved->output()).contains("element of OTHER"));
}

QTEST_GUILESS_MAIN(TestFidelityOutline)
#include "tst_fidelity_outline.moc"
