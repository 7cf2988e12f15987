// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_view.h"

#include <QDeadlineTimer>
#include <QMap>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QThread>

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace {

QSize targetOf(const ShownView &shown, int row)
{
    return renderTargetSize(shown.layout().pages.at(row).size(), kMinimumRenderScale);
}

QColor colorInViewport(ShownView &shown, QPoint point)
{
    return shown.view.viewport()->grab().toImage().pixelColor(point);
}

} // namespace

/// Which page images the document view asks for, takes and lets go.
class TestPdfDocumentViewImages final : public QObject
{
    Q_OBJECT

private slots:
    void pagesWithinOneViewportHeightAreRequested();
    void visiblePagesAreRequestedFirstFromTheCentre();
    void pagesInViewCanBeRequestedAtOnce();
    void heldPagesAreNotRequestedAgain();
    void zoomRequestsTheNewSizeAndKeepsTheOldImage();
    void largestImagesAreBounded();
    void turnedPageSwapsItsRectangleAndIsRequestedAnew();
    void squarePageTurnedInFlightShowsNoOldPicture();
    void insertedPagesAreRequested();
    void resetRequestsEverythingAnew();
    void supersededResultIsIgnored();
    void foreignResultIsIgnored();
    void failedPageIsAskedForAgainOnlyAtTheNextPass();
    void farImagesAreLetGo();
    void imageThatArrivesFarAwayIsLetGo();
    void jumpingThroughAThousandPagesShowsTheLastPromptly();
    void scrollingBackWhileRendersWaitShowsThePage();
    void cancelledRequestsAreMadeAgain();
    void hiddenViewWaitsUntilItIsShown();
    void laterRenderManagerIsAsked();
};

void TestPdfDocumentViewImages::pagesWithinOneViewportHeightAreRequested()
{
    ShownView shown(a4Pages(50), {864, 1000});
    shown.view.setZoomFactor(0.5);
    shown.view.goToPage(20);
    QTest::qWait(100);
    shown.probe.forgetRenders();
    shown.manager.clearCache();

    shown.view.goToPage(30);
    const PageLayout layout = shown.layout();
    const QRect wanted(0, shown.scrollY() - 1000, 864, 3000);
    const auto [first, end] = pagesMeeting(layout, wanted);
    QVERIFY(first > 24);
    QTRY_COMPARE(shown.probe.renders().size(), end - first);
    QTest::qWait(50);
    for (int row = 0; row < 50; ++row) {
        QCOMPARE(shown.probe.renderCount(row), row >= first && row < end ? 1 : 0);
    }
    QVERIFY(shown.probe.hasRendered(30, targetOf(shown, 30)));
}

void TestPdfDocumentViewImages::visiblePagesAreRequestedFirstFromTheCentre()
{
    ShownView shown(a4Pages(50), {864, 1000});
    shown.view.setZoomFactor(0.5);
    shown.view.goToPage(20);
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(100);
    const QSignalSpy rendered(&shown.manager, &PdfRenderManager::pageRendered);
    shown.scrollToY(shown.layout().pages.at(40).center().y() - 490);
    QTRY_COMPARE(rendered.size(), 7);
    // Identifiers of requests are issued in order.
    QMap<quint64, PdfPageId> requests;
    for (const QList<QVariant> &call : rendered) {
        requests.insert(call.at(3).toULongLong(), call.at(0).value<PdfPageId>() - 1);
    }
    QCOMPARE(requests.values(), QList<PdfPageId>({40, 41, 39, 42, 38, 43, 37}));
}

void TestPdfDocumentViewImages::pagesInViewCanBeRequestedAtOnce()
{
    ShownView shown(a4Pages(3));
    QVERIFY(shown.waitForVisiblePages());
    const qsizetype before = shown.probe.renders().size();
    shown.model.setPages(recordsOfSizes(a4Pages(5)), false);
    shown.manager.clearCache();
    shown.view.requestPagesInView();
    // No pass of the event loop comes in between.
    const QDeadlineTimer patience(5000);
    while (shown.probe.renders().size() == before && !patience.hasExpired()) {
        QThread::msleep(1);
    }
    QVERIFY(shown.probe.renders().size() > before);
}

void TestPdfDocumentViewImages::heldPagesAreNotRequestedAgain()
{
    ShownView shown(a4Pages(5));
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.manager.clearCache();
    shown.probe.forgetRenders();
    shown.scrollToY(5);
    shown.scrollToY(0);
    shown.view.viewport()->update();
    QTest::qWait(50);
    QVERIFY(shown.probe.renders().isEmpty());
}

