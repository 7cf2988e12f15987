// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/icc_profiles.h"
#include "tests/pdfcore/operations/imported_file.h"
#include "tests/pdfcore/operations/picture_fixture.h"

#include <QtEndian>

using namespace EngineCalls;
using namespace PictureFixture;
using namespace Qt::StringLiterals;

using Options = PdfPictureImportOptions;

namespace {

constexpr int kTolerance = 8;
constexpr QSize kSize{32, 32};

const QList<Pixel> kRgb = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 0}};
const QList<QColor> kRgbShown = {Qt::red, Qt::green, Qt::blue, Qt::yellow};

/// Inks of cyan, magenta, yellow and black, and what a press makes of them.
const QList<Pixel> kInks = {{255, 0, 0, 0}, {0, 255, 0, 0}, {0, 0, 255, 0}, {0, 0, 0, 255}};
const QList<QColor> kInksShown = {QColor(0, 174, 239), QColor(236, 0, 140), QColor(255, 242, 0),
                                  QColor(35, 31, 32)};

Pixels inverted(const Pixels &pixels)
{
    return [pixels](int x, int y) {
        Pixel pixel = pixels(x, y);
        for (int &sample : pixel) {
            sample = 255 - sample;
        }
        return pixel;
    };
}

/// The quarters of a square picture as wide as an upright A4 page.
QList<QColor> shownQuarters(const QString &file)
{
    const QImage page = render(filePage(file), {595, 842}).image;
    return quarters(page.copy(0, 124, 595, 595));
}

Pixels gradient(int channels, int bits)
{
    const int last = (1 << bits) - 1;
    return [channels, last](int x, int y) {
        Pixel pixel;
        for (int i = 0; i < channels; ++i) {
            pixel.append((x * 7 + y * 13 + i * 101 + x * y * last / 500) & last);
        }
        return pixel;
    };
}

} // namespace

class TestPictureImport : public QObject
{
    Q_OBJECT

private slots:
    void eachPictureIsAPageInOrder();
    void picturesAreFittedIntoThePage_data();
    void picturesAreFittedIntoThePage();
    void orientationIsShown_data();
    void orientationIsShown();
    void jpegIsTakenAsItIs_data();
    void jpegIsTakenAsItIs();
    void profileStays_data();
    void profileStays();
    void pngDataAreTakenAsTheyAre_data();
    void pngDataAreTakenAsTheyAre();
    void pngIsCompressedWithoutLoss_data();
    void pngIsCompressedWithoutLoss();
    void transparentColoursAreMasked_data();
    void transparentColoursAreMasked();
    void transparencyIsShown();
    void otherFormatsLoseNothing_data();
    void otherFormatsLoseNothing();
};

void TestPictureImport::eachPictureIsAPageInOrder()
{
    Folder folder;
    QStringList pictures;
    for (int i = 0; i < 40; ++i) {
        pictures += folder.add(u"%1.png"_s.arg(i), png({}, [i](int, int) {
                                   return Pixel{i * 6, 255 - i * 6, 128};
                               }));
    }
    const QString target = folder.path(u"all.pdf"_s);
    const PdfOperationOutcome outcome = importPictures(pictures, target);
    QCOMPARE(outcome.message, QString());
    QCOMPARE(outcome.error, PdfOperationError::None);
    QCOMPARE(outcome.result, target);
    QCOMPARE(inspect(target).pageSizes, QList<QSizeF>(40, QSizeF(595, 842)));
    for (int i = 0; i < 40; ++i) {
        COMPARE_COLOUR(middle(render(filePage(target, i)).image), QColor(i * 6, 255 - i * 6, 128),
                       1);
    }
    ImportedFile file(target);
    QVERIFY(!file.document().getTrailer().hasKey("/Info"));
    for (QPDFObjectHandle page : file.pages()) {
        QVERIFY(page.getKey("/Type").isNameAndEquals("/Page"));
    }
    QPDFObjectHandle image = file.image().getDict();
    QVERIFY(image.getKey("/Type").isNameAndEquals("/XObject"));
    QVERIFY(image.getKey("/Subtype").isNameAndEquals("/Image"));
    QVERIFY(file.document().getRoot().getKey("/Type").isNameAndEquals("/Catalog"));
}

