// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/page_layout.h"

#include <QTest>

#include <limits>

namespace {

const QSizeF kPortrait(595, 842);
const QSizeF kLandscape(842, 595);

QList<int> topsOf(const PageLayout &layout)
{
    QList<int> tops;
    for (const QRect &page : layout.pages) {
        tops.append(page.top());
    }
    return tops;
}

} // namespace

class TestPageLayout final : public QObject
{
    Q_OBJECT

private slots:
    void contentIsTheViewportWithoutPages();
    void pageSizesAreRoundedAndAtLeastOnePixel_data();
    void pageSizesAreRoundedAndAtLeastOnePixel();
    void pagesAreStackedWithTheirMargins();
    void eachPageIsCentredInTheWidestColumn();
    void contentIsAsWideAsAWiderViewport();
    void absurdPageSizesStayInTheRangeOfCoordinates();
    void pageAtPointFindsOnlyThePageUnderIt_data();
    void pageAtPointFindsOnlyThePageUnderIt();
    void nearestPageIsTheUpperOneOnATie();
    void nearestPageHasNoAnswerWithoutPages();
    void nearestPageAgreesWithASearchThroughAllPages();
    void pagesMeetingARegion_data();
    void pagesMeetingARegion();
    void fitZoomIsBounded_data();
    void fitZoomIsBounded();
    void settledFitZoomGivesWayOnlyToAScrollBarThatWouldGoAgain_data();
    void settledFitZoomGivesWayOnlyToAScrollBarThatWouldGoAgain();
    void renderTargetSizeIsBounded_data();
    void renderTargetSizeIsBounded();
    void centredScrollKeepsTheDistanceFromTheMiddle_data();
    void centredScrollKeepsTheDistanceFromTheMiddle();
    void anchorIsOnThePageOrInItsLowerGap_data();
    void anchorIsOnThePageOrInItsLowerGap();
    void anchorScalesOnThePageOnly_data();
    void anchorScalesOnThePageOnly();
};

void TestPageLayout::contentIsTheViewportWithoutPages()
{
    const PageLayout layout = computePageLayout({}, 1.0, {640, 480});
    QVERIFY(layout.pages.isEmpty());
    QCOMPARE(layout.contentSize, QSize(640, 480));
}

void TestPageLayout::pageSizesAreRoundedAndAtLeastOnePixel_data()
{
    QTest::addColumn<QSizeF>("points");
    QTest::addColumn<double>("zoom");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("as it is") << kPortrait << 1.0 << QSize(595, 842);
    QTest::newRow("rounded down") << QSizeF(100.4, 10.2) << 1.0 << QSize(100, 10);
    QTest::newRow("rounded up") << QSizeF(100.5, 10.8) << 1.0 << QSize(101, 11);
    QTest::newRow("zoomed") << kPortrait << 1.1 << QSize(655, 926);
    QTest::newRow("tiny") << QSizeF(2, 30) << 0.1 << QSize(1, 3);
    QTest::newRow("empty") << QSizeF() << 1.0 << QSize(1, 1);
    QTest::newRow("not a number") << QSizeF(std::numeric_limits<double>::quiet_NaN(), 5) << 1.0
                                  << QSize(1, 5);
}

void TestPageLayout::pageSizesAreRoundedAndAtLeastOnePixel()
{
    QFETCH(QSizeF, points);
    QFETCH(double, zoom);
    QTEST(computePageLayout({points}, zoom, {100, 100}).pages.first().size(), "pixels");
}

void TestPageLayout::pagesAreStackedWithTheirMargins()
{
    const PageLayout layout =
        computePageLayout({kPortrait, kLandscape, kPortrait}, 1.0, {1000, 400});
    const QList<int> expected{32, 32 + 842 + 18, 32 + 842 + 18 + 595 + 18};
    QCOMPARE(topsOf(layout), expected);
    QCOMPARE(layout.contentSize.height(), expected.last() + 842 + 18 + 14);
}

void TestPageLayout::eachPageIsCentredInTheWidestColumn()
{
    const PageLayout layout = computePageLayout({kLandscape, kPortrait}, 1.0, {500, 400});
    QCOMPARE(layout.contentSize.width(), 842 + 64);
    QCOMPARE(layout.pages.at(0).left(), 32);
    QCOMPARE(layout.pages.at(1).left(), (842 + 64 - 595) / 2);
}

