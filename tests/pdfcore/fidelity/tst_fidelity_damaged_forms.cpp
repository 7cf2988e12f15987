// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// A group of three buttons, one on each page, with an option for each.
FidelityAssembly withOptions(const Bytes &type)
{
    FidelityAssembly document = withForm("MAIN", 3, "/Fields [{group}]");
    document.set("group", "<< " + type +
                              " /T (group) /Kids [{a} {b} {c}] /Opt [(first) (second) (third)] >>");
    const QList<Bytes> names{"a", "b", "c"};
    for (int i = 0; i < 3; ++i) {
        addWidget(document, names.at(i), "/Parent {group}");
        annotate(document, i + 1, '{' + names.at(i) + '}');
    }
    return document;
}

QPDFObjectHandle form(FidelityDocument &document)
{
    return document.catalogue().getKey("/AcroForm");
}

/// Full names of the fields that the form lists itself, in order.
QStringList listedNames(FidelityDocument &document)
{
    QStringList names;
    for (const QPDFObjectHandle &field : form(document).getKey("/Fields").getArrayAsVector()) {
        names.append(FidelityFields::fullName(field));
    }
    return names;
}

QStringList namesOnPage(FidelityDocument &document, qsizetype page)
{
    QStringList names;
    for (const FidelityWidget &widget : FidelityFields::onPage(document, page)) {
        names.append(widget.fullName);
    }
    return names;
}

QStringList textsOf(QPDFObjectHandle array)
{
    QStringList texts;
    for (int i = 0; array.isArray() && i < array.getArrayNItems(); ++i) {
        texts.append(fidelityText(array.getArrayItem(i)));
    }
    return texts;
}

/// All that must be right, where the form has fields that are on no page or not in the form.
QStringList problemsBesidesForm(const QString &path)
{
    FidelityDocument document(path);
    return FidelitySoundness::syntaxProblems(path) + FidelitySoundness::pageProblems(document) +
           FidelitySoundness::annotationProblems(document) +
           FidelitySoundness::destinationProblems(document) +
           FidelitySoundness::structureProblems(document);
}

} // namespace

/// Forms of kinds that are rare, but allowed or common enough to be met.
class TestFidelityDamagedForms : public QObject
{
    Q_OBJECT

private slots:
    void signaturesGoWhereverTheyAre_data();
    void signaturesGoWhereverTheyAre();
    void fieldsThatNoPageShows();
    void kidsThatNoPageShows();
    void widgetThatItsParentDoesNotList();
    void widgetsFarBelowWhatTheFormLists();
    void kidThatTheFormListsAsWell_data();
    void kidThatTheFormListsAsWell();
    void kidThatDoesNotNameItsParent();
    void optionsFollowTheirButtons_data();
    void optionsFollowTheirButtons();
    void optionsOfCopiedButtons();
    void optionsOfAListStay();
    void triggersOfFieldsLoseWhatIsGone();
    void deepFieldsEnd_data();
    void deepFieldsEnd();
    void longChainsOfPopUpsEnd_data();
    void longChainsOfPopUpsEnd();
    void namesBelowFieldsWithoutOne();
    void alignmentOfForeignFields_data();
    void alignmentOfForeignFields();
    void calculationOfCopies();
    void hybridFormGoesAltogether_data();
    void hybridFormGoesAltogether();
};

