// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// The texts (/Alt) of all elements of the structure, in order.
QStringList elementTexts(FidelityDocument &document)
{
    QStringList texts;
    std::set<QPDFObjGen> seen;
    std::vector<QPDFObjectHandle> waiting{document.catalogue().getKey("/StructTreeRoot")};
    while (!waiting.empty()) {
        QPDFObjectHandle element = waiting.back();
        waiting.pop_back();
        if (!element.isDictionary() ||
            (element.isIndirect() && !seen.insert(element.getObjGen()).second)) {
            continue;
        }
        if (element.hasKey("/Alt")) {
            texts.append(fidelityText(element.getKey("/Alt")));
        }
        QPDFObjectHandle kids = element.getKey("/K");
        if (!kids.isArray()) {
            waiting.push_back(kids);
        }
        for (int i = kids.isArray() ? kids.getArrayNItems() : 0; i > 0; --i) {
            waiting.push_back(kids.getArrayItem(i - 1));
        }
    }
    return texts;
}

QPDFObjectHandle structure(FidelityDocument &document)
{
    return document.catalogue().getKey("/StructTreeRoot");
}

} // namespace

/// The logical structure after a save.
class TestFidelityStructure : public QObject
{
    Q_OBJECT

private slots:
    void structureFollowsThePages_data() { FidelityCase::addLists(); }
    void structureFollowsThePages();
    void unchangedListKeepsTheStructure();
    void elementsOfPagesThatAreGone();
    void elementOnTwoPagesKeepsWhatIsLeft();
    void identifiersOfPagesThatAreGone();
    void foreignPagesCarryNoKeys();
    void foreignDocumentWithStructureOnly();
    void copiesDoNotShareKeys();
    void linksThatAreGoneLeaveTheStructure();
    void elementsAreOnTheirPages_data();
    void elementsAreOnTheirPages();
    void structureGoesWithItsLastElement();
    void pagesKeepTheKeysThatTheyShare();
    void keysOfLinksThatAreGoneGoWithThem();
    void keysThatLeadToNothingStayForPagesOnly();
    void brokenStructuresGiveSoundFiles_data();
    void brokenStructuresGiveSoundFiles();
    void deepStructureEnds();
};

void TestFidelityStructure::structureFollowsThePages()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->structureProblems());
    NO_PROBLEMS(FidelitySoundness::structureProblems(saved->output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
}

void TestFidelityStructure::unchangedListKeepsTheStructure()
{
    FidelityCase test({"MAIN"});
    FidelityDocument source(test.path('M'));
    const auto saved = test.save(u"M1-8"_s);
    QCOMPARE(elementTexts(saved->output()), elementTexts(source));
    for (const char *key : {"/RoleMap", "/IDTree"}) {
        QCOMPARE(saved->output().describe(structure(saved->output()).getKey(key)),
                 source.describe(structure(source).getKey(key)));
    }
    QCOMPARE(saved->output().describe(saved->output().catalogue().getKey("/MarkInfo")),
             Bytes("<</Marked true>>"));
}

void TestFidelityStructure::elementsOfPagesThatAreGone()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M7 M2 M5"_s);
    NO_PROBLEMS(FidelitySoundness::structureProblems(saved->output()));
    QStringList texts = elementTexts(saved->output());
    texts.sort();
    QCOMPARE(texts, QStringList({u"MAIN-2"_s, u"MAIN-5"_s, u"MAIN-7"_s}));
    const auto parents =
        FidelityDocument::numbers(structure(saved->output()).getKey("/ParentTree"));
    int arrays = 0;
    for (const auto &[key, entry] : parents) {
        QPDFObjectHandle value = entry;
        arrays += value.isArray() ? 1 : 0;
    }
    QCOMPARE(arrays, 3);
}

void TestFidelityStructure::elementOnTwoPagesKeepsWhatIsLeft()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M1 M3"_s);
    NO_PROBLEMS(FidelitySoundness::structureProblems(saved->output()));
    const auto parents =
        FidelityDocument::numbers(structure(saved->output()).getKey("/ParentTree"));
    QPDFObjectHandle key = saved->output().page(1).getKey("/StructParents");
    QVERIFY(key.isInteger());
    QVERIFY(parents.contains(key.getIntValue()));
    QPDFObjectHandle entry = parents.at(key.getIntValue());
    QCOMPARE(entry.getArrayNItems(), 2);
    QPDFObjectHandle spread = entry.getArrayItem(1);
    QCOMPARE(saved->output().describe(spread.getKey("/S")), Bytes("/Div"));
    const Bytes kids = saved->output().describe(spread.getKey("/K"));
    QVERIFY2(kids.contains("<MAIN-3>") && kids.count("/MCR") == 1, kids.constData());
}

