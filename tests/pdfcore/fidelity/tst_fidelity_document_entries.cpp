// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

Bytes utf16(const QString &text)
{
    Bytes digits = "FEFF";
    for (const QChar &letter : text) {
        digits += Bytes::number(letter.unicode(), 16).rightJustified(4, '0');
    }
    return '<' + digits + '>';
}

/// One page with attachments under the given keys, each a string as it stands in a file. What is
/// attached says which one of which document it is.
FidelityAssembly withAttachments(const Bytes &prefix, const QList<Bytes> &keys)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 1);
    Bytes names;
    for (int i = 0; i < keys.size(); ++i) {
        const Bytes number = Bytes::number(i + 1);
        document.setStream("data" + number, "/Type /EmbeddedFile", prefix + " file " + number);
        document.set("spec" + number,
                     "<< /Type /Filespec /F (x.txt) /EF << /F {data" + number + "} >> >>");
        names += keys.at(i) + " {spec" + number + "} ";
    }
    document.addEntries("catalogue", "/Names << /EmbeddedFiles << /Names [" + names + "] >> >>");
    return document;
}

/// The attachments of a document, each as its name and what is in it.
QStringList attachments(FidelityDocument &document)
{
    QStringList found;
    for (auto &[name, spec] : document.names("/EmbeddedFiles")) {
        QPDFObjectHandle file = spec.getKey("/EF").getKey("/F");
        found.append(fidelityText(QPDFObjectHandle::newString(name)) + u": "_s +
                     QString::fromLatin1(fidelityData(file)));
    }
    found.sort();
    return found;
}

/// Three pages with one resource dictionary, of whose content only the first page uses something.
FidelityAssembly withSharedResources(const Bytes &content)
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    for (const char *page : {"page1", "page2", "page3"}) {
        document.replace(page, "<< /Font << /F1 {font} >> >>", "{shared}");
    }
    document.set("shared",
                 "<< /Font << /F1 {font} /OfForm {courier} /OfInner {courier} /OfLook {times} "
                 "/OfState {times} /Glyphs {glyphs} /OfGlyph {courier} >> "
                 "/XObject << /Form {form} /Outer {outer} /Picture {picture} /Unused {unused} >> "
                 "/ColorSpace << /OfPicture {colours} >> >>");
    document.set("courier", "<< /Type /Font /Subtype /Type1 /BaseFont /Courier-Bold >>");
    document.set("times", "<< /Type /Font /Subtype /Type1 /BaseFont /Times-Italic >>");
    document.set("colours", "[/Indexed /DeviceRGB 1 <FF000000FF00>]");
    const Bytes part = "/Type /XObject /Subtype /Form /BBox [0 0 300 400] ";
    const Bytes own = "/Resources << /ProcSet [/PDF /Text] /Font << /Mine {times} >> >>";
    document.setStream("form", part + own, "BT /OfForm 20 Tf 20 20 Td (form) Tj ET");
    document.setStream("inner", part + own, "BT /OfInner 20 Tf 20 60 Td (inner) Tj ET");
    document.setStream("outer", part + "/Resources << /XObject << /Inner {inner} >> >>",
                       "/Inner Do");
    document.setStream("picture", part + own,
                       "q 50 0 0 50 100 100 cm BI /W 8 /H 1 /BPC 1 /CS /OfPicture ID \xAA EI Q");
    document.set("glyphs", "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 1000 1000] /FontMatrix "
                           "[0.001 0 0 0.001 0 0] /FirstChar 97 /LastChar 97 /Widths [1000] "
                           "/Encoding << /Type /Encoding /Differences [97 /a] >> /CharProcs << /a "
                           "{glyph} >> /Resources << /ProcSet [/PDF] >> >>");
    document.setStream("glyph", {}, "1000 0 d0 BT /OfGlyph 900 Tf 0 0 Td (g) Tj ET");
    document.setStream("unused",
                       "/Type /XObject /Subtype /Image /Width 6 /Height 1 /BitsPerComponent 8 "
                       "/ColorSpace /DeviceGray",
                       "UNUSED");
    document.setStream("look", part + own, "BT /OfLook 20 Tf 20 20 Td (look) Tj ET");
    document.setStream("state", part + own, "BT /OfState 20 Tf 20 20 Td (state) Tj ET");
    const Bytes stamp = "<< /Type /Annot /Subtype /Stamp /Rect [0 0 300 400] /F 4 ";
    document.set("stamp", stamp + "/AP << /N {look} >> >>");
    document.set("stampWithStates", stamp + "/AS /On /AP << /N << /On {state} >> >> >>");
    document.setStream("content1", {}, FidelityFixture::markedContent("MAIN", 1) + content);
    return document;
}

} // namespace

