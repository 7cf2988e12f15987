// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

const Bytes kWidget = "/Type /Annot /Subtype /Widget /Rect [1 2 30 40] ";

/// Two pages with the objects a and b as annotations of the first and c as one of the second.
FidelityAssembly withForm(const Bytes &form)
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("catalogue", "/AcroForm {form}");
    document.addEntries("page1", "/Annots [{a} {b}]");
    document.addEntries("page2", "/Annots [{c}]");
    document.set("form", form);
    for (const char *name : {"a", "b", "c"}) {
        document.set(name, "<< " + kWidget + "/FT /Tx /T (" + name + ") /V (" + name + ") >>");
    }
    return document;
}

} // namespace

/// Forms that are not what they should be.
class TestFidelityFormsHostile : public QObject
{
    Q_OBJECT

private slots:
    void brokenFormsGiveSoundFiles_data();
    void brokenFormsGiveSoundFiles();
    void widgetsWithoutAFormStay();
    void fieldsThatTheFormForgot();
    void deepHierarchyEnds();
    void namesWithFullStops();
    void fieldsWithoutNames();
    void fieldsThatAFurtherFormForgot();
    void formWithoutDefaultsJoinsOneWithDefaults();
    void widgetsWithoutAFormJoinAForm();
    void formWithoutASoundFieldStays();
};

void TestFidelityFormsHostile::brokenFormsGiveSoundFiles_data()
{
    using Objects = QList<std::pair<Bytes, Bytes>>;
    QTest::addColumn<Bytes>("form");
    QTest::addColumn<Objects>("objects");
    const Bytes usual = "<< /Fields [{a} {b} {c}] >>";
    const auto row = [](const char *name, const Bytes &form, const Objects &objects) {
        QTest::newRow(name) << form << objects;
    };
    row("form is a number", "5", {});
    row("fields are a dictionary", "<< /Fields << /A {a} >> >>", {});
    row("fields of other kinds", "<< /Fields [5 null (a) {a} [{b}] {page1} {catalogue} {c}] >>",
        {});
    row("field comes twice", "<< /Fields [{a} {a} {b} {c} {b}] >>", {});
    row("kids of itself", usual, {{"a", "<< " + kWidget + "/T (a) /FT /Tx /Kids [{a}] >>"}});
    row("parent is itself", usual, {{"a", "<< " + kWidget + "/T (a) /FT /Tx /Parent {a} >>"}});
    row("parents in a ring", "<< /Fields [{b}] >>",
        {{"a", "<< " + kWidget + "/T (a) /FT /Tx /Parent {b} /Kids [{b}] >>"},
         {"b", "<< " + kWidget + "/T (b) /FT /Tx /Parent {a} /Kids [{a}] >>"}});
    row("kids that do not know their parent", "<< /Fields [{top}] >>",
        {{"top", "<< /T (top) /FT /Tx /V (v) /Kids [{a} {b} {c}] >>"}});
    row("parents that do not know their kids", "<< /Fields [{top}] >>",
        {{"top", "<< /T (top) /FT /Tx /V (v) /Kids [] >>"},
         {"a", "<< " + kWidget + "/T (a) /Parent {top} >>"}});
    row("two parents", "<< /Fields [{top} {other}] >>",
        {{"top", "<< /T (top) /FT /Tx /Kids [{a} {b}] >>"},
         {"other", "<< /T (other) /FT /Tx /Kids [{b} {c}] >>"},
         {"b", "<< " + kWidget + "/T (b) /Parent {top} >>"}});
    row("parent is a page", usual, {{"a", "<< " + kWidget + "/T (a) /FT /Tx /Parent {page1} >>"}});
    row("order of other kinds", "<< /Fields [{a} {b} {c}] /CO [5 null {page1} {a} {a} {none}] >>",
        {{"none", "<< /T (none) /FT /Tx >>"}});
    row("fonts of other kinds", "<< /Fields [{a} {b} {c}] /DR 5 /DA 6 >>",
        {{"a", "<< " + kWidget + "/FT /Tx /T 7 /DA (/ Tf ((( ) >>"}});
    row("widgets in the form only", "<< /Fields [{a} {b} {c} {lost}] >>",
        {{"lost", "<< " + kWidget + "/T (lost) /FT /Tx /P {page1} >>"}});
    row("form in a ring", "<< /Fields {fields} >>", {{"fields", "[{a} {b} {c} {fields}]"}});
}

