// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/page_drag.h"

#include "tests/pdf/viewer/shown_grid.h"
#include "tests/pdf/viewer/shown_panel.h"
#include "tests/pdf/viewer/shown_view.h"
#include "widgets/theme.h"

#include <QApplication>
#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace {

QList<PdfPageId> idsOf(const PdfDocumentModel &model)
{
    QList<PdfPageId> ids;
    for (const PdfPageRecord &record : model.pages()) {
        ids.append(record.id);
    }
    return ids;
}

/// Drags a page of the panel downwards and gives that up with the Escape key.
void dragAndGiveUp(ShownPanel &shown, int row)
{
    QWidget *viewport = shown.list->viewport();
    QTimer::singleShot(0, viewport, [viewport] {
        QTest::keyClick(viewport, Qt::Key_Escape);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, {2000, 2000});
    });
    QTest::mousePress(viewport, Qt::LeftButton, {}, shown.cardCentre(row));
    for (const int distance : {30, 60}) {
        moveMouse(viewport, shown.cardCentre(row) + QPoint(0, distance), Qt::LeftButton);
    }
}

/// The identifiers of the pages that the panel marks.
QList<PdfPageId> markedPages(const ShownPanel &shown)
{
    QList<PdfPageId> ids;
    const QModelIndexList marked = shown.list->selectionModel()->selectedIndexes();
    for (const QModelIndex &index : marked) {
        ids.append(shown.model.pageAt(index.row())->id);
    }
    return ids;
}

} // namespace

/// Pages dragged with the mouse.
class TestPageDrag final : public QObject
{
    Q_OBJECT

private slots:
    void pageDraggedInThePanelIsMoved_data();
    void pageDraggedInThePanelIsMoved();
    void markStaysOnTheCurrentPageWhenAnotherIsDropped();
    void markStaysOnTheCurrentPageWhenADragIsGivenUp();
    void panelShowsWhereThePageWouldGo();
    void dragAfterAMoveOnThePressedStripMovesThePage();
    void panelRefusesPagesOfAnotherDocument();
    void pageDraggedInTheGridIsMoved_data();
    void pageDraggedInTheGridIsMoved();
    void pageDraggedWithinTheOnlyLineIsMoved_data();
    void pageDraggedWithinTheOnlyLineIsMoved();
    void pageDraggedRightOfALineStaysInIt_data();
    void pageDraggedRightOfALineStaysInIt();
    void dragAfterAMoveOnThePressedBoxMovesThePage();
    void gridRefusesPagesOfAnotherDocument();
    void dragKeepsTheSelectionAndMovesOnePage();
    void rightButtonDragsNoPage();
    void dragShowsWhereThePageWouldGo();
};

void TestPageDrag::pageDraggedInThePanelIsMoved_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<bool>("below");
    QTest::addColumn<QList<PdfPageId>>("order");
    QTest::newRow("down") << 0 << 2 << true << QList<PdfPageId>{2, 3, 1};
    QTest::newRow("between") << 0 << 2 << false << QList<PdfPageId>{2, 1, 3};
    QTest::newRow("up") << 2 << 0 << false << QList<PdfPageId>{3, 1, 2};
    QTest::newRow("onto itself") << 1 << 1 << true << QList<PdfPageId>{1, 2, 3};
    QTest::newRow("before its follower") << 0 << 1 << false << QList<PdfPageId>{1, 2, 3};
    QTest::newRow("behind its predecessor") << 2 << 1 << true << QList<PdfPageId>{1, 2, 3};
}

void TestPageDrag::pageDraggedInThePanelIsMoved()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(bool, below);
    ShownPanel shown(a4Pages(3), {210, 900});
    QSignalSpy moved(&shown.model, &QAbstractItemModel::rowsMoved);
    const QRect target = shown.itemAt(to);
    const QPoint point = target.center() + QPoint(0, below ? 60 : -60);
    dragWithMouse(shown.list->viewport(), shown.cardCentre(from), shown.list->viewport(), point);
    QTEST(idsOf(shown.model), "order");
    QVERIFY(moved.size() <= 1);
    QCOMPARE(shown.list->draggedPage(), PdfPageId(0));
}

