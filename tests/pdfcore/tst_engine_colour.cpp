// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/icc_profiles.h"
#include "tests/pdfcore/ink_colours.h"
#include "tests/support/pdf_fixture.h"

#include <QHash>

#include <array>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// How far a converted colour may be off.
constexpr int kTolerance = 6;

/// Colours of the exchanged spaces of IccProfiles.
const QColor kSwappedRed(0, 255, 0);
const QColor kSwappedCyan(255, 0, 255);
const QColor kLinearMiddle(188, 188, 188);

/// A colour that the page must show at a point, in points from the lower left corner.
struct Spot
{
    int x = 100;
    int y = 100;
    QColor colour;
};

struct Case
{
    QByteArray content;
    QByteArray resources;
    QList<QByteArray> objects;
    QList<Spot> spots;
    int tolerance = kTolerance;
    QByteArray pageEntries{};
};

/// Paints the whole page with the current colour.
const QByteArray kAll = " 0 0 200 200 re f\n";

/// Draws the image or form /X over the whole page.
const QByteArray kImage = " q 200 0 0 200 0 0 cm /X Do Q\n";

const QByteArray kUsesX = "/XObject << /X 5 0 R >> ";

/// An image of 2 × 2 equal pixels.
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

QByteArray form(const QByteArray &content, const QByteArray &more)
{
    return PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 200 200] " + more,
                                  content);
}

/// A spot colour that mixes from paper to the given CMYK colour.
QByteArray separation(const QByteArray &full, const QByteArray &alternate = "/DeviceCMYK",
                      const QByteArray &none = "0 0 0 0")
{
    return "[/Separation /Spot " + alternate + " << /FunctionType 2 /Domain [0 1] /C0 [" + none +
           "] /C1 [" + full + "] /N 1 >>]";
}

/// A shading from cyan to magenta.
QByteArray axial(const QByteArray &coordinates, const QByteArray &more = {})
{
    return "<< /ShadingType 2 /ColorSpace /DeviceCMYK /Coords [" + coordinates +
           "] /Function << /FunctionType 2 /Domain [0 1] /C0 [1 0 0 0] /C1 [0 1 0 0] /N 1 >> " +
           more + " >>";
}

/// A JPEG picture of one CMYK colour, its bytes as they are.
QByteArray cmykJpeg(const std::array<unsigned char, 4> &colour)
{
    constexpr JDIMENSION kSide = 32;
    jpeg_error_mgr errors{};
    jpeg_compress_struct jpeg{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char *bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &bytes, &size);
    jpeg.image_width = kSide;
    jpeg.image_height = kSide;
    jpeg.input_components = 4;
    jpeg.in_color_space = JCS_CMYK;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 100, TRUE);
    jpeg_start_compress(&jpeg, TRUE);
    std::array<unsigned char, std::size_t{kSide} * 4> row{};
    for (std::size_t i = 0; i < row.size(); ++i) {
        row[i] = colour[i % 4];
    }
    unsigned char *rows = row.data();
    for (JDIMENSION y = 0; y < kSide; ++y) {
        jpeg_write_scanlines(&jpeg, &rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    const QByteArray result(reinterpret_cast<const char *>(bytes), static_cast<qsizetype>(size));
    jpeg_destroy_compress(&jpeg);
    std::free(bytes);
    return result;
}

QByteArray jpegImage(const std::array<unsigned char, 4> &colour, const QByteArray &more = {})
{
    return PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width 32 /Height 32 "
                                  "/BitsPerComponent 8 /ColorSpace /DeviceCMYK "
                                  "/Filter /DCTDecode " +
                                      more,
                                  cmykJpeg(colour));
}

const QByteArray kBytesCyan("\xFF\0\0\0", 4);
const QByteArray kBytesHalfMagenta("\0\x80\0\0", 4);
const QByteArray kBytesRed("\xFF\0\0", 3);

} // namespace

Q_DECLARE_METATYPE(Case)

/// What colours of all kinds look like on the screen.
class TestEngineColour : public QObject
{
    Q_OBJECT

private slots:
    void plainColoursStayExact_data();
    void plainColoursStayExact();
    void inks_data();
    void inks();
    void spotColours_data();
    void spotColours();
    void profiles_data();
    void profiles();
    void lab_data();
    void lab();
    void shadings_data();
    void shadings();
    void wideShadingIsTransparentWhereItPaintsNothing();
    void transparency_data();
    void transparency();
    void defaultSpaces_data();
    void defaultSpaces();
    void coloursStayTheSameOnEveryUse();

private:
    static void add(const char *name, const Case &spec);
    static void check();
};

void TestEngineColour::add(const char *name, const Case &spec)
{
    QTest::newRow(name) << spec;
}

