// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_outline.h"
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// Actions in one chain, enough for a way along it by recursion to leave the stack.
constexpr int kMany = 50'000;

/// A web link, which leads to no page.
Bytes web(const Bytes &name, const Bytes &entries = {})
{
    return "<< /S /URI /URI (" + name + ") " + entries + " >>";
}

/// An action that leads to page 3.
Bytes toThird(const Bytes &entries = {})
{
    return "<< /S /GoTo /D [{page3} /Fit] " + entries + " >>";
}

/// Three pages with an action in one place: "link", "trigger", "page", "entry" or "opening".
FidelityAssembly withAction(const Bytes &prefix, const Bytes &place, const Bytes &action)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 3);
    document.addEntries("page1", "/Annots [{annotation}]");
    Bytes entries = "/Subtype /Square";
    if (place == "link") {
        entries = "/Subtype /Link /A " + action;
    } else if (place == "trigger") {
        entries = "/Subtype /Square /AA << /U " + action + " >>";
    }
    document.set("annotation", "<< /Type /Annot /Rect [1 2 30 40] " + entries + " >>");
    if (place == "page") {
        document.addEntries("page1", "/AA << /O " + action + " >>");
    }
    if (place == "opening") {
        document.addEntries("catalogue", "/OpenAction " + action);
    }
    if (place == "entry") {
        document.addEntries("catalogue", "/Outlines {outline}");
        document.set("outline", "<< /Type /Outlines /First {item} /Last {item} /Count 1 >>");
        document.set("item", "<< /Title (Entry) /Parent {outline} /A " + action + " >>");
    }
    return document;
}

/// What withAction() put into the place; null when it is gone.
QPDFObjectHandle actionIn(FidelityDocument &document, const Bytes &place, qsizetype page)
{
    const auto below = [](QPDFObjectHandle object, const char *key) {
        return object.isDictionary() ? object.getKey(key) : QPDFObjectHandle::newNull();
    };
    if (place == "opening") {
        return document.catalogue().getKey("/OpenAction");
    }
    if (place == "entry") {
        return below(below(below(document.catalogue(), "/Outlines"), "/First"), "/A");
    }
    if (place == "page") {
        return below(below(document.page(page), "/AA"), "/O");
    }
    const std::vector<QPDFObjectHandle> annotations = document.annotations(page);
    if (annotations.empty()) {
        return QPDFObjectHandle::newNull();
    }
    return place == "link" ? below(annotations.front(), "/A")
                           : below(below(annotations.front(), "/AA"), "/U");
}

/// The actions in the order in which a reader carries them out, each as its web link or the mark of
/// the page that it leads to. Each object counts once.
QStringList steps(FidelityDocument &document, QPDFObjectHandle first)
{
    QStringList found;
    std::set<QPDFObjGen> visited;
    std::vector<QPDFObjectHandle> waiting{first};
    while (!waiting.empty()) {
        QPDFObjectHandle action = waiting.back();
        waiting.pop_back();
        if (action.isArray()) {
            const std::vector<QPDFObjectHandle> items = action.getArrayAsVector();
            waiting.insert(waiting.end(), items.rbegin(), items.rend());
            continue;
        }
        if (!action.isDictionary() ||
            (action.isIndirect() && !visited.insert(action.getObjGen()).second)) {
            continue;
        }
        if (action.hasKey("/URI")) {
            found.append(fidelityText(action.getKey("/URI")));
        } else {
            found.append(document.targetOfDestination(action.getKey("/D")).mark);
        }
        waiting.push_back(action.getKey("/Next"));
    }
    return found;
}

/// An outline of one entry, called "Broken".
FidelityAssembly withEntry(const Bytes &prefix, const Bytes &entries)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 3);
    document.addEntries("catalogue", "/Outlines {outline}");
    document.set("outline", "<< /Type /Outlines /First {item} /Last {item} /Count 1 >>");
    document.set("item", "<< /Title (Broken) /Parent {outline} " + entries + " >>");
    return document;
}

QPDFObjectHandle firstEntry(FidelityDocument &document)
{
    QPDFObjectHandle outline = document.catalogue().getKey("/Outlines");
    return outline.isDictionary() ? outline.getKey("/First") : outline;
}

} // namespace