void TestFidelityFormsHostile::brokenFormsGiveSoundFiles()
{
    using Objects = QList<std::pair<Bytes, Bytes>>;
    QFETCH(Bytes, form);
    QFETCH(Objects, objects);
    FidelityAssembly document = withForm(form);
    for (const auto &[name, body] : objects) {
        document.set(name, body);
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("OTHER", document.file());
    for (const QString &list :
         {u"M1 M2"_s, u"M2 M1"_s, u"M1"_s, u"M2"_s, u"M1 M1"_s, u"M1 O1 O2"_s}) {
        const EngineCalls::Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), test.pages(list).size());
        NO_PROBLEMS(FidelitySoundness::pageProblems(output));
    }
}

void TestFidelityFormsHostile::widgetsWithoutAFormStay()
{
    FidelityAssembly document = withForm("<< /Fields [] >>");
    document.replace("catalogue", "/AcroForm {form}", {});
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M2 M1"_s);
    QCOMPARE(saved->output().annotations(1).size(), 2U);
    NO_PROBLEMS(saved->annotationProblems());
}

void TestFidelityFormsHostile::fieldsThatTheFormForgot()
{
    FidelityCase test;
    test.add("MAIN", withForm("<< /Fields [{a}] >>").file());
    const auto saved = test.save(u"M2 M1"_s);
    QCOMPARE(saved->output().annotations(0).size(), 1U);
    QCOMPARE(saved->output().annotations(1).size(), 2U);
    for (const QString &name : {u"a"_s, u"b"_s}) {
        bool isFound = false;
        for (const FidelityWidget &widget : FidelityFields::onPage(saved->output(), 1)) {
            isFound = isFound || widget.fullName == name;
        }
        QVERIFY2(isFound, qPrintable(name));
    }
}

void TestFidelityFormsHostile::deepHierarchyEnds()
{
    constexpr int kDepth = 20'000;
    FidelityAssembly document = withForm("<< /Fields [{level0} {c}] >>");
    for (int i = 0; i < kDepth; ++i) {
        const Bytes kid = i < kDepth - 1 ? "level" + Bytes::number(i + 1) : Bytes("a");
        document.set("level" + Bytes::number(i),
                     "<< /T (" + Bytes::number(i) + ") /Kids [{" + kid + "}] " +
                         (i > 0 ? Bytes("/Parent {level" + Bytes::number(i - 1) + '}') : Bytes()) +
                         " >>");
    }
    document.addEntries("a", "/Parent {level" + Bytes::number(kDepth - 1) + '}');
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1 M2"_s, u"M2"_s, u"M2 M1 M1"_s}) {
        const EngineCalls::Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), test.pages(list).size());
    }
}

void TestFidelityFormsHostile::namesWithFullStops()
{
    FidelityAssembly document = withForm("<< /Fields [{a} {b} {c}] >>");
    document.replace("a", "/T (a)", "/T (x.y)");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M2 M1 M1"_s);
    QCOMPARE(FidelityFields::onPage(saved->output(), 1).size(), 2);
    QCOMPARE(FidelityFields::onPage(saved->output(), 1).constFirst().value, Bytes("(a)"));
    QCOMPARE(FidelityFields::onPage(saved->output(), 2).constFirst().value, Bytes("(a)"));
}

void TestFidelityFormsHostile::fieldsWithoutNames()
{
    FidelityAssembly document = withForm("<< /Fields [{a} {b} {c}] >>");
    document.replace("a", "/T (a)", {});
    document.replace("b", "/T (b)", "/T ()");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("OTHER", document.file());
    for (const QString &list : {u"M1 M2"_s, u"M2 M1 M1"_s, u"M1 O1"_s}) {
        const EngineCalls::Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        FidelityDocument output(test.output());
        const qsizetype page = output.marks().indexOf(u"MAIN-1"_s);
        const QList<FidelityWidget> widgets = FidelityFields::onPage(output, page);
        QCOMPARE(widgets.size(), 2);
        QCOMPARE(widgets.at(0).value, Bytes("(a)"));
        QCOMPARE(widgets.at(1).value, Bytes("(b)"));
    }
}

