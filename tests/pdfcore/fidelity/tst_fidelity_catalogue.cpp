// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_case.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

/// The labels of a saved list of pages.
QStringList savedLabels(FidelityCase &test, const QString &list)
{
    const auto saved = test.save(list);
    return saved->output().labels();
}

/// "key: data" of every attachment.
QStringList attachments(FidelityDocument &document)
{
    QStringList found;
    for (const auto &[name, file] : document.names("/EmbeddedFiles")) {
        QPDFObjectHandle entry = file;
        found.append(QString::fromStdString(name) + u": " +
                     QString::fromLatin1(fidelityData(entry.getKey("/EF").getKey("/F"))).trimmed());
    }
    return found;
}

/// A plain document with one attachment.
FidelityAssembly withAttachment(const Bytes &prefix, const Bytes &key, const Bytes &data)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 2);
    document.addEntries("catalogue",
                        "/Names << /EmbeddedFiles << /Names [(" + key + ") {file}] >> >>");
    document.set("file", "<< /Type /Filespec /F (" + key + ") /EF << /F {data} >> >>");
    document.setStream("data", "/Type /EmbeddedFile", data);
    return document;
}

} // namespace

/// What belongs to a document as a whole, after a save.
class TestFidelityCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void documentEntriesStay_data() { FidelityCase::addLists(); }
    void documentEntriesStay();
    void informationStays();
    void metadataStays();
    void everyKeyStaysWithAnUnchangedList();
    void damagedNamesStayWithAnUnchangedList();
    void unknownKeysStay();
    void markedDocumentIsTheMainOne();
    void firstDocumentIsTheMainOne();
    void openActionToAPageThatIsGone_data();
    void openActionToAPageThatIsGone();
    void openActionToAPageThatStays_data() { openActionToAPageThatIsGone_data(); }
    void openActionToAPageThatStays();
    void otherOpenActionsStay();
    void labelsFollowTheirPages_data() { FidelityCase::addLists(); }
    void labelsFollowTheirPages();
    void labelsOfMovedPages();
    void labelsOfBlankPages();
    void labelsOfDocumentsWithoutLabels();
    void labelsOfForeignPagesOnly();
    void noLabelsWithoutLabels();
    void attachmentsStay_data() { FidelityCase::addLists(); }
    void attachmentsStay();
    void attachmentsOfEveryDocument();
    void equalKeysOfAttachments();
    void attachmentsOfAForeignDocumentOnly();
    void manyAttachments();
};

void TestFidelityCatalogue::documentEntriesStay()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    NO_PROBLEMS(test.save(list)->catalogueProblems());
}

void TestFidelityCatalogue::informationStays()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M3 O2"_s);
    QPDFObjectHandle info = saved->output().pdf().getTrailer().getKey("/Info");
    QVERIFY(info.isDictionary());
    QCOMPARE(fidelityText(info.getKey("/Title")), u"MAIN title"_s);
    QCOMPARE(fidelityText(info.getKey("/Author")), u"MAIN author"_s);
    QCOMPARE(fidelityText(info.getKey("/Subject")), u"subject"_s);
    QCOMPARE(fidelityText(info.getKey("/Keywords")), u"one two"_s);
    QCOMPARE(fidelityText(info.getKey("/CreationDate")), u"D:20200102030405Z"_s);
    QCOMPARE(fidelityText(info.getKey("/Project")), u"MAIN project"_s);
}

void TestFidelityCatalogue::metadataStays()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"M3 O2"_s);
    QPDFObjectHandle metadata = saved->output().catalogue().getKey("/Metadata");
    QVERIFY(metadata.isStream());
    QVERIFY(fidelityData(metadata).contains("<!-- MAIN -->"));
    QCOMPARE(metadata.getDict().getKey("/Subtype").unparse(), std::string("/XML"));
}

void TestFidelityCatalogue::everyKeyStaysWithAnUnchangedList()
{
    FidelityAssembly document = FidelityFixture::unsignedEverything("MAIN");
    document.set("thread", "<< /Type /Thread /F {bead} /I << /Title (article) >> >>");
    document.set("bead", "<< /Type /Bead /T {thread} /N {bead} /V {bead} /P {page1} /R [0 0 9 9] "
                         ">>");
    document.addEntries("page1", "/B [{bead}]");
    document.addEntries(
        "catalogue",
        "/Version /1.7 /Extensions << /ADBE << /BaseVersion /1.7 /ExtensionLevel 8 >> >> /AA << "
        "/WS << /S /JavaScript /JS (beforeSaving();) >> >> /URI << /Base (https://example.org) >> "
        "/Threads [{thread}] /SpiderInfo << /V 1 >> /PieceInfo << /Maker << /Private (kept) >> >> "
        "/Legal "
        "<< /JavaScriptActions 1 >> /Requirements [<< /S /EnableJavaScripts >>] /NeedsRendering "
        "false /AF [{dataFile}] /DSS << /Certs [] >> /Collection << /View /H >> /MakerData "
        "(catalogue)");
    FidelityCase test;
    test.add("MAIN", document.file());
    FidelityDocument source(test.path('M'));
    const auto saved = test.save(u"M1-8"_s);
    for (const std::string &key : source.catalogue().getKeys()) {
        QVERIFY2(saved->output().catalogue().hasKey(key), key.c_str());
    }
    for (const char *key :
         {"/Extensions", "/AA", "/URI", "/SpiderInfo", "/PieceInfo", "/Legal", "/Requirements",
          "/AF", "/Collection", "/MakerData", "/MarkInfo", "/PageLabels"}) {
        QCOMPARE(saved->output().describe(saved->output().catalogue().getKey(key)),
                 source.describe(source.catalogue().getKey(key)));
    }
    NO_PROBLEMS(saved->problems());
}

