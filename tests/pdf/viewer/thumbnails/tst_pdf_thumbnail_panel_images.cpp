// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_card_geometry.h"
#include "tests/pdf/viewer/shown_panel.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QPainter>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <algorithm>

namespace {

constexpr QSize kA4Thumbnail{117, 166};

/// The height of a panel that has as many rows in view, the last of them only in part.
int panelHeightForRows(int rows)
{
    constexpr int kDropZoneAndMargins = 180;
    constexpr int kSpacing = 2;
    return kDropZoneAndMargins + rows * (kThumbnailRowHeight + kSpacing) - kThumbnailRowHeight / 2;
}

QTimer *generationTimer(const PdfThumbnailPanel &panel)
{
    return panel.findChild<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

/// Which thumbnails the panel asks for, and what it does with them.
class TestPdfThumbnailPanelImages final : public QObject
{
    Q_OBJECT

private slots:
    void visibleRowsComeFirstAndThenTheRest();
    void targetSizeFollowsTheDisplaySize();
    void backgroundPassWaitsWhileManyRendersAreInFlight();
    void twoRowsAboveAndFourBelowTheViewAreRequested_data();
    void twoRowsAboveAndFourBelowTheViewAreRequested();
    void rowsScrolledIntoViewOvertakeTheBackgroundPass();
    void scrollingRequestsTheRowsInView();
    void higherPanelRequestsTheRowsInView();
    void currentPageRequestsTheRowsInView();
    void overtakenResultIsDropped();
    void failedPageIsTriedAgainWhenItComesBack();
    void rotatedPageGetsANewThumbnail();
    void undoOfARotationGetsTheOldThumbnail();
    void undoKeepsTheThumbnailsOfUnchangedPages();
    void insertedPagesGetThumbnails();
    void removedPagesAreForgotten();
    void failuresDoNotLoop();
    void hiddenPanelRequestsNothing();
    void panelWithoutAManagerWaits();
    void resultsOfAFormerManagerAreIgnored();
    void cancelledWorkIsRestarted();
    void replacedDocumentAfterACancelGetsItsThumbnails();
};

void TestPdfThumbnailPanelImages::visibleRowsComeFirstAndThenTheRest()
{
    ShownPanel shown(a4Pages(60));
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 60);
    const QList<RenderProbe::Render> renders = shown.probe.renders();
    QCOMPARE(renders.size(), 60);
    // Three rows are in view, and four more are asked for with them.
    for (int i = 0; i < 6; ++i) {
        QVERIFY2(renders.at(i).pageIndex < 8, qPrintable(QString::number(i)));
    }
}

void TestPdfThumbnailPanelImages::targetSizeFollowsTheDisplaySize()
{
    ShownPanel shown({{595, 842}, {842, 595}});
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 2);
    QVERIFY(shown.probe.hasRendered(0, kA4Thumbnail));
    QVERIFY(shown.probe.hasRendered(1, QSize(136, 96)));
}

void TestPdfThumbnailPanelImages::backgroundPassWaitsWhileManyRendersAreInFlight()
{
    // Six rows are in view and four below them are asked for with them; a batch makes it 18.
    ShownPanel shown({}, {210, panelHeightForRows(6)});
    shown.probe.hold();
    shown.model.setPages(recordsOfSizes(a4Pages(200)), false);
    const auto pending = [&shown] { return shown.panel.thumbnails().pendingCount(); };
    QTRY_COMPARE(pending(), 18);

    const QTimer *timer = generationTimer(shown.panel);
    QVERIFY(timer);
    QList<int> intervals;
    connect(timer, &QTimer::timeout, &shown.panel,
            [&] { intervals.append(timer->isActive() ? timer->interval() : -1); });
    QTRY_VERIFY(intervals.size() >= 4);
    QCOMPARE(intervals.first(4), (QList<int>{50, 50, 50, 50}));
    QCOMPARE(pending(), 18);
    shown.probe.release();
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 200);
}

void TestPdfThumbnailPanelImages::twoRowsAboveAndFourBelowTheViewAreRequested_data()
{
    QTest::addColumn<int>("topRow");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("last");
    // Three rows are in view.
    QTest::newRow("start") << 0 << 0 << 6;
    QTest::newRow("second row") << 1 << 0 << 7;
    QTest::newRow("middle") << 50 << 48 << 56;
    QTest::newRow("near the end") << 95 << 93 << 99;
    QTest::newRow("end") << 97 << 95 << 99;
}

