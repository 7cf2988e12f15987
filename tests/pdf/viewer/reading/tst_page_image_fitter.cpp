// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/page_image_fitter.h"
#include "pdf/viewer/reading/page_image_loader.h"
#include "pdf/viewer/reading/pdf_document_view.h"
#include "tests/pdf/viewer/render_probe.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

namespace {

constexpr PdfPageId kId = 7;

/// A page as the engine renders it: the left half red, the right half blue.
QImage engineImage(QSize size)
{
    QImage image(size, QImage::Format_RGB888);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixelColor(x, y, x < size.width() / 2 ? Qt::red : Qt::blue);
        }
    }
    return image;
}

/// What the page shows may change.
PdfPageRecord recordOf(int pageIndex)
{
    PdfPageRecord record;
    record.id = kId;
    record.sourcePath = QStringLiteral("/documents/report.pdf");
    record.sourcePageIndex = pageIndex;
    return record;
}

PageImageLoader::Demand demandFor(QSize size, QSize shown, int pageIndex = 3)
{
    PageImageLoader::Demand demand;
    demand.visible.append({recordOf(pageIndex), size});
    demand.kept.insert(kId);
    if (!shown.isEmpty()) {
        demand.shown.insert(kId, shown);
    }
    return demand;
}

/// A loader whose pages are coloured by their number.
struct Loading
{
    Loading() { loader.setRenderManager(&manager); }

    [[nodiscard]] QSize shownSize() const
    {
        const auto *image = loader.image(kId);
        return image != nullptr ? image->image.size() : QSize();
    }

    RenderProbe probe;
    PdfRenderManager manager{nullptr, probe.function()};
    PageImageLoader loader;
};

} // namespace

class TestPageImageFitter final : public QObject
{
    Q_OBJECT

private slots:
    void largerImageIsScaledDown();
    void imageOfTheShownSizeKeepsItsPixels();
    void smallerImageIsNotScaledUp();
    void imageWithoutAShownSizeIsConvertedOnly();
    void fittedImageIsKnown();
    void workIsDoneOnAnotherThread();
    void fitterMayGoWhileItWorks();

    void loaderHoldsTheFittedImage();
    void loaderSaysSo();
    void fittedImageKeepsTheSizeThatWasAskedFor();
    void fittedImageIsNotFittedAgain();
    void imageOfAnotherSizeIsLeftAlone();
    void fittedImageOfAReplacedOneIsDropped();
    void fittedImageTakesNoNewerOnesPlace();
    void pagesThatAreNotShownAreLeftAlone();
    void viewPaintsTheFittedImage();
};

void TestPageImageFitter::largerImageIsScaledDown()
{
    const QImage image = PageImageFitter::fittedTo(engineImage({60, 90}), {40, 60});
    QCOMPARE(image.size(), QSize(40, 60));
    QCOMPARE(image.format(), QImage::Format_RGB32);
    QCOMPARE(image.pixelColor(2, 30), QColor(Qt::red));
    QCOMPARE(image.pixelColor(37, 30), QColor(Qt::blue));
}

void TestPageImageFitter::imageOfTheShownSizeKeepsItsPixels()
{
    const QImage original = engineImage({40, 60});
    const QImage image = PageImageFitter::fittedTo(original, {40, 60});
    QCOMPARE(image.format(), QImage::Format_RGB32);
    QCOMPARE(image, original.convertToFormat(QImage::Format_RGB32));
}

void TestPageImageFitter::smallerImageIsNotScaledUp()
{
    const QImage image = PageImageFitter::fittedTo(engineImage({40, 60}), {80, 120});
    QCOMPARE(image.size(), QSize(40, 60));
    QCOMPARE(image.format(), QImage::Format_RGB32);
}

void TestPageImageFitter::imageWithoutAShownSizeIsConvertedOnly()
{
    QCOMPARE(PageImageFitter::fittedTo(engineImage({40, 60}), {}).size(), QSize(40, 60));
}

void TestPageImageFitter::fittedImageIsKnown()
{
    const QImage original = engineImage({60, 90});
    QVERIFY(!PageImageFitter::isFitted(original, {60, 90}));
    QVERIFY(!PageImageFitter::isFitted(original, {40, 60}));
    const QImage image = PageImageFitter::fittedTo(original, {40, 60});
    QVERIFY(PageImageFitter::isFitted(image, {40, 60}));
    QVERIFY(!PageImageFitter::isFitted(image, {30, 45}));
    // It would not be made larger anyway.
    QVERIFY(PageImageFitter::isFitted(image, {80, 120}));
}