/// Documents with parts of kinds that are rare, but allowed or common enough to be met.
class TestFidelityDocumentEntries : public QObject
{
    Q_OBJECT

private slots:
    void annotationsOfPagesThatStayBehind_data();
    void annotationsOfPagesThatStayBehind();
    void entriesOfThePageSequence_data();
    void entriesOfThePageSequence();
    void pagesFromElsewhereHaveNoPart();
    void resourcesThatPartsTakeFromThePage_data();
    void resourcesThatPartsTakeFromThePage();
    void annotationsOfTheStructureWithoutAPage();
    void emptyEntriesOfTheParentTree();
    void pageInTwoNodesInheritsOnce();
    void attachmentsOfOneName();
    void attachmentsAreNumberedInText();
    void labelsBeforeTheFirstPage_data();
    void labelsBeforeTheFirstPage();
    void versionOfAFurtherDocument_data();
    void versionOfAFurtherDocument();
    void popUpThatAnotherPageLists_data();
    void popUpThatAnotherPageLists();
};

void TestFidelityDocumentEntries::annotationsOfPagesThatStayBehind_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::newRow("reply") << Bytes("/Subtype /Text /IRT {secret}");
    QTest::newRow("reply to one like a field") << Bytes("/Subtype /Text /IRT {like}");
    QTest::newRow("parent") << Bytes("/Subtype /Popup /Parent {secret}");
    QTest::newRow("hidden by an action") << Bytes("/Subtype /Square /A << /S /Hide /T {secret} >>");
    QTest::newRow("hidden among others")
        << Bytes("/Subtype /Square /A << /S /Hide /T [{note} {secret}] >>");
    QTest::newRow("played by an event")
        << Bytes("/Subtype /Square /AA << /U << /S /Rendition /OP 0 /AN {secret} >> >>");
    QTest::newRow("reply to a reply") << Bytes("/Subtype /Text /IRT {reply}");
    QTest::newRow("the page itself") << Bytes("/Subtype /Text /Other {page2}");
}

void TestFidelityDocumentEntries::annotationsOfPagesThatStayBehind()
{
    QFETCH(Bytes, entries);
    FidelityAssembly document = FidelityFixture::plain("OTHER", 2);
    document.addEntries("page1", "/Annots [{note}]");
    document.addEntries("page2", "/Annots [{secret} {reply} {like}]");
    document.set("like",
                 "<< /Type /Annot /Subtype /Widget /Rect [1 2 30 40] /FT /Tx /T (like) /Kids "
                 "[] /V (SECRET VALUE) >>");
    document.set("note", "<< /Type /Annot /Rect [1 2 30 40] " + entries + " >>");
    document.set("secret", "<< /Type /Annot /Subtype /Text /Rect [1 2 30 40] /P {page2} /Contents "
                           "(SECRET NOTE) /AP << /N {look} >> >>");
    document.set("reply", "<< /Type /Annot /Subtype /Text /Rect [1 2 30 40] /Contents (SECRET TOO) "
                          "/IRT {secret} >>");
    document.setStream("look", "/Type /XObject /Subtype /Form /BBox [0 0 9 9]", "% SECRET LOOK");
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 1).file());
    test.add("OTHER", document.file());
    QVERIFY(everythingIn(test.save(u"M1 O1 O2"_s)->output()).contains("SECRET LOOK"));
    for (const QString &list : {u"M1 O1"_s, u"O1"_s, u"M1 O1 O1"_s}) {
        const auto saved = test.save(list);
        const qsizetype page = saved->output().marks().indexOf(u"OTHER-1"_s);
        QCOMPARE(saved->output().annotations(page).size(), 1U);
        const Bytes all = everythingIn(saved->output());
        for (const char *gone : {"SECRET", "OTHER-2"}) {
            QVERIFY2(!all.contains(gone), gone);
        }
        NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
        NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
    }
}