void TestPageDrag::markStaysOnTheCurrentPageWhenAnotherIsDropped()
{
    ShownPanel shown(a4Pages(3), {210, 900});
    shown.panel.setCurrentPage(0);
    QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    dragWithMouse(shown.list->viewport(), shown.cardCentre(2), shown.list->viewport(),
                  shown.itemAt(1).center() - QPoint(0, 60));
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 3, 2}));
    QCOMPARE(markedPages(shown), QList<PdfPageId>{1});
    QCOMPARE(shown.list->currentIndex().row(), 0);
    QVERIFY(activated.isEmpty());
}

void TestPageDrag::markStaysOnTheCurrentPageWhenADragIsGivenUp()
{
    ShownPanel shown(a4Pages(3), {210, 900});
    shown.panel.setCurrentPage(1);
    dragAndGiveUp(shown, 0);
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 2, 3}));
    QCOMPARE(markedPages(shown), QList<PdfPageId>{2});
    QCOMPARE(shown.list->currentIndex().row(), 1);
}

void TestPageDrag::panelShowsWhereThePageWouldGo()
{
    ShownPanel shown(a4Pages(3), {210, 900});
    QWidget *viewport = shown.list->viewport();
    const int gap = shown.itemAt(1).bottom() + 1 + shown.list->spacing();
    const QPoint inTheGap(shown.cardCentre(1).x(), gap);
    QVERIFY(shown.picture().pixelColor(inTheGap) != Theme::accent);
    QImage during;
    QTimer::singleShot(0, viewport, [&] {
        for (const int rise : {11, 10}) {
            moveMouse(viewport, inTheGap - QPoint(0, rise), Qt::LeftButton);
            QCoreApplication::processEvents();
        }
        during = shown.picture();
        QTest::keyClick(viewport, Qt::Key_Escape);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, {2000, 2000});
    });
    QTest::mousePress(viewport, Qt::LeftButton, {}, shown.cardCentre(0));
    for (const int distance : {30, 60}) {
        moveMouse(viewport, shown.cardCentre(0) + QPoint(0, distance), Qt::LeftButton);
    }
    QVERIFY(!during.isNull());
    QCOMPARE(during.pixelColor(inTheGap), Theme::accent);
    // It is the only mark.
    const int otherGap = shown.itemAt(0).bottom() + 1 + shown.list->spacing();
    QVERIFY(during.pixelColor(inTheGap.x(), otherGap) != Theme::accent);
    QVERIFY(shown.picture().pixelColor(inTheGap) != Theme::accent);
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 2, 3}));
}

void TestPageDrag::dragAfterAMoveOnThePressedStripMovesThePage()
{
    ShownPanel shown(a4Pages(3), {210, 900});
    QWidget *viewport = shown.list->viewport();
    shown.moveTo(shown.stripPart(1, 1));
    pressAndMoveMouse(viewport, shown.stripPart(1, 1));
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 2, 3}));
    dragWithMouse(viewport, shown.cardCentre(0), viewport,
                  shown.itemAt(2).center() + QPoint(0, 60));
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{2, 3, 1}));
}

void TestPageDrag::panelRefusesPagesOfAnotherDocument()
{
    ShownPanel shown(a4Pages(3), {210, 900});
    ShownPanel other(a4Pages(3), {210, 900});
    other.panel.move(400, 0);
    QCoreApplication::processEvents();
    dragWithMouse(other.list->viewport(), other.cardCentre(0), shown.list->viewport(),
                  shown.itemAt(2).center() + QPoint(0, 60));
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 2, 3}));
    QCOMPARE(idsOf(other.model), (QList<PdfPageId>{1, 2, 3}));
    QVERIFY(!shown.model.isModified());
}

void TestPageDrag::pageDraggedInTheGridIsMoved_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QList<PdfPageId>>("order");
    // Four columns of 260 pixels and lines of 272.
    QTest::newRow("to the left half")
        << 3 << QPoint(300, 150) << QList<PdfPageId>{1, 4, 2, 3, 5, 6};
    QTest::newRow("to the right half")
        << 0 << QPoint(740, 150) << QList<PdfPageId>{2, 3, 1, 4, 5, 6};
    QTest::newRow("to the front") << 5 << QPoint(10, 150) << QList<PdfPageId>{6, 1, 2, 3, 4, 5};
    QTest::newRow("into the next line")
        << 0 << QPoint(30, 400) << QList<PdfPageId>{2, 3, 4, 1, 5, 6};
    QTest::newRow("right of a full line")
        << 0 << QPoint(1060, 150) << QList<PdfPageId>{2, 3, 4, 1, 5, 6};
    QTest::newRow("behind the last page")
        << 1 << QPoint(700, 400) << QList<PdfPageId>{1, 3, 4, 5, 6, 2};
    QTest::newRow("below all pages") << 0 << QPoint(300, 600) << QList<PdfPageId>{2, 3, 4, 5, 6, 1};
    QTest::newRow("onto itself") << 1 << QPoint(480, 100) << QList<PdfPageId>{1, 2, 3, 4, 5, 6};
    QTest::newRow("before its follower")
        << 1 << QPoint(540, 150) << QList<PdfPageId>{1, 2, 3, 4, 5, 6};
}

