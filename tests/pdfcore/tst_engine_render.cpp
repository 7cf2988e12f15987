// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/engine.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <atomic>
#include <limits>
#include <thread>
#include <vector>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// What a pixel at the very edge of a page may be off: MuPDF looks at a pixel in 15 lines, of which
/// 1.28 may lose one where the numbers of the page's transformation do not come out even.
constexpr int kSampleLine = 17;

constexpr int kTurns[] = {0, 90, 180, 270};

/// The quarters of PdfFixture::quartered(), turned clockwise by `rotation` degrees.
QList<QColor> turnedQuarters(int rotation)
{
    QList<QColor> colours{Qt::blue, Qt::yellow, Qt::red, Qt::green};
    for (int turn = 0; turn < rotation; turn += 90) {
        colours = {colours.at(2), colours.at(0), colours.at(3), colours.at(1)};
    }
    return colours;
}

QString names(const QList<QColor> &colours)
{
    QStringList result;
    for (const QColor &colour : colours) {
        result.append(colour.name());
    }
    return result.join(u' ');
}

/// An annotation with the given entries whose appearance is a square of one colour.
QByteArray withAnnotation(const QByteArray &entries, const QByteArray &catalogueEntries = {})
{
    return PdfFixture::fromObjects(
        {"<< /Type /Catalog /Pages 2 0 R " + catalogueEntries + " >>",
         "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
         "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 200 200] /Annots [4 0 R] >>",
         "<< /Type /Annot /Rect [50 50 150 150] /AP << /N 5 0 R >> " + entries + " >>",
         PdfFixture::streamBody("/Type /XObject /Subtype /Form /BBox [0 0 100 100]",
                                PdfFixture::fill({0, 0, 100, 100}, Qt::magenta))});
}

} // namespace

/// What pages look like, and what comes back when they cannot be shown.
class TestEngineRender : public QObject
{
    Q_OBJECT

private slots:
    void aBatchIsSharedBetweenThreads();
    void blankPageAndFilePageInOneBatch();
    void pageWithoutFileIsBlank();
    void oneFailingPageDoesNotSpoilTheBatch();
    void imagesComeInRequestOrder();
    void emptyBatchGivesNothing();
    void shortListOfSizesFailsOnlyThePagesWithoutSize();
    void emptySizesFail_data();
    void emptySizesFail();
    void hugeSizesFail_data();
    void hugeSizesFail();
    void pagesThatDoNotExistFail_data();
    void pagesThatDoNotExistFail();
    void missingFileFails();
    void imageIsOpaqueAndOfTheTargetSize_data();
    void imageIsOpaqueAndOfTheTargetSize();
    void pageWithoutContentIsWhite();
    void damagedContentShowsWhatCameBefore();
    void rotations_data();
    void rotations();
    void savedRotationIsTheSourcesPlusTheRecords_data();
    void savedRotationIsTheSourcesPlusTheRecords();
    void boxes_data();
    void boxes();
    void annotationsAreDrawn();
    void formFieldsAreDrawn_data();
    void formFieldsAreDrawn();
    void hiddenAnnotationsAreNotDrawn_data();
    void hiddenAnnotationsAreNotDrawn();
    void samePageInOneBatchTwice();
    void filesOfOneBatchMayAlternate();
    void manyThreadsSeeTheSamePicture();
    void replacedFileGivesTheOldOrTheNewPicture();
    void changedFileIsShownAsItIsNow();
};

void TestEngineRender::blankPageAndFilePageInOneBatch()
{
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(8));
    QStringList errors;
    const QList<QImage> images = PdfEditorBackend::renderPages(
        {blankPage({595, 842}), filePage(path, 7)}, {QSize(40, 60), QSize(20, 30)}, &errors);
    QCOMPARE(images.size(), 2);
    QCOMPARE(errors, QStringList({QString(), QString()}));
    QImage white(40, 60, QImage::Format_RGB888);
    white.fill(Qt::white);
    QCOMPARE(images.at(0), white);
    QCOMPARE(images.at(1).size(), QSize(20, 30));
    COMPARE_COLOUR(middle(images.at(1)), PdfFixture::numberColour(7), 1);
}

