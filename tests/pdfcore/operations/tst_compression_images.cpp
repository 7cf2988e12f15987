// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/operations/compression_case.h"

#include <QBuffer>

#include <qpdf/Buffer.hh>

using namespace CompressionCase;
using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

constexpr PdfCompressionLevel kBasic = PdfCompressionLevel::Basic;
constexpr PdfCompressionLevel kStrong = PdfCompressionLevel::Strong;
/// Of the mean of a small area; what JPEG and a smaller size make of a photograph is less.
constexpr int kAlike = 8;
constexpr QSize kLarge(600, 600);

QByteArray form(const QByteArray &matrix, const QByteArray &content, const QByteArray &resources)
{
    return PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 1000 1000] /Matrix [" +
                                      matrix + "] /Resources << " + resources + " >>",
                                  content);
}

QByteArray pattern(const QByteArray &matrix, const QByteArray &content)
{
    return PdfFixture::streamBody("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox "
                                  "[0 0 1000 1000] /XStep 1000 "
                                  "/YStep 1000 /Matrix [" +
                                      matrix + "] /Resources << /XObject << /X 5 0 R >> >>",
                                  content);
}

/// Areas of one colour each, with sharp edges.
QByteArray drawing(QSize size)
{
    QByteArray samples;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            samples.append(x / 37 % 2 == 0 ? '\x10' : '\xF0')
                .append(static_cast<char>(y / 50 * 20))
                .append('\x20');
        }
    }
    return samples;
}

/// 256 colours.
QByteArray palette()
{
    QByteArray colours;
    for (int i = 0; i < 256; ++i) {
        colours.append(static_cast<char>(i)).append(static_cast<char>(255 - i)).append('\x7F');
    }
    return colours;
}

/// Content that draws a photograph in a square of an inch, in a colour space called /C.
QByteArray inlineImage(QSize size)
{
    return "q 72 0 0 72 20 20 cm BI /W " + QByteArray::number(size.width()) + " /H " +
           QByteArray::number(size.height()) + " /CS /C /BPC 8 /F /AHx ID " +
           photo(size, 3).toHex() + "> EI Q ";
}

const QByteArray kUsesX = "/XObject << /X 5 0 R >> ";
const QByteArray kInForm = "/XObject << /F 6 0 R >> ";
const QByteArray kGrey = "/ColorSpace /DeviceGray ";

} // namespace

/// What becomes of the images of a document that is made smaller.
class TestCompressionImages : public QObject
{
    Q_OBJECT

private slots:
    void sizeFollowsTheLevel_data();
    void sizeFollowsTheLevel();
    void largestPlaceCounts_data();
    void largestPlaceCounts();
    void imagesLookTheSame_data();
    void imagesLookTheSame();
    void softMaskStaysWithoutLoss();
    void softMaskOverridesColourKey();
    void preblendedImagesStay();
    void exactSamplesStay_data();
    void exactSamplesStay();
    void entriesStay();
    void drawingsStayWithoutLoss_data();
    void drawingsStayWithoutLoss();
    void photographsInFewColoursAreNoDrawings();
    void palettesAreLookedUp_data();
    void palettesAreLookedUp();
    void inlineImagesBecomeSmaller_data();
    void inlineImagesBecomeSmaller();
    void smallInlineImagesStay();
    void jpegOfUnknownSizeKeepsEveryPixel();
    void littleGainChangesNothing();
    void damagedPicturesStay_data();
    void damagedPicturesStay();
    void levelsDifferInQuality();
    void packedJpegIsUnpacked();
    void packedJpegNeverGrows();
};

