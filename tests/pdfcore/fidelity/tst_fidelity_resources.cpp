// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/fidelity/fidelity_pieces.h"
#include "tests/pdfcore/fidelity/fidelity_soundness.h"

using namespace EngineCalls;
using namespace FidelityPieces;
using namespace Qt::StringLiterals;

namespace {

using Bytes = QByteArray;

constexpr int kImages = 20;
const Bytes kForm = "/Type /XObject /Subtype /Form /BBox [0 0 300 400] ";

/// Operators that show image `number` in its own place.
Bytes show(int number)
{
    return "q 100 0 0 40 " + Bytes::number(10 + 40 * (number % 4)) + ' ' +
           Bytes::number(10 + 15 * number) + " cm /I" + Bytes::number(number) + " Do Q\n";
}

/// The text that stands in the data of image `number`, which are its grey pixels.
Bytes markOfImage(int number)
{
    return "IMAGE" + Bytes::number(number).rightJustified(3, '0');
}

/// Three pages and one dictionary of resources, called "shared", with all the images and
/// a font.
FidelityAssembly withImages(const Bytes &prefix)
{
    FidelityAssembly document = FidelityFixture::plain(prefix, 3);
    Bytes images;
    for (int i = 0; i < kImages; ++i) {
        const Bytes name = "image" + Bytes::number(i);
        document.setStream(name,
                           "/Type /XObject /Subtype /Image /Width 8 /Height 1 /BitsPerComponent 8 "
                           "/ColorSpace /DeviceGray",
                           markOfImage(i));
        images += "/I" + Bytes::number(i) + " {" + name + "} ";
    }
    document.set("shared", "<< /Font << /F1 {font} >> /XObject << " + images + ">> >>");
    return document;
}

/// The numbers of the images in a file.
QList<int> imagesIn(FidelityDocument &document)
{
    const Bytes all = everythingIn(document);
    QList<int> found;
    for (int i = 0; i < kImages; ++i) {
        if (all.contains(markOfImage(i))) {
            found.append(i);
        }
    }
    return found;
}

/// Gives the page the shared resources.
void useShared(FidelityAssembly &document, const Bytes &page)
{
    document.replace(page, "<< /Font << /F1 {font} >> >>", "{shared}");
}

void addContent(FidelityAssembly &document, int page, const Bytes &content)
{
    document.setStream("content" + Bytes::number(page), {},
                       FidelityFixture::markedContent("MAIN", page) + content);
}

/// Two forms with the shared resources, each on a page of its own.
FidelityAssembly formsOfTwoPages()
{
    FidelityAssembly document = withImages("MAIN");
    for (const int page : {1, 2}) {
        const Bytes number = Bytes::number(page);
        document.setStream("form" + number, kForm + "/Resources {shared}", show(page));
        // Nothing but what the forms hold is of both pages.
        document.set("font" + number, "<< /Type /Font /Subtype /Type1 /BaseFont /Courier >>");
        document.replace("page" + number, "<< /Font << /F1 {font} >> >>",
                         "<< /Font << /F1 {font" + number + "} >> /XObject << /Fm {form" + number +
                             "} >> >>");
        addContent(document, page, "/Fm Do");
    }
    return document;
}

/// The same with each form within another one, which has resources of its own.
FidelityAssembly formsInForms()
{
    FidelityAssembly document = formsOfTwoPages();
    for (const int page : {1, 2}) {
        const Bytes number = Bytes::number(page);
        document.setStream("outer" + number,
                           kForm + "/Resources << /XObject << /Inner {form" + number + "} >> >>",
                           "/Inner Do");
        document.replace("page" + number, "{form" + number + '}', "{outer" + number + '}');
    }
    return document;
}

/// All pages have the shared resources, and so does what `entries` gives the annotation to look
/// like.
FidelityAssembly annotationOfAPage(const Bytes &entries)
{
    FidelityAssembly document = withImages("MAIN");
    for (const char *page : {"page1", "page2", "page3"}) {
        useShared(document, page);
    }
    addContent(document, 1, show(0));
    addContent(document, 2, show(5));
    document.setStream("look", kForm + "/Resources {shared}", show(1));
    document.set("stamp",
                 "<< /Type /Annot /Subtype /Stamp /Rect [0 0 300 400] /F 4 " + entries + " >>");
    document.addEntries("page1", "/Annots [{stamp}]");
    return document;
}

/// A font of all pages whose glyphs have the shared resources.
FidelityAssembly glyphs()
{
    FidelityAssembly document = withImages("MAIN");
    document.set("glyphs", "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 300 400] /FontMatrix "
                           "[0.01 0 0 0.01 0 0] /CharProcs << /a {glyph} >> /Encoding << "
                           "/Differences [97 /a] >> /FirstChar 97 /LastChar 97 /Widths [100] "
                           "/Resources {shared} >>");
    document.setStream("glyph", {}, "100 0 d0 " + show(1));
    document.set("fonts", "<< /F1 {font} /Glyphs {glyphs} >>");
    for (const Bytes page : {"page1", "page2", "page3"}) {
        document.replace(page, "<< /Font << /F1 {font} >> >>",
                         "<< /Font {fonts} /XObject << /I0 {image0} /I5 {image5} >> >>");
    }
    addContent(document, 1, show(0) + "BT /Glyphs 100 Tf (a) Tj ET");
    addContent(document, 2, show(5) + "BT /Glyphs 100 Tf (a) Tj ET");
    return document;
}

/// A pattern of all pages that has the shared resources.
FidelityAssembly pattern()
{
    FidelityAssembly document = withImages("MAIN");
    document.setStream("pattern",
                       "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 300 "
                       "400] /XStep 300 /YStep 400 /Resources {shared}",
                       show(1));
    for (const Bytes page : {"page1", "page2", "page3"}) {
        document.replace(page, "<< /Font << /F1 {font} >> >>",
                         "<< /Font << /F1 {font} >> /Pattern << /P {pattern} >> >>");
    }
    addContent(document, 1, "/Pattern cs /P scn 0 0 300 400 re f");
    return document;
}

/// A soft mask of all pages that has the shared resources.
FidelityAssembly mask()
{
    FidelityAssembly document = withImages("MAIN");
    document.setStream("mask",
                       kForm + "/Group << /S /Transparency /CS /DeviceGray >> /Resources {shared}",
                       show(1));
    document.set("state", "<< /SMask << /S /Luminosity /G {mask} >> >>");
    for (const Bytes page : {"page1", "page2", "page3"}) {
        document.replace(page, "<< /Font << /F1 {font} >> >>",
                         "<< /Font << /F1 {font} >> /ExtGState << /G {state} >> >>");
    }
    addContent(document, 1, "/G gs 0 0 300 400 re f");
    return document;
}

} // namespace

