// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

// Enough for a way down by recursion to leave the stack; a way that is quadratic runs out of time.
constexpr int kMany = 30'000;

using Bytes = QByteArray;

Bytes item(int index)
{
    return "{item" + Bytes::number(index) + '}';
}

/// Three pages and an outline whose root has the given entries.
FidelityAssembly withOutline(const Bytes &root)
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/Outlines {outline}");
    document.set("outline", "<< /Type /Outlines " + root + " >>");
    return document;
}

void addItem(FidelityAssembly &document, int index, const Bytes &entries)
{
    const Bytes page = Bytes::number(index % 3 + 1);
    document.set("item" + Bytes::number(index), "<< /Title (" + Bytes::number(index) +
                                                    ") /Dest [{page" + page + "} /Fit] " + entries +
                                                    " >>");
}

/// Entries of the outline, counted once each, without recursion.
qsizetype countEntries(FidelityDocument &document)
{
    std::set<QPDFObjGen> seen;
    std::vector<QPDFObjectHandle> waiting{document.catalogue().getKey("/Outlines")};
    qsizetype count = -1;
    while (!waiting.empty()) {
        QPDFObjectHandle entry = waiting.back();
        waiting.pop_back();
        if (!entry.isDictionary() || !seen.insert(entry.getObjGen()).second) {
            continue;
        }
        ++count;
        waiting.push_back(entry.getKey("/Next"));
        waiting.push_back(entry.getKey("/First"));
    }
    return std::max<qsizetype>(count, 0);
}

} // namespace

/// Outlines that no reader can trust.
class TestFidelityOutlineHostile : public QObject
{
    Q_OBJECT

private slots:
    void brokenOutlinesGiveSoundFiles_data();
    void brokenOutlinesGiveSoundFiles();
    void longOutlineStays();
    void deepOutlineEnds();
    void manyEntriesOnEveryLevelEnd();
    void deepOutlineOfPagesThatAreGone();
    void loopOfNames();
};

void TestFidelityOutlineHostile::brokenOutlinesGiveSoundFiles_data()
{
    QTest::addColumn<Bytes>("root");
    QTest::addColumn<QList<Bytes>>("items");
    const Bytes two = "/First {item0} /Last {item1}";
    const auto row = [](const char *name, const Bytes &root, const QList<Bytes> &items) {
        QTest::newRow(name) << root << items;
    };
    row("next is itself", two, {"/Next {item0}", ""});
    row("next is an earlier one", two,
        {"/Next {item1} /Parent {outline}", "/Next {item0} /Parent {outline} /Prev {item0}"});
    row("first is itself", two, {"/First {item0} /Last {item0} /Next {item1} /Count 1", ""});
    row("first is the parent", two,
        {"/Next {item1}", "/Prev {item0} /First {item0} /Last {item0} /Count 1"});
    row("first is the root", two, {"/Next {item1} /First {outline} /Last {outline}", ""});
    row("one child of two parents", two,
        {"/Next {item1} /First {item2} /Last {item2}", "/First {item2} /Last {item2}", ""});
    row("no last one", "/First {item0}", {"/Next {item1}", ""});
    row("wrong last one", "/First {item0} /Last {item0}", {"/Next {item1}", ""});
    row("wrong counts", two + " /Count 9999999999",
        {"/Next {item1} /Count -77 /Parent {item1}", "/Count (many)"});
    row("no first one", "/Last {item0}", {""});
    row("first is a number", "/First 5 /Last 6", {});
    row("next is a page", two, {"/Next {page1}", ""});
    row("next is the catalogue", two, {"/Next {catalogue}", ""});
    row("first is a stream", "/First {content1} /Last {content1}", {});
    row("root is an entry", "/First {outline} /Last {outline} /Title (root)", {});
    row("entries in the root itself", "/First << /Title (direct) >> /Last << /Title (direct) >>",
        {});
    row("titles of other kinds", two,
        {"/Next {item1} /Title 5 /C (red) /F /Bold", "/Title [(a) (b)] /C [1] /F -1"});
    row("destinations of other kinds", two,
        {"/Next {item1} /Dest 5 /A 6", "/Dest [] /A << /S /GoTo /D << /D << /D (a) >> >> >>"});
    row("destination of another kind of object", two,
        {"/Next {item1} /Dest [{catalogue} /Fit]", "/Dest [{outline} /Fit]"});
    row("page numbers out of range", two,
        {"/Next {item1} /Dest [-1 /Fit]", "/Dest [99999999999 /Fit]"});
    row("action that follows itself", two,
        {"/Next {item1} /A {item2}", "", "/S /GoTo /D [{page1} /Fit] /Next {item2}"});
}

