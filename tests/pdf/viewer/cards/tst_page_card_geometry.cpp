// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_card_geometry.h"

#include <QTest>

/// Where the parts of page cards stand.
class TestPageCardGeometry final : public QObject
{
    Q_OBJECT

private slots:
    void rowOfThePanel();
    void narrowRowKeepsTheImageInsideItsCard();
    void gridSizesFollowTheZoom_data();
    void gridSizesFollowTheZoom();
    void cellOfTheGrid();
    void barIsDividedIntoEqualParts_data();
    void barIsDividedIntoEqualParts();
    void partsCoverTheBar();
    void targetSizeFitsTheBox_data();
    void targetSizeFitsTheBox();
    void markersAreShiftedIntoView_data();
    void markersAreShiftedIntoView();
    void dropInAColumn_data();
    void dropInAColumn();
    void dropInTheGrid_data();
    void dropInTheGrid();
};

void TestPageCardGeometry::rowOfThePanel()
{
    const ThumbnailRowGeometry row = thumbnailRowGeometry(QRect(2, 100, 190, 216));
    QCOMPARE(row.card, QRect(8, 104, 178, 182));
    QCOMPARE(row.imageArea, QRect(29, 112, 136, 166));
    QCOMPARE(row.caption, QRect(8, 286, 178, 30));
    QCOMPARE(row.actionStrip, QRect(16, 285 - 41, 162, 34));
}

void TestPageCardGeometry::narrowRowKeepsTheImageInsideItsCard()
{
    const ThumbnailRowGeometry row = thumbnailRowGeometry(QRect(0, 0, 140, 216));
    QCOMPARE(row.imageArea.width(), row.card.width() - 8);
    QVERIFY(row.card.contains(row.imageArea));
}

void TestPageCardGeometry::gridSizesFollowTheZoom_data()
{
    QTest::addColumn<int>("zoom");
    QTest::addColumn<QSize>("cell");
    QTest::addColumn<QSize>("thumbnail");
    QTest::newRow("at the start") << 80 << QSize(260, 272) << QSize(206, 232);
    QTest::newRow("smallest") << 70 << QSize(230, 238) << QSize(181, 203);
    QTest::newRow("halves are rounded up") << 75 << QSize(245, 255) << QSize(194, 218);
    QTest::newRow("full") << 100 << QSize(320, 340) << QSize(258, 290);
    QTest::newRow("largest") << 160 << QSize(500, 544) << QSize(413, 464);
    QTest::newRow("below the limit") << 10 << QSize(230, 238) << QSize(181, 203);
    QTest::newRow("above the limit") << 400 << QSize(500, 544) << QSize(413, 464);
}

void TestPageCardGeometry::gridSizesFollowTheZoom()
{
    QFETCH(int, zoom);
    QFETCH(QSize, cell);
    QFETCH(QSize, thumbnail);
    QCOMPARE(pageGridMetrics(zoom).cell, cell);
    QCOMPARE(pageGridMetrics(zoom).thumbnail, thumbnail);
}

void TestPageCardGeometry::cellOfTheGrid()
{
    const PageCellGeometry cell = pageCellGeometry(QRect(260, 272, 260, 272), QSize(206, 232));
    QCOMPARE(cell.thumbnail, QRect(286, 284, 206, 232));
    QCOMPARE(cell.selectionBox, QRect(300, 297, 28, 28));
    // The lower and right edges are those of the last pixel inside.
    QCOMPARE(cell.actionBar, QRect(298, 515 - 43, 182, 36));
    QCOMPARE(cell.insertZone, QRect(519 - 16, 399 - 17, 34, 34));
    QCOMPARE(cell.splitZone, QRect(246, 326, 28, 148));
    QVERIFY(cell.cell.contains(cell.card));
    QVERIFY(cell.card.contains(cell.thumbnail));
    QCOMPARE(cell.caption.top(), cell.card.bottom() + 1);
    QCOMPARE(cell.caption.bottom(), cell.cell.bottom());
    // In a large cell the caption stays near its card.
    const PageCellGeometry large = pageCellGeometry(QRect(0, 0, 500, 544), QSize(413, 464));
    QCOMPARE(large.caption.top(), large.card.bottom() + 1);
    QCOMPARE(large.caption.height(), 32);
}

void TestPageCardGeometry::barIsDividedIntoEqualParts_data()
{
    QTest::addColumn<QRect>("bar");
    QTest::addColumn<int>("parts");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("part");
    const QRect bar(10, 20, 100, 34);
    QTest::newRow("first pixel") << bar << 3 << QPoint(10, 20) << 0;
    QTest::newRow("end of the first part") << bar << 3 << QPoint(42, 30) << 0;
    QTest::newRow("begin of the second part") << bar << 3 << QPoint(43, 30) << 1;
    QTest::newRow("begin of the third part") << bar << 3 << QPoint(76, 30) << 2;
    QTest::newRow("left over by the division") << bar << 3 << QPoint(109, 53) << 2;
    QTest::newRow("fourth of four") << bar << 4 << QPoint(85, 30) << 3;
    QTest::newRow("left of the bar") << bar << 3 << QPoint(9, 30) << -1;
    QTest::newRow("right of the bar") << bar << 3 << QPoint(110, 30) << -1;
    QTest::newRow("above the bar") << bar << 3 << QPoint(50, 19) << -1;
    QTest::newRow("below the bar") << bar << 3 << QPoint(50, 54) << -1;
    QTest::newRow("narrower than its parts") << QRect(0, 0, 2, 34) << 4 << QPoint(1, 1) << 1;
}