void TestEngineColour::check()
{
    QFETCH(const Case, spec);
    Folder folder;
    const QString path =
        folder.add(u"colour.pdf"_s, PdfFixture::onePage(spec.content, spec.resources, spec.objects,
                                                        spec.pageEntries));
    for (const int rotation : {0, 180}) {
        const Rendering rendering = render(filePage(path, 0, rotation), {200, 200});
        QVERIFY2(rendering.ok, qPrintable(rendering.message));
        for (const Spot &spot : spec.spots) {
            const QPoint point =
                rotation == 0 ? QPoint(spot.x, 199 - spot.y) : QPoint(199 - spot.x, spot.y);
            COMPARE_COLOUR(rendering.image.pixelColor(point), spot.colour, spec.tolerance);
        }
    }
}

void TestEngineColour::plainColoursStayExact_data()
{
    QTest::addColumn<Case>("spec");
    const QColor colour(51, 102, 204);
    const QByteArray bytes("\x33\x66\xCC", 3);
    add("RGB fill", {"0.2 0.4 0.8 rg" + kAll, {}, {}, {{100, 100, colour}}, 1});
    add("RGB stroke", {"0.2 0.4 0.8 RG 90 w 0 100 m 200 100 l S", {}, {}, {{100, 100, colour}}, 1});
    add("grey fill", {"0.4 g" + kAll, {}, {}, {{100, 100, QColor(102, 102, 102)}}, 1});
    add("RGB image", {kImage, kUsesX, {image("/DeviceRGB", bytes)}, {{100, 100, colour}}, 1});
    add("grey image",
        {kImage, kUsesX, {image("/DeviceGray", "\x66")}, {{100, 100, QColor(102, 102, 102)}}, 1});
    add("indexed RGB image", {kImage,
                              kUsesX,
                              {image("[/Indexed /DeviceRGB 1 <FFFFFF3366CC>]", "\x01")},
                              {{100, 100, colour}},
                              1});
    add("sRGB profile fill", {"/C cs 0.2 0.4 0.8 sc" + kAll,
                              "/ColorSpace << /C [/ICCBased 5 0 R] >>",
                              {profile(IccProfiles::standardRgb(), 3)},
                              {{100, 100, colour}},
                              1});
    add("damaged profile fill", {"/C cs 0.2 0.4 0.8 sc" + kAll,
                                 "/ColorSpace << /C [/ICCBased 5 0 R] >>",
                                 {profile("no profile", 3)},
                                 {{100, 100, colour}},
                                 1});
}

void TestEngineColour::plainColoursStayExact()
{
    check();
}

