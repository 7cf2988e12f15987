// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// The annotations of a page with this subtype.
std::vector<QPDFObjectHandle> ofKind(FidelityDocument &document, qsizetype index,
                                     const std::string &kind)
{
    std::vector<QPDFObjectHandle> found;
    for (QPDFObjectHandle annotation : document.annotations(index)) {
        if (annotation.getKey("/Subtype").getName() == kind) {
            found.push_back(annotation);
        }
    }
    return found;
}

/// All objects that the annotations of a page lead to, without pages and what they have in common.
std::set<QPDFObjGen> annotationObjects(FidelityDocument &document, qsizetype index)
{
    std::set<QPDFObjGen> objects;
    for (QPDFObjectHandle annotation : document.annotations(index)) {
        objects.insert(annotation.getObjGen());
        for (const char *key : {"/Popup", "/IRT", "/Parent"}) {
            if (annotation.getKey(key).isIndirect()) {
                objects.insert(annotation.getKey(key).getObjGen());
            }
        }
    }
    return objects;
}

/// Two pages with the given annotations on the first: objects note, popup and reply.
FidelityAssembly withNotes(const Bytes &annotations)
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("page1", "/Annots " + annotations);
    document.set("note", "<< /Type /Annot /Subtype /Text /Rect [1 2 3 4] /Contents (note) /Popup "
                         "{popup} >>");
    document.set("popup", "<< /Type /Annot /Subtype /Popup /Rect [1 2 3 4] /Parent {note} >>");
    document.set("reply", "<< /Type /Annot /Subtype /Text /Rect [1 2 3 4] /Contents (reply) /IRT "
                          "{note} /RT /R >>");
    return document;
}

} // namespace

/// Notes, markers and what belongs to them after a save.
class TestFidelityAnnotations : public QObject
{
    Q_OBJECT

private slots:
    void annotationsStayTogether_data() { FidelityCase::addLists(); }
    void annotationsStayTogether();
    void popUpsKnowTheirNotes();
    void repliesKnowTheirNotes();
    void annotationsKnowTheirPage();
    void copiesShareNothing();
    void copiesOfCopies();
    void popUpOutsideItsPage();
    void annotationOnTwoPages();
    void arrayOfTwoPages();
    void brokenAnnotations_data();
    void brokenAnnotations();
    void longChainOfReplies();
    void attachedFilesStay();
};

void TestFidelityAnnotations::annotationsStayTogether()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->annotationProblems());
    NO_PROBLEMS(FidelitySoundness::annotationProblems(saved->output()));
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
}

void TestFidelityAnnotations::popUpsKnowTheirNotes()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M8 M4 M1 M4"_s);
    NO_PROBLEMS(saved->pageProblems());
    for (int i = 0; i < 4; ++i) {
        const auto notes = ofKind(saved->output(), i, "/Text");
        const auto popUps = ofKind(saved->output(), i, "/Popup");
        QCOMPARE(notes.size(), 2U);
        QCOMPARE(popUps.size(), 1U);
        QPDFObjectHandle note = notes.front();
        QPDFObjectHandle popUp = popUps.front();
        QVERIFY(note.getKey("/Popup").getObjGen() == popUp.getObjGen());
        QVERIFY(popUp.getKey("/Parent").getObjGen() == note.getObjGen());
    }
}

void TestFidelityAnnotations::repliesKnowTheirNotes()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M1 O1 O8 M8 O1"_s);
    NO_PROBLEMS(saved->pageProblems());
    for (int i = 0; i < 5; ++i) {
        const auto notes = ofKind(saved->output(), i, "/Text");
        QCOMPARE(notes.size(), 2U);
        QPDFObjectHandle note = notes.front();
        QPDFObjectHandle reply = notes.back();
        QVERIFY(reply.getKey("/IRT").getObjGen() == note.getObjGen());
        QCOMPARE(fidelityText(note.getKey("/Contents")),
                 saved->output().marks().at(i) + u" note"_s);
    }
}

