// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/icc_profiles.h"
#include "tests/pdfcore/ink_colours.h"
#include "tests/support/pdf_fixture.h"

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

constexpr int kTolerance = 6;
constexpr QSize kSize(200, 200);

/// Colours of the exchanged spaces of IccProfiles.
const QColor kSwappedRed(0, 255, 0);
const QColor kSwappedCyan(255, 0, 255);

/// Sets the letters A, B, ... of the font /F as large as the page, on its lower left corner.
const QByteArray kFont = "/F 200 Tf 0 0 Td ";
const QByteArray kText = "BT " + kFont;

/// What letters draw with; letters and whatever else they need stand from object 5 on.
struct Case
{
    QByteArray letter;              ///< What A draws in a square of 1 × 1.
    QByteArray resources;           ///< Of the letter.
    QList<QByteArray> objects;      ///< From 6 on.
    QColor colour;                  ///< Of the page's middle.
    QByteArray state{};             ///< Set for the letter.
    QByteArray pageResources{};     ///< Without the font.
    QByteArray shows = "(A) Tj ET"; ///< How the letter is shown.
    QByteArray fonts{};             ///< Further ones of the page.
};

/// Fonts of square letters, each of them the object of its number.
QByteArray font(const QList<int> &letters, const QByteArray &resources)
{
    QByteArray procedures;
    QByteArray names;
    QByteArray widths;
    for (qsizetype i = 0; i < letters.size(); ++i) {
        const QByteArray name = '/' + QByteArray(1, static_cast<char>('A' + i));
        procedures += name + ' ' + QByteArray::number(letters.at(i)) + " 0 R ";
        names += name + ' ';
        widths += "0 ";
    }
    return "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 1 1] /FontMatrix [1 0 0 1 0 0] "
           "/CharProcs << " +
           procedures + ">> /Encoding << /Differences [65 " + names +
           "] >> /FirstChar 65 /LastChar " + QByteArray::number(64 + letters.size()) +
           " /Widths [" + widths + "] /Resources << " + resources + " >> >>";
}

/// A page that shows text with the font /F, which is the last object.
QByteArray lettered(const QByteArray &content, const QByteArray &fontObject,
                    const QList<QByteArray> &objects, const QByteArray &resources = {},
                    const QByteArray &fonts = {})
{
    const QByteArray number = QByteArray::number(5 + objects.size());
    return PdfFixture::onePage(content,
                               "/Font << /F " + number + " 0 R " + fonts + " >> " + resources,
                               objects + QList<QByteArray>{fontObject});
}

QByteArray letter(const QByteArray &content)
{
    return PdfFixture::streamBody({}, content);
}

QByteArray form(const QByteArray &content, const QByteArray &more = {})
{
    return PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 1 1] " + more, content);
}

QByteArray image(const QByteArray &space, const QByteArray &pixel, const QByteArray &more = {})
{
    return PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width 2 /Height 2 "
                                  "/BitsPerComponent 8 /ColorSpace " +
                                      space + ' ' + more,
                                  pixel.repeated(4));
}

QByteArray profile(const QByteArray &bytes, int components)
{
    return PdfFixture::streamBody("/N " + QByteArray::number(components), bytes);
}

const QByteArray kBytesCyan("\xFF\x00\x00\x00", 4);
const QByteArray kBytesHalf("\x80\x80", 2);
const QByteArray kSquare = " 0 0 1 1 re f\n";
/// All that a line depends on, without which MuPDF takes it from the text.
const QByteArray kLines = "1 w 0 J 0 j 10 M [] 0 d ";
const QByteArray kCyanSquare = "1 0 0 0 k" + kSquare;

void add(const QByteArray &name, const Case &spec)
{
    QTest::newRow(name.constData()) << spec;
}

} // namespace

Q_DECLARE_METATYPE(Case)

/// Letters that their font draws in colours of its own.
class TestEngineType3 : public QObject
{
    Q_OBJECT

private slots:
    void lettersHaveTheColoursOfThePage_data();
    void lettersHaveTheColoursOfThePage();
    void lettersLookLikeForms();
    void lettersKeepTheirOrder();
    void lettersInAMaskFollowThePlainFormula();
    void lettersInTilesAreWhole();
    void brokenPicturesLeaveTheRest();
    void deeplyNestedLettersAreShown();
    void lettersOfManyFontsKeepTheirColours();
};

