// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

} // namespace

/// A page that is not in the list must not come along through what refers to it.
class TestFidelityReferences : public QObject
{
    Q_OBJECT

private slots:
    void pagesThatAreGoneStayAway_data();
    void pagesThatAreGoneStayAway();
    void everythingWithoutPagesThatAreGone_data();
    void everythingWithoutPagesThatAreGone();
    void foreignPagesThatAreGoneStayAway_data() { pagesThatAreGoneStayAway_data(); }
    void foreignPagesThatAreGoneStayAway();
    void linksToPagesThatAreGoneLeaveTheFile_data();
    void linksToPagesThatAreGoneLeaveTheFile();
    void previousActionsOfLinksFollowTheirPages_data();
    void previousActionsOfLinksFollowTheirPages();
};

void TestFidelityReferences::pagesThatAreGoneStayAway_data()
{
    QTest::addColumn<Bytes>("object");
    QTest::addColumn<Bytes>("entries");
    const auto row = [](const char *name, const Bytes &object, const Bytes &entries) {
        QTest::newRow(name) << object << entries;
    };
    row("articles", "catalogue", "/Threads [{thread}]");
    row("bead of a page", "page1", "/B [{bead1}]");
    row("action on opening a page", "page1", "/AA << /O << /S /GoTo /D [{page3} /Fit] >> >>");
    row("action of the document", "catalogue", "/AA << /WC << /S /GoTo /D [{page3} /Fit] >> >>");
    row("action on opening the document", "catalogue",
        "/OpenAction << /S /GoTo /D [{page3} /Fit] >>");
    row("action after the one on opening", "catalogue",
        "/OpenAction << /S /JavaScript /JS (a) /Next [<< /S /GoTo /D [{page3} /Fit] >>] >>");
    row("link after a web link", "link",
        "/A << /S /URI /URI (a) /Next << /S /GoTo /D [{page3} /Fit] >> >>");
    row("actions in a ring", "link", "/A {ring}");
    row("previous action of a link", "link",
        "/A << /S /URI /URI (a) >> /PA << /S /GoTo /D [{page3} /Fit] >>");
    row("button", "button", "/A << /S /GoTo /D [{page3} /Fit] >>");
    row("button by name", "button", "/A << /S /GoTo /D (third) >>");
    row("button under the mouse", "button", "/AA << /D << /S /GoTo /D [{page3} /Fit] >> >>");
    row("article action", "button", "/A << /S /Thread /D {thread} >>");
    row("hiding a note", "button", "/A << /S /Hide /T [{note3}] >>");
    row("sending a field", "button", "/A << /S /SubmitForm /F (a) /Fields [{note3}] >>");
    row("playing a film", "button", "/A << /S /Rendition /OP 0 /AN {note3} >>");
    row("names of destinations", "catalogue",
        "/Names << /Dests << /Names [(third) [{page3} /Fit]] >> >>");
    row("old names of destinations", "catalogue", "/Dests << /third [{page3} /Fit] >>");
    row("named pages", "catalogue", "/Names << /Pages << /Names [(third) {page3}] >> >>");
    row("scripts", "catalogue",
        "/Names << /JavaScript << /Names [(a) << /S /JavaScript /JS (a) /Next << /S /GoTo /D "
        "[{page3} /Fit] >> >>] >> >>");
    row("structure", "catalogue",
        "/StructTreeRoot << /K [<< /S /P /Pg {page3} /K 0 >>] /ParentTree << /Nums [] >> >>");
    row("outline entry of a structure element", "catalogue",
        "/Outlines << /First {entry} /Last {entry} >>");
    row("maker's data of the catalogue", "catalogue",
        "/PieceInfo << /Maker << /Private [{page3}] >> >>");
    row("maker's data of a page", "page1", "/PieceInfo << /Maker << /Private [{page3}] >> >>");
    row("unknown entry of the catalogue", "catalogue", "/MakerData [{page3}]");
    row("unknown entry of a page", "page1", "/MakerData << /Next {page3} >>");
    row("reply to a note of another page", "note1", "/IRT {note3}");
    row("note of another page", "note1", "/P {page3}");
    row("pop-up of another page", "note1", "/Popup {note3}");
    row("separation", "page1", "/SeparationInfo << /Pages [{page1} {page3}] >>");
    row("collection", "catalogue", "/Collection << /View /H /D (x) /Folders {page3} >>");
    row("document part", "catalogue", "/DPartRoot << /DPartRootNode << /Start {page3} >> >>");
    row("unknown entry of a content stream", "content1", "/MakerData {page3}");
}

/// A document of three pages with something that leads to the third.
static FidelityAssembly withReference(const Bytes &prefix, const Bytes &object,
                                      const Bytes &entries)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 3);
    document.addEntries("page1", "/Annots [{link} {button} {note1}]");
    document.addEntries("page3", "/Annots [{note3}]");
    document.set("link", "<< /Type /Annot /Subtype /Link /Rect [1 2 30 40] >>");
    document.set("button", "<< /Type /Annot /Subtype /Widget /Rect [1 2 30 40] /FT /Btn /Ff 65536 "
                           "/T (button) >>");
    document.set("note1", "<< /Type /Annot /Subtype /Text /Rect [1 2 30 40] >>");
    document.set("note3", "<< /Type /Annot /Subtype /Text /Rect [1 2 30 40] /P {page3} >>");
    document.set("thread", "<< /Type /Thread /F {bead1} /I << /Title (article) >> >>");
    document.set("bead1",
                 "<< /Type /Bead /T {thread} /N {bead3} /V {bead3} /P {page1} /R [0 0 9 9] "
                 ">>");
    document.set("bead3", "<< /Type /Bead /N {bead1} /V {bead1} /P {page3} /R [0 0 9 9] >>");
    document.set("ring", "<< /S /URI /URI (a) /Next [{ring} << /S /GoTo /D [{page3} /Fit] /Next "
                         "{ring} >>] >>");
    document.set("entry", "<< /Title (entry) /A << /S /URI /URI (a) >> /SE << /S /P /Pg {page3} >> "
                          ">>");
    document.addEntries("catalogue", "/AcroForm << /Fields [{button}] >>");
    document.addEntries(object, entries);
    return document;
}