void TestFidelityAnnotations::annotationsKnowTheirPage()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"O1 M8 M1 M8+90 O1"_s);
    NO_PROBLEMS(saved->pageProblems());
    int checked = 0;
    for (int i = 0; i < 5; ++i) {
        for (QPDFObjectHandle annotation : saved->output().annotations(i)) {
            QCOMPARE(saved->output().indexOf(annotation.getKey("/P")), i);
            ++checked;
        }
    }
    QVERIFY(checked > 20);
}

void TestFidelityAnnotations::copiesShareNothing()
{
    FidelityCase test({"MAIN"});
    const auto saved = test.save(u"M1-8 M1-8"_s);
    NO_PROBLEMS(saved->pageProblems());
    for (int i = 0; i < FidelityFixture::kPages; ++i) {
        const std::set<QPDFObjGen> first = annotationObjects(saved->output(), i);
        const std::set<QPDFObjGen> second =
            annotationObjects(saved->output(), i + FidelityFixture::kPages);
        QVERIFY(!second.empty());
        for (const QPDFObjGen &object : second) {
            QVERIFY(!first.contains(object));
        }
    }
}

void TestFidelityAnnotations::copiesOfCopies()
{
    FidelityCase test({"MAIN"});
    const EngineCalls::Outcome first = save(test.pages(u"M1 M4 M1"_s), test.output());
    QVERIFY2(first.ok, qPrintable(first.message));
    // The marks of copies are equal, so that only what holds for every file is asked of the second.
    FidelityCase again;
    again.add("MAIN", contentOf(test.output()));
    const EngineCalls::Outcome second = save(again.pages(u"M3 M1 M2 M3 M1"_s), again.output());
    QVERIFY2(second.ok, qPrintable(second.message));
    NO_PROBLEMS(FidelitySoundness::problems(again.output()));
    FidelityDocument output(again.output());
    for (const int page : {0, 1, 3, 4}) {
        QCOMPARE(ofKind(output, page, "/Text").size(), 2U);
    }
}

void TestFidelityAnnotations::popUpOutsideItsPage()
{
    // The note names a pop-up that its page does not list.
    FidelityCase test;
    test.add("MAIN", withNotes("[{note} {reply}]").file());
    for (const QString &list : {u"M1 M2"_s, u"M2 M1"_s, u"M1 M1"_s}) {
        const EngineCalls::Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        FidelityDocument output(test.output());
        NO_PROBLEMS(FidelitySoundness::pageProblems(output));
        NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
        QCOMPARE(ofKind(output, output.marks().indexOf(u"MAIN-1"_s), "/Text").size(), 2U);
    }
}

