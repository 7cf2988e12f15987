// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

std::vector<QPDFObjectHandle> items(QPDFObjectHandle object)
{
    if (object.isArray()) {
        return object.getArrayAsVector();
    }
    return object.isNull() ? std::vector<QPDFObjectHandle>() : std::vector{object};
}

} // namespace

/// What is left of pages that are gone, and what of the pages that stay must not go with them.
class TestFidelityStrayReferences : public QObject
{
    Q_OBJECT

private slots:
    void whatAGonePageListsAsAnnotations_data();
    void whatAGonePageListsAsAnnotations();
    void pageTreeStaysBehindThatANoteRefersTo();
    void markedContentWithoutAType_data();
    void markedContentWithoutAType();
    void objectsOfTheStructureWithoutAType();
    void eventsOfTheDocument_data();
    void eventsOfTheDocument();
    void namesOfPages_data();
    void namesOfPages();
    void popUpOfANoteOnTwoPages_data();
    void popUpOfANoteOnTwoPages();
};

void TestFidelityStrayReferences::whatAGonePageListsAsAnnotations_data()
{
    QTest::addColumn<Bytes>("listed");
    const QList<std::pair<const char *, Bytes>> rows{
        {"page", "{page1}"},
        {"resources", "{resources}"},
        {"font", "{bold}"},
        {"catalogue", "{catalogue}"},
        {"page tree", "{pages}"},
        {"form", "{form}"},
        {"outline", "{outline}"},
        {"entry", "{entry}"},
        {"content", "{content1}"},
        {"structure", "{root}"},
        {"element", "{element}"},
        {"itself", "{page2}"},
        {"list", "{list}"},
        {"note", "{note}"},
        {"look", "{look}"},
        {"field", "{field}"},
        {"all of them", "{page1} {resources} {bold} {catalogue} {pages} {form} "
                        "{outline} {entry} {content1} {root} {element} {note} "
                        "{field} {look} {list}"}};
    for (const auto &[name, listed] : rows) {
        QTest::newRow(name) << listed;
        QTest::addRow("%s, twice", name) << Bytes(listed + ' ' + listed);
    }
}