void TestPageImageFitter::workIsDoneOnAnotherThread()
{
    PageImageFitter fitter;
    const QSignalSpy fitted(&fitter, &PageImageFitter::fitted);
    QThread *receiving = nullptr;
    connect(&fitter, &PageImageFitter::fitted, this,
            [&receiving] { receiving = QThread::currentThread(); });
    const QImage original = engineImage({60, 90});
    fitter.fit(kId, original, {40, 60});
    // Not before the event loop has been reached, on whatever thread it is done.
    QCOMPARE(fitted.size(), 0);
    QTRY_COMPARE(fitted.size(), 1);
    QCOMPARE(receiving, thread());
    QCOMPARE(fitted.first().at(0).value<PdfPageId>(), kId);
    QCOMPARE(fitted.first().at(1).toLongLong(), original.cacheKey());
    QCOMPARE(fitted.first().at(2).value<QImage>(), PageImageFitter::fittedTo(original, {40, 60}));
}

void TestPageImageFitter::fitterMayGoWhileItWorks()
{
    const QImage original = engineImage({600, 900});
    for (int i = 0; i < 20; ++i) {
        PageImageFitter fitter;
        fitter.fit(kId, original, {400, 600});
        fitter.fit(kId, original, {300, 450});
    }
    QCoreApplication::processEvents();
}

void TestPageImageFitter::loaderHoldsTheFittedImage()
{
    Loading loading;
    PageImageLoader &loader = loading.loader;
    loader.request(demandFor({60, 90}, {40, 60}));
    QTRY_VERIFY(loader.image(kId));
    QTRY_COMPARE(loader.image(kId)->image.size(), QSize(40, 60));
    QCOMPARE(loader.image(kId)->image.pixelColor(20, 30), RenderProbe::colorOf(3));
}

void TestPageImageFitter::loaderSaysSo()
{
    Loading loading;
    PageImageLoader &loader = loading.loader;
    QList<QSize> sizes;
    connect(&loader, &PageImageLoader::imageArrived, this,
            [&](PdfPageId id) { sizes.append(loader.image(id)->image.size()); });
    loader.request(demandFor({60, 90}, {40, 60}));
    QTRY_COMPARE(sizes, (QList<QSize>{{60, 90}, {40, 60}}));
}

void TestPageImageFitter::fittedImageKeepsTheSizeThatWasAskedFor()
{
    Loading loading;
    PageImageLoader &loader = loading.loader;
    loader.request(demandFor({60, 90}, {40, 60}));
    QTRY_COMPARE(loading.shownSize(), QSize(40, 60));
    QCOMPARE(loader.image(kId)->size, QSize(60, 90));
    loading.manager.clearCache();
    loader.request(demandFor({60, 90}, {40, 60}));
    QTest::qWait(20);
    QCOMPARE(loading.probe.renderCount(3), 1);
}

void TestPageImageFitter::fittedImageIsNotFittedAgain()
{
    Loading loading;
    PageImageLoader &loader = loading.loader;
    const QSignalSpy arrived(&loader, &PageImageLoader::imageArrived);
    // Asked for again while it is in work.
    connect(&loader, &PageImageLoader::imageArrived, this, [&] {
        if (arrived.size() == 1) {
            QMetaObject::invokeMethod(
                &loader,
                [&] {
                    loader.request(demandFor({60, 90}, {40, 60}));
                },
                Qt::QueuedConnection);
        }
    });
    loader.request(demandFor({60, 90}, {40, 60}));
    QTRY_COMPARE(arrived.size(), 2);
    loader.request(demandFor({60, 90}, {40, 60}));
    QTest::qWait(30);
    QCOMPARE(arrived.size(), 2);
}

/// While the reader zooms, the image of the size before is shown until the next one comes.
void TestPageImageFitter::imageOfAnotherSizeIsLeftAlone()
{
    Loading loading;
    PageImageLoader &loader = loading.loader;
    loader.request(demandFor({60, 90}, {40, 60}));
    QTRY_COMPARE(loading.shownSize(), QSize(40, 60));
    loading.probe.hold();
    loader.request(demandFor({30, 45}, {20, 30}));
    QTest::qWait(30);
    QCOMPARE(loading.shownSize(), QSize(40, 60));
    loading.probe.release();
    QTRY_COMPARE(loading.shownSize(), QSize(20, 30));
}