void TestPageCardGeometry::barIsDividedIntoEqualParts()
{
    QFETCH(QRect, bar);
    QFETCH(int, parts);
    QFETCH(QPoint, point);
    QTEST(barPartAt(bar, parts, point), "part");
}

void TestPageCardGeometry::partsCoverTheBar()
{
    const QRect bar(7, 3, 101, 36);
    QRect covered;
    for (int part = 0; part < 4; ++part) {
        const QRect rect = barPart(bar, 4, part);
        QCOMPARE(barPartAt(bar, 4, rect.topLeft()), part);
        QCOMPARE(barPartAt(bar, 4, rect.bottomRight()), part);
        covered |= rect;
    }
    QCOMPARE(covered, bar);
}

void TestPageCardGeometry::targetSizeFitsTheBox_data()
{
    QTest::addColumn<QSizeF>("page");
    QTest::addColumn<double>("ratio");
    QTest::addColumn<QSize>("size");
    QTest::newRow("upright") << QSizeF(595, 842) << 1.0 << QSize(117, 166);
    QTest::newRow("landscape") << QSizeF(842, 595) << 1.0 << QSize(136, 96);
    QTest::newRow("square") << QSizeF(50, 50) << 1.0 << QSize(136, 136);
    QTest::newRow("one and a half") << QSizeF(842, 595) << 1.5 << QSize(204, 144);
    QTest::newRow("double") << QSizeF(595, 842) << 2.0 << QSize(235, 332);
    QTest::newRow("a line") << QSizeF(10000, 1) << 1.0 << QSize(136, 1);
    QTest::newRow("unknown") << QSizeF() << 1.0 << QSize(117, 166);
}

void TestPageCardGeometry::targetSizeFitsTheBox()
{
    QFETCH(QSizeF, page);
    QFETCH(double, ratio);
    QTEST(thumbnailTargetSize(page, kThumbnailBox, ratio), "size");
}

void TestPageCardGeometry::markersAreShiftedIntoView_data()
{
    QTest::addColumn<QRect>("rect");
    QTest::addColumn<QRect>("shifted");
    QTest::newRow("inside") << QRect(10, 5, 20, 20) << QRect(10, 5, 20, 20);
    QTest::newRow("over the left edge") << QRect(-10, 5, 20, 20) << QRect(0, 5, 20, 20);
    QTest::newRow("over the right edge") << QRect(90, 5, 20, 20) << QRect(80, 5, 20, 20);
}

void TestPageCardGeometry::markersAreShiftedIntoView()
{
    QFETCH(QRect, rect);
    QTEST(shiftedBetween(rect, 0, 99), "shifted");
}

void TestPageCardGeometry::dropInAColumn_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("line");
    QTest::newRow("upper edge") << 100 << 5 << 98;
    QTest::newRow("upper half") << 190 << 5 << 98;
    QTest::newRow("lower half") << 220 << 6 << 318;
    QTest::newRow("below") << 900 << 6 << 318;
    QTest::newRow("above") << -5 << 5 << 98;
}

void TestPageCardGeometry::dropInAColumn()
{
    QFETCH(int, y);
    QFETCH(int, row);
    QFETCH(int, line);
    const PageDropTarget target = dropTargetInColumn(QRect(2, 100, 190, 216), 5, 2, {50, y});
    QCOMPARE(target.row, row);
    QCOMPARE(target.indicator.center().y() + 1, line);
    QVERIFY(target.indicator.width() > target.indicator.height());
}

void TestPageCardGeometry::dropInTheGrid_data()
{
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("line");
    QTest::newRow("left half") << 300 << 4 << 260;
    QTest::newRow("right half") << 500 << 5 << 520;
    QTest::newRow("to the right") << 2000 << 5 << 520;
    QTest::newRow("to the left") << 0 << 4 << 260;
}

void TestPageCardGeometry::dropInTheGrid()
{
    QFETCH(int, x);
    QFETCH(int, row);
    QFETCH(int, line);
    const PageCellGeometry cell = pageCellGeometry(QRect(260, 0, 260, 272), QSize(206, 232));
    const PageDropTarget target = dropTargetInGrid(cell, 4, {x, 100});
    QCOMPARE(target.row, row);
    QCOMPARE(target.indicator.center().x() + 1, line);
    QVERIFY(target.indicator.height() > target.indicator.width());
}

QTEST_GUILESS_MAIN(TestPageCardGeometry)
#include "tst_page_card_geometry.moc"
