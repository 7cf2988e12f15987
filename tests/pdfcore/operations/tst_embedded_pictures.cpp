// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_picture_export.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/icc_profiles.h"
#include "tests/pdfcore/ink_colours.h"
#include "tests/support/pdf_fixture.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QThread>

#include <memory>
#include <thread>

using namespace EngineCalls;
using namespace Qt::StringLiterals;
using PdfFixture::streamBody;

namespace {

using Bytes = QByteArray;
using Colours = QList<QColor>;

const Bytes kImage = "/Type /XObject /Subtype /Image ";
/// Two pixels beside each other.
const Bytes kPair = kImage + "/Width 2 /Height 1 /BitsPerComponent 8 ";
const Bytes kGrayPair = kPair + "/ColorSpace /DeviceGray ";
const Bytes kRgbPair = kPair + "/ColorSpace /DeviceRGB ";

/// One pixel whose gray tells it from others.
Bytes numbered(int number, const Bytes &entries = {})
{
    return streamBody(kImage + "/Width 1 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceGray " +
                          entries,
                      Bytes(1, static_cast<char>(number)));
}

/// The same within a content stream.
Bytes inlineNumber(int number)
{
    return "BI /W 1 /H 1 /BPC 8 /CS /G ID " + Bytes(1, static_cast<char>(number)) + "\nEI\n";
}

Bytes form(const Bytes &content, const Bytes &resources)
{
    return streamBody("/Type /XObject /Subtype /Form /BBox [0 0 9 9] /Resources << " + resources +
                          " >>",
                      content);
}

/// A page that draws one image, which is object 5.
Bytes pageOf(const Bytes &image, const QList<Bytes> &more = {})
{
    return PdfFixture::onePage("/I Do", "/XObject << /I 5 0 R >>", QList<Bytes>{image} + more);
}

/// A JPEG file in four colours.
Bytes jpegFile(QImage::Format format = QImage::Format_RGB888)
{
    QImage image(32, 32, QImage::Format_RGB888);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixelColor(x, y, y < 16 ? (x < 16 ? Qt::red : Qt::green) : Qt::blue);
        }
    }
    Bytes file;
    QBuffer buffer(&file);
    image.convertToFormat(format).save(&buffer, "jpeg", 95);
    return file;
}

const Bytes kJpeg = kImage + "/Width 32 /Height 32 /BitsPerComponent 8 /Filter /DCTDecode ";

Colours coloursOf(const QImage &picture)
{
    Colours colours;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            colours.append(picture.pixelColor(x, y));
        }
    }
    return colours;
}

QColor clear(QColor colour, int alpha = 0)
{
    colour.setAlpha(alpha);
    return colour;
}

} // namespace

/// Pictures of the images in a file.
class TestEmbeddedPictures : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void pixels_data();
    void pixels();
    void masksBecomeWhiteInJpeg_data();
    void masksBecomeWhiteInJpeg();
    void jpegFileComesOutAsItIs_data();
    void jpegFileComesOutAsItIs();
    void jpegFileIsPixelsForPng();
    void imagesComeOnceInTheOrderOfUse();
    void imagesOfSeveralPagesComeOnce();
    void deepAndCircularFormsAreRead();
    void inlineImages();
    void masksAndLettersAreNoPictures();
    void brokenImagesAreLeftOut();
    void documentWithoutImages();
    void namesAndNumbers();
    void cancelLeavesNothing();
    void passwordIsRequired();

private:
    PdfPicturesOutcome exported(const Bytes &document,
                                PdfPictureFormat format = PdfPictureFormat::Png)
    {
        const QString source = m_folder->add(u"a.pdf"_s, document);
        return PdfPictureExport::exportImages(source, {m_folder->path(u"out"_s), u"i"_s, format},
                                              {});
    }
    [[nodiscard]] QStringList made() const
    {
        return QDir(m_folder->path(u"out"_s))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    /// The grays of the pictures of a document of numbered images.
    QList<int> numbersOfPictures(const Bytes &document)
    {
        QList<int> numbers;
        for (const QString &path : exported(document).pictures) {
            numbers.append(QImage(path).pixelColor(0, 0).red());
        }
        return numbers;
    }

    std::unique_ptr<Folder> m_folder;
};

void TestEmbeddedPictures::init()
{
    m_folder = std::make_unique<Folder>();
    QVERIFY(QDir(m_folder->path()).mkdir(u"out"_s));
}

