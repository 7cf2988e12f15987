// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"
#include "tests/support/pdf_fixture.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// Full names of all fields that have a widget on a page of the file, sorted.
QStringList fieldNames(FidelityDocument &document)
{
    QStringList names;
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        for (const FidelityWidget &widget : FidelityFields::onPage(document, i)) {
            names.append(widget.fullName);
        }
    }
    names.sort();
    names.removeDuplicates();
    return names;
}

/// The widget of the field with the given name on a page; an empty one when there is none.
FidelityWidget widgetCalled(FidelityDocument &document, qsizetype page, const QString &name)
{
    for (const FidelityWidget &widget : FidelityFields::onPage(document, page)) {
        if (widget.fullName == name) {
            return widget;
        }
    }
    return {};
}

QPDFObjectHandle form(FidelityDocument &document)
{
    return document.catalogue().getKey("/AcroForm");
}

/// A document with one text field called `name` on its first page.
FidelityAssembly withOneField(const Bytes &prefix, const Bytes &name, const Bytes &entries = {})
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 2);
    document.addEntries("catalogue", "/AcroForm {form}");
    document.set("form", "<< /Fields [{field}] /DA (/Own 9 Tf) /DR << /Font << /Own {font} >> >> "
                         ">>");
    document.addEntries("page1", "/Annots [{field}]");
    document.set("field", "<< /Type /Annot /Subtype /Widget /Rect [1 2 30 40] /FT /Tx /T (" + name +
                              ") /V (value of " + prefix + ") " + entries + " >>");
    return document;
}

} // namespace

/// Fields of forms after a save.
class TestFidelityForms : public QObject
{
    Q_OBJECT

private slots:
    void fieldsStay_data() { FidelityCase::addLists(); }
    void fieldsStay();
    void everyFieldStaysInTheForm();
    void fieldsOfPagesThatAreGone();
    void fieldOnSeveralPagesKeepsItsWidgets();
    void fieldOnSeveralPagesLosesWidgets();
    void calculationOrderStays();
    void radioButtonsStayOneGroup();
    void radioButtonsOnACopy();
    void equalNamesOfTwoDocuments();
    void equalNamesWithoutConflict();
    void threeDocumentsWithEqualNames();
    void newNamesAvoidNamesInUse();
    void formWithoutFieldsStaysUntilItLosesSome();
    void copyHasFieldsOfItsOwn();
    void copiesOfOnePageAreIndependent();
    void copyOfAFieldOnSeveralPages();
    void hybridFormStaysWithAnUnchangedList();
    void hybridFormGoesWithAChange_data();
    void hybridFormGoesWithAChange();
    void fontsOfForeignFields();
    void foreignFieldsWithoutAFontOfTheirOwn();
    void formOfAForeignDocumentOnly();
    void noFieldsLeft();
    void protectedDocument();
    void copyHasLooksOfItsOwn();
    void needForLooksOfAForeignForm_data();
    void needForLooksOfAForeignForm();
};

void TestFidelityForms::fieldsStay()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->fieldProblems());
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
}

void TestFidelityForms::everyFieldStaysInTheForm()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M8-1"_s);
    QCOMPARE(
        fieldNames(saved->output()),
        QStringList({u"agree"_s, u"choice"_s, u"colour"_s, u"jump"_s, u"name"_s, u"person.first"_s,
                     u"person.last"_s, u"shared"_s, u"signed"_s, u"total"_s}));
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
    QCOMPARE(widgetCalled(saved->output(), 7, u"name"_s).value, Bytes("(MAIN name)"));
    QVERIFY(widgetCalled(saved->output(), 7, u"name"_s).appearance.contains("(MAIN name) Tj"));
}