/// Chains of actions and destinations of rare kinds.
class TestFidelityActionChains : public QObject
{
    Q_OBJECT

private slots:
    void whatFollowsMovesUp_data();
    void whatFollowsMovesUp();
    void whatFollowsMovesUpInAFurtherDocument_data() { whatFollowsMovesUp_data(); }
    void whatFollowsMovesUpInAFurtherDocument();
    void chainsStayWithTheirPages_data() { whatFollowsMovesUp_data(); }
    void chainsStayWithTheirPages();
    void oneHeadForSeveralFollowers();
    void secondOfTwoFollowersStays();
    void sharedFollowersStayAsTheyAre();
    void sharedListsOfFollowers();
    void ringsEnd_data();
    void ringsEnd();
    void longChainsEnd_data();
    void longChainsEnd();
    void brokenEntriesOfAFurtherDocument_data();
    void brokenEntriesOfAFurtherDocument();
    void brokenEntriesOfMain_data();
    void brokenEntriesOfMain();
    void brokenNumbersOfMain();
    void openingWithoutAKind();
    void pagesOutsideThePageTree_data();
    void pagesOutsideThePageTree();
    void namesAndStringsOfOneSpelling();
    void namesAndStringsOfOneSpellingInAFurtherDocument();
    void namesThatOnlyTheOtherPlaceHas();
};

void TestFidelityActionChains::whatFollowsMovesUp_data()
{
    QTest::addColumn<Bytes>("place");
    QTest::addColumn<Bytes>("action");
    QTest::addColumn<QStringList>("all");
    const QList<std::tuple<Bytes, Bytes, QStringList>> chains{
        {"one", toThird("/Next " + web("a")), {u"@"_s, u"a"_s}},
        {"list of one", toThird("/Next [" + web("a") + ']'), {u"@"_s, u"a"_s}},
        {"list", toThird("/Next [" + web("a") + web("b") + ']'), {u"@"_s, u"a"_s, u"b"_s}},
        {"list of three",
         toThird("/Next [" + web("a") + web("b") + web("c") + ']'),
         {u"@"_s, u"a"_s, u"b"_s, u"c"_s}},
        {"list whose first goes on",
         toThird("/Next [" + web("a", "/Next " + web("b")) + web("c") + ']'),
         {u"@"_s, u"a"_s, u"b"_s, u"c"_s}},
        {"list whose first goes on with a list",
         toThird("/Next [" + web("a", "/Next [" + web("b") + web("c") + ']') + web("d") + ']'),
         {u"@"_s, u"a"_s, u"b"_s, u"c"_s, u"d"_s}},
        {"two behind each other",
         toThird("/Next " + toThird("/Next " + web("a"))),
         {u"@"_s, u"@"_s, u"a"_s}},
        {"first of a list",
         web("a", "/Next [" + toThird() + web("b") + ']'),
         {u"a"_s, u"@"_s, u"b"_s}},
        {"last of a list",
         web("a", "/Next [" + web("b") + toThird() + ']'),
         {u"a"_s, u"b"_s, u"@"_s}},
        {"within a list, with followers",
         web("a", "/Next [" + web("b") + toThird("/Next [" + web("c") + web("d") + ']') + web("e") +
                      ']'),
         {u"a"_s, u"b"_s, u"@"_s, u"c"_s, u"d"_s, u"e"_s}},
        {"the only follower", web("a", "/Next " + toThird()), {u"a"_s, u"@"_s}},
    };
    for (const char *place : {"link", "trigger", "page", "entry", "opening"}) {
        for (const auto &[name, action, all] : chains) {
            QTest::addRow("%s, %s", place, name.constData()) << Bytes(place) << action << all;
        }
    }
}

