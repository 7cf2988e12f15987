// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/grid/page_grid_hit.h"

#include <QTest>

namespace {

/// Four columns of the smallest documented cells, from a row on.
PageGridCells gridOf(int pageCount, int firstRow = 0)
{
    PageGridCells grid;
    grid.firstRow = firstRow;
    grid.thumbnail = QSize(206, 232);
    grid.pageCount = pageCount;
    for (int i = 0; firstRow + i < pageCount; ++i) {
        grid.cells.append(QRect(i % 4 * 260, i / 4 * 272, 260, 272));
    }
    return grid;
}

QRect thumbnailOf(int index)
{
    return QRect(index % 4 * 260 + 26, index / 4 * 272 + 12, 206, 232);
}

} // namespace

Q_DECLARE_METATYPE(PageGridHit)

/// What a press in the page grid acts on.
class TestPageGridHit final : public QObject
{
    Q_OBJECT

private slots:
    void pageUnderAPoint_data();
    void pageUnderAPoint();
    void hit_data();
    void hit();
    void onePageHasNoSplitZones();
    void rowsCountFromTheFirstVisibleOne();
};

void TestPageGridHit::pageUnderAPoint_data()
{
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<int>("row");
    QTest::newRow("first pixel") << QPoint(0, 0) << 0;
    QTest::newRow("last pixel of the first cell") << QPoint(259, 271) << 0;
    QTest::newRow("second cell") << QPoint(260, 0) << 1;
    QTest::newRow("second line") << QPoint(0, 272) << 4;
    QTest::newRow("right of the cells") << QPoint(1040, 10) << -1;
    QTest::newRow("behind the last page") << QPoint(600, 300) << -1;
    QTest::newRow("below the cells") << QPoint(10, 900) << -1;
}

void TestPageGridHit::pageUnderAPoint()
{
    QFETCH(QPoint, point);
    QTEST(pageInGridAt(gridOf(6), point), "row");
}