/// Resources that parts of several pages have in common, of which one page alone needs little.
class TestFidelityResources : public QObject
{
    Q_OBJECT

private slots:
    void aPageTakesOnlyWhatItUses_data();
    void aPageTakesOnlyWhatItUses();
    void onlyOneOfThePartsIsUsed();
    void namesThatPartsUseInOtherCategories_data();
    void namesThatPartsUseInOtherCategories();
    void namesOfBothAPageAndItsParts_data();
    void namesOfBothAPageAndItsParts();
    void standInsOfPlainColourSpacesStay();
    void picturesWithAPredictorLookTheSame_data();
    void picturesWithAPredictorLookTheSame();
};

void TestFidelityResources::aPageTakesOnlyWhatItUses_data()
{
    QTest::addColumn<Bytes>("document");
    QTest::addColumn<QList<int>>("images");
    QTest::newRow("forms") << formsOfTwoPages().file() << QList<int>{1};
    QTest::newRow("forms in forms") << formsInForms().file() << QList<int>{1};
    QTest::newRow("look of an annotation")
        << annotationOfAPage("/AP << /N {look} >>").file() << QList<int>{0, 1};
    QTest::newRow("look with states")
        << annotationOfAPage("/AS /On /AP << /N << /On {look} >> >>").file() << QList<int>{0, 1};
    QTest::newRow("glyphs") << glyphs().file() << QList<int>{0, 1};
    QTest::newRow("pattern") << pattern().file() << QList<int>{1};
    QTest::newRow("mask") << mask().file() << QList<int>{1};
}

