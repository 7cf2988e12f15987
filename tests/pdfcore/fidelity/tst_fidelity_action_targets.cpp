// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// The action of the last annotation on a page; null without one.
QPDFObjectHandle actionOn(FidelityDocument &document, qsizetype page)
{
    const std::vector<QPDFObjectHandle> annotations = document.annotations(page);
    return annotations.empty() ? QPDFObjectHandle::newNull()
                               : QPDFObjectHandle(annotations.back()).getKey("/A");
}

} // namespace

/// Actions that name something by its number, its name or its place: threads, attachments, fields.
class TestFidelityActionTargets : public QObject
{
    Q_OBJECT

private slots:
    void threadsOfMain_data();
    void threadsOfMain();
    void threadsOfOtherFilesStay_data();
    void threadsOfOtherFilesStay();
    void threadsOfAFurtherDocument_data();
    void threadsOfAFurtherDocument();
    void filesWithinTheFile_data();
    void filesWithinTheFile();
    void fieldsWithFullStops_data();
    void fieldsWithFullStops();
};

namespace {

/// Three pages with a thread of each, called "one" to "three"; every page has a link whose action
/// has these entries.
FidelityAssembly withThreads(const Bytes &prefix, const Bytes &action)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 3);
    document.addEntries("catalogue", "/Threads [{thread1} {thread2} {thread3}]");
    for (const auto &[number, title] :
         {std::pair{"1", "one"}, std::pair{"2", "two"}, std::pair{"3", "three"}}) {
        const Bytes k = number;
        document.set("thread" + k, "<< /F {bead" + k + "} /I << /Title (" + title + ") >> >>");
        document.set("bead" + k, "<< /T {thread" + k + "} /N {bead" + k + "} /V {bead" + k +
                                     "} /P {page" + k + "} /R [0 0 9 9] >>");
        document.set("link" + k,
                     "<< /Type /Annot /Subtype /Link /Rect [1 2 3 4] /A << " + action + " >> >>");
        document.addEntries("page" + k, "/B [{bead" + k + "}] /Annots [{link" + k + "}]");
    }
    return document;
}

/// The title of the thread that an action leads to; "none" without an action.
QString threadOf(FidelityDocument &document, QPDFObjectHandle action)
{
    if (!action.isDictionary()) {
        return u"none"_s;
    }
    QPDFObjectHandle thread = action.getKey("/D");
    QPDFObjectHandle all = document.catalogue().getKey("/Threads");
    if (thread.isString()) {
        return fidelityText(thread);
    }
    if (thread.isInteger()) {
        const int number = thread.getIntValueAsInt();
        const bool isThere = all.isArray() && number >= 0 && number < all.getArrayNItems();
        return isThere ? fidelityText(below(all.getArrayItem(number), {"/I", "/Title"}))
                       : u"no such number"_s;
    }
    for (int i = 0; all.isArray() && i < all.getArrayNItems(); ++i) {
        if (all.getArrayItem(i).getObjGen() == thread.getObjGen()) {
            return fidelityText(below(thread, {"/I", "/Title"}));
        }
    }
    return u"no thread"_s;
}

} // namespace

void TestFidelityActionTargets::threadsOfMain_data()
{
    QTest::addColumn<Bytes>("thread");
    QTest::addColumn<QString>("list");
    QTest::addColumn<QString>("title");
    for (const auto &[name, second] :
         {std::pair{"number", "1"}, std::pair{"reference", "{thread2}"}}) {
        const auto row = [&](const QString &list, const QString &title) {
            QTest::addRow("%s, %s", name, qPrintable(list)) << Bytes(second) << list << title;
        };
        row(u"M1-3"_s, u"two"_s);
        row(u"M3-1"_s, u"two"_s);
        row(u"M2"_s, u"two"_s);
        row(u"M3 M2"_s, u"two"_s);
        row(u"M2 M2"_s, u"two"_s);
        row(u"M1 M2"_s, u"two"_s);
        row(u"M2 M1 O1-3"_s, u"two"_s);
        // The link itself has nowhere to lead to.
        row(u"M3"_s, u"none"_s);
        row(u"M3 M1"_s, u"none"_s);
    }
    QTest::newRow("last") << Bytes("2") << u"M3"_s << u"three"_s;
    QTest::newRow("last of two") << Bytes("2") << u"M3 M2"_s << u"three"_s;
    QTest::newRow("first") << Bytes("0") << u"M1 M3"_s << u"one"_s;
    QTest::newRow("name") << Bytes("(two)") << u"M2"_s << u"two"_s;
}