void TestPageLayout::contentIsAsWideAsAWiderViewport()
{
    const PageLayout layout = computePageLayout({kLandscape, kPortrait}, 1.0, {1201, 400});
    QCOMPARE(layout.contentSize.width(), 1201);
    QCOMPARE(layout.pages.at(0).left(), (1201 - 842) / 2);
    QCOMPARE(layout.pages.at(1).left(), (1201 - 595) / 2);
}

void TestPageLayout::absurdPageSizesStayInTheRangeOfCoordinates()
{
    const QList<QSizeF> sizes(1000, QSizeF(1e12, 1e300));
    const PageLayout layout = computePageLayout(sizes, 5.0, {800, 600});
    QVERIFY(layout.contentSize.width() > 0);
    QVERIFY(layout.contentSize.height() > 0);
    for (const QRect &page : layout.pages) {
        QVERIFY(page.isValid());
        QVERIFY(page.top() >= kPageTopMargin);
    }
}

void TestPageLayout::pageAtPointFindsOnlyThePageUnderIt_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("row");
    // Pages of 100 × 50 at x = 32 and y = 32, 100, 168.
    QTest::newRow("above all") << QPoint(60, 31) << -1;
    QTest::newRow("first corner") << QPoint(32, 32) << 0;
    QTest::newRow("last pixel of the first") << QPoint(131, 81) << 0;
    QTest::newRow("right of the first") << QPoint(132, 81) << -1;
    QTest::newRow("left of the first") << QPoint(31, 60) << -1;
    QTest::newRow("gap") << QPoint(60, 82) << -1;
    QTest::newRow("second") << QPoint(60, 100) << 1;
    QTest::newRow("third") << QPoint(60, 217) << 2;
    QTest::newRow("below all") << QPoint(60, 218) << -1;
}

void TestPageLayout::pageAtPointFindsOnlyThePageUnderIt()
{
    QFETCH(QPoint, point);
    const PageLayout layout = computePageLayout(QList<QSizeF>(3, QSizeF(100, 50)), 1.0, {164, 100});
    QTEST(pageAtPoint(layout, point), "row");
}

void TestPageLayout::nearestPageIsTheUpperOneOnATie()
{
    const PageLayout layout = computePageLayout(QList<QSizeF>(3, QSizeF(100, 50)), 1.0, {164, 100});
    const int upper = layout.pages.at(0).center().y();
    const int lower = layout.pages.at(1).center().y();
    QCOMPARE((upper + lower) % 2, 0);
    const int middle = (upper + lower) / 2;
    QCOMPARE(nearestPage(layout, middle), 0);
    QCOMPARE(nearestPage(layout, middle + 1), 1);
    QCOMPARE(nearestPage(layout, -1000), 0);
    QCOMPARE(nearestPage(layout, 100000), 2);
}

void TestPageLayout::nearestPageHasNoAnswerWithoutPages()
{
    QCOMPARE(nearestPage({}, 10), -1);
}

void TestPageLayout::nearestPageAgreesWithASearchThroughAllPages()
{
    const PageLayout layout = computePageLayout(
        {kPortrait, {10, 3}, kLandscape, {50, 700}, {10, 4}, {10, 4}, kPortrait}, 0.37, {99, 99});
    for (int y = -20; y < layout.contentSize.height() + 20; ++y) {
        int best = 0;
        for (int row = 1; row < layout.pages.size(); ++row) {
            if (std::abs(layout.pages.at(row).center().y() - y) <
                std::abs(layout.pages.at(best).center().y() - y)) {
                best = row;
            }
        }
        QCOMPARE(nearestPage(layout, y), best);
    }
}

void TestPageLayout::pagesMeetingARegion_data()
{
    QTest::addColumn<QRect>("region");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("end");
    // Pages at y = 32 to 81, 100 to 149, 168 to 217.
    QTest::newRow("everything") << QRect(0, 0, 164, 300) << 0 << 3;
    QTest::newRow("empty") << QRect(0, 40, 164, 0) << 0 << 0;
    QTest::newRow("above") << QRect(0, 0, 164, 32) << 0 << 0;
    QTest::newRow("first row of the first") << QRect(0, 0, 164, 33) << 0 << 1;
    QTest::newRow("last row of the first") << QRect(0, 81, 164, 5) << 0 << 1;
    QTest::newRow("gap") << QRect(0, 82, 164, 18) << 1 << 1;
    QTest::newRow("two") << QRect(0, 149, 164, 20) << 1 << 3;
    QTest::newRow("below") << QRect(0, 218, 164, 50) << 3 << 3;
}