void TestCompressionImages::sizeFollowsTheLevel_data()
{
    QTest::addColumn<PdfCompressionLevel>("level");
    QTest::addColumn<int>("side");
    QTest::addColumn<double>("points");
    QTest::addColumn<int>("expected");
    QTest::newRow("basic, far above") << kBasic << 600 << 72.0 << 200;
    QTest::newRow("strong, far above") << kStrong << 600 << 72.0 << 120;
    QTest::newRow("basic, just above") << kBasic << 302 << 72.0 << 200;
    QTest::newRow("basic, at the limit") << kBasic << 300 << 72.0 << 300;
    QTest::newRow("strong, just above") << kStrong << 182 << 72.0 << 120;
    QTest::newRow("strong, at the limit") << kStrong << 180 << 72.0 << 180;
    QTest::newRow("basic, shown twice as large") << kBasic << 600 << 144.0 << 600;
}

void TestCompressionImages::sizeFollowsTheLevel()
{
    QFETCH(PdfCompressionLevel, level);
    QFETCH(int, side);
    QFETCH(double, points);
    QFETCH(int, expected);
    for (const QByteArray &body :
         {jpegImage({side, side}),
          sampledImage({side, side}, "/ColorSpace /DeviceRGB", photo({side, side}, 3))}) {
        Result result(pageWith(body, points), level);
        QCOMPARE(result.outcome().error, PdfOperationError::None);
        QCOMPARE(result.imageSize(), QSize(expected, expected));
        QCOMPARE(filterOf(result.image()), QByteArray("/DCTDecode"));
        QCOMPARE(samplesOf(result.image()).size(), qsizetype{3} * expected * expected);
    }
}

void TestCompressionImages::largestPlaceCounts_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<int>("expected");
    const QByteArray image = jpegImage(kLarge);
    const auto page = [&](const QByteArray &content, const QByteArray &resources,
                          const QList<QByteArray> &more = {}, const QByteArray &entries = {}) {
        return PdfFixture::onePage(content, resources, QList<QByteArray>{image} + more, entries);
    };
    const QByteArray small = "q 36 0 0 36 0 0 cm /X Do Q ";
    const QByteArray inch = "q 72 0 0 72 0 0 cm /X Do Q ";
    QTest::newRow("two places") << page(small + inch + small, kUsesX) << 200;
    QTest::newRow("the state ends")
        << page("q 9 0 0 9 0 0 cm Q 72 0 0 72 0 0 cm /X Do", kUsesX) << 200;
    QTest::newRow("turned") << page("q 0 72 -72 0 100 0 cm /X Do Q", kUsesX) << 200;
    QTest::newRow("slanted") << page("q 50.91 50.91 -50.91 50.91 80 0 cm /X Do Q", kUsesX) << 200;
    QTest::newRow("turned, then stretched")
        << page("72 0 0 18 0 0 cm 0.70711 0.70711 -0.70711 0.70711 0 0 cm /X Do", kUsesX) << 146;
    QTest::newRow("stretched") << page("q 72 0 0 9 0 0 cm /X Do Q", kUsesX) << 200;
    QTest::newRow("user unit") << page("q 36 0 0 36 0 0 cm /X Do Q", kUsesX, {}, "/UserUnit 2")
                               << 200;
    QTest::newRow("form") << page("q 2 0 0 2 0 0 cm /F Do Q", kInForm,
                                  {form("0.5 0 0 0.5 0 0", inch, kUsesX)})
                          << 200;
    QTest::newRow("form in a form")
        << page("/F Do", kInForm,
                {form("2 0 0 2 0 0", "0.5 0 0 0.5 0 0 cm /G Do", "/XObject << /G 7 0 R >>"),
                 form("1 0 0 1 0 0", inch, kUsesX)})
        << 200;
    QTest::newRow("form twice") << page("/F Do 2 0 0 2 0 0 cm /F Do", kInForm,
                                        {form("1 0 0 1 0 0", "36 0 0 36 0 0 cm /X Do", kUsesX)})
                                << 200;
    QTest::newRow("form with the resources of the page")
        << page("/F Do", "/XObject << /X 5 0 R /F 6 0 R >>",
                {PdfFixture::streamBody("/Subtype /Form /BBox [0 0 99 99]", inch)})
        << 200;
    QTest::newRow("pattern") << page("/Pattern cs /P scn 0 0 200 200 re f",
                                     "/Pattern << /P 6 0 R >>",
                                     {pattern("0.5 0 0 0.5 0 0", "144 0 0 144 0 0 cm /X Do")})
                             << 200;
    QTest::newRow("group of a soft mask")
        << page("/GS gs", "/ExtGState << /GS << /SMask << /S /Luminosity /G 6 0 R >> >> >>",
                {form("1 0 0 1 0 0", inch, kUsesX)})
        << 200;
    QTest::newRow("appearance")
        << page({}, {},
                {form("1 0 0 1 0 0", "1000 0 0 1000 0 0 cm /X Do", kUsesX),
                 "<< /Subtype /Stamp /Rect [0 0 72 72] /AP << /N << /On 6 0 R >> >> >>"},
                "/Annots [7 0 R]")
        << 200;
    QTest::newRow("a form that draws itself")
        << page("/F Do " + inch, "/XObject << /X 5 0 R /F 6 0 R >>",
                {form("1 0 0 1 0 0", "1.1 0 0 1.1 0 0 cm /F Do", kInForm)})
        << 600;
    QTest::newRow("nowhere") << page({}, kUsesX) << 600;
}