void TestEngineColour::inks_data()
{
    QTest::addColumn<Case>("spec");
    add("fill", {"1 0 0 0 k" + kAll, {}, {}, {{100, 100, kCyan}}});
    add("fill in several inks", {"0.5 0.5 0 0 k" + kAll, {}, {}, {{100, 100, kHalfCyanMagenta}}});
    add("fill named space", {"/DeviceCMYK cs 0 0 0 1 sc" + kAll, {}, {}, {{100, 100, kBlack}}});
    add("initial colour of the space", {"/DeviceCMYK cs" + kAll, {}, {}, {{100, 100, kBlack}}});
    add("stroke", {"0 1 0 0 K 90 w 0 100 m 200 100 l S", {}, {}, {{100, 100, kMagenta}}});
    const QByteArray font = "/Font << /F << /Type /Font /Subtype /Type1 /BaseFont /ZapfDingbats "
                            ">> >>";
    add("text", {"BT /F 250 Tf 1 0 0 0 k 0 10 Td (n) Tj ET", font, {}, {{100, 100, kCyan}}});
    add("outlined text", {"BT /F 250 Tf 1 Tr 90 w 1 1 0 0 K 0 10 Td (n) Tj ET",
                          font,
                          {},
                          {{20, 100, kCyanMagenta}}});
    add("image", {kImage, kUsesX, {image("/DeviceCMYK", kBytesCyan)}, {{100, 100, kCyan}}});
    add("image that is higher than it is wide",
        {kImage,
         kUsesX,
         {PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width 1 /Height 4 "
                                 "/BitsPerComponent 8 /ColorSpace /DeviceCMYK",
                                 QByteArray(kBytesCyan).repeated(3) + kBytesHalfMagenta)},
         {{100, 175, kCyan}, {100, 75, kCyan}, {100, 25, kHalfMagenta}}});
    add("image, half",
        {kImage, kUsesX, {image("/DeviceCMYK", kBytesHalfMagenta)}, {{100, 100, kHalfMagenta}}});
    add("image with inverted values",
        {kImage,
         kUsesX,
         {image("/DeviceCMYK", QByteArray("\0\xFF\xFF\xFF", 4), "/Decode [1 0 1 0 1 0 1 0]")},
         {{100, 100, kCyan}}});
    add("image with a transparent colour",
        {"0 1 0 rg" + kAll + kImage,
         kUsesX,
         {image("/DeviceCMYK", kBytesCyan, "/Mask [255 255 0 0 0 0 0 0]")},
         {{100, 100, Qt::green}}});
    add("image with a soft mask",
        {kImage,
         kUsesX,
         {image("/DeviceCMYK", kBytesCyan, "/SMask 6 0 R"), image("/DeviceGray", "\x80")},
         {{100, 100, kHalfCyan}}});
    add("stencil",
        {"0 1 0 0 k" + kImage,
         kUsesX,
         {PdfFixture::streamBody("/Type /XObject /Subtype /Image /Width 1 /Height 1 /ImageMask "
                                 "true /BitsPerComponent 1",
                                 QByteArray(1, '\0'))},
         {{100, 100, kMagenta}}});
    add("JPEG", {kImage, kUsesX, {jpegImage({0, 255, 0, 0})}, {{100, 100, kMagenta}}});
    add("JPEG with inverted values", {kImage,
                                      kUsesX,
                                      {jpegImage({255, 0, 255, 255}, "/Decode [1 0 1 0 1 0 1 0]")},
                                      {{100, 100, kMagenta}}});
    add("inline image",
        {"q 200 0 0 200 0 0 cm BI /W 1 /H 1 /CS /CMYK /BPC 8 /F /AHx ID FF000000> EI Q",
         {},
         {},
         {{100, 100, kCyan}}});
    add("indexed image", {kImage,
                          kUsesX,
                          {image("[/Indexed /DeviceCMYK 1 <00000000FF000000>]", "\x01")},
                          {{100, 100, kCyan}}});
    add("indexed fill",
        {"/C cs 2 sc" + kAll,
         "/ColorSpace << /C [/Indexed /DeviceCMYK 3 <00000000FF00000000FF000000000000>] >>",
         {},
         {{100, 100, kMagenta}}});
    add("indexed fill, last entry",
        {"/C cs 3 sc" + kAll,
         "/ColorSpace << /C [/Indexed /DeviceCMYK 3 <000000000000000000000000FF000000>] >>",
         {},
         {{100, 100, kCyan}}});
    add("form", {"/X Do", kUsesX, {form("1 0 0 0 k" + kAll, {})}, {{100, 100, kCyan}}});
    add("tiling pattern",
        {"/Pattern cs /P scn" + kAll,
         "/Pattern << /P 5 0 R >>",
         {PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox "
                                 "[0 0 10 10] /XStep 10 /YStep 10 /Resources << >>",
                                 "1 0 0 0 k 0 0 10 10 re f")},
         {{100, 100, kCyan}, {33, 57, kCyan}}});
    add("tiling pattern coloured by its user",
        {"/C cs 0 1 0 0 /P scn" + kAll,
         "/ColorSpace << /C [/Pattern /DeviceCMYK] >> /Pattern << /P 5 0 R >>",
         {PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 2 /TilingType 1 /BBox "
                                 "[0 0 10 10] /XStep 10 /YStep 10 /Resources << >>",
                                 "0 0 10 10 re f")},
         {{100, 100, kMagenta}}});
}

void TestEngineColour::inks()
{
    check();
}

void TestEngineColour::spotColours_data()
{
    QTest::addColumn<Case>("spec");
    const QByteArray magenta = "/ColorSpace << /C " + separation("0 1 0 0") + " >> ";
    add("separation", {"/C cs 1 scn" + kAll, magenta, {}, {{100, 100, kMagenta}}});
    add("separation, half", {"/C cs 0.5 scn" + kAll, magenta, {}, {{100, 100, kHalfMagenta}}});
    add("separation, initial colour", {"/C cs" + kAll, magenta, {}, {{100, 100, kMagenta}}});
    add("separation image",
        {kImage, kUsesX, {image(separation("0 1 0 0"), "\xFF")}, {{100, 100, kMagenta}}});
    add("separation image, half",
        {kImage, kUsesX, {image(separation("0 1 0 0"), "\x80")}, {{100, 100, kHalfMagenta}}});
    const QByteArray mixer = PdfFixture::streamBody(
        "/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1 0 1]", "{ 0 0 }");
    const QByteArray deviceN = "[/DeviceN [/A /B] /DeviceCMYK 6 0 R]";
    add("several colorants", {"/C cs 1 1 scn" + kAll,
                              "/ColorSpace << /C " + deviceN + " >>",
                              {"null", mixer},
                              {{100, 100, kCyanMagenta}}});
    add("several colorants, halves", {"/C cs 0.5 0.5 scn" + kAll,
                                      "/ColorSpace << /C " + deviceN + " >>",
                                      {"null", mixer},
                                      {{100, 100, kHalfCyanMagenta}}});
    add("image of several colorants",
        {kImage, kUsesX, {image(deviceN, QByteArray("\xFF\0", 2)), mixer}, {{100, 100, kCyan}}});
    add("indexed spot colour",
        {"/C cs 1 sc" + kAll,
         "/ColorSpace << /C [/Indexed " + separation("0 1 0 0") + " 1 <00FF>] >>",
         {},
         {{100, 100, kMagenta}}});
    add("indexed spot colour image",
        {kImage,
         kUsesX,
         {image("[/Indexed " + separation("0 1 0 0") + " 1 <00FF>]", "\x01")},
         {{100, 100, kMagenta}}});
    add("separation into RGB",
        {"/C cs 1 scn" + kAll,
         "/ColorSpace << /C " + separation("0.2 0.4 0.8", "/DeviceRGB", "1 1 1") + " >>",
         {},
         {{100, 100, QColor(51, 102, 204)}},
         1});
    add("separation into a profile",
        {"/C cs 1 scn" + kAll,
         "/ColorSpace << /C " + separation("1 0 0", "[/ICCBased 5 0 R]", "1 1 1") + " >>",
         {profile(IccProfiles::swappedRgb(), 3)},
         {{100, 100, kSwappedRed}}});
    add("several colorants into a profile",
        {"/C cs 1 1 scn" + kAll,
         "/ColorSpace << /C [/DeviceN [/A /B] [/ICCBased 5 0 R] 6 0 R] >>",
         {profile(IccProfiles::swappedRgb(), 3),
          PdfFixture::streamBody("/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1]",
                                 "{ pop 0 0 }")},
         {{100, 100, kSwappedRed}}});
}