void TestEngineRender::pageWithoutFileIsBlank()
{
    // A duplicate of a blank page names no file and is not marked as blank.
    PdfSourcePage page = blankPage({100, 200}, 90);
    page.isBlank = false;
    QImage white(40, 20, QImage::Format_RGB888);
    white.fill(Qt::white);
    QCOMPARE(render(page, {40, 20}).image, white);
    const Folder folder;
    const QString target = folder.path(u"out.pdf"_s);
    QVERIFY(save({page}, target).ok);
    QCOMPARE(inspect(target).pageSizes, QList<QSizeF>{QSizeF(200, 100)});
}

void TestEngineRender::oneFailingPageDoesNotSpoilTheBatch()
{
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(3));
    const QString text = folder.add(u"text.pdf"_s, "no document");
    const QList<PdfSourcePage> failing{filePage(path, 3), filePage(path, -1), filePage(text),
                                       filePage(folder.path(u"absent.pdf"_s))};
    for (const PdfSourcePage &bad : failing) {
        QStringList errors{u"from before"_s};
        const QList<QImage> images = PdfEditorBackend::renderPages(
            {filePage(path, 1), bad, filePage(path, 2)}, QList<QSize>(3, QSize(20, 30)), &errors);
        QCOMPARE(images.size(), 3);
        QCOMPARE(errors.size(), 3);
        COMPARE_COLOUR(middle(images.at(0)), PdfFixture::numberColour(1), 1);
        QVERIFY(images.at(1).isNull());
        QVERIFY(!errors.at(1).trimmed().isEmpty());
        COMPARE_COLOUR(middle(images.at(2)), PdfFixture::numberColour(2), 1);
        QVERIFY(errors.at(0).isEmpty());
        QVERIFY(errors.at(2).isEmpty());
    }
}

void TestEngineRender::imagesComeInRequestOrder()
{
    constexpr int kPages = 30;
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(kPages));
    QList<PdfSourcePage> pages;
    QList<QSize> sizes;
    for (int i = 0; i < kPages; ++i) {
        pages.append(filePage(path, kPages - 1 - i));
        sizes.append({10 + i, 20 + i});
    }
    const QList<QImage> images = PdfEditorBackend::renderPages(pages, sizes, nullptr);
    QCOMPARE(images.size(), kPages);
    for (int i = 0; i < kPages; ++i) {
        QCOMPARE(images.at(i).size(), sizes.at(i));
        COMPARE_COLOUR(middle(images.at(i)), PdfFixture::numberColour(kPages - 1 - i), 1);
    }
}

void TestEngineRender::emptyBatchGivesNothing()
{
    QStringList errors{u"from before"_s};
    QVERIFY(PdfEditorBackend::renderPages({}, {}, &errors).isEmpty());
    QVERIFY(errors.isEmpty());
}

void TestEngineRender::shortListOfSizesFailsOnlyThePagesWithoutSize()
{
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(2));
    QStringList errors;
    const QList<QImage> images = PdfEditorBackend::renderPages({filePage(path), filePage(path, 1)},
                                                               {QSize(10, 15)}, &errors);
    QCOMPARE(images.size(), 2);
    QVERIFY(!images.at(0).isNull());
    QVERIFY(images.at(1).isNull());
    QVERIFY(errors.at(0).isEmpty());
    QVERIFY(!errors.at(1).isEmpty());
}

void TestEngineRender::emptySizesFail_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("default") << QSize();
    QTest::newRow("nothing") << QSize(0, 0);
    QTest::newRow("no width") << QSize(0, 10);
    QTest::newRow("no height") << QSize(10, 0);
    QTest::newRow("negative") << QSize(-10, 10);
    QTest::newRow("both negative") << QSize(-10, -10);
}