void TestEmbeddedPictures::pixels_data()
{
    QTest::addColumn<Bytes>("image");
    QTest::addColumn<QList<Bytes>>("more");
    QTest::addColumn<Colours>("colours");
    const auto row = [](const char *name, const Bytes &entries, const Bytes &data,
                        const Colours &colours, const QList<Bytes> &more = {}) {
        QTest::newRow(name) << streamBody(entries, data) << more << colours;
    };
    const Colours redAndGreen{QColor(255, 0, 0), QColor(0, 255, 0)};
    const Bytes zero(1, '\0');
    const Bytes redGreen = Bytes::fromHex("ff000000ff00");
    row("gray", kGrayPair, Bytes::fromHex("40c1"), {QColor(64, 64, 64), QColor(193, 193, 193)});
    row("RGB", kRgbPair, Bytes::fromHex("010203fdfeff"), {QColor(1, 2, 3), QColor(253, 254, 255)});
    row("1 bit", kImage + "/Width 2 /Height 2 /BitsPerComponent 1 /ColorSpace /DeviceGray",
        Bytes::fromHex("4080"), {Qt::black, Qt::white, Qt::white, Qt::black});
    row("16 bits", kImage + "/Width 2 /Height 1 /BitsPerComponent 16 /ColorSpace /DeviceRGB",
        Bytes::fromHex("ffff000000000000ffff0000"), redAndGreen);
    row("decoded the other way", kGrayPair + "/Decode [1 0]", Bytes::fromHex("40c1"),
        {QColor(191, 191, 191), QColor(62, 62, 62)});
    row("indexed", kPair + "/ColorSpace [/Indexed /DeviceRGB 1 <00ff00ff0000>]",
        Bytes::fromHex("0100"), redAndGreen);
    row("inks", kPair + "/ColorSpace /DeviceCMYK", Bytes::fromHex("ff00000000ff0000"),
        {kCyan, kMagenta});
    row("indexed inks", kPair + "/ColorSpace [/Indexed /DeviceCMYK 1 <00ff0000ff000000>]",
        Bytes::fromHex("0100"), {kCyan, kMagenta});
    row("profile", kPair + "/ColorSpace [/ICCBased 6 0 R]", redGreen,
        {QColor(0, 255, 0), QColor(255, 0, 0)}, {streamBody("/N 3", IccProfiles::swappedRgb())});
    row("usual profile", kPair + "/ColorSpace [/ICCBased 6 0 R]", redGreen, redAndGreen,
        {streamBody("/N 3", IccProfiles::standardRgb())});
    row("Lab", kPair + "/ColorSpace [/Lab << /WhitePoint [0.9642 1 0.8249] >>]",
        Bytes::fromHex("ff8080008080"), {QColor(255, 255, 254), Qt::black});
    // Lab (50, 60, 0) and (50, 0, -30), with ranges of their own.
    row("Lab within ranges",
        kPair + "/ColorSpace [/Lab << /WhitePoint [0.9642 1 0.8249] /Range [0 60 -60 0] >>]",
        Bytes::fromHex("80ffff800080"), {QColor(206, 63, 122), QColor(93, 121, 170)});
    row("spot ink",
        kPair + "/ColorSpace [/Separation /Spot /DeviceRGB << /FunctionType 2 /Domain [0 1] "
                "/C0 [1 1 1] /C1 [0 1 0] /N 1 >>]",
        Bytes::fromHex("00ff"), {Qt::white, Qt::green});
    row("spot ink of inks",
        kPair + "/ColorSpace [/Separation /Spot /DeviceCMYK << /FunctionType 2 /Domain [0 1] "
                "/C0 [0 0 0 0] /C1 [1 0 0 0] /N 1 >>]",
        Bytes::fromHex("00ff"), {Qt::white, kCyan});
    row("two inks", kPair + "/ColorSpace [/DeviceN [/A /B] /DeviceRGB 6 0 R]",
        Bytes::fromHex("ff0000ff"), redAndGreen,
        {streamBody("/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1]", "{ 0 }")});
    // Rows of white in fax code 4, of which the parameters say that it means black.
    row("fax",
        kImage + "/Width 8 /Height 2 /BitsPerComponent 1 /ColorSpace /DeviceGray /Filter "
                 "/CCITTFaxDecode /DecodeParms << /K -1 /Columns 8 /Rows 2 /BlackIs1 true >>",
        Bytes::fromHex("c00100100000"), Colours(16, Qt::black));
    row("soft mask", kRgbPair + "/SMask 6 0 R", redGreen,
        {clear(Qt::red, 51), clear(Qt::green, 255)},
        {streamBody(kGrayPair, Bytes::fromHex("33ff"))});
    row("soft mask of another size", kRgbPair + "/SMask 6 0 R", redGreen,
        {clear(Qt::red, 0), clear(Qt::green, 255)},
        {streamBody(kImage + "/Width 4 /Height 2 /BitsPerComponent 8 /ColorSpace /DeviceGray",
                    Bytes::fromHex("0000ffff0000ffff"))});
    row("mask", kRgbPair + "/Mask 6 0 R", redGreen, {clear(Qt::red, 255), clear(Qt::green, 0)},
        {streamBody(kImage + "/Width 2 /Height 1 /ImageMask true /BitsPerComponent 1",
                    Bytes::fromHex("40"))});
    row("colour key", kRgbPair + "/Mask [0 9 250 255 0 9]", redGreen,
        {clear(Qt::red, 255), clear(Qt::black, 0)});
    row("stencil", kImage + "/Width 2 /Height 1 /ImageMask true", Bytes::fromHex("40"),
        {clear(Qt::black, 255), clear(Qt::black, 0)});
    row("stencil the other way", kImage + "/Width 2 /Height 1 /ImageMask true /Decode [1 0]",
        Bytes::fromHex("40"), {clear(Qt::black, 0), clear(Qt::black, 255)});
}