void TestPictureImport::picturesAreFittedIntoThePage_data()
{
    QTest::addColumn<QSize>("pixels");
    QTest::addColumn<Options>("options");
    QTest::addColumn<QSizeF>("page");
    QTest::addColumn<QByteArray>("content");
    using Page = Options::PageSize;
    using Turn = Options::Orientation;
    QTest::newRow("enlarged to the width")
        << QSize(20, 10) << Options{Page::A4, Turn::Portrait, 0} << QSizeF(595, 842)
        << QByteArray("q 595 0 0 297.5 0 272.25 cm /Im0 Do Q\n");
    QTest::newRow("reduced to the height")
        << QSize(100, 2000) << Options{Page::A4, Turn::Portrait, 0} << QSizeF(595, 842)
        << QByteArray("q 42.1 0 0 842 276.45 0 cm /Im0 Do Q\n");
    QTest::newRow("narrow margins")
        << QSize(20, 10) << Options{Page::A4, Turn::Portrait, 36} << QSizeF(595, 842)
        << QByteArray("q 523 0 0 261.5 36 290.25 cm /Im0 Do Q\n");
    QTest::newRow("wide margins, lying")
        << QSize(10, 10) << Options{Page::A4, Turn::Landscape, 72} << QSizeF(842, 595)
        << QByteArray("q 451 0 0 451 195.5 72 cm /Im0 Do Q\n");
    QTest::newRow("Letter") << QSize(10, 10) << Options{Page::Letter, Turn::Portrait, 36}
                            << QSizeF(612, 792)
                            << QByteArray("q 540 0 0 540 36 126 cm /Im0 Do Q\n");
    QTest::newRow("Letter, lying")
        << QSize(10, 30) << Options{Page::Letter, Turn::Landscape, 0} << QSizeF(792, 612)
        << QByteArray("q 204 0 0 612 294 0 cm /Im0 Do Q\n");
}

void TestPictureImport::picturesAreFittedIntoThePage()
{
    QFETCH(const QSize, pixels);
    QFETCH(const Options, options);
    Folder folder;
    Png form;
    form.size = pixels;
    const QString picture = folder.add(u"a.png"_s, png(form, [](int, int) {
                                           return Pixel{255, 0, 0};
                                       }));
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({picture}, target, options).message, QString());
    QTEST(inspect(target).pageSizes.value(0), "page");
    QTEST(ImportedFile(target).content(), "content");
}

void TestPictureImport::orientationIsShown_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QList<int>>("expected"); // Stored quarters, as they are to be seen.
    QTest::newRow("1") << 1 << QList<int>{0, 1, 2, 3};
    QTest::newRow("2, mirrored") << 2 << QList<int>{1, 0, 3, 2};
    QTest::newRow("3, upside down") << 3 << QList<int>{3, 2, 1, 0};
    QTest::newRow("4, flipped") << 4 << QList<int>{2, 3, 0, 1};
    QTest::newRow("5, transposed") << 5 << QList<int>{0, 2, 1, 3};
    QTest::newRow("6, to be turned clockwise") << 6 << QList<int>{2, 0, 3, 1};
    QTest::newRow("7, transversed") << 7 << QList<int>{3, 1, 2, 0};
    QTest::newRow("8, to be turned back") << 8 << QList<int>{1, 3, 0, 2};
}

void TestPictureImport::orientationIsShown()
{
    QFETCH(const int, orientation);
    QFETCH(const QList<int>, expected);
    Folder folder;
    Jpeg photo;
    photo.size = {64, 32};
    photo.orientation = orientation;
    Png drawing;
    drawing.size = photo.size;
    drawing.orientation = orientation;
    const Pixels pixels = quartered(photo.size, kRgb);
    const QString first = folder.add(u"a.jpg"_s, jpeg(photo, pixels));
    const QString second = folder.add(u"b.png"_s, png(drawing, pixels));
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({first, second}, target).message, QString());
    for (const int index : {0, 1}) {
        const QImage page = render(filePage(target, index), {595, 842}).image;
        // 595 × 297.5 points, or 421 × 842, in the middle of the page.
        const QRect place = orientation < 5 ? QRect(0, 273, 595, 297) : QRect(87, 0, 421, 842);
        const QList<QColor> shown = quarters(page.copy(place));
        for (int i = 0; i < 4; ++i) {
            COMPARE_COLOUR(shown.at(i), kRgbShown.at(expected.at(i)), kTolerance);
        }
        COMPARE_COLOUR(page.pixelColor(orientation < 5 ? QPoint(297, 265) : QPoint(80, 421)),
                       QColor(Qt::white), 0);
    }
    QCOMPARE(ImportedFile::stored(ImportedFile(target).image()), contentOf(first));
}