void TestFidelityForms::fieldsOfPagesThatAreGone()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M5 M2"_s);
    QCOMPARE(fieldNames(saved->output()),
             QStringList({u"choice"_s, u"colour"_s, u"person.first"_s, u"total"_s}));
    // Nothing of the others is left in the file.
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
    const Bytes all = saved->output().describe(form(saved->output()));
    QVERIFY(all.contains("person"));
    for (const char *gone : {"(name)", "(shared)", "(agree)", "(last)", "(jump)"}) {
        QVERIFY2(!all.contains(gone), gone);
    }
}

void TestFidelityForms::fieldOnSeveralPagesKeepsItsWidgets()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M6 M4 M1"_s);
    QCOMPARE(saved->output().marks().size(), 3);
    const FidelityWidget first = widgetCalled(saved->output(), 0, u"shared"_s);
    for (int i = 0; i < 3; ++i) {
        const FidelityWidget widget = widgetCalled(saved->output(), i, u"shared"_s);
        QCOMPARE(widget.value, Bytes("(MAIN shared)"));
        QVERIFY(widget.root == first.root);
    }
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
}

void TestFidelityForms::fieldOnSeveralPagesLosesWidgets()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M6 M2"_s);
    QCOMPARE(saved->output().marks().size(), 2);
    const FidelityWidget widget = widgetCalled(saved->output(), 0, u"shared"_s);
    QCOMPARE(widget.value, Bytes("(MAIN shared)"));
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
}

void TestFidelityForms::calculationOrderStays()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M3 M2 M1"_s);
    QCOMPARE(FidelityFields::calculationOrder(saved->output()),
             QStringList({u"total"_s, u"person.first"_s}));
    const auto without = test.save(u"M1 M3"_s);
    QCOMPARE(FidelityFields::calculationOrder(without->output()), QStringList());
    const auto two = test.save(u"M2 O2"_s);
    QCOMPARE(FidelityFields::calculationOrder(two->output()).size(), 4);
    NO_PROBLEMS(FidelityFields::problems(two->output()));
}

void TestFidelityForms::radioButtonsStayOneGroup()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M5 M3"_s);
    QCOMPARE(saved->output().marks().size(), 2);
    std::set<QPDFObjGen> groups;
    int buttons = 0;
    for (int i = 0; i < 2; ++i) {
        for (const FidelityWidget &widget : FidelityFields::onPage(saved->output(), i)) {
            if (widget.fullName == u"choice") {
                groups.insert(widget.root);
                ++buttons;
                QCOMPARE(widget.value, Bytes("/Two"));
            }
        }
    }
    QCOMPARE(buttons, 3);
    QCOMPARE(groups.size(), 1U);
}

void TestFidelityForms::radioButtonsOnACopy()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M3 M3"_s);
    QCOMPARE(saved->output().marks().size(), 2);
    std::set<QPDFObjGen> groups;
    for (int i = 0; i < 2; ++i) {
        std::set<QPDFObjGen> onPage;
        for (const FidelityWidget &widget : FidelityFields::onPage(saved->output(), i)) {
            if (widget.kind.startsWith("/Btn")) {
                onPage.insert(widget.root);
            }
        }
        QCOMPARE(onPage.size(), 1U);
        groups.insert(*onPage.begin());
    }
    QCOMPARE(groups.size(), 2U);
}

void TestFidelityForms::equalNamesOfTwoDocuments()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M1 O1"_s);
    QCOMPARE(widgetCalled(saved->output(), 0, u"name"_s).value, Bytes("(MAIN name)"));
    QList<FidelityWidget> foreign = FidelityFields::onPage(saved->output(), 1);
    QCOMPARE(foreign.size(), 2);
    QCOMPARE(foreign.at(0).value, Bytes("(OTHER name)"));
    QCOMPARE(foreign.at(1).value, Bytes("(OTHER shared)"));
    QVERIFY(foreign.at(0).fullName != u"name");
    QVERIFY(foreign.at(1).fullName != u"shared");
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
}