void TestEmbeddedPictures::pixels()
{
    QFETCH(Bytes, image);
    QFETCH(QList<Bytes>, more);
    QFETCH(Colours, colours);
    const PdfPicturesOutcome outcome = exported(pageOf(image, more));
    QCOMPARE(outcome.error, PdfOperationError::None);
    QCOMPARE(outcome.pictures.size(), 1);
    const Colours found = coloursOf(QImage(outcome.pictures.first()));
    QCOMPARE(found.size(), colours.size());
    for (int i = 0; i < colours.size(); ++i) {
        COMPARE_COLOUR(found.at(i), colours.at(i), 2);
        QCOMPARE(found.at(i).alpha(), colours.at(i).alpha());
    }
}

void TestEmbeddedPictures::masksBecomeWhiteInJpeg_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::addColumn<QColor>("colour");
    QTest::newRow("soft mask") << Bytes("/ColorSpace /DeviceRGB /SMask 6 0 R")
                               << QColor(255, 204, 204);
    QTest::newRow("stencil") << Bytes("/ImageMask true") << QColor(Qt::white);
}

void TestEmbeddedPictures::masksBecomeWhiteInJpeg()
{
    QFETCH(Bytes, entries);
    QFETCH(QColor, colour);
    const Bytes pixel = Bytes::fromHex("ff0000");
    const Bytes image = kImage + "/Width 8 /Height 8 /BitsPerComponent 8 " + entries;
    const Bytes mask = kImage + "/Width 1 /Height 1 /BitsPerComponent 8 /ColorSpace /DeviceGray";
    const PdfPicturesOutcome outcome =
        exported(pageOf(streamBody(image, entries.contains("Mask true") ? Bytes(8, '\xff')
                                                                        : pixel.repeated(64)),
                        {streamBody(mask, Bytes::fromHex("33"))}),
                 PdfPictureFormat::Jpeg);
    QCOMPARE(outcome.error, PdfOperationError::None);
    QCOMPARE(made(), QStringList{u"i-01.jpg"_s});
    COMPARE_COLOUR(middle(QImage(outcome.pictures.value(0))), colour, 3);
}

void TestEmbeddedPictures::jpegFileComesOutAsItIs_data()
{
    QTest::addColumn<Bytes>("entries");
    QTest::addColumn<bool>("isGray");
    QTest::addColumn<bool>("isCopied");
    QTest::addColumn<QColor>("corner");
    const QColor red(254, 0, 0);
    QTest::newRow("RGB") << Bytes("/ColorSpace /DeviceRGB") << false << true << red;
    QTest::newRow("list of one filter")
        << Bytes("/ColorSpace /DeviceRGB /Filter [/DCTDecode]") << false << true << red;
    QTest::newRow("gray") << Bytes("/ColorSpace /DeviceGray") << true << true << QColor(87, 87, 87);
    QTest::newRow("usual profile")
        << Bytes("/ColorSpace [/ICCBased 6 0 R]") << false << true << red;
    QTest::newRow("profile") << Bytes("/ColorSpace [/ICCBased 7 0 R]") << false << false
                             << QColor(0, 254, 0);
    QTest::newRow("soft mask") << Bytes("/ColorSpace /DeviceRGB /SMask 8 0 R") << false << false
                               << QColor(255, 255, 255);
    QTest::newRow("decoded") << Bytes("/ColorSpace /DeviceRGB /Decode [1 0 1 0 1 0]") << false
                             << false << QColor(0, 255, 255);
    QTest::newRow("indexed") << Bytes("/ColorSpace [/Indexed /DeviceRGB 255 <" +
                                      Bytes("0000ff").repeated(256) + ">]")
                             << true << false << QColor(0, 0, 254);
}