void TestPageDrag::pageDraggedInTheGridIsMoved()
{
    QFETCH(int, from);
    QFETCH(QPoint, to);
    ShownGrid shown(a4Pages(6));
    dragWithMouse(shown.list->viewport(), shown.cell(from).thumbnail.center(),
                  shown.list->viewport(), to);
    QTEST(idsOf(shown.model), "order");
    QCOMPARE(shown.list->draggedPage(), PdfPageId(0));
    // The cells stand as before, whatever was dragged.
    for (int row = 0; row < 6; ++row) {
        QCOMPARE(shown.list->visualRect(shown.model.index(row)).topLeft(),
                 QPoint(row % 4 * 260, row / 4 * 272));
    }
}

void TestPageDrag::pageDraggedWithinTheOnlyLineIsMoved_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("from");
    QTest::addColumn<QPoint>("to");
    QTest::addColumn<QList<PdfPageId>>("order");
    // Columns of 260 pixels, of which there is room for four.
    QTest::newRow("before the last page")
        << 3 << 0 << QPoint(560, 150) << QList<PdfPageId>{2, 1, 3};
    QTest::newRow("onto the last page") << 3 << 0 << QPoint(740, 150) << QList<PdfPageId>{2, 3, 1};
    QTest::newRow("behind the last page")
        << 3 << 0 << QPoint(900, 150) << QList<PdfPageId>{2, 3, 1};
    QTest::newRow("before the last page of a full line")
        << 4 << 0 << QPoint(820, 150) << QList<PdfPageId>{2, 3, 1, 4};
    QTest::newRow("before the first of two") << 2 << 1 << QPoint(30, 150) << QList<PdfPageId>{2, 1};
}

void TestPageDrag::pageDraggedWithinTheOnlyLineIsMoved()
{
    QFETCH(const int, count);
    QFETCH(const int, from);
    QFETCH(const QPoint, to);
    ShownGrid shown(a4Pages(count));
    dragWithMouse(shown.list->viewport(), shown.cell(from).thumbnail.center(),
                  shown.list->viewport(), to);
    QTEST(idsOf(shown.model), "order");
}

void TestPageDrag::pageDraggedRightOfALineStaysInIt_data()
{
    QTest::addColumn<int>("width");
    // The list wraps a little before a line is full.
    for (int width = 1036; width <= 1064; width += 2) {
        QTest::addRow("%d", width) << width;
    }
}

void TestPageDrag::pageDraggedRightOfALineStaysInIt()
{
    QFETCH(int, width);
    constexpr int kPages = 20;
    ShownGrid shown(a4Pages(kPages), {width, 720});
    QCoreApplication::processEvents();
    int columns = 1;
    while (shown.cell(columns).cell.left() > shown.cell(0).cell.left()) {
        ++columns;
    }
    const QPoint rightOfTheLine(shown.list->viewport()->width() - 2, 150);
    dragWithMouse(shown.list->viewport(), shown.cell(0).thumbnail.center(), shown.list->viewport(),
                  rightOfTheLine);
    QCOMPARE(shown.model.rowForPageId(1), columns - 1);
}

void TestPageDrag::dragAfterAMoveOnThePressedBoxMovesThePage()
{
    ShownGrid shown(a4Pages(6));
    QWidget *viewport = shown.list->viewport();
    const QPoint box = shown.cell(1).selectionBox.center();
    shown.moveTo(box);
    pressAndMoveMouse(viewport, box);
    QCOMPARE(shown.model.selectedRows(), QList<int>{1});
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 2, 3, 4, 5, 6}));
    dragWithMouse(viewport, shown.cell(0).thumbnail.center(), viewport, {700, 400});
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{2, 3, 4, 5, 6, 1}));
}