void TestCompressionImages::largestPlaceCounts()
{
    QFETCH(QByteArray, document);
    QFETCH(int, expected);
    Result result(document);
    QCOMPARE(result.outcome().error, PdfOperationError::None);
    QCOMPARE(result.imageSize(), QSize(expected, expected));
}

void TestCompressionImages::imagesLookTheSame_data()
{
    QTest::addColumn<QByteArray>("space");
    QTest::addColumn<int>("components");
    QTest::addColumn<QByteArray>("entries");
    const QByteArray tint = "<< /FunctionType 2 /Domain [0 1] /C0 [0 0 0 0] /C1 [0 1 1 0] /N 1 >>";
    QTest::newRow("grey") << QByteArray("/DeviceGray") << 1 << QByteArray();
    QTest::newRow("RGB") << QByteArray("/DeviceRGB") << 3 << QByteArray();
    QTest::newRow("CMYK") << QByteArray("/DeviceCMYK") << 4 << QByteArray();
    QTest::newRow("inverted CMYK")
        << QByteArray("/DeviceCMYK") << 4 << QByteArray("/Decode [1 0 1 0 1 0 1 0]");
    QTest::newRow("inverted grey") << QByteArray("/DeviceGray") << 1 << QByteArray("/Decode [1 0]");
    QTest::newRow("Separation") << "[/Separation /Spot /DeviceCMYK " + tint + "]" << 1
                                << QByteArray();
    QTest::newRow("CalRGB") << QByteArray("[/CalRGB << /WhitePoint [0.95 1 1.09] >>]") << 3
                            << QByteArray();
}

void TestCompressionImages::imagesLookTheSame()
{
    QFETCH(QByteArray, space);
    QFETCH(int, components);
    QFETCH(QByteArray, entries);
    const QByteArray body =
        sampledImage(kLarge, "/ColorSpace " + space + ' ' + entries, photo(kLarge, components));
    for (const PdfCompressionLevel level : {kBasic, kStrong}) {
        Result result(pageWith(body), level);
        QCOMPARE(result.outcome().error, PdfOperationError::None);
        QVERIFY(result.imageSize().width() < kLarge.width());
        QCOMPARE(filterOf(result.image()), QByteArray("/DCTDecode"));
        QVERIFY2(result.difference() <= kAlike, QByteArray::number(result.difference()));
    }
}

void TestCompressionImages::softMaskStaysWithoutLoss()
{
    const QByteArray mask = sampledImage(kLarge, kGrey, photo(kLarge, 1));
    Result result(pageWith(jpegImage(kLarge, 95, "/SMask 6 0 R"), 72, {mask}));
    QCOMPARE(result.outcome().error, PdfOperationError::None);
    QCOMPARE(result.imageSize(), QSize(200, 200));
    QPDFObjectHandle softMask = result.image().getDict().getKey("/SMask");
    QCOMPARE(sizeOf(softMask), QSize(200, 200));
    QCOMPARE(filterOf(softMask), QByteArray("/FlateDecode"));
    QCOMPARE(samplesOf(softMask).size(), qsizetype{200} * 200);
    QVERIFY2(result.difference() <= kAlike, QByteArray::number(result.difference()));
}