void TestFidelityFormsHostile::fieldsThatAFurtherFormForgot()
{
    FidelityAssembly other = withForm("<< /Fields [null] /DR << /Font << /F9 {font} >> >> >>");
    other.set("top", "<< /T (top) /FT /Tx /V (v) >>");
    other.set("b", "<< " + kWidget + "/Parent {top} /DA (/F9 10 Tf) >>");
    FidelityCase test;
    test.add("MAIN", withForm("<< /Fields [{a} {b} {c}] /DR << /Font << >> >> >>").file());
    test.add("OTHER", other.file());
    const auto saved = test.save(u"M1 M2 O1"_s);
    NO_PROBLEMS(saved->pageProblems());
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    const QList<FidelityWidget> widgets = FidelityFields::onPage(saved->output(), 2);
    QCOMPARE(widgets.size(), 2);
    QCOMPARE(widgets.at(0).fullName, u"a_2"_s);
    QCOMPARE(widgets.at(1).fullName, u"top"_s);
    QCOMPARE(widgets.at(1).value, Bytes("(v)"));
    QVERIFY2(widgets.at(1).hasFont(), widgets.at(1).font.constData());
}

void TestFidelityFormsHostile::formWithoutDefaultsJoinsOneWithDefaults()
{
    FidelityCase test;
    test.add("MAIN", withForm("<< /Fields [{a} {b} {c}] /DA (/Cour 30 Tf 1 0 0 rg) >>").file());
    FidelityAssembly other = withForm("<< /Fields [{a} {b} {c}] >>");
    other.addEntries("b", "/DA (/Helv 8 Tf)");
    test.add("OTHER", other.file());
    const auto saved = test.save(u"M1 O1"_s);
    NO_PROBLEMS(saved->fieldProblems());
    const auto appearanceOf = [&](qsizetype page, std::size_t number) {
        return saved->output().annotations(page).at(number).getKey("/DA").unparse();
    };
    QCOMPARE(appearanceOf(0, 0), std::string("null"));
    QCOMPARE(appearanceOf(1, 0), std::string("()"));
    QCOMPARE(appearanceOf(1, 1), std::string("(/Helv 8 Tf)"));
}

void TestFidelityFormsHostile::widgetsWithoutAFormJoinAForm()
{
    FidelityAssembly other = withForm("<< /Fields [] >>");
    other.replace("catalogue", "/AcroForm {form}", {});
    FidelityCase test;
    test.add("MAIN", withForm("<< /Fields [{a} {b} {c}] /DA (/Cour 30 Tf 1 0 0 rg) >>").file());
    test.add("OTHER", other.file());
    const auto saved = test.save(u"M1 M2 O1 O2"_s);
    NO_PROBLEMS(saved->annotationProblems());
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    QCOMPARE(saved->output().annotations(2).front().getKey("/DA").unparse(), std::string("()"));
    QCOMPARE(FidelityFields::onPage(saved->output(), 2).constFirst().fullName, u"a_2"_s);
    QCOMPARE(FidelityFields::onPage(saved->output(), 3).constFirst().fullName, u"c_2"_s);
}

void TestFidelityFormsHostile::formWithoutASoundFieldStays()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("catalogue", "/AcroForm << /Fields [null 5] /DA (/F1 9 Tf) >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    QPDFObjectHandle form = test.save(u"M2 M1"_s)->output().catalogue().getKey("/AcroForm");
    QVERIFY(form.isDictionary());
    QCOMPARE(form.getKey("/DA").getStringValue(), std::string("/F1 9 Tf"));
}

QTEST_GUILESS_MAIN(TestFidelityFormsHostile)
#include "tst_fidelity_forms_hostile.moc"
