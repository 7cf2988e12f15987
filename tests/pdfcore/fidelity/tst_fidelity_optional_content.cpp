// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

constexpr QSize kSize(300, 400);

/// A page with two content groups: one fills the left half, one the right half.
FidelityAssembly withOptionalContent(const Bytes &prefix, const Bytes &settings)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 2);
    document.addEntries("catalogue", "/OCProperties {settings}");
    document.set("settings", "<< /OCGs [{left} {right}] /D << " + settings + " >> >>");
    document.set("left", "<< /Type /OCG /Name (" + prefix + " left) >>");
    document.set("right", "<< /Type /OCG /Name (" + prefix + " right) >>");
    document.replace("page1", "/Font", "/Properties << /A {left} /B {right} >> /Font");
    document.setStream("content1", {},
                       "BT /F1 24 Tf 30 250 Td (" + prefix +
                           "-1) Tj ET /OC /A BDC 0 1 0 rg 0 0 150 400 re f EMC /OC /B BDC 0 0 1 "
                           "rg 150 0 150 400 re f EMC\n");
    return document;
}

QColor pixel(const PdfSourcePage &page, int x)
{
    return render(page, kSize).image.pixelColor(x, 20);
}

} // namespace

/// Optional content after a save.
class TestFidelityOptionalContent : public QObject
{
    Q_OBJECT

private slots:
    void optionalContentStays_data() { FidelityCase::addLists(); }
    void optionalContentStays();
    void settingsOfMainStay();
    void foreignOptionalContentStaysAsItWas_data();
    void foreignOptionalContentStaysAsItWas();
    void foreignContentGroupsOnly();
    void copiesShareTheirContentGroups();
};

void TestFidelityOptionalContent::optionalContentStays()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    NO_PROBLEMS(test.save(list)->contentGroupProblems());
}

void TestFidelityOptionalContent::settingsOfMainStay()
{
    FidelityCase test;
    test.add("MAIN",
             withOptionalContent("MAIN", "/Name (usual) /Creator (maker) /OFF [{right}] /Order "
                                         "[{right} [(group) {left}]] /RBGroups [[{left} {right}]] "
                                         "/Locked [{left}] /ListMode /VisiblePages")
                 .file());
    test.add("OTHER", withOptionalContent("OTHER", "/OFF [{left}]").file());
    FidelityDocument source(test.path('M'));
    const auto saved = test.save(u"M2 M1 O1"_s);
    QPDFObjectHandle found = saved->output().catalogue().getKey("/OCProperties");
    QVERIFY(found.isDictionary());
    QPDFObjectHandle wanted = source.catalogue().getKey("/OCProperties");
    for (const char *key : {"/Name", "/Creator", "/RBGroups", "/Locked", "/ListMode"}) {
        QCOMPARE(saved->output().describe(found.getKey("/D").getKey(key)),
                 source.describe(wanted.getKey("/D").getKey(key)));
    }
    // The content groups of the other document may follow.
    const Bytes order = source.describe(wanted.getKey("/D").getKey("/Order")).chopped(1);
    QVERIFY(saved->output().describe(found.getKey("/D").getKey("/Order")).startsWith(order));
}

void TestFidelityOptionalContent::foreignOptionalContentStaysAsItWas_data()
{
    QTest::addColumn<Bytes>("ofMain");
    QTest::addColumn<Bytes>("foreign");
    const QList<std::pair<const char *, Bytes>> settings{
        {"nothing said", ""},
        {"right off", "/OFF [{right}]"},
        {"left off", "/OFF [{left}] /ON [{right}]"},
        {"off but right", "/BaseState /OFF /ON [{right}]"},
        {"all off", "/BaseState /OFF"},
        {"both lists", "/ON [{left}] /OFF [{right}]"},
    };
    for (const auto &[mainName, ofMain] : settings) {
        for (const auto &[foreignName, foreign] : settings) {
            QTest::addRow("%s, %s", mainName, foreignName) << ofMain << foreign;
        }
    }
}

void TestFidelityOptionalContent::foreignOptionalContentStaysAsItWas()
{
    QFETCH(Bytes, ofMain);
    QFETCH(Bytes, foreign);
    FidelityCase test;
    test.add("MAIN", withOptionalContent("MAIN", ofMain).file());
    test.add("OTHER", withOptionalContent("OTHER", foreign).file());
    const auto saved = test.save(u"M1 O1"_s);
    NO_PROBLEMS(saved->contentGroupProblems());
    for (const int x : {75, 225}) {
        COMPARE_COLOUR(pixel(filePage(test.output(), 0), x), pixel(filePage(test.path('M'), 0), x),
                       1);
        COMPARE_COLOUR(pixel(filePage(test.output(), 1), x), pixel(filePage(test.path('O'), 0), x),
                       1);
    }
}

void TestFidelityOptionalContent::foreignContentGroupsOnly()
{
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 2).file());
    test.add("OTHER", withOptionalContent("OTHER", "/OFF [{left}]").file());
    const auto saved = test.save(u"M1 O1 M2"_s);
    NO_PROBLEMS(saved->contentGroupProblems());
    COMPARE_COLOUR(pixel(filePage(test.output(), 1), 75), QColor(Qt::white), 1);
    COMPARE_COLOUR(pixel(filePage(test.output(), 1), 225), QColor(Qt::blue), 1);
}

void TestFidelityOptionalContent::copiesShareTheirContentGroups()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M1 O1 M1 O1 O2"_s);
    NO_PROBLEMS(saved->contentGroupProblems());
    QPDFObjectHandle properties = saved->output().catalogue().getKey("/OCProperties");
    QVERIFY(properties.isDictionary());
    QPDFObjectHandle contentGroups = properties.getKey("/OCGs");
    QCOMPARE(contentGroups.getArrayNItems(), 4);
}

QTEST_GUILESS_MAIN(TestFidelityOptionalContent)
#include "tst_fidelity_optional_content.moc"
