// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_view.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

#include <limits>
#include <memory>

/// Layout, zoom, pages and positions of the document view.
class TestPdfDocumentView final : public QObject
{
    Q_OBJECT

private slots:
    void startsInFitWidthAtTheFirstPage();
    void zoomIsBounded_data();
    void zoomIsBounded();
    void zoomInAtTheLimitEmitsNothing();
    void zoomSlotsMultiplyAndDivide();
    void zoomSignalCarriesTheFactorOnce();
    void choosingAZoomEndsTheFitMode();
    void choosingTheFittedZoomEndsTheFitModeSilently();
    void fitWidthUsesTheViewportWithoutItsMargins();
    void fitPageShowsTheWholePageAtItsTop();
    void fittingWithoutPagesGivesTheNaturalSize_data();
    void fittingWithoutPagesGivesTheNaturalSize();
    void resizingKeepsADocumentFitted_data();
    void resizingKeepsADocumentFitted();
    void resizingKeepsAChosenZoom();
    void mixedPagesAreCentredInTheColumn();
    void scrollRangesFollowTheContent();
    void zoomingKeepsTheRelativePosition();
    void fitThatNeedsNoScrollBarOnceItHasGivenWaySettles();
    void goToPagePutsThePageBelowTheTopMargin();
    void goToPageOutOfRangeIsIgnored();
    void goToPageFitsTheNewPage();
    void goToPageAnnouncesThePageOnce();
    void goToPageWithoutAModelIsIgnored();
    void scrollingUpdatesTheCurrentPage();
    void upperPageStaysCurrentOnATie();
    void zoomingAnnouncesNoPagesOnTheWay();

    void resetStartsAtTheFirstPage();
    void passAfterAResetFindsThePageInView();
    void pageGoneToAfterAResetCounts();
    void pageMadeCurrentStaysWithoutScrolling();
    void insertedRowsKeepTheRelativePosition();
    void movedRowsAreLaidOutAgain();
    void removingTheCurrentPageAtTheEndKeepsACurrentPage();
    void checkStateChangesNothing();
    void manyRemovedRowsAreLaidOutOnce();
    void manyTurnedPagesAreLaidOutOnce();
    void queriesSeeChangesOfTheSamePass();
    void scrollingBeforeALayoutIsDueCounts();
    void anotherModelReplacesTheOld();
    void deletedModelLeavesAnEmptyView();
    void tenThousandPagesScrollToTheEnd();
};

void TestPdfDocumentView::startsInFitWidthAtTheFirstPage()
{
    const PdfDocumentView view;
    QCOMPARE(view.fitMode(), PdfDocumentView::FitMode::Width);
    QCOMPARE(view.zoomFactor(), 1.0);
    QCOMPARE(view.currentPage(), 0);
    QCOMPARE(view.focusPolicy(), Qt::StrongFocus);
    QCOMPARE(view.frameShape(), QFrame::NoFrame);
}

void TestPdfDocumentView::zoomIsBounded_data()
{
    QTest::addColumn<double>("asked");
    QTest::addColumn<double>("got");
    QTest::newRow("above") << 7.0 << 5.0;
    QTest::newRow("below") << 0.01 << 0.1;
    QTest::newRow("negative") << -3.0 << 0.1;
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 5.0;
    QTest::newRow("within") << 1.25 << 1.25;
}

void TestPdfDocumentView::zoomIsBounded()
{
    QFETCH(double, asked);
    ShownView shown(a4Pages(3));
    shown.view.setZoomFactor(asked);
    QTEST(shown.view.zoomFactor(), "got");
}

void TestPdfDocumentView::zoomInAtTheLimitEmitsNothing()
{
    ShownView shown(a4Pages(3));
    shown.view.setZoomFactor(5.0);
    const QSignalSpy zoom(&shown.view, &PdfDocumentView::zoomFactorChanged);
    shown.view.zoomIn();
    QCOMPARE(shown.view.zoomFactor(), 5.0);
    QCOMPARE(zoom.size(), 0);
    shown.view.setZoomFactor(0.1);
    QCOMPARE(zoom.size(), 1);
    shown.view.zoomOut();
    QCOMPARE(zoom.size(), 1);
}

void TestPdfDocumentView::zoomSlotsMultiplyAndDivide()
{
    ShownView shown(a4Pages(3));
    shown.view.setZoomFactor(1.0);
    shown.view.zoomIn();
    QCOMPARE(shown.view.zoomFactor(), 1.2);
    shown.view.zoomOut();
    shown.view.zoomOut();
    QCOMPARE(shown.view.zoomFactor(), 1.0 / 1.2);
}

