// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/pdfcore/operations/imported_file.h"
#include "tests/pdfcore/operations/picture_fixture.h"
#include "tests/support/pdf_fixture.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>

#include <array>
#include <limits>
#include <thread>

using namespace EngineCalls;
using namespace PictureFixture;
using namespace Qt::StringLiterals;

namespace {

Pixels plain(const Pixel &pixel)
{
    return [pixel](int, int) { return pixel; };
}

QByteArray redPng()
{
    return png({}, plain({255, 0, 0}));
}

/// A square PNG file with alpha that takes a while to compress, and hardly any to make.
QByteArray slowPng(int side)
{
    Png form;
    form.colourType = 6;
    form.size = {side, side};
    const qsizetype rowBytes = 1 + qsizetype{4} * side;
    QByteArray rows(rowBytes * side, '\0');
    quint32 state = 1;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        state = state * 1664525U + 1013904223U;
        rows[i] = i % rowBytes == 0 ? '\0' : static_cast<char>(state >> 24);
    }
    return pngOf(form, qCompress(rows, 0).mid(4));
}

/// The image data of a picture whose bytes are all 0.
QByteArray nothing(qsizetype bytes)
{
    return qCompress(QByteArray(bytes, '\0'), 1).mid(4);
}

} // namespace

class TestPictureImportFiles : public QObject
{
    Q_OBJECT

private slots:
    void equalPicturesAreStoredOnce();
    void filesOfOneSizeAreToldApart();
    void pagesThatLookAlikeShareTheirContent();
    void equalPicturesMakeEqualFiles();
    void whatIsNoPictureIsNamed_data();
    void whatIsNoPictureIsNamed();
    void damagedJpegIsTakenAsItIs();
    void largeInterlacedPictureIsWhole();
    void giantPicturesWithoutDataFail_data();
    void giantPicturesWithoutDataFail();
    void anyFileNameWorks_data();
    void anyFileNameWorks();
    void existingFilesStayUnlessReplaced();
    void impossibleOrdersFail();
    void cancelledImportLeavesNothing();
    void changedPictureFails();
};

void TestPictureImportFiles::equalPicturesAreStoredOnce()
{
    Folder folder;
    const QByteArray bytes = jpeg({}, plain({0, 0, 255}));
    const QString first = folder.add(u"a.jpg"_s, bytes);
    const QString other = folder.add(u"b.png"_s, redPng());
    const QString copy = folder.add(u"c.jpg"_s, bytes);
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({first, other, copy, first}, target).message, QString());
    ImportedFile file(target);
    QCOMPARE(file.pages().size(), std::size_t{4});
    QCOMPARE(file.imageCount(), 2);
    COMPARE_COLOUR(middle(render(filePage(target, 1)).image), QColor(Qt::red), 1);
    for (const int page : {0, 2, 3}) {
        COMPARE_COLOUR(middle(render(filePage(target, page)).image), QColor(Qt::blue), 4);
    }
}