void TestFidelityActionChains::whatFollowsMovesUp()
{
    QFETCH(Bytes, place);
    QFETCH(Bytes, action);
    QFETCH(QStringList, all);
    FidelityCase test;
    test.add("MAIN", withAction("MAIN", place, action).file());
    all.removeAll(u"@"_s);
    const auto saved = test.save(u"M2 M1"_s);
    QCOMPARE(steps(saved->output(), actionIn(saved->output(), place, 1)), all);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityActionChains::whatFollowsMovesUpInAFurtherDocument()
{
    QFETCH(Bytes, place);
    QFETCH(Bytes, action);
    QFETCH(QStringList, all);
    if (place == "opening") {
        all.clear();
    }
    FidelityCase test;
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    test.add("MAIN", withAction("MAIN", place, action).file());
    all.removeAll(u"@"_s);
    const auto saved = test.save(u"P1 M1"_s);
    QCOMPARE(steps(saved->output(), actionIn(saved->output(), place, 1)), all);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityActionChains::chainsStayWithTheirPages()
{
    QFETCH(Bytes, place);
    QFETCH(Bytes, action);
    QFETCH(QStringList, all);
    FidelityCase test;
    test.add("MAIN", withAction("MAIN", place, action).file());
    all.replaceInStrings(u"@"_s, u"MAIN-3"_s);
    const auto saved = test.save(u"M3 M1"_s);
    QCOMPARE(steps(saved->output(), actionIn(saved->output(), place, 1)), all);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityActionChains::oneHeadForSeveralFollowers()
{
    for (const Bytes place : {"link", "entry", "opening"}) {
        FidelityCase test;
        test.add("MAIN",
                 withAction("MAIN", place, toThird("/Next [" + web("a") + web("b") + ']')).file());
        const auto saved = test.save(u"M1 M2"_s);
        QPDFObjectHandle head = actionIn(saved->output(), place, 0);
        QVERIFY(head.isDictionary());
        QCOMPARE(fidelityText(head.getKey("/URI")), u"a"_s);
        QPDFObjectHandle next = head.getKey("/Next");
        if (next.isArray()) {
            QCOMPARE(next.getArrayNItems(), 1);
            next = next.getArrayItem(0);
        }
        QVERIFY(next.isDictionary());
        QCOMPARE(fidelityText(next.getKey("/URI")), u"b"_s);
        QVERIFY(!next.hasKey("/Next"));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityActionChains::secondOfTwoFollowersStays()
{
    for (const Bytes place : {"link", "entry", "opening"}) {
        FidelityCase test;
        test.add(
            "MAIN",
            withAction("MAIN", place, web("a", "/Next [" + toThird() + web("b") + ']')).file());
        const auto saved = test.save(u"M1 M2"_s);
        QPDFObjectHandle head = actionIn(saved->output(), place, 0);
        QCOMPARE(steps(saved->output(), head), QStringList({u"a"_s, u"b"_s}));
        QVERIFY(!everythingIn(saved->output()).contains("/GoTo"));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityActionChains::sharedFollowersStayAsTheyAre()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    const Bytes link = "<< /Type /Annot /Subtype /Link /Rect [1 2 30 40] /A ";
    document.set("shared", web("shared"));
    document.set("one", link + toThird("/Next [{shared} " + web("extra") + ']') + " >>");
    document.set("two", link + web("head", "/Next {shared}") + " >>");
    document.set("three", link + "{shared} >>");
    document.addEntries("page1", "/Annots [{one} {two} {three}]");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M2 M1"_s, u"P1 M1"_s}) {
        const auto saved = test.save(list);
        const std::vector<QPDFObjectHandle> links = saved->output().annotations(1);
        QCOMPARE(links.size(), 3U);
        const auto stepsOf = [&](std::size_t index) {
            return steps(saved->output(), QPDFObjectHandle(links[index]).getKey("/A"));
        };
        QCOMPARE(stepsOf(0), QStringList({u"shared"_s, u"extra"_s}));
        QCOMPARE(stepsOf(1), QStringList({u"head"_s, u"shared"_s}));
        QCOMPARE(stepsOf(2), QStringList{u"shared"_s});
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityActionChains::sharedListsOfFollowers()
{
    // Two heads have one list, which is an object; one of them goes.
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    const Bytes link = "<< /Type /Annot /Subtype /Link /Rect [1 2 30 40] /A ";
    document.set("list", '[' + web("a") + toThird() + web("b") + ']');
    document.set("one", link + toThird("/Next {list}") + " >>");
    document.set("two", link + web("head", "/Next {list}") + " >>");
    document.addEntries("page1", "/Annots [{one} {two}]");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M2 M1"_s);
    const std::vector<QPDFObjectHandle> links = saved->output().annotations(1);
    QCOMPARE(links.size(), 2U);
    QCOMPARE(steps(saved->output(), QPDFObjectHandle(links[0]).getKey("/A")),
             QStringList({u"a"_s, u"b"_s}));
    QCOMPARE(steps(saved->output(), QPDFObjectHandle(links[1]).getKey("/A")),
             QStringList({u"head"_s, u"a"_s, u"b"_s}));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityActionChains::ringsEnd_data()
{
    using Objects = QList<std::pair<Bytes, Bytes>>;
    QTest::addColumn<Objects>("objects");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("first goes") << Objects{{"a", toThird("/Next {b}")},
                                           {"b", web("b", "/Next {a}")}}
                                << QStringList{u"b"_s};
    QTest::newRow("second goes") << Objects{{"a", web("a", "/Next {b}")},
                                            {"b", toThird("/Next {a}")}}
                                 << QStringList{u"a"_s};
    QTest::newRow("both go") << Objects{{"a", toThird("/Next {b}")}, {"b", toThird("/Next {a}")}}
                             << QStringList();
    QTest::newRow("follows itself") << Objects{{"a", toThird("/Next {a}")}} << QStringList();
    QTest::newRow("in lists") << Objects{{"a", toThird("/Next [{b} {c}]")},
                                         {"b", web("b", "/Next [{a} {b}]")},
                                         {"c", toThird("/Next [{c} {b} {a}]")}}
                              << QStringList{u"b"_s};
}

void TestFidelityActionChains::ringsEnd()
{
    using Objects = QList<std::pair<Bytes, Bytes>>;
    QFETCH(Objects, objects);
    QFETCH(QStringList, left);
    for (const Bytes place : {"link", "entry", "opening", "trigger"}) {
        FidelityAssembly document = withAction("MAIN", place, "null");
        for (const auto &[name, body] : objects) {
            document.set(name, body);
        }
        const Bytes holder = place == "opening" ? "catalogue"
                             : place == "entry" ? "item"
                                                : "annotation";
        const Bytes key = place == "opening" ? "/OpenAction " : place == "trigger" ? "/U " : "/A ";
        document.replace(holder, key + "null", key + "{a}");
        FidelityCase test;
        test.add("MAIN", document.file());
        const auto saved = test.save(u"M2 M1"_s);
        QCOMPARE(saved->output().marks().size(), 2);
        QStringList found = steps(saved->output(), actionIn(saved->output(), place, 1));
        // How often a reader comes by is up to the reader.
        found.removeDuplicates();
        QCOMPARE(found, left);
        QVERIFY(!everythingIn(saved->output()).contains("MAIN-3"));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityActionChains::longChainsEnd_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<int>("everyGone");
    for (const auto &[everyGone, gone] :
         {std::pair{kMany, "first goes"}, {2, "every second goes"}, {1, "all but the last go"}}) {
        QTest::addRow("in main, %s", gone) << u"M2 M1 M1"_s << everyGone;
        QTest::addRow("in a further document, %s", gone) << u"P1 M1 M1"_s << everyGone;
    }
}

void TestFidelityActionChains::longChainsEnd()
{
    QFETCH(QString, list);
    QFETCH(int, everyGone);
    FidelityAssembly document = withAction("MAIN", "link", "null");
    document.replace("annotation", "/A null", "/A {action0}");
    for (int i = 0; i < kMany; ++i) {
        const bool isLast = i == kMany - 1;
        const Bytes next = isLast ? Bytes() : "/Next {action" + Bytes::number(i + 1) + '}';
        document.set("action" + Bytes::number(i), !isLast && i % everyGone == 0
                                                      ? toThird(next)
                                                      : web(isLast ? "last" : "on", next));
    }
    const int gone = everyGone == 1 ? kMany - 1 : (kMany + everyGone - 1) / everyGone;
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const Outcome outcome = save(test.pages(list), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    FidelityDocument output(test.output());
    QCOMPARE(output.marks().size(), test.pages(list).size());
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        if (output.marks().at(page) != u"MAIN-1") {
            continue;
        }
        const QStringList found = steps(output, actionIn(output, "link", page));
        QCOMPARE(found.size(), kMany - gone);
        QCOMPARE(found.constLast(), u"last"_s);
    }
}

void TestFidelityActionChains::brokenEntriesOfAFurtherDocument_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::newRow("string") << Bytes("/Dest (nowhere)");
    QTest::newRow("name") << Bytes("/Dest /nowhere");
    QTest::newRow("page number") << Bytes("/Dest [77 /Fit]");
    QTest::newRow("another object") << Bytes("/Dest [{font} /Fit]");
    QTest::newRow("empty array") << Bytes("/Dest []");
    QTest::newRow("no page") << Bytes("/Dest [null /Fit]");
    QTest::newRow("number") << Bytes("/Dest 5");
    QTest::newRow("action") << Bytes("/A << /S /GoTo /D (nowhere) >>");
    QTest::newRow("action with an array") << Bytes("/A << /S /GoTo /D [77 /Fit] >>");
}

void TestFidelityActionChains::brokenEntriesOfAFurtherDocument()
{
    QFETCH(Bytes, entries);
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 2).file());
    test.add("OTHER", withEntry("OTHER", entries).file());
    for (const QString &list : {u"M1 O1 O2"_s, u"M1 M2 O1-3"_s}) {
        const auto saved = test.save(list);
        QPDFObjectHandle entry = firstEntry(saved->output());
        QVERIFY(entry.isDictionary());
        QCOMPARE(fidelityText(entry.getKey("/Title")), u"Broken"_s);
        QVERIFY(!entry.hasKey("/Dest"));
        QVERIFY(!entry.hasKey("/A"));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityActionChains::brokenEntriesOfMain_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::addColumn<QString>("list");
    for (const auto &[name, entries] : {std::pair{"string", "/Dest (nowhere)"},
                                        {"name", "/Dest /nowhere"},
                                        {"another object", "/Dest [{font} /Fit]"},
                                        {"empty array", "/Dest []"},
                                        {"no page", "/Dest [null /Fit]"},
                                        {"number", "/Dest 5"},
                                        {"action", "/A << /S /GoTo /D (nowhere) >>"}}) {
        for (const QString &list : {u"M1-3"_s, u"M3-1"_s, u"M2 M1"_s}) {
            QTest::addRow("%s, %s", name, qPrintable(list)) << Bytes(entries) << list;
        }
    }
    QTest::newRow("page number") << Bytes("/Dest [77 /Fit]") << u"M1-3"_s;
    QTest::newRow("action with a page number")
        << Bytes("/A << /S /GoTo /D [77 /Fit] >>") << u"M1-3"_s;
}

void TestFidelityActionChains::brokenNumbersOfMain()
{
    // Among other pages a number could mean one of them.
    for (const Bytes entries : {"/Dest [77 /Fit]", "/A << /S /GoTo /D [77 /Fit] >>"}) {
        FidelityCase test;
        test.add("MAIN", withEntry("MAIN", entries).file());
        test.add("OTHER", FidelityFixture::plain("OTHER", 80).file());
        for (const QString &list : {u"M3-1"_s, u"M2 M1"_s, u"M1-3 O1-80"_s}) {
            const auto saved = test.save(list);
            QPDFObjectHandle entry = firstEntry(saved->output());
            QVERIFY(!entry.hasKey("/Dest"));
            QVERIFY(!entry.hasKey("/A"));
            QVERIFY(!fidelityText(entry.getKey("/Title")).isEmpty());
            NO_PROBLEMS(FidelitySoundness::problems(test.output()));
        }
    }
}

void TestFidelityActionChains::brokenEntriesOfMain()
{
    QFETCH(Bytes, entries);
    QFETCH(QString, list);
    FidelityCase test;
    test.add("MAIN", withEntry("MAIN", entries).file());
    FidelityDocument source(test.path('M'));
    const Bytes before = source.describe(firstEntry(source));
    const auto saved = test.save(list);
    QCOMPARE(saved->output().describe(firstEntry(saved->output())), before);
    NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
}

void TestFidelityActionChains::openingWithoutAKind()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/OpenAction << /D [{page3} /Fit] >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto without = test.save(u"M2 M1"_s);
    QVERIFY(!without->output().catalogue().hasKey("/OpenAction"));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    const auto with = test.save(u"M2 M3"_s);
    QPDFObjectHandle opening = with->output().catalogue().getKey("/OpenAction");
    QVERIFY(opening.isDictionary());
    QCOMPARE(with->output().targetOfDestination(opening.getKey("/D")).mark, u"MAIN-3"_s);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityActionChains::pagesOutsideThePageTree_data()
{
    QTest::addColumn<Bytes>("object");
    QTest::addColumn<Bytes>("entries");
    const Bytes array = "[{stray} /Fit]";
    const Bytes outline = "/Outlines << /First {item} /Last {item} /Count 1 >>";
    QTest::newRow("link") << Bytes("annotation") << "/Subtype /Link /Dest " + array;
    QTest::newRow("action") << Bytes("annotation")
                            << "/Subtype /Link /A << /S /GoTo /D " + array + " >>";
    QTest::newRow("trigger") << Bytes("annotation")
                             << "/Subtype /Square /AA << /U << /S /GoTo /D " + array + " >> >>";
    QTest::newRow("outline entry") << Bytes("item") << "/Dest " + array;
    QTest::newRow("opening") << Bytes("catalogue") << "/OpenAction " + array;
    QTest::newRow("old name") << Bytes("catalogue") << "/Dests << /stray " + array + " >>";
    QTest::newRow("name") << Bytes("catalogue")
                          << "/Names << /Dests << /Names [(stray) " + array + "] >> >>";
}

void TestFidelityActionChains::pagesOutsideThePageTree()
{
    QFETCH(Bytes, object);
    QFETCH(Bytes, entries);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.set("stray", "<< /Type /Page /MediaBox [0 0 300 400] /Contents {strayContent} "
                          "/Resources << /Font << /F1 {font} >> >> >>");
    document.setStream("strayContent", {}, "BT /F1 24 Tf 30 250 Td (STRAYED) Tj ET");
    document.addEntries("page1", "/Annots [{annotation}]");
    document.set("annotation", "<< /Type /Annot /Rect [1 2 30 40] >>");
    document.set("item", "<< /Title (Stray) /Parent {outline} >>");
    document.set("outline", "<< /Type /Outlines /First {item} /Last {item} /Count 1 >>");
    if (object == "item") {
        document.addEntries("catalogue", "/Outlines {outline}");
    }
    document.addEntries(object, entries);
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M2 M1"_s, u"M1"_s}) {
        const auto saved = test.save(list);
        QVERIFY(!everythingIn(saved->output()).contains("STRAYED"));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
    for (const QString &list : {u"M1-3"_s, u"M3-1"_s}) {
        const auto saved = test.save(list);
        QVERIFY(everythingIn(saved->output()).contains("STRAYED"));
        NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
    }
}

namespace {

/// Page 3 has two links, by the name and by the string "same", which mean pages 1 and 2.
FidelityAssembly withEqualSpelling(const Bytes &prefix)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 3);
    document.addEntries("catalogue", "/Dests << /same [{page1} /Fit] >> /Names << /Dests << "
                                     "/Names [(same) [{page2} /Fit]] >> >>");
    const Bytes link = "<< /Type /Annot /Subtype /Link /Rect [1 2 30 40] /Dest ";
    document.addEntries("page3", "/Annots [{byName} {byString}]");
    document.set("byName", link + "/same >>");
    document.set("byString", link + "(same) >>");
    return document;
}

QStringList targets(FidelityDocument &document, qsizetype page)
{
    QStringList marks;
    for (const QPDFObjectHandle &annotation : document.annotations(page)) {
        marks.append(document.targetOf(annotation).mark);
    }
    return marks;
}

} // namespace

void TestFidelityActionChains::namesAndStringsOfOneSpelling()
{
    FidelityCase test;
    test.add("MAIN", withEqualSpelling("MAIN").file());
    const auto all = test.save(u"M3 M2 M1"_s);
    QCOMPARE(targets(all->output(), 0), QStringList({u"MAIN-1"_s, u"MAIN-2"_s}));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    const auto second = test.save(u"M2 M3"_s);
    QCOMPARE(targets(second->output(), 1), QStringList{u"MAIN-2"_s});
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    const auto first = test.save(u"M1 M3"_s);
    QCOMPARE(targets(first->output(), 1), QStringList{u"MAIN-1"_s});
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityActionChains::namesAndStringsOfOneSpellingInAFurtherDocument()
{
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 1).file());
    test.add("OTHER", withEqualSpelling("OTHER").file());
    const auto all = test.save(u"M1 O3 O2 O1"_s);
    QCOMPARE(targets(all->output(), 1), QStringList({u"OTHER-1"_s, u"OTHER-2"_s}));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    const auto first = test.save(u"M1 O1 O3"_s);
    QCOMPARE(targets(first->output(), 2), QStringList{u"OTHER-1"_s});
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityActionChains::namesThatOnlyTheOtherPlaceHas()
{
    // The place that comes first does not have it, so the other one counts.
    FidelityAssembly document = withEqualSpelling("OTHER");
    document.replace("catalogue", "/same", "/old");
    document.replace("catalogue", "(same)", "(new)");
    document.replace("byName", "/same", "/new");
    document.replace("byString", "(same)", "(old)");
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 1).file());
    test.add("OTHER", document.file());
    const auto saved = test.save(u"M1 O1-3"_s);
    QCOMPARE(targets(saved->output(), 3), QStringList({u"OTHER-2"_s, u"OTHER-1"_s}));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

QTEST_GUILESS_MAIN(TestFidelityActionChains)
#include "tst_fidelity_action_chains.moc"