void TestEmbeddedPictures::jpegFileComesOutAsItIs()
{
    QFETCH(Bytes, entries);
    QFETCH(bool, isGray);
    QFETCH(bool, isCopied);
    QFETCH(QColor, corner);
    const Bytes file = jpegFile(isGray ? QImage::Format_Grayscale8 : QImage::Format_RGB888);
    const PdfPicturesOutcome outcome =
        exported(pageOf(streamBody(kJpeg + entries, file),
                        {streamBody("/N 3", IccProfiles::standardRgb()),
                         streamBody("/N 3", IccProfiles::swappedRgb()), numbered(0)}),
                 PdfPictureFormat::Jpeg);
    QCOMPARE(outcome.error, PdfOperationError::None);
    QCOMPARE(outcome.pictures.size(), 1);
    QCOMPARE(contentOf(outcome.pictures.first()) == file, isCopied);
    const QImage picture(outcome.pictures.first());
    QCOMPARE(picture.size(), QSize(32, 32));
    COMPARE_COLOUR(picture.pixelColor(4, 4), corner, 6);
}

void TestEmbeddedPictures::jpegFileIsPixelsForPng()
{
    const Bytes file = jpegFile();
    const PdfPicturesOutcome outcome =
        exported(pageOf(streamBody(kJpeg + "/ColorSpace /DeviceRGB", file)));
    QCOMPARE(made(), QStringList{u"i-01.png"_s});
    QVERIFY(distance(QImage(outcome.pictures.value(0)), QImage::fromData(file)) <= 3);
}

void TestEmbeddedPictures::imagesComeOnceInTheOrderOfUse()
{
    const Bytes resources = "/XObject << /A 5 0 R /B 6 0 R /C 7 0 R /F 8 0 R /Unused 11 0 R >> "
                            "/Pattern << /P 12 0 R >> "
                            "/ExtGState << /S << /SMask << /S /Luminosity /G 14 0 R >> >> >>";
    const QList<Bytes> objects{
        numbered(10), // 5
        numbered(20),
        numbered(30),
        form("/N Do /A Do /G Do", "/XObject << /N 9 0 R /A 5 0 R /G 10 0 R >>"), // 8
        numbered(40),
        form("/O Do", "/XObject << /O 18 0 R >>"), // 10
        numbered(50),
        streamBody("/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 9 9] "
                   "/XStep 9 /YStep 9 /Resources << /XObject << /I 13 0 R >> >>",
                   "/I Do"), // 12
        numbered(60),
        form("/I Do", "/XObject << /I 15 0 R >>"), // 14
        numbered(70),
        form("/I Do", "/XObject << /I 17 0 R >>"), // 16
        numbered(80),
        numbered(90), // 18
    };
    const Bytes document = PdfFixture::onePage(
        "/C Do /F Do /C Do q /S gs Q /Pattern cs /P scn 0 0 9 9 re f " + inlineNumber(100) +
            "/B Do",
        resources, objects,
        "/Annots [<< /Type /Annot /Subtype /Stamp /Rect [0 0 9 9] /AP << /N << /On 16 0 R >> >> "
        ">>]");
    // 50 is used by nothing.
    const QList<int> numbers{30, 40, 10, 90, 70, 60, 100, 20, 80, 50};
    QCOMPARE(numbersOfPictures(document), numbers);
}

