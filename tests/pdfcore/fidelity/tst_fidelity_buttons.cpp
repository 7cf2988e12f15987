// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_fields.h"
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// What an action names: a text as it stands, an object by its name and the page that lists it.
QString nameOfTarget(FidelityDocument &document, QPDFObjectHandle target)
{
    if (target.isString()) {
        return fidelityText(target);
    }
    if (!target.isDictionary()) {
        return u"nothing"_s;
    }
    for (qsizetype i = 0; i < document.marks().size(); ++i) {
        for (const QPDFObjectHandle &annotation : document.annotations(i)) {
            if (QPDFObjectHandle(annotation).getObjGen() == target.getObjGen()) {
                return u"<%1@%2>"_s.arg(FidelityFields::fullName(target)).arg(i);
            }
        }
    }
    return u"<%1>"_s.arg(FidelityFields::fullName(target));
}

void addTargets(FidelityDocument &document, QPDFObjectHandle action, QStringList &targets)
{
    if (action.isArray()) {
        for (const QPDFObjectHandle &item : action.getArrayAsVector()) {
            addTargets(document, item, targets);
        }
    }
    if (!action.isDictionary()) {
        return;
    }
    for (const char *key : {"/T", "/AN", "/Fields"}) {
        QPDFObjectHandle named = action.getKey(key);
        if (named.isNull()) {
            continue;
        }
        for (const QPDFObjectHandle &item :
             named.isArray() ? named.getArrayAsVector() : std::vector{named}) {
            targets.append(nameOfTarget(document, item));
        }
    }
    addTargets(document, action.getKey("/Next"), targets);
}

/// What the actions of the button on a page act on. It is the last annotation of its page.
QStringList targetsOfButton(FidelityDocument &document, qsizetype page)
{
    QStringList targets;
    QPDFObjectHandle button = document.annotations(page).back();
    addTargets(document, button.getKey("/A"), targets);
    if (QPDFObjectHandle triggers = button.getKey("/AA"); triggers.isDictionary()) {
        for (const std::string &key : triggers.getKeys()) {
            addTargets(document, triggers.getKey(key), targets);
        }
    }
    return targets;
}

/// Two pages with fields. The first has a screen as well, and a button with the given entries.
FidelityAssembly withButton(const Bytes &prefix, const Bytes &entries)
{
    FidelityAssembly document =
        withForm(prefix, 2, "/Fields [{text} {person} {other} {button}] /DA (/F1 9 Tf)");
    addWidget(document, "text", "/FT /Tx /T (text)");
    document.set("person", "<< /T (person) /FT /Tx /Kids [{first}] >>");
    addWidget(document, "first", "/T (first) /Parent {person}");
    document.set("screen", "<< /Type /Annot /Subtype /Screen /Rect [5 5 9 9] /T (screen) >>");
    addWidget(document, "other", "/FT /Tx /T (other)");
    document.set("shared", "<< /S /Hide /T {text} >>");
    addWidget(document, "button", "/FT /Btn /Ff 65536 /T (button) " + entries);
    annotate(document, 1, "{text} {first} {screen} {button}");
    annotate(document, 2, "{other}");
    return document;
}

/// The names under which the fields of a copy or of a further document stand in the output.
QStringList renamed(QStringList targets, const QStringList &names, int page)
{
    for (QString &target : targets) {
        for (const QString &name : names) {
            target.replace(name, name + u"_2"_s);
        }
        target.replace(u"@0"_s, u"@%1"_s.arg(page));
    }
    return targets;
}

} // namespace

/// Buttons that act on fields and annotations, in copies of pages and in documents put together.
class TestFidelityButtons : public QObject
{
    Q_OBJECT

private slots:
    void buttonsOfACopyActOnIt_data();
    void buttonsOfACopyActOnIt();
    void buttonsOfAForeignFormActOnIt_data() { buttonsOfACopyActOnIt_data(); }
    void buttonsOfAForeignFormActOnIt();
    void eventsOfPagesAndFieldsActOnThem();
};