void TestFidelityStrayReferences::whatAGonePageListsAsAnnotations()
{
    QFETCH(Bytes, listed);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.replace("page1", "<< /Font << /F1 {font} >> >>", "{resources}");
    document.set("resources", "<< /Font << /F1 {bold} >> >>");
    document.set("bold", "<< /Type /Font /Subtype /Type1 /BaseFont /Courier-Bold >>");
    document.addEntries("catalogue",
                        "/AcroForm {form} /Outlines {outline} /StructTreeRoot {root} /Lang (en)");
    document.set("form", "<< /Fields [{field}] /DA (/F1 9 Tf) /DR << /Font << /F1 {bold} >> >> >>");
    document.set("field", "<< /T (field) /FT /Tx /V (value) /Kids [{widget}] >>");
    document.set("widget", "<< /Type /Annot /Subtype /Widget /Rect [9 9 30 40] /Parent {field} >>");
    document.set("note", "<< /Type /Annot /Subtype /Stamp /Rect [50 50 90 90] /F 4 /AP << /N "
                         "{look} >> >>");
    document.setStream("look", "/Type /XObject /Subtype /Form /BBox [0 0 40 40]",
                       "1 0 0 rg 0 0 40 40 re f");
    document.set("list", "[{widget} {note}]");
    document.addEntries("page1", "/Annots {list} /StructParents 0");
    document.set("outline", "<< /Type /Outlines /First {entry} /Last {entry} /Count 1 >>");
    document.set("entry", "<< /Title (Entry) /Parent {outline} /Dest [{page1} /Fit] >>");
    document.set("root", "<< /Type /StructTreeRoot /K [{element}] /ParentTree << /Nums [0 "
                         "[{element}]] >> >>");
    document.set("element", "<< /S /P /P {root} /Pg {page1} /K 0 >>");
    document.addEntries("page2", "/Annots [" + listed + ']');
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M1"_s, u"P1 M1"_s, u"M1 M1"_s}) {
        const auto saved = test.save(list);
        FidelityDocument &output = saved->output();
        QCOMPARE(output.marks().size(), test.pages(list).size());
        const qsizetype page = output.marks().indexOf(u"MAIN-1"_s);
        QVERIFY(page >= 0);
        QCOMPARE(output.annotations(page).size(), 2U);
        QPDFObjectHandle font = below(output.attribute(page, "/Resources"), {"/Font", "/F1"});
        QCOMPARE(below(font, {"/BaseFont"}).unparse(), std::string("/Courier-Bold"));
        QPDFObjectHandle fields = below(output.catalogue(), {"/AcroForm", "/Fields"});
        QCOMPARE(items(fields).size(), list == u"M1 M1" ? 2U : 1U);
        QPDFObjectHandle entry = below(output.catalogue(), {"/Outlines", "/First"});
        QVERIFY(entry.isDictionary());
        QCOMPARE(output.targetOf(entry).mark, u"MAIN-1"_s);
        if (!list.startsWith(u'P')) {
            QCOMPARE(fidelityText(output.catalogue().getKey("/Lang")), u"en"_s);
            QVERIFY(below(output.catalogue(), {"/StructTreeRoot"}).isDictionary());
        }
        QVERIFY(!everythingIn(output).contains("MAIN-2"));
        QVERIFY(test.looksLike(int(page), test.pages(u"M1"_s).constFirst()));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityStrayReferences::pageTreeStaysBehindThatANoteRefersTo()
{
    FidelityAssembly document = FidelityFixture::plain("OTHER", 2);
    document.set("note", "<< /Type /Annot /Subtype /Stamp /Rect [50 50 90 90] /Tree {pages} "
                         "/Trees [{pages}] /Contents (note) >>");
    document.addEntries("page1", "/Annots [{note}]");
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 1).file());
    test.add("OTHER", document.file());
    for (const QString &list : {u"M1 O1"_s, u"M1 O1-2"_s}) {
        const auto saved = test.save(list);
        QCOMPARE(saved->output().annotations(1).size(), 1U);
        QPDFObjectHandle note = saved->output().annotations(1).front();
        QCOMPARE(fidelityText(note.getKey("/Contents")), u"note"_s);
        QVERIFY(!note.hasKey("/Tree"));
        QVERIFY(note.getKey("/Trees").getArrayItem(0).isNull());
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

namespace {

/// Two pages whose content is in one element, and an element whose kids are `kids`.
FidelityAssembly withStructure(const Bytes &entries)
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("catalogue", "/StructTreeRoot {root} /MarkInfo << /Marked true >>");
    document.set("root", "<< /Type /StructTreeRoot /K [{other} {element}] /ParentTree << /Nums [0 "
                         "[{element}] 1 [{element}] 2 {element}] >> >>");
    document.set("other", "<< /S /P /P {root} /Pg {page1} /K 7 /Alt (OTHER) >>");
    document.set("element", "<< /S /P /P {root} /Alt (ELEMENT) " + entries + " >>");
    document.addEntries("page1", "/StructParents 0");
    document.addEntries("page2", "/StructParents 1 /Annots [{link}]");
    document.set("link", "<< /Type /Annot /Subtype /Link /Rect [1 2 3 4] /StructParent 2 /A << /S "
                         "/URI /URI (x) >> >>");
    return document;
}

/// The element among the kids of the root that has this /Alt; null when there is none.
QPDFObjectHandle elementIn(FidelityDocument &document, const QString &text)
{
    for (QPDFObjectHandle &kid : items(below(document.catalogue(), {"/StructTreeRoot", "/K"}))) {
        if (kid.isDictionary() && fidelityText(kid.getKey("/Alt")) == text) {
            return kid;
        }
    }
    return QPDFObjectHandle::newNull();
}

/// The kids of an element: numbers as they are, marked content as its page and number.
QStringList kidsIn(FidelityDocument &document, QPDFObjectHandle element)
{
    QStringList found;
    for (QPDFObjectHandle &kid : items(element.getKey("/K"))) {
        if (!kid.isDictionary()) {
            found.append(QString::fromStdString(kid.unparse()));
            continue;
        }
        QPDFObjectHandle page = kid.hasKey("/Pg") ? kid.getKey("/Pg") : element.getKey("/Pg");
        const qsizetype index = document.indexOf(page);
        found.append((index < 0 ? u"gone"_s : document.marks().at(index)) + u'/' +
                     QString::fromStdString(kid.getKey("/MCID").unparse()));
    }
    return found;
}

} // namespace