void TestEngineRender::emptySizesFail()
{
    QFETCH(const QSize, size);
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(1));
    for (const PdfSourcePage &page : {filePage(path), blankPage({100, 100})}) {
        const Rendering rendering = render(page, size);
        QVERIFY(rendering.image.isNull());
        QCOMPARE(rendering.error, PdfBackendError::RenderFailed);
        QVERIFY(!rendering.message.isEmpty());
    }
}

void TestEngineRender::hugeSizesFail_data()
{
    constexpr int kMost = std::numeric_limits<int>::max();
    QTest::addColumn<QSize>("size");
    QTest::newRow("square") << QSize(100'000, 100'000);
    QTest::newRow("just too large") << QSize(32'768, 16'385);
    QTest::newRow("wide") << QSize(2'000'000'000, 1);
    QTest::newRow("high") << QSize(1, 2'000'000'000);
    QTest::newRow("largest") << QSize(kMost, kMost);
}

void TestEngineRender::hugeSizesFail()
{
    QFETCH(const QSize, size);
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(1));
    for (const PdfSourcePage &page : {filePage(path), blankPage({100, 100})}) {
        const Rendering rendering = render(page, size);
        QVERIFY(rendering.image.isNull());
        QCOMPARE(rendering.error, PdfBackendError::RenderFailed);
        QVERIFY(!rendering.message.isEmpty());
    }
    QVERIFY(render(filePage(path)).ok);
}

void TestEngineRender::pagesThatDoNotExistFail_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("one past the end") << 3;
    QTest::newRow("far past the end") << std::numeric_limits<int>::max();
    QTest::newRow("before the first") << -1;
    QTest::newRow("far before the first") << std::numeric_limits<int>::min();
}

void TestEngineRender::pagesThatDoNotExistFail()
{
    QFETCH(const int, index);
    Folder folder;
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::pagesByNumber(3));
    const Rendering rendering = render(filePage(path, index));
    QVERIFY(rendering.image.isNull());
    QCOMPARE(rendering.error, PdfBackendError::RenderFailed);
    QVERIFY(!rendering.message.isEmpty());
}

void TestEngineRender::missingFileFails()
{
    const Folder folder;
    const Rendering rendering = render(filePage(folder.path(u"absent.pdf"_s)));
    QVERIFY(rendering.image.isNull());
    QCOMPARE(rendering.error, PdfBackendError::FileNotFound);
    QVERIFY(!rendering.message.isEmpty());
}

void TestEngineRender::imageIsOpaqueAndOfTheTargetSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("one pixel") << QSize(1, 1);
    QTest::newRow("odd width") << QSize(33, 47);
    QTest::newRow("page's own proportions") << QSize(200, 300);
    QTest::newRow("stretched wide") << QSize(400, 40);
    QTest::newRow("stretched high") << QSize(10, 500);
    QTest::newRow("large") << QSize(2000, 3000);
}

void TestEngineRender::imageIsOpaqueAndOfTheTargetSize()
{
    QFETCH(const QSize, size);
    Folder folder;
    const QString path =
        folder.add(u"page.pdf"_s, PdfFixture::document({PdfFixture::quartered({200, 300})}));
    for (const PdfSourcePage &page : {filePage(path), blankPage({200, 300})}) {
        const Rendering rendering = render(page, size);
        QVERIFY2(rendering.ok, qPrintable(rendering.message));
        QCOMPARE(rendering.error, PdfBackendError::None);
        QVERIFY(rendering.message.isEmpty());
        QCOMPARE(rendering.image.size(), size);
        QCOMPARE(rendering.image.format(), QImage::Format_RGB888);
        QCOMPARE(qAlpha(rendering.image.pixel(0, 0)), 255);
        QCOMPARE(qAlpha(rendering.image.pixel(size.width() - 1, size.height() - 1)), 255);
    }
    if (size.width() < 10) {
        return;
    }
    // The page fills the image to its edges.
    const QImage image = render(filePage(path), size).image;
    COMPARE_COLOUR(image.pixelColor(0, 0), Qt::blue, 1);
    COMPARE_COLOUR(image.pixelColor(size.width() - 1, 0), Qt::yellow, 1);
    COMPARE_COLOUR(image.pixelColor(0, size.height() - 1), Qt::red, 1);
    COMPARE_COLOUR(image.pixelColor(size.width() - 1, size.height() - 1), Qt::green, 1);
}