void TestPdfDocumentViewImages::zoomRequestsTheNewSizeAndKeepsTheOldImage()
{
    ShownView shown(a4Pages(1));
    shown.view.setZoomFactor(1.0);
    QVERIFY(shown.waitForVisiblePages());
    QTRY_COMPARE(colorInViewport(shown, {432, 300}), RenderProbe::colorOf(0));
    shown.probe.hold();
    shown.view.setZoomFactor(1.5);
    QTRY_VERIFY(shown.probe.hasRendered(0, renderTargetSize({893, 1263}, kMinimumRenderScale)));
    QCOMPARE(colorInViewport(shown, {432, 300}), RenderProbe::colorOf(0));
}

void TestPdfDocumentViewImages::largestImagesAreBounded()
{
    ShownView shown({{14400, 200}, {5000, 5000}});
    shown.view.setZoomFactor(5.0);
    QTRY_VERIFY(shown.probe.hasRendered(0, QSize(8192, 114)));
    shown.view.goToPage(1);
    QTRY_VERIFY(shown.probe.hasRendered(1, QSize(5793, 5793)));
}

void TestPdfDocumentViewImages::turnedPageSwapsItsRectangleAndIsRequestedAnew()
{
    ShownView shown(a4Pages(2));
    shown.view.setZoomFactor(1.0);
    QVERIFY(shown.waitForVisiblePages());
    QTRY_COMPARE(colorInViewport(shown, {432, 300}), RenderProbe::colorOf(0));
    shown.probe.hold();
    shown.model.rotatePages({1}, 90);
    QCoreApplication::processEvents();
    QCOMPARE(shown.pageInViewport(0).size(), QSize(842, 595));
    QCOMPARE(colorInViewport(shown, shown.pageInViewport(0).topLeft() + QPoint(9, 9)),
             QColor(Qt::white));
    const QSize turned = renderTargetSize({842, 595}, kMinimumRenderScale);
    QTRY_VERIFY(shown.probe.renders().contains({0, 90, turned}));
    shown.probe.release();
    QTRY_COMPARE(colorInViewport(shown, {432, 300}), RenderProbe::colorOf(0));
}

void TestPdfDocumentViewImages::squarePageTurnedInFlightShowsNoOldPicture()
{
    // Turned or not, the page has one size: only what was asked for tells the pictures apart.
    std::mutex mutex;
    std::condition_variable changed;
    QSet<int> held;
    QSet<int> begun;
    const auto colourOf = [](int rotation) { return QColor(rotation == 0 ? Qt::red : Qt::blue); };
    PdfRenderManager manager(nullptr, [&](const PdfCancelFlag & /*cancel*/,
                                          const QList<PdfSourcePage> &pages,
                                          const QList<QSize> &sizes, QStringList * /*errors*/) {
        std::unique_lock lock(mutex);
        const int rotation = pages.constFirst().rotation;
        begun.insert(rotation);
        changed.wait(lock, [&] { return !held.contains(rotation); });
        QImage image(sizes.constFirst(), QImage::Format_RGB32);
        image.fill(colourOf(rotation));
        return QList<QImage>{image};
    });
    const auto setHeld = [&](const QSet<int> &rotations) {
        const std::lock_guard lock(mutex);
        held = rotations;
        changed.notify_all();
    };
    const auto hasBegun = [&](int rotation) {
        const std::lock_guard lock(mutex);
        return begun.contains(rotation);
    };
    const auto letAllGo = qScopeGuard([&] { setHeld({}); });
    ShownView shown({{500, 500}});
    setHeld({0, 90});
    shown.view.setRenderManager(&manager);
    shown.model.setPages(recordsOfSizes({{500, 500}}), false);
    const QPoint centre = shown.pageInViewport(0).center();
    QTRY_VERIFY(hasBegun(0));
    shown.model.rotatePages({1}, 90);
    QTRY_VERIFY(hasBegun(90));

    const QSignalSpy rendered(&manager, &PdfRenderManager::pageRendered);
    setHeld({90});
    QTRY_COMPARE(rendered.size(), 1);
    QTest::qWait(50);
    QVERIFY(colorInViewport(shown, centre) != colourOf(0));
    setHeld({});
    QTRY_COMPARE(colorInViewport(shown, centre), colourOf(90));
}

void TestPdfDocumentViewImages::insertedPagesAreRequested()
{
    ShownView shown(a4Pages(3));
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.model.insertBlankPage(0, {300, 300});
    QTRY_COMPARE(shown.probe.renderCount(-1), 1);
}