void TestPageLayout::pagesMeetingARegion()
{
    QFETCH(QRect, region);
    const PageLayout layout = computePageLayout(QList<QSizeF>(3, QSizeF(100, 50)), 1.0, {164, 100});
    const auto [first, end] = pagesMeeting(layout, region);
    QTEST(first, "first");
    QTEST(end, "end");
}

void TestPageLayout::fitZoomIsBounded_data()
{
    QTest::addColumn<QSizeF>("page");
    QTest::addColumn<QSize>("viewport");
    QTest::addColumn<double>("width");
    QTest::addColumn<double>("whole");
    QTest::newRow("portrait") << kPortrait << QSize(864, 600) << 800.0 / 595 << 536.0 / 842;
    QTest::newRow("landscape") << kLandscape << QSize(864, 900) << 800.0 / 842 << 800.0 / 842;
    QTest::newRow("stamp") << QSizeF(50, 50) << QSize(864, 600) << 5.0 << 5.0;
    QTest::newRow("poster") << QSizeF(9000, 9000) << QSize(864, 600) << 0.1 << 0.1;
    QTest::newRow("viewport narrower than its margins")
        << kPortrait << QSize(40, 600) << 0.1 << 0.1;
    QTest::newRow("page without a size") << QSizeF(0, 0) << QSize(66, 67) << 2.0 << 2.0;
}

void TestPageLayout::fitZoomIsBounded()
{
    QFETCH(QSizeF, page);
    QFETCH(QSize, viewport);
    QTEST(fitZoom(page, viewport, PageFit::Width), "width");
    QTEST(fitZoom(page, viewport, PageFit::Page), "whole");
}

void TestPageLayout::settledFitZoomGivesWayOnlyToAScrollBarThatWouldGoAgain_data()
{
    QTest::addColumn<QList<QSizeF>>("pages");
    QTest::addColumn<QSize>("viewport");
    QTest::addColumn<QSize>("scrollBars");
    QTest::addColumn<bool>("whole");
    QTest::addColumn<double>("zoom");
    const QList<QSizeF> square{QSizeF(500, 500)};
    const QList<QSizeF> wideLater{QSizeF(500, 500), QSizeF(740, 10)};
    const QSize bars(10, 10);
    QTest::newRow("no bar needed") << square << QSize(600, 600) << bars << false << 536.0 / 500;
    QTest::newRow("bar that would go again")
        << square << QSize(600, 599) << bars << false << 526.0 / 500;
    QTest::newRow("bar that just fits no more")
        << square << QSize(600, 590) << bars << false << 526.0 / 500;
    QTest::newRow("bar that stays") << square << QSize(600, 589) << bars << false << 536.0 / 500;
    QTest::newRow("bar that is there already")
        << square << QSize(590, 595) << QSize(0, 10) << false << 526.0 / 500;
    QTest::newRow("bar below that stays")
        << wideLater << QSize(700, 600) << QSize(0, 10) << true << 536.0 / 500;
    QTest::newRow("bar below that would go again")
        << wideLater << QSize(856, 600) << QSize(0, 10) << true << 526.0 / 500;
}

void TestPageLayout::settledFitZoomGivesWayOnlyToAScrollBarThatWouldGoAgain()
{
    QFETCH(QList<QSizeF>, pages);
    QFETCH(QSize, viewport);
    QFETCH(QSize, scrollBars);
    QFETCH(bool, whole);
    const PageFit fit = whole ? PageFit::Page : PageFit::Width;
    QTEST(settledFitZoom(pages, 0, viewport, scrollBars, fit), "zoom");
}