void TestEngineColour::spotColours()
{
    check();
}

void TestEngineColour::profiles_data()
{
    QTest::addColumn<Case>("spec");
    const QByteArray space = "/ColorSpace << /C [/ICCBased 5 0 R] >> ";
    const QByteArray swapped = profile(IccProfiles::swappedRgb(), 3);
    const QByteArray linear = profile(IccProfiles::linearRgb(), 3);
    const QByteArray ink = profile(IccProfiles::swappedCmyk(), 4);
    add("RGB fill", {"/C cs 1 0 0 sc" + kAll, space, {swapped}, {{100, 100, kSwappedRed}}});
    add("RGB stroke",
        {"/C CS 1 0 0 SC 90 w 0 100 m 200 100 l S", space, {swapped}, {{100, 100, kSwappedRed}}});
    add("RGB white", {"/C cs 1 1 1 sc" + kAll, space, {swapped}, {{100, 100, Qt::white}}});
    add("linear RGB fill",
        {"/C cs 0.5 0.5 0.5 sc" + kAll, space, {linear}, {{100, 100, kLinearMiddle}}});
    add("linear grey fill", {"/C cs 0.5 sc" + kAll,
                             space,
                             {profile(IccProfiles::linearGray(), 1)},
                             {{100, 100, kLinearMiddle}}});
    add("CMYK fill", {"/C cs 1 0 0 0 sc" + kAll, space, {ink}, {{100, 100, kSwappedCyan}}});
    add("damaged CMYK profile",
        {"/C cs 1 0 0 0 sc" + kAll, space, {profile("no profile", 4)}, {{100, 100, kCyan}}});
    add("same profile under a second name",
        {"/D cs 1 0 0 sc" + kAll,
         "/ColorSpace << /C [/ICCBased 5 0 R] /D [/ICCBased 5 0 R] >>",
         {swapped},
         {{100, 100, kSwappedRed}}});
    add("space as an object of its own", {"/C cs 1 0 0 sc" + kAll,
                                          "/ColorSpace << /C 6 0 R >>",
                                          {swapped, "[/ICCBased 5 0 R]"},
                                          {{100, 100, kSwappedRed}}});
    const auto withImage = [](const QByteArray &body, const QByteArray &bytes, int components) {
        return QList<QByteArray>{body, profile(bytes, components)};
    };
    add("RGB image",
        {kImage,
         kUsesX,
         withImage(image("[/ICCBased 6 0 R]", kBytesRed), IccProfiles::swappedRgb(), 3),
         {{100, 100, kSwappedRed}}});
    add("linear RGB image",
        {kImage,
         kUsesX,
         withImage(image("[/ICCBased 6 0 R]", "\x80\x80\x80"), IccProfiles::linearRgb(), 3),
         {{100, 100, kLinearMiddle}}});
    add("linear grey image",
        {kImage,
         kUsesX,
         withImage(image("[/ICCBased 6 0 R]", "\x80"), IccProfiles::linearGray(), 1),
         {{100, 100, kLinearMiddle}}});
    add("CMYK image",
        {kImage,
         kUsesX,
         withImage(image("[/ICCBased 6 0 R]", kBytesCyan), IccProfiles::swappedCmyk(), 4),
         {{100, 100, kSwappedCyan}}});
    add("indexed image", {kImage,
                          kUsesX,
                          withImage(image("[/Indexed [/ICCBased 6 0 R] 1 <FFFFFFFF0000>]", "\x01"),
                                    IccProfiles::swappedRgb(), 3),
                          {{100, 100, kSwappedRed}}});
    add("indexed fill", {"/C cs 1 sc" + kAll,
                         "/ColorSpace << /C [/Indexed [/ICCBased 5 0 R] 1 <FFFFFFFF0000>] >>",
                         {swapped},
                         {{100, 100, kSwappedRed}}});
    add("tiling pattern coloured by its user",
        {"/C cs 1 0 0 /P scn" + kAll,
         "/ColorSpace << /C [/Pattern [/ICCBased 5 0 R]] >> /Pattern << /P 6 0 R >>",
         {swapped,
          PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 2 /TilingType 1 /BBox "
                                 "[0 0 10 10] /XStep 10 /YStep 10 /Resources << >>",
                                 "0 0 10 10 re f")},
         {{100, 100, kSwappedRed}}});
    add("image with a soft mask", {kImage,
                                   kUsesX,
                                   {image("[/ICCBased 6 0 R]", kBytesRed, "/SMask 7 0 R"), swapped,
                                    image("/DeviceGray", "\x80")},
                                   {{100, 100, QColor(127, 255, 127)}}});
    add("inline image", {"q 200 0 0 200 0 0 cm BI /W 1 /H 1 /CS /C /BPC 8 /F /AHx ID FF0000> EI Q",
                         space,
                         {swapped},
                         {{100, 100, kSwappedRed}}});
    add("shading",
        {"/S sh",
         "/Shading << /S << /ShadingType 2 /ColorSpace [/ICCBased 5 0 R] /Coords [0 0 200 0] "
         "/Function << /FunctionType 2 /Domain [0 1] /C0 [1 0 0] /C1 [1 0 0] /N 1 >> >> >>",
         {swapped},
         {{100, 100, kSwappedRed}, {3, 3, kSwappedRed}}});
    const QByteArray own = "/Resources << /ColorSpace << /C [/ICCBased 6 0 R] >> >>";
    add("form with its own resources", {"/X Do",
                                        kUsesX,
                                        {form("/C cs 1 0 0 sc" + kAll, own), swapped},
                                        {{100, 100, kSwappedRed}}});
    add("form without resources of its own", {"/X Do",
                                              kUsesX + "/ColorSpace << /C [/ICCBased 6 0 R] >>",
                                              {form("/C cs 1 0 0 sc" + kAll, {}), swapped},
                                              {{100, 100, kSwappedRed}}});
    add("form in a form", {"/X Do",
                           kUsesX,
                           {form("/Y Do", "/Resources << /XObject << /Y 7 0 R >> >>"), swapped,
                            form("/C cs 1 0 0 sc" + kAll, own)},
                           {{100, 100, kSwappedRed}}});
    add("tiling pattern",
        {"/Pattern cs /P scn" + kAll,
         "/Pattern << /P 5 0 R >>",
         {PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox "
                                 "[0 0 10 10] /XStep 10 /YStep 10 " +
                                     own,
                                 "/C cs 1 0 0 sc 0 0 10 10 re f"),
          swapped},
         {{100, 100, kSwappedRed}}});
    add("soft mask",
        {"/G gs 0 g" + kAll,
         "/ExtGState << /G << /SMask << /S /Luminosity /G 5 0 R >> >> >>",
         {form("/C cs 0.5 sc" + kAll, own + " /Group << /S /Transparency /CS /DeviceGray >>"),
          profile(IccProfiles::linearGray(), 1)},
         {{100, 100, QColor(67, 67, 67)}}});
    add("soft mask with a backdrop",
        {"/G gs 0 g" + kAll,
         "/ExtGState << /G << /SMask << /S /Luminosity /G 5 0 R /BC [0.5] >> >> >>",
         {form("1 g 100 0 100 200 re f", "/Group << /S /Transparency /CS [/ICCBased 6 0 R] >>"),
          profile(IccProfiles::linearGray(), 1)},
         {{50, 100, QColor(67, 67, 67)}, {150, 100, Qt::black}}});
    add("shading as a pattern",
        {"/Pattern cs /P scn" + kAll,
         "/Pattern << /P << /Type /Pattern /PatternType 2 /Shading << /ShadingType 2 /ColorSpace "
         "[/ICCBased 5 0 R] /Coords [0 0 200 0] /Function << /FunctionType 2 /Domain [0 1] /C0 [1 "
         "0 0] /C1 [1 0 0] /N 1 >> >> >> >>",
         {swapped},
         {{100, 100, kSwappedRed}, {3, 3, kSwappedRed}}});
    const auto annotation = [](const QByteArray &entries) -> QByteArray {
        return "/Annots [<< /Type /Annot /F 4 /Rect [0 0 200 200] " + entries + " >>]";
    };
    const QList<QByteArray> appearance{form("/C cs 1 0 0 sc" + kAll, own), swapped};
    add("appearance of an annotation", {{},
                                        {},
                                        appearance,
                                        {{100, 100, kSwappedRed}},
                                        kTolerance,
                                        annotation("/Subtype /Square /AP << /N 5 0 R >>")});
    add("appearance of an annotation in its state",
        {{},
         {},
         appearance,
         {{100, 100, kSwappedRed}},
         kTolerance,
         annotation("/Subtype /Square /AS /On /AP << /N << /On 5 0 R >> >>")});
}