void TestPictureImport::jpegIsTakenAsItIs_data()
{
    QTest::addColumn<Jpeg::Colours>("colours");
    QTest::addColumn<bool>("isProgressive");
    QTest::addColumn<Pixels>("pixels");
    QTest::addColumn<QList<QColor>>("shown");
    QTest::addColumn<QByteArray>("entries");
    const Pixels rgb = quartered(kSize, kRgb);
    const Pixels inks = quartered(kSize, kInks);
    const QByteArray deviceRgb = "/DeviceRGB null null";
    using Colours = Jpeg::Colours;
    QTest::newRow("grey") << Colours::Gray << false << quartered(kSize, {{0}, {80}, {160}, {255}})
                          << QList<QColor>{QColor(0, 0, 0), QColor(80, 80, 80),
                                           QColor(160, 160, 160), QColor(255, 255, 255)}
                          << QByteArray("/DeviceGray null null");
    QTest::newRow("YCbCr") << Colours::YCbCr << false << rgb << kRgbShown << deviceRgb;
    QTest::newRow("progressive") << Colours::YCbCr << true << rgb << kRgbShown << deviceRgb;
    QTest::newRow("RGB by name") << Colours::Rgb << false << rgb << kRgbShown
                                 << QByteArray("/DeviceRGB null << /ColorTransform 0 >>");
    QTest::newRow("RGB by marker") << Colours::AdobeRgb << false << rgb << kRgbShown << deviceRgb;
    QTest::newRow("YCbCr by marker")
        << Colours::AdobeYCbCr << false << rgb << kRgbShown << deviceRgb;
    QTest::newRow("CMYK") << Colours::Cmyk << false << inks << kInksShown
                          << QByteArray("/DeviceCMYK null null");
    const QByteArray darkness = "/DeviceCMYK [ 1 0 1 0 1 0 1 0 ] null";
    QTest::newRow("CMYK as darkness")
        << Colours::AdobeCmyk << false << inverted(inks) << kInksShown << darkness;
    QTest::newRow("YCCK as darkness")
        << Colours::AdobeYcck << false << inverted(inks) << kInksShown << darkness;
    QTest::newRow("progressive YCCK")
        << Colours::AdobeYcck << true << inverted(inks) << kInksShown << darkness;
}

void TestPictureImport::jpegIsTakenAsItIs()
{
    QFETCH(const Jpeg::Colours, colours);
    QFETCH(const bool, isProgressive);
    QFETCH(const Pixels, pixels);
    QFETCH(const QList<QColor>, shown);
    Folder folder;
    Jpeg form;
    form.colours = colours;
    form.isProgressive = isProgressive;
    const QString picture = folder.add(u"a.jpg"_s, jpeg(form, pixels));
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({picture}, target).message, QString());
    const QList<QColor> found = shownQuarters(target);
    for (int i = 0; i < 4; ++i) {
        COMPARE_COLOUR(found.at(i), shown.at(i), kTolerance);
    }
    const ImportedFile file(target);
    QPDFObjectHandle image = file.image().getDict();
    QCOMPARE(ImportedFile::stored(file.image()), contentOf(picture));
    QVERIFY(image.getKey("/Filter").isNameAndEquals("/DCTDecode"));
    const QByteArray entries = ImportedFile::text(image.getKey("/ColorSpace")) + ' ' +
                               ImportedFile::text(image.getKey("/Decode")) + ' ' +
                               ImportedFile::text(image.getKey("/DecodeParms"));
    QTEST(entries, "entries");
}