void TestEmbeddedPictures::imagesOfSeveralPagesComeOnce()
{
    const Bytes page = "<< /Type /Page /Parent 2 0 R /Resources 6 0 R /Contents ";
    const Bytes document = PdfFixture::fromObjects({
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R 4 0 R 5 0 R] /Count 3 /MediaBox [0 0 9 9] >>",
        page + "10 0 R /Annots [<< /Type /Annot /Subtype /Stamp /Rect [0 0 9 9] /AP << /N 12 0 R "
               ">> >>] >>",
        page + "[11 0 R 10 0 R] >>",
        page + "10 0 R >>",
        "<< /XObject << /A 7 0 R /B 8 0 R /C 9 0 R >> >>",
        numbered(10),
        numbered(20),
        numbered(30),
        streamBody({}, "/C Do " + inlineNumber(40)),
        streamBody({}, "/A Do "),
        form("/I Do", "/XObject << /I 13 0 R >>"),
        numbered(50),
    });
    // The second page draws the inline image anew; nothing draws B.
    QCOMPARE(numbersOfPictures(document), (QList<int>{30, 40, 50, 10, 40, 20}));
}

void TestEmbeddedPictures::deepAndCircularFormsAreRead()
{
    constexpr int kDepth = 60;
    constexpr int kFirst = 7;
    QList<Bytes> objects{
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R 4 0 R] /Count 2 /MediaBox [0 0 9 9] >>",
        "<< /Type /Page /Parent 2 0 R /Contents 5 0 R /Resources << /XObject << /I 7 0 R >> >> >>",
        "<< /Type /Page /Parent 2 0 R /Contents 5 0 R /Resources << /XObject << /I 6 0 R >> >> >>",
        streamBody({}, "/I Do"),
        numbered(88),
    };
    for (int i = 0; i < kDepth; ++i) {
        objects.append(form("/N Do /Self Do /First Do",
                            "/XObject << /N " + Bytes::number(kFirst + i + 1) + " 0 R /Self " +
                                Bytes::number(kFirst + i) + " 0 R /First 7 0 R >>"));
    }
    objects.append(numbered(77));
    QCOMPARE(numbersOfPictures(PdfFixture::fromObjects(objects)), (QList<int>{77, 88}));
}

void TestEmbeddedPictures::inlineImages()
{
    const Bytes content = inlineNumber(10) +
                          "BI /W 2 /H 1 /BPC 8 /CS /Own /F /AHx ID 0100> EI\n"
                          "BI /W 1 /H 1 /BPC 8 /CS /None /F /Fl ID nonsense\nEI\n" +
                          inlineNumber(30) + "BI /W 1 /H 1 /IM true ID \x80";
    const Bytes document = PdfFixture::onePage(
        content, "/ColorSpace << /Own [/Indexed /DeviceRGB 1 <00ff00ff0000>] >>");
    const PdfPicturesOutcome outcome = exported(document);
    QCOMPARE(outcome.error, PdfOperationError::None);
    QCOMPARE(outcome.skipped, 1);
    QCOMPARE(outcome.pictures.size(), 4);
    COMPARE_COLOUR(QImage(outcome.pictures.at(0)).pixelColor(0, 0), QColor(10, 10, 10), 0);
    COMPARE_COLOUR(QImage(outcome.pictures.at(1)).pixelColor(0, 0), QColor(Qt::red), 0);
    COMPARE_COLOUR(QImage(outcome.pictures.at(1)).pixelColor(1, 0), QColor(0, 255, 0), 0);
    COMPARE_COLOUR(QImage(outcome.pictures.at(2)).pixelColor(0, 0), QColor(30, 30, 30), 0);
    QCOMPARE(QImage(outcome.pictures.at(3)).pixelColor(0, 0).alpha(), 0);
}

void TestEmbeddedPictures::masksAndLettersAreNoPictures()
{
    const QList<Bytes> objects{
        numbered(10, "/SMask 6 0 R"), // 5
        numbered(20),
        "<< /Type /Font /Subtype /Type3 /FontBBox [0 0 9 9] /FontMatrix [1 0 0 1 0 0] "
        "/FirstChar 65 /LastChar 65 /Widths [9] /Encoding << /Differences [65 /a] >> "
        "/CharProcs << /a 8 0 R >> /Resources << >> >>", // 7
        streamBody({}, "9 0 d0 " + inlineNumber(30)),
    };
    const Bytes document =
        PdfFixture::onePage("/I Do BT /T 9 Tf (A) Tj ET",
                            "/XObject << /A 6 0 R /I 5 0 R >> /Font << /T 7 0 R >>", objects);
    QCOMPARE(numbersOfPictures(document), QList<int>{10});
}