void TestPageDrag::gridRefusesPagesOfAnotherDocument()
{
    ShownGrid shown(a4Pages(3), {600, 600});
    ShownGrid other(a4Pages(3), {600, 600});
    other.view.move(700, 0);
    QCoreApplication::processEvents();
    dragWithMouse(other.list->viewport(), other.cell(0).thumbnail.center(), shown.list->viewport(),
                  {500, 400});
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 2, 3}));
    QCOMPARE(idsOf(other.model), (QList<PdfPageId>{1, 2, 3}));
    QVERIFY(!shown.model.isModified());
}

void TestPageDrag::dragKeepsTheSelectionAndMovesOnePage()
{
    ShownGrid shown(a4Pages(6));
    shown.model.setSelectedPageIds({1, 2});
    QSignalSpy moved(&shown.model, &QAbstractItemModel::rowsMoved);
    dragWithMouse(shown.list->viewport(), shown.cell(0).thumbnail.center(), shown.list->viewport(),
                  {700, 400});
    QCOMPARE(moved.size(), 1);
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{2, 3, 4, 5, 6, 1}));
    QCOMPARE(shown.model.selectedPageIds(), (QSet<PdfPageId>{1, 2}));
}

void TestPageDrag::rightButtonDragsNoPage()
{
    ShownGrid shown(a4Pages(6));
    QWidget *viewport = shown.list->viewport();
    const QSignalSpy started(shown.list, &PageListView::dragStarted);
    // A drag would have an event loop of its own.
    QTimer::singleShot(200, viewport, [=] { QTest::keyClick(viewport, Qt::Key_Escape); });
    const QPoint from = shown.cell(0).thumbnail.center();
    QTest::mousePress(viewport, Qt::RightButton, {}, from);
    for (const int distance : {15, 30, 45}) {
        moveMouse(viewport, from + QPoint(distance, 0), Qt::RightButton);
    }
    QTest::mouseRelease(viewport, Qt::RightButton, {}, from + QPoint(45, 0));
    QCOMPARE(started.size(), 0);
    QVERIFY(shown.model.selectedRows().isEmpty());
}

void TestPageDrag::dragShowsWhereThePageWouldGo()
{
    ShownGrid shown(a4Pages(4));
    QWidget *viewport = shown.list->viewport();
    QTRY_VERIFY(shown.thumbnail(0));
    const QColor background = shown.picture().pixelColor(0, 0);
    QImage during;
    QTimer::singleShot(0, viewport, [&] {
        // Between the second and the third page.
        for (const int x : {519, 518}) {
            QMouseEvent move(QEvent::MouseMove, QPointF(x, 200),
                             viewport->mapToGlobal(QPoint(x, 200)), Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QCoreApplication::sendEvent(viewport, &move);
            QCoreApplication::processEvents();
        }
        during = shown.picture();
        QTest::keyClick(viewport, Qt::Key_Escape);
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, {2000, 2000});
    });
    const QPoint from = shown.cell(0).thumbnail.center();
    const QPoint edgeOfTheBox = shown.cell(0).selectionBox.center() - QPoint(9, 0);
    QCOMPARE(shown.picture().pixelColor(edgeOfTheBox), Theme::textMuted);
    QTest::mousePress(viewport, Qt::LeftButton, {}, from);
    for (const int distance : {30, 60}) {
        QMouseEvent move(QEvent::MouseMove, from + QPoint(0, distance),
                         viewport->mapToGlobal(from + QPoint(0, distance)), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(viewport, &move);
        if (!during.isNull()) {
            // The drag is over, and the button with it.
            break;
        }
    }
    QVERIFY(!during.isNull());
    QCOMPARE(during.pixelColor(520, 127), Theme::accent);
    // It is the only mark.
    QCOMPARE(during.pixelColor(0, 0), background);
    // Nothing is under the pointer, which holds a page.
    const QPoint inTheBar = shown.cell(0).actionBar.center() + QPoint(0, 13);
    QCOMPARE(during.pixelColor(inTheBar), during.pixelColor(from));
    // The page being dragged is paler at its old place.
    QVERIFY(during.pixelColor(from) != RenderProbe::colorOf(0));
    QVERIFY(during.pixelColor(edgeOfTheBox).lightness() > Theme::textMuted.lightness() + 15);
    QCOMPARE(shown.picture().pixelColor(from), RenderProbe::colorOf(0));
    QVERIFY(shown.picture().pixelColor(520, 127) != Theme::accent);
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 2, 3, 4}));
}

int main(int argc, char **argv)
{
    // The platform that the other tests run on knows no dragging.
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QApplication application(argc, argv);
    TestPageDrag test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_page_drag.moc"