void TestCompressionImages::softMaskOverridesColourKey()
{
    const QByteArray mask = sampledImage(kLarge, kGrey, photo(kLarge, 1));
    Result result(
        pageWith(jpegImage(kLarge, 95, "/SMask 6 0 R /Mask [0 90 0 90 0 90]"), 72, {mask}));
    QCOMPARE(result.imageSize(), QSize(200, 200));
    QVERIFY(!result.image().getDict().hasKey("/Mask"));
    QVERIFY2(result.difference() <= kAlike, QByteArray::number(result.difference()));
}

void TestCompressionImages::preblendedImagesStay()
{
    const QByteArray mask = sampledImage(kLarge, kGrey + "/Matte [0 0 0]", photo(kLarge, 1));
    const QByteArray samples = photo(kLarge, 3);
    Result result(
        pageWith(sampledImage(kLarge, "/ColorSpace /DeviceRGB /SMask 6 0 R", samples), 72, {mask}));
    QCOMPARE(result.outcome().error, PdfOperationError::None);
    QCOMPARE(samplesOf(result.image()), samples);
    QCOMPARE(samplesOf(result.image().getDict().getKey("/SMask")), photo(kLarge, 1));
}

void TestCompressionImages::exactSamplesStay_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QByteArray>("samples");
    QByteArray palette;
    for (int i = 0; i < 256; ++i) {
        palette += QByteArray(1, static_cast<char>(i)).toHex() +
                   QByteArray(1, static_cast<char>(255 - i)).toHex() + "7f";
    }
    const QByteArray rgb = photo(kLarge, 3);
    const QByteArray grey = photo(kLarge, 1);
    const QByteArray bits = "/BitsPerComponent ";
    QTest::newRow("colour key") << "/ColorSpace /DeviceRGB /Mask [0 10 0 10 0 10] " + bits + "8"
                                << rgb;
    QTest::newRow("indexed, in another order")
        << "/ColorSpace [/Indexed /DeviceRGB 255 <" + palette + ">] /Decode [255 0] " + bits + "8"
        << grey;
    QTest::newRow("indexed, with too few colours")
        << "/ColorSpace [/Indexed /DeviceRGB 255 <" + palette.chopped(6) + ">] " + bits + "8"
        << grey;
    QTest::newRow("Lab") << "/ColorSpace [/Lab << /WhitePoint [0.95 1 1.09] >>] " + bits + "8"
                         << rgb;
    QTest::newRow("stencil") << "/ImageMask true " + bits + "1" << grey.left(75 * 600);
    QTest::newRow("bilevel") << kGrey + bits + "1" << grey.left(75 * 600);
    QTest::newRow("four bits") << kGrey + bits + "4" << grey.left(300 * 600);
    QTest::newRow("sixteen bits") << kGrey + bits + "16" << grey + grey;
}

void TestCompressionImages::exactSamplesStay()
{
    QFETCH(QByteArray, entries);
    QFETCH(QByteArray, samples);
    // Not packed at all, so that something is gained.
    Result result(pageWith(image(kLarge, entries, samples) + QByteArray(), 72,
                           {PdfFixture::streamBody({}, QByteArray(9000, 'x'))}));
    QCOMPARE(result.outcome().error, PdfOperationError::None);
    QVERIFY(!result.isCopy());
    QCOMPARE(result.imageSize(), kLarge);
    QCOMPARE(samplesOf(result.image()), samples);
}