void TestFidelityReferences::pagesThatAreGoneStayAway()
{
    QFETCH(Bytes, object);
    QFETCH(Bytes, entries);
    FidelityCase test;
    test.add("MAIN", withReference("MAIN", object, entries).file());
    for (const QString &list : {u"M1 M2"_s, u"M2 M1"_s, u"M1 M1"_s}) {
        const EngineCalls::Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), 2);
        NO_PROBLEMS(FidelitySoundness::pageProblems(output));
        NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
        // Nor does its content.
        for (QPDFObjectHandle item : output.pdf().getAllObjects()) {
            QVERIFY(!fidelityData(item).contains("(MAIN-3) Tj"));
        }
    }
}

void TestFidelityReferences::everythingWithoutPagesThatAreGone_data()
{
    FidelityCase::addLists();
}

void TestFidelityReferences::everythingWithoutPagesThatAreGone()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->pageProblems());
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
    NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
}

void TestFidelityReferences::foreignPagesThatAreGoneStayAway()
{
    QFETCH(Bytes, object);
    QFETCH(Bytes, entries);
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 2).file());
    test.add("OTHER", withReference("OTHER", object, entries).file());
    const auto saved = test.save(u"M1 O1 O2 O1"_s);
    QCOMPARE(saved->output().marks(),
             QStringList({u"MAIN-1"_s, u"OTHER-1"_s, u"OTHER-2"_s, u"OTHER-1"_s}));
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
    NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
}

void TestFidelityReferences::linksToPagesThatAreGoneLeaveTheFile_data()
{
    QTest::addColumn<Bytes>("object");
    QTest::addColumn<Bytes>("entries");
    QTest::newRow("nothing else knows it") << Bytes("page1") << Bytes();
    QTest::newRow("reply") << Bytes("note1") << Bytes("/IRT {link}");
    QTest::newRow("structure")
        << Bytes("catalogue")
        << Bytes("/StructTreeRoot << /K [<< /S /Link /Pg {page1} /K << /Type /OBJR /Obj {link} >> "
                 ">>] >>");
    QTest::newRow("hiding it") << Bytes("button") << Bytes("/A << /S /Hide /T [{link}] >>");
    QTest::newRow("maker's data") << Bytes("page1") << Bytes("/MakerData [{link}]");
}

void TestFidelityReferences::linksToPagesThatAreGoneLeaveTheFile()
{
    QFETCH(Bytes, object);
    QFETCH(Bytes, entries);
    FidelityCase test;
    for (const Bytes prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = withReference(prefix, object, entries);
        document.addEntries("link", "/Dest [{page3} /Fit] /Contents (link of " + prefix + ")");
        test.add(prefix, document.file());
    }
    const auto saved = test.save(u"M1 M2 O1"_s);
    QCOMPARE(saved->output().marks().size(), 3);
    const Bytes all = FidelityPieces::everythingIn(saved->output());
    QVERIFY(!all.contains("link of MAIN"));
    QVERIFY(!all.contains("link of OTHER"));
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
    // It is there as long as the page is.
    QVERIFY(FidelityPieces::everythingIn(test.save(u"M3 M1"_s)->output()).contains("link of MAIN"));
}

void TestFidelityReferences::previousActionsOfLinksFollowTheirPages_data()
{
    QTest::addColumn<Bytes>("destination");
    QTest::newRow("page") << Bytes("[{page3} /Fit]");
    QTest::newRow("number") << Bytes("[2 /Fit]");
    QTest::newRow("name") << Bytes("(third)");
}

void TestFidelityReferences::previousActionsOfLinksFollowTheirPages()
{
    QFETCH(Bytes, destination);
    FidelityCase test;
    for (const Bytes prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = withReference(
            prefix, "link", "/A << /S /URI /URI (a) >> /PA << /S /GoTo /D " + destination + " >>");
        document.addEntries("catalogue",
                            "/Names << /Dests << /Names [(third) [{page3} /Fit]] >> >>");
        test.add(prefix, document.file());
    }
    for (const auto &[list, prefix] : {std::pair{u"M1 M2"_s, u"MAIN"_s},
                                       {u"M3 M1"_s, u"MAIN"_s},
                                       {u"M2 O1 O2"_s, u"OTHER"_s},
                                       {u"M2 O1 O3"_s, u"OTHER"_s}}) {
        const auto saved = test.save(list);
        FidelityDocument &output = saved->output();
        const qsizetype page = output.marks().indexOf(prefix + u"-1"_s);
        const qsizetype target = output.marks().indexOf(prefix + u"-3"_s);
        QPDFObjectHandle link = output.annotations(page).at(0);
        QVERIFY(link.hasKey("/A"));
        QCOMPARE(link.hasKey("/PA"), target >= 0);
        if (target >= 0) {
            QCOMPARE(output.targetOfDestination(link.getKey("/PA").getKey("/D")).index, target);
        }
        NO_PROBLEMS(FidelitySoundness::pageProblems(output));
    }
}

QTEST_GUILESS_MAIN(TestFidelityReferences)
#include "tst_fidelity_references.moc"