void TestEmbeddedPictures::brokenImagesAreLeftOut()
{
    const Bytes gray = kImage + "/Width 9 /Height 9 /BitsPerComponent 8 /ColorSpace /DeviceGray ";
    const QList<Bytes> objects{
        streamBody(gray + "/Filter /DCTDecode", "nonsense"), // 5
        numbered(10),
        streamBody(gray + "/Filter /FlateDecode", "nonsense"),
        streamBody(kImage + "/Width 0 /Height 9 /BitsPerComponent 8 /ColorSpace /DeviceGray", {}),
        numbered(20),
        streamBody(gray + "/Filter /JPXDecode", "nonsense"), // 10
    };
    const Bytes document = PdfFixture::onePage(
        "/A Do /B Do /C Do /D Do /E Do /F Do",
        "/XObject << /A 5 0 R /B 6 0 R /C 7 0 R /D 8 0 R /E 9 0 R /F 10 0 R >>", objects);
    for (const PdfPictureFormat format : {PdfPictureFormat::Png, PdfPictureFormat::Jpeg}) {
        const PdfPicturesOutcome outcome = exported(document, format);
        QCOMPARE(outcome.error, PdfOperationError::None);
        QCOMPARE(outcome.skipped, 4);
        QCOMPARE(outcome.pictures.size(), 2);
        const bool isPng = format == PdfPictureFormat::Png;
        QCOMPARE(QFileInfo(outcome.pictures.at(0)).fileName(),
                 isPng ? u"i-01.png"_s : u"i-01.jpg"_s);
        QCOMPARE(QFileInfo(outcome.pictures.at(1)).fileName(),
                 isPng ? u"i-02.png"_s : u"i-02.jpg"_s);
        QCOMPARE(QImage(outcome.pictures.at(1)).pixelColor(0, 0).red(), 20);
    }
}

void TestEmbeddedPictures::documentWithoutImages()
{
    for (const int pages : {1, 0}) {
        const PdfPicturesOutcome outcome = exported(PdfFixture::pagesByNumber(pages));
        QCOMPARE(outcome.error, PdfOperationError::None);
        QVERIFY(outcome.pictures.isEmpty());
        QCOMPARE(outcome.skipped, 0);
        QCOMPARE(made(), QStringList());
    }
}

void TestEmbeddedPictures::namesAndNumbers()
{
    m_folder->add(u"out/i-001.png"_s, "mine");
    Bytes content;
    for (int i = 0; i < 100; ++i) {
        content += inlineNumber(i + 100);
    }
    const PdfPicturesOutcome outcome = exported(PdfFixture::onePage(content));
    QCOMPARE(outcome.pictures.size(), 100);
    QCOMPARE(QFileInfo(outcome.pictures.first()).fileName(), u"i-001(1).png"_s);
    QCOMPARE(QFileInfo(outcome.pictures.last()).fileName(), u"i-100.png"_s);
    QCOMPARE(contentOf(m_folder->path(u"out/i-001.png"_s)), Bytes("mine"));
    QCOMPARE(QImage(outcome.pictures.last()).pixelColor(0, 0).red(), 199);
    QCOMPARE(made().size(), 101);
}

void TestEmbeddedPictures::cancelLeavesNothing()
{
    Bytes content;
    for (int i = 0; i < 100'000; ++i) {
        content += inlineNumber(i % 200 + 50);
    }
    const QString source = m_folder->add(u"a.pdf"_s, PdfFixture::onePage(content));
    const PdfCancelFlag cancel;
    std::thread canceller([&] {
        // Once there are some.
        for (int i = 0; i < 10'000 && made().size() < 5; ++i) {
            QThread::msleep(1);
        }
        cancel.set();
    });
    const PdfPicturesOutcome outcome = PdfPictureExport::exportImages(
        source, {m_folder->path(u"out"_s), u"i"_s, PdfPictureFormat::Png}, cancel);
    canceller.join();
    QCOMPARE(outcome.error, PdfOperationError::Cancelled);
    QCOMPARE(made(), QStringList());
}

void TestEmbeddedPictures::passwordIsRequired()
{
    const Bytes document = pageOf(numbered(99));
    QCOMPARE(exported(PdfFixture::encrypted(document, {"user", "owner", 6})).error,
             PdfOperationError::PasswordRequired);
    const PdfPicturesOutcome outcome = exported(PdfFixture::encrypted(document, {"", "owner", 4}));
    QCOMPARE(outcome.error, PdfOperationError::None);
    QCOMPARE(QImage(outcome.pictures.value(0)).pixelColor(0, 0).red(), 99);
    QCOMPARE(exported({}).error, PdfOperationError::InvalidDocument);
}

QTEST_GUILESS_MAIN(TestEmbeddedPictures)
#include "tst_embedded_pictures.moc"