void TestCompressionImages::entriesStay()
{
    const QByteArray stencil = image({8, 8}, "/ImageMask true /BitsPerComponent 1",
                                     QByteArray("\xF0\x0F\xF0\x0F"
                                                "abcd"));
    Result result(pageWith(
        jpegImage(kLarge, 95,
                  "/Intent /Perceptual /Interpolate true /Mask 6 0 R /Decode [0 1 0.5 1 0 1] "
                  "/DecodeParms << /ColorTransform 1 >>"),
        72, {stencil}));
    QCOMPARE(result.imageSize(), QSize(200, 200));
    QPDFObjectHandle dict = result.image().getDict();
    QCOMPARE(dict.getKey("/Intent").unparse(), std::string("/Perceptual"));
    QCOMPARE(dict.getKey("/Interpolate").unparse(), std::string("true"));
    QCOMPARE(dict.getKey("/ColorSpace").unparse(), std::string("/DeviceRGB"));
    QCOMPARE(dict.getKey("/Decode").getArrayNItems(), 6);
    QVERIFY(!dict.hasKey("/DecodeParms"));
    QCOMPARE(sizeOf(dict.getKey("/Mask")), QSize(8, 8));
    QVERIFY2(result.difference() <= kAlike, QByteArray::number(result.difference()));
}

void TestCompressionImages::drawingsStayWithoutLoss_data()
{
    QTest::addColumn<double>("points");
    QTest::addColumn<int>("side");
    // Half as many dots to an inch again as a photograph is left with, and half again before that.
    QTest::newRow("as large as it may be") << 160.0 << 600;
    QTest::newRow("too large") << 158.0 << 395;
}

void TestCompressionImages::drawingsStayWithoutLoss()
{
    QFETCH(double, points);
    QFETCH(int, side);
    const QByteArray samples = drawing(kLarge);
    Result result(
        pageWith(image(kLarge, "/ColorSpace /DeviceRGB /BitsPerComponent 8", samples), points),
        kStrong);
    QVERIFY(!result.isCopy());
    QCOMPARE(result.imageSize(), QSize(side, side));
    QCOMPARE(filterOf(result.image()), QByteArray("/FlateDecode"));
    QVERIFY(side < kLarge.width() || samplesOf(result.image()) == samples);
    QVERIFY2(result.difference() <= kAlike, QByteArray::number(result.difference()));
}

void TestCompressionImages::photographsInFewColoursAreNoDrawings()
{
    // Two hundred colours at most, but so mixed that they take a lot without loss.
    QByteArray samples;
    for (const char grey : photo(kLarge, 1)) {
        const char step = static_cast<char>(static_cast<unsigned char>(grey) / 2);
        samples.append(step).append(static_cast<char>(255 - step)).append('\x20');
    }
    Result result(
        pageWith(image(kLarge, "/ColorSpace /DeviceRGB /BitsPerComponent 8", samples), 300),
        kStrong);
    QCOMPARE(filterOf(result.image()), QByteArray("/DCTDecode"));
    QVERIFY2(result.difference() <= kAlike, QByteArray::number(result.difference()));
}

void TestCompressionImages::palettesAreLookedUp_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QList<QByteArray>>("more");
    const QByteArray colours = palette();
    QTest::newRow("string") << '<' + colours.toHex() + '>' << QList<QByteArray>();
    QTest::newRow("stream") << QByteArray("6 0 R")
                            << QList<QByteArray>{PdfFixture::streamBody({}, colours)};
}

void TestCompressionImages::palettesAreLookedUp()
{
    QFETCH(QByteArray, table);
    QFETCH(QList<QByteArray>, more);
    Result result(
        pageWith(sampledImage(kLarge, "/ColorSpace [/Indexed /DeviceRGB 255 " + table + ']',
                              photo(kLarge, 1)),
                 72, more));
    QCOMPARE(filterOf(result.image()), QByteArray("/DCTDecode"));
    QCOMPARE(result.imageSize(), QSize(200, 200));
    QVERIFY(result.image().getDict().getKey("/ColorSpace").isNameAndEquals("/DeviceRGB"));
    QVERIFY2(result.difference() <= kAlike, QByteArray::number(result.difference()));
}

