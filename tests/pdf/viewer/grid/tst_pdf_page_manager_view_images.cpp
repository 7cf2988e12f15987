// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/page_grid_zoom_control.h"
#include "tests/pdf/viewer/shown_grid.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QThread>

#include <algorithm>

namespace {

constexpr QSize kA4Thumbnail{164, 232};

/// Whether the image is of one colour only.
bool isPlain(const QImage &image)
{
    return image == image.copy(0, 0, 1, 1).scaled(image.size());
}

} // namespace

/// Which thumbnails the page grid asks for, and what it does with them.
class TestPdfPageManagerViewImages final : public QObject
{
    Q_OBJECT

private slots:
    void visiblePagesComeFirstAndOnlyTheNearbyOnesFollow();
    void targetSizeFitsThePage();
    void zoomRequestsTheVisiblePagesAnew();
    void zoomOfTheSameSizesRequestsNothing();
    void zoomingGoesOnWithTheImagesThereAre();
    void scrollingRequestsThePagesInView();
    void pagesThatPassByAreRequestedAfterAZoom();
    void failedPageIsTriedAgainWhenItComesBack();
    void rotatedPageGetsANewThumbnail();
    void insertedAndRestoredPagesGetThumbnails();
    void overtakenResultIsDropped();
    void failuresDoNotLoop();
    void hiddenGridRequestsNothing();
    void cancelledWorkIsRestarted();
    void requestsCarryTheRevision();
    void visiblePagesAreRequestedAtTheirPriority();
    void waitingAndFailedPagesShowATextEach();
};

void TestPdfPageManagerViewImages::visiblePagesComeFirstAndOnlyTheNearbyOnesFollow()
{
    ShownGrid shown(a4Pages(200));
    // Four columns and three lines are in view; one more screen follows.
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 24);
    QTest::qWait(300);
    QCOMPARE(shown.view.thumbnails().heldCount(), 24);
    const QList<RenderProbe::Render> renders = shown.probe.renders();
    for (int i = 0; i < 12; ++i) {
        QVERIFY2(renders.at(i).pageIndex < 12, qPrintable(QString::number(i)));
    }
}

void TestPdfPageManagerViewImages::targetSizeFitsThePage()
{
    ShownGrid shown({{595, 842}, {842, 595}, {100, 100}});
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    QVERIFY(shown.probe.hasRendered(0, kA4Thumbnail));
    QVERIFY(shown.probe.hasRendered(1, QSize(206, 146)));
    QVERIFY(shown.probe.hasRendered(2, QSize(206, 206)));
}

void TestPdfPageManagerViewImages::zoomRequestsTheVisiblePagesAnew()
{
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    shown.slider->setValue(160);
    QTRY_COMPARE(shown.thumbnail(0)->size(), QSize(328, 464));
    QCOMPARE(shown.probe.renderCount(0), 2);
    shown.slider->setValue(500);
    QTest::qWait(250);
    QCOMPARE(shown.probe.renderCount(0), 2);
}

void TestPdfPageManagerViewImages::zoomOfTheSameSizesRequestsNothing()
{
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    shown.slider->setValue(70);
    QTRY_COMPARE(shown.thumbnail(0)->size(), QSize(143, 203));
    const qsizetype renders = shown.probe.renders().size();
    const QSignalSpy rendered(&shown.manager, &PdfRenderManager::pageRendered);
    const qint64 layouts = shown.list->layoutCount();
    // The slider itself says nothing of a value that it has.
    auto *control = shown.view.findChild<PageGridZoomControl *>();
    QVERIFY(control != nullptr);
    emit control->zoomChanged(70);
    QCOMPARE(shown.list->layoutCount(), layouts);
    shown.manager.clearCache();
    QTest::qWait(300);
    QCOMPARE(shown.probe.renders().size(), renders);
    QCOMPARE(rendered.size(), 0);
    QCOMPARE(shown.list->layoutCount(), layouts);
}

void TestPdfPageManagerViewImages::zoomingGoesOnWithTheImagesThereAre()
{
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    const qsizetype renders = shown.probe.renders().size();
    shown.probe.hold();
    for (int zoom = 85; zoom <= 120; zoom += 5) {
        shown.slider->setValue(zoom);
        QCoreApplication::processEvents();
        QCOMPARE(shown.thumbnail(0)->size(), kA4Thumbnail);
        QCOMPARE(shown.picture().pixelColor(shown.cell(0).thumbnail.center()),
                 RenderProbe::colorOf(0));
    }
    // Only where the zoom comes to rest is anything rendered.
    QTRY_VERIFY(shown.probe.renders().size() > renders);
    shown.probe.release();
    QTRY_COMPARE(shown.thumbnail(2)->size(), QSize(246, 348));
    QCOMPARE(shown.probe.renders().size(), renders + 3);
}