void TestEngineType3::lettersHaveTheColoursOfThePage_data()
{
    QTest::addColumn<Case>("spec");
    const QByteArray swappedRgb = profile(IccProfiles::swappedRgb(), 3);
    const QByteArray swappedInk = profile(IccProfiles::swappedCmyk(), 4);
    const QByteArray usesX = "/XObject << /X 6 0 R >> ";
    const QByteArray usesC = "/ColorSpace << /C [/ICCBased 6 0 R] >> ";
    const QByteArray half = "/ExtGState << /G << /ca 0.5 /CA 0.5 >> >> ";
    const QByteArray shading = "<< /ShadingType 2 /ColorSpace /DeviceCMYK /Coords [0 0 0.5 0] "
                               "/Extend [true true] /Function << /FunctionType 2 /Domain [0 1] "
                               "/C0 [0 1 0 0] /C1 [1 0 0 0] /N 1 >> >>";

    add("ink", {kCyanSquare, {}, {}, kCyan});
    add("lines of ink", {kLines + "1 0 0 0 K 1 w 0 0.5 m 1 0.5 l S", {}, {}, kCyan});
    add("profile", {"/C cs 1 0 0 sc" + kSquare, usesC, {swappedRgb}, kSwappedRed});
    add("spot colour",
        {"/C cs 1 scn" + kSquare,
         "/ColorSpace << /C [/Separation /Spot /DeviceCMYK << /FunctionType 2 /Domain [0 1] /C0 "
         "[0 0 0 0] /C1 [1 0 0 0] /N 1 >>] >>",
         {},
         kCyan});
    add("picture in ink", {"/X Do", usesX, {image("/DeviceCMYK", kBytesCyan)}, kCyan});
    add("picture in the letter",
        {"q BI /W 1 /H 1 /BPC 8 /CS /CMYK ID " + kBytesCyan + " EI Q", {}, {}, kCyan});
    add("picture with a soft mask",
        {"/X Do",
         usesX,
         {image("/DeviceCMYK", kBytesCyan, "/SMask 7 0 R"), image("/DeviceGray", "\x80")},
         kHalfCyan});
    add("form", {"/X Do", usesX, {form(kCyanSquare)}, kCyan});
    add("form that blends in ink",
        {"/X Do",
         usesX,
         {form(kCyanSquare, "/Group << /S /Transparency /CS /DeviceCMYK /I true >>")},
         kCyan});
    add("form with a default space",
        {"/X Do",
         usesX,
         {form(kCyanSquare, "/Resources << /ColorSpace << /DefaultCMYK [/ICCBased 7 0 R] >> >>"),
          swappedInk},
         kSwappedCyan});
    add("RGB in a form with a default space for ink",
        {"/X Do",
         usesX,
         {form("1 0 1 rg" + kSquare,
               "/Resources << /ColorSpace << /DefaultCMYK [/ICCBased 7 0 R] >> >>"),
          swappedInk},
         Qt::magenta});
    add("mask of a picture in ink",
        {"1 0 0 0 k q BI /W 1 /H 1 /BPC 1 /IM true ID " + QByteArray(1, '\0') + " EI Q",
         {},
         {},
         kCyan});
    const QByteArray usesH =
        "/Font << /H << /Type /Font /Subtype /Type1 /BaseFont /Helvetica >> >> ";
    add("letter of another font in ink",
        {"1 0 0 0 k BT /H 4 Tf -0.05 -1 Td (I) Tj ET", usesH, {}, kCyan});
    add("outline of a letter of another font in ink",
        {kLines + "1 0 0 0 K 0.2 w BT 1 Tr /H 1 Tf 0.36 0.2 Td (I) Tj ET", usesH, {}, kCyan});
    add("shading", {"/S sh", "/Shading << /S " + shading + " >>", {}, kCyan});
    add("shading in RGB",
        {"/S sh",
         "/Shading << /S << /ShadingType 2 /ColorSpace /DeviceRGB /Coords [0 0 0.5 0] /Extend "
         "[true true] /Function << /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [0 1 0] /N 1 >> "
         ">> >>",
         {},
         Qt::green});
    add("pattern",
        {"/Pattern cs /P scn" + kSquare,
         "/Pattern << /P 6 0 R >>",
         {PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox "
                                 "[0 0 1 1] /XStep 1 /YStep 1 /Resources << >>",
                                 kCyanSquare)},
         kCyan});
    add("soft mask", {"/G gs " + kCyanSquare,
                      "/ExtGState << /G << /SMask << /S /Luminosity /G 6 0 R >> >> >>",
                      {form("0.5 g" + kSquare, "/Group << /S /Transparency /CS /DeviceGray >>")},
                      kHalfCyan});
    add("half transparent text", {kCyanSquare, {}, {}, kHalfCyan, "/G gs ", half});
    add("half transparent text, painted twice in one place",
        {kCyanSquare + kCyanSquare, {}, {}, kHalfCyan, "/G gs ", half});
    add("text with a soft mask",
        {kCyanSquare,
         {},
         {PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Group << /S "
                                 "/Transparency /CS /DeviceGray >>",
                                 "0.5 g 0 0 200 200 re f")},
         kHalfCyan,
         "/G gs ",
         "/ExtGState << /G << /SMask << /S /Luminosity /G 6 0 R >> >> >>"});
    add("text that is outlined", {kCyanSquare, {}, {}, kCyan, "1 Tr "});
    add("text in RGB that is outlined", {"0 1 0 rg" + kSquare, {}, {}, Qt::green, "1 Tr "});
    add("text that is filled and clips", {kCyanSquare, {}, {}, kCyan, "4 Tr "});
    add("text that clips", {"1 0 0 0 k 0 0 1 1 re f",
                            {},
                            {},
                            kMagenta,
                            "7 Tr ",
                            {},
                            "(A) Tj ET 0 1 0 0 k 0 0 200 200 re f"});
    add("default space of the page", {kCyanSquare,
                                      {},
                                      {swappedInk},
                                      kSwappedCyan,
                                      {},
                                      "/ColorSpace << /DefaultCMYK [/ICCBased 6 0 R] >>"});
    // The font of the inner letter is used before.
    for (const auto &[name, colour] : {std::pair{"ink", "0 1 0 0 k"}, {"RGB", "1 0 0 rg"}}) {
        add(QByteArray("letter in ink within one in ") + name,
            {QByteArray(colour) + " 0 0 0.1 0.1 re f BT /G 1 Tf (A) Tj ET",
             "/Font << /G 6 0 R >>",
             {font({7}, {}), letter("1 0 d0 " + kCyanSquare)},
             kCyan,
             "/G 1 Tf (A) Tj ",
             {},
             "(A) Tj ET",
             "/G 6 0 R"});
    }
    add("half transparent letter that is filled and outlined",
        {"/G gs " + kCyanSquare, half, {}, kHalfCyan, "2 Tr "});
    add("turned and stretched", {kCyanSquare, {}, {}, kCyan, "1 0.4 -0.5 1.5 20 -60 Tm "});
}