void TestFidelityDamagedForms::signaturesGoWhereverTheyAre_data()
{
    QTest::addColumn<Bytes>("form");
    QTest::addColumn<Bytes>("widget");
    QTest::addColumn<Bytes>("parent");
    const Bytes fields = "<< /Fields [{widget}] >>";
    const Bytes none = "<< /Fields [] >>";
    const Bytes full = "<< /Type /Sig /Filter /X /ByteRange [0 1 2 3] /Contents <00> /Name (SIGNER)"
                       " >>";
    const Bytes ranged = "<< /Filter /X /ByteRange [0 1 2 3] /Contents <00> /Name (SIGNER) >>";
    const Bytes typed = "<< /Type /Sig /Filter /X /Contents <00> /Name (SIGNER) >>";
    const Bytes bare = "<< /Filter /X /Contents <00> /Name (SIGNER) >>";
    const auto row = [](const char *name, const Bytes &form, const Bytes &widget,
                        const Bytes &parent = "<< >>") {
        QTest::newRow(name) << form << widget << parent;
    };
    row("in the form", fields, "/FT /Sig /T (s) /V " + bare);
    row("not in the form", none, "/FT /Sig /T (s) /V " + full);
    row("not in the form, above its widget", none, "/Parent {parent}",
        "<< /FT /Sig /T (s) /Kids [{widget}] /V " + full + " >>");
    row("not in the form, by its field alone", none, "/FT /Sig /T (s) /V " + bare);
    row("no field type, byte range", fields, "/T (s) /V " + ranged);
    row("no field type, value type", fields, "/T (s) /V " + typed);
    row("another field type, byte range", fields, "/FT /Tx /T (s) /V " + ranged);
    row("neither, byte range", none, "/T (s) /V " + ranged);
    row("no form", {}, "/FT /Sig /T (s) /V " + full);
    row("no form, value type", {}, "/T (s) /V " + typed);
    row("no form, by its field alone", {}, "/FT /Sig /T (s) /V " + bare);
}

void TestFidelityDamagedForms::signaturesGoWhereverTheyAre()
{
    QFETCH(Bytes, form);
    QFETCH(Bytes, widget);
    QFETCH(Bytes, parent);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    addWidget(document, "widget", widget);
    annotate(document, 1, "{widget}");
    document.set("parent", parent);
    if (!form.isEmpty()) {
        document.addEntries("catalogue", "/AcroForm " + form);
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M1 M2"_s, u"M2 M1"_s, u"M1"_s, u"P1 M1"_s, u"M1 M1"_s}) {
        const auto saved = test.save(list);
        const qsizetype page = saved->output().marks().indexOf(u"MAIN-1"_s);
        QCOMPARE(saved->output().annotations(page).size(), 1U);
        QVERIFY2(!everythingIn(saved->output()).contains("SIGNER"), qPrintable(list));
        NO_PROBLEMS(problemsBesidesForm(test.output()));
    }
}

void TestFidelityDamagedForms::fieldsThatNoPageShows()
{
    FidelityCase test;
    for (const Bytes prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = withForm(prefix, 2, "/Fields [{shown} {bare} {gone}]");
        addWidget(document, "shown", "/FT /Tx /T (shown) /V (SHOWN " + prefix + ')');
        document.set("bare", "<< /FT /Tx /T (bare) /V (BARE " + prefix + ") >>");
        addWidget(document, "gone", "/FT /Tx /T (gone) /V (GONE " + prefix + ')');
        annotate(document, 1, "{shown}");
        annotate(document, 2, "{gone}");
        test.add(prefix, document.file());
    }
    const auto saved = test.save(u"M1 O1"_s);
    QCOMPARE(listedNames(saved->output()), QStringList({u"shown"_s, u"bare"_s, u"shown_2"_s}));
    const Bytes all = everythingIn(saved->output());
    for (const char *kept : {"SHOWN MAIN", "BARE MAIN", "SHOWN OTHER"}) {
        QVERIFY2(all.contains(kept), kept);
    }
    for (const char *gone : {"GONE MAIN", "BARE OTHER", "GONE OTHER"}) {
        QVERIFY2(!all.contains(gone), gone);
    }
    NO_PROBLEMS(problemsBesidesForm(test.output()));
}