void TestEngineRender::pageWithoutContentIsWhite()
{
    Folder folder;
    const QString path = folder.add(
        u"empty.pdf"_s, PdfFixture::fromObjects({"<< /Type /Catalog /Pages 2 0 R >>",
                                                 "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
                                                 "<< /Type /Page /Parent 2 0 R >>"}));
    const Rendering rendering = render(filePage(path), {30, 40});
    QVERIFY2(rendering.ok, qPrintable(rendering.message));
    QImage white(30, 40, QImage::Format_RGB888);
    white.fill(Qt::white);
    QCOMPARE(rendering.image, white);
}

void TestEngineRender::damagedContentShowsWhatCameBefore()
{
    Folder folder;
    const QByteArray good = PdfFixture::fill({0, 0, 200, 200}, Qt::cyan);
    const QString path =
        folder.add(u"damaged.pdf"_s, PdfFixture::onePage(good + " (unfinished /Absent Do ]] >> q"));
    const Rendering rendering = render(filePage(path));
    QVERIFY2(rendering.ok, qPrintable(rendering.message));
    COMPARE_COLOUR(middle(rendering.image), Qt::cyan, 1);
}

void TestEngineRender::rotations_data()
{
    QTest::addColumn<int>("own");
    QTest::addColumn<int>("record");
    for (const int own : {0, 90, 180, 270, -90, 450}) {
        for (const int record : kTurns) {
            QTest::addRow("page %d, record %d", own, record) << own << record;
        }
    }
}

void TestEngineRender::rotations()
{
    QFETCH(const int, own);
    QFETCH(const int, record);
    Folder folder;
    PdfFixture::Page page = PdfFixture::quartered({200, 300});
    page.rotate = own;
    const QString path = folder.add(u"page.pdf"_s, PdfFixture::document({page}));
    const int turned = ((own + record) % 360 + 360) % 360;
    const QSize size = turned % 180 == 0 ? QSize(40, 60) : QSize(60, 40);
    const Rendering rendering = render(filePage(path, 0, record), size);
    QVERIFY2(rendering.ok, qPrintable(rendering.message));
    QCOMPARE(names(quarters(rendering.image)), names(turnedQuarters(turned)));
}

void TestEngineRender::savedRotationIsTheSourcesPlusTheRecords_data()
{
    rotations_data();
}

void TestEngineRender::savedRotationIsTheSourcesPlusTheRecords()
{
    QFETCH(const int, own);
    QFETCH(const int, record);
    Folder folder;
    PdfFixture::Page page = PdfFixture::quartered({200, 300});
    page.rotate = own;
    page.cropBox = {20, 30, 150, 200};
    const QString path = folder.add(u"page.pdf"_s, PdfFixture::document({page}));
    const QString copy = folder.path(u"copy.pdf"_s);
    const Outcome saved = save({filePage(path, 0, record)}, copy);
    QVERIFY2(saved.ok, qPrintable(saved.message));

    const QSizeF before = inspect(path).pageSizes.value(0);
    const QSizeF after = inspect(copy).pageSizes.value(0);
    QCOMPARE(after, record % 180 == 0 ? before : before.transposed());

    const QSize size = (after / 2).toSize();
    const QImage original = render(filePage(path, 0, record), size).image;
    const QImage copied = render(filePage(copy), size).image;
    QVERIFY(!original.isNull());
    QCOMPARE(distance(original, copied), 0);
}