void TestEngineColour::profiles()
{
    check();
}

void TestEngineColour::lab_data()
{
    QTest::addColumn<Case>("spec");
    const auto lab = [](const QByteArray &range) -> QByteArray {
        return "[/Lab << /WhitePoint [0.9642 1 0.8249] " + range + " >>]";
    };
    // L* 50, a* 60, b* 30, as it is in sRGB and in bytes, which go from one limit to the other.
    const QColor red(212, 61, 73);
    const QByteArray usual = lab({});
    const QByteArray usualBytes = "\x80\xCC\xA6";
    const QByteArray wide = lab("/Range [-128 127 -128 127]");
    const QByteArray wideBytes = "\x80\xBC\x9E";
    const QByteArray uneven = lab("/Range [-100 100 0 60]");
    const QByteArray unevenBytes = "\x80\xCC\x80";
    const auto fill = [](const QByteArray &space, const QByteArray &colour) -> Case {
        return {"/C cs " + colour + " sc" + kAll, "/ColorSpace << /C " + space + " >>", {}, {}};
    };
    const auto row = [](const QByteArray &name, Case spec, const QColor &colour) {
        spec.spots = {{100, 100, colour}};
        add(name, spec);
    };
    row("fill", fill(usual, "50 60 30"), red);
    row("fill with wide limits", fill(wide, "50 60 30"), red);
    row("fill with limits for each", fill(uneven, "50 60 30"), red);
    row("indexed fill", fill("[/Indexed " + wide + " 1 <00000080BC9E>]", "1"), red);
    row("picture", {kImage, kUsesX, {image(usual, usualBytes)}, {}}, red);
    row("picture with wide limits", {kImage, kUsesX, {image(wide, wideBytes)}, {}}, red);
    row("picture with limits for each", {kImage, kUsesX, {image(uneven, unevenBytes)}, {}}, red);
    row("indexed picture with limits for each",
        {kImage, kUsesX, {image("[/Indexed " + uneven + " 1 <00000080CC80>]", "\x01")}, {}}, red);
    row("picture that says how it is decoded",
        {kImage, kUsesX, {image(usual, usualBytes, "/Decode [0 100 -100 100 -100 100]")}, {}}, red);
    row("indexed picture",
        {kImage, kUsesX, {image("[/Indexed " + usual + " 1 <00000080CCA6>]", "\x01")}, {}}, red);
    row("picture in grey", {kImage, kUsesX, {image(wide, "\x80\x80\x80")}, {}},
        QColor(119, 119, 119));
}