void TestFidelityStrayReferences::markedContentWithoutAType_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::addColumn<QStringList>("kids");
    const auto row = [](const char *name, const Bytes &entries, const QStringList &kids) {
        QTest::newRow(name) << entries << kids;
    };
    row("beside one with a type",
        "/Pg {page1} /K [<< /Type /MCR /Pg {page1} /MCID 0 >> << /Pg {page2} /MCID 0 >>]",
        {u"MAIN-1/0"_s});
    row("beside a number", "/Pg {page1} /K [0 << /Pg {page2} /MCID 0 >>]", {u"0"_s});
    row("the page of the element", "/Pg {page2} /K [<< /MCID 0 >> << /Pg {page1} /MCID 3 >>]",
        {u"MAIN-1/3"_s});
    row("both without a type", "/Pg {page1} /K [<< /MCID 0 >> << /Pg {page2} /MCID 0 >>]",
        {u"MAIN-1/0"_s});
    row("alone", "/K << /Pg {page2} /MCID 0 >>", {});
    row("alone, of the element's page", "/Pg {page2} /K << /MCID 0 >>", {});
    row("alone, of the page that stays", "/K << /Pg {page1} /MCID 0 >>", {u"MAIN-1/0"_s});
    row("object of its own", "/Pg {page1} /K [0 {content}]", {u"0"_s});
}

void TestFidelityStrayReferences::markedContentWithoutAType()
{
    QFETCH(Bytes, entries);
    QFETCH(QStringList, kids);
    FidelityAssembly document = withStructure(entries);
    document.set("content", "<< /Pg {page2} /MCID 4 >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1"_s, u"M1 M1"_s}) {
        const auto saved = test.save(list);
        FidelityDocument &output = saved->output();
        QVERIFY(elementIn(output, u"OTHER"_s).isDictionary());
        QPDFObjectHandle element = elementIn(output, u"ELEMENT"_s);
        QCOMPARE(element.isDictionary(), !kids.isEmpty());
        if (element.isDictionary()) {
            QCOMPARE(kidsIn(output, element), kids);
        }
        const Bytes all = everythingIn(output);
        QCOMPARE(all.contains("(ELEMENT)"), !kids.isEmpty());
        QVERIFY(!all.contains("MAIN-2"));
        NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
        NO_PROBLEMS(FidelitySoundness::pageProblems(output));
    }
    // Nothing goes while both pages stay.
    FidelityDocument source(test.path('M'));
    const QStringList before = kidsIn(source, elementIn(source, u"ELEMENT"_s));
    const auto all = test.save(u"M2 M1"_s);
    QCOMPARE(kidsIn(all->output(), elementIn(all->output(), u"ELEMENT"_s)), before);
}

void TestFidelityStrayReferences::objectsOfTheStructureWithoutAType()
{
    FidelityCase test;
    test.add("MAIN", withStructure("/Pg {page1} /K [0 << /Obj {link} >>]").file());
    const auto with = test.save(u"M2 M1"_s);
    QCOMPARE(items(elementIn(with->output(), u"ELEMENT"_s).getKey("/K")).size(), 2U);
    const auto without = test.save(u"M1"_s);
    QCOMPARE(kidsIn(without->output(), elementIn(without->output(), u"ELEMENT"_s)),
             QStringList{u"0"_s});
    QVERIFY(!everythingIn(without->output()).contains("/Link"));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityStrayReferences::eventsOfTheDocument_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<QStringList>("events");
    QTest::newRow("page gone") << u"M1"_s << QStringList({u"/DS"_s, u"/WP"_s, u"/WS"_s});
    QTest::newRow("page stays") << u"M2 M1"_s
                                << QStringList({u"/DP"_s, u"/DS"_s, u"/WC"_s, u"/WP"_s, u"/WS"_s});
    QTest::newRow("further document") << u"P1 M1 M2"_s << QStringList();
}