void TestPdfThumbnailPanelImages::twoRowsAboveAndFourBelowTheViewAreRequested()
{
    QFETCH(int, topRow);
    ShownPanel shown({}, {210, panelHeightForRows(3)});
    shown.probe.hold();
    // The rows in view only.
    generationTimer(shown.panel)->blockSignals(true);
    shown.model.setPages(recordsOfSizes(a4Pages(100)), false);
    QTRY_VERIFY(shown.panel.thumbnails().pendingCount() > 0);
    shown.list->scrollTo(shown.model.index(topRow), QAbstractItemView::PositionAtTop);
    shown.panel.restartRequests();
    QCOMPARE(shown.panel.thumbnails().pendingCount(), 0);
    QTRY_VERIFY(shown.panel.thumbnails().pendingCount() > 0);
    QList<int> rows;
    for (int row = 0; row < 100; ++row) {
        if (shown.panel.thumbnails().isPending(shown.model.pageAt(row)->id)) {
            rows.append(row);
        }
    }
    QTEST(rows.constFirst(), "first");
    QTEST(rows.constLast(), "last");
    QCOMPARE(rows.size(), rows.constLast() - rows.constFirst() + 1);
}

void TestPdfThumbnailPanelImages::rowsScrolledIntoViewOvertakeTheBackgroundPass()
{
    ShownPanel shown({}, {210, panelHeightForRows(6)});
    shown.probe.hold();
    shown.model.setPages(recordsOfSizes(a4Pages(200)), false);
    QTRY_COMPARE(shown.panel.thumbnails().pendingCount(), 18);
    // Rows 10 to 17 were asked for in the background and have to wait.
    shown.list->verticalScrollBar()->setValue(shown.list->verticalScrollBar()->maximum());
    QTRY_VERIFY(shown.panel.thumbnails().isPending(200));
    shown.probe.release();
    QTRY_VERIFY(shown.thumbnail(199) && shown.thumbnail(17));

    QList<int> order;
    for (const RenderProbe::Render &render : shown.probe.renders()) {
        order.append(render.pageIndex);
    }
    qsizetype lastInView = 0;
    for (int row = 194; row < 200; ++row) {
        QVERIFY(order.contains(row));
        lastInView = std::max(lastInView, order.indexOf(row));
    }
    const auto isBackground = [](int row) { return row >= 10 && row < 18; };
    const auto earlier = std::count_if(order.cbegin(), order.cbegin() + lastInView, isBackground);
    // Other threads may begin with the next pages while one begins with the last in view.
    QVERIFY2(earlier < 4, qPrintable(QString::number(earlier)));
}

void TestPdfThumbnailPanelImages::scrollingRequestsTheRowsInView()
{
    ShownPanel shown(a4Pages(2000));
    shown.list->verticalScrollBar()->setValue(shown.list->verticalScrollBar()->maximum());
    QTRY_VERIFY(shown.thumbnail(1999));
    QVERIFY(shown.panel.thumbnails().heldCount() < 100);
}

void TestPdfThumbnailPanelImages::higherPanelRequestsTheRowsInView()
{
    ShownPanel shown({}, {210, panelHeightForRows(2)});
    shown.probe.hold();
    // The rows in view only.
    generationTimer(shown.panel)->blockSignals(true);
    shown.model.setPages(recordsOfSizes(a4Pages(100)), false);
    QTRY_VERIFY(shown.panel.thumbnails().pendingCount() > 0);
    const auto isPending = [&shown](int row) {
        return shown.panel.thumbnails().isPending(shown.model.pageAt(row)->id);
    };
    QVERIFY(!isPending(9));
    shown.panel.resize(210, panelHeightForRows(10));
    QTRY_VERIFY(isPending(9));
    QVERIFY(!isPending(20));
}

void TestPdfThumbnailPanelImages::currentPageRequestsTheRowsInView()
{
    ShownPanel shown(a4Pages(2000));
    shown.panel.setCurrentPage(1000);
    QTRY_VERIFY(shown.thumbnail(1000));
    QVERIFY(!shown.thumbnail(500));
}