void TestFidelityOutlineHostile::brokenOutlinesGiveSoundFiles()
{
    QFETCH(Bytes, root);
    QFETCH(QList<Bytes>, items);
    FidelityAssembly document = withOutline(root);
    for (int i = 0; i < items.size(); ++i) {
        addItem(document, i, "");
        // Entries of the row take the place of the usual ones.
        const Bytes own = items.at(i);
        if (own.contains("/Title")) {
            document.replace("item" + Bytes::number(i), "/Title (" + Bytes::number(i) + ')', {});
        }
        if (own.contains("/Dest") || own.contains("/A ")) {
            document.replace("item" + Bytes::number(i),
                             "/Dest [{page" + Bytes::number(i + 1) + "} /Fit]", {});
        }
        document.addEntries("item" + Bytes::number(i), own);
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1-3"_s, u"M3-1"_s, u"M2 M2"_s}) {
        const Outcome saved = save(test.pages(list), test.output());
        QVERIFY2(saved.ok, qPrintable(saved.message));
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), test.pages(list).size());
        QVERIFY(countEntries(output) < 20);
        // An entry without a destination of sense may stay as it is; the rest must be right.
        QStringList problems = FidelitySoundness::problems(test.output());
        problems.removeIf(
            [](const QString &problem) { return problem.endsWith(u"leads to no page"_s); });
        NO_PROBLEMS(problems);
    }
}

void TestFidelityOutlineHostile::longOutlineStays()
{
    FidelityAssembly document = withOutline("/First {item0} /Last " + item(kMany - 1));
    for (int i = 0; i < kMany; ++i) {
        addItem(document, i,
                "/Parent {outline}" + (i > 0 ? Bytes(" /Prev " + item(i - 1)) : Bytes()) +
                    (i < kMany - 1 ? Bytes(" /Next " + item(i + 1)) : Bytes()));
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    const Outcome saved = save(test.pages(u"M3-1"_s), test.output());
    QVERIFY2(saved.ok, qPrintable(saved.message));
    FidelityDocument output(test.output());
    QCOMPARE(countEntries(output), kMany);
}

void TestFidelityOutlineHostile::deepOutlineEnds()
{
    FidelityAssembly document = withOutline("/First {item0} /Last {item0}");
    for (int i = 0; i < kMany; ++i) {
        addItem(document, i,
                (i > 0 ? Bytes("/Parent " + item(i - 1)) : Bytes("/Parent {outline}")) +
                    (i < kMany - 1 ? Bytes(" /First " + item(i + 1) + " /Last " + item(i + 1))
                                   : Bytes()));
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1-3"_s, u"M3-1"_s}) {
        const Outcome saved = save(test.pages(list), test.output());
        QVERIFY2(saved.ok, qPrintable(saved.message));
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), 3);
        QVERIFY(countEntries(output) > 0);
    }
}

void TestFidelityOutlineHostile::manyEntriesOnEveryLevelEnd()
{
    // A binary tree that is not one: both links of each entry lead to the next two entries.
    constexpr int kEntries = 200;
    FidelityAssembly document = withOutline("/First {item0} /Last {item0}");
    for (int i = 0; i < kEntries + 2; ++i) {
        addItem(document, i,
                i < kEntries ? Bytes("/First " + item(i + 1) + " /Next " + item(i + 2)) : Bytes());
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    const Outcome saved = save(test.pages(u"M2 M1"_s), test.output());
    QVERIFY2(saved.ok, qPrintable(saved.message));
    FidelityDocument output(test.output());
    QVERIFY(countEntries(output) <= kEntries + 2);
}

void TestFidelityOutlineHostile::deepOutlineOfPagesThatAreGone()
{
    // Every entry but the last goes, and each passes its child on.
    FidelityAssembly document = withOutline("/First {item0} /Last {item0}");
    for (int i = 0; i < kMany; ++i) {
        const bool isLast = i == kMany - 1;
        addItem(document, i,
                isLast ? Bytes() : Bytes("/First " + item(i + 1) + " /Last " + item(i + 1)));
        if (i % 3 == 0) {
            document.replace("item" + Bytes::number(i), "{page1}", "{page2}");
        }
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    const Outcome saved = save(test.pages(u"M1"_s), test.output());
    QVERIFY2(saved.ok, qPrintable(saved.message));
    FidelityDocument output(test.output());
    QCOMPARE(countEntries(output), 0);
}

void TestFidelityOutlineHostile::loopOfNames()
{
    FidelityAssembly document = withOutline("/First {item0} /Last {item0}");
    document.set("item0", "<< /Title (0) /Parent {outline} /Dest (a) >>");
    document.addEntries("catalogue", "/Names << /Dests {names} >> /Dests << /a (a) /b /b >>");
    document.set("names", "<< /Kids [{names} {more}] >>");
    document.set("more", "<< /Limits [(a) (b)] /Names [(a) (b) (b) (a)] /Kids [{names}] >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1-3"_s, u"M3-1"_s}) {
        const Outcome saved = save(test.pages(list), test.output());
        QVERIFY2(saved.ok, qPrintable(saved.message));
    }
}

QTEST_GUILESS_MAIN(TestFidelityOutlineHostile)
#include "tst_fidelity_outline_hostile.moc"