void TestEngineType3::lettersHaveTheColoursOfThePage()
{
    QFETCH(const Case, spec);
    Folder folder;
    const QString path = folder.add(
        u"page.pdf"_s, lettered("BT " + spec.state + kFont + spec.shows, font({5}, spec.resources),
                                QList<QByteArray>{letter("1 0 d0 " + spec.letter)} + spec.objects,
                                spec.pageResources, spec.fonts));
    const Rendering rendering = render(filePage(path), kSize);
    QVERIFY2(rendering.ok, qPrintable(rendering.message));
    COMPARE_COLOUR(middle(rendering.image), spec.colour, kTolerance);
}

void TestEngineType3::lettersLookLikeForms()
{
    // The same commands, once as letters and once as forms, in whole pixels and in parts of them.
    const QByteArray drawing = kLines +
                               "1 0 0 0 k 0.1 0.1 0.5 0.5 re f 0 0 1 0 k 0.4 0.4 0.5 0.5 re f "
                               "0 1 0 0 k 0.15 0.55 m 0.45 0.55 l 0.3 0.95 l f 0.5 0.2 0.1 0.3 K "
                               "0.03 w 0.62 0.1 m 0.95 0.35 l S ";
    const QByteArray places[] = {"40 0 0 40 10 10", "40 0 0 40 60.3 10.7", "60 0 0 30 120 10",
                                 "100 0 0 100 10 80", "50 30 -30 50 150 90"};
    QByteArray letters;
    QByteArray forms;
    for (const QByteArray &place : places) {
        letters += "BT /F 1 Tf " + place + " Tm (A) Tj ET ";
        forms += "q " + place + " cm /X Do Q ";
    }
    Folder folder;
    const QString asLetters = folder.add(
        u"letters.pdf"_s, lettered(letters, font({5}, {}), {letter("1 0 d0 " + drawing)}));
    const QString asForms = folder.add(
        u"forms.pdf"_s, PdfFixture::onePage(forms, "/XObject << /X 5 0 R >>", {form(drawing)}));
    for (const int rotation : {0, 90}) {
        const QImage shown = render(filePage(asLetters, 0, rotation), {430, 430}).image;
        const QImage expected = render(filePage(asForms, 0, rotation), {430, 430}).image;
        QVERIFY(!shown.isNull());
        // An edge in a pixel that several colours share is blended in another order.
        const int off = distance(shown, expected);
        QVERIFY2(off <= 8, qPrintable(QString::number(off)));
    }
}