void TestPdfDocumentView::zoomSignalCarriesTheFactorOnce()
{
    ShownView shown(a4Pages(3));
    const QSignalSpy zoom(&shown.view, &PdfDocumentView::zoomFactorChanged);
    shown.view.setZoomFactor(2.0);
    shown.view.setZoomFactor(2.0);
    QCOMPARE(zoom.size(), 1);
    QCOMPARE(zoom.first().first().toDouble(), 2.0);
}

void TestPdfDocumentView::choosingAZoomEndsTheFitMode()
{
    ShownView shown(a4Pages(3));
    shown.view.setZoomFactor(0.7);
    QCOMPARE(shown.view.fitMode(), PdfDocumentView::FitMode::Manual);
}

void TestPdfDocumentView::choosingTheFittedZoomEndsTheFitModeSilently()
{
    ShownView shown(a4Pages(3));
    const QSignalSpy zoom(&shown.view, &PdfDocumentView::zoomFactorChanged);
    shown.view.setZoomFactor(shown.view.zoomFactor());
    QCOMPARE(shown.view.fitMode(), PdfDocumentView::FitMode::Manual);
    QCOMPARE(zoom.size(), 0);
}

void TestPdfDocumentView::fitWidthUsesTheViewportWithoutItsMargins()
{
    ShownView shown(a4Pages(3), {864, 600});
    shown.view.setZoomFactor(0.3);
    shown.resizeViewport({864, 600});
    shown.view.fitWidth();
    shown.resizeViewport({864, 600});
    QCOMPARE(shown.view.zoomFactor(), (864.0 - 64.0) / 595.0);
    QCOMPARE(shown.view.fitMode(), PdfDocumentView::FitMode::Width);
}

void TestPdfDocumentView::fitPageShowsTheWholePageAtItsTop()
{
    ShownView shown(a4Pages(9), {864, 600});
    shown.view.goToPage(4);
    shown.scrollToY(shown.scrollY() + 100);
    shown.view.fitPage();
    QCOMPARE(shown.view.fitMode(), PdfDocumentView::FitMode::Page);
    QCOMPARE(shown.view.zoomFactor(), (600.0 - 64.0) / 842.0);
    QCOMPARE(shown.view.currentPage(), 4);
    QCOMPARE(shown.scrollY(), shown.layout().pages.at(4).top() - 32);
    QVERIFY(shown.view.viewport()->rect().contains(shown.pageInViewport(4)));
}

void TestPdfDocumentView::fittingWithoutPagesGivesTheNaturalSize_data()
{
    QTest::addColumn<bool>("whole");
    QTest::newRow("width") << false;
    QTest::newRow("page") << true;
}

void TestPdfDocumentView::fittingWithoutPagesGivesTheNaturalSize()
{
    QFETCH(bool, whole);
    ShownView shown(a4Pages(3));
    shown.view.goToPage(0);
    shown.model.setPages({}, false);
    const double fitted = shown.view.zoomFactor();
    QVERIFY(!qFuzzyCompare(fitted, 1.0));
    shown.resizeViewport({700, 500});
    QCOMPARE(shown.view.zoomFactor(), fitted);

    const QSignalSpy zoom(&shown.view, &PdfDocumentView::zoomFactorChanged);
    if (whole) {
        shown.view.fitPage();
    } else {
        shown.view.fitWidth();
    }
    QCOMPARE(shown.view.zoomFactor(), 1.0);
    QCOMPARE(zoom.size(), 1);
    QCOMPARE(zoom.first().first().toDouble(), 1.0);
}

void TestPdfDocumentView::resizingKeepsADocumentFitted_data()
{
    QTest::addColumn<bool>("whole");
    QTest::addColumn<double>("zoom");
    QTest::newRow("width") << false << (700.0 - 64.0) / 595.0;
    QTest::newRow("page") << true << (500.0 - 64.0) / 842.0;
}

void TestPdfDocumentView::resizingKeepsADocumentFitted()
{
    QFETCH(bool, whole);
    ShownView shown(a4Pages(9), {864, 600});
    if (whole) {
        shown.view.fitPage();
    } else {
        shown.view.fitWidth();
    }
    const QSignalSpy zoom(&shown.view, &PdfDocumentView::zoomFactorChanged);
    shown.resizeViewport({700, 500});
    QTEST(shown.view.zoomFactor(), "zoom");
    QCOMPARE(zoom.last().first().toDouble(), shown.view.zoomFactor());
}