void TestFidelityDamagedForms::kidsThatNoPageShows()
{
    FidelityCase test;
    for (const Bytes prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = withForm(prefix, 2, "/Fields [{top}]");
        document.set("top", "<< /FT /Tx /T (top) /Kids [{bare} {gone} {shown}] >>");
        document.set("bare", "<< /T (bare) /Parent {top} /V (BARE " + prefix + ") >>");
        addWidget(document, "gone", "/T (gone) /Parent {top} /V (GONE " + prefix + ')');
        addWidget(document, "shown", "/T (shown) /Parent {top}");
        annotate(document, 1, "{shown}");
        annotate(document, 2, "{gone}");
        test.add(prefix, document.file());
    }
    const auto saved = test.save(u"M1 O1"_s);
    QCOMPARE(listedNames(saved->output()), QStringList({u"top"_s, u"top_2"_s}));
    const auto kidNames = [&saved](int field) {
        QStringList names;
        QPDFObjectHandle top = form(saved->output()).getKey("/Fields").getArrayItem(field);
        for (QPDFObjectHandle kid : top.getKey("/Kids").getArrayAsVector()) {
            names.append(fidelityText(kid.getKey("/T")));
        }
        return names;
    };
    QCOMPARE(kidNames(0), QStringList({u"bare"_s, u"shown"_s}));
    QCOMPARE(kidNames(1), QStringList{u"shown"_s});
    const Bytes all = everythingIn(saved->output());
    QVERIFY(all.contains("BARE MAIN"));
    for (const char *gone : {"GONE MAIN", "BARE OTHER", "GONE OTHER"}) {
        QVERIFY2(!all.contains(gone), gone);
    }
    NO_PROBLEMS(problemsBesidesForm(test.output()));
}