void TestFidelityResources::aPageTakesOnlyWhatItUses()
{
    QFETCH(Bytes, document);
    QFETCH(QList<int>, images);
    FidelityCase test;
    test.add("MAIN", document);
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M1"_s, u"P1 M1"_s, u"M3 M1 M1"_s}) {
        const auto saved = test.save(list);
        QCOMPARE(imagesIn(saved->output()), images);
        for (qsizetype page = 0; page < saved->output().marks().size(); ++page) {
            QVERIFY(test.looksLike(int(page), test.pages(list).at(page)));
        }
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
    // Nothing is sorted out while all pages stay.
    QCOMPARE(imagesIn(test.save(u"M3-1"_s)->output()).size(), kImages);
}

void TestFidelityResources::onlyOneOfThePartsIsUsed()
{
    // A page that does not draw the form at all.
    FidelityAssembly document = withImages("MAIN");
    document.setStream("form", kForm + "/Resources {shared}", show(1));
    for (const Bytes page : {"page1", "page2", "page3"}) {
        document.replace(page, "<< /Font << /F1 {font} >> >>", "{ofPages}");
    }
    document.set("ofPages", "<< /Font << /F1 {font} >> /XObject << /Fm {form} /I7 {image7} >> >>");
    addContent(document, 1, "/Fm Do");
    addContent(document, 2, show(7));
    FidelityCase test;
    test.add("MAIN", document.file());
    for (const auto &[list, images] : {std::pair{u"M1"_s, QList<int>{1}},
                                       {u"M2"_s, QList<int>{7}},
                                       {u"M3"_s, QList<int>()},
                                       {u"M2 M1"_s, QList<int>{1, 7}}}) {
        const auto saved = test.save(list);
        QCOMPARE(imagesIn(saved->output()), images);
        for (qsizetype page = 0; page < saved->output().marks().size(); ++page) {
            QVERIFY(test.looksLike(int(page), test.pages(list).at(page)));
        }
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityResources::namesThatPartsUseInOtherCategories_data()
{
    QTest::addColumn<Bytes>("resources");
    QTest::addColumn<Bytes>("content");
    QTest::addColumn<Bytes>("annotation");
    const auto row = [](const char *name, const Bytes &resources, const Bytes &content,
                        const Bytes &annotation = {}) {
        QTest::newRow(name) << resources << content << annotation;
    };
    row("form", "/XObject << /Part {form} >>", "/Part Do");
    row("form in a form", "/XObject << /Part {outer} >>", "/Part Do");
    row("look", {}, {}, "{stamp}");
    row("pattern", "/Pattern << /Part {pattern} >>", "/Pattern cs /Part scn 0 0 300 400 re f");
    row("mask", "/ExtGState << /Part {masked} >>", "/Part gs 0 0 300 400 re f");
    row("glyph", "", "BT /Glyphs 100 Tf 0 0 Td (a) Tj ET");
}

void TestFidelityResources::namesThatPartsUseInOtherCategories()
{
    QFETCH(Bytes, resources);
    QFETCH(Bytes, content);
    QFETCH(Bytes, annotation);
    // The parts define a graphics state called /R7 and take the font of that name from the page.
    FidelityAssembly document = FidelityFixture::plain("MAIN", 3);
    for (const char *page : {"page1", "page2", "page3"}) {
        useShared(document, page);
    }
    document.set("shared", "<< /Font << /F1 {font} /R7 {bold} /R8 {bold} /Glyphs {glyphs} >> " +
                               resources + " >>");
    document.set("bold", "<< /Type /Font /Subtype /Type1 /BaseFont /Courier-Bold >>");
    const Bytes own = "/Resources << /ExtGState << /R7 << /ca 0.9 >> >> >> ";
    const Bytes text = "/R7 gs BT /R7 60 Tf 10 50 Td (Abc) Tj ET";
    document.setStream("form", kForm + own, text);
    document.setStream("look", kForm + own, text);
    document.setStream("outer", kForm + "/Resources << /XObject << /Inner {form} /R7 {form} >> >>",
                       "/Inner Do");
    document.setStream("pattern",
                       "/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 300 "
                       "400] /XStep 300 /YStep 400 " +
                           own,
                       text);
    document.setStream("mask", kForm + own + "/Group << /S /Transparency /CS /DeviceGray >> ",
                       "1 g " + text);
    document.set("masked", "<< /SMask << /S /Luminosity /G {mask} >> >>");
    document.set("glyphs", "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 300 400] /FontMatrix "
                           "[0.01 0 0 0.01 0 0] /CharProcs << /a {glyph} >> /Encoding << "
                           "/Differences [97 /a] >> /FirstChar 97 /LastChar 97 /Widths [100] " +
                               own + " >>");
    document.setStream("glyph", {}, "100 0 d0 " + text);
    document.set("stamp", "<< /Type /Annot /Subtype /Stamp /Rect [0 0 300 400] /F 4 /AP << /N "
                          "{look} >> >>");
    document.addEntries("page1", "/Annots [" + annotation + ']');
    addContent(document, 1, content);
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M1"_s, u"P1 M1"_s}) {
        const auto saved = test.save(list);
        const qsizetype page = saved->output().marks().indexOf(u"MAIN-1"_s);
        QPDFObjectHandle fonts = saved->output().attribute(page, "/Resources").getKey("/Font");
        QVERIFY(fonts.hasKey("/R7"));
        QVERIFY(!fonts.hasKey("/R8"));
        QVERIFY(test.looksLike(int(page), test.pages(u"M1"_s).constFirst()));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityResources::namesOfBothAPageAndItsParts_data()
{
    QTest::addColumn<Bytes>("content");
    QTest::addColumn<Bytes>("forms");
    const Bytes pale = "/R7 gs 0 0 1 rg 150 0 150 400 re f ";
    const Bytes form = "/A Do ";
    QTest::newRow("page and a form that borrows") << pale + form << Bytes("/A {borrowing}");
    QTest::newRow("form that borrows") << form << Bytes("/A {borrowing}");
    QTest::newRow("page and a form with its own") << pale + form << Bytes("/A {owning}");
    QTest::newRow("two forms, of which the second borrows")
        << Bytes("/A Do /B Do") << Bytes("/A {owning} /B {borrowing}");
    QTest::newRow("two forms, of which the first borrows")
        << Bytes("/A Do /B Do") << Bytes("/A {borrowing} /B {owning}");
    QTest::newRow("form that borrows within one with its own")
        << Bytes("/A Do /B Do") << Bytes("/A {around} /B {borrowing}");
}

void TestFidelityResources::namesOfBothAPageAndItsParts()
{
    QFETCH(Bytes, content);
    QFETCH(Bytes, forms);
    // The graphics state called /R7 is the page's, and in some forms another one.
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    document.set("shared", "<< /Font << /F1 {font} >> /ExtGState << /R7 << /ca 0.25 >> /R8 << /ca "
                           "0.5 >> /R9 << /ca 0.75 >> >> /XObject << " +
                               forms + " >> >>");
    for (const char *page : {"page1", "page2"}) {
        useShared(document, page);
    }
    const Bytes draw = "/R7 gs 1 0 0 rg 0 0 150 200 re f";
    document.setStream("borrowing", kForm, draw);
    document.setStream("owning", kForm + "/Resources << /ExtGState << /R7 << /ca 0.9 >> >> >>",
                       "/R7 gs 0 1 0 rg 0 200 150 200 re f");
    document.setStream("around",
                       kForm + "/Resources << /ExtGState << /R7 << /ca 0.9 >> >> /XObject << /In "
                               "{borrowing} >> >>",
                       "/R7 gs /In Do");
    addContent(document, 1, content);
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    const bool isPagesOwn = content.contains("/R7") || forms.contains("borrowing");
    for (const QString &list : {u"M1"_s, u"P1 M1"_s}) {
        const auto saved = test.save(list);
        const qsizetype page = saved->output().marks().indexOf(u"MAIN-1"_s);
        QPDFObjectHandle states =
            saved->output().attribute(page, "/Resources").getKey("/ExtGState");
        QCOMPARE(states.hasKey("/R7"), isPagesOwn);
        QVERIFY(!states.hasKey("/R8"));
        QVERIFY(test.looksLike(int(page), test.pages(u"M1"_s).constFirst()));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityResources::standInsOfPlainColourSpacesStay()
{
    // No content names them.
    FidelityAssembly document = FidelityFixture::plain("MAIN", 2);
    const Bytes white = "/WhitePoint [0.95 1 1.09]";
    document.set("shared",
                 "<< /Font << /F1 {font} >> /ColorSpace << /DefaultGray [/CalGray << " + white +
                     " /Gamma 3 >>] /DefaultRGB [/CalRGB << " + white +
                     " /Gamma [3 3 3] >>] /DefaultCMYK [/ICCBased {inks}] /Named [/CalGray << " +
                     white + " >>] /Other [/CalGray << " + white + " >>] >> >>");
    document.setStream("inks", "/N 4 /Alternate /DeviceCMYK", "INKS");
    for (const char *page : {"page1", "page2"}) {
        useShared(document, page);
    }
    addContent(document, 1,
               "0.5 g 0 0 100 400 re f 0.5 0.2 0.7 rg 100 0 100 400 re f "
               "/Named cs 0.5 sc 200 0 100 400 re f");
    FidelityCase test;
    test.add("MAIN", document.file());
    test.add("PLAIN", FidelityFixture::plain("PLAIN", 1).file());
    for (const QString &list : {u"M1"_s, u"P1 M1"_s}) {
        const auto saved = test.save(list);
        const qsizetype page = saved->output().marks().indexOf(u"MAIN-1"_s);
        QPDFObjectHandle spaces =
            saved->output().attribute(page, "/Resources").getKey("/ColorSpace");
        QCOMPARE(spaces.getKeys(),
                 (std::set<std::string>{"/DefaultCMYK", "/DefaultGray", "/DefaultRGB", "/Named"}));
        QCOMPARE(fidelityData(spaces.getKey("/DefaultCMYK").getArrayItem(1)), Bytes("INKS"));
        QVERIFY(test.looksLike(int(page), test.pages(u"M1"_s).constFirst()));
        NO_PROBLEMS(FidelitySoundness::problems(test.output()));
    }
}

void TestFidelityResources::picturesWithAPredictorLookTheSame_data()
{
    QTest::addColumn<Bytes>("filters");
    const Bytes parameters = "<< /Predictor 15 /Colors 1 /BitsPerComponent 8 /Columns 8 >>";
    QTest::newRow("one filter") << "/Filter /FlateDecode /DecodeParms " + parameters;
    QTest::newRow("list of filters") << "/Filter [/FlateDecode] /DecodeParms [" + parameters + ']';
    QTest::newRow("parameters elsewhere")
        << Bytes("/Filter /FlateDecode /DecodeParms {parameters}");
}

void TestFidelityResources::picturesWithAPredictorLookTheSame()
{
    QFETCH(Bytes, filters);
    constexpr int kSide = 8;
    // Each line holds what differs from the one above, as the number in front of it says.
    Bytes lines;
    for (int line = 0; line < kSide; ++line) {
        lines.append(char(2));
        for (int column = 0; column < kSide; ++column) {
            lines.append(char(line == 0 ? 20 * column : 10));
        }
    }
    constexpr int kSizeInFront = 4;
    FidelityAssembly document = FidelityFixture::plain("OTHER", 1);
    document.set("parameters", "<< /Predictor 15 /Colors 1 /BitsPerComponent 8 /Columns 8 >>");
    document.setStream("picture",
                       "/Type /XObject /Subtype /Image /Width 8 /Height 8 /BitsPerComponent 8 "
                       "/ColorSpace /DeviceGray " +
                           filters,
                       qCompress(lines).mid(kSizeInFront));
    document.replace("page1", "<< /Font << /F1 {font} >> >>",
                     "<< /Font << /F1 {font} >> /XObject << /I {picture} >> >>");
    document.setStream("content1", {},
                       FidelityFixture::markedContent("OTHER", 1) + "300 0 0 400 0 0 cm /I Do");
    FidelityCase test;
    test.add("MAIN", FidelityFixture::plain("MAIN", 1).file());
    test.add("OTHER", document.file());
    const Rendering source = render(test.pages(u"O1"_s).constFirst(), {80, 80});
    // The picture gets brighter to the right and downwards.
    COMPARE_COLOUR(source.image.pixelColor(5, 5), QColor(0, 0, 0), 8);
    COMPARE_COLOUR(source.image.pixelColor(75, 75), QColor(210, 210, 210), 8);
    const auto saved = test.save(u"M1 O1"_s);
    QVERIFY(test.looksLike(1, test.pages(u"O1"_s).constFirst()));
    NO_PROBLEMS(FidelitySoundness::problems(test.output()));
}

QTEST_GUILESS_MAIN(TestFidelityResources)
#include "tst_fidelity_resources.moc"