void TestFidelityForms::equalNamesWithoutConflict()
{
    FidelityCase test({"MAIN", "OTHER"});
    // Page 8 of the main document has none of the names of page 1 of the other one.
    const auto saved = test.save(u"M8 O1"_s);
    QCOMPARE(fieldNames(saved->output()), QStringList({u"jump"_s, u"name"_s, u"shared"_s}));
}

void TestFidelityForms::threeDocumentsWithEqualNames()
{
    FidelityCase test({"MAIN", "OTHER", "THIRD"});
    const auto saved = test.save(u"M1 O1 T1 O2 T2 M2"_s);
    QCOMPARE(fieldNames(saved->output()).size(), 12);
    NO_PROBLEMS(saved->fieldProblems());
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
}

void TestFidelityForms::formWithoutFieldsStaysUntilItLosesSome()
{
    FidelityAssembly empty = FidelityFixture::plain("MAIN", 2);
    empty.addEntries("catalogue", "/AcroForm << /Fields [] /DA (/Fa 9 Tf) >>");
    FidelityCase test;
    test.add("MAIN", empty.file());
    QVERIFY(test.save(u"M1+90 M2"_s)->output().catalogue().hasKey("/AcroForm"));
    test.add("OTHER", withOneField("OTHER", "field").file());
    QVERIFY(test.save(u"O1"_s)->output().catalogue().hasKey("/AcroForm"));
    QVERIFY(!test.save(u"O2"_s)->output().catalogue().hasKey("/AcroForm"));
}

void TestFidelityForms::newNamesAvoidNamesInUse()
{
    // Whatever a field is renamed to, a later document may have that name already.
    FidelityCase test;
    test.add("MAIN", withOneField("MAIN", "field").file());
    test.add("OTHER", withOneField("OTHER", "field").file());
    const auto first = test.save(u"M1 O1"_s);
    const QStringList names = fieldNames(first->output());
    QCOMPARE(names.size(), 2);
    const QString renamed = names.at(0) == u"field" ? names.at(1) : names.at(0);
    test.add("THIRD", withOneField("THIRD", renamed.toLatin1()).file());
    const auto saved = test.save(u"M1 O1 T1"_s);
    QCOMPARE(fieldNames(saved->output()).size(), 3);
    NO_PROBLEMS(saved->fieldProblems());
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
}

void TestFidelityForms::copyHasFieldsOfItsOwn()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M1 M2 M1"_s);
    QCOMPARE(saved->output().marks().size(), 3);
    const QList<FidelityWidget> originals = FidelityFields::onPage(saved->output(), 0);
    const QList<FidelityWidget> copies = FidelityFields::onPage(saved->output(), 2);
    QCOMPARE(originals.size(), 2);
    QCOMPARE(copies.size(), 2);
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(copies.at(i).value, originals.at(i).value);
        QCOMPARE(copies.at(i).appearance, originals.at(i).appearance);
        QVERIFY(copies.at(i).root != originals.at(i).root);
        QVERIFY(copies.at(i).fullName != originals.at(i).fullName);
    }
    QCOMPARE(originals.at(0).fullName, u"name"_s);
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
}

void TestFidelityForms::copiesOfOnePageAreIndependent()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M2 M2 O2 M2+90 O2"_s);
    QCOMPARE(saved->output().marks().size(), 5);
    std::set<QPDFObjGen> roots;
    std::set<QString> names;
    for (int i = 0; i < 5; ++i) {
        const QList<FidelityWidget> widgets = FidelityFields::onPage(saved->output(), i);
        QCOMPARE(widgets.size(), 2);
        for (const FidelityWidget &widget : widgets) {
            roots.insert(widget.root);
            names.insert(widget.fullName);
        }
    }
    QCOMPARE(roots.size(), 10U);
    QCOMPARE(names.size(), 10U);
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
}