void TestPdfDocumentView::resizingKeepsAChosenZoom()
{
    ShownView shown(a4Pages(9), {864, 600});
    shown.view.setZoomFactor(1.3);
    const QSignalSpy zoom(&shown.view, &PdfDocumentView::zoomFactorChanged);
    shown.resizeViewport({700, 500});
    QCOMPARE(shown.view.zoomFactor(), 1.3);
    QCOMPARE(zoom.size(), 0);
}

void TestPdfDocumentView::mixedPagesAreCentredInTheColumn()
{
    ShownView shown({{842, 595}, {595, 842}}, {500, 400});
    shown.view.setZoomFactor(1.0);
    const int viewportWidth = shown.view.viewport()->width();
    QCOMPARE(shown.maximumScrollX(), 842 + 64 - viewportWidth);

    const QSignalSpy clicked(&shown.view, &PdfDocumentView::pageClicked);
    shown.view.horizontalScrollBar()->setValue(0);
    shown.scrollToY(32 + 595 + 18);
    const int left = (842 + 64 - 595) / 2;
    QTest::mouseClick(shown.view.viewport(), Qt::LeftButton, {}, {left - 1, 10});
    QCOMPARE(clicked.size(), 0);
    QTest::mouseClick(shown.view.viewport(), Qt::LeftButton, {}, {left, 10});
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.first().first().toInt(), 1);

    shown.resizeViewport({1200, 400});
    QCOMPARE(shown.maximumScrollX(), 0);
    QTest::mouseClick(shown.view.viewport(), Qt::LeftButton, {}, {(1200 - 595) / 2, 10});
    QCOMPARE(clicked.size(), 2);
}

void TestPdfDocumentView::scrollRangesFollowTheContent()
{
    ShownView shown(a4Pages(4), {700, 600});
    shown.view.setZoomFactor(2.0);
    const QSize viewport = shown.view.viewport()->size();
    QCOMPARE(shown.maximumScrollX(), 1190 + 64 - viewport.width());
    QCOMPARE(shown.maximumScrollY(), 32 + 4 * (1684 + 18) + 14 - viewport.height());
    QCOMPARE(shown.view.horizontalScrollBar()->pageStep(), viewport.width());
    QCOMPARE(shown.view.verticalScrollBar()->pageStep(), viewport.height());
}

void TestPdfDocumentView::zoomingKeepsTheRelativePosition()
{
    ShownView shown(a4Pages(40));
    shown.view.setZoomFactor(1.0);
    shown.scrollToY(9000);
    const double fraction = 9000.0 / shown.layout().contentSize.height();
    shown.view.setZoomFactor(1.7);
    QCOMPARE(shown.scrollY(), qRound(shown.layout().contentSize.height() * fraction));
}

void TestPdfDocumentView::fitThatNeedsNoScrollBarOnceItHasGivenWaySettles()
{
    // At the full width the page is a little too high, next to a scroll bar it is not.
    ShownView shown({{500, 500}}, {600, 560});
    for (int height = 580; height <= 610; ++height) {
        shown.view.resize(600, height);
        QCoreApplication::processEvents();
        const QSignalSpy zoom(&shown.view, &PdfDocumentView::zoomFactorChanged);
        for (int pass = 0; pass < 10; ++pass) {
            QCoreApplication::processEvents();
        }
        QCOMPARE(zoom.size(), 0);
        const QSize viewport = shown.view.viewport()->size();
        const QRect page = shown.layout().pages.first();
        QVERIFY(page.width() <= viewport.width() - 64);
        QVERIFY(page.width() >= 600 - 64 - 12);
        QCOMPARE(page.center().x(), QRect({}, viewport).center().x());
        QCOMPARE(shown.view.verticalScrollBar()->isVisible(), page.height() + 64 > height);
        QCOMPARE(shown.maximumScrollY(), std::max(page.height() + 64 - height, 0));
    }
}

void TestPdfDocumentView::goToPagePutsThePageBelowTheTopMargin()
{
    ShownView shown(a4Pages(20));
    shown.view.setZoomFactor(1.5);
    shown.view.goToPage(7);
    const QRect page = shown.layout().pages.at(7);
    QCOMPARE(shown.scrollY(), page.top() - 32);
    QCOMPARE(shown.scrollX(), std::max(page.center().x() - shown.view.viewport()->width() / 2, 0));
    QVERIFY(shown.scrollX() > 0);
    QCOMPARE(shown.view.currentPage(), 7);
    shown.view.goToPage(0);
    QCOMPARE(shown.scrollY(), 0);
}