void TestPdfPageManagerViewImages::scrollingRequestsThePagesInView()
{
    ShownGrid shown(a4Pages(3000));
    shown.list->verticalScrollBar()->setValue(shown.list->verticalScrollBar()->maximum());
    QTRY_VERIFY(shown.thumbnail(2999));
    QVERIFY(!shown.thumbnail(1500));
}

void TestPdfPageManagerViewImages::pagesThatPassByAreRequestedAfterAZoom()
{
    ShownGrid shown(a4Pages(400));
    QTRY_VERIFY(shown.thumbnail(0));
    const QSize before = shown.thumbnail(0)->size();
    shown.slider->setValue(100);
    QTRY_VERIFY(shown.thumbnail(0)->size() != before);
    QTRY_COMPARE(shown.view.thumbnails().pendingCount(), 0);
    shown.probe.hold();
    // Without a rest.
    QScrollBar *bar = shown.list->verticalScrollBar();
    const int start = bar->maximum() / 2;
    for (int step = 0; step < 60 && shown.view.thumbnails().pendingCount() == 0; ++step) {
        bar->setValue(start + step);
        QTest::qWait(5);
    }
    QVERIFY(shown.view.thumbnails().pendingCount() > 0);
}

void TestPdfPageManagerViewImages::failedPageIsTriedAgainWhenItComesBack()
{
    ShownGrid shown({});
    shown.probe.setFailing(0, true);
    shown.model.setPages(recordsOfSizes(a4Pages(400)), false);
    QTRY_VERIFY(shown.view.thumbnails().hasFailed(1));
    shown.probe.setFailing(0, false);
    shown.list->verticalScrollBar()->setValue(shown.list->verticalScrollBar()->maximum());
    QTRY_VERIFY(shown.thumbnail(399));
    QTRY_VERIFY(!shown.view.thumbnails().hasFailed(1));
    shown.list->verticalScrollBar()->setValue(0);
    QTRY_VERIFY(shown.thumbnail(0));
}

void TestPdfPageManagerViewImages::rotatedPageGetsANewThumbnail()
{
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    shown.model.rotatePages({2}, 90);
    QCOMPARE(shown.thumbnail(1)->size(), kA4Thumbnail.transposed());
    QTRY_COMPARE(shown.thumbnail(1)->size(), QSize(206, 146));
    QCOMPARE(shown.probe.renderCount(1), 2);
    QCOMPARE(shown.probe.renderCount(0), 1);
}

void TestPdfPageManagerViewImages::insertedAndRestoredPagesGetThumbnails()
{
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    const QList<PdfPageRecord> before = shown.model.pages();
    shown.model.insertBlankPage(0, {100, 100});
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 4);
    QCOMPARE(shown.thumbnail(0)->size(), QSize(206, 206));
    shown.model.removePages({1, 2});
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 2);
    shown.model.setPages(before, false);
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    QCOMPARE(shown.probe.renderCount(0), 1);
}

void TestPdfPageManagerViewImages::overtakenResultIsDropped()
{
    ShownGrid shown({{595, 842}});
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 1);
    shown.probe.hold();
    shown.model.rotatePages({1}, 90);
    QTRY_COMPARE(shown.probe.renders().size(), 2);
    QTRY_COMPARE(shown.view.thumbnails().pendingCount(), 1);
    shown.model.rotatePages({1}, 90);
    QTRY_COMPARE(shown.view.thumbnails().pendingCount(), 1);
    QTRY_COMPARE(shown.probe.renders().size(), 3);
    const QSignalSpy rendered(&shown.manager, &PdfRenderManager::pageRendered);
    shown.probe.release();
    QTRY_COMPARE(rendered.size(), 2);
    QCOMPARE(shown.thumbnail(0)->size(), kA4Thumbnail);
}

void TestPdfPageManagerViewImages::failuresDoNotLoop()
{
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    shown.probe.setFailing(1, true);
    shown.model.rotatePages({2}, 90);
    QTRY_VERIFY(shown.view.thumbnails().hasFailed(2));
    shown.view.resize(1000, 700);
    QTest::qWait(500);
    QCOMPARE(shown.probe.renderCount(1), 2);
}