void TestPageImageFitter::fittedImageOfAReplacedOneIsDropped()
{
    Loading loading;
    PageImageLoader &loader = loading.loader;
    bool isFirst = true;
    connect(&loader, &PageImageLoader::imageArrived, this, [&] {
        if (isFirst) {
            isFirst = false;
            // Its image goes while it is in work.
            loader.forget(kId);
        }
    });
    loader.request(demandFor({60, 90}, {40, 60}));
    QTRY_VERIFY(!isFirst);
    QTest::qWait(30);
    QVERIFY(!loader.image(kId));
}

void TestPageImageFitter::fittedImageTakesNoNewerOnesPlace()
{
    constexpr int kOld = 3;
    constexpr int kNew = 4;
    // So large that its work takes longer than the next image, which is there already.
    constexpr QSize kSize(2000, 3000);
    constexpr QSize kShown(1900, 2850);
    Loading loading;
    PageImageLoader &loader = loading.loader;
    PdfRenderManager &manager = loading.manager;
    const QSignalSpy rendered(&manager, &PdfRenderManager::pageRendered);
    manager.requestPage(recordOf(kNew), kSize, PdfRenderPurpose::PageView, 0);
    QTRY_COMPARE(rendered.size(), 1);

    QList<QColor> shown;
    connect(&loader, &PageImageLoader::imageArrived, this,
            [&] { shown.append(loader.image(kId)->image.pixelColor(9, 9)); });
    connect(
        &manager, &PdfRenderManager::pageRendered, &loader,
        [&] {
            loader.forget(kId);
            loader.request(demandFor(kSize, kShown, kNew));
        },
        Qt::SingleShotConnection);
    loader.request(demandFor(kSize, kShown, kOld));
    // One image is worked on after the other.
    QTRY_COMPARE(loading.shownSize(), kShown);
    QTest::qWait(30);
    const QColor newer = RenderProbe::colorOf(kNew);
    QCOMPARE(shown, (QList<QColor>{RenderProbe::colorOf(kOld), newer, newer}));
}

void TestPageImageFitter::pagesThatAreNotShownAreLeftAlone()
{
    Loading loading;
    PageImageLoader &loader = loading.loader;
    loader.request(demandFor({60, 90}, {}));
    QTRY_VERIFY(loader.image(kId));
    QTest::qWait(30);
    QCOMPARE(loading.shownSize(), QSize(60, 90));
}

void TestPageImageFitter::viewPaintsTheFittedImage()
{
    // Lines, which come out another way when they are scaled while being painted.
    const auto lines = [](QSize size) {
        QImage image(size, QImage::Format_RGB888);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                image.setPixelColor(x, y, QColor::fromRgb(x * 37 % 256, y * 91 % 256, 0));
            }
        }
        return image;
    };
    PdfDocumentModel model;
    model.setPages(recordsOfSizes({{501, 403}}), false);
    PdfRenderManager manager(nullptr, [&](const PdfCancelFlag & /*cancel*/,
                                          const QList<PdfSourcePage> & /*pages*/,
                                          const QList<QSize> &sizes, QStringList * /*errors*/) {
        return QList<QImage>{lines(sizes.constFirst())};
    });
    PdfDocumentView view;
    view.setModel(&model);
    view.setRenderManager(&manager);
    view.resize(402, 299);
    view.setZoomFactor(1.0);
    const QSignalSpy painted(&view, &PdfDocumentView::firstPagePainted);
    view.show();
    QTRY_COMPARE(painted.size(), 1);
    view.horizontalScrollBar()->setValue(0);
    view.verticalScrollBar()->setValue(0);
    const QSize shown(501, 403);
    const QSize asked(752, 605);
    const QImage expected = PageImageFitter::fittedTo(lines(asked), shown);
    const QRect seen(0, 0, 300, 200);
    QTRY_COMPARE(view.viewport()
                     ->grab()
                     .toImage()
                     .convertToFormat(QImage::Format_RGB32)
                     .copy(seen.translated(32, 32)),
                 expected.copy(seen));
}

QTEST_MAIN(TestPageImageFitter)
#include "tst_page_image_fitter.moc"