void TestEngineColour::lab()
{
    check();
}

void TestEngineColour::shadings_data()
{
    QTest::addColumn<Case>("spec");
    const auto shown = [](const QByteArray &shading) -> QByteArray {
        return "/Shading << /S " + shading + " >>";
    };
    const auto pattern = [](const QByteArray &shading) -> QByteArray {
        return "/Pattern << /P << /Type /Pattern /PatternType 2 /Shading " + shading + " >> >>";
    };
    const QByteArray fill = "/Pattern cs /P scn" + kAll;
    add("from left to right",
        {"/S sh",
         shown(axial("0 0 200 0")),
         {},
         {{2, 20, kCyan}, {100, 180, kHalfCyanMagenta}, {197, 100, kMagenta}}});
    add("from bottom to top",
        {"/S sh",
         shown(axial("0 0 0 200")),
         {},
         {{20, 2, kCyan}, {180, 100, kHalfCyanMagenta}, {100, 197, kMagenta}}});
    add("extended", {"/S sh",
                     shown(axial("50 0 150 0", "/Extend [true true]")),
                     {},
                     {{10, 100, kCyan}, {190, 100, kMagenta}}});
    add("clipped", {"50 50 100 100 re W n /S sh",
                    shown(axial("0 0 200 0")),
                    {},
                    {{20, 100, Qt::white}, {100, 100, kHalfCyanMagenta}, {100, 180, Qt::white}}});
    add("not extended",
        {"/S sh", shown(axial("50 0 150 0")), {}, {{10, 100, Qt::white}, {190, 100, Qt::white}}});
    add("not extended, over another colour",
        {"0 1 0 rg" + kAll + "/S sh",
         shown(axial("50 0 150 0")),
         {},
         {{10, 100, Qt::green}, {100, 100, kHalfCyanMagenta}, {190, 100, Qt::green}}});
    add("as a pattern",
        {fill, pattern(axial("0 0 200 0")), {}, {{2, 100, kCyan}, {197, 100, kMagenta}}});
    add("as a pattern with background",
        {fill,
         pattern(axial("50 0 150 0", "/Background [0 0 1 0]")),
         {},
         {{10, 100, kYellow}, {100, 100, kHalfCyanMagenta}, {190, 100, kYellow}}});
    add("radial",
        {"/S sh",
         shown("<< /ShadingType 3 /ColorSpace /DeviceCMYK /Coords [100 100 0 100 100 80] "
               "/Extend [false true] /Function << /FunctionType 2 /Domain [0 1] /C0 [1 0 0 0] "
               "/C1 [0 1 0 0] /N 1 >> >>"),
         {},
         {{100, 100, kCyan}, {100, 140, kHalfCyanMagenta}, {5, 5, kMagenta}}});
    add("of a spot colour",
        {"/S sh",
         shown("<< /ShadingType 2 /ColorSpace " + separation("0 1 0 0") +
               " /Coords [0 0 200 0] /Function << /FunctionType 2 /Domain [0 1] /C0 [0] /C1 [1] "
               "/N 1 >> >>"),
         {},
         {{2, 100, Qt::white}, {100, 100, kHalfMagenta}, {197, 100, kMagenta}}});
    add("half transparent",
        {"/G gs /S sh",
         shown(axial("0 0 200 0", "/Extend [true true]")) + " /ExtGState << /G << /ca 0.5 >> >>",
         {},
         {{2, 100, kHalfCyan}, {197, 100, kHalfMagenta}}});
}

