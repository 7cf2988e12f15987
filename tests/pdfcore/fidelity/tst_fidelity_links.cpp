// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"
#include "tests/support/pdf_fixture.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// The marks that the links on a page lead to, or their actions, in order.
QStringList targets(FidelityDocument &document, qsizetype index)
{
    QStringList found;
    for (QPDFObjectHandle annotation : document.annotations(index)) {
        QPDFObjectHandle kind = annotation.getKey("/Subtype");
        if (kind.isName() && kind.getName() == "/Link") {
            const FidelityTarget target = document.targetOf(annotation);
            found.append(target.isPage ? target.mark : target.other);
        }
    }
    return found;
}

/// Four pages; the first has a link with the given entries to page 3.
FidelityAssembly withOneLink(const Bytes &prefix, const Bytes &entries)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 4);
    const Bytes page = "{page3} /XYZ 1 2 3";
    document.addEntries("catalogue", "/Dests << /old [" + page + "] /oldDictionary << /D [" + page +
                                         "] >> >> /Names << /Dests << /Names [(new) [" + page +
                                         "] (newDictionary) << /D [" + page + "] >>] >> >>");
    document.set("array", '[' + page + ']');
    document.set("action", "<< /S /GoTo /D {array} >>");
    document.addEntries("page1", "/Annots [{link}]");
    document.set("link", "<< /Type /Annot /Subtype /Link /Rect [1 2 30 40] " + entries + " >>");
    return document;
}

} // namespace

/// Where links lead after a save.
class TestFidelityLinks : public QObject
{
    Q_OBJECT

private slots:
    void linksFollowTheirPages_data() { FidelityCase::addLists(); }
    void linksFollowTheirPages();
    void linksOfEveryKind_data();
    void linksOfEveryKind();
    void linksOfEveryKindToAPageThatIsGone_data() { linksOfEveryKind_data(); }
    void linksOfEveryKindToAPageThatIsGone();
    void linksOfEveryKindInAnotherDocument_data() { linksOfEveryKind_data(); }
    void linksOfEveryKindInAnotherDocument();
    void linksToPagesThatAreGoneAreRemoved();
    void otherLinksStay_data();
    void otherLinksStay();
    void equalNamesOfTwoDocuments();
    void equalNamesOfTwoDocumentsAndOneOfMainIsGone();
    void linkToItselfOnACopy();
    void linkFromACopy();
    void namesOfMainStay();
    void namesOfPagesThatAreGoneLeadNowhere();
    void annotationsInTheirPage();
    void protectedDocument();
    void oneLinkOfManyGoes();
    void numbersOfPagesThatWereNotThereLeadNowhere();
    void namesThatStoodForNothingLeadNowhere();
    void namesOfTheDictionaryAreTakenToo();
};

void TestFidelityLinks::linksFollowTheirPages()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->annotationProblems());
    NO_PROBLEMS(FidelitySoundness::destinationProblems(saved->output()));
}

void TestFidelityLinks::linksOfEveryKind_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::newRow("array") << Bytes("/Dest [{page3} /XYZ 1 2 3]");
    QTest::newRow("array of its own") << Bytes("/Dest {array}");
    QTest::newRow("page number") << Bytes("/Dest [2 /XYZ 1 2 3]");
    QTest::newRow("name") << Bytes("/Dest /old");
    QTest::newRow("name of a dictionary") << Bytes("/Dest /oldDictionary");
    QTest::newRow("string") << Bytes("/Dest (new)");
    QTest::newRow("hexadecimal string") << Bytes("/Dest <6E6577>");
    QTest::newRow("string of a dictionary") << Bytes("/Dest (newDictionary)");
    QTest::newRow("action with an array") << Bytes("/A << /S /GoTo /D [{page3} /XYZ 1 2 3] >>");
    QTest::newRow("action with a page number") << Bytes("/A << /S /GoTo /D [2 /XYZ 1 2 3] >>");
    QTest::newRow("action with a name") << Bytes("/A << /S /GoTo /D /old >>");
    QTest::newRow("action with a string") << Bytes("/A << /S /GoTo /D (new) >>");
    QTest::newRow("action of its own") << Bytes("/A {action}");
}