void TestFidelityStructure::identifiersOfPagesThatAreGone()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M1 M4"_s);
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
    const Bytes names = saved->output().describe(structure(saved->output()).getKey("/IDTree"));
    for (const char *gone : {"MAIN-2", "MAIN-3", "MAIN-5", "MAIN-6", "MAIN-7", "MAIN-8"}) {
        QVERIFY2(!names.contains(gone), names.constData());
    }
}

void TestFidelityStructure::foreignPagesCarryNoKeys()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M1 O1 O2 M2 O2"_s);
    NO_PROBLEMS(saved->pageProblems());
    for (const int page : {1, 2, 4}) {
        QVERIFY(!saved->output().page(page).hasKey("/StructParents"));
        for (QPDFObjectHandle annotation : saved->output().annotations(page)) {
            QVERIFY(!annotation.hasKey("/StructParent"));
        }
    }
    QVERIFY(saved->output().page(0).hasKey("/StructParents"));
}

void TestFidelityStructure::foreignDocumentWithStructureOnly()
{
    FidelityCase test({"OTHER"});
    test.add("MAIN", FidelityFixture::plain("MAIN", 2).file());
    const auto saved = test.save(u"M1 O1 O3"_s);
    NO_PROBLEMS(saved->structureProblems());
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityStructure::copiesDoNotShareKeys()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M3 M3 M4 M3+90"_s);
    NO_PROBLEMS(saved->structureProblems());
    NO_PROBLEMS(FidelitySoundness::structureProblems(saved->output()));
}