void TestEngineColour::shadings()
{
    check();
}

void TestEngineColour::wideShadingIsTransparentWhereItPaintsNothing()
{
    Folder folder;
    const QString path = folder.add(
        u"wide.pdf"_s, PdfFixture::onePage("0 1 0 rg" + kAll + "/S sh",
                                           "/Shading << /S " + axial("100 0 150 0") + " >>"));
    const QImage image = render(filePage(path), {800, 800}).image;
    COMPARE_COLOUR(image.pixelColor(200, 400), Qt::green, kTolerance);
    COMPARE_COLOUR(image.pixelColor(401, 400), kCyan, kTolerance);
    COMPARE_COLOUR(image.pixelColor(500, 400), kHalfCyanMagenta, kTolerance);
    COMPARE_COLOUR(image.pixelColor(700, 400), Qt::green, kTolerance);
}

void TestEngineColour::transparency_data()
{
    QTest::addColumn<Case>("spec");
    const QByteArray group = "/Group << /S /Transparency /CS /DeviceCMYK /I true >>";
    add("group that blends in CMYK",
        {"/X Do", kUsesX, {form("1 0 0 0 k" + kAll, group)}, {{100, 100, kCyan}}});
    add("half transparent group", {"/G gs /X Do",
                                   kUsesX + "/ExtGState << /G << /ca 0.5 >> >>",
                                   {form("1 0 0 0 k" + kAll, group)},
                                   {{100, 100, kHalfCyan}}});
    add("RGB inside a group that blends in CMYK", {"/X Do",
                                                   kUsesX,
                                                   {form("0.2 0.4 0.8 rg" + kAll, group)},
                                                   {{100, 100, QColor(51, 102, 204)}},
                                                   1});
    add("half transparent fill", {"/G gs 0 1 0 0 k" + kAll,
                                  "/ExtGState << /G << /ca 0.5 >> >>",
                                  {},
                                  {{100, 100, kHalfMagenta}}});
    add("group that blends in a profile",
        {"/X Do",
         kUsesX,
         {form("0.2 0.4 0.8 rg" + kAll,
               "/Group << /S /Transparency /CS [/ICCBased 6 0 R] /I true >>"),
          profile(IccProfiles::swappedRgb(), 3)},
         {{100, 100, QColor(51, 102, 204)}},
         1});
    const auto masked = [](const QByteArray &mask) -> QByteArray {
        return "/ExtGState << /G << /SMask << /S /Luminosity /G 5 0 R " + mask + " >> >> >>";
    };
    const QByteArray halves = "0 0 0 1 k 0 0 100 200 re f 0 0 0 0 k 100 0 100 200 re f";
    add("mask in CMYK", {"/G gs 1 0 0 0 k" + kAll,
                         masked({}),
                         {form(halves, group)},
                         {{50, 100, Qt::white}, {150, 100, kCyan}}});
    add("mask in CMYK with a backdrop", {"/G gs 1 0 0 0 k" + kAll,
                                         masked("/BC [0 0 0 1]"),
                                         {form("0 0 0 0 k 100 0 100 200 re f", group)},
                                         {{50, 100, Qt::white}, {150, 100, kCyan}}});
    const QByteArray opacity =
        "/Resources << /ExtGState << /Opacity << /SMask << /S /Alpha /G 6 0 R >> >> >> >> ";
    add("mask in CMYK that has a mask of opacity within",
        {"/G gs 1 0 0 0 k" + kAll,
         masked({}),
         {form("q /Opacity gs 0 0 0 0 k" + kAll + "Q " + halves, opacity + group),
          form("0 g" + kAll, group)},
         {{50, 100, Qt::white}, {150, 100, kCyan}}});
    add("mask in grey", {"/G gs 1 0 0 0 k" + kAll,
                         masked({}),
                         {form("0 g 0 0 100 200 re f 1 g 100 0 100 200 re f",
                               "/Group << /S /Transparency /CS /DeviceGray >>")},
                         {{50, 100, Qt::white}, {150, 100, kCyan}}});
}