void TestPdfDocumentView::goToPageOutOfRangeIsIgnored()
{
    ShownView shown(a4Pages(20));
    shown.view.goToPage(3);
    const int before = shown.scrollY();
    const QSignalSpy current(&shown.view, &PdfDocumentView::currentPageChanged);
    shown.view.goToPage(-1);
    shown.view.goToPage(20);
    QCOMPARE(current.size(), 0);
    QCOMPARE(shown.scrollY(), before);
    QCOMPARE(shown.view.currentPage(), 3);
}

void TestPdfDocumentView::goToPageFitsTheNewPage()
{
    ShownView shown({{595, 842}, {842, 595}, {595, 842}}, {864, 600});
    shown.view.goToPage(0);
    const QSignalSpy zoom(&shown.view, &PdfDocumentView::zoomFactorChanged);
    shown.view.goToPage(1);
    const double width = shown.view.viewport()->width();
    QCOMPARE(shown.view.zoomFactor(), (width - 64) / 842);
    QCOMPARE(zoom.size(), 1);
    QCOMPARE(shown.scrollY(), shown.layout().pages.at(1).top() - 32);
    shown.view.goToPage(2);
    QCOMPARE(shown.view.zoomFactor(), (width - 64) / 595);
    QCOMPARE(shown.view.fitMode(), PdfDocumentView::FitMode::Width);
}

void TestPdfDocumentView::goToPageAnnouncesThePageOnce()
{
    ShownView shown(a4Pages(20));
    const QSignalSpy current(&shown.view, &PdfDocumentView::currentPageChanged);
    shown.view.goToPage(11);
    shown.view.goToPage(11);
    QCOMPARE(current.size(), 1);
    QCOMPARE(current.first().first().toInt(), 11);
}

void TestPdfDocumentView::goToPageWithoutAModelIsIgnored()
{
    PdfDocumentView view;
    const QSignalSpy current(&view, &PdfDocumentView::currentPageChanged);
    view.goToPage(0);
    view.fitPage();
    QCOMPARE(current.size(), 0);
    QCOMPARE(view.zoomFactor(), 1.0);
}

void TestPdfDocumentView::scrollingUpdatesTheCurrentPage()
{
    ShownView shown(a4Pages(20));
    const QSignalSpy current(&shown.view, &PdfDocumentView::currentPageChanged);
    const QRect fifth = shown.layout().pages.at(4);
    shown.scrollToY(fifth.center().y() - 300);
    QCOMPARE(shown.view.currentPage(), 4);
    QCOMPARE(current.size(), 1);
    QCOMPARE(current.first().first().toInt(), 4);
    shown.scrollToY(shown.scrollY() + 1);
    QCOMPARE(current.size(), 1);
}

void TestPdfDocumentView::upperPageStaysCurrentOnATie()
{
    ShownView shown(a4Pages(20));
    shown.view.setZoomFactor(1.0);
    shown.view.goToPage(3);
    const PageLayout layout = shown.layout();
    const int upper = layout.pages.at(3).center().y();
    const int lower = layout.pages.at(4).center().y();
    QCOMPARE((upper + lower) % 2, 0);
    const int half = shown.view.viewport()->height() / 2;
    shown.scrollToY((upper + lower) / 2 - half);
    QCOMPARE(shown.view.currentPage(), 3);
    shown.scrollToY((upper + lower) / 2 - half + 1);
    QCOMPARE(shown.view.currentPage(), 4);
}

void TestPdfDocumentView::zoomingAnnouncesNoPagesOnTheWay()
{
    ShownView shown(a4Pages(40));
    shown.view.setZoomFactor(2.0);
    shown.view.goToPage(30);
    const QSignalSpy current(&shown.view, &PdfDocumentView::currentPageChanged);
    shown.view.setZoomFactor(0.5);
    QVERIFY(current.size() <= 1);
}

void TestPdfDocumentView::resetStartsAtTheFirstPage()
{
    ShownView shown(a4Pages(20));
    shown.view.goToPage(12);
    const int before = shown.scrollY();
    shown.model.setPages(recordsOfSizes(a4Pages(20)), false);
    QCOMPARE(shown.view.currentPage(), 0);
    QCOMPARE(shown.scrollY(), before);
}

