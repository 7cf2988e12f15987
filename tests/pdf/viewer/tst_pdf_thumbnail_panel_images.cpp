#include "tests/pdf/viewer/shown_panel.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr QSize kA4Thumbnail{117, 166};

} // namespace

/// Which thumbnails the panel asks for, and what it does with them.
class TestPdfThumbnailPanelImages final : public QObject
{
    Q_OBJECT

private slots:
    void visibleRowsComeFirstAndThenTheRest();
    void targetSizeFollowsTheDisplaySize();
    void backgroundPassWaitsWhileManyRendersAreInFlight();
    void scrollingRequestsTheRowsInView();
    void currentPageRequestsTheRowsInView();
    void overtakenResultIsDropped();
    void rotatedPageGetsANewThumbnail();
    void undoOfARotationGetsTheOldThumbnail();
    void undoKeepsTheThumbnailsOfUnchangedPages();
    void insertedPagesGetThumbnails();
    void removedPagesAreForgotten();
    void failuresDoNotLoop();
    void hiddenPanelRequestsNothing();
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
    ShownPanel shown(a4Pages(200));
    shown.probe.hold();
    shown.panel.setModel(nullptr);
    shown.panel.setModel(&shown.model);
    shown.manager.clearCache();
    const auto pending = [&shown] { return shown.panel.thumbnails().pendingCount(); };
    QTRY_VERIFY(pending() >= 18);
    const int before = pending();
    QVERIFY(before < 18 + 8);
    QTest::qWait(250);
    QCOMPARE(pending(), before);
    shown.probe.release();
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 200);
}

void TestPdfThumbnailPanelImages::scrollingRequestsTheRowsInView()
{
    ShownPanel shown(a4Pages(2000));
    shown.list->verticalScrollBar()->setValue(shown.list->verticalScrollBar()->maximum());
    QTRY_VERIFY(shown.thumbnail(1999));
    QVERIFY(shown.panel.thumbnails().heldCount() < 100);
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
