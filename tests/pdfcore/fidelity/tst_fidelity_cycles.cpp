// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

#include <functional>

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// Lists that each have two nodes whose list is the next one: there are 2^60 ways through them.
constexpr int kLevels = 60;

/// A list, called "ring", of `own` and of nodes whose kids under `key` are the list itself.
Bytes ring(const Bytes &own, int nodes, const Bytes &key, const Bytes &entries = {})
{
    const Bytes node = " << " + entries + ' ' + key + " {ring} >>";
    return '[' + own + node.repeated(nodes) + ']';
}

Bytes levelName(int level)
{
    return "level" + Bytes::number(level);
}

/// Adds lists "level0" and so on of two nodes each, whose kids are the next list; the last one is
/// `last`.
void addLevels(FidelityAssembly &document, const Bytes &key, const Bytes &entries,
               const Bytes &last)
{
    for (int level = 0; level < kLevels; ++level) {
        const Bytes node = " << " + entries + ' ' + key + " {" + levelName(level + 1) + "} >>";
        document.set(levelName(level), '[' + node + node + ']');
    }
    document.set(levelName(kLevels), last);
}

/// The keys of a name or number tree and whether a list of kids comes twice in it.
struct TreeKeys
{
    QStringList keys;
    bool isRing = false;
};

/// Reads a tree whose leaves hold `listKey`; lists of kids are read once.
TreeKeys keysOf(QPDFObjectHandle root, const char *listKey)
{
    TreeKeys found;
    std::set<QPDFObjGen> visited;
    std::vector<QPDFObjectHandle> waiting{root};
    while (!waiting.empty()) {
        QPDFObjectHandle node = waiting.back();
        waiting.pop_back();
        QPDFObjectHandle pairs = below(node, {listKey});
        for (int i = 0; pairs.isArray() && i + 1 < pairs.getArrayNItems(); i += 2) {
            found.keys.append(QString::fromStdString(pairs.getArrayItem(i).unparseResolved()));
        }
        QPDFObjectHandle kids = below(node, {"/Kids"});
        if (!kids.isArray()) {
            continue;
        }
        if (kids.isIndirect() && !visited.insert(kids.getObjGen()).second) {
            found.isRing = true;
            continue;
        }
        const std::vector<QPDFObjectHandle> items = kids.getArrayAsVector();
        waiting.insert(waiting.end(), items.begin(), items.end());
    }
    found.keys.sort();
    return found;
}

/// What must be right in a file that may still have the rings of its source.
QStringList problemsBesidesTrees(const QString &path)
{
    FidelityDocument document(path);
    return FidelitySoundness::readingProblems(path) + FidelitySoundness::pageProblems(document);
}

} // namespace

/// Lists that lead back to themselves or in very many ways to one end, as objects of their own that
/// nodes without numbers have in common.
class TestFidelityCycles : public QObject
{
    Q_OBJECT

private slots:
    void treesThatNameThemselves_data();
    void treesThatNameThemselves();
    void attachmentsOfAFurtherDocument_data();
    void attachmentsOfAFurtherDocument();
    void labelsOfATreeThatNamesItself_data();
    void labelsOfATreeThatNamesItself();
    void pagesThatNameThemselves_data();
    void pagesThatNameThemselves();
    void catalogueAmongThePages_data();
    void catalogueAmongThePages();
    void structureThatNamesItself_data();
    void structureThatNamesItself();
    void actionsInVeryManyWays_data();
    void actionsInVeryManyWays();
    void actionsInVeryManyWaysToAGonePage_data();
    void actionsInVeryManyWaysToAGonePage();
};

namespace {

/// A document of two pages with a tree in one place of the catalogue. Its key belongs to page 1.
/// Negative `nodes` stand for the tree with very many ways.
FidelityAssembly withTree(const Bytes &prefix, const Bytes &place, int nodes)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 2);
    const Bytes tree = nodes < 0 ? "<< /Kids {level0} >>" : "<< /Kids {ring} >>";
    document.setStream("data", "/Type /EmbeddedFile", "ATTACHED TO " + prefix);
    document.set("file", "<< /Type /Filespec /F (x.txt) /EF << /F {data} >> >>");
    Bytes leaf;
    if (place == "labels") {
        leaf = "<< /Nums [0 << /S /D /P (KEPT-) >>] >>";
        document.addEntries("catalogue", "/PageLabels " + tree);
    } else if (place == "destinations") {
        leaf = "<< /Names [(key) [{page1} /Fit]] >>";
        document.addEntries("catalogue", "/Names << /Dests " + tree + " >>");
    } else if (place == "pages") {
        leaf = "<< /Names [(key) {page1}] >>";
        document.addEntries("catalogue", "/Names << /Pages " + tree + " >>");
    } else {
        leaf = "<< /Names [(key) {file}] >>";
        document.addEntries("catalogue", "/Names << /EmbeddedFiles " + tree + " >>");
    }
    if (nodes < 0) {
        addLevels(document, "/Kids", {}, '[' + leaf + ']');
    } else {
        document.set("ring", ring(leaf, nodes, "/Kids"));
    }
    return document;
}