namespace {

/// Three pages with document parts and a range of pages to print.
FidelityAssembly withParts(const Bytes &prefix)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 3);
    document.addEntries("catalogue", "/DPartRoot {partRoot} /ViewerPreferences << "
                                     "/PrintPageRange [1 2] /HideToolbar true >>");
    document.set("partRoot", "<< /Type /DPartRoot /DPartRootNode {part} >>");
    document.set("part", "<< /Type /DPart /Parent {partRoot} /DParts [[{leaf}]] >>");
    document.set("leaf", "<< /Type /DPart /Parent {part} /Start {page1} /End {page3} >>");
    for (const char *page : {"page1", "page2", "page3"}) {
        document.addEntries(page, "/DPart {leaf}");
    }
    return document;
}

} // namespace

void TestFidelityDocumentEntries::entriesOfThePageSequence_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<bool>("stay");
    QTest::newRow("unchanged") << u"M1-3"_s << true;
    QTest::newRow("turned") << u"M1 M2+90 M3"_s << true;
    QTest::newRow("order") << u"M3-1"_s << false;
    QTest::newRow("page gone") << u"M1 M2"_s << false;
    QTest::newRow("copy") << u"M1-3 M1"_s << false;
    QTest::newRow("blank page") << u"M1-3 _"_s << false;
    QTest::newRow("another document") << u"M1-3 P1"_s << false;
}