void TestFidelityLinks::linksOfEveryKind()
{
    QFETCH(Bytes, entries);
    FidelityCase test;
    test.add("MAIN", withOneLink("MAIN", entries).file());
    const auto saved = test.save(u"M4-1"_s);
    NO_PROBLEMS(saved->annotationProblems());
    QCOMPARE(targets(saved->output(), 3), QStringList{u"MAIN-3"_s});
}

void TestFidelityLinks::linksOfEveryKindToAPageThatIsGone()
{
    QFETCH(Bytes, entries);
    FidelityCase test;
    test.add("MAIN", withOneLink("MAIN", entries).file());
    const auto saved = test.save(u"M2 M1 M4"_s);
    NO_PROBLEMS(saved->pageProblems());
    QVERIFY(saved->output().annotations(1).empty());
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityLinks::linksOfEveryKindInAnotherDocument()
{
    QFETCH(Bytes, entries);
    FidelityCase test;
    test.add("MAIN", withOneLink("MAIN", "/Dest /old").file());
    test.add("OTHER", withOneLink("OTHER", entries).file());
    const auto saved = test.save(u"M3 O3 M1 O1 M2"_s);
    NO_PROBLEMS(saved->annotationProblems());
    QCOMPARE(targets(saved->output(), 2), QStringList{u"MAIN-3"_s});
    QCOMPARE(targets(saved->output(), 3), QStringList{u"OTHER-3"_s});
}

void TestFidelityLinks::linksToPagesThatAreGoneAreRemoved()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M3 M2"_s);
    NO_PROBLEMS(saved->pageProblems());
    QCOMPARE(targets(saved->output(), 0), QStringList({u"MAIN-3"_s, u"MAIN-2"_s}));
    QCOMPARE(targets(saved->output(), 1), QStringList({u"MAIN-2"_s, u"MAIN-3"_s}));
}

void TestFidelityLinks::otherLinksStay_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::newRow("web") << Bytes("/A << /S /URI /URI (https://example.org) >>");
    QTest::newRow("web, on a click area")
        << Bytes("/QuadPoints [1 2 30 2 1 40 30 40] /A << /S /URI /URI (mailto:a@b.c) >> /H /N");
    QTest::newRow("other file") << Bytes("/A << /S /GoToR /F (a.pdf) /D [2 /Fit] >>");
    QTest::newRow("other file by name")
        << Bytes("/A << /S /GoToR /F << /F (a.pdf) >> /D (new) /NewWindow true >>");
    QTest::newRow("program") << Bytes("/A << /S /Launch /F (a.txt) >>");
    QTest::newRow("named") << Bytes("/A << /S /Named /N /FirstPage >>");
    QTest::newRow("script") << Bytes("/A << /S /JavaScript /JS (app.beep(0);) >>");
    QTest::newRow("no action") << Bytes("/Border [0 0 1]");
}

void TestFidelityLinks::otherLinksStay()
{
    QFETCH(Bytes, entries);
    FidelityCase test;
    test.add("MAIN", withOneLink("MAIN", entries).file());
    test.add("OTHER", withOneLink("OTHER", entries).file());
    FidelityDocument source(test.path('M'));
    const auto saved = test.save(u"M4 M1 O1"_s);
    NO_PROBLEMS(saved->pageProblems());
    for (const int page : {1, 2}) {
        QCOMPARE(saved->output().annotations(page).size(), 1U);
        QPDFObjectHandle link = saved->output().annotations(page).front();
        QCOMPARE(saved->output().describe(link), source.describe(source.annotations(0).front()));
    }
}

void TestFidelityLinks::equalNamesOfTwoDocuments()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M1-8 O8-1"_s);
    NO_PROBLEMS(saved->pageProblems());
    for (int i = 0; i < 2 * FidelityFixture::kPages; ++i) {
        const QString document = i < FidelityFixture::kPages ? u"MAIN-"_s : u"OTHER-"_s;
        const QStringList found = targets(saved->output(), i);
        QCOMPARE(found.filter(document).size(), FidelityFixture::kPages);
    }
    NO_PROBLEMS(saved->annotationProblems());
}