void addRingRows(const std::function<void(const Bytes &name, int nodes)> &add)
{
    add("itself once", 1);
    add("itself twice", 2);
    add("very many ways", -1);
}

} // namespace

void TestFidelityCycles::treesThatNameThemselves_data()
{
    QTest::addColumn<Bytes>("place");
    QTest::addColumn<int>("nodes");
    QTest::addColumn<QString>("list");
    for (const Bytes place : {"destinations", "labels", "attachments", "pages"}) {
        addRingRows([&](const Bytes &name, int nodes) {
            for (const QString &list : {u"M1 M2"_s, u"M2 M1"_s, u"M1"_s, u"M2"_s, u"M1 M1"_s}) {
                QTest::addRow("%s, %s, %s", place.constData(), name.constData(), qPrintable(list))
                    << place << nodes << list;
            }
        });
    }
}

void TestFidelityCycles::treesThatNameThemselves()
{
    QFETCH(Bytes, place);
    QFETCH(int, nodes);
    QFETCH(QString, list);
    FidelityCase test;
    test.add("MAIN", withTree("MAIN", place, nodes).file());
    const Outcome outcome = save(test.pages(list), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    NO_PROBLEMS(problemsBesidesTrees(test.output()));
    FidelityDocument output(test.output());
    QCOMPARE(output.marks().size(), test.pages(list).size());
    const bool areLabels = place == "labels";
    QPDFObjectHandle names = output.catalogue().getKey("/Names");
    QPDFObjectHandle tree = areLabels                 ? output.catalogue().getKey("/PageLabels")
                            : place == "destinations" ? below(names, {"/Dests"})
                            : place == "pages"        ? below(names, {"/Pages"})
                                                      : below(names, {"/EmbeddedFiles"});
    const TreeKeys found = keysOf(tree, areLabels ? "/Nums" : "/Names");
    const bool isOfFirstPage = place == "destinations" || place == "pages";
    if (isOfFirstPage && list == u"M2") {
        QCOMPARE(found.keys, QStringList());
    } else if (areLabels) {
        QVERIFY(found.keys.contains(u"0"_s));
    } else {
        QCOMPARE(found.keys, QStringList{u"(key)"_s});
    }
    QCOMPARE(everythingIn(output).contains("ATTACHED TO MAIN"), place == "attachments");
    if (!found.isRing) {
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityCycles::labelsOfATreeThatNamesItself_data()
{
    QTest::addColumn<int>("nodes");
    addRingRows([](const Bytes &name, int nodes) { QTest::newRow(name.constData()) << nodes; });
}

void TestFidelityCycles::labelsOfATreeThatNamesItself()
{
    QFETCH(int, nodes);
    FidelityCase test;
    test.add("MAIN", withTree("MAIN", "labels", nodes).file());
    test.add("OTHER", withTree("OTHER", "labels", nodes).file());
    const auto check = [&](const QString &list, const QStringList &labels) {
        const Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        FidelityDocument output(test.output());
        QVERIFY(!keysOf(output.catalogue().getKey("/PageLabels"), "/Nums").isRing);
        QCOMPARE(output.labels(), labels);
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    };
    check(u"M2 M1"_s, {u"KEPT-2"_s, u"KEPT-1"_s});
    check(u"M2 O2 O1 M1"_s, {u"KEPT-2"_s, u"KEPT-2"_s, u"KEPT-1"_s, u"KEPT-1"_s});
}

void TestFidelityCycles::attachmentsOfAFurtherDocument_data()
{
    labelsOfATreeThatNamesItself_data();
}

void TestFidelityCycles::attachmentsOfAFurtherDocument()
{
    QFETCH(int, nodes);
    FidelityCase test;
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 2).file());
    test.add("MAIN", withTree("MAIN", "attachments", nodes).file());
    test.add("OTHER", withTree("OTHER", "attachments", nodes).file());
    for (const QString &list : {u"P1 M1"_s, u"M1 O1"_s, u"P1-2 M1 O2 M2"_s}) {
        const bool areTwo = list.contains(u'O');
        const Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        FidelityDocument output(test.output());
        const TreeKeys found =
            keysOf(output.catalogue().getKey("/Names").getKey("/EmbeddedFiles"), "/Names");
        QVERIFY(!found.isRing);
        QCOMPARE(found.keys.size(), areTwo ? 2 : 1);
        QVERIFY(everythingIn(output).contains("ATTACHED TO MAIN"));
        QCOMPARE(everythingIn(output).contains("ATTACHED TO OTHER"), areTwo);
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
    // Names of destinations and pages come along or not, but the save ends.
    for (const Bytes place : {"destinations", "pages", "labels"}) {
        test.add("OTHER", withTree("OTHER", place, nodes).file());
        const Outcome outcome = save(test.pages(u"P1 O2 O1"_s), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityCycles::pagesThatNameThemselves_data()
{
    using Objects = QList<std::pair<Bytes, Bytes>>;
    QTest::addColumn<Bytes>("kids");
    QTest::addColumn<Objects>("more");
    const Bytes node = "/Type /Pages /Parent {pages} /Count 1";
    QTest::newRow("itself once") << ring("{page1}", 1, "/Kids", node) << Objects();
    QTest::newRow("itself twice") << ring("{page1}", 2, "/Kids", node) << Objects();
    QTest::newRow("itself, with pages around")
        << "[{page1} << " + node + " /Kids {ring} >> {page2} << " + node +
               " /Kids {ring} >> {page3}]"
        << Objects();
    QTest::newRow("itself before the pages")
        << "[<< " + node + " /Kids {ring} >> {page1} {page2} {page3}]" << Objects();
    QTest::newRow("each other") << "[{page1} << " + node + " /Kids {second} >> {page2}]"
                                << Objects{{"second", "[<< " + node +
                                                          " /Kids {ring} >> {page3} << " + node +
                                                          " /Kids {ring} >>]"}};
    QTest::newRow("nothing but itself") << ring({}, 2, "/Kids", node) << Objects();
    QTest::newRow("one list twice")
        << "[<< " + node + " /Kids {second} >> << " + node + " /Kids {second} >> {page3}]"
        << Objects{{"second", "[{page1} {page2}]"}};
    QTest::newRow("very many ways") << "[<< " + node + " /Kids {level0} >> {page3}]" << Objects();
}

void TestFidelityCycles::pagesThatNameThemselves()
{
    using Objects = QList<std::pair<Bytes, Bytes>>;
    QFETCH(Bytes, kids);
    QFETCH(Objects, more);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.set("pages", "<< /Type /Pages /Count 3 /Kids {ring} >>");
    document.set("ring", kids);
    addLevels(document, "/Kids", "/Type /Pages /Parent {pages} /Count 1", "[{page1} {page2}]");
    for (const auto &[name, body] : more) {
        document.set(name, body);
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const Inspection found = inspect(test.path('M'));
    const qsizetype count = found.pageSizes.size();
    if (count == 0) {
        QVERIFY(!save(test.pages(u"M1"_s), test.output()).ok);
        return;
    }
    // Each save fails, or all pages of the list are in the new file.
    for (const QString &list : {u"M1-%1"_s.arg(count), u"M%1-1"_s.arg(count), u"M1"_s, u"M1 M1"_s,
                                u"P1 M%1 M1"_s.arg(count)}) {
        const QList<PdfSourcePage> pages = test.pages(list);
        const Outcome outcome = save(pages, test.output());
        if (!outcome.ok) {
            QVERIFY(!outcome.message.isEmpty());
            continue;
        }
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), pages.size());
        QVERIFY(!output.marks().contains(QString()));
        QCOMPARE(inspect(test.output()).pageSizes.size(), pages.size());
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
        for (int i = 0; i < pages.size(); ++i) {
            QVERIFY(test.looksLike(i, pages.at(i)));
        }
    }
}

void TestFidelityCycles::catalogueAmongThePages_data()
{
    QTest::addColumn<Bytes>("kids");
    QTest::addColumn<Bytes>("entries");
    QTest::newRow("between") << Bytes("[{page1} {catalogue} {page2}]") << Bytes();
    QTest::newRow("first") << Bytes("[{catalogue} {page1} {page2}]") << Bytes();
    QTest::newRow("last, twice") << Bytes("[{page1} {page2} {catalogue} {catalogue}]") << Bytes();
    QTest::newRow("with kids") << Bytes("[{page1} {catalogue} {page2}]")
                               << Bytes("/Kids [{page1} {page2}]");
    QTest::newRow("with what a page has") << Bytes("[{page1} {catalogue} {page2}]")
                                          << Bytes("/MediaBox [0 0 90 90] /Contents {content1}");
}

void TestFidelityCycles::catalogueAmongThePages()
{
    QFETCH(Bytes, kids);
    QFETCH(Bytes, entries);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.set("pages", "<< /Type /Pages /Count 2 /Kids " + kids + " >>");
    document.addEntries("catalogue", entries + " /Lang (en-GB)");
    FidelityCase test;
    test.add("MAIN", document.file());
    const Inspection found = inspect(test.path('M'));
    QVERIFY(!found.ok || !found.pageSizes.isEmpty());
    const int count = found.ok ? int(found.pageSizes.size()) : 1;
    for (int number = 0; number <= count; ++number) {
        const QString list = number == 0 ? u"M1-%1"_s.arg(count) : u"M%1"_s.arg(number);
        const Outcome outcome = save(test.pages(list), test.output());
        if (!outcome.ok) {
            QVERIFY(!outcome.message.isEmpty());
            continue;
        }
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), test.pages(list).size());
        QCOMPARE(fidelityText(output.catalogue().getKey("/Lang")), u"en-GB"_s);
        QCOMPARE(inspect(test.output()).pageSizes.size(), test.pages(list).size());
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityCycles::structureThatNamesItself_data()
{
    QTest::addColumn<Bytes>("top");
    QTest::addColumn<int>("nodes");
    QTest::addColumn<QString>("list");
    for (const Bytes top : {"root", "element"}) {
        addRingRows([&](const Bytes &name, int nodes) {
            for (const QString &list :
                 {u"M1 M2"_s, u"M2 M1"_s, u"M1"_s, u"M2"_s, u"M1 M1"_s, u"P1 M1"_s}) {
                QTest::addRow("%s, %s, %s", top.constData(), name.constData(), qPrintable(list))
                    << top << nodes << list;
            }
        });
    }
}

void TestFidelityCycles::structureThatNamesItself()
{
    QFETCH(Bytes, top);
    QFETCH(int, nodes);
    QFETCH(QString, list);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("catalogue", "/StructTreeRoot {root} /MarkInfo << /Marked true >>");
    const bool isRoot = top == "root";
    const Bytes kids = nodes < 0 ? "{level0}" : "{ring}";
    document.set("root", "<< /Type /StructTreeRoot /K " + (isRoot ? kids : Bytes("{element}")) +
                             " /ParentTree << /Nums [0 [{first}] 1 [{second}]] >> >>");
    document.set("element", "<< /S /Document /P {root} /K " + kids + " >>");
    const Bytes parent = isRoot ? "/P {root} " : "/P {element} ";
    for (const auto &[name, entries] :
         {std::pair{"first", "/Pg {page1} /K 0 /Alt (OF THE FIRST)"},
          std::pair{"second", "/Pg {page2} /K 0 /Alt (OF THE SECOND)"}}) {
        document.set(name, "<< /S /P " + parent + entries + " >>");
    }
    document.addEntries("page1", "/StructParents 0");
    document.addEntries("page2", "/StructParents 1");
    if (nodes < 0) {
        addLevels(document, "/K", "/S /Sect " + parent, "[{first} {second}]");
    } else {
        document.set("ring", ring("{first} {second}", nodes, "/K", "/S /Sect " + parent));
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const Outcome outcome = save(test.pages(list), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    NO_PROBLEMS(problemsBesidesTrees(test.output()));
    FidelityDocument output(test.output());
    QCOMPARE(output.marks().size(), test.pages(list).size());
    const Bytes all = everythingIn(output);
    const bool isMain = !list.contains(u'P');
    QCOMPARE(all.contains("(OF THE FIRST)"), isMain && list.contains(u"M1"));
    QCOMPARE(all.contains("(OF THE SECOND)"), isMain && list.contains(u"M2"));
}

namespace {

const Bytes kNamed = "/S /Named /N /NextPage";

/// Page 1 has a link whose actions go through all the levels, or the ring, to `last`, and a field.
FidelityAssembly withWays(const Bytes &prefix, int nodes, const Bytes &last)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 2);
    document.addEntries("catalogue", "/AcroForm << /Fields [{text}] >>");
    document.addEntries("page1", "/Annots [{text} {link}]");
    document.set("text", "<< /Type /Annot /Subtype /Widget /Rect [9 9 30 40] /FT /Tx /T (text) >>");
    document.set("link", "<< /Type /Annot /Subtype /Link /Rect [1 2 30 40] /A << " + kNamed +
                             " /Next " + (nodes < 0 ? Bytes("{level0}") : Bytes("{ring}")) +
                             " >> >>");
    if (nodes < 0) {
        addLevels(document, "/Next", kNamed, '[' + last + ']');
    } else {
        document.set("ring", ring(last, nodes, "/Next", kNamed));
    }
    return document;
}

/// Follows what comes behind the action of the link on a page: the last of each list, until there
/// is one that nothing follows. Its first item is returned; null when the way ends earlier.
QPDFObjectHandle endOfWay(FidelityDocument &document, qsizetype page, int levels)
{
    QPDFObjectHandle action = document.annotations(page).back().getKey("/A");
    for (int level = 0; level < levels; ++level) {
        QPDFObjectHandle next = below(action, {"/Next"});
        if (!next.isArray() || next.getArrayNItems() != 2) {
            return QPDFObjectHandle::newNull();
        }
        action = next.getArrayItem(1);
    }
    QPDFObjectHandle next = below(action, {"/Next"});
    return next.isArray() && next.getArrayNItems() > 0 ? next.getArrayItem(0) : next;
}

} // namespace

void TestFidelityCycles::actionsInVeryManyWays_data()
{
    QTest::addColumn<int>("nodes");
    QTest::addColumn<QString>("list");
    addRingRows([](const Bytes &name, int nodes) {
        for (const QString &list :
             {u"M1 M1"_s, u"M1 M1 M1 M2"_s, u"M1 O1"_s, u"P1 M1"_s, u"P1 M1 M1"_s, u"M1"_s}) {
            QTest::addRow("%s, %s", name.constData(), qPrintable(list)) << nodes << list;
        }
    });
}

void TestFidelityCycles::actionsInVeryManyWays()
{
    QFETCH(int, nodes);
    QFETCH(QString, list);
    FidelityCase test;
    const Bytes last = "<< /S /Hide /T {text} >>";
    test.add("MAIN", withWays("MAIN", nodes, last).file());
    test.add("OTHER", withWays("OTHER", nodes, last).file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const Outcome outcome = save(test.pages(list), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    NO_PROBLEMS(problemsBesidesTrees(test.output()));
    FidelityDocument output(test.output());
    QCOMPARE(output.marks().size(), test.pages(list).size());
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        const std::vector<QPDFObjectHandle> annotations = output.annotations(page);
        if (!output.marks().at(page).endsWith(u"-1") || output.marks().at(page) == u"PLAIN-1") {
            continue;
        }
        QCOMPARE(annotations.size(), 2U);
        // Every link hides the field of its own page.
        QPDFObjectHandle hide = endOfWay(output, page, nodes < 0 ? kLevels : 0);
        QVERIFY(hide.isDictionary());
        QCOMPARE(hide.getKey("/S").getName(), std::string("/Hide"));
        QCOMPARE(hide.getKey("/T").getObjGen(), QPDFObjectHandle(annotations[0]).getObjGen());
    }
}

void TestFidelityCycles::actionsInVeryManyWaysToAGonePage_data()
{
    QTest::addColumn<int>("nodes");
    QTest::addColumn<QString>("list");
    addRingRows([](const Bytes &name, int nodes) {
        for (const QString &list : {u"M1"_s, u"M1 M1"_s, u"P1 M1"_s}) {
            QTest::addRow("%s, %s", name.constData(), qPrintable(list)) << nodes << list;
        }
    });
}

void TestFidelityCycles::actionsInVeryManyWaysToAGonePage()
{
    QFETCH(int, nodes);
    QFETCH(QString, list);
    FidelityCase test;
    test.add("MAIN",
             withWays("MAIN", nodes, "<< /S /GoTo /D [{page2} /Fit] >> << /S /URI /URI (last) >>")
                 .file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const Outcome outcome = save(test.pages(list), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    NO_PROBLEMS(problemsBesidesTrees(test.output()));
    FidelityDocument output(test.output());
    const Bytes all = everythingIn(output);
    QVERIFY(!all.contains("/GoTo"));
    QVERIFY(!all.contains("MAIN-2"));
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        if (output.marks().at(page) != u"MAIN-1") {
            continue;
        }
        QPDFObjectHandle last = endOfWay(output, page, nodes < 0 ? kLevels : 0);
        QVERIFY(last.isDictionary());
        QCOMPARE(fidelityText(last.getKey("/URI")), u"last"_s);
    }
}

QTEST_GUILESS_MAIN(TestFidelityCycles)
#include "tst_fidelity_cycles.moc"
