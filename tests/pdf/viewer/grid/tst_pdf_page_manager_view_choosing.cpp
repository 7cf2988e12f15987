// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/pdf_page_manager_view.h"
#include "tests/pdf/viewer/page_drag.h"
#include "tests/pdf/viewer/shown_grid.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QSignalSpy>
#include <QStyledItemDelegate>
#include <QTest>

#include <algorithm>

/// Which pages of the grid are chosen, by boxes, clicks, keys and the rubber band.
class TestPdfPageManagerViewChoosing final : public QObject
{
    Q_OBJECT

private slots:
    void boxInvertsTheSelection();
    void boxActsInEveryMode_data();
    void boxActsInEveryMode();
    void plainClickLeavesTheChosenPages();
    void shiftClickChoosesTheRange();
    void rangeLeavesPagesThatWereChosenAfterItsStart();
    void controlClickChoosesAndDrops();
    void rubberBandAddsToTheChosenPages();
    void keysChooseWithShiftOnly();
    void rangesOfKeysAddUp();
    void chosenPagesAreTheMarkedOnes();
    void pressOutsideOfThePagesReachesTheList();
    void selectAllChoosesAllPages();
    void spaceChoosesTheCurrentPage();
    void spaceWithAnotherKeyChoosesNoPage_data();
    void spaceWithAnotherKeyChoosesNoPage();
    void clicksDoNotToggleTheCheckStateElsewhere();
};

void TestPdfPageManagerViewChoosing::boxInvertsTheSelection()
{
    ShownGrid shown(a4Pages(5));
    shown.click(shown.cell(2).selectionBox.center());
    QCOMPARE(shown.model.selectedRows(), QList<int>{2});
    shown.click(shown.cell(0).selectionBox.topLeft());
    QCOMPARE(shown.model.selectedRows(), (QList<int>{0, 2}));
    shown.click(shown.cell(2).selectionBox.bottomRight());
    QCOMPARE(shown.model.selectedRows(), QList<int>{0});
    QVERIFY(!shown.model.isModified());
}

void TestPdfPageManagerViewChoosing::boxActsInEveryMode_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("normal") << 0;
    QTest::newRow("insert") << static_cast<int>(PdfWorkspaceMode::InsertMode);
    QTest::newRow("extract") << static_cast<int>(PdfWorkspaceMode::ExtractMode);
    QTest::newRow("split") << static_cast<int>(PdfWorkspaceMode::SplitMode);
}

void TestPdfPageManagerViewChoosing::boxActsInEveryMode()
{
    QFETCH(int, mode);
    ShownGrid shown(a4Pages(5));
    shown.view.setWorkspaceMode(mode);
    shown.click(shown.cell(3).selectionBox.center());
    QCOMPARE(shown.model.selectedRows(), QList<int>{3});
}

void TestPdfPageManagerViewChoosing::plainClickLeavesTheChosenPages()
{
    ShownGrid shown(a4Pages(6));
    shown.model.setSelectedPageIds({1, 5});
    for (const int row : {0, 2, 4}) {
        shown.click(shown.cell(row).thumbnail.center());
        QCOMPARE(shown.list->currentIndex().row(), row);
        QCOMPARE(shown.model.selectedRows(), (QList<int>{0, 4}));
    }
}

void TestPdfPageManagerViewChoosing::shiftClickChoosesTheRange()
{
    ShownGrid shown(a4Pages(12));
    QSignalSpy changed(&shown.model, &PdfDocumentModel::selectionChanged);
    shown.model.setPageSelected(12, true);
    shown.click(shown.cell(1).thumbnail.center());
    changed.clear();
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      shown.cell(6).thumbnail.center());
    QCOMPARE(shown.model.selectedRows(), (QList<int>{1, 2, 3, 4, 5, 6, 11}));
    QCOMPARE(changed.size(), 1);
    // Another one from the same start takes its place.
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      shown.cell(3).thumbnail.center());
    QCOMPARE(shown.model.selectedRows(), (QList<int>{1, 2, 3, 11}));
    // One from another start is added.
    shown.click(shown.cell(7).thumbnail.center());
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      shown.cell(8).thumbnail.center());
    QCOMPARE(shown.model.selectedRows(), (QList<int>{1, 2, 3, 7, 8, 11}));
}

void TestPdfPageManagerViewChoosing::rangeLeavesPagesThatWereChosenAfterItsStart()
{
    ShownGrid shown(a4Pages(6));
    shown.click(shown.cell(1).thumbnail.center());
    shown.model.setPageSelected(6, true);
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      shown.cell(3).thumbnail.center());
    QCOMPARE(shown.model.selectedRows(), (QList<int>{1, 2, 3, 5}));
}

void TestPdfPageManagerViewChoosing::controlClickChoosesAndDrops()
{
    ShownGrid shown(a4Pages(6));
    shown.model.setSelectedPageIds({2});
    for (const int row : {4, 1, 0}) {
        QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          shown.cell(row).thumbnail.center());
    }
    QCOMPARE(shown.model.selectedRows(), (QList<int>{0, 4}));
}