void TestFidelityLinks::equalNamesOfTwoDocumentsAndOneOfMainIsGone()
{
    // Links to pages of the main document that are gone must not find those of the other one.
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M1 M2 O3-8"_s);
    NO_PROBLEMS(saved->annotationProblems());
    QCOMPARE(targets(saved->output(), 0).filter(u"OTHER"_s), QStringList());
    QCOMPARE(targets(saved->output(), 2).filter(u"MAIN"_s), QStringList());
}

void TestFidelityLinks::linkToItselfOnACopy()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M1 M2 M1"_s);
    NO_PROBLEMS(saved->annotationProblems());
    QCOMPARE(targets(saved->output(), 2).value(0), u"MAIN-1"_s);
}

void TestFidelityLinks::linkFromACopy()
{
    FidelityCase test;
    test.add("MAIN", withOneLink("MAIN", "/Dest (new)").file());
    const auto saved = test.save(u"M1 M3 M1+90 M1"_s);
    NO_PROBLEMS(saved->annotationProblems());
    for (const int page : {0, 2, 3}) {
        QCOMPARE(targets(saved->output(), page), QStringList{u"MAIN-3"_s});
    }
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
}

void TestFidelityLinks::namesOfMainStay()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M8 O5 M5 O8"_s);
    for (const int number : {5, 8}) {
        const QString mark = u"MAIN-%1"_s.arg(number);
        const std::string digit = std::to_string(number);
        for (QPDFObjectHandle name :
             {QPDFObjectHandle::newName("/ch" + digit), QPDFObjectHandle::newName("/dd" + digit),
              QPDFObjectHandle::newString("sec." + digit),
              QPDFObjectHandle::newString("dict." + digit)}) {
            QCOMPARE(saved->output().targetOfDestination(name).mark, mark);
        }
    }
}