void TestFidelityDocumentEntries::entriesOfThePageSequence()
{
    QFETCH(QString, list);
    QFETCH(bool, stay);
    FidelityCase test;
    test.add("MAIN", withParts("MAIN").file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const auto saved = test.save(list);
    QPDFObjectHandle catalogue = saved->output().catalogue();
    QCOMPARE(catalogue.hasKey("/DPartRoot"), stay);
    for (qsizetype page = 0; page < saved->output().marks().size(); ++page) {
        QCOMPARE(saved->output().page(page).hasKey("/DPart"), stay);
    }
    QCOMPARE(catalogue.getKey("/ViewerPreferences").hasKey("/PrintPageRange"), stay);
    QVERIFY(catalogue.getKey("/ViewerPreferences").hasKey("/HideToolbar"));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDocumentEntries::pagesFromElsewhereHaveNoPart()
{
    FidelityCase test;
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    test.add("OTHER", withParts("OTHER").file());
    const auto further = test.save(u"P1 O1-3 O2"_s);
    QVERIFY(!everythingIn(further->output()).contains("/DPart"));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    // Without a root the entries of the pages mean nothing and stay, but not on a copy.
    FidelityAssembly rootless = withParts("MAIN");
    rootless.replace("catalogue", "/DPartRoot {partRoot}", {});
    test.add("MAIN", rootless.file());
    const auto copy = test.save(u"M1-3 M1"_s);
    QVERIFY(!copy->output().page(3).hasKey("/DPart"));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDocumentEntries::resourcesThatPartsTakeFromThePage_data()
{
    QTest::addColumn<Bytes>("content");
    QTest::addColumn<Bytes>("annotation");
    QTest::addColumn<QStringList>("kept");
    QTest::newRow("nothing") << Bytes() << Bytes() << QStringList();
    QTest::newRow("form") << Bytes("/Form Do") << Bytes()
                          << QStringList({u"/Font/OfForm"_s, u"/XObject/Form"_s});
    QTest::newRow("form in a form")
        << Bytes("/Outer Do") << Bytes() << QStringList({u"/Font/OfInner"_s, u"/XObject/Outer"_s});
    QTest::newRow("appearance") << Bytes() << Bytes("{stamp}") << QStringList{u"/Font/OfLook"_s};
    QTest::newRow("appearance with states")
        << Bytes() << Bytes("{stampWithStates}") << QStringList{u"/Font/OfState"_s};
    QTest::newRow("inline image") << Bytes("/Picture Do") << Bytes()
                                  << QStringList(
                                         {u"/ColorSpace/OfPicture"_s, u"/XObject/Picture"_s});
    QTest::newRow("glyph") << Bytes("BT /Glyphs 30 Tf 20 20 Td (a) Tj ET") << Bytes()
                           << QStringList({u"/Font/Glyphs"_s, u"/Font/OfGlyph"_s});
}

void TestFidelityDocumentEntries::resourcesThatPartsTakeFromThePage()
{
    QFETCH(Bytes, content);
    QFETCH(Bytes, annotation);
    QFETCH(QStringList, kept);
    FidelityAssembly document = withSharedResources(content);
    document.addEntries("page1", "/Annots [" + annotation + ']');
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    kept.append(u"/Font/F1"_s);
    kept.sort();
    for (const QString &list : {u"M1"_s, u"P1 M1"_s, u"M1 M3 M1"_s}) {
        const auto saved = test.save(list);
        const qsizetype page = saved->output().marks().indexOf(u"MAIN-1"_s);
        QStringList found;
        QPDFObjectHandle resources = saved->output().attribute(page, "/Resources");
        for (const std::string &category : resources.getKeys()) {
            for (const std::string &name : resources.getKey(category).getKeys()) {
                found.append(QString::fromStdString(category + name));
            }
        }
        found.sort();
        QCOMPARE(found, kept);
        QVERIFY(!everythingIn(saved->output()).contains("UNUSED"));
        QVERIFY(test.looksLike(int(page), test.pages(u"M1"_s).constFirst()));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
    // Nothing is sorted out while all pages stay.
    QVERIFY(everythingIn(test.save(u"M3-1"_s)->output()).contains("UNUSED"));
}

void TestFidelityDocumentEntries::annotationsOfTheStructureWithoutAPage()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/StructTreeRoot {root} /MarkInfo << /Marked true >>");
    document.set("root", "<< /Type /StructTreeRoot /K {doc} /ParentTree << /Nums [0 [{para}] 1 "
                         "{gone} 2 {mixed} 3 {mixed}] >> /ParentTreeNextKey 4 >>");
    document.set("doc", "<< /S /Document /P {root} /K [{para} {gone} {mixed}] >>");
    document.set("para", "<< /S /P /P {doc} /Pg {page1} /K 0 >>");
    document.set("gone", "<< /S /Link /P {doc} /K << /Type /OBJR /Obj {link1} >> >>");
    document.set("mixed", "<< /S /Link /P {doc} /K [<< /Type /OBJR /Obj {link2} >> << /Type /OBJR "
                          "/Obj {link3} >>] >>");
    const Bytes link = "<< /Type /Annot /Subtype /Link /Rect [1 2 30 40] /A << /S /URI /URI (x) >> "
                       "/StructParent ";
    for (int n = 1; n <= 3; ++n) {
        document.set("link" + Bytes::number(n), link + Bytes::number(n) + " >>");
    }
    document.addEntries("page1", "/StructParents 0 /Annots [{link3}]");
    document.addEntries("page3", "/Annots [{link1} {link2}]");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto all = test.save(u"M3 M1"_s);
    const auto describedKids = [](FidelityDocument &output) {
        QPDFObjectHandle tree = output.catalogue().getKey("/StructTreeRoot");
        return tree.isDictionary() ? output.describe(tree.getKey("/K")) : Bytes();
    };
    QCOMPARE(describedKids(all->output()).count("/Type /OBJR"), 3);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    const auto saved = test.save(u"M2 M1"_s);
    QCOMPARE(describedKids(saved->output()).count("/S /Link"), 1);
    QCOMPARE(describedKids(saved->output()).count("/Type /OBJR"), 1);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDocumentEntries::emptyEntriesOfTheParentTree()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.addEntries("catalogue", "/StructTreeRoot {root} /MarkInfo << /Marked true >>");
    document.set("root", "<< /Type /StructTreeRoot /K {doc} /ParentTree << /Nums [0 [{para} null] "
                         "1 [null null] 2 [{gone} null {gone}] 3 {gone}] >> >>");
    document.set("doc", "<< /S /Document /P {root} /K [{para} {gone}] >>");
    document.set("para", "<< /S /P /P {doc} /Pg {page1} /K 0 >>");
    document.set("gone", "<< /S /P /P {doc} /Pg {page3} /K 0 >>");
    document.addEntries("page1", "/StructParents 0");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(u"M2 M1"_s);
    QPDFObjectHandle root = saved->output().catalogue().getKey("/StructTreeRoot");
    QVERIFY(root.isDictionary());
    const auto entries = FidelityDocument::numbers(root.getKey("/ParentTree"));
    QCOMPARE(entries.size(), 1U);
    QVERIFY(entries.contains(0));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDocumentEntries::pageInTwoNodesInheritsOnce()
{
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    document.set("pages", "<< /Type /Pages /Count 4 /Kids [{left} {right}] >>");
    document.set("left", "<< /Type /Pages /Parent {pages} /Count 2 /Kids [{page1} {page2}] "
                         "/MediaBox [0 0 300 400] >>");
    document.set("right", "<< /Type /Pages /Parent {pages} /Count 2 /Kids [{page1} {page3}] "
                          "/MediaBox [0 0 500 600] /CropBox [0 0 250 350] /Rotate 90 >>");
    for (const char *page : {"page1", "page2", "page3"}) {
        document.replace(page, "/MediaBox [0 0 300 400]", {});
    }
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const QString &list : {u"M1 M2"_s, u"M2 M3"_s, u"M4 M1 M3"_s}) {
        const auto saved = test.save(list);
        QCOMPARE(saved->output().marks().size(), test.pages(list).size());
        for (qsizetype page = 0; page < saved->output().marks().size(); ++page) {
            const bool isRight = saved->output().marks().at(page) == u"MAIN-3";
            QPDFObjectHandle box = saved->output().attribute(page, "/MediaBox");
            QCOMPARE(box.getArrayItem(2).getIntValue(), isRight ? 500LL : 300LL);
            QCOMPARE(saved->output().attribute(page, "/CropBox").isArray(), isRight);
            QPDFObjectHandle rotation = saved->output().attribute(page, "/Rotate");
            QCOMPARE(rotation.isInteger() ? rotation.getIntValueAsInt() : 0, isRight ? 90 : 0);
        }
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
    // What is shown of the page is the same before and after.
    test.save(u"M2 M3"_s);
    const Inspection source = inspect(test.path('M'));
    QCOMPARE(source.pageSizes.size(), 4);
    QCOMPARE(inspect(test.output()).pageSizes.value(1), source.pageSizes.at(0));
}

void TestFidelityDocumentEntries::attachmentsOfOneName()
{
    FidelityCase test;
    test.add("MAIN", withAttachments("MAIN", {"(a.txt)", "(a.txt)"}).file());
    test.add("OTHER", withAttachments("OTHER", {"(a.txt)", "(b.txt)"}).file());
    const auto saved = test.save(u"M1 O1"_s);
    const QStringList found = attachments(saved->output());
    QCOMPARE(found.size(), 4);
    QVERIFY(found.contains(u"a.txt: MAIN file 1"_s));
    QVERIFY(found.contains(u"b.txt: OTHER file 2"_s));
    QCOMPARE(found.filter(u": MAIN file 2"_s).size(), 1);
    QCOMPARE(found.filter(u": OTHER file 1"_s).size(), 1);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDocumentEntries::attachmentsAreNumberedInText()
{
    // The letter \u012E has the code of a full stop as its second byte.
    const QStringList names{u"\u03B1\u03B2.txt"_s, u"\u012E\u03B1"_s, u"\u03B1.\u012E"_s};
    QList<Bytes> keys;
    for (const QString &name : names) {
        keys.append(utf16(name));
    }
    FidelityCase test;
    test.add("MAIN", withAttachments("MAIN", keys).file());
    test.add("OTHER", withAttachments("OTHER", keys).file());
    const auto saved = test.save(u"M1 O1"_s);
    QStringList wanted{u"\u03B1\u03B2.txt: MAIN file 1"_s, u"\u012E\u03B1: MAIN file 2"_s,
                       u"\u03B1.\u012E: MAIN file 3"_s,    u"\u03B1\u03B2_2.txt: OTHER file 1"_s,
                       u"\u012E\u03B1_2: OTHER file 2"_s,  u"\u03B1_2.\u012E: OTHER file 3"_s};
    wanted.sort();
    QCOMPARE(attachments(saved->output()), wanted);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDocumentEntries::labelsBeforeTheFirstPage_data()
{
    QTest::addColumn<Bytes>("ranges");
    QTest::addColumn<QString>("list");
    QTest::addColumn<QStringList>("labels");
    const Bytes upper = "-2 << /S /R /P (X-) >> ";
    const Bytes pages = "0 << /S /D /P (A-) >> 2 << /S /D /P (B-) >>";
    const QStringList reversed{u"B-2"_s, u"B-1"_s, u"A-2"_s, u"A-1"_s};
    QTest::newRow("none") << pages << u"M4-1"_s << reversed;
    QTest::newRow("first") << upper + pages << u"M4-1"_s << reversed;
    QTest::newRow("last") << pages + ' ' + upper << u"M4-1"_s << reversed;
    // A page without a label of its own is called by its place.
    QTest::newRow("instead of the first page's") << upper + "1 << /S /D /P (B-) >>" << u"M3 M1 M2"_s
                                                 << QStringList({u"B-2"_s, u"2"_s, u"B-1"_s});
}

void TestFidelityDocumentEntries::labelsBeforeTheFirstPage()
{
    QFETCH(Bytes, ranges);
    QFETCH(QString, list);
    QFETCH(QStringList, labels);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 4);
    document.addEntries("catalogue", "/PageLabels << /Nums [" + ranges + "] >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    const auto saved = test.save(list);
    QCOMPARE(saved->output().labels(), labels);
    const auto numbers =
        FidelityDocument::numbers(saved->output().catalogue().getKey("/PageLabels"));
    QVERIFY(numbers.begin()->first >= 0);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDocumentEntries::versionOfAFurtherDocument_data()
{
    QTest::addColumn<Bytes>("header");
    QTest::addColumn<Bytes>("catalogue");
    QTest::addColumn<int>("least");
    QTest::newRow("catalogue") << Bytes("1.3") << Bytes("/Version /1.7") << 7;
    QTest::newRow("header") << Bytes("1.7") << Bytes("/Version /1.4") << 7;
    QTest::newRow("neither") << Bytes("1.3") << Bytes() << 0;
}

void TestFidelityDocumentEntries::versionOfAFurtherDocument()
{
    QFETCH(Bytes, header);
    QFETCH(Bytes, catalogue);
    QFETCH(int, least);
    FidelityAssembly other = FidelityFixture::plain("OTHER", 1);
    other.addEntries("catalogue", catalogue);
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 1).file().replace("%PDF-1.7", "%PDF-1.3"));
    test.add("OTHER", other.file().replace("%PDF-1.7", Bytes("%PDF-" + header)));
    const auto minorVersion = [](FidelityDocument &document) {
        QString version = QString::fromStdString(document.pdf().getPDFVersion());
        if (QPDFObjectHandle later = document.catalogue().getKey("/Version"); later.isName()) {
            version = std::max(version, QString::fromStdString(later.getName()).mid(1));
        }
        return version.section(u'.', 1).toInt();
    };
    QVERIFY(minorVersion(test.save(u"M1"_s)->output()) < 7);
    const auto saved = test.save(u"M1 O1"_s);
    QVERIFY(minorVersion(saved->output()) >= least);
    QCOMPARE(minorVersion(saved->output()) >= 7, least == 7);
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

void TestFidelityDocumentEntries::popUpThatAnotherPageLists_data()
{
    QTest::addColumn<Bytes>("page");
    QTest::newRow("names the other page") << Bytes("/P {page2}");
    QTest::newRow("names its own page") << Bytes("/P {page1}");
    QTest::newRow("names no page") << Bytes();
}

void TestFidelityDocumentEntries::popUpThatAnotherPageLists()
{
    QFETCH(Bytes, page);
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.addEntries("page1", "/Annots [{note}]");
    document.addEntries("page2", "/Annots [{popup}]");
    document.set("note", "<< /Type /Annot /Subtype /Text /Rect [1 2 30 40] /Contents (NOTE) /Popup "
                         "{popup} >>");
    document.set("popup", "<< /Type /Annot /Subtype /Popup /Rect [50 50 90 90] /Open true /Parent "
                          "{note} " +
                              page + " >>");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M1"_s, u"P1 M1"_s, u"M1 M1"_s}) {
        const auto saved = test.save(list);
        const qsizetype index = saved->output().marks().indexOf(u"MAIN-1"_s);
        QCOMPARE(saved->output().annotations(index).size(), 1U);
        QPDFObjectHandle note = saved->output().annotations(index).front();
        QPDFObjectHandle popup = note.getKey("/Popup");
        QVERIFY(popup.isDictionary());
        QVERIFY(popup.getKey("/Open").isBool());
        QCOMPARE(popup.getKey("/Parent").getObjGen(), note.getObjGen());
        QCOMPARE(saved->output().indexOf(popup.getKey("/P")), index);
        QVERIFY(!everythingIn(saved->output()).contains("MAIN-2"));
        NO_PROBLEMS(FidelitySoundness::syntaxProblems(test.output()));
        NO_PROBLEMS(FidelitySoundness::pageProblems(saved->output()));
    }
}

QTEST_GUILESS_MAIN(TestFidelityDocumentEntries)
#include "tst_fidelity_document_entries.moc"