void TestPictureImportFiles::filesOfOneSizeAreToldApart()
{
    // They differ in the middle, beyond what is read of both ends.
    QByteArray bytes = jpeg({}, plain({0, 0, 255}));
    bytes += QByteArray(300'000, 'a');
    Folder folder;
    const QString first = folder.add(u"a.jpg"_s, bytes);
    bytes[150'000] = 'b';
    const QString second = folder.add(u"b.jpg"_s, bytes);
    bytes[299'999] = 'c';
    const QString third = folder.add(u"c.jpg"_s, bytes);
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({first, second, third, second}, target).message, QString());
    ImportedFile file(target);
    QCOMPARE(file.imageCount(), 3);
    QCOMPARE(ImportedFile::stored(file.image(1)), contentOf(second));
    QCOMPARE(ImportedFile::stored(file.image(2)), contentOf(third));
    QCOMPARE(ImportedFile::stored(file.image(3)), contentOf(second));
}

void TestPictureImportFiles::pagesThatLookAlikeShareTheirContent()
{
    Folder folder;
    Png form;
    const QString first = folder.add(u"a.png"_s, png(form, plain({255, 0, 0})));
    const QString second = folder.add(u"b.png"_s, png(form, plain({0, 255, 0})));
    form.size = {64, 32};
    const QString wide = folder.add(u"c.png"_s, png(form, plain({0, 0, 255})));
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({first, wide, second}, target).message, QString());
    const ImportedFile file(target);
    const auto contentOfPage = [&](std::size_t page) {
        QPDFObjectHandle object = file.pages().at(page);
        return object.getKey("/Contents").getObjectID();
    };
    QCOMPARE(contentOfPage(0), contentOfPage(2));
    QCOMPARE(file.content(0), QByteArray("q 595 0 0 595 0 123.5 cm /Im0 Do Q\n"));
    QCOMPARE(file.content(1), QByteArray("q 595 0 0 297.5 0 272.25 cm /Im0 Do Q\n"));
}

void TestPictureImportFiles::equalPicturesMakeEqualFiles()
{
    Folder folder;
    const QString picture = folder.add(u"a.png"_s, redPng());
    QCOMPARE(importPictures({picture}, folder.path(u"a.pdf"_s)).message, QString());
    QTest::qWait(1100); // Dates have seconds.
    QCOMPARE(importPictures({picture}, folder.path(u"b.pdf"_s)).message, QString());
    QCOMPARE(contentOf(folder.path(u"a.pdf"_s)), contentOf(folder.path(u"b.pdf"_s)));
}

void TestPictureImportFiles::whatIsNoPictureIsNamed_data()
{
    QTest::addColumn<QByteArray>("content");
    const QByteArray photo = jpeg({}, plain({0, 0, 255}));
    const QByteArray drawing = redPng();
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("a text") << QByteArray("Not a picture at all.\n").repeated(30);
    QTest::newRow("a document") << PdfFixture::pagesByNumber(1);
    QTest::newRow("JPEG, two bytes") << photo.left(2);
    QTest::newRow("JPEG, cut in its header") << photo.left(100);
    QTest::newRow("JPEG, cut before its scan")
        << photo.left(photo.indexOf(QByteArray("\xFF\xDA", 2)) + 1);
    QTest::newRow("JPEG, without tables")
        << photo.left(20) + photo.mid(photo.indexOf(QByteArray("\xFF\xC0", 2)));
    Jpeg progressive;
    progressive.isProgressive = true;
    const QByteArray scans = jpeg(progressive, plain({0, 0, 255}));
    QTest::newRow("progressive JPEG, without tables")
        << scans.left(20) + scans.mid(scans.indexOf(QByteArray("\xFF\xC2", 2)));
    QByteArray codeless = photo;
    codeless[codeless.indexOf(QByteArray("\xFF\xDA", 2)) + 6] = '\x33';
    QTest::newRow("JPEG, with codes that it does not define") << codeless;
    QTest::newRow("PNG, its signature") << drawing.left(8);
    QTest::newRow("PNG, cut in its header") << drawing.left(20);
    QTest::newRow("PNG, cut in its data") << drawing.left(drawing.size() - 20);
    QByteArray damaged = drawing;
    const qsizetype data = damaged.indexOf("IDAT") + 8;
    damaged[data] = static_cast<char>(damaged.at(data) ^ 0x10);
    QTest::newRow("PNG, damaged data") << damaged;
    Png alpha;
    alpha.colourType = 6;
    QTest::newRow("PNG, too little data for alpha") << pngOf(alpha, nothing(100));
    QTest::newRow("BMP, cut in its header") << QByteArray("BM").leftJustified(30, '\0');
}

void TestPictureImportFiles::whatIsNoPictureIsNamed()
{
    QFETCH(const QByteArray, content);
    Folder folder;
    const QString good = folder.add(u"good.png"_s, redPng());
    const QString bad = folder.add(u"bad.jpg"_s, content);
    const QString target = folder.add(u"a.pdf"_s, "old");
    const PdfOperationOutcome outcome = importPictures({good, bad, good}, target);
    QCOMPARE(outcome.error, PdfOperationError::InvalidPicture);
    QCOMPARE(outcome.file, bad);
    QVERIFY(!outcome.message.isEmpty());
    QCOMPARE(outcome.result, QString());
    QCOMPARE(contentOf(target), QByteArray("old"));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestPictureImportFiles::damagedJpegIsTakenAsItIs()
{
    Folder folder;
    Jpeg form;
    form.size = {200, 200};
    const Pixels pixels = [](int x, int y) { return Pixel{x, y, 128 + ((x ^ y) & 31)}; };
    const QByteArray whole = jpeg(form, pixels);
    const QByteArray half = whole.left(whole.size() / 2);
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({folder.add(u"a.jpg"_s, half)}, target).message, QString());
    QCOMPARE(ImportedFile::stored(ImportedFile(target).image()), half);
    const QImage page = render(filePage(target), {595, 842}).image;
    COMPARE_COLOUR(page.pixelColor(590, 140), QColor(198, 5, 144), 24);
}

void TestPictureImportFiles::largeInterlacedPictureIsWhole()
{
    // Too large to be put together at once; only its last row is not black.
    constexpr qsizetype kSide = 6000;
    qsizetype bytes = 0;
    const std::array<std::array<qsizetype, 2>, 7> steps = {
        {{8, 8}, {8, 8}, {4, 8}, {4, 4}, {2, 4}, {2, 2}, {1, 2}}};
    for (const auto &[dx, dy] : steps) {
        bytes += (kSide / dx + 1) * (kSide / dy);
    }
    QByteArray rows(bytes, '\0');
    rows.replace(bytes - kSide, kSide, QByteArray(kSide, 'U'));
    Png form;
    form.colourType = 0;
    form.size = {kSide, kSide};
    form.isInterlaced = true;
    Folder folder;
    const QString picture = folder.add(u"a.png"_s, pngOf(form, qCompress(rows, 1).mid(4)));
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({picture}, target).message, QString());
    const ImportedFile file(target);
    const QByteArray samples = ImportedFile::decoded(file.image());
    QCOMPARE(samples.size(), kSide * kSide);
    QCOMPARE(samples.count('\0'), kSide * (kSide - 1));
    QCOMPARE(samples.right(kSide), QByteArray(kSide, 'U'));
}