void TestEngineRender::boxes_data()
{
    QTest::addColumn<QRectF>("media");
    QTest::addColumn<QRectF>("crop");
    QTest::addColumn<QRectF>("filled");
    // The part that is filled is seen as the left lower quarter of the picture.
    QTest::newRow("at the origin") << QRectF(0, 0, 100, 200) << QRectF() << QRectF(0, 0, 50, 100);
    QTest::newRow("away from the origin")
        << QRectF(-70, 500, 100, 200) << QRectF() << QRectF(-70, 500, 50, 100);
    QTest::newRow("crop box") << QRectF(0, 0, 300, 300) << QRectF(100, 50, 100, 200)
                              << QRectF(100, 50, 50, 100);
    QTest::newRow("crop box away from the origin")
        << QRectF(-300, -300, 600, 600) << QRectF(-250, -220, 100, 200)
        << QRectF(-250, -220, 50, 100);
    QTest::newRow("crop box partly outside")
        << QRectF(0, 0, 100, 200) << QRectF(50, -500, 500, 600) << QRectF(50, 0, 25, 50);
    QTest::newRow("crop box outside")
        << QRectF(0, 0, 100, 200) << QRectF(400, 400, 10, 10) << QRectF(0, 0, 50, 100);
}

void TestEngineRender::boxes()
{
    QFETCH(const QRectF, media);
    QFETCH(const QRectF, crop);
    QFETCH(const QRectF, filled);
    Folder folder;
    PdfFixture::Page page;
    page.mediaBox = media;
    page.cropBox = crop;
    page.content = PdfFixture::fill(filled, Qt::red);
    const QString path = folder.add(u"page.pdf"_s, PdfFixture::document({page}));
    for (const double unit : {1.0, 3.0}) {
        page.userUnit = unit;
        const QString scaled = folder.add(u"scaled.pdf"_s, PdfFixture::document({page}));
        const QImage image = render(filePage(scaled), {40, 80}).image;
        QVERIFY(!image.isNull());
        QCOMPARE(names(quarters(image)), names({Qt::white, Qt::white, Qt::red, Qt::white}));
        COMPARE_COLOUR(image.pixelColor(0, 79), Qt::red, kSampleLine);
        COMPARE_COLOUR(image.pixelColor(18, 42), Qt::red, 1);
        COMPARE_COLOUR(image.pixelColor(21, 42), Qt::white, 1);
        COMPARE_COLOUR(image.pixelColor(18, 37), Qt::white, 1);
    }
    // Turned a quarter clockwise, the left lower quarter is the left upper one.
    const QImage turned = render(filePage(path, 0, 90), {80, 40}).image;
    QCOMPARE(names(quarters(turned)), names({Qt::red, Qt::white, Qt::white, Qt::white}));
}

void TestEngineRender::annotationsAreDrawn()
{
    Folder folder;
    const QString path = folder.add(u"note.pdf"_s, withAnnotation("/Subtype /Square /F 4"));
    const QImage image = render(filePage(path)).image;
    COMPARE_COLOUR(middle(image), Qt::magenta, 1);
    COMPARE_COLOUR(image.pixelColor(5, 5), Qt::white, 1);

    const QString copy = folder.path(u"copy.pdf"_s);
    QVERIFY(save({filePage(path, 0, 180)}, copy).ok);
    QCOMPARE(distance(render(filePage(copy)).image, render(filePage(path, 0, 180)).image), 0);
    COMPARE_COLOUR(middle(render(filePage(copy)).image), Qt::magenta, 1);
}

void TestEngineRender::formFieldsAreDrawn_data()
{
    QTest::addColumn<QByteArray>("form");
    QTest::newRow("as stored") << QByteArray();
    QTest::newRow("as stored, though the form asks for new ones")
        << QByteArray("/NeedAppearances true");
}