void TestPictureImport::profileStays_data()
{
    QTest::addColumn<QByteArray>("picture");
    QTest::addColumn<QByteArray>("profile"); // Empty where it is to be dropped.
    QTest::addColumn<QByteArray>("entries");
    QTest::addColumn<QColor>("shown"); // Of the first quarter.
    const QByteArray swapped = IccProfiles::swappedRgb();
    // As long as several segments.
    QByteArray longOne = swapped + QByteArray(150'000, '\0');
    qToBigEndian(static_cast<quint32>(longOne.size()), longOne.data());
    Jpeg form;
    const auto jpegWith = [&](const QByteArray &profile) {
        form.profile = profile;
        return jpeg(form, quartered(kSize, kRgb));
    };
    const QByteArray rgb = "3 /DeviceRGB";
    const QColor green(0, 255, 0);
    QTest::newRow("JPEG") << jpegWith(swapped) << swapped << rgb << green;
    QTest::newRow("JPEG, several segments") << jpegWith(longOne) << longOne << rgb << green;
    QTest::newRow("JPEG, of another space")
        << jpegWith(IccProfiles::linearGray()) << QByteArray() << QByteArray() << QColor(Qt::red);
    QTest::newRow("JPEG, no profile")
        << jpegWith(QByteArray(500, 'x')) << QByteArray() << QByteArray() << QColor(Qt::red);
    // Its list of tags is whole, and what they stand for is not.
    const qsizetype tags = 132 + qsizetype{12} * qFromBigEndian<quint32>(swapped.constData() + 128);
    QTest::newRow("JPEG, damaged")
        << jpegWith(swapped.left(tags) + QByteArray(swapped.size() - tags, '\xFF')) << QByteArray()
        << QByteArray() << QColor(Qt::red);
    Jpeg ink;
    ink.colours = Jpeg::Colours::AdobeCmyk;
    ink.profile = IccProfiles::swappedCmyk();
    QTest::newRow("CMYK") << jpeg(ink, inverted(quartered(kSize, kInks))) << ink.profile
                          << QByteArray("4 /DeviceCMYK") << QColor(255, 0, 255);
    Png plain;
    plain.profile = swapped;
    QTest::newRow("PNG") << png(plain, quartered(kSize, kRgb)) << swapped << rgb << green;
    plain.colourType = 3;
    plain.palette = QByteArray("\xFF\0\0\0\xFF\0\0\0\xFF\xFF\xFF\0", 12);
    QTest::newRow("palette") << png(plain, quartered(kSize, {{0}, {1}, {2}, {3}})) << swapped << rgb
                             << green;
    Png grey;
    grey.colourType = 0;
    grey.profile = IccProfiles::linearGray();
    QTest::newRow("grey") << png(grey, quartered(kSize, {{128}, {0}, {1}, {255}})) << grey.profile
                          << QByteArray("1 /DeviceGray") << QColor(188, 188, 188);
}

void TestPictureImport::profileStays()
{
    QFETCH(const QByteArray, picture);
    QFETCH(const QByteArray, profile);
    QFETCH(const QByteArray, entries);
    QFETCH(const QColor, shown);
    Folder folder;
    const QString first = folder.add(u"a"_s, picture);
    // Other bytes, but the same profile.
    const QString second = folder.add(u"b"_s, picture + ' ');
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({first, second}, target).message, QString());
    COMPARE_COLOUR(shownQuarters(target).at(0), shown, kTolerance);
    const ImportedFile file(target);
    const auto spaceOf = [&](std::size_t page) {
        QPDFObjectHandle space = file.image(page).getDict().getKey("/ColorSpace");
        return space.isArray() && space.getArrayItem(0).isNameAndEquals("/Indexed")
                   ? space.getArrayItem(1)
                   : space;
    };
    if (profile.isEmpty()) {
        QVERIFY(spaceOf(0).isNameAndEquals("/DeviceRGB"));
        return;
    }
    QVERIFY(spaceOf(0).getArrayItem(0).isNameAndEquals("/ICCBased"));
    QPDFObjectHandle stream = spaceOf(0).getArrayItem(1);
    QCOMPARE(ImportedFile::decoded(stream), profile);
    const QByteArray found = ImportedFile::text(stream.getDict().getKey("/N")) + ' ' +
                             ImportedFile::text(stream.getDict().getKey("/Alternate"));
    QCOMPARE(found, entries);
    QCOMPARE(spaceOf(1).getArrayItem(1).getObjectID(), stream.getObjectID());
}