void TestCompressionImages::inlineImagesBecomeSmaller_data()
{
    QTest::addColumn<QByteArray>("document");
    const QByteArray picture = inlineImage(kLarge);
    const QByteArray resources = "/ColorSpace << /C /DeviceRGB >>";
    QTest::newRow("page") << PdfFixture::onePage(picture, resources);
    QTest::newRow("form") << PdfFixture::onePage("/X Do", "/XObject << /X 5 0 R >>",
                                                 {form("1 0 0 1 0 0", picture, resources)});
    QTest::newRow("form in a form")
        << PdfFixture::onePage("/F Do", "/XObject << /F 5 0 R >>",
                               {form("1 0 0 1 0 0", "/F Do", "/XObject << /F 6 0 R >>"),
                                form("1 0 0 1 0 0", picture, resources)});
}

void TestCompressionImages::inlineImagesBecomeSmaller()
{
    QFETCH(QByteArray, document);
    Result result(document);
    QCOMPARE(result.images().size(), size_t{1});
    QCOMPARE(result.imageSize(), QSize(200, 200));
    QCOMPARE(filterOf(result.image()), QByteArray("/DCTDecode"));
    QVERIFY(result.bytes().size() < document.size() / 20);
    QVERIFY2(result.difference() <= kAlike, QByteArray::number(result.difference()));
}

void TestCompressionImages::smallInlineImagesStay()
{
    Result result(PdfFixture::onePage(inlineImage({20, 20}) + QByteArray(9000, ' '),
                                      "/ColorSpace << /C /DeviceRGB >>"));
    QVERIFY(!result.isCopy());
    QCOMPARE(result.images().size(), size_t{0});
    QCOMPARE(result.difference(), 0);
}

void TestCompressionImages::jpegOfUnknownSizeKeepsEveryPixel()
{
    // Only a glyph shows it.
    const QByteArray font =
        "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 1 1] /FontMatrix [1 0 0 1 0 0] /FirstChar "
        "97 "
        "/LastChar 97 /Widths [1] /Encoding << /Differences [97 /a] >> /CharProcs << /a 7 0 R >> "
        "/Resources << /XObject << /X 5 0 R >> >> >>";
    Result result(PdfFixture::onePage(
        "BT /F 72 Tf (a) Tj ET /X Do", "/Font << /F 6 0 R >> /XObject << /X 5 0 R >>",
        {jpegImage(kLarge, 95), font, PdfFixture::streamBody({}, "1 0 d0 /X Do")}));
    QCOMPARE(result.outcome().error, PdfOperationError::None);
    QVERIFY(!result.isCopy());
    QCOMPARE(samplesOf(result.image()), [] {
        const QImage before =
            QImage::fromData(jpegPhoto(kLarge, 95), "JPG").convertToFormat(QImage::Format_RGB888);
        return QByteArray(reinterpret_cast<const char *>(before.constBits()), before.sizeInBytes());
    }());
}

void TestCompressionImages::littleGainChangesNothing()
{
    // As good as what would be made of it, and no larger on the page than it should be.
    const QByteArray jpeg = jpegPhoto({200, 200}, 85, true);
    Result result(pageWith(
        image({200, 200}, "/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter /DCTDecode", jpeg),
        72, {PdfFixture::streamBody({}, QByteArray(9000, 'x'))}));
    QVERIFY(!result.isCopy());
    const auto raw = result.image().getRawStreamData();
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(raw->getBuffer()),
                        static_cast<qsizetype>(raw->getSize())),
             jpeg);
}