void TestFidelityCatalogue::damagedNamesStayWithAnUnchangedList()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/Names << /Dests {tree} >>");
    document.set("tree",
                 "<< /Names [(b) [{page2} /Fit] /odd [{page3} /Fit] (a) [{page1} /Fit]] >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    FidelityDocument source(test.path('M'));
    const auto saved = test.save(u"M1-3"_s);
    QCOMPARE(saved->output().describe(saved->output().catalogue().getKey("/Names")),
             source.describe(source.catalogue().getKey("/Names")));
}

void TestFidelityCatalogue::unknownKeysStay()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/MakerData << /Deep [1 (two) << /Three /four >>] >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    FidelityDocument source(test.path('M'));
    const auto saved = test.save(u"M3 M1"_s);
    QCOMPARE(saved->output().describe(saved->output().catalogue().getKey("/MakerData")),
             source.describe(source.catalogue().getKey("/MakerData")));
}

void TestFidelityCatalogue::markedDocumentIsTheMainOne()
{
    FidelityCase test({"MAIN", "OTHER"});
    QList<PdfSourcePage> pages = test.pages(u"O1 _ M1 M2"_s);
    pages[2].isOfMainDocument = true;
    pages[3].isOfMainDocument = true;
    const auto saved = test.save(pages);
    NO_PROBLEMS(saved->pageProblems());
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    QCOMPARE(fidelityText(saved->output().catalogue().getKey("/Lang")), u"en-MAIN"_s);
    QPDFObjectHandle info = saved->output().pdf().getTrailer().getKey("/Info");
    QVERIFY(info.isDictionary());
    QCOMPARE(fidelityText(info.getKey("/Title")), u"MAIN title"_s);
}

void TestFidelityCatalogue::firstDocumentIsTheMainOne()
{
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(u"_ O1 M1-8"_s);
    QCOMPARE(fidelityText(saved->output().catalogue().getKey("/Lang")), u"en-OTHER"_s);
}

void TestFidelityCatalogue::openActionToAPageThatIsGone_data()
{
    QTest::addColumn<Bytes>("action");
    QTest::newRow("array") << Bytes("[{page3} /Fit]");
    QTest::newRow("action") << Bytes("<< /S /GoTo /D [{page3} /FitH 5] >>");
    QTest::newRow("action with a name") << Bytes("<< /S /GoTo /D /ch3 >>");
    QTest::newRow("action with a string") << Bytes("<< /S /GoTo /D (sec.3) >>");
    QTest::newRow("page number") << Bytes("[2 /Fit]");
}

void TestFidelityCatalogue::openActionToAPageThatIsGone()
{
    QFETCH(Bytes, action);
    FidelityAssembly document = FidelityFixture::everything("MAIN");
    document.replace("catalogue", "[{page3} /Fit]", action);
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M8 M1"_s);
    NO_PROBLEMS(saved->pageProblems());
    QVERIFY(!saved->output().catalogue().hasKey("/OpenAction"));
    NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
}

void TestFidelityCatalogue::openActionToAPageThatStays()
{
    QFETCH(Bytes, action);
    FidelityAssembly document = FidelityFixture::everything("MAIN");
    document.replace("catalogue", "[{page3} /Fit]", action);
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M8 M1 M3"_s);
    NO_PROBLEMS(saved->pageProblems());
    QPDFObjectHandle opening = saved->output().catalogue().getKey("/OpenAction");
    const FidelityTarget target = saved->output().targetOfDestination(
        opening.isDictionary() && opening.hasKey("/S") ? opening.getKey("/D") : opening);
    QCOMPARE(target.mark, u"MAIN-3"_s);
    QCOMPARE(target.index, 2);
}

void TestFidelityCatalogue::otherOpenActionsStay()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/OpenAction << /S /JavaScript /JS (start();) >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M3 M2"_s);
    QCOMPARE(saved->output().describe(saved->output().catalogue().getKey("/OpenAction")),
             Bytes("<</JS (start();) /S /JavaScript>>"));
}

void TestFidelityCatalogue::labelsFollowTheirPages()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    NO_PROBLEMS(test.save(list)->labelProblems());
}