void TestPdfPageManagerViewImages::hiddenGridRequestsNothing()
{
    RenderProbe probe;
    PdfDocumentModel model;
    model.setPages(recordsOfSizes(a4Pages(20)), false);
    PdfRenderManager manager(nullptr, probe.function());
    PdfPageManagerView view;
    view.setModel(&model);
    view.setRenderManager(&manager);
    QTest::qWait(300);
    QVERIFY(probe.renders().isEmpty());
    view.show();
    QTRY_VERIFY(view.thumbnails().heldCount() > 0);
}

void TestPdfPageManagerViewImages::cancelledWorkIsRestarted()
{
    ShownGrid shown(a4Pages(12));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 12);
    shown.probe.hold();
    shown.view.setModel(nullptr);
    shown.manager.clearCache();
    shown.view.setModel(&shown.model);
    QTRY_COMPARE(shown.view.thumbnails().pendingCount(), 12);
    shown.manager.cancelAll();
    shown.view.restartRequests();
    shown.probe.release();
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 12);
}

void TestPdfPageManagerViewImages::requestsCarryTheRevision()
{
    ShownGrid shown(a4Pages(3));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 3);
    QSignalSpy rendered(&shown.manager, &PdfRenderManager::pageRendered);
    shown.model.rotatePages({1}, 90);
    QTRY_COMPARE(rendered.size(), 1);
    QCOMPARE(rendered.at(0).at(2).value<PdfRenderPurpose>(), PdfRenderPurpose::Thumbnail);
    QCOMPARE(rendered.at(0).at(4).toULongLong(), shown.model.documentRevision());
}

void TestPdfPageManagerViewImages::visiblePagesAreRequestedAtTheirPriority()
{
    constexpr int kPages = 40;
    ShownGrid shown(a4Pages(kPages), {2100, 1200});
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), kPages);
    shown.view.setModel(nullptr);
    shown.manager.clearCache();
    shown.probe.hold();
    shown.probe.forgetRenders();

    // Pages of another view, told apart by their numbers.
    const auto requestOther = [&shown](int number, int priority) {
        PdfPageRecord record = shown.model.pages().constFirst();
        record.sourcePageIndex = number;
        (void)shown.manager.requestPages({record}, {QSize(10, 10)}, PdfRenderPurpose::PageView, 1,
                                         priority);
    };
    const int threads = std::clamp(QThread::idealThreadCount() - 1, 2, 4);
    for (int i = 0; i < threads; ++i) {
        requestOther(900 + i, 20);
    }
    QTRY_COMPARE(shown.probe.renders().size(), threads);
    constexpr int kUrgent = 1000;
    constexpr int kIdle = 2000;
    requestOther(kIdle, 7);
    shown.view.setModel(&shown.model);
    QTRY_COMPARE(shown.view.thumbnails().pendingCount(), kPages);
    requestOther(kUrgent, 9);
    shown.probe.release();
    QTRY_COMPARE(shown.probe.renders().size(), threads + kPages + 2);

    const QList<RenderProbe::Render> renders = shown.probe.renders();
    const auto placeOf = [&renders](int number) {
        const auto isPage = [number](const auto &render) { return render.pageIndex == number; };
        return std::find_if(renders.cbegin(), renders.cend(), isPage) - renders.cbegin();
    };
    // Several threads may begin a call each at the same moment.
    QVERIFY(placeOf(kUrgent) < placeOf(kPages / 2));
    QVERIFY(placeOf(kIdle) > placeOf(kPages / 2));
}

void TestPdfPageManagerViewImages::waitingAndFailedPagesShowATextEach()
{
    ShownGrid shown(a4Pages(2));
    QTRY_COMPARE(shown.view.thumbnails().heldCount(), 2);
    shown.view.setModel(nullptr);
    shown.manager.clearCache();
    shown.probe.hold();
    shown.probe.setFailing(0, true);
    shown.view.setModel(&shown.model);
    QTRY_COMPARE(shown.view.thumbnails().pendingCount(), 2);
    const QRect text =
        QRect(0, 0, 120, 20).translated(shown.cell(0).thumbnail.center() - QPoint(60, 10));
    const QImage waiting = shown.picture().copy(text);
    QVERIFY(!isPlain(waiting));
    shown.probe.release();
    QTRY_VERIFY(shown.view.thumbnails().hasFailed(1));
    const QImage failed = shown.picture().copy(text);
    QVERIFY(!isPlain(failed));
    QVERIFY(failed != waiting);
    QTRY_VERIFY(shown.thumbnail(1));
}

QTEST_MAIN(TestPdfPageManagerViewImages)
#include "tst_pdf_page_manager_view_images.moc"