void TestFidelityForms::copyOfAFieldOnSeveralPages()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M1 M4 M4"_s);
    QCOMPARE(saved->output().marks().size(), 3);
    const FidelityWidget first = widgetCalled(saved->output(), 0, u"shared"_s);
    const FidelityWidget second = widgetCalled(saved->output(), 1, u"shared"_s);
    QVERIFY(first.root == second.root);
    QCOMPARE(widgetCalled(saved->output(), 2, u"shared"_s).value, Bytes());
    int copies = 0;
    for (const FidelityWidget &widget : FidelityFields::onPage(saved->output(), 2)) {
        if (widget.value == "(MAIN shared)") {
            ++copies;
            QVERIFY(widget.root != first.root);
        }
    }
    QCOMPARE(copies, 1);
}

void TestFidelityForms::hybridFormStaysWithAnUnchangedList()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M1-8"_s);
    QVERIFY(form(saved->output()).isDictionary());
    QCOMPARE(fidelityData(form(saved->output()).getKey("/XFA")), Bytes("<xdp/>"));
}

void TestFidelityForms::hybridFormGoesWithAChange_data()
{
    QTest::addColumn<QString>("list");
    QTest::newRow("page gone") << u"M1-7"_s;
    QTest::newRow("order") << u"M2 M1 M3-8"_s;
    QTest::newRow("copy") << u"M1-8 M8"_s;
    QTest::newRow("blank page") << u"M1-8 _"_s;
    QTest::newRow("another document") << u"M1-8 O8"_s;
}

void TestFidelityForms::hybridFormGoesWithAChange()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    QVERIFY(form(saved->output()).isDictionary());
    NO_PROBLEMS(saved->hybridFormProblems());
    NO_PROBLEMS(saved->fieldProblems());
}

void TestFidelityForms::fontsOfForeignFields()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M1 O1 M2 O2"_s);
    QCOMPARE(saved->output().marks().size(), 4);
    for (int i = 0; i < 4; ++i) {
        const QList<FidelityWidget> widgets = FidelityFields::onPage(saved->output(), i);
        QCOMPARE(widgets.size(), 2);
        for (const FidelityWidget &widget : widgets) {
            QCOMPARE(widget.font, i % 2 == 0 ? Bytes("/Helvetica-Bold") : Bytes("/Courier"));
        }
    }
}

void TestFidelityForms::foreignFieldsWithoutAFontOfTheirOwn()
{
    // The field takes its appearance from its form, which the other form must not replace.
    FidelityAssembly foreign = withOneField("OTHER", "other");
    foreign.replace("font", "/Helvetica", "/Courier");
    foreign.replace("form", "/Own 9 Tf", "/Own 7 Tf 1 0 0 rg");
    FidelityCase test;
    test.add("MAIN", withOneField("MAIN", "field").file());
    test.add("OTHER", foreign.file());
    const auto saved = test.save(u"M1 O1"_s);
    QCOMPARE(widgetCalled(saved->output(), 0, u"field"_s).font, Bytes("/Helvetica"));
    QCOMPARE(widgetCalled(saved->output(), 1, u"other"_s).font, Bytes("/Courier"));
    QPDFObjectHandle widget = saved->output().pdf().getObjectByObjGen(
        widgetCalled(saved->output(), 1, u"other"_s).widget);
    QVERIFY(fidelityText(FidelityFields::attribute(widget, "/DA")).endsWith(u"7 Tf 1 0 0 rg"_s));
}

void TestFidelityForms::formOfAForeignDocumentOnly()
{
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 2).file());
    test.add("OTHER", withOneField("OTHER", "field").file());
    const auto saved = test.save(u"M1 O1 M2"_s);
    QCOMPARE(widgetCalled(saved->output(), 1, u"field"_s).value, Bytes("(value of OTHER)"));
    QCOMPARE(widgetCalled(saved->output(), 1, u"field"_s).font, Bytes("/Helvetica"));
    NO_PROBLEMS(saved->problems());
}