void TestEngineRender::formFieldsAreDrawn()
{
    QFETCH(const QByteArray, form);
    Folder folder;
    const QString path =
        folder.add(u"form.pdf"_s, withAnnotation("/Subtype /Widget /FT /Tx /T (name) /V (x) /F 4",
                                                 "/AcroForm << /Fields [4 0 R] " + form + " >>"));
    COMPARE_COLOUR(middle(render(filePage(path)).image), Qt::magenta, 1);
    const QString copy = folder.path(u"copy.pdf"_s);
    QVERIFY(save({filePage(path)}, copy).ok);
    COMPARE_COLOUR(middle(render(filePage(copy)).image), Qt::magenta, 1);
}

void TestEngineRender::hiddenAnnotationsAreNotDrawn_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::newRow("hidden") << QByteArray("/Subtype /Square /F 2");
    QTest::newRow("hidden and to be printed") << QByteArray("/Subtype /Square /F 6");
    QTest::newRow("not for viewing") << QByteArray("/Subtype /Square /F 32");
    QTest::newRow("hidden field") << QByteArray("/Subtype /Widget /FT /Tx /T (name) /F 2");
    QTest::newRow("pop-up") << QByteArray("/Subtype /Popup /F 4");
}

void TestEngineRender::hiddenAnnotationsAreNotDrawn()
{
    QFETCH(const QByteArray, entries);
    Folder folder;
    const QString path = folder.add(u"note.pdf"_s, withAnnotation(entries));
    const Rendering rendering = render(filePage(path));
    QVERIFY2(rendering.ok, qPrintable(rendering.message));
    COMPARE_COLOUR(middle(rendering.image), Qt::white, 0);
}

void TestEngineRender::samePageInOneBatchTwice()
{
    Folder folder;
    const QString path =
        folder.add(u"page.pdf"_s, PdfFixture::document({PdfFixture::quartered({100, 100})}));
    const QList<QImage> images =
        PdfEditorBackend::renderPages({filePage(path), filePage(path, 0, 90), filePage(path)},
                                      {QSize(20, 20), QSize(20, 20), QSize(20, 20)}, nullptr);
    QCOMPARE(images.at(0), images.at(2));
    QCOMPARE(names(quarters(images.at(1))), names(turnedQuarters(90)));
}

void TestEngineRender::filesOfOneBatchMayAlternate()
{
    Folder folder;
    const QString red =
        folder.add(u"red.pdf"_s, PdfFixture::document({PdfFixture::plain({50, 50}, Qt::red)}));
    const QString blue =
        folder.add(u"blue.pdf"_s, PdfFixture::document({PdfFixture::plain({50, 50}, Qt::blue)}));
    QList<PdfSourcePage> pages;
    for (int i = 0; i < 20; ++i) {
        pages.append(filePage(i % 2 == 0 ? red : blue));
    }
    const QList<QImage> images =
        PdfEditorBackend::renderPages(pages, QList<QSize>(20, QSize(5, 5)), nullptr);
    for (int i = 0; i < 20; ++i) {
        COMPARE_COLOUR(middle(images.at(i)), i % 2 == 0 ? Qt::red : Qt::blue, 0);
    }
}