void TestPdfThumbnailPanelImages::overtakenResultIsDropped()
{
    ShownPanel shown({{595, 842}});
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 1);
    shown.probe.hold();
    shown.panel.setModel(nullptr);
    shown.manager.clearCache();
    shown.probe.forgetRenders();
    shown.panel.setModel(&shown.model);
    QTRY_COMPARE(shown.probe.renders().size(), 1);
    QTRY_COMPARE(shown.panel.thumbnails().pendingCount(), 1);
    const QSignalSpy rendered(&shown.manager, &PdfRenderManager::pageRendered);
    shown.model.rotatePages({1}, 90);
    QTRY_COMPARE(shown.probe.renders().size(), 2);
    shown.probe.release();
    QTRY_COMPARE(rendered.size(), 2);
    QCOMPARE(shown.thumbnail(0)->size(), QSize(136, 96));
    QCOMPARE(shown.panel.thumbnails().heldCount(), 1);
}

void TestPdfThumbnailPanelImages::failedPageIsTriedAgainWhenItComesBack()
{
    ShownPanel shown({});
    generationTimer(shown.panel)->blockSignals(true);
    shown.probe.setFailing(0, true);
    shown.model.setPages(recordsOfSizes(a4Pages(200)), false);
    QTRY_VERIFY(shown.panel.thumbnails().hasFailed(1));
    shown.probe.setFailing(0, false);
    shown.list->verticalScrollBar()->setValue(shown.list->verticalScrollBar()->maximum());
    QTRY_VERIFY(shown.thumbnail(199));
    shown.list->verticalScrollBar()->setValue(0);
    QTRY_VERIFY(shown.thumbnail(0));
}

void TestPdfThumbnailPanelImages::rotatedPageGetsANewThumbnail()
{
    ShownPanel shown(a4Pages(3));
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 3);
    shown.model.rotatePages({2}, -90);
    // Until the new image comes, the old one is turned.
    QCOMPARE(shown.thumbnail(1)->size(), QSize(166, 117));
    QTRY_COMPARE(shown.thumbnail(1)->size(), QSize(136, 96));
    QCOMPARE(shown.probe.renderCount(1), 2);
    QCOMPARE(shown.probe.renderCount(0), 1);
    QCOMPARE(shown.probe.renders().constLast().rotation, 270);
}

void TestPdfThumbnailPanelImages::undoOfARotationGetsTheOldThumbnail()
{
    ShownPanel shown(a4Pages(3));
    const QList<PdfPageRecord> before = shown.model.pages();
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 3);
    shown.model.rotatePages({2}, 90);
    QTRY_COMPARE(shown.thumbnail(1)->size(), QSize(136, 96));
    shown.model.setPages(before, false);
    QVERIFY(!shown.thumbnail(1));
    QTRY_VERIFY(shown.thumbnail(1));
    QCOMPARE(shown.thumbnail(1)->size(), kA4Thumbnail);
}

void TestPdfThumbnailPanelImages::undoKeepsTheThumbnailsOfUnchangedPages()
{
    ShownPanel shown(a4Pages(3));
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 3);
    const QSignalSpy rendered(&shown.manager, &PdfRenderManager::pageRendered);
    shown.model.setPages(shown.model.pages(), true);
    QVERIFY(shown.thumbnail(0) && shown.thumbnail(1) && shown.thumbnail(2));
    QTest::qWait(100);
    QVERIFY(shown.thumbnail(0) && shown.thumbnail(1) && shown.thumbnail(2));
    QCOMPARE(rendered.size(), 0);
}

void TestPdfThumbnailPanelImages::insertedPagesGetThumbnails()
{
    ShownPanel shown(a4Pages(3));
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 3);
    shown.model.insertBlankPage(1, {842, 595});
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 4);
    QCOMPARE(shown.thumbnail(1)->size(), QSize(136, 96));
    shown.model.duplicatePages({1});
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 5);
    QCOMPARE(shown.probe.renderCount(0), 1);
}

void TestPdfThumbnailPanelImages::removedPagesAreForgotten()
{
    ShownPanel shown(a4Pages(10));
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 10);
    shown.model.removePages({1, 2, 3, 4});
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 6);
}