void TestEngineColour::transparency()
{
    check();
}

void TestEngineColour::defaultSpaces_data()
{
    QTest::addColumn<Case>("spec");
    const QByteArray ink = profile(IccProfiles::swappedCmyk(), 4);
    const QByteArray rgb = profile(IccProfiles::swappedRgb(), 3);
    const QByteArray gray = profile(IccProfiles::linearGray(), 1);
    const QByteArray inkDefault = "/ColorSpace << /DefaultCMYK [/ICCBased 6 0 R] >> ";
    const QByteArray rgbDefault = "/ColorSpace << /DefaultRGB [/ICCBased 6 0 R] >> ";
    const QByteArray grayDefault = "/ColorSpace << /DefaultGray [/ICCBased 6 0 R] >> ";
    add("CMYK fill", {"1 0 0 0 k" + kAll, inkDefault, {"null", ink}, {{100, 100, kSwappedCyan}}});
    add("CMYK image", {kImage,
                       kUsesX + inkDefault,
                       {image("/DeviceCMYK", kBytesCyan), ink},
                       {{100, 100, kSwappedCyan}}});
    add("CMYK shading", {"/S sh",
                         "/Shading << /S " + axial("0 0 200 0") + " >> " + inkDefault,
                         {"null", ink},
                         {{2, 100, kSwappedCyan}}});
    add("CMYK image, once more in a form with a default of its own",
        {"q 100 0 0 200 0 0 cm /X Do Q /F Do",
         "/XObject << /X 5 0 R /F 7 0 R >>",
         {image("/DeviceCMYK", kBytesCyan), ink,
          form("q 100 0 0 200 100 0 cm /X Do Q", "/Resources << " + kUsesX + inkDefault + " >>")},
         {{50, 100, kCyan}, {150, 100, kSwappedCyan}}});
    add("RGB fill", {"1 0 0 rg" + kAll, rgbDefault, {"null", rgb}, {{100, 100, kSwappedRed}}});
    add("RGB image", {kImage,
                      kUsesX + rgbDefault,
                      {image("/DeviceRGB", kBytesRed), rgb},
                      {{100, 100, kSwappedRed}}});
    add("indexed RGB image", {kImage,
                              kUsesX + rgbDefault,
                              {image("[/Indexed /DeviceRGB 1 <FFFFFFFF0000>]", "\x01"), rgb},
                              {{100, 100, kSwappedRed}}});
    add("grey fill", {"0.5 g" + kAll, grayDefault, {"null", gray}, {{100, 100, kLinearMiddle}}});
    add("grey image", {kImage,
                       kUsesX + grayDefault,
                       {image("/DeviceGray", "\x80"), gray},
                       {{100, 100, kLinearMiddle}}});
    add("other spaces are left alone",
        {"1 0 0 rg" + kAll, inkDefault, {"null", ink}, {{100, 100, Qt::red}}, 1});
}

void TestEngineColour::defaultSpaces()
{
    check();
}

void TestEngineColour::coloursStayTheSameOnEveryUse()
{
    // Two pages share a space, a third has a profile of its own; all are drawn again and again.
    const auto page = [](int content, int profile) -> QByteArray {
        return "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Contents " +
               QByteArray::number(content) + " 0 R /Resources << /ColorSpace << /C [/ICCBased " +
               QByteArray::number(profile) + " 0 R] >> >> >>";
    };
    Folder folder;
    const QString path = folder.add(
        u"pages.pdf"_s,
        PdfFixture::fromObjects(
            {"<< /Type /Catalog /Pages 2 0 R >>",
             "<< /Type /Pages /Kids [3 0 R 4 0 R 5 0 R] /Count 3 >>", page(6, 7), page(6, 7),
             page(6, 8), PdfFixture::streamBody({}, "/C cs 1 0 0 sc" + kAll),
             profile(IccProfiles::swappedRgb(), 3), profile(IccProfiles::standardRgb(), 3)}));
    for (int round = 0; round < 3; ++round) {
        COMPARE_COLOUR(middle(render(filePage(path, 0)).image), kSwappedRed, kTolerance);
        COMPARE_COLOUR(middle(render(filePage(path, 2)).image), Qt::red, 1);
        COMPARE_COLOUR(middle(render(filePage(path, 1)).image), kSwappedRed, kTolerance);
    }
}

QTEST_GUILESS_MAIN(TestEngineColour)
#include "tst_engine_colour.moc"