void TestEngineRender::manyThreadsSeeTheSamePicture()
{
    constexpr int kThreads = 6;
    constexpr int kRounds = 8;
    Folder folder;
    QList<PdfFixture::Page> pages;
    for (int i = 0; i < 4; ++i) {
        PdfFixture::Page page = PdfFixture::quartered({200, 200});
        page.content += "q BT /Helv 40 Tf 20 90 Td (Words) Tj ET Q\n";
        page.rotate = i * 90;
        pages.append(page);
    }
    const QString path = folder.add(u"pages.pdf"_s, PdfFixture::document(pages));
    QList<QImage> expected;
    for (int i = 0; i < 4; ++i) {
        expected.append(render(filePage(path, i), {120, 120}).image);
    }

    std::atomic<int> different{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                for (int i = 0; i < 4; ++i) {
                    if (render(filePage(path, i), {120, 120}).image != expected.at(i)) {
                        ++different;
                    }
                }
                if (inspect(path).pageSizes.size() != 4) {
                    ++different;
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(different.load(), 0);
}

void TestEngineRender::replacedFileGivesTheOldOrTheNewPicture()
{
    constexpr int kSaves = 30;
    Folder folder;
    const QList<QColor> colours{Qt::red, Qt::blue};
    const QString red =
        folder.add(u"red.pdf"_s, PdfFixture::document({PdfFixture::plain({90, 90}, Qt::red)}));
    const QString blue =
        folder.add(u"blue.pdf"_s, PdfFixture::document({PdfFixture::plain({90, 90}, Qt::blue)}));
    const QString target = folder.path(u"target.pdf"_s);
    QVERIFY(save({filePage(red)}, target).ok);

    std::atomic<bool> done{false};
    std::atomic<int> wrong{0};
    std::atomic<int> seen{0};
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 2; ++reader) {
        readers.emplace_back([&] {
            while (!done) {
                const Rendering rendering = render(filePage(target), {30, 30});
                QImage expected(30, 30, QImage::Format_RGB888);
                bool known = false;
                for (const QColor &colour : colours) {
                    expected.fill(colour);
                    known = known || rendering.image == expected;
                }
                if (!known) {
                    ++wrong;
                }
                ++seen;
            }
        });
    }
    int failures = 0;
    for (int i = 0; i < kSaves; ++i) {
        if (!save({filePage(i % 2 == 0 ? blue : red)}, target).ok) {
            ++failures;
        }
        const QColor now = middle(render(filePage(target), {30, 30}).image);
        if (now != colours.at(i % 2 == 0 ? 1 : 0)) {
            ++failures;
        }
    }
    done = true;
    for (std::thread &reader : readers) {
        reader.join();
    }
    QCOMPARE(failures, 0);
    QCOMPARE(wrong.load(), 0);
    QVERIFY(seen > 0);
    QVERIFY(folder.leftovers().isEmpty());
}

void TestEngineRender::changedFileIsShownAsItIsNow()
{
    Folder folder;
    const QString path =
        folder.add(u"page.pdf"_s, PdfFixture::document({PdfFixture::plain({100, 100}, Qt::red)}));
    COMPARE_COLOUR(middle(render(filePage(path)).image), Qt::red, 0);
    folder.add(u"page.pdf"_s, PdfFixture::document({PdfFixture::plain({100, 100}, Qt::blue),
                                                    PdfFixture::plain({50, 100}, Qt::green)}));
    COMPARE_COLOUR(middle(render(filePage(path)).image), Qt::blue, 0);
    QCOMPARE(inspect(path).pageSizes.size(), 2);
    QVERIFY(QFile::remove(path));
    QCOMPARE(render(filePage(path)).error, PdfBackendError::FileNotFound);
}

void TestEngineRender::aBatchIsSharedBetweenThreads()
{
    constexpr int kPages = 60;
    Folder folder;
    const QString path = folder.add(u"many.pdf"_s, PdfFixture::pagesByNumber(kPages));
    pdfcore::Engine::instance().sessions().closeIdle();
    QList<PdfSourcePage> pages;
    for (int i = 0; i < kPages; ++i) {
        pages.append(filePage(path, kPages - 1 - i));
    }
    QStringList errors;
    const QList<QImage> images =
        PdfEditorBackend::renderPages(pages, QList<QSize>(kPages, {600, 900}), &errors);
    QCOMPARE(images.size(), kPages);
    for (int i = 0; i < kPages; ++i) {
        QCOMPARE(errors.at(i), QString());
        COMPARE_COLOUR(middle(images.at(i)), PdfFixture::numberColour(kPages - 1 - i), 1);
    }
    // Each thread had the document open for itself.
    QVERIFY(pdfcore::Engine::instance().sessions().idleCount() >= 2);
}

QTEST_GUILESS_MAIN(TestEngineRender)
#include "tst_engine_render.moc"