void TestFidelityButtons::buttonsOfACopyActOnIt_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::addColumn<QStringList>("targets");
    const auto row = [](const char *name, const Bytes &entries, const QStringList &targets) {
        QTest::newRow(name) << entries << targets;
    };
    row("hide an annotation", "/A << /S /Hide /T {text} >>", {u"<text@0>"_s});
    row("hide by name", "/A << /S /Hide /T (person.first) >>", {u"person.first"_s});
    row("hide several", "/A << /S /Hide /T [{text} (text) {screen} (other)] >>",
        {u"<text@0>"_s, u"text"_s, u"<screen@0>"_s, u"other"_s});
    row("reset fields", "/A << /S /ResetForm /Fields [{text} {person}] >>",
        {u"<text@0>"_s, u"<person>"_s});
    row("reset by names", "/A << /S /ResetForm /Fields [(person) (text)] >>",
        {u"person"_s, u"text"_s});
    row("send fields", "/A << /S /SubmitForm /F (http://localhost) /Fields [{first} (text)] >>",
        {u"<person.first@0>"_s, u"text"_s});
    row("play a screen", "/A << /S /Rendition /OP 0 /AN {screen} >>", {u"<screen@0>"_s});
    row("behind another action",
        "/A << /S /Named /N /NextPage /Next << /S /Hide /T {text} /Next << /S /ResetForm /Fields "
        "[(text)] >> >> >>",
        {u"<text@0>"_s, u"text"_s});
    row("in a list of actions",
        "/A << /S /Named /N /NextPage /Next [<< /S /Rendition /OP 0 /AN {screen} >> "
        "<< /S /SubmitForm /F (http://localhost) /Fields [(person.first)] >>] >>",
        {u"<screen@0>"_s, u"person.first"_s});
    row("set off by an event", "/AA << /D << /S /Hide /T {text} >> /U << /S /Hide /T (text) >> >>",
        {u"<text@0>"_s, u"text"_s});
    row("action of its own", "/A {shared} /AA << /U << /S /Named /N /NextPage /Next {shared} >> >>",
        {u"<text@0>"_s, u"<text@0>"_s});
}

void TestFidelityButtons::buttonsOfACopyActOnIt()
{
    QFETCH(Bytes, entries);
    QFETCH(QStringList, targets);
    FidelityCase test;
    test.add("MAIN", withButton("MAIN", entries).file());
    const auto saved = test.save(u"M1 M2 M1"_s);
    QCOMPARE(targetsOfButton(saved->output(), 0), targets);
    QCOMPARE(targetsOfButton(saved->output(), 2), renamed(targets, {u"text"_s, u"person"_s}, 2));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityButtons::buttonsOfAForeignFormActOnIt()
{
    QFETCH(Bytes, entries);
    QFETCH(QStringList, targets);
    FidelityCase test;
    test.add("MAIN", withButton("MAIN", entries).file());
    test.add("OTHER", withButton("OTHER", entries).file());
    const auto saved = test.save(u"M1 M2 O1 O2"_s);
    QCOMPARE(targetsOfButton(saved->output(), 0), targets);
    QCOMPARE(targetsOfButton(saved->output(), 2),
             renamed(targets, {u"text"_s, u"person"_s, u"other"_s}, 2));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityButtons::eventsOfPagesAndFieldsActOnThem()
{
    const Bytes action = "<< /S /ResetForm /Fields [(text) {text}] >> >>";
    FidelityCase test;
    for (const char *prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = withButton(prefix, {});
        document.addEntries("page1", "/AA << /O " + action);
        document.addEntries("person", "/AA << /K " + action);
        test.add(prefix, document.file());
    }
    for (const QString &list : {u"M1 M2 M1"_s, u"M1 M2 O1 O2"_s}) {
        const auto saved = test.save(list);
        FidelityDocument &output = saved->output();
        for (const int page : {0, 2}) {
            QStringList targets;
            addTargets(output, output.page(page).getKey("/AA").getKey("/O"), targets);
            QPDFObjectHandle person = output.annotations(page).at(1).getKey("/Parent");
            addTargets(output, person.getKey("/AA").getKey("/K"), targets);
            const QStringList wanted = page == 0 ? QStringList{u"text"_s, u"<text@0>"_s}
                                                 : QStringList{u"text_2"_s, u"<text_2@2>"_s};
            QCOMPARE(targets, wanted + wanted);
        }
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

QTEST_GUILESS_MAIN(TestFidelityButtons)
#include "tst_fidelity_buttons.moc"
