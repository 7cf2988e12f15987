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