void TestEngineType3::lettersKeepTheirOrder()
{
    // A has a colour of its own and B that of the text; both lie in the same place.
    const QList<QByteArray> letters{letter("1 0 d0 " + kCyanSquare),
                                    letter("1 0 0 0 1 1 d1" + kSquare)};
    Folder folder;
    const auto shown = [&](const QByteArray &text) {
        const QString path = folder.add(
            QString::fromLatin1(text) + u".pdf"_s,
            lettered("0 1 0 0 k " + kText + '(' + text + ") Tj ET", font({5, 6}, {}), letters));
        return middle(render(filePage(path), kSize).image);
    };
    COMPARE_COLOUR(shown("B"), kMagenta, kTolerance);
    COMPARE_COLOUR(shown("AB"), kMagenta, kTolerance);
    COMPARE_COLOUR(shown("BA"), kCyan, kTolerance);
    COMPARE_COLOUR(shown("ABBA"), kCyan, kTolerance);
    COMPARE_COLOUR(shown("AABAAB"), kMagenta, kTolerance);
}

void TestEngineType3::lettersInAMaskFollowThePlainFormula()
{
    // Full black hides all, and is no plain black where it is seen.
    Folder folder;
    const QString path = folder.add(
        u"mask.pdf"_s,
        PdfFixture::onePage(
            "q /G gs 1 0 0 0 k 0 0 200 200 re f Q BT /F 40 Tf (A) Tj ET",
            "/ExtGState << /G << /SMask << /S /Luminosity /G 5 0 R >> >> >> /Font << /F 7 0 R >>",
            {PdfFixture::streamBody(
                 "/Type /XObject /Subtype /Form /BBox [0 0 200 200] /Group << /S /Transparency /CS "
                 "/DeviceCMYK >> /Resources << /Font << /F 7 0 R >> >>",
                 kText + "(A) Tj ET"),
             letter("1 0 d0 0 0 0 1 k 0 0 0.5 1 re f 0 0 0 0 k 0.5 0 0.5 1 re f"), font({6}, {})}));
    const QImage image = render(filePage(path), kSize).image;
    COMPARE_COLOUR(image.pixelColor(50, 100), QColor(Qt::white), 0);
    COMPARE_COLOUR(image.pixelColor(150, 100), kCyan, kTolerance);
    COMPARE_COLOUR(image.pixelColor(10, 190), kBlack, kTolerance);
    COMPARE_COLOUR(image.pixelColor(30, 190), QColor(Qt::white), 0);
}

void TestEngineType3::lettersInTilesAreWhole()
{
    // The first tile lies below the page, and the others are painted from it.
    Folder folder;
    const QString path = folder.add(
        u"tiles.pdf"_s,
        PdfFixture::onePage(
            "/Pattern cs /P scn 0 0 200 200 re f", "/Pattern << /P 5 0 R >>",
            {PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 "
                                    "/BBox [0 0 150 150] /XStep 150 /YStep 150 /Matrix [1 0 0 1 "
                                    "-1000 -1000] /Resources << /Font << /F " +
                                        font({6}, {}) + " >> >>",
                                    "BT /F 150 Tf (A) Tj ET"),
             letter("1 0 d0 " + kCyanSquare)}));
    const QImage image = render(filePage(path), kSize).image;
    QVERIFY(!image.isNull());
    for (const QPoint place : {QPoint(10, 10), QPoint(100, 100), QPoint(190, 190)}) {
        COMPARE_COLOUR(image.pixelColor(place), kCyan, kTolerance);
    }
}