void TestFidelityActionTargets::threadsOfMain()
{
    QFETCH(Bytes, thread);
    QFETCH(QString, list);
    QFETCH(QString, title);
    FidelityCase test;
    test.add("MAIN", withThreads("MAIN", "/S /Thread /D " + thread).file());
    test.add("OTHER", withThreads("OTHER", "/S /Thread /D " + thread).file());
    const auto saved = test.save(list);
    FidelityDocument &output = saved->output();
    for (qsizetype page = 0; page < output.marks().size(); ++page) {
        const bool isMain = output.marks().at(page).startsWith(u"MAIN");
        QCOMPARE(threadOf(output, actionOn(output, page)), isMain ? title : u"none"_s);
    }
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityActionTargets::threadsOfOtherFilesStay_data()
{
    QTest::addColumn<Bytes>("file");
    QTest::newRow("name") << Bytes("(other.pdf)");
    QTest::newRow("file dictionary") << Bytes("<< /Type /Filespec /F (other.pdf) >>");
}

void TestFidelityActionTargets::threadsOfOtherFilesStay()
{
    QFETCH(Bytes, file);
    FidelityCase test;
    test.add("MAIN", withThreads("MAIN", "/S /Thread /F " + file + " /D 1").file());
    // Number 1 counts there, whatever becomes of the threads here.
    for (const QString &list : {u"M1-3"_s, u"M2 M3"_s, u"M1 M3"_s, u"M1"_s}) {
        const auto saved = test.save(list);
        for (qsizetype page = 0; page < saved->output().marks().size(); ++page) {
            QPDFObjectHandle action = actionOn(saved->output(), page);
            QVERIFY(action.isDictionary());
            QVERIFY(action.hasKey("/F"));
            QVERIFY(action.getKey("/D").isInteger());
            QCOMPARE(action.getKey("/D").getIntValue(), 1);
        }
    }
}

void TestFidelityActionTargets::threadsOfAFurtherDocument_data()
{
    QTest::addColumn<Bytes>("action");
    QTest::addColumn<Bytes>("place");
    QTest::addColumn<QString>("left");
    const Bytes next = " /Next << /S /URI /URI (next) >>";
    for (const char *place : {"link", "trigger", "page"}) {
        const auto row = [&](const char *name, const Bytes &action, const QString &left) {
            QTest::addRow("%s, %s", place, name) << action << Bytes(place) << left;
        };
        row("number", "/S /Thread /D 1", {});
        row("reference", "/S /Thread /D {thread2}", {});
        row("name", "/S /Thread /D (two)", {});
        row("number, with one behind", "/S /Thread /D 1" + next, u"next"_s);
        row("reference, with one behind", "/S /Thread /D {thread2}" + next, u"next"_s);
        row("behind another", "/S /URI /URI (first) /Next << /S /Thread /D 1 >>", u"first"_s);
        row("of another file", "/S /Thread /F (other.pdf) /D 1", u"other.pdf"_s);
    }
}

void TestFidelityActionTargets::threadsOfAFurtherDocument()
{
    QFETCH(Bytes, action);
    QFETCH(Bytes, place);
    QFETCH(QString, left);
    FidelityAssembly document = withThreads("OTHER", "/S /URI /URI (own)");
    const Bytes whole = "<< " + action + " >>";
    if (place == "link") {
        document.replace("link2", "<< /S /URI /URI (own) >>", whole);
    } else if (place == "trigger") {
        document.addEntries("link2", "/AA << /U " + whole + " >>");
    } else {
        document.addEntries("page2", "/AA << /O " + whole + " >>");
    }
    FidelityCase test;
    test.add("MAIN", withThreads("MAIN", "/S /Thread /D 1").file());
    test.add("OTHER", document.file());
    for (const QString &list : {u"M1-3 O2"_s, u"M1 M2 O2 O1 O2"_s}) {
        const auto saved = test.save(list);
        FidelityDocument &output = saved->output();
        const qsizetype page = output.marks().indexOf(u"OTHER-2"_s);
        QCOMPARE(threadOf(output, actionOn(output, 0)), u"two"_s);
        const std::vector<QPDFObjectHandle> annotations = output.annotations(page);
        QPDFObjectHandle found = output.page(page).getKey("/AA");
        if (place != "page") {
            found = annotations.empty() ? QPDFObjectHandle::newNull() : annotations.front();
        }
        found = place == "link"      ? below(found, {"/A"})
                : place == "trigger" ? below(found, {"/AA", "/U"})
                                     : below(found, {"/O"});
        if (left.isEmpty()) {
            QVERIFY(!found.isDictionary());
        } else {
            QVERIFY(found.isDictionary());
            QCOMPARE(fidelityText(found.getKey(left == u"other.pdf" ? "/F" : "/URI")), left);
            QVERIFY(!found.hasKey("/Next"));
            QCOMPARE(found.hasKey("/D"), left == u"other.pdf");
        }
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

namespace {

/// One page with attachments called "a" and "b", each with the text "a of MAIN" and the like, and
/// a link into one of them in one of several places.
FidelityAssembly withAttachments(const Bytes &prefix, const Bytes &place, const Bytes &action)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 1);
    document.addEntries("catalogue",
                        "/Names << /EmbeddedFiles << /Names [(a) {fileA} (b) {fileB}] >> >>");
    document.set("fileA", "<< /Type /Filespec /F (a.pdf) /EF << /F {dataA} >> >>");
    document.set("fileB", "<< /Type /Filespec /F (b.pdf) /EF << /F {dataB} >> >>");
    document.setStream("dataA", "/Type /EmbeddedFile", "a of " + prefix);
    document.setStream("dataB", "/Type /EmbeddedFile", "b of " + prefix);
    document.set("link", "<< /Type /Annot /Subtype /Square /Rect [1 2 3 4] >>");
    document.addEntries("page1", "/Annots [{link}]");
    if (place == "link") {
        document.addEntries("link", "/A " + action);
    } else if (place == "trigger") {
        document.addEntries("link", "/AA << /U " + action + " >>");
    } else if (place == "page") {
        document.addEntries("page1", "/AA << /O " + action + " >>");
    } else {
        document.addEntries("catalogue", "/Outlines {outline}");
    }
    document.set("outline", "<< /Type /Outlines /First {entry} /Last {entry} /Count 1 >>");
    document.set("entry", "<< /Title (Entry) /Parent {outline} /A " + action + " >>");
    return document;
}

/// What withAttachments() put into the place on a page, or into the outline entry number `page`.
QPDFObjectHandle actionIn(FidelityDocument &document, const Bytes &place, int page)
{
    if (place == "link") {
        return below(document.annotations(page).front(), {"/A"});
    }
    if (place == "trigger") {
        return below(document.annotations(page).front(), {"/AA", "/U"});
    }
    if (place == "page") {
        return below(document.page(page), {"/AA", "/O"});
    }
    QPDFObjectHandle entry = below(document.catalogue(), {"/Outlines", "/First"});
    return below(page == 0 ? entry : below(entry, {"/Next"}), {"/A"});
}

/// The text of the attachment of this name.
QString attachment(FidelityDocument &document, const std::string &name)
{
    for (auto &[key, file] : document.names("/EmbeddedFiles")) {
        if (key == name) {
            return QString::fromLatin1(fidelityData(below(file, {"/EF", "/F"})));
        }
    }
    return u"nothing"_s;
}

} // namespace

void TestFidelityActionTargets::filesWithinTheFile_data()
{
    QTest::addColumn<Bytes>("place");
    QTest::addColumn<Bytes>("action");
    QTest::addColumn<int>("level");
    for (const char *place : {"link", "trigger", "page", "entry"}) {
        const auto row = [&](const char *name, const Bytes &action, int level) {
            QTest::addRow("%s, %s", place, name) << Bytes(place) << action << level;
        };
        const Bytes goTo = "/S /GoToE /D [0 /Fit] /T << /R /C /N (a) >> ";
        row("by name", "<< " + goTo + ">>", 0);
        row("into a file in it",
            "<< /S /GoToE /D [0 /Fit] /T << /R /C /N (a) /T << /R /C /N (b) >> >> >>", 0);
        row("object of its own", "<< /S /GoToE /D [0 /Fit] /T {way} >>", 0);
        row("behind another", "<< /S /URI /URI (x) /Next << " + goTo + ">> >>", 1);
        row("behind another, in a list", "<< /S /URI /URI (x) /Next [<< " + goTo + ">>] >>", 1);
    }
}

void TestFidelityActionTargets::filesWithinTheFile()
{
    QFETCH(Bytes, place);
    QFETCH(Bytes, action);
    QFETCH(int, level);
    FidelityCase test;
    for (const Bytes prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = withAttachments(prefix, place, action);
        document.set("way", "<< /R /C /N (a) >>");
        test.add(prefix, document.file());
    }
    const auto saved = test.save(u"M1 O1"_s);
    FidelityDocument &output = saved->output();
    for (const int page : {0, 1}) {
        QPDFObjectHandle found = actionIn(output, place, page);
        if (level > 0) {
            found = below(found, {"/Next"});
        }
        if (found.isArray()) {
            found = found.getArrayItem(0);
        }
        QPDFObjectHandle way = below(found, {"/T"});
        QVERIFY(way.isDictionary());
        const std::string name = way.getKey("/N").getStringValue();
        QCOMPARE(attachment(output, name), page == 0 ? u"a of MAIN"_s : u"a of OTHER"_s);
        // What is in the attached file has the names that it always had.
        if (QPDFObjectHandle inner = way.getKey("/T"); inner.isDictionary()) {
            QCOMPARE(inner.getKey("/N").getStringValue(), std::string("b"));
        }
    }
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    // In a file elsewhere nothing has another name.
    for (const Bytes way : {"/F (x.pdf) /T << /R /C /N (a) >>",
                            "/T << /R /P /T << /R /C /N (a) >> >>", "/T << /R /P /N (a) >>"}) {
        test.add("OTHER",
                 withAttachments("OTHER", place, "<< /S /GoToE /D [0 /Fit] " + way + " >>").file());
        FidelityDocument source(test.path('O'));
        const Bytes before = source.describe(actionIn(source, place, 0));
        const auto again = test.save(u"M1 O1"_s);
        QCOMPARE(again->output().describe(actionIn(again->output(), place, 1)), before);
    }
}

void TestFidelityActionTargets::fieldsWithFullStops_data()
{
    QTest::addColumn<Bytes>("action");
    for (const char *kind :
         {"/S /ResetForm /Fields", "/S /SubmitForm /F (x) /Fields", "/S /Hide /T"}) {
        QTest::newRow(kind) << Bytes(kind);
    }
}

void TestFidelityActionTargets::fieldsWithFullStops()
{
    QFETCH(Bytes, action);
    FidelityCase test;
    for (const Bytes prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = FidelityFixture::plain(prefix, 1);
        document.addEntries("catalogue", "/AcroForm << /Fields [{dotted} {parent} {free} {button}] "
                                         ">>");
        const Bytes widget = "<< /Type /Annot /Subtype /Widget /Rect [1 2 30 40] ";
        document.set("dotted", "<< /FT /Tx /T (a.b) /Kids [{kid}] >>");
        document.set("kid", widget + "/T (kid) /Parent {dotted} >>");
        document.set("parent", "<< /FT /Tx /T (c) /Kids [{child}] >>");
        document.set("child", widget + "/T (d.e) /Parent {parent} >>");
        document.set("free", widget + "/FT /Tx /T (" + prefix + ".x) >>");
        document.set("button", widget + "/FT /Btn /Ff 65536 /T (button) /A << " + action +
                                   " [(a.b) (a.b.kid) (a.bc) (a) (c) (c.d.e) (c.d) (" + prefix +
                                   ".x) (none)] >> >>");
        document.addEntries("page1", "/Annots [{kid} {child} {free} {button}]");
        test.add(prefix, document.file());
    }
    const auto saved = test.save(u"M1 O1"_s);
    FidelityDocument &output = saved->output();
    for (const int page : {0, 1}) {
        const QList<FidelityWidget> widgets = FidelityFields::onPage(output, page);
        QCOMPARE(widgets.size(), 4);
        const QString kid = widgets.at(0).fullName;
        QVERIFY(kid.endsWith(u".kid"_s));
        const QString dotted = kid.chopped(4);
        const QString child = widgets.at(1).fullName;
        const QString parent = child.chopped(4);
        QCOMPARE(dotted == u"a.b", page == 0);
        QCOMPARE(parent == u"c", page == 0);
        QStringList found;
        QPDFObjectHandle act = actionOn(output, page);
        for (QPDFObjectHandle &name :
             (act.hasKey("/T") ? act.getKey("/T") : act.getKey("/Fields")).getArrayAsVector()) {
            found.append(fidelityText(name));
        }
        const QString free = (page == 0 ? u"MAIN"_s : u"OTHER"_s) + u".x"_s;
        QCOMPARE(widgets.at(2).fullName, free);
        QCOMPARE(found, QStringList({dotted, kid, u"a.bc"_s, u"a"_s, parent, child,
                                     QString(parent + u".d"), free, u"none"_s}));
    }
    NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(output));
}

QTEST_GUILESS_MAIN(TestFidelityActionTargets)
#include "tst_fidelity_action_targets.moc"