void TestPictureImport::pngDataAreTakenAsTheyAre_data()
{
    QTest::addColumn<int>("colourType");
    QTest::addColumn<int>("bits");
    for (const int bits : {1, 2, 4, 8, 16}) {
        QTest::addRow("grey, %d bits", bits) << 0 << bits;
    }
    for (const int bits : {8, 16}) {
        QTest::addRow("RGB, %d bits", bits) << 2 << bits;
    }
    for (const int bits : {1, 2, 4, 8}) {
        QTest::addRow("palette, %d bits", bits) << 3 << bits;
    }
}

void TestPictureImport::pngDataAreTakenAsTheyAre()
{
    QFETCH(const int, colourType);
    QFETCH(const int, bits);
    Png form;
    form.colourType = colourType;
    form.bits = bits;
    form.size = {37, 21};
    form.dataChunks = 3;
    const int channels = colourType == 2 ? 3 : 1;
    if (colourType == 3) {
        for (int i = 0; i < (1 << bits); ++i) {
            form.palette += QByteArray(1, static_cast<char>(i)) + "ab";
        }
    }
    Folder folder;
    const QByteArray bytes = png(form, gradient(channels, bits));
    const QString picture = folder.add(u"a.png"_s, bytes);
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({picture}, target).message, QString());
    const ImportedFile file(target);
    QPDFObjectHandle image = file.image().getDict();
    QCOMPARE(ImportedFile::stored(file.image()), imageDataOf(bytes));
    QCOMPARE(ImportedFile::decoded(file.image()),
             samplesOf(form.size, bits, gradient(channels, bits)));
    QCOMPARE(image.getKey("/BitsPerComponent").getIntValue(), bits);
    QCOMPARE(image.getKey("/Width").getIntValue(), 37);
    QCOMPARE(image.getKey("/Height").getIntValue(), 21);
    QCOMPARE(image.getKey("/DecodeParms").getKey("/Predictor").getIntValue(), 15);
    QVERIFY(!image.hasKey("/SMask"));
    QPDFObjectHandle space = image.getKey("/ColorSpace");
    if (colourType == 3) {
        QVERIFY(space.getArrayItem(0).isNameAndEquals("/Indexed"));
        QVERIFY(space.getArrayItem(1).isNameAndEquals("/DeviceRGB"));
        QCOMPARE(space.getArrayItem(2).getIntValue(), (1 << bits) - 1);
        QCOMPARE(QByteArray::fromStdString(space.getArrayItem(3).getStringValue()), form.palette);
    } else {
        QVERIFY(space.isNameAndEquals(colourType == 2 ? "/DeviceRGB" : "/DeviceGray"));
    }
}

void TestPictureImport::pngIsCompressedWithoutLoss_data()
{
    QTest::addColumn<int>("colourType");
    QTest::addColumn<int>("bits");
    QTest::addColumn<bool>("isInterlaced");
    QTest::newRow("RGB with alpha") << 6 << 8 << false;
    QTest::newRow("RGB with alpha, 16 bits") << 6 << 16 << false;
    QTest::newRow("grey with alpha") << 4 << 8 << false;
    QTest::newRow("grey with alpha, 16 bits") << 4 << 16 << false;
    QTest::newRow("interlaced RGB with alpha") << 6 << 8 << true;
    QTest::newRow("interlaced RGB with alpha, 16 bits") << 6 << 16 << true;
    QTest::newRow("interlaced RGB") << 2 << 8 << true;
    QTest::newRow("interlaced grey, 1 bit") << 0 << 1 << true;
    QTest::newRow("interlaced grey, 16 bits") << 0 << 16 << true;
    QTest::newRow("interlaced palette, 4 bits") << 3 << 4 << true;
}