void TestFidelityAnnotations::annotationOnTwoPages()
{
    FidelityAssembly document = withNotes("[{note} {popup} {reply}]");
    document.addEntries("page2", "/Annots [{note} {popup}]");
    FidelityCase test;
    test.add("MAIN", document.file());
    const EngineCalls::Outcome outcome = save(test.pages(u"M2 M1 M2"_s), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    FidelityDocument output(test.output());
    NO_PROBLEMS(FidelitySoundness::pageProblems(output));
    NO_PROBLEMS(FidelitySoundness::annotationProblems(output));
    for (int i = 0; i < 3; ++i) {
        QVERIFY(!ofKind(output, i, "/Text").empty());
    }
}

void TestFidelityAnnotations::arrayOfTwoPages()
{
    FidelityAssembly document = withNotes("{array}");
    document.addEntries("page2", "/Annots {array}");
    document.set("array", "[{note} {popup} {reply}]");
    FidelityCase test;
    test.add("MAIN", document.file());
    const EngineCalls::Outcome outcome = save(test.pages(u"M2 M1"_s), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    FidelityDocument output(test.output());
    NO_PROBLEMS(FidelitySoundness::pageProblems(output));
    NO_PROBLEMS(FidelitySoundness::annotationProblems(output));
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(ofKind(output, i, "/Text").size(), 2U);
    }
}

void TestFidelityAnnotations::brokenAnnotations_data()
{
    QTest::addColumn<Bytes>("annotations");
    QTest::newRow("number") << Bytes("5");
    QTest::newRow("dictionary") << Bytes("<< /Subtype /Text >>");
    QTest::newRow("nulls") << Bytes("[null {note} null {popup} {reply}]");
    QTest::newRow("other kinds of objects")
        << Bytes("[5 (a) /b [] {content1} {page2} {catalogue}]");
    QTest::newRow("object that is missing") << Bytes("[99 0 R {note} {popup}]");
    QTest::newRow("twice the same") << Bytes("[{note} {note} {popup} {popup}]");
    QTest::newRow("array in an array") << Bytes("[[{note} {popup}]]");
    QTest::newRow("no kind") << Bytes("[<< /Rect [1 2 3 4] /Dest [{page2} /Fit] >>]");
    QTest::newRow("kind of another kind") << Bytes("[<< /Subtype (Link) /Dest 7 /A 8 /P 9 >>]");
    QTest::newRow("reply to itself") << Bytes("[{ring}]");
    QTest::newRow("page of another kind")
        << Bytes("[<< /Subtype /Text /P {note} >> {note} {popup}]");
}

void TestFidelityAnnotations::brokenAnnotations()
{
    QFETCH(Bytes, annotations);
    FidelityAssembly document = withNotes("{array}");
    document.set("ring", "<< /Type /Annot /Subtype /Text /Rect [1 2 3 4] /IRT {ring} >>");
    document.set("array", annotations);
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1 M2"_s, u"M2 M1"_s, u"M1 M1"_s, u"M1"_s}) {
        const EngineCalls::Outcome outcome = save(test.pages(list), test.output());
        QVERIFY2(outcome.ok, qPrintable(outcome.message));
        FidelityDocument output(test.output());
        QCOMPARE(output.marks().size(), test.pages(list).size());
        NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
    }
}

void TestFidelityAnnotations::longChainOfReplies()
{
    constexpr int kReplies = 20'000;
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    Bytes all;
    for (int i = 0; i < kReplies; ++i) {
        all += "{note" + Bytes::number(i) + "} ";
        document.set("note" + Bytes::number(i),
                     "<< /Type /Annot /Subtype /Text /Rect [1 2 3 4] " +
                         (i > 0 ? Bytes("/IRT {note" + Bytes::number(i - 1) + '}') : Bytes()) +
                         " >>");
    }
    document.addEntries("page1", "/Annots [" + all + ']');
    FidelityCase test;
    test.add("MAIN", document.file());
    const EngineCalls::Outcome outcome = save(test.pages(u"M2 M1 M1"_s), test.output());
    QVERIFY2(outcome.ok, qPrintable(outcome.message));
    FidelityDocument output(test.output());
    QCOMPARE(output.annotations(1).size(), std::size_t{kReplies});
    QCOMPARE(output.annotations(2).size(), std::size_t{kReplies});
    NO_PROBLEMS(FidelitySoundness::pageProblems(output));
}

void TestFidelityAnnotations::attachedFilesStay()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M6 O6 M6"_s);
    NO_PROBLEMS(saved->pageProblems());
    const QList<Bytes> wanted{"MAIN data of a note", "OTHER data of a note", "MAIN data of a note"};
    for (int i = 0; i < 3; ++i) {
        const auto files = ofKind(saved->output(), i, "/FileAttachment");
        QCOMPARE(files.size(), 1U);
        QPDFObjectHandle file = files.front();
        QCOMPARE(fidelityData(file.getKey("/FS").getKey("/EF").getKey("/F")), wanted.at(i));
    }
}

QTEST_GUILESS_MAIN(TestFidelityAnnotations)
#include "tst_fidelity_annotations.moc"