void TestPdfPageManagerViewChoosing::rubberBandAddsToTheChosenPages()
{
    ShownGrid shown(a4Pages(6));
    shown.model.setSelectedPageIds({1});
    QWidget *viewport = shown.list->viewport();
    // From right of the last page over it and the one before.
    const QPoint from(shown.cell(5).cell.right() + 100, shown.cell(5).cell.center().y());
    const QPoint to = shown.cell(4).cell.center();
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    for (const QPoint &point : {from - QPoint(30, 0), to + QPoint(1, 0), to}) {
        moveMouse(viewport, point, Qt::LeftButton);
    }
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
    QCOMPARE(shown.model.selectedRows(), (QList<int>{0, 4, 5}));
}

void TestPdfPageManagerViewChoosing::keysChooseWithShiftOnly()
{
    ShownGrid shown(a4Pages(6));
    shown.click(shown.cell(1).thumbnail.center());
    QTest::keyClick(shown.list, Qt::Key_Right);
    QCOMPARE(shown.list->currentIndex().row(), 2);
    QVERIFY(shown.model.selectedRows().isEmpty());
    QTest::keyClick(shown.list, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(shown.model.selectedRows(), (QList<int>{2, 3}));
    QTest::keyClick(shown.list, Qt::Key_Left);
    QCOMPARE(shown.model.selectedRows(), (QList<int>{2, 3}));
}

void TestPdfPageManagerViewChoosing::rangesOfKeysAddUp()
{
    ShownGrid shown(a4Pages(8));
    shown.click(shown.cell(1).thumbnail.center());
    QTest::keyClick(shown.list, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(shown.model.selectedRows(), (QList<int>{1, 2}));
    QTest::keyClick(shown.list, Qt::Key_Right);
    QTest::keyClick(shown.list, Qt::Key_Right);
    QTest::keyClick(shown.list, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(shown.model.selectedRows(), (QList<int>{1, 2, 4, 5}));
}

void TestPdfPageManagerViewChoosing::chosenPagesAreTheMarkedOnes()
{
    ShownGrid shown(a4Pages(6));
    const auto marked = [&] {
        QList<int> rows;
        for (const QModelIndex &index : shown.list->selectionModel()->selectedIndexes()) {
            rows.append(index.row());
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    };
    shown.model.setSelectedPageIds({2, 3, 6});
    QCOMPARE(marked(), (QList<int>{1, 2, 5}));
    shown.model.removePages({1});
    QCOMPARE(marked(), (QList<int>{0, 1, 4}));
    QCOMPARE(shown.model.selectedRows(), (QList<int>{0, 1, 4}));
    const QList<PdfPageRecord> pages = shown.model.pages();
    shown.model.clearSelection();
    QVERIFY(marked().isEmpty());
    shown.model.setPages(pages, true);
    QCOMPARE(marked(), (QList<int>{0, 1, 4}));
}

void TestPdfPageManagerViewChoosing::pressOutsideOfThePagesReachesTheList()
{
    ShownGrid shown(a4Pages(2));
    shown.model.setPageSelected(2, true);
    QSignalSpy pressed(shown.list, &QAbstractItemView::pressed);
    shown.click({900, 500});
    QCOMPARE(pressed.size(), 0);
    QCOMPARE(shown.model.selectedRows(), QList<int>{1});
}

void TestPdfPageManagerViewChoosing::selectAllChoosesAllPages()
{
    ShownGrid shown(a4Pages(5));
    QTest::keyClick(shown.list, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(shown.model.selectedRows().size(), 5);
}

void TestPdfPageManagerViewChoosing::spaceChoosesTheCurrentPage()
{
    ShownGrid shown(a4Pages(5));
    shown.click(shown.cell(2).thumbnail.center());
    QTest::keyClick(shown.list, Qt::Key_Space);
    QCOMPARE(shown.model.selectedRows(), QList<int>{2});
    QTest::keyClick(shown.list, Qt::Key_Space);
    QVERIFY(shown.model.selectedRows().isEmpty());
}

void TestPdfPageManagerViewChoosing::spaceWithAnotherKeyChoosesNoPage_data()
{
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("control") << Qt::KeyboardModifiers(Qt::ControlModifier);
    QTest::newRow("shift") << Qt::KeyboardModifiers(Qt::ShiftModifier);
    QTest::newRow("alt") << Qt::KeyboardModifiers(Qt::AltModifier);
}

void TestPdfPageManagerViewChoosing::spaceWithAnotherKeyChoosesNoPage()
{
    QFETCH(Qt::KeyboardModifiers, modifiers);
    ShownGrid shown(a4Pages(5));
    shown.click(shown.cell(2).thumbnail.center());
    QTest::keyClick(shown.list, Qt::Key_Space, modifiers);
    QVERIFY(shown.model.selectedRows().isEmpty());
}

void TestPdfPageManagerViewChoosing::clicksDoNotToggleTheCheckStateElsewhere()
{
    ShownGrid shown(a4Pages(1));
    const PageCellGeometry cell = shown.cell(0);
    for (int y = cell.cell.top(); y < cell.cell.bottom(); y += 7) {
        for (int x = cell.cell.left(); x < cell.cell.right(); x += 7) {
            if (!cell.selectionBox.contains(x, y)) {
                shown.click({x, y});
            }
        }
    }
    QVERIFY(shown.model.selectedRows().isEmpty());
}

QTEST_MAIN(TestPdfPageManagerViewChoosing)
#include "tst_pdf_page_manager_view_choosing.moc"