void TestPdfDocumentView::passAfterAResetFindsThePageInView()
{
    ShownView shown(a4Pages(20));
    shown.view.goToPage(12);
    QSignalSpy changed(&shown.view, &PdfDocumentView::currentPageChanged);
    shown.model.setPages(recordsOfSizes(a4Pages(20)), false);
    QCoreApplication::processEvents();
    QCOMPARE(shown.view.currentPage(), 12);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first().first().toInt(), 12);
}

void TestPdfDocumentView::pageGoneToAfterAResetCounts()
{
    // Pages so low that the middle of the viewport is on the third one.
    ShownView shown(QList<QSizeF>(20, QSizeF(600, 100)));
    shown.view.setZoomFactor(1.0);
    shown.view.goToPage(12);
    shown.model.setPages(recordsOfSizes(QList<QSizeF>(20, QSizeF(600, 100))), false);
    shown.view.goToPage(0);
    QCoreApplication::processEvents();
    QCOMPARE(shown.view.currentPage(), 0);
}

void TestPdfDocumentView::pageMadeCurrentStaysWithoutScrolling()
{
    ShownView shown(QList<QSizeF>(20, QSizeF(600, 100)));
    shown.view.setZoomFactor(1.0);
    const int before = shown.scrollY();
    QSignalSpy changed(&shown.view, &PdfDocumentView::currentPageChanged);
    shown.view.makeCurrent(4);
    QCoreApplication::processEvents();
    QCOMPARE(shown.view.currentPage(), 4);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(shown.scrollY(), before);
    for (const int outside : {-1, 20}) {
        shown.view.makeCurrent(outside);
        QCOMPARE(shown.view.currentPage(), 4);
    }
    shown.scrollToY(500);
    QVERIFY(shown.view.currentPage() > 4);
}

void TestPdfDocumentView::insertedRowsKeepTheRelativePosition()
{
    ShownView shown(a4Pages(20));
    shown.view.setZoomFactor(1.0);
    shown.scrollToY(5000);
    const double fraction = 5000.0 / shown.layout().contentSize.height();
    shown.model.insertBlankPage(3, {595, 842});
    QCoreApplication::processEvents();
    const int height = 32 + 21 * (842 + 18) + 14;
    QCOMPARE(shown.maximumScrollY(), height - shown.view.viewport()->height());
    QCOMPARE(shown.scrollY(), qRound(height * fraction));
}

void TestPdfDocumentView::movedRowsAreLaidOutAgain()
{
    ShownView shown({{595, 842}, {595, 842}, {300, 100}});
    shown.view.setZoomFactor(1.0);
    QVERIFY(shown.model.moveRows({}, 2, 1, {}, 0));
    QCoreApplication::processEvents();
    const QSignalSpy clicked(&shown.view, &PdfDocumentView::pageClicked);
    QTest::mouseClick(shown.view.viewport(), Qt::LeftButton, {},
                      {shown.view.viewport()->width() / 2, 32 + 100 + 18});
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.first().first().toInt(), 1);
}

void TestPdfDocumentView::removingTheCurrentPageAtTheEndKeepsACurrentPage()
{
    ShownView shown(a4Pages(5));
    shown.view.setZoomFactor(0.1);
    shown.view.goToPage(4);
    const QSignalSpy current(&shown.view, &PdfDocumentView::currentPageChanged);
    shown.model.removePages({4, 5});
    QCoreApplication::processEvents();
    QCOMPARE(shown.view.currentPage(), 2);
    QCOMPARE(current.last().first().toInt(), 2);
}

void TestPdfDocumentView::checkStateChangesNothing()
{
    ShownView shown(a4Pages(5));
    QVERIFY(shown.waitForVisiblePages());
    QTRY_COMPARE(shown.probe.renders().size(), 2);
    shown.manager.clearCache();
    shown.probe.forgetRenders();
    const QSignalSpy range(shown.view.verticalScrollBar(), &QScrollBar::rangeChanged);
    shown.model.selectAll();
    shown.model.markSaved({});
    QTest::qWait(50);
    QCOMPARE(range.size(), 0);
    QCOMPARE(shown.probe.renders().size(), 0);
}