void TestPdfDocumentViewImages::resetRequestsEverythingAnew()
{
    ShownView shown(a4Pages(3));
    QVERIFY(shown.waitForVisiblePages());
    QTRY_COMPARE(colorInViewport(shown, {432, 300}), RenderProbe::colorOf(0));
    shown.manager.clearCache();
    shown.probe.forgetRenders();
    shown.probe.hold();
    shown.model.setPages(recordsOfSizes(a4Pages(3)), false);
    QVERIFY(colorInViewport(shown, {100, 100}) != RenderProbe::colorOf(0));
    QTRY_COMPARE(shown.probe.renderCount(0), 1);
}

void TestPdfDocumentViewImages::supersededResultIsIgnored()
{
    ShownView shown(a4Pages(1));
    shown.view.setZoomFactor(1.0);
    QTRY_VERIFY(shown.probe.hasRendered(0, targetOf(shown, 0)));
    QTRY_COMPARE(colorInViewport(shown, {432, 150}), RenderProbe::colorOf(0));
    shown.probe.hold();
    shown.model.rotatePages({1}, 180);
    const QSize oldSize = targetOf(shown, 0);
    QTRY_VERIFY(shown.probe.renders().contains({0, 180, oldSize}));
    const QSignalSpy rendered(&shown.manager, &PdfRenderManager::pageRendered);
    shown.view.setZoomFactor(1.1);
    const QSize newSize = targetOf(shown, 0);
    QTRY_VERIFY(shown.probe.renders().contains({0, 180, newSize}));
    QVERIFY(colorInViewport(shown, {432, 150}) != RenderProbe::colorOf(0));

    const auto isDone = [&rendered](QSize size) {
        return std::any_of(rendered.cbegin(), rendered.cend(), [size](const QList<QVariant> &call) {
            return call.at(1).toSize() == size;
        });
    };
    bool paintedTooEarly = false;
    connect(&shown.manager, &PdfRenderManager::pageRendered, &shown.view,
            [&](PdfPageId, QSize size) {
                paintedTooEarly = paintedTooEarly ||
                                  (size == oldSize && !isDone(newSize) &&
                                   colorInViewport(shown, {432, 150}) == RenderProbe::colorOf(0));
            });
    shown.probe.release();
    QTRY_VERIFY(isDone(oldSize) && isDone(newSize));
    QVERIFY(!paintedTooEarly);
    QTRY_COMPARE(colorInViewport(shown, {432, 150}), RenderProbe::colorOf(0));
}

void TestPdfDocumentViewImages::foreignResultIsIgnored()
{
    ShownView shown(a4Pages(1));
    shown.view.setZoomFactor(1.0);
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.manager.clearCache();
    shown.probe.forgetRenders();
    shown.probe.hold();
    shown.model.setPages(recordsOfSizes(a4Pages(1)), false);
    const QSize size = targetOf(shown, 0);
    QTRY_VERIFY(shown.probe.hasRendered(0, size));
    QImage foreign(size, QImage::Format_RGB32);
    foreign.fill(Qt::black);
    constexpr quint64 kForeignRequest = 7777;
    emit shown.manager.pageRendered(1, size, PdfRenderPurpose::PageView, kForeignRequest,
                                    shown.model.documentRevision(), foreign);
    QVERIFY(colorInViewport(shown, {432, 150}) != QColor(Qt::black));
    shown.probe.release();
    QTRY_COMPARE(colorInViewport(shown, {432, 150}), RenderProbe::colorOf(0));
}

void TestPdfDocumentViewImages::failedPageIsAskedForAgainOnlyAtTheNextPass()
{
    ShownView shown(a4Pages(3));
    shown.view.setZoomFactor(1.0);
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.manager.clearCache();
    shown.probe.forgetRenders();
    shown.probe.setFailing(0, true);
    shown.probe.setFailing(1, true);
    const QSignalSpy failed(&shown.manager, &PdfRenderManager::pageRenderFailed);
    shown.model.setPages(recordsOfSizes(a4Pages(3)), false);
    QTRY_COMPARE(failed.size(), 2);
    QTest::qWait(100);
    QCOMPARE(shown.probe.renderCount(0), 1);
    QCOMPARE(shown.probe.renderCount(1), 1);

    shown.probe.setFailing(0, false);
    shown.scrollToY(1);
    QTRY_COMPARE(shown.probe.renderCount(0), 2);
    QTRY_COMPARE(colorInViewport(shown, {432, 150}), RenderProbe::colorOf(0));
}