void TestFidelityStrayReferences::eventsOfTheDocument()
{
    QFETCH(QString, list);
    QFETCH(QStringList, events);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("catalogue",
                        "/AA << /WC << /S /GoTo /D [{page2} /Fit] >> /WS << /S /URI /URI (saved) "
                        ">> /DS << /S /GoTo /D [{page1} /Fit] >> /WP << /S /GoTo /D [{page2} /Fit] "
                        "/Next << /S /URI /URI (printed) >> >> /DP {action} >>");
    document.set("action", "<< /S /GoTo /D [{page2} /Fit] >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const auto saved = test.save(list);
    FidelityDocument &output = saved->output();
    QPDFObjectHandle triggers = output.catalogue().getKey("/AA");
    QStringList found;
    for (const std::string &key :
         triggers.isDictionary() ? triggers.getKeys() : std::set<std::string>()) {
        found.append(QString::fromStdString(key));
    }
    QCOMPARE(found, events);
    if (!list.contains(u"M2")) {
        QVERIFY(!everythingIn(output).contains("MAIN-2"));
    }
    if (events.contains(u"/WP")) {
        QVERIFY(everythingIn(output).contains("(printed)"));
    }
    for (const char *key : {"/WC", "/DS", "/DP"}) {
        QPDFObjectHandle action = below(triggers, {key});
        if (action.isDictionary()) {
            const QString mark = output.targetOfDestination(action.getKey("/D")).mark;
            QCOMPARE(mark, std::string(key) == "/DS" ? u"MAIN-1"_s : u"MAIN-2"_s);
        }
    }
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityStrayReferences::namesOfPages_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("page gone") << u"M1"_s << QStringList({u"first: MAIN-1"_s, u"hidden: "_s});
    QTest::newRow("other page gone")
        << u"M2"_s << QStringList({u"hidden: "_s, u"second: MAIN-2"_s});
    QTest::newRow("pages stay") << u"M2 M1"_s
                                << QStringList(
                                       {u"first: MAIN-1"_s, u"hidden: "_s, u"second: MAIN-2"_s});
    QTest::newRow("copies") << u"M1 M1"_s << QStringList({u"first: MAIN-1"_s, u"hidden: "_s});
}

void TestFidelityStrayReferences::namesOfPages()
{
    QFETCH(QString, list);
    QFETCH(QStringList, names);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("catalogue", "/Names << /Pages << /Names [(first) {page1} (hidden) "
                                     "{template} (second) {page2}] >> >>");
    document.set("template", "<< /Type /Template /MediaBox [0 0 300 400] /Contents {hidden} >>");
    document.setStream("hidden", {}, "% HIDDEN");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(list);
    FidelityDocument &output = saved->output();
    QStringList found;
    for (const auto &[name, page] : output.names("/Pages")) {
        const qsizetype index = output.indexOf(page);
        found.append(QString::fromStdString(name) + u": "_s +
                     (index < 0 ? QString() : output.marks().at(index)));
    }
    QCOMPARE(found, names);
    const Bytes all = everythingIn(output);
    QVERIFY(all.contains("HIDDEN"));
    QCOMPARE(all.contains("MAIN-1"), list.contains(u"M1"));
    QCOMPARE(all.contains("MAIN-2"), list.contains(u"M2"));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityStrayReferences::popUpOfANoteOnTwoPages_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<Bytes>("entries");
    for (const QString &list : {u"M1 M2"_s, u"M2 M1"_s, u"P1 M1 M2"_s, u"M1 M2 M2"_s}) {
        for (const auto &[name, entries] :
             {std::pair{"no page", ""}, std::pair{"first page", "/P {page1}"},
              std::pair{"second page", "/P {page2}"}}) {
            QTest::addRow("%s, names %s", qPrintable(list), name) << list << Bytes(entries);
        }
    }
}

void TestFidelityStrayReferences::popUpOfANoteOnTwoPages()
{
    QFETCH(QString, list);
    QFETCH(Bytes, entries);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("page1", "/Annots [{note}]");
    document.addEntries("page2", "/Annots [{note} {popup}]");
    document.set("note", "<< /Type /Annot /Subtype /Text /Rect [1 2 30 40] /Contents (NOTE) /Popup "
                         "{popup} " +
                             entries + " >>");
    document.set("popup", "<< /Type /Annot /Subtype /Popup /Rect [50 50 90 90] /Open true /Parent "
                          "{note} " +
                              entries + " >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const auto saved = test.save(list);
    FidelityDocument &output = saved->output();
    std::set<QPDFObjGen> notes;
    std::set<QPDFObjGen> popups;
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        const QString mark = output.marks().at(page);
        if (mark == u"PLAIN-1") {
            continue;
        }
        const std::vector<QPDFObjectHandle> annotations = output.annotations(page);
        QPDFObjectHandle note = annotations.front();
        QCOMPARE(fidelityText(note.getKey("/Contents")), u"NOTE"_s);
        QVERIFY(notes.insert(note.getObjGen()).second);
        QPDFObjectHandle popup = note.getKey("/Popup");
        QVERIFY(popup.isDictionary());
        QVERIFY(popup.getKey("/Open").isBool());
        QVERIFY(popups.insert(popup.getObjGen()).second);
        QCOMPARE(popup.getKey("/Parent").getObjGen(), note.getObjGen());
        for (QPDFObjectHandle annotation : {note, popup}) {
            QPDFObjectHandle named = annotation.getKey("/P");
            QVERIFY(named.isNull() || output.indexOf(named) == page);
        }
        QCOMPARE(annotations.size(), mark == u"MAIN-2" ? 2U : 1U);
        if (mark == u"MAIN-2") {
            QCOMPARE(QPDFObjectHandle(annotations.back()).getObjGen(), popup.getObjGen());
        }
    }
    NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(output));
}

QTEST_GUILESS_MAIN(TestFidelityStrayReferences)
#include "tst_fidelity_stray_references.moc"