void TestEngineType3::brokenPicturesLeaveTheRest()
{
    const QByteArray broken =
        PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width 9 /Height 9 "
                               "/BitsPerComponent 8 /ColorSpace /DeviceCMYK /Filter /DCTDecode",
                               "no picture");
    Folder folder;
    const QString path = folder.add(
        u"broken.pdf"_s,
        lettered(kText + "(A) Tj ET 0 0 1 0 k 150 150 50 50 re f",
                 font({5}, "/XObject << /X 6 0 R >>"),
                 {letter("1 0 d0 1 0 0 0 k 0 0 0.5 0.5 re f q 0.5 0 0 1 0.5 0 cm /X Do Q "
                         "0 1 0 0 k 0 0.5 0.5 0.5 re f"),
                  broken}));
    const Rendering rendering = render(filePage(path), kSize);
    QVERIFY(rendering.ok);
    COMPARE_COLOUR(rendering.image.pixelColor(50, 150), kCyan, kTolerance);
    COMPARE_COLOUR(rendering.image.pixelColor(50, 50), kMagenta, kTolerance);
    COMPARE_COLOUR(rendering.image.pixelColor(140, 100), QColor(Qt::white), 0);
    COMPARE_COLOUR(rendering.image.pixelColor(175, 25), kYellow, kTolerance);
}

void TestEngineType3::deeplyNestedLettersAreShown()
{
    // Fonts whose letters are drawn with those of the one before, which the page uses earlier,
    // because MuPDF loads no such fonts while it loads others.
    constexpr int kFonts = 5;
    constexpr int kFirst = 5;
    QList<QByteArray> objects;
    QByteArray names;
    QByteArray content = "BT ";
    for (int i = 0; i < kFonts; ++i) {
        const QByteArray inner = "/F" + QByteArray::number(i - 1) + ' ';
        const QByteArray name = "/F" + QByteArray::number(i) + ' ';
        const QByteArray reference = QByteArray::number(kFirst + 2 * i) + " 0 R ";
        objects += font({kFirst + 2 * i + 1}, i == 0 ? QByteArray() : "/Font << " + names + " >>");
        objects += letter("1 0 d0 " + (i == 0 ? kCyanSquare
                                              : "0 1 0 0 k 0 0 0.1 0.1 re f BT " + inner + "1 Tf " +
                                                    "(A) Tj ET"));
        names += name + reference;
        content += name + (i + 1 < kFonts ? "1" : "200") + " Tf (A) Tj ";
    }
    Folder folder;
    const QString path =
        folder.add(u"nested.pdf"_s, PdfFixture::onePage(content + "ET 0 0 1 0 k 150 150 50 50 re f",
                                                        "/Font << " + names + " >>", objects));
    const Rendering rendering = render(filePage(path), kSize);
    QVERIFY2(rendering.ok, qPrintable(rendering.message));
    COMPARE_COLOUR(middle(rendering.image), kCyan, kTolerance);
    COMPARE_COLOUR(rendering.image.pixelColor(175, 25), kYellow, kTolerance);
}

void TestEngineType3::lettersOfManyFontsKeepTheirColours()
{
    // Letters by turns in ink and in RGB, more fonts than the engine remembers, each used twice:
    // what is known of one must not be taken for what is known of another.
    constexpr int kFonts = 21;
    constexpr int kFirst = 5;
    QList<QByteArray> objects;
    QByteArray names;
    QByteArray line;
    for (int i = 0; i < kFonts; ++i) {
        const bool isInk = i % 2 != 0;
        objects += font({kFirst + 2 * i + 1}, {});
        objects += letter("1 0 d0 " + (isInk ? kCyanSquare : "0 1 0 rg" + kSquare));
        const QByteArray name = "/F" + QByteArray::number(i);
        names += name + ' ' + QByteArray::number(kFirst + 2 * i) + " 0 R ";
        line += name + " 8 Tf 1 0 0 1 " + QByteArray::number(8 * i) + " %1 Tm (A) Tj ";
    }
    QByteArray content = "BT ";
    for (const char *y : {"0", "100"}) {
        content += QByteArray(line).replace("%1", y);
    }
    Folder folder;
    const QString path = folder.add(
        u"many.pdf"_s, PdfFixture::onePage(content + "ET", "/Font << " + names + " >>", objects));
    const QImage image = render(filePage(path), kSize).image;
    QVERIFY(!image.isNull());
    for (int i = 0; i < kFonts; ++i) {
        const QColor colour = i % 2 != 0 ? kCyan : QColor(Qt::green);
        COMPARE_COLOUR(image.pixelColor(8 * i + 4, 195), colour, kTolerance);
        COMPARE_COLOUR(image.pixelColor(8 * i + 4, 95), colour, kTolerance);
    }
}

QTEST_GUILESS_MAIN(TestEngineType3)
#include "tst_engine_type3.moc"