void TestPdfDocumentViewImages::farImagesAreLetGo()
{
    ShownView shown(a4Pages(50));
    shown.view.setZoomFactor(1.0);
    QVERIFY(shown.waitForVisiblePages());
    QTRY_COMPARE(colorInViewport(shown, {432, 150}), RenderProbe::colorOf(0));
    shown.view.goToPage(40);
    QVERIFY(shown.waitForVisiblePages());
    shown.manager.clearCache();
    shown.probe.forgetRenders();
    shown.view.goToPage(0);
    QTRY_COMPARE(shown.probe.renderCount(0), 1);
}

void TestPdfDocumentViewImages::imageThatArrivesFarAwayIsLetGo()
{
    // Row 18 begins at 2156: within reach of a viewport at 1200, far from one at the top.
    ShownView shown(QList<QSizeF>(50, QSizeF(100, 100)), {864, 600});
    shown.view.setZoomFactor(1.0);
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.probe.hold();
    shown.scrollToY(1200);
    QCoreApplication::processEvents();
    shown.scrollToY(0);
    QCoreApplication::processEvents();
    const QSignalSpy rendered(&shown.manager, &PdfRenderManager::pageRendered);
    shown.probe.release();
    QTRY_VERIFY(std::any_of(rendered.cbegin(), rendered.cend(), [](const QList<QVariant> &call) {
        return call.at(0).value<PdfPageId>() == 19;
    }));
    QTest::qWait(50);
    shown.manager.clearCache();
    shown.scrollToY(1200);
    QTRY_COMPARE(shown.probe.renderCount(18), 2);
}

void TestPdfDocumentViewImages::jumpingThroughAThousandPagesShowsTheLastPromptly()
{
    ShownView shown(a4Pages(1000));
    shown.view.setZoomFactor(1.0);
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.probe.forgetRenders();
    shown.probe.hold();
    for (int row = 0; row < 1000; row += 5) {
        shown.view.goToPage(row);
        QCoreApplication::processEvents();
    }
    shown.probe.release();
    QTRY_COMPARE(colorInViewport(shown, {432, 300}), RenderProbe::colorOf(995));
    QTRY_COMPARE(shown.probe.renderCount(994), 1);
    QVERIFY2(shown.probe.renders().size() < 20,
             qPrintable(QString::number(shown.probe.renders().size())));
}

void TestPdfDocumentViewImages::scrollingBackWhileRendersWaitShowsThePage()
{
    ShownView shown(a4Pages(200));
    shown.view.setZoomFactor(1.0);
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.probe.hold();
    for (int row = 10; row < 200; row += 10) {
        shown.view.goToPage(row);
        QCoreApplication::processEvents();
    }
    shown.view.goToPage(10);
    QCoreApplication::processEvents();
    shown.probe.release();
    QTRY_COMPARE(colorInViewport(shown, {432, 300}), RenderProbe::colorOf(10));
}

void TestPdfDocumentViewImages::cancelledRequestsAreMadeAgain()
{
    ShownView shown(a4Pages(3));
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.probe.hold();
    shown.view.setZoomFactor(1.0);
    const RenderProbe::Render wanted{0, 0, targetOf(shown, 0)};
    QTRY_VERIFY(shown.probe.renders().contains(wanted));
    shown.manager.cancelAll();
    shown.view.restartRequests();
    shown.probe.release();
    QTRY_COMPARE(shown.probe.renders().count(wanted), 2);
}

void TestPdfDocumentViewImages::hiddenViewWaitsUntilItIsShown()
{
    ShownView shown(a4Pages(3));
    QVERIFY(shown.waitForVisiblePages());
    QTest::qWait(50);
    shown.view.hide();
    shown.probe.forgetRenders();
    shown.model.rotatePages({1}, 90);
    QTest::qWait(50);
    QVERIFY(shown.probe.renders().isEmpty());
    shown.view.show();
    QTRY_COMPARE(shown.probe.renderCount(0), 1);
}

void TestPdfDocumentViewImages::laterRenderManagerIsAsked()
{
    RenderProbe probe;
    PdfDocumentModel model;
    model.setPages(recordsOfSizes(a4Pages(2)), false);
    PdfRenderManager manager(nullptr, probe.function());
    PdfDocumentView view;
    view.resize(500, 400);
    view.setModel(&model);
    view.show();
    QTest::qWait(20);
    view.setRenderManager(&manager);
    QTRY_VERIFY(probe.renderCount(0) > 0);
}

QTEST_MAIN(TestPdfDocumentViewImages)
#include "tst_pdf_document_view_images.moc"