void TestPictureImportFiles::giantPicturesWithoutDataFail_data()
{
    QTest::addColumn<Png>("form");
    Png form;
    form.size = {50'000, 50'000};
    QTest::newRow("plain") << form;
    form.isInterlaced = true;
    QTest::newRow("interlaced") << form;
    form.colourType = 6;
    form.bits = 16;
    QTest::newRow("interlaced with alpha, 16 bits") << form;
    form.isInterlaced = false;
    QTest::newRow("with alpha, 16 bits") << form;
}

void TestPictureImportFiles::giantPicturesWithoutDataFail()
{
    QFETCH(const Png, form);
    Folder folder;
    const QString picture = folder.add(u"a.png"_s, pngOf(form, nothing(500'000)));
    const QString target = folder.path(u"a.pdf"_s);
    const PdfOperationOutcome outcome = importPictures({picture}, target);
    QCOMPARE(outcome.error, PdfOperationError::InvalidPicture);
    QCOMPARE(outcome.file, picture);
    QVERIFY(!QFile::exists(target));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestPictureImportFiles::anyFileNameWorks_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Chinese") << u"照片 1"_s;
    QTest::newRow("emoji") << u"🌅🏖️ (1) #%&"_s;
    QTest::newRow("long") << u"很长的名字"_s.repeated(15); // 225 bytes
    QTest::newRow("long path") << u"n"_s.repeated(200) + u'/' + u"m"_s.repeated(200);
}

void TestPictureImportFiles::anyFileNameWorks()
{
    QFETCH(const QString, name);
    Folder folder;
    QVERIFY(QDir().mkpath(QFileInfo(folder.path(name)).path()));
    const QString picture = folder.add(name + u".jpg"_s, jpeg({}, plain({0, 0, 255})));
    const QString target = folder.path(name + u".pdf"_s);
    const PdfOperationOutcome outcome = importPictures({picture}, target);
    QCOMPARE(outcome.message, QString());
    QCOMPARE(outcome.result, target);
    COMPARE_COLOUR(middle(render(filePage(target)).image), QColor(Qt::blue), 4);
}

void TestPictureImportFiles::existingFilesStayUnlessReplaced()
{
    Folder folder;
    const QString picture = folder.add(u"a.png"_s, redPng());
    const QString taken = folder.add(u"0.pdf"_s, "old");
    const auto placement =
        PdfPlacement::firstFree([&](int i) { return folder.path(u"%1.pdf"_s.arg(i)); });
    const PdfOperationOutcome kept = PdfPictureImport::toDocument({picture}, {}, placement, {});
    QCOMPARE(kept.message, QString());
    QCOMPARE(kept.result, folder.path(u"1.pdf"_s));
    QCOMPARE(contentOf(taken), QByteArray("old"));
    QCOMPARE(inspect(kept.result).pageSizes.size(), 1);
    QCOMPARE(importPictures({picture, picture}, taken).message, QString());
    QCOMPARE(inspect(taken).pageSizes.size(), 2);
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestPictureImportFiles::impossibleOrdersFail()
{
    Folder folder;
    const QString picture = folder.add(u"a.png"_s, redPng());
    const QString target = folder.path(u"a.pdf"_s);
    QCOMPARE(importPictures({}, target).error, PdfOperationError::WriteFailed);
    QCOMPARE(importPictures({picture}, {}).error, PdfOperationError::WriteFailed);
    QCOMPARE(importPictures({picture}, folder.path(u"none/a.pdf"_s)).error,
             PdfOperationError::WriteFailed);
    QVERIFY(!QFile::exists(folder.path(u"none"_s)));
    for (const double margin : {-1.0, 298.0, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
        PdfPictureImportOptions options;
        options.margin = margin;
        QCOMPARE(importPictures({picture}, target, options).error, PdfOperationError::WriteFailed);
    }
    const PdfOperationOutcome missing = importPictures({picture, folder.path(u"no.png"_s)}, target);
    QCOMPARE(missing.error, PdfOperationError::FileNotFound);
    QCOMPARE(missing.file, folder.path(u"no.png"_s));
    const PdfOperationOutcome isFolder = importPictures({folder.path()}, target);
    QCOMPARE(isFolder.error, PdfOperationError::InvalidPicture);
    QCOMPARE(isFolder.file, folder.path());
    QVERIFY(!QFile::exists(target));
}

void TestPictureImportFiles::cancelledImportLeavesNothing()
{
    Folder folder;
    const QString picture = folder.add(u"a.png"_s, slowPng(3000));
    const QString target = folder.path(u"a.pdf"_s);
    const PdfCancelFlag before;
    before.set();
    QCOMPARE(importPictures({picture}, target, {}, before).error, PdfOperationError::Cancelled);
    const PdfCancelFlag meanwhile;
    QElapsedTimer since;
    std::thread canceller([&] {
        const QDeadlineTimer limit(30'000);
        while (folder.leftovers().isEmpty() && !limit.hasExpired()) {
            std::this_thread::yield();
        }
        since.start();
        meanwhile.set();
    });
    const PdfOperationOutcome outcome = importPictures({picture}, target, {}, meanwhile);
    canceller.join();
    QCOMPARE(outcome.error, PdfOperationError::Cancelled);
    QVERIFY2(since.elapsed() < 500, qPrintable(QString::number(since.elapsed())));
    QVERIFY(!QFile::exists(target));
    QCOMPARE(folder.leftovers(), QStringList());
}

void TestPictureImportFiles::changedPictureFails()
{
    Folder folder;
    const QString slow = folder.add(u"a.png"_s, slowPng(1000));
    const QString changing = folder.add(u"b.png"_s, redPng());
    const QString target = folder.path(u"a.pdf"_s);
    std::thread changer([&] {
        const QDeadlineTimer limit(30'000);
        while (folder.leftovers().isEmpty() && !limit.hasExpired()) {
            std::this_thread::yield();
        }
        folder.add(u"b.png"_s, png({}, plain({0, 255, 0})));
    });
    const PdfOperationOutcome outcome = importPictures({slow, changing}, target);
    changer.join();
    QCOMPARE(outcome.error, PdfOperationError::FileNotFound);
    QCOMPARE(outcome.file, changing);
    QVERIFY(!QFile::exists(target));
    QCOMPARE(folder.leftovers(), QStringList());
}

QTEST_GUILESS_MAIN(TestPictureImportFiles)
#include "tst_picture_import_files.moc"