void TestCompressionImages::damagedPicturesStay_data()
{
    QTest::addColumn<QByteArray>("body");
    const QByteArray jpeg = jpegPhoto(kLarge, 95);
    const QByteArray entries = "/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter /DCTDecode";
    QTest::newRow("cut JPEG") << image(kLarge, entries, jpeg.left(jpeg.size() / 2));
    QTest::newRow("no JPEG") << image(kLarge, entries, photo({60, 60}, 3));
    QTest::newRow("JPEG of another size") << image({300, 300}, entries, jpeg);
    QTest::newRow("JPEG of other components")
        << image(kLarge, "/ColorSpace /DeviceGray /BitsPerComponent 8 /Filter /DCTDecode", jpeg);
    QTest::newRow("too few samples")
        << sampledImage(kLarge, "/ColorSpace /DeviceRGB", photo({600, 599}, 3));
    const QByteArray packed = flate(photo(kLarge, 3));
    QTest::newRow("cut samples") << image(
        kLarge, "/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter /FlateDecode",
        packed.left(packed.size() / 2));
}

void TestCompressionImages::damagedPicturesStay()
{
    QFETCH(QByteArray, body);
    Result result(pageWith(body, 72, {PdfFixture::streamBody({}, QByteArray(9000, 'x'))}));
    QCOMPARE(result.outcome().error, PdfOperationError::None);
    const QSize before(QByteArray(body.mid(body.indexOf("/Width") + 7, 3)).toInt(),
                       QByteArray(body.mid(body.indexOf("/Height") + 8, 3)).toInt());
    QCOMPARE(result.imageSize(), before);
    QCOMPARE(result.difference(), 0);
}

void TestCompressionImages::levelsDifferInQuality()
{
    const QByteArray document = pageWith(jpegImage({180, 180}, 95));
    Result basic(document, kBasic);
    Result strong(document, kStrong);
    QVERIFY(strong.bytes().size() < basic.bytes().size());
    QVERIFY(basic.bytes().size() < document.size());
    QCOMPARE(basic.imageSize(), strong.imageSize());
    QVERIFY(basic.difference() <= kAlike);
    QVERIFY(strong.difference() <= kAlike);
}

void TestCompressionImages::packedJpegIsUnpacked()
{
    const QByteArray jpeg = jpegPhoto(kLarge, 95);
    Result result(pageWith(image(
        kLarge, "/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter [/ASCIIHexDecode /DCTDecode]",
        jpeg.toHex() + '>')));
    QCOMPARE(result.imageSize(), QSize(200, 200));
    QCOMPARE(filterOf(result.image()), QByteArray("/DCTDecode"));
    QVERIFY(result.difference() <= kAlike);

    // One that must stay what it is to the last bit.
    Result exact(pageWith(image(kLarge,
                                "/ColorSpace /DeviceRGB /BitsPerComponent 8 /Mask [0 1 0 1 0 1] "
                                "/Filter [/ASCIIHexDecode /DCTDecode]",
                                jpeg.toHex() + '>')));
    QCOMPARE(filterOf(exact.image()), QByteArray("/DCTDecode"));
    const auto raw = exact.image().getRawStreamData();
    QCOMPARE(QByteArray(reinterpret_cast<const char *>(raw->getBuffer()),
                        static_cast<qsizetype>(raw->getSize())),
             jpeg);
}

void TestCompressionImages::packedJpegNeverGrows()
{
    // Of one colour, so that packing it as any data gains far more than JPEG does by itself.
    const QSize size(1500, 1500);
    QImage plain(size, QImage::Format_RGB888);
    plain.fill(Qt::red);
    QBuffer jpeg;
    jpeg.open(QIODevice::WriteOnly);
    QVERIFY(plain.save(&jpeg, "JPG", 95));
    const QByteArray data = flate(jpeg.data());
    Result result(pageWith(image(size,
                                 "/ColorSpace /DeviceRGB /BitsPerComponent 8 /Filter [/FlateDecode "
                                 "/DCTDecode]",
                                 data),
                           720, {PdfFixture::streamBody({}, QByteArray(9000, 'x'))}));
    QVERIFY(!result.isCopy());
    QVERIFY(result.image().getRawStreamData()->getSize() <= static_cast<size_t>(data.size()));
}

QTEST_GUILESS_MAIN(TestCompressionImages)
#include "tst_compression_images.moc"