void TestFidelityStructure::linksThatAreGoneLeaveTheStructure()
{
    // The link of page 1 that the structure names leads to page 2.
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M1 M8"_s);
    NO_PROBLEMS(FidelitySoundness::structureProblems(saved->output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
    QCOMPARE(elementTexts(saved->output()), QStringList({u"MAIN-1"_s, u"MAIN-8"_s}));
}

void TestFidelityStructure::elementsAreOnTheirPages_data()
{
    QTest::addColumn<Bytes>("outer");
    QTest::addColumn<Bytes>("middle");
    QTest::addColumn<Bytes>("inner");
    const Bytes onPage1 = "/Pg {page1}";
    const Bytes onPage2 = "/Pg {page2}";
    const Bytes none;
    QTest::newRow("of its own") << none << none << onPage2 + " /K 0";
    QTest::newRow("of the element above") << none << onPage2 << Bytes("/K 0");
    QTest::newRow("of one further up") << onPage2 << none << Bytes("/K 0");
    QTest::newRow("of the nearest element") << onPage1 << onPage2 << Bytes("/K [0]");
    QTest::newRow("of its own below another") << onPage1 << onPage1 << onPage2 + " /K [0]";
    QTest::newRow("content of the element")
        << none << none << onPage2 + " /K << /Type /MCR /MCID 0 >>";
    QTest::newRow("content of the element above")
        << onPage2 << none << Bytes("/K << /Type /MCR /MCID 0 >>");
    QTest::newRow("content of a page of its own")
        << onPage1 << none << onPage1 + " /K << /Type /MCR /MCID 0 /Pg {page2} >>";
    QTest::newRow("content without its type") << onPage2 << none << Bytes("/K << /MCID 0 >>");
    QTest::newRow("content without its type, of a page of its own")
        << none << none << onPage1 + " /K << /MCID 0 /Pg {page2} >>";
    QTest::newRow("object of a page of its own")
        << onPage1 << none << Bytes("/K << /Type /OBJR /Obj {note} /Pg {page2} >>");
    QTest::newRow("object of the element above")
        << onPage2 << none << Bytes("/K [<< /Type /OBJR /Obj {note} >>]");
    QTest::newRow("object that says no page")
        << none << none << Bytes("/K << /Type /OBJR /Obj {note} >>");
    QTest::newRow("object without its type") << none << none << Bytes("/K << /Obj {note} >>");
}

void TestFidelityStructure::elementsAreOnTheirPages()
{
    QFETCH(const Bytes, outer);
    QFETCH(const Bytes, middle);
    QFETCH(const Bytes, inner);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/StructTreeRoot {root}");
    document.addEntries("page1", "/StructParents 0");
    document.addEntries("page2", "/StructParents 1 /Annots [{note}]");
    document.set("note", "<< /Type /Annot /Subtype /Text /Rect [20 20 40 40] /StructParent 2 >>");
    document.set("root", "<< /Type /StructTreeRoot /K [{first} {outer}] /ParentTree << /Nums "
                         "[0 [{first}] 1 [{inner}] 2 {inner}] >> >>");
    document.set("first", "<< /S /P /P {root} /Pg {page1} /K 0 /Alt (first) >>");
    document.set("outer", "<< /S /Sect /P {root} /K {middle} " + outer + " >>");
    document.set("middle", "<< /S /Div /P {outer} /K [{inner}] " + middle + " >>");
    document.set("inner", "<< /S /P /P {middle} /Alt (inner) " + inner + " >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    const QStringList first{u"first"_s};
    const QStringList second{u"inner"_s};
    const QList<std::pair<QString, QStringList>> lists{
        {u"M1"_s, first}, {u"M3 M1"_s, first}, {u"M2"_s, second}, {u"M2 M1"_s, first + second}};
    for (const auto &[list, texts] : lists) {
        const auto saved = test.save(list);
        QCOMPARE(elementTexts(saved->output()), texts);
        NO_PROBLEMS(FidelitySoundness::structureProblems(saved->output()));
        NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
    }
}

void TestFidelityStructure::structureGoesWithItsLastElement()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/StructTreeRoot {root} /MarkInfo << /Marked true >>");
    document.addEntries("page1", "/StructParents 0");
    document.set("root", "<< /Type /StructTreeRoot /K {first} /ParentTree << /Nums [0 [{first}]] "
                         ">> >>");
    document.set("first", "<< /S /P /P {root} /Pg {page1} /K 0 /Alt (first) >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const auto &[list, stays] : {std::pair{u"M3 M2"_s, false}, std::pair{u"M2 M1"_s, true}}) {
        const auto saved = test.save(list);
        for (const char *key : {"/StructTreeRoot", "/MarkInfo"}) {
            QCOMPARE(saved->output().catalogue().hasKey(key), stays);
        }
    }
}

void TestFidelityStructure::pagesKeepTheKeysThatTheyShare()
{
    // Of the keys, 0 is one of two pages, 1 one of two annotations, 2 that of an annotation that
    // is on two pages, and 3 and 4 are those of annotations that share nothing but their element.
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/StructTreeRoot {root}");
    document.addEntries("page1", "/StructParents 0 /Annots [{note1} {shared} {own1}]");
    document.addEntries("page2", "/StructParents 0 /Annots [{note2} {shared} {own2}]");
    const Bytes note = "<< /Type /Annot /Subtype /Text /Rect [20 20 40 40] /StructParent ";
    document.set("note1", note + "1 >>");
    document.set("note2", note + "1 >>");
    document.set("shared", note + "2 >>");
    document.set("own1", note + "3 >>");
    document.set("own2", note + "4 >>");
    document.set("root", "<< /Type /StructTreeRoot /K [{text1} {text2} {link}] /ParentTree << "
                         "/Nums [0 [{text1} {text2}] 1 {link} 2 {link} 3 {link} 4 {link}] >> >>");
    document.set("text1", "<< /S /P /P {root} /Pg {page1} /K 0 /Alt (text1) >>");
    document.set("text2", "<< /S /P /P {root} /Pg {page2} /K 0 /Alt (text2) >>");
    document.set("link", "<< /S /Annot /P {root} /Alt (link) "
                         "/K [<< /Type /OBJR /Obj {note1} >> << /Type /OBJR /Obj {note2} >> "
                         "<< /Type /OBJR /Obj {shared} >> << /Type /OBJR /Obj {own1} >> "
                         "<< /Type /OBJR /Obj {own2} >>] >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const int page : {1, 2}) {
        const auto saved = test.save(u"M%1 M3"_s.arg(page));
        QCOMPARE(elementTexts(saved->output()), QStringList({u"text%1"_s.arg(page), u"link"_s}));
        QPDFObjectHandle root = structure(saved->output());
        const auto keys = FidelityDocument::numbers(root.getKey("/ParentTree"));
        QCOMPARE(keys.size(), std::size_t{4});
        QVERIFY(keys.contains(page + 2));
        QCOMPARE(root.getKey("/K").getArrayItem(1).getKey("/K").getArrayNItems(), 3);
    }
}

void TestFidelityStructure::keysOfLinksThatAreGoneGoWithThem()
{
    // The element stays with the text that it holds besides the link.
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/StructTreeRoot {root}");
    document.addEntries("page1", "/StructParents 0 /Annots [{link}]");
    document.set("link", "<< /Type /Annot /Subtype /Link /Rect [20 20 40 40] /StructParent 1 "
                         "/Dest [{page2} /Fit] >>");
    document.set("root", "<< /Type /StructTreeRoot /K {text} /ParentTree << /Nums [0 [{text}] "
                         "1 {text}] >> >>");
    document.set("text", "<< /S /P /P {root} /Pg {page1} /Alt (text) "
                         "/K [0 << /Type /OBJR /Obj {link} >>] >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const auto &[list, stays] : {std::pair{u"M1 M3"_s, false}, std::pair{u"M1 M2"_s, true}}) {
        const auto saved = test.save(list);
        QCOMPARE(elementTexts(saved->output()), QStringList{u"text"_s});
        const auto keys =
            FidelityDocument::numbers(structure(saved->output()).getKey("/ParentTree"));
        QCOMPARE(keys.contains(0), true);
        QCOMPARE(keys.contains(1), stays);
    }
}

void TestFidelityStructure::keysThatLeadToNothingStayForPagesOnly()
{
    // The elements of page 1 say that they are on page 2, and key 7 is that of a form within it.
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/StructTreeRoot {root}");
    document.addEntries("page1", "/StructParents 0");
    document.set("root", "<< /Type /StructTreeRoot /K [{text} {gone}] /ParentTree << /Nums "
                         "[0 [{gone}] 7 [{gone} {gone}] 8 [{text} {gone}] 9 {gone}] >> >>");
    document.set("text", "<< /S /P /P {root} /Pg {page1} /K 0 /Alt (text) >>");
    document.set("gone", "<< /S /P /P {root} /Pg {page2} /K 0 /Alt (gone) >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M1 M3"_s);
    QCOMPARE(elementTexts(saved->output()), QStringList{u"text"_s});
    const auto keys = FidelityDocument::numbers(structure(saved->output()).getKey("/ParentTree"));
    QVERIFY(keys.contains(0) && keys.contains(8));
    QCOMPARE(keys.size(), std::size_t{2});
}

void TestFidelityStructure::brokenStructuresGiveSoundFiles_data()
{
    QTest::addColumn<Bytes>("root");
    QTest::addColumn<Bytes>("element");
    QTest::newRow("root is a number") << Bytes("5") << Bytes("<< >>");
    QTest::newRow("kid of itself")
        << Bytes("<< /K {element} >>") << Bytes("<< /S /P /P {root} /K {element} >>");
    QTest::newRow("kid is the root")
        << Bytes("<< /K {element} >>") << Bytes("<< /S /P /P {root} /K [{root} {root}] >>");
    QTest::newRow("kid is a page") << Bytes("<< /K [{page1} {page2}] >>") << Bytes("<< >>");
    QTest::newRow("parent tree of itself")
        << Bytes("<< /K {element} /ParentTree {tree} >>") << Bytes("<< /S /P /P {root} >>");
    QTest::newRow("parent tree of other kinds")
        << Bytes("<< /K {element} /ParentTree << /Nums [(a) {element} 0 {page2} 1 5 2] >> >>")
        << Bytes("<< /S /P /P {root} /Pg {page2} >>");
    QTest::newRow("page of another kind")
        << Bytes("<< /K {element} >>") << Bytes("<< /S /P /P {root} /Pg {catalogue} /K 0 >>");
    QTest::newRow("object reference to a page")
        << Bytes("<< /K {element} >>")
        << Bytes("<< /S /P /P {root} /K << /Type /OBJR /Obj {page2} /Pg {page2} >> >>");
    QTest::newRow("identifiers of other kinds")
        << Bytes("<< /K {element} /IDTree << /Names [5 {element} (a) {page2} (b)] >> >>")
        << Bytes("<< /S /P /P {page2} >>");
}

void TestFidelityStructure::brokenStructuresGiveSoundFiles()
{
    QFETCH(Bytes, root);
    QFETCH(Bytes, element);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/StructTreeRoot {root}");
    document.addEntries("page1", "/StructParents 0");
    document.addEntries("page2", "/StructParents 0");
    document.set("tree", "<< /Kids [{tree} {tree}] /Nums [0 [{element}] 0 {element}] >>");
    document.set("root", root);
    document.set("element", element);
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1-3"_s, u"M3-1"_s, u"M1"_s, u"M1 M1"_s}) {
        const EngineCalls::Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), test.pages(list).size());
        NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
        NO_PROBLEMS(FidelitySoundness::pageProblems(output));
    }
}

void TestFidelityStructure::deepStructureEnds()
{
    constexpr int kDepth = 50'000;
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/StructTreeRoot {element0}");
    document.addEntries("page1", "/StructParents 0");
    for (int i = 0; i < kDepth; ++i) {
        const Bytes page = Bytes::number(i % 3 + 1);
        document.set("element" + Bytes::number(i),
                     i == 0 ? Bytes("<< /Type /StructTreeRoot /K {element1} /ParentTree << /Nums "
                                    "[0 [{element1}]] >> >>")
                            : Bytes("<< /S /Div /P {element" + Bytes::number(i - 1) +
                                    "} /Pg {page" + page + "} /K " +
                                    (i < kDepth - 1 ? Bytes("{element" + Bytes::number(i + 1) + '}')
                                                    : Bytes("0")) +
                                    " >>"));
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1-3"_s, u"M1 M2"_s, u"M3"_s}) {
        const EngineCalls::Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), test.pages(list).size());
        NO_PROBLEMS(FidelitySoundness::pageProblems(output));
    }
}

QTEST_GUILESS_MAIN(TestFidelityStructure)
#include "tst_fidelity_structure.moc"