void TestPdfDocumentView::manyRemovedRowsAreLaidOutOnce()
{
    ShownView shown(a4Pages(10000));
    shown.view.setZoomFactor(1.0);
    QCoreApplication::processEvents();
    QList<PdfPageId> ids;
    for (PdfPageId id = 1; id <= 10000; id += 2) {
        ids.append(id);
    }
    const QSignalSpy removed(&shown.model, &PdfDocumentModel::rowsRemoved);
    const QSignalSpy range(shown.view.verticalScrollBar(), &QScrollBar::rangeChanged);
    shown.model.removePages(ids);
    QCoreApplication::processEvents();
    QCOMPARE(removed.size(), 5000);
    QCOMPARE(range.size(), 1);
    QCOMPARE(shown.maximumScrollY(), 32 + 5000 * (842 + 18) + 14 - shown.view.viewport()->height());
}

void TestPdfDocumentView::manyTurnedPagesAreLaidOutOnce()
{
    ShownView shown(a4Pages(10000));
    shown.view.setZoomFactor(1.0);
    QCoreApplication::processEvents();
    QList<PdfPageId> ids;
    for (PdfPageId id = 1; id <= 10000; ++id) {
        ids.append(id);
    }
    const QSignalSpy changed(&shown.model, &PdfDocumentModel::dataChanged);
    const QSignalSpy range(shown.view.verticalScrollBar(), &QScrollBar::rangeChanged);
    shown.model.rotatePages(ids, 90);
    QCoreApplication::processEvents();
    QCOMPARE(changed.size(), 10000);
    QCOMPARE(range.size(), 1);
    QCOMPARE(shown.maximumScrollY(),
             32 + 10000 * (595 + 18) + 14 - shown.view.viewport()->height());
}

void TestPdfDocumentView::queriesSeeChangesOfTheSamePass()
{
    ShownView shown(a4Pages(5));
    shown.view.setZoomFactor(1.0);
    shown.model.insertBlankPage(0, {595, 100});
    shown.view.goToPage(5);
    QCOMPARE(shown.view.currentPage(), 5);
    QCOMPARE(shown.scrollY(), 32 + 118 + 4 * 860 - 32);

    shown.model.removePages({1});
    const QImage picture = shown.view.grab().toImage();
    QCOMPARE(shown.maximumScrollY(), 32 + 118 + 4 * 860 + 14 - shown.view.viewport()->height());
    QVERIFY(!picture.isNull());
}

void TestPdfDocumentView::scrollingBeforeALayoutIsDueCounts()
{
    ShownView shown(a4Pages(20));
    shown.view.setZoomFactor(1.0);
    shown.scrollToY(1000);
    shown.model.insertBlankPage(-1, {595, 842});
    shown.scrollToY(4000);
    QCoreApplication::processEvents();
    QCOMPARE(shown.scrollY(), 4000);
}

void TestPdfDocumentView::anotherModelReplacesTheOld()
{
    ShownView shown(a4Pages(20));
    PdfDocumentModel other;
    other.setPages(recordsOfSizes({{200, 200}}), false);
    shown.view.setZoomFactor(1.0);
    shown.view.goToPage(19);
    shown.view.setModel(&other);
    QCOMPARE(shown.view.currentPage(), 0);
    QCOMPARE(shown.maximumScrollY(), 0);

    const QSignalSpy range(shown.view.verticalScrollBar(), &QScrollBar::rangeChanged);
    shown.model.insertBlankPage(0, {});
    QCoreApplication::processEvents();
    QCOMPARE(range.size(), 0);
    shown.view.setModel(nullptr);
}

void TestPdfDocumentView::deletedModelLeavesAnEmptyView()
{
    ShownView shown(a4Pages(2));
    auto other = std::make_unique<PdfDocumentModel>();
    other->setPages(recordsOfSizes(a4Pages(9)), false);
    shown.view.setModel(other.get());
    other.reset();
    const QSignalSpy clicked(&shown.view, &PdfDocumentView::pageClicked);
    QTest::mouseClick(shown.view.viewport(), Qt::LeftButton, {}, {400, 300});
    QCOMPARE(clicked.size(), 0);
    QCOMPARE(shown.maximumScrollY(), 0);
}

void TestPdfDocumentView::tenThousandPagesScrollToTheEnd()
{
    ShownView shown(a4Pages(10000));
    shown.view.setZoomFactor(5.0);
    shown.scrollToY(shown.maximumScrollY());
    QCOMPARE(shown.view.currentPage(), 9999);
    QCOMPARE(shown.maximumScrollY(),
             32 + 10000 * (4210 + 18) + 14 - shown.view.viewport()->height());
}

QTEST_MAIN(TestPdfDocumentView)
#include "tst_pdf_document_view.moc"