void TestPdfThumbnailPanelImages::failuresDoNotLoop()
{
    ShownPanel shown(a4Pages(3));
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 3);
    shown.probe.setFailing(1, true);
    shown.model.rotatePages({1, 2, 3}, 90);
    QTRY_VERIFY(shown.panel.thumbnails().hasFailed(2));
    QTest::qWait(150);
    shown.panel.setCurrentPage(2);
    QTest::qWait(150);
    QCOMPARE(shown.probe.renderCount(1), 2);
}

void TestPdfThumbnailPanelImages::hiddenPanelRequestsNothing()
{
    ShownPanel shown(a4Pages(200));
    shown.panel.hide();
    QTRY_COMPARE(shown.panel.thumbnails().pendingCount(), 0);
    const int held = shown.panel.thumbnails().heldCount();
    QVERIFY(held < 200);
    shown.model.rotatePages({1}, 90);
    QTest::qWait(150);
    QCOMPARE(shown.panel.thumbnails().pendingCount(), 0);
    QVERIFY(shown.panel.thumbnails().heldCount() <= held);
    shown.panel.show();
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 200);
}

void TestPdfThumbnailPanelImages::panelWithoutAManagerWaits()
{
    ShownPanel shown(a4Pages(3));
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 3);
    shown.panel.setRenderManager(nullptr);
    shown.model.rotatePages({1, 2}, 90);
    const qsizetype renders = shown.probe.renders().size();
    QTest::qWait(100);
    QCOMPARE(shown.panel.thumbnails().pendingCount(), 0);
    QCOMPARE(shown.probe.renders().size(), renders);
    QVERIFY(!shown.picture().isNull());
    shown.panel.setRenderManager(&shown.manager);
    QTRY_COMPARE(shown.thumbnail(0)->size(), QSize(136, 96));
    QTRY_COMPARE(shown.thumbnail(1)->size(), QSize(136, 96));
}

void TestPdfThumbnailPanelImages::resultsOfAFormerManagerAreIgnored()
{
    RenderProbe probe;
    PdfRenderManager manager(nullptr, probe.function());
    const auto released = qScopeGuard([&probe] { probe.release(); });
    ShownPanel shown({});
    shown.probe.hold();
    probe.hold();
    shown.model.setPages(recordsOfSizes(a4Pages(3)), false);
    QTRY_COMPARE(shown.panel.thumbnails().pendingCount(), 3);
    QSignalSpy formerRendered(&shown.manager, &PdfRenderManager::pageRendered);
    // The requests of both managers bear the same numbers.
    shown.panel.setRenderManager(&manager);
    QTRY_COMPARE(shown.panel.thumbnails().pendingCount(), 3);
    shown.probe.release();
    QTRY_COMPARE(formerRendered.size(), 3);
    QCOMPARE(shown.panel.thumbnails().heldCount(), 0);
    QCOMPARE(shown.panel.thumbnails().pendingCount(), 3);
    probe.release();
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 3);
    shown.panel.setRenderManager(nullptr);
}

void TestPdfThumbnailPanelImages::cancelledWorkIsRestarted()
{
    ShownPanel shown(a4Pages(30));
    shown.probe.hold();
    shown.panel.setModel(nullptr);
    shown.manager.clearCache();
    shown.panel.setModel(&shown.model);
    QTRY_VERIFY(shown.panel.thumbnails().pendingCount() >= 18);
    shown.manager.cancelAll();
    shown.panel.restartRequests();
    shown.probe.release();
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 30);
}

void TestPdfThumbnailPanelImages::replacedDocumentAfterACancelGetsItsThumbnails()
{
    ShownPanel shown(a4Pages(300));
    for (int document = 1; document <= 5; ++document) {
        shown.probe.hold();
        shown.manager.cancelAll();
        shown.manager.clearCache();
        QList<PdfPageRecord> records = recordsOfSizes(a4Pages(300));
        for (PdfPageRecord &record : records) {
            record.id += static_cast<PdfPageId>(1000 * document);
        }
        shown.model.setPages(records, false);
        QTRY_VERIFY(shown.panel.thumbnails().pendingCount() >= 18);
        shown.probe.release();
    }
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 300);
}

QTEST_MAIN(TestPdfThumbnailPanelImages)
#include "tst_pdf_thumbnail_panel_images.moc"