void TestPageGridHit::hit_data()
{
    using Hit = PageGridHit;
    using Mode = PdfWorkspaceMode;
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<PdfWorkspaceMode>("mode");
    QTest::addColumn<int>("hoveredRow");
    QTest::addColumn<PageGridHit>("expected");

    // The box of page 1 begins at (286 + 14, 12 + 13) and has sides of 28.
    const Hit box{Hit::SelectionBox, 1, -1};
    QTest::newRow("box, upper left") << QPoint(300, 25) << Mode::NormalMode << -1 << box;
    QTest::newRow("box, lower right") << QPoint(327, 52) << Mode::NormalMode << -1 << box;
    QTest::newRow("left of the box") << QPoint(299, 25) << Mode::NormalMode << -1 << Hit();
    QTest::newRow("below the box") << QPoint(300, 53) << Mode::NormalMode << -1 << Hit();
    QTest::newRow("box while inserting") << QPoint(310, 30) << Mode::InsertMode << -1 << box;
    QTest::newRow("box while extracting") << QPoint(310, 30) << Mode::ExtractMode << -1 << box;
    QTest::newRow("box while splitting") << QPoint(310, 30) << Mode::SplitMode << -1 << box;

    // The bar of page 1 begins at (286 + 12, 243 - 43); it is 182 wide, its parts 45 each.
    const auto action = [](int part) { return Hit{Hit::Action, 1, part}; };
    QTest::newRow("preview") << QPoint(298, 200) << Mode::NormalMode << 1 << action(0);
    QTest::newRow("end of preview") << QPoint(342, 235) << Mode::NormalMode << 1 << action(0);
    QTest::newRow("duplicate") << QPoint(343, 210) << Mode::NormalMode << 1 << action(1);
    QTest::newRow("rotate") << QPoint(390, 210) << Mode::NormalMode << 1 << action(2);
    QTest::newRow("delete") << QPoint(433, 210) << Mode::NormalMode << 1 << action(3);
    QTest::newRow("end of the bar") << QPoint(479, 210) << Mode::NormalMode << 1 << action(3);
    QTest::newRow("behind the bar") << QPoint(480, 210) << Mode::NormalMode << 1 << Hit();
    QTest::newRow("bar of another page") << QPoint(343, 210) << Mode::NormalMode << 2 << Hit();
    QTest::newRow("bar of no page") << QPoint(343, 210) << Mode::NormalMode << -1 << Hit();
    QTest::newRow("bar while splitting") << QPoint(343, 210) << Mode::SplitMode << 1 << action(1);

    // The zone behind page 0 begins at (259 - 16, 127 - 17) and has sides of 34.
    const auto insert = [](int row) { return Hit{Hit::InsertZone, row, -1}; };
    QTest::newRow("insert, upper left") << QPoint(243, 110) << Mode::InsertMode << -1 << insert(0);
    QTest::newRow("insert, lower right") << QPoint(276, 143) << Mode::InsertMode << -1 << insert(0);
    QTest::newRow("left of the zone") << QPoint(242, 120) << Mode::InsertMode << -1 << Hit();
    QTest::newRow("below the zone") << QPoint(260, 144) << Mode::InsertMode << -1 << Hit();
    QTest::newRow("behind the fourth page")
        << QPoint(1050, 127) << Mode::InsertMode << -1 << insert(3);
    QTest::newRow("behind the last page")
        << QPoint(520, 399) << Mode::InsertMode << -1 << insert(5);
    QTest::newRow("insert zone while normal")
        << QPoint(260, 127) << Mode::NormalMode << -1 << Hit();
    QTest::newRow("before the first page") << QPoint(0, 127) << Mode::InsertMode << -1 << Hit();

    // The zone before page 1 begins at (260 - 14, 12 + 42); it is 28 wide and 148 high.
    const auto split = [](int row) { return Hit{Hit::SplitZone, row, -1}; };
    QTest::newRow("split, upper left") << QPoint(246, 54) << Mode::SplitMode << -1 << split(1);
    QTest::newRow("split, lower right") << QPoint(273, 201) << Mode::SplitMode << -1 << split(1);
    QTest::newRow("left of the gap") << QPoint(245, 100) << Mode::SplitMode << -1 << Hit();
    QTest::newRow("above the gap") << QPoint(260, 53) << Mode::SplitMode << -1 << Hit();
    QTest::newRow("below the gap") << QPoint(260, 202) << Mode::SplitMode << -1 << Hit();
    QTest::newRow("first in its line") << QPoint(3, 399) << Mode::SplitMode << -1 << split(4);
    QTest::newRow("no split before the first page")
        << QPoint(3, 127) << Mode::SplitMode << -1 << Hit();
    QTest::newRow("split zone while extracting")
        << QPoint(260, 127) << Mode::ExtractMode << -1 << Hit();
    QTest::newRow("nothing") << QPoint(700, 500) << Mode::NormalMode << -1 << Hit();
}

void TestPageGridHit::hit()
{
    QFETCH(QPoint, point);
    QFETCH(PdfWorkspaceMode, mode);
    QFETCH(int, hoveredRow);
    QFETCH(PageGridHit, expected);
    QVERIFY(hitTestPageGrid(gridOf(6), point, mode, hoveredRow) == expected);
}

void TestPageGridHit::onePageHasNoSplitZones()
{
    const PageGridCells grid = gridOf(1);
    for (int x = 0; x < 300; ++x) {
        const PageGridHit hit = hitTestPageGrid(grid, {x, 127}, PdfWorkspaceMode::SplitMode, -1);
        QVERIFY(hit.kind != PageGridHit::SplitZone);
    }
}

void TestPageGridHit::rowsCountFromTheFirstVisibleOne()
{
    const PageGridCells grid = gridOf(5006, 5000);
    QCOMPARE(pageInGridAt(grid, thumbnailOf(2).center()), 5002);
    const PageGridHit split = hitTestPageGrid(grid, {3, 127}, PdfWorkspaceMode::SplitMode, -1);
    QCOMPARE(split.kind, PageGridHit::SplitZone);
    QCOMPARE(split.row, 5000);
}

QTEST_GUILESS_MAIN(TestPageGridHit)
#include "tst_page_grid_hit.moc"
