// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_view.h"

#include <QScrollBar>
#include <QTest>

#include <cstdlib>

namespace {

/// Whole pixels at one zoom are some more at another.
constexpr int kRounding = 4;

/// Between pages of 360 points one that is many times as wide.
QList<QSizeF> mixedPages()
{
    return {{360, 288}, {360, 288}, {2160, 2160}, {360, 288}};
}

/// How far the middle of a page is to the right of the middle of the viewport.
int distanceFromMiddle(const ShownView &shown, int row)
{
    return shown.pageInViewport(row).center().x() - shown.view.viewport()->rect().center().x();
}

} // namespace

/// Whether the pages stay in the middle of the document view where one is wider than the viewport.
class TestPdfDocumentViewCentring final : public QObject
{
    Q_OBJECT

private slots:
    void narrowFirstPageIsInViewAtOnce();
    void resizingKeepsTheFittedPageInView_data();
    void resizingKeepsTheFittedPageInView();
    void zoomingKeepsThePagesInTheMiddle_data();
    void zoomingKeepsThePagesInTheMiddle();
    void zoomingKeepsWhatIsInTheMiddle();
    void resizingKeepsWhatIsInTheMiddle();
    void removingTheWidestPageKeepsTheOthersInTheMiddle();
    void fittingTheWidthComesBackToTheMiddle();
    void centringKeepsTheCurrentPage();
};

void TestPdfDocumentViewCentring::narrowFirstPageIsInViewAtOnce()
{
    const ShownView shown(mixedPages(), {864, 600});
    QVERIFY(shown.maximumScrollX() > 2000);
    QVERIFY(std::abs(distanceFromMiddle(shown, 0)) <= kRounding);
    QCOMPARE(shown.pageInViewport(0).width(), 800);
}

void TestPdfDocumentViewCentring::resizingKeepsTheFittedPageInView_data()
{
    QTest::addColumn<bool>("whole");
    QTest::addColumn<QSize>("size");
    QTest::newRow("width, larger") << false << QSize(1500, 900);
    QTest::newRow("width, smaller") << false << QSize(500, 400);
    QTest::newRow("page, larger") << true << QSize(1500, 900);
    QTest::newRow("page, smaller") << true << QSize(500, 400);
}

void TestPdfDocumentViewCentring::resizingKeepsTheFittedPageInView()
{
    QFETCH(bool, whole);
    QFETCH(QSize, size);
    ShownView shown(mixedPages(), {864, 600});
    if (whole) {
        shown.view.fitPage();
    } else {
        shown.view.fitWidth();
    }
    shown.view.goToPage(0);
    shown.resizeViewport(size);
    QVERIFY(shown.maximumScrollX() > 0);
    QVERIFY(std::abs(distanceFromMiddle(shown, 0)) <= kRounding);
}

void TestPdfDocumentViewCentring::zoomingKeepsThePagesInTheMiddle_data()
{
    QTest::addColumn<double>("zoom");
    QTest::newRow("quarter") << 0.25;
    QTest::newRow("natural") << 1.0;
    QTest::newRow("fourfold") << 4.0;
}

void TestPdfDocumentViewCentring::zoomingKeepsThePagesInTheMiddle()
{
    QFETCH(double, zoom);
    ShownView shown(mixedPages(), {864, 600});
    shown.view.goToPage(0);
    shown.view.setZoomFactor(zoom);
    QVERIFY(std::abs(distanceFromMiddle(shown, 0)) <= kRounding);
}

void TestPdfDocumentViewCentring::zoomingKeepsWhatIsInTheMiddle()
{
    ShownView shown(a4Pages(3), {864, 600});
    shown.view.setZoomFactor(2.0);
    const int middle = shown.maximumScrollX() / 2;
    shown.view.horizontalScrollBar()->setValue(middle + 100);
    shown.view.setZoomFactor(3.0);
    QVERIFY(std::abs(distanceFromMiddle(shown, 0) + 150) <= kRounding);
    shown.view.setZoomFactor(2.0);
    QVERIFY(std::abs(shown.scrollX() - (middle + 100)) <= kRounding);
}

void TestPdfDocumentViewCentring::resizingKeepsWhatIsInTheMiddle()
{
    ShownView shown(a4Pages(3), {864, 600});
    shown.view.setZoomFactor(3.0);
    shown.view.horizontalScrollBar()->setValue(shown.maximumScrollX() / 2 - 120);
    shown.resizeViewport({1000, 600});
    QVERIFY(std::abs(distanceFromMiddle(shown, 0) - 120) <= kRounding);
}

void TestPdfDocumentViewCentring::removingTheWidestPageKeepsTheOthersInTheMiddle()
{
    ShownView shown(mixedPages(), {864, 600});
    shown.view.setZoomFactor(3.0);
    shown.view.goToPage(0);
    shown.model.removePages({3});
    QCoreApplication::processEvents();
    QCOMPARE(shown.layout().pages.size(), 3);
    QVERIFY(shown.maximumScrollX() > 0);
    QVERIFY(std::abs(distanceFromMiddle(shown, 0)) <= kRounding);
}

void TestPdfDocumentViewCentring::fittingTheWidthComesBackToTheMiddle()
{
    ShownView shown(mixedPages(), {864, 600});
    shown.view.setZoomFactor(2.0);
    shown.view.goToPage(0);
    shown.view.horizontalScrollBar()->setValue(0);
    shown.view.fitWidth();
    QVERIFY(std::abs(distanceFromMiddle(shown, shown.view.currentPage())) <= kRounding);
}

void TestPdfDocumentViewCentring::centringKeepsTheCurrentPage()
{
    // A page that is much lower than the viewport is high stays current at the top of it.
    ShownView shown({{360, 60}, {360, 60}, {360, 60}, {4000, 4000}}, {864, 600});
    QVERIFY(shown.maximumScrollX() > 0);
    QCOMPARE(shown.view.currentPage(), 0);
    QCOMPARE(shown.scrollY(), 0);
    shown.resizeViewport({700, 600});
    QCOMPARE(shown.scrollY(), 0);
    QCOMPARE(shown.view.currentPage(), 0);
}

QTEST_MAIN(TestPdfDocumentViewCentring)
#include "tst_pdf_document_view_centring.moc"