void TestFidelityDamagedForms::widgetThatItsParentDoesNotList()
{
    FidelityAssembly document = withForm("MAIN", 2, "/Fields [{parent}]");
    document.set("parent", "<< /FT /Tx /T (parent) /V (v) /Kids [{a}] >>");
    addWidget(document, "a", "/Parent {parent}");
    addWidget(document, "b", "/Parent {parent}");
    annotate(document, 1, "{a} {b}");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M1 M2"_s, u"M2 M1"_s, u"M1"_s, u"P1 M1"_s}) {
        const auto saved = test.save(list);
        QCOMPARE(listedNames(saved->output()), QStringList{u"parent"_s});
        QPDFObjectHandle parent = form(saved->output()).getKey("/Fields").getArrayItem(0);
        std::set<QPDFObjGen> kids;
        for (QPDFObjectHandle kid : parent.getKey("/Kids").getArrayAsVector()) {
            kids.insert(kid.getObjGen());
        }
        std::set<QPDFObjGen> widgets;
        const qsizetype page = saved->output().marks().indexOf(u"MAIN-1"_s);
        for (QPDFObjectHandle widget : saved->output().annotations(page)) {
            widgets.insert(widget.getObjGen());
        }
        QCOMPARE(widgets.size(), 2U);
        QVERIFY(kids == widgets);
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityDamagedForms::widgetsFarBelowWhatTheFormLists()
{
    // Neither the widgets nor the field above them are among the kids of what names them.
    FidelityAssembly document = withForm("MAIN", 2, "/Fields [{top}]");
    document.set("top", "<< /FT /Tx /T (top) >>");
    document.set("middle", "<< /T (middle) /Parent {top} >>");
    addWidget(document, "a", "/T (a) /Parent {middle}");
    addWidget(document, "b", "/T (b) /Parent {middle}");
    annotate(document, 1, "{a} {b}");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M2 M1"_s);
    QCOMPARE(namesOnPage(saved->output(), 1), QStringList({u"top.middle.a"_s, u"top.middle.b"_s}));
    QPDFObjectHandle top = form(saved->output()).getKey("/Fields").getArrayItem(0);
    QCOMPARE(top.getKey("/Kids").getArrayNItems(), 1);
    QCOMPARE(top.getKey("/Kids").getArrayItem(0).getKey("/Kids").getArrayNItems(), 2);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDamagedForms::kidThatTheFormListsAsWell_data()
{
    QTest::addColumn<Bytes>("fields");
    QTest::addColumn<Bytes>("kids");
    QTest::newRow("behind its parent") << Bytes("[{parent} {kid}]") << Bytes("[{other} {kid}]");
    QTest::newRow("before its parent") << Bytes("[{kid} {parent}]") << Bytes("[{other} {kid}]");
    QTest::newRow("that the parent forgot") << Bytes("[{kid} {parent}]") << Bytes("[{other}]");
}

void TestFidelityDamagedForms::kidThatTheFormListsAsWell()
{
    QFETCH(Bytes, fields);
    QFETCH(Bytes, kids);
    FidelityAssembly document = withForm("MAIN", 2, "/Fields " + fields);
    document.set("parent", "<< /FT /Tx /T (parent) /Kids " + kids + " >>");
    addWidget(document, "kid", "/T (kid) /Parent {parent}");
    addWidget(document, "other", "/T (other) /Parent {parent}");
    annotate(document, 1, "{kid} {other}");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M2 M1"_s, u"M1"_s, u"P1 M1"_s}) {
        const auto saved = test.save(list);
        QCOMPARE(listedNames(saved->output()), QStringList{u"parent"_s});
        const qsizetype page = saved->output().marks().indexOf(u"MAIN-1"_s);
        QCOMPARE(namesOnPage(saved->output(), page),
                 QStringList({u"parent.kid"_s, u"parent.other"_s}));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityDamagedForms::kidThatDoesNotNameItsParent()
{
    FidelityAssembly document = withForm("MAIN", 2, "/Fields [{parent}]");
    document.set("parent", "<< /FT /Tx /T (parent) /V (value) /Kids [{kid}] >>");
    addWidget(document, "kid", "/T (kid)");
    annotate(document, 1, "{kid}");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M1 M2"_s, u"M2 M1"_s, u"P1 M1"_s}) {
        const auto saved = test.save(list);
        const qsizetype page = saved->output().marks().indexOf(u"MAIN-1"_s);
        QCOMPARE(namesOnPage(saved->output(), page), QStringList{u"parent.kid"_s});
        QPDFObjectHandle kid = saved->output().annotations(page).front();
        QCOMPARE(fidelityText(FidelityFields::attribute(kid, "/V")), u"value"_s);
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityDamagedForms::optionsFollowTheirButtons_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<QStringList>("options");
    QTest::newRow("all") << u"M3 M2 M1"_s << QStringList({u"first"_s, u"second"_s, u"third"_s});
    QTest::newRow("first gone") << u"M2 M3"_s << QStringList({u"second"_s, u"third"_s});
    QTest::newRow("middle gone") << u"M3 M1"_s << QStringList({u"first"_s, u"third"_s});
    QTest::newRow("last alone") << u"M3"_s << QStringList{u"third"_s};
    QTest::newRow("in a further document")
        << u"P1 M3 M1"_s << QStringList({u"first"_s, u"third"_s});
}

void TestFidelityDamagedForms::optionsFollowTheirButtons()
{
    QFETCH(QString, list);
    QFETCH(QStringList, options);
    FidelityCase test;
    test.add("MAIN", withOptions("/FT /Btn /Ff 49152").file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const auto saved = test.save(list);
    QPDFObjectHandle group = form(saved->output()).getKey("/Fields").getArrayItem(0);
    QCOMPARE(textsOf(group.getKey("/Opt")), options);
    QCOMPARE(group.getKey("/Kids").getArrayNItems(), int(options.size()));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDamagedForms::optionsOfCopiedButtons()
{
    FidelityCase test;
    test.add("MAIN", withOptions("/FT /Btn /Ff 49152").file());
    const auto saved = test.save(u"M1 M2 M3 M2"_s);
    QCOMPARE(listedNames(saved->output()), QStringList({u"group"_s, u"group_2"_s}));
    QPDFObjectHandle fields = form(saved->output()).getKey("/Fields");
    QCOMPARE(textsOf(fields.getArrayItem(0).getKey("/Opt")),
             QStringList({u"first"_s, u"second"_s, u"third"_s}));
    QCOMPARE(textsOf(fields.getArrayItem(1).getKey("/Opt")), QStringList{u"second"_s});
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDamagedForms::optionsOfAListStay()
{
    // A list offers all its choices on every page.
    FidelityCase test;
    test.add("MAIN", withOptions("/FT /Ch").file());
    for (const QString &list : {u"M3 M1"_s, u"M1-3 M2"_s}) {
        const auto saved = test.save(list);
        for (qsizetype page = 0; page < saved->output().marks().size(); ++page) {
            QPDFObjectHandle widget = saved->output().annotations(page).front();
            QCOMPARE(textsOf(FidelityFields::attribute(widget, "/Opt")),
                     QStringList({u"first"_s, u"second"_s, u"third"_s}));
        }
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityDamagedForms::triggersOfFieldsLoseWhatIsGone()
{
    const Bytes triggers = "/AA << /K << /S /JavaScript /JS (check\\(\\);) >> "
                           "/C << /S /GoTo /D [{page3} /Fit] >> >>";
    FidelityAssembly document = withForm("MAIN", 3, "/Fields [{parent} {bare}]");
    document.set("parent", "<< /FT /Tx /T (parent) /Kids [{kid}] " + triggers + " >>");
    addWidget(document, "kid", "/Parent {parent}");
    document.set("bare", "<< /FT /Tx /T (bare) " + triggers + " >>");
    annotate(document, 1, "{kid}");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M2 M1"_s, u"M3 M1"_s, u"P1 M1"_s}) {
        const auto saved = test.save(list);
        QPDFObjectHandle fields = form(saved->output()).getKey("/Fields");
        QCOMPARE(fields.getArrayNItems(), list.startsWith(u'P') ? 1 : 2);
        for (QPDFObjectHandle field : fields.getArrayAsVector()) {
            QPDFObjectHandle own = field.getKey("/AA");
            QVERIFY(own.hasKey("/K"));
            QCOMPARE(own.hasKey("/C"), list.contains(u"M3"_s));
            if (own.hasKey("/C")) {
                QPDFObjectHandle destination = own.getKey("/C").getKey("/D");
                QCOMPARE(saved->output().targetOfDestination(destination).mark, u"MAIN-3"_s);
            }
        }
        NO_PROBLEMS(problemsBesidesForm(test.output()));
    }
}

void TestFidelityDamagedForms::deepFieldsEnd_data()
{
    QTest::addColumn<QString>("list");
    QTest::newRow("order") << u"M2 M1"_s;
    QTest::newRow("page gone") << u"M1"_s;
    QTest::newRow("in a further document") << u"P1 M1"_s;
    QTest::newRow("copy") << u"M1 M1"_s;
    QTest::newRow("widget gone") << u"M2"_s;
}

void TestFidelityDamagedForms::deepFieldsEnd()
{
    QFETCH(QString, list);
    constexpr int kDepth = 20'000;
    FidelityAssembly document = withForm("MAIN", 2, "/Fields [{level0}]");
    const auto level = [](int index) -> Bytes { return "level" + Bytes::number(index); };
    for (int i = 0; i < kDepth; ++i) {
        const Bytes kid = i < kDepth - 1 ? level(i + 1) : Bytes("widget");
        const Bytes parent = i > 0 ? "/Parent {" + level(i - 1) + '}' : Bytes();
        document.set(level(i), "<< /T (n) /Kids [{" + kid + "}] " + parent + " >>");
    }
    addWidget(document, "widget", "/FT /Tx /T (widget) /Parent {" + level(kDepth - 1) + '}');
    annotate(document, 1, "{widget}");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const Outcome outcome = save(test.pages(list), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    FidelityDocument output(test.output());
    QCOMPARE(output.marks().size(), test.pages(list).size());
    const qsizetype page = output.marks().indexOf(u"MAIN-1"_s);
    if (page < 0) {
        QVERIFY(!everythingIn(output).contains("(widget)"));
        return;
    }
    int depth = 0;
    QPDFObjectHandle field = output.annotations(page).front();
    for (; field.hasKey("/Parent"); field = field.getKey("/Parent")) {
        ++depth;
    }
    QCOMPARE(depth, kDepth);
    QCOMPARE(field.getObjGen(), form(output).getKey("/Fields").getArrayItem(0).getObjGen());
}

void TestFidelityDamagedForms::longChainsOfPopUpsEnd_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<bool>("isListed");
    for (const bool isListed : {false, true}) {
        const char *how = isListed ? "listed" : "not listed";
        QTest::addRow("in main, %s", how) << u"M2 M1 M1"_s << isListed;
        QTest::addRow("in a further document, %s", how) << u"P1 M1 M1"_s << isListed;
    }
}

void TestFidelityDamagedForms::longChainsOfPopUpsEnd()
{
    QFETCH(QString, list);
    QFETCH(bool, isListed);
    constexpr int kPopUps = 20'000;
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.set("note", "<< /Type /Annot /Subtype /Text /Rect [1 2 3 4] /Popup {popup0} >>");
    Bytes listed;
    for (int i = 0; i < kPopUps; ++i) {
        const Bytes number = Bytes::number(i);
        const Bytes next = i < kPopUps - 1 ? "/Popup {popup" + Bytes::number(i + 1) + '}' : Bytes();
        document.set("popup" + number,
                     "<< /Type /Annot /Subtype /Popup /Rect [1 2 3 4] " + next + " >>");
        listed += "{popup" + number + "} ";
    }
    annotate(document, 1, "{note} " + (isListed ? listed : Bytes()));
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
        QCOMPARE(output.annotations(page).size(), isListed ? kPopUps + 1U : 1U);
        QVERIFY(output.annotations(page).front().getKey("/Popup").isDictionary());
    }
}

void TestFidelityDamagedForms::namesBelowFieldsWithoutOne()
{
    FidelityCase test;
    for (const Bytes prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = withForm(prefix, 1, "/Fields [{top}]");
        document.set("top", "<< /FT /Tx /Kids [{middle}] >>");
        document.set("middle", "<< /Parent {top} /Kids [{a} {b}] >>");
        addWidget(document, "a", "/T (a) /Parent {middle} /V (" + prefix + " a)");
        addWidget(document, "b", "/T (b) /Parent {middle} /V (" + prefix + " b)");
        annotate(document, 1, "{a} {b}");
        test.add(prefix, document.file());
    }
    for (const QString &list : {u"M1 O1"_s, u"M1 M1"_s}) {
        const auto saved = test.save(list);
        QCOMPARE(namesOnPage(saved->output(), 0), QStringList({u"a"_s, u"b"_s}));
        QCOMPARE(namesOnPage(saved->output(), 1), QStringList({u"a_2"_s, u"b_2"_s}));
        for (qsizetype page = 0; page < 2; ++page) {
            for (QPDFObjectHandle widget : saved->output().annotations(page)) {
                QVERIFY(widget.hasKey("/T"));
                QVERIFY(!widget.getKey("/Parent").hasKey("/T"));
                QVERIFY(!widget.getKey("/Parent").getKey("/Parent").hasKey("/T"));
            }
        }
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityDamagedForms::alignmentOfForeignFields_data()
{
    QTest::addColumn<Bytes>("mainForm");
    QTest::addColumn<Bytes>("otherForm");
    QTest::addColumn<Bytes>("otherField");
    QTest::addColumn<int>("alignment");
    QTest::newRow("main says right, other nothing") << Bytes("/Q 2") << Bytes() << Bytes() << 0;
    QTest::newRow("main says right, other centre")
        << Bytes("/Q 2") << Bytes("/Q 1") << Bytes() << 1;
    QTest::newRow("the field says so itself") << Bytes("/Q 2") << Bytes() << Bytes("/Q 1") << 1;
    QTest::newRow("main says nothing") << Bytes() << Bytes("/Q 2") << Bytes() << 2;
}

void TestFidelityDamagedForms::alignmentOfForeignFields()
{
    QFETCH(Bytes, mainForm);
    QFETCH(Bytes, otherForm);
    QFETCH(Bytes, otherField);
    QFETCH(int, alignment);
    FidelityCase test;
    for (const Bytes prefix : {"MAIN", "OTHER"}) {
        const bool isMain = prefix == "MAIN";
        FidelityAssembly document =
            withForm(prefix, 1, "/Fields [{text}] " + (isMain ? mainForm : otherForm));
        addWidget(document, "text", "/FT /Tx /T (text) " + (isMain ? Bytes() : otherField));
        annotate(document, 1, "{text}");
        test.add(prefix, document.file());
    }
    const auto saved = test.save(u"M1 O1"_s);
    // What counts is what a reader finds, on the field or on the form.
    const auto alignmentOn = [&saved](qsizetype page) {
        QPDFObjectHandle field = saved->output().annotations(page).front();
        QPDFObjectHandle own = FidelityFields::attribute(field, "/Q");
        if (own.isNull()) {
            own = form(saved->output()).getKey("/Q");
        }
        return own.isInteger() ? own.getIntValueAsInt() : 0;
    };
    QCOMPARE(alignmentOn(0), mainForm.isEmpty() ? 0 : 2);
    QCOMPARE(alignmentOn(1), alignment);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDamagedForms::calculationOfCopies()
{
    FidelityAssembly document = withForm("MAIN", 2, "/Fields [{total} {sums}] /CO [{sum} {total}]");
    const Bytes calculated = "/AA << /C << /S /JavaScript /JS (f\\(\\);) >> >>";
    addWidget(document, "total", "/FT /Tx /T (total) " + calculated);
    document.set("sums", "<< /FT /Tx /T (sums) /Kids [{sum}] >>");
    addWidget(document, "sum", "/T (sum) /Parent {sums} " + calculated);
    annotate(document, 1, "{total}");
    annotate(document, 2, "{sum}");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto one = test.save(u"M1 M2 M1"_s);
    QCOMPARE(FidelityFields::calculationOrder(one->output()),
             QStringList({u"sums.sum"_s, u"total"_s, u"total_2"_s}));
    const auto three = test.save(u"M1 M2 M1 M1 M2 M1"_s);
    QStringList order = FidelityFields::calculationOrder(three->output());
    QCOMPARE(order.mid(0, 2), QStringList({u"sums.sum"_s, u"total"_s}));
    order.sort();
    QCOMPARE(order, QStringList({u"sums.sum"_s, u"sums_2.sum"_s, u"total"_s, u"total_2"_s,
                                 u"total_3"_s, u"total_4"_s}));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDamagedForms::hybridFormGoesAltogether_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<bool>("stays");
    QTest::newRow("unchanged") << u"M1 M2"_s << true;
    QTest::newRow("order") << u"M2 M1"_s << false;
    QTest::newRow("page gone") << u"M1"_s << false;
    QTest::newRow("copy") << u"M1 M2 M2"_s << false;
    QTest::newRow("blank page") << u"M1 _ M2"_s << false;
    QTest::newRow("another document") << u"M1 M2 P1"_s << false;
}

void TestFidelityDamagedForms::hybridFormGoesAltogether()
{
    QFETCH(QString, list);
    QFETCH(bool, stays);
    FidelityAssembly document = withForm("MAIN", 2, "/Fields [{text}] /XFA {xfa}");
    document.setStream("xfa", {}, "<xdp>HYBRID</xdp>");
    document.addEntries("catalogue", "/NeedsRendering true");
    addWidget(document, "text", "/FT /Tx /T (text)");
    annotate(document, 1, "{text}");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const auto saved = test.save(list);
    QCOMPARE(form(saved->output()).hasKey("/XFA"), stays);
    QCOMPARE(saved->output().catalogue().hasKey("/NeedsRendering"), stays);
    QCOMPARE(everythingIn(saved->output()).contains("HYBRID"), stays);
    QVERIFY(listedNames(saved->output()).contains(u"text"_s));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

QTEST_GUILESS_MAIN(TestFidelityDamagedForms)
#include "tst_fidelity_damaged_forms.moc"