void TestPictureImport::pngIsCompressedWithoutLoss()
{
    QFETCH(const int, colourType);
    QFETCH(const int, bits);
    QFETCH(const bool, isInterlaced);
    Png form;
    form.colourType = colourType;
    form.bits = bits;
    form.size = {37, 21};
    form.isInterlaced = isInterlaced;
    form.palette = colourType == 3 ? QByteArray("abc").repeated(16) : QByteArray();
    const int colours = (colourType & 3) == 2 ? 3 : 1;
    const bool hasAlpha = colourType >= 4;
    const Pixels pixels = gradient(colours + (hasAlpha ? 1 : 0), bits);
    Folder folder;
    const QString picture = folder.add(u"a.png"_s, png(form, pixels));
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({picture}, target).message, QString());
    const ImportedFile file(target);
    const auto only = [&](int first, int count) -> Pixels {
        return [=](int x, int y) { return pixels(x, y).mid(first, count); };
    };
    QCOMPARE(ImportedFile::decoded(file.image()), samplesOf(form.size, bits, only(0, colours)));
    QPDFObjectHandle mask = file.image().getDict().getKey("/SMask");
    QCOMPARE(mask.isStream(), hasAlpha);
    if (hasAlpha) {
        QCOMPARE(ImportedFile::decoded(mask), samplesOf(form.size, bits, only(colours, 1)));
        QPDFObjectHandle entries = mask.getDict();
        QCOMPARE(entries.getKey("/BitsPerComponent").getIntValue(), bits);
        QVERIFY(entries.getKey("/ColorSpace").isNameAndEquals("/DeviceGray"));
        QVERIFY(entries.getKey("/Type").isNameAndEquals("/XObject"));
        QVERIFY(entries.getKey("/Subtype").isNameAndEquals("/Image"));
    }
}

void TestPictureImport::transparentColoursAreMasked_data()
{
    QTest::addColumn<int>("colourType");
    QTest::addColumn<int>("bits");
    QTest::addColumn<QByteArray>("transparency");
    QTest::addColumn<QList<Pixel>>("pixels");
    QTest::addColumn<QList<Pixel>>("mask"); // None where all is opaque.
    const QList<Pixel> numbers = {{0}, {1}, {2}, {3}};
    QTest::newRow("palette") << 3 << 8 << QByteArray("\x00\x80\xFF", 3) << numbers
                             << QList<Pixel>{{0}, {128}, {255}, {255}};
    QTest::newRow("palette of 2 bits")
        << 3 << 2 << QByteArray("\xFF\x07", 2) << numbers << QList<Pixel>{{255}, {7}, {255}, {255}};
    QTest::newRow("grey") << 0 << 4 << QByteArray("\0\2", 2) << numbers
                          << QList<Pixel>{{255}, {255}, {0}, {255}};
    QTest::newRow("RGB") << 2 << 8 << QByteArray("\0\0\0\xFF\0\0", 6) << kRgb
                         << QList<Pixel>{{255}, {0}, {255}, {255}};
    QTest::newRow("RGB, 16 bits") << 2 << 16 << QByteArray("\0\0\0\xFF\0\0", 6) << kRgb
                                  << QList<Pixel>{{65535}, {0}, {65535}, {65535}};
    QTest::newRow("a colour that does not occur")
        << 2 << 8 << QByteArray("\0\1\0\1\0\1", 6) << kRgb << QList<Pixel>{};
    QTest::newRow("opaque alpha") << 6 << 8 << QByteArray()
                                  << QList<Pixel>(4, Pixel{10, 20, 30, 255}) << QList<Pixel>{};
}

void TestPictureImport::transparentColoursAreMasked()
{
    QFETCH(const int, colourType);
    QFETCH(const int, bits);
    QFETCH(const QByteArray, transparency);
    QFETCH(const QList<Pixel>, pixels);
    QFETCH(const QList<Pixel>, mask);
    Folder folder;
    for (const bool isInterlaced : {false, true}) {
        Png form;
        form.colourType = colourType;
        form.bits = bits;
        form.transparency = transparency;
        form.isInterlaced = isInterlaced;
        form.palette = colourType == 3 ? QByteArray("abcdefghijkl") : QByteArray();
        const QByteArray bytes = png(form, quartered(kSize, pixels));
        const QString picture = folder.add(u"a.png"_s, bytes);
        const QString target = folder.path(u"a.pdf"_s);
        QCOMPARE(importPictures({picture}, target).message, QString());
        const ImportedFile file(target);
        QPDFObjectHandle found = file.image().getDict().getKey("/SMask");
        QCOMPARE(found.isStream(), !mask.isEmpty());
        if (!mask.isEmpty()) {
            QCOMPARE(ImportedFile::decoded(found),
                     samplesOf(kSize, bits == 16 ? 16 : 8, quartered(kSize, mask)));
        }
        const bool isAsItWas = ImportedFile::stored(file.image()) == imageDataOf(bytes);
        QCOMPARE(isAsItWas, !isInterlaced && colourType < 4);
    }
}