void TestPageLayout::renderTargetSizeIsBounded_data()
{
    QTest::addColumn<QSize>("page");
    QTest::addColumn<double>("scale");
    QTest::addColumn<QSize>("target");
    QTest::newRow("least scale") << QSize(595, 842) << 1.5 << QSize(893, 1263);
    QTest::newRow("twice") << QSize(595, 842) << 2.0 << QSize(1190, 1684);
    QTest::newRow("one pixel") << QSize(1, 1) << 1.5 << QSize(2, 2);
    QTest::newRow("empty") << QSize(0, 0) << 1.5 << QSize(1, 1);
    QTest::newRow("long strip") << QSize(16384, 100) << 2.0 << QSize(8192, 50);
    QTest::newRow("thin strip") << QSize(2, 32768) << 2.0 << QSize(1, 8192);
    QTest::newRow("large area") << QSize(8192, 8192) << 2.0 << QSize(5793, 5793);
    QTest::newRow("side at the limit") << QSize(4096, 4096) << 2.0 << QSize(5793, 5793);
    QTest::newRow("area at the limit") << QSize(8192, 4096) << 1.5 << QSize(8192, 4096);
}

void TestPageLayout::renderTargetSizeIsBounded()
{
    QFETCH(QSize, page);
    QFETCH(double, scale);
    QTEST(renderTargetSize(page, scale), "target");
}

void TestPageLayout::centredScrollKeepsTheDistanceFromTheMiddle_data()
{
    QTest::addColumn<int>("scroll");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("newMaximum");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("result");
    QTest::newRow("unchanged") << 130 << 400 << 400 << 1.0 << 130;
    QTest::newRow("from where nothing scrolled") << 0 << 0 << 600 << 2.0 << 300;
    QTest::newRow("in the middle") << 200 << 400 << 900 << 2.0 << 450;
    QTest::newRow("off the middle") << 300 << 400 << 1000 << 2.0 << 700;
    QTest::newRow("wider content at the same zoom") << 100 << 400 << 1000 << 1.0 << 400;
    QTest::newRow("to where nothing scrolls") << 200 << 400 << 0 << 0.5 << 0;
}

void TestPageLayout::centredScrollKeepsTheDistanceFromTheMiddle()
{
    QFETCH(int, scroll);
    QFETCH(int, maximum);
    QFETCH(int, newMaximum);
    QFETCH(double, ratio);
    QTEST(centredScroll(scroll, maximum, newMaximum, ratio), "result");
}

void TestPageLayout::anchorIsOnThePageOrInItsLowerGap_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("row");
    // Pages of 842 pixels from 32 on, 18 apart.
    QTest::newRow("above all") << 5 << 0;
    QTest::newRow("first page") << 32 << 0;
    QTest::newRow("end of the first page") << 873 << 0;
    QTest::newRow("gap") << 880 << 0;
    QTest::newRow("second page") << 892 << 1;
    QTest::newRow("below all") << 9000 << 2;
}

void TestPageLayout::anchorIsOnThePageOrInItsLowerGap()
{
    QFETCH(int, y);
    const PageLayout layout = computePageLayout({kPortrait, kPortrait, kPortrait}, 1.0, {800, 600});
    QTEST(pageForAnchor(layout, QPointF(100, y)), "row");
    QCOMPARE(pageForAnchor(computePageLayout({}, 1.0, {800, 600}), QPointF(100, y)), -1);
}

void TestPageLayout::anchorScalesOnThePageOnly_data()
{
    QTest::addColumn<QPointF>("before");
    QTest::addColumn<QPointF>("after");
    // 100 × 200 in a content of 164 pixels at first, then 200 × 400 in one of 264; second page.
    QTest::newRow("upper edge") << QPointF(82, 250) << QPointF(132, 450);
    QTest::newRow("quarter") << QPointF(57, 300) << QPointF(82, 550);
    QTest::newRow("margin") << QPointF(22, 300) << QPointF(22, 550);
    QTest::newRow("right margin") << QPointF(140, 300) << QPointF(240, 550);
    QTest::newRow("gap") << QPointF(82, 460) << QPointF(132, 860);
}

void TestPageLayout::anchorScalesOnThePageOnly()
{
    QFETCH(QPointF, before);
    const QList<QSizeF> pages(3, QSizeF(100, 200));
    const PageLayout small = computePageLayout(pages, 1.0, {10, 10});
    const PageLayout large = computePageLayout(pages, 2.0, {10, 10});
    const int row = pageForAnchor(small, before);
    QCOMPARE(row, 1);
    const PageAnchor anchor = anchorOn(small, row, before);
    QCOMPARE(placeOf(small, row, anchor), before);
    QTEST(placeOf(large, row, anchor), "after");
}

QTEST_APPLESS_MAIN(TestPageLayout)
#include "tst_page_layout.moc"