void TestFidelityForms::noFieldsLeft()
{
    FidelityCase test;
    test.add("MAIN", withOneField("MAIN", "field").file());
    const auto saved = test.save(u"M2"_s);
    NO_PROBLEMS(saved->problems());
    QVERIFY(fieldNames(saved->output()).isEmpty());
    QVERIFY(!contentOf(test.output()).contains("value of MAIN"));
}

void TestFidelityForms::protectedDocument()
{
    FidelityCase test({"MAIN"});
    test.add(
        "OTHER",
        PdfFixture::encrypted(FidelityFixture::everything("OTHER").file(), {"secret", "owner", 3}),
        u"secret"_s);
    const auto saved = test.save(u"M1-3 O1-3"_s);
    NO_PROBLEMS(saved->fieldProblems());
    NO_PROBLEMS(FidelityFields::problems(saved->output()));
}

void TestFidelityForms::copyHasLooksOfItsOwn()
{
    // Filling in one of them must not change what the other shows.
    FidelityAssembly document = withOneField("MAIN", "field", "/AP << /N {look} /D {down} >>");
    document.set("down", "<< /On {on} /Off {off} >>");
    for (const Bytes name : {"look", "on", "off"}) {
        document.setStream(name, "/Type /XObject /Subtype /Form /BBox [0 0 29 38]", name);
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M1 M2 M1"_s);
    QCOMPARE(saved->output().marks().size(), 3);
    std::set<QPDFObjGen> streams;
    for (const int page : {0, 2}) {
        QPDFObjectHandle widget = saved->output().annotations(page).at(0);
        QPDFObjectHandle looks = widget.getKey("/AP");
        for (QPDFObjectHandle look : {looks.getKey("/N"), looks.getKey("/D").getKey("/On"),
                                      looks.getKey("/D").getKey("/Off")}) {
            QVERIFY(look.isStream());
            streams.insert(look.getObjGen());
        }
        QCOMPARE(fidelityData(looks.getKey("/N")), Bytes("look"));
        QCOMPARE(fidelityData(looks.getKey("/D").getKey("/Off")), Bytes("off"));
    }
    QCOMPARE(streams.size(), 6U);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityForms::needForLooksOfAForeignForm_data()
{
    QTest::addColumn<bool>("mainHasForm");
    QTest::addColumn<Bytes>("need");
    QTest::addColumn<bool>("isNeeded");
    for (const bool mainHasForm : {false, true}) {
        const char *where = mainHasForm ? "beside a form" : "alone";
        QTest::addRow("%s, needed", where) << mainHasForm << Bytes("/NeedAppearances true") << true;
        QTest::addRow("%s, not needed", where)
            << mainHasForm << Bytes("/NeedAppearances false") << false;
        QTest::addRow("%s, not said", where) << mainHasForm << Bytes() << false;
    }
}

void TestFidelityForms::needForLooksOfAForeignForm()
{
    QFETCH(bool, mainHasForm);
    QFETCH(Bytes, need);
    QFETCH(bool, isNeeded);
    FidelityAssembly foreign = withOneField("OTHER", "other");
    foreign.addEntries("form", need);
    FidelityCase test;
    test.add("MAIN", mainHasForm ? withOneField("MAIN", "field").file()
                                 : FidelityFixture::plain("MAIN", 2).file());
    test.add("OTHER", foreign.file());
    const auto saved = test.save(u"M1 O1"_s);
    QPDFObjectHandle entry = form(saved->output()).getKey("/NeedAppearances");
    QCOMPARE(entry.isBool() && entry.getBoolValue(), isNeeded);
    // Nor does it concern a file that takes none of the fields.
    QVERIFY(!form(test.save(u"M1 O2"_s)->output()).isDictionary() ||
            !form(test.save(u"M1 O2"_s)->output()).hasKey("/NeedAppearances"));
}

QTEST_GUILESS_MAIN(TestFidelityForms)
#include "tst_fidelity_forms.moc"