void TestFidelityLinks::namesOfPagesThatAreGoneLeadNowhere()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M8 O5"_s);
    NO_PROBLEMS(saved->pageProblems());
    NO_PROBLEMS(FidelitySoundness::destinationProblems(saved->output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
}

void TestFidelityLinks::annotationsInTheirPage()
{
    // Annotations that are no objects of their own, in arrays that are and are not.
    for (const bool isOwnArray : {false, true}) {
        FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
        const Bytes link = "<< /Type /Annot /Subtype /Link /Rect [1 2 30 40] /Dest [{page";
        const Bytes array = '[' + link + "2} /Fit] >> " + link + "3} /Fit] >>]";
        document.set("annotations", array);
        document.addEntries("page1", "/Annots " + (isOwnArray ? Bytes("{annotations}") : array));
        FidelityCase test;
        test.add("MAIN", document.file());
        const auto saved = test.save(u"M3 M1 M1"_s);
        NO_PROBLEMS(saved->pageProblems());
        QCOMPARE(targets(saved->output(), 1), QStringList{u"MAIN-3"_s});
        QCOMPARE(targets(saved->output(), 2), QStringList{u"MAIN-3"_s});
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityLinks::protectedDocument()
{
    FidelityCase test({"MAIN"});
    test.add(
        "OTHER",
        PdfFixture::encrypted(FidelityFixture::everything("OTHER").file(), {"secret", "owner", 4}),
        u"secret"_s);
    NO_PROBLEMS(test.save(u"M8-1 O8-1"_s)->annotationProblems());
}

void TestFidelityLinks::oneLinkOfManyGoes()
{
    constexpr int kLinks = 2000;
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    Bytes links;
    for (int i = 0; i < kLinks; ++i) {
        links += "<< /Type /Annot /Subtype /Link /Rect [1 2 3 4] /Dest [{page" +
                 Bytes::number(i == 77 ? 3 : 2) + "} /XYZ 0 " + Bytes::number(i) + " 0] >> ";
    }
    document.addEntries("page1", "/Annots [" + links + "]");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M2 M1"_s);
    NO_PROBLEMS(saved->pageProblems());
    QCOMPARE(saved->output().annotations(1).size(), std::size_t{kLinks - 1});
    NO_PROBLEMS(saved->annotationProblems());
}

void TestFidelityLinks::numbersOfPagesThatWereNotThereLeadNowhere()
{
    // With more pages behind those of the document, page 6 would be there.
    FidelityAssembly document = withOneLink("MAIN", "/Dest [5 /Fit]");
    document.addEntries("page2", "/Annots [<< /Type /Annot /Subtype /Link /Rect [1 2 3 4] /A << /S "
                                 "/GoTo /D [6 /Fit] /Next << /S /URI /URI (a:b) >> >> >>]");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("OTHER", FidelityFixture::plain("OTHER", 4).file());
    const auto saved = test.save(u"M1-4 O1-4"_s);
    NO_PROBLEMS(saved->pageProblems());
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    QVERIFY(!saved->output().annotations(0).front().hasKey("/Dest"));
    QPDFObjectHandle action = saved->output().annotations(1).front().getKey("/A");
    QCOMPARE(action.getKey("/S").getName(), std::string("/URI"));
    // As long as the pages are what they were, the numbers are too.
    const auto unchanged = test.save(u"M1-4"_s);
    QVERIFY(unchanged->output().annotations(0).front().hasKey("/Dest"));
    QVERIFY(unchanged->output().annotations(1).front().getKey("/A").hasKey("/D"));
}

void TestFidelityLinks::namesThatStoodForNothingLeadNowhere()
{
    FidelityCase test;
    test.add("MAIN", withOneLink("MAIN", "/Dest (theirs)").file());
    FidelityAssembly other = FidelityFixture::plain("OTHER", 2);
    other.addEntries("catalogue", "/Names << /Dests << /Names [(ours) [{page1} /Fit] (theirs) "
                                  "[{page2} /Fit]] >> >>");
    test.add("OTHER", other.file());
    const auto saved = test.save(u"M1-4 O1-2"_s);
    NO_PROBLEMS(saved->annotationProblems());
    QCOMPARE(saved->output().annotations(0).front().getKey("/Dest").getStringValue(),
             std::string("theirs"));
    QCOMPARE(saved->output().targetOf(saved->output().annotations(0).front()).index, -1);
    QCOMPARE(saved->output().targetOfDestination(QPDFObjectHandle::newString("ours")).mark,
             u"OTHER-1"_s);
}

void TestFidelityLinks::namesOfTheDictionaryAreTakenToo()
{
    // Readers look a string up in the dictionary when the tree does not have it.
    FidelityAssembly main = FidelityFixture::plain("MAIN", 2);
    main.addEntries("catalogue", "/Dests << /same [{page2} /Fit] >>");
    main.addEntries("page1", "/Annots [<< /Type /Annot /Subtype /Link /Rect [1 2 30 40] /Dest "
                             "(same) >>]");
    FidelityAssembly other = FidelityFixture::plain("OTHER", 2);
    other.addEntries("catalogue", "/Names << /Dests << /Names [(ours) [{page1} /Fit] (same) "
                                  "[{page2} /Fit]] >> >>");
    FidelityCase test;
    test.add("MAIN", main.file());
    test.add("OTHER", other.file());
    const auto saved = test.save(u"M1-2 O1-2"_s);
    FidelityDocument &output = saved->output();
    QCOMPARE(output.annotations(0).front().getKey("/Dest").getStringValue(), std::string("same"));
    QStringList names;
    for (const auto &[name, destination] : output.names("/Dests")) {
        names.append(QString::fromStdString(name));
    }
    QCOMPARE(names, QStringList{u"ours"_s});
    QCOMPARE(output.targetOfDestination(QPDFObjectHandle::newName("/same")).mark, u"MAIN-2"_s);
}

QTEST_GUILESS_MAIN(TestFidelityLinks)
#include "tst_fidelity_links.moc"