void TestPictureImport::transparencyIsShown()
{
    Folder folder;
    Png form;
    form.colourType = 6;
    const QString picture = folder.add(
        u"a.png"_s,
        png(form, quartered(kSize,
                            {{255, 0, 0, 255}, {255, 0, 0, 0}, {255, 0, 0, 128}, {0, 0, 0, 255}})));
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({picture}, target).message, QString());
    const QList<QColor> found = shownQuarters(target);
    COMPARE_COLOUR(found.at(0), QColor(Qt::red), 1);
    COMPARE_COLOUR(found.at(1), QColor(Qt::white), 1);
    COMPARE_COLOUR(found.at(2), QColor(255, 127, 127), 2);
    COMPARE_COLOUR(found.at(3), QColor(Qt::black), 1);
}

void TestPictureImport::otherFormatsLoseNothing_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QImage::Format>("pixels");
    QTest::newRow("BMP") << QByteArray("bmp") << QImage::Format_RGB32;
    QTest::newRow("BMP with a palette") << QByteArray("bmp") << QImage::Format_Indexed8;
    QTest::newRow("BMP of two colours") << QByteArray("bmp") << QImage::Format_Mono;
    QTest::newRow("PPM") << QByteArray("ppm") << QImage::Format_RGB32;
    QTest::newRow("PGM") << QByteArray("pgm") << QImage::Format_Grayscale8;
    QTest::newRow("XPM with transparency") << QByteArray("xpm") << QImage::Format_ARGB32;
}

void TestPictureImport::otherFormatsLoseNothing()
{
    QFETCH(const QByteArray, format);
    QFETCH(const QImage::Format, pixels);
    QImage image(37, 21, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = pixels == QImage::Format_ARGB32 && x > 30 ? 0 : 255;
            image.setPixelColor(x, y, QColor(x / 4 * 25, y / 4 * 50, 77, alpha));
        }
    }
    Folder folder;
    const QString picture = folder.path(u"a"_s);
    QVERIFY(image.convertToFormat(pixels).save(picture, format.constData()));
    const QImage saved(picture, format.constData());
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({picture}, target).message, QString());
    const ImportedFile file(target);
    QPDFObjectHandle dictionary = file.image().getDict();
    const QByteArray samples = ImportedFile::decoded(file.image());
    QPDFObjectHandle space = dictionary.getKey("/ColorSpace");
    QByteArray palette;
    if (space.isArray()) {
        palette = QByteArray::fromStdString(space.getArrayItem(3).getStringValue());
    }
    const qsizetype channels = space.isNameAndEquals("/DeviceRGB") ? 3 : 1;
    QPDFObjectHandle mask = dictionary.getKey("/SMask");
    QCOMPARE(mask.isStream(), pixels == QImage::Format_ARGB32);
    const QByteArray opacity = mask.isStream() ? ImportedFile::decoded(mask) : QByteArray();
    for (int y = 0; y < saved.height(); ++y) {
        for (int x = 0; x < saved.width(); ++x) {
            const qsizetype pixel = qsizetype{y} * saved.width() + x;
            QByteArray colour = samples.mid(pixel * channels, channels);
            if (!palette.isEmpty()) {
                colour = palette.mid(static_cast<quint8>(colour.at(0)) * qsizetype{3}, 3);
            } else if (channels == 1) {
                colour = colour.repeated(3);
            }
            const QRgb expected = saved.pixel(x, y);
            const int alpha = opacity.isEmpty() ? 255 : static_cast<quint8>(opacity.at(pixel));
            QCOMPARE(alpha, qAlpha(expected));
            if (alpha > 0) {
                const QRgb found =
                    qRgb(static_cast<quint8>(colour.at(0)), static_cast<quint8>(colour.at(1)),
                         static_cast<quint8>(colour.at(2)));
                QCOMPARE(found, expected);
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestPictureImport)
#include "tst_picture_import.moc"