void TestFidelityCatalogue::labelsOfMovedPages()
{
    FidelityCase test({"MAIN", "OTHER"});
    QCOMPARE(savedLabels(test, u"M8 M2 M1 M4 M3 M7 O2"_s),
             QStringList({u"End"_s, u"ii"_s, u"i"_s, u"A-6"_s, u"A-5"_s, u"B"_s, u"ii"_s}));
    QCOMPARE(savedLabels(test, u"M5 M5"_s), QStringList({u"A-7"_s, u"A-7"_s}));
}

void TestFidelityCatalogue::labelsOfBlankPages()
{
    FidelityCase test({"MAIN"});
    QCOMPARE(savedLabels(test, u"_ M1 _ M2 _"_s),
             QStringList({u"1"_s, u"i"_s, u"3"_s, u"ii"_s, u"5"_s}));
}

void TestFidelityCatalogue::labelsOfDocumentsWithoutLabels()
{
    FidelityCase test({"MAIN"});
    test.add("OTHER", FidelityFixture::plain("OTHER", 3).file());
    QCOMPARE(savedLabels(test, u"M1 O3 O1 M4"_s), QStringList({u"i"_s, u"2"_s, u"3"_s, u"A-6"_s}));
}

void TestFidelityCatalogue::labelsOfForeignPagesOnly()
{
    FidelityCase test({"OTHER"});
    test.add("MAIN", FidelityFixture::plain("MAIN", 3).file());
    QCOMPARE(savedLabels(test, u"M1 O2 M2 O8"_s), QStringList({u"1"_s, u"ii"_s, u"3"_s, u"End"_s}));
}

void TestFidelityCatalogue::noLabelsWithoutLabels()
{
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 3).file());
    const auto saved = test.save(u"M3 _ M2"_s);
    NO_PROBLEMS(saved->labelProblems());
}

void TestFidelityCatalogue::attachmentsStay()
{
    QFETCH(QString, list);
    FidelityCase test({"MAIN", "OTHER"});
    const auto saved = test.save(list);
    NO_PROBLEMS(saved->attachmentProblems());
    NO_PROBLEMS(FidelitySoundness::destinationProblems(saved->output()));
}

void TestFidelityCatalogue::attachmentsOfEveryDocument()
{
    FidelityCase test;
    test.add("MAIN", withAttachment("MAIN", "m.txt", "one").file());
    test.add("OTHER", withAttachment("OTHER", "a.txt", "two").file());
    const auto saved = test.save(u"M1 O2"_s);
    QCOMPARE(attachments(saved->output()), QStringList({u"a.txt: two"_s, u"m.txt: one"_s}));
}

void TestFidelityCatalogue::equalKeysOfAttachments()
{
    FidelityCase test;
    test.add("MAIN", withAttachment("MAIN", "a.txt", "one").file());
    test.add("OTHER", withAttachment("OTHER", "a.txt", "two").file());
    test.add("THIRD", withAttachment("THIRD", "a.txt", "three").file());
    const auto saved = test.save(u"M1 O1 T1"_s);
    const QStringList found = attachments(saved->output());
    QCOMPARE(found.size(), 3);
    QVERIFY(found.contains(u"a.txt: one"_s));
    QCOMPARE(found.filter(u": two"_s).size(), 1);
    QCOMPARE(found.filter(u": three"_s).size(), 1);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityCatalogue::attachmentsOfAForeignDocumentOnly()
{
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 2).file());
    test.add("OTHER", withAttachment("OTHER", "a.txt", "two").file());
    const auto saved = test.save(u"M1 O1"_s);
    QCOMPARE(attachments(saved->output()), QStringList{u"a.txt: two"_s});
}

void TestFidelityCatalogue::manyAttachments()
{
    constexpr int kFiles = 500;
    FidelityCase test;
    for (const char *prefix : {"MAIN", "OTHER"}) {
        FidelityAssembly document = FidelityFixture::plain(prefix, 1);
        document.addEntries("catalogue", "/Names << /EmbeddedFiles {files} >>");
        Bytes names;
        for (int i = 0; i < kFiles; ++i) {
            const Bytes key = Bytes::number(i).rightJustified(4, '0');
            names += " (" + key + ") {file" + key + '}';
            document.set("file" + key,
                         "<< /Type /Filespec /F (f) /EF << /F {data" + key + "} >> >>");
            document.setStream("data" + key, "/Type /EmbeddedFile", Bytes(prefix) + key);
        }
        document.set("files", "<< /Names [" + names + "] >>");
        test.add(prefix, document.file());
    }
    const auto saved = test.save(u"O1 M1"_s);
    NO_PROBLEMS(saved->attachmentProblems());
    NO_PROBLEMS(FidelitySoundness::destinationProblems(saved->output()));
}

QTEST_GUILESS_MAIN(TestFidelityCatalogue)
#include "tst_fidelity_catalogue.moc"
