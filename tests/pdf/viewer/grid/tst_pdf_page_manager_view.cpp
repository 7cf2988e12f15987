// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/pdf_page_manager_view.h"

#include "pdf/viewer/grid/page_grid_zoom_control.h"
#include "tests/pdf/signal_signatures.h"
#include "tests/pdf/viewer/page_drag.h"
#include "tests/pdf/viewer/shown_grid.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QHash>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QStyledItemDelegate>
#include <QTest>
#include <QToolButton>
#include <QToolTip>

namespace {

constexpr int kNormalMode = 0;
constexpr int kInsertMode = 1;
constexpr int kExtractMode = 2;
constexpr int kSplitMode = 3;

/// What can be pressed on a page.
enum class PagePart {
    ActionBar,
    SelectionBox,
    InsertZone,
    SplitZone,
};

/// The rows of the latest report of split points.
QList<int> lastRows(const QSignalSpy &spy)
{
    return spy.isEmpty() ? QList<int>{-1} : spy.constLast().at(0).value<QList<int>>();
}

} // namespace

/// The page grid as its user sees and handles it.
class TestPdfPageManagerView final : public QObject
{
    Q_OBJECT

private slots:
    void hasItsShape();
    void signalsInOrder();
    void listHasItsSettings();
    void zoomControlFloatsAtTheBottom();
    void zoomControlIsRaised();
    void zoomControlHasItsSteps();
    void heldZoomButtonGoesOn_data();
    void heldZoomButtonGoesOn();
    void zoomSetsTheSizes_data();
    void zoomSetsTheSizes();
    void zoomingKeepsThePageAtTheTop();
    void lastPageCanBeScrolledAboveTheZoomControl();
    void positionsAreRoundedToWholePixels();
    void actionBarOfTheHoveredPageActs_data();
    void actionBarOfTheHoveredPageActs();
    void actionBarOfAnotherPageIsNoAction();
    void takenPressDoesNotReachTheList();
    void movingWithAPressedPartNeitherSelectsNorDrags_data();
    void movingWithAPressedPartNeitherSelectsNorDrags();
    void otherPressReachesTheList();
    void rightButtonDoesNotAct();
    void secondPressOfADoubleClickActsAgain();
    void clickActsOnAnotherPageThanTheOneBefore();
    void doubleClickOnABinDeletesOnePage();
    void leavingEndsTheHover();
    void scrollingMovesTheHover();
    void insertZoneAsksForAnInsertion();
    void insertZoneOnlyActsInInsertMode();
    void splitGapIsToggled();
    void sameGapTwiceReportsTheShorterList();
    void onePageOffersNoSplit();
    void everyPageSplitReportsAllGaps();
    void everyPageSplitIgnoresClicks();
    void splitPointsFollowTheirPages();
    void splitPointsOfDeletedPagesStopCounting();
    void splitPointsAreReportedAgainAfterAReset();
    void splitPointsOfAnotherModelAreForgotten();
    void sameModelKeepsTheSplitPoints();
    void everyPageSplitFollowsThePageCount();
    void toolTipsNameWhatIsUnderThePointer();
    void worksWithoutAModel();
};

void TestPdfPageManagerView::hasItsShape()
{
    const ShownGrid shown(a4Pages(3));
    QCOMPARE(shown.view.objectName(), QStringLiteral("pdfPageManagerView"));
    QVERIFY(shown.list);
    QVERIFY(shown.slider);
    QVERIFY(shown.view.findChild<QWidget *>(QStringLiteral("pdfPageGridZoomControl")));
    QVERIFY(shown.view.findChild<QToolButton *>(QStringLiteral("pdfPageGridZoomOut")));
    QVERIFY(shown.view.findChild<QToolButton *>(QStringLiteral("pdfPageGridZoomIn")));
    QCOMPARE(shown.list->gridSize(), QSize(260, 272));
    QCOMPARE(shown.list->metrics().thumbnail, QSize(206, 232));
    QCOMPARE(shown.list->visualRect(shown.model.index(1)), QRect(260, 0, 260, 272));
}

void TestPdfPageManagerView::signalsInOrder()
{
    QCOMPARE(signalSignatures(PdfPageManagerView::staticMetaObject),
             (QByteArrayList{"previewPageRequested(PdfPageId)", "duplicatePageRequested(PdfPageId)",
                             "rotatePageRequested(PdfPageId)", "deletePageRequested(PdfPageId)",
                             "insertAtRequested(int,QPoint)", "splitPointsChanged(QList<int>)"}));
}

void TestPdfPageManagerView::listHasItsSettings()
{
    const ShownGrid shown(a4Pages(3));
    const QListView &list = *shown.list;
    QCOMPARE(list.metaObject()->className(), "PageManagerListView");
    const QAbstractItemDelegate *delegate = list.itemDelegate();
    QCOMPARE(delegate->metaObject()->className(), "PageManagerDelegate");
    QVERIFY(qobject_cast<const QStyledItemDelegate *>(delegate));
    QCOMPARE(list.viewMode(), QListView::IconMode);
    QCOMPARE(list.flow(), QListView::LeftToRight);
    QVERIFY(list.isWrapping());
    QCOMPARE(list.resizeMode(), QListView::Adjust);
    QCOMPARE(list.movement(), QListView::Snap);
    QCOMPARE(list.spacing(), 0);
    QVERIFY(list.uniformItemSizes());
    QCOMPARE(list.editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(list.selectionMode(), QAbstractItemView::ExtendedSelection);
    QVERIFY(list.dragEnabled());
    QVERIFY(list.acceptDrops());
    QVERIFY(list.showDropIndicator());
    QCOMPARE(list.defaultDropAction(), Qt::MoveAction);
    QCOMPARE(list.dragDropMode(), QAbstractItemView::InternalMove);
}

void TestPdfPageManagerView::zoomControlFloatsAtTheBottom()
{
    ShownGrid shown(a4Pages(40));
    const auto *control = shown.view.findChild<PageGridZoomControl *>();
    for (const QSize &size : {QSize(900, 600), QSize(600, 400)}) {
        shown.view.resize(size);
        QCoreApplication::processEvents();
        QVERIFY(control->isVisible());
        const QRect viewport(shown.list->viewport()->mapTo(&shown.view, QPoint()),
                             shown.list->viewport()->size());
        QCOMPARE(viewport.bottom() - control->geometry().bottom(), 16);
        QVERIFY(std::abs(control->geometry().center().x() - viewport.center().x()) <= 1);
    }
}

void TestPdfPageManagerView::zoomControlIsRaised()
{
    ShownGrid shown(a4Pages(40));
    const auto *control = shown.view.findChild<PageGridZoomControl *>();
    const auto isOnTop = [&] {
        const QPoint corner = control->geometry().topLeft() + QPoint(6, 6);
        return shown.view.childAt(corner) == control;
    };
    QVERIFY(isOnTop());
    shown.list->raise();
    QVERIFY(!isOnTop());
    shown.view.resize(900, 600);
    QVERIFY(isOnTop());
}

void TestPdfPageManagerView::zoomControlHasItsSteps()
{
    ShownGrid shown(a4Pages(3));
    QCOMPARE(shown.slider->minimum(), 70);
    QCOMPARE(shown.slider->maximum(), 160);
    QCOMPARE(shown.slider->singleStep(), 5);
    QCOMPARE(shown.slider->pageStep(), 10);
    QCOMPARE(shown.slider->value(), 80);
    auto *zoomIn = shown.view.findChild<QToolButton *>(QStringLiteral("pdfPageGridZoomIn"));
    auto *zoomOut = shown.view.findChild<QToolButton *>(QStringLiteral("pdfPageGridZoomOut"));
    for (const QToolButton *button : {zoomIn, zoomOut}) {
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);
        QCOMPARE(button->cursor().shape(), Qt::PointingHandCursor);
        QVERIFY(!button->toolTip().isEmpty());
    }
    QTest::mouseClick(zoomIn, Qt::LeftButton);
    QCOMPARE(shown.slider->value(), 90);
    QTest::mouseClick(zoomOut, Qt::LeftButton);
    QTest::mouseClick(zoomOut, Qt::LeftButton);
    QCOMPARE(shown.slider->value(), 70);
    QVERIFY(!zoomOut->isEnabled());
    shown.slider->setValue(160);
    QVERIFY(zoomOut->isEnabled());
    QVERIFY(!zoomIn->isEnabled());
}

void TestPdfPageManagerView::heldZoomButtonGoesOn_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::newRow("in") << QStringLiteral("pdfPageGridZoomIn") << 130 << 160;
    QTest::newRow("out") << QStringLiteral("pdfPageGridZoomOut") << 100 << 70;
}

void TestPdfPageManagerView::heldZoomButtonGoesOn()
{
    QFETCH(QString, name);
    QFETCH(int, from);
    QFETCH(int, to);
    ShownGrid shown(a4Pages(3));
    shown.slider->setValue(from);
    auto *button = shown.view.findChild<QToolButton *>(name);
    QTest::mousePress(button, Qt::LeftButton);
    QTRY_COMPARE(shown.slider->value(), to);
    QTest::mouseRelease(button, Qt::LeftButton);
    QCOMPARE(shown.slider->value(), to);
}

void TestPdfPageManagerView::zoomSetsTheSizes_data()
{
    QTest::addColumn<int>("zoom");
    QTest::addColumn<QSize>("cell");
    QTest::addColumn<QSize>("thumbnail");
    QTest::newRow("smallest") << 70 << QSize(230, 238) << QSize(181, 203);
    QTest::newRow("with halves") << 75 << QSize(245, 255) << QSize(194, 218);
    QTest::newRow("full") << 100 << QSize(320, 340) << QSize(258, 290);
    QTest::newRow("largest") << 160 << QSize(500, 544) << QSize(413, 464);
    QTest::newRow("below the limit") << 10 << QSize(230, 238) << QSize(181, 203);
    QTest::newRow("above the limit") << 1000 << QSize(500, 544) << QSize(413, 464);
}

void TestPdfPageManagerView::zoomSetsTheSizes()
{
    QFETCH(int, zoom);
    QFETCH(QSize, cell);
    ShownGrid shown(a4Pages(30));
    shown.slider->setValue(zoom);
    QCOMPARE(shown.list->gridSize(), cell);
    QCOMPARE(shown.list->metrics().cell, cell);
    QTEST(shown.list->metrics().thumbnail, "thumbnail");
    QCOMPARE(shown.list->visualRect(shown.model.index(1)).size(), cell);
}

void TestPdfPageManagerView::zoomingKeepsThePageAtTheTop()
{
    ShownGrid shown(a4Pages(200));
    shown.list->verticalScrollBar()->setValue(20 * 272 + 100);
    const QModelIndex corner = shown.list->indexAt({0, 0});
    QCOMPARE(corner.row(), 80);
    for (const int zoom : {120, 160, 70}) {
        shown.slider->setValue(zoom);
        QCOMPARE(shown.list->visualRect(corner).top(), 0);
    }
}

void TestPdfPageManagerView::lastPageCanBeScrolledAboveTheZoomControl()
{
    ShownGrid shown(a4Pages(30));
    QScrollBar *bar = shown.list->verticalScrollBar();
    bar->setValue(bar->maximum());
    const auto *control = shown.view.findChild<PageGridZoomControl *>();
    const QPoint corner = shown.cell(29).cell.bottomLeft();
    QVERIFY(shown.list->viewport()->mapTo(&shown.view, corner).y() < control->geometry().top());
    // Laying out again leaves the view where it is.
    const int value = bar->value();
    shown.list->doItemsLayout();
    QCOMPARE(bar->value(), value);
    // A grid that fills the view only together with the room below it comes to rest.
    ShownGrid tight(a4Pages(8), {1100, 560});
    QTest::qWait(50);
    const qint64 layouts = tight.list->layoutCount();
    QTest::qWait(100);
    QCOMPARE(tight.list->layoutCount(), layouts);
}

void TestPdfPageManagerView::positionsAreRoundedToWholePixels()
{
    ShownGrid shown(a4Pages(5));
    const QPointF corner = shown.cell(1).selectionBox.topLeft();
    const auto pressAt = [&shown](QPointF point) {
        QMouseEvent press(QEvent::MouseButtonPress, point,
                          shown.list->viewport()->mapToGlobal(point), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(shown.list->viewport(), &press);
    };
    pressAt(corner - QPointF(0.6, 0.0));
    QVERIFY(shown.model.selectedRows().isEmpty());
    pressAt(corner - QPointF(0.5, 0.5));
    QCOMPARE(shown.model.selectedRows(), QList<int>{1});
}

void TestPdfPageManagerView::actionBarOfTheHoveredPageActs_data()
{
    QTest::addColumn<int>("part");
    QTest::newRow("preview") << 0;
    QTest::newRow("duplicate") << 1;
    QTest::newRow("rotate") << 2;
    QTest::newRow("delete") << 3;
}

void TestPdfPageManagerView::actionBarOfTheHoveredPageActs()
{
    QFETCH(int, part);
    ShownGrid shown(a4Pages(5));
    QSignalSpy preview(&shown.view, &PdfPageManagerView::previewPageRequested);
    QSignalSpy duplicate(&shown.view, &PdfPageManagerView::duplicatePageRequested);
    QSignalSpy rotate(&shown.view, &PdfPageManagerView::rotatePageRequested);
    QSignalSpy remove(&shown.view, &PdfPageManagerView::deletePageRequested);
    const QList<QSignalSpy *> spies{&preview, &duplicate, &rotate, &remove};
    shown.moveTo(shown.barPartOf(2, part));
    shown.press(shown.barPartOf(2, part));
    for (int i = 0; i < spies.size(); ++i) {
        QCOMPARE(spies.at(i)->size(), i == part ? 1 : 0);
    }
    QCOMPARE(spies.at(part)->at(0).at(0).value<PdfPageId>(), PdfPageId(3));
    QCOMPARE(shown.model.rowCount(), 5);
}

void TestPdfPageManagerView::actionBarOfAnotherPageIsNoAction()
{
    ShownGrid shown(a4Pages(5));
    QSignalSpy remove(&shown.view, &PdfPageManagerView::deletePageRequested);
    shown.moveTo(shown.cell(0).thumbnail.center());
    shown.click(shown.barPartOf(2, 3));
    QCOMPARE(remove.size(), 0);
    QCOMPARE(shown.list->currentIndex().row(), 2);
}

void TestPdfPageManagerView::takenPressDoesNotReachTheList()
{
    ShownGrid shown(a4Pages(5));
    shown.click(shown.cell(1).thumbnail.center());
    QSignalSpy clicked(shown.list, &QAbstractItemView::clicked);
    shown.moveTo(shown.barPartOf(1, 0));
    shown.click(shown.barPartOf(1, 0));
    shown.click(shown.cell(3).selectionBox.center());
    QCOMPARE(clicked.size(), 0);
    QCOMPARE(shown.list->currentIndex().row(), 1);
}

void TestPdfPageManagerView::movingWithAPressedPartNeitherSelectsNorDrags_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<PagePart>("part");
    QTest::addColumn<int>("clickedRow");
    for (const int clickedRow : {-1, 0}) {
        const auto addRow = [clickedRow](const char *name, int mode, PagePart part) {
            QTest::addRow("%s, %s", name, clickedRow < 0 ? "nothing chosen" : "a page chosen")
                << mode << part << clickedRow;
        };
        addRow("action bar", kNormalMode, PagePart::ActionBar);
        addRow("selection box", kNormalMode, PagePart::SelectionBox);
        addRow("insertion zone", kInsertMode, PagePart::InsertZone);
        addRow("split zone", kSplitMode, PagePart::SplitZone);
    }
}

void TestPdfPageManagerView::movingWithAPressedPartNeitherSelectsNorDrags()
{
    QFETCH(int, mode);
    QFETCH(PagePart, part);
    QFETCH(int, clickedRow);
    ShownGrid shown(a4Pages(6));
    shown.view.setWorkspaceMode(mode);
    // A list that gets the focus makes its first row the current one.
    shown.view.activateWindow();
    shown.list->setFocus();
    QTRY_VERIFY(shown.list->hasFocus());
    if (clickedRow >= 0) {
        shown.click(shown.cell(clickedRow).thumbnail.center());
    }
    const QModelIndex current = shown.list->currentIndex();
    QSignalSpy rotate(&shown.view, &PdfPageManagerView::rotatePageRequested);
    QSignalSpy insert(&shown.view, &PdfPageManagerView::insertAtRequested);
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    QSignalSpy clicked(shown.list, &QAbstractItemView::clicked);
    QSignalSpy dragged(shown.list, &PageListView::dragStarted);
    QSignalSpy moved(&shown.model, &QAbstractItemModel::rowsMoved);
    const PageCellGeometry cell = shown.cell(5);
    const QHash<PagePart, QPoint> points{{PagePart::ActionBar, shown.barPartOf(5, 2)},
                                         {PagePart::SelectionBox, cell.selectionBox.center()},
                                         {PagePart::InsertZone, cell.insertZone.center()},
                                         {PagePart::SplitZone, cell.splitZone.center()}};
    shown.moveTo(points.value(part));
    pressAndMoveMouse(shown.list->viewport(), points.value(part));
    QCOMPARE(rotate.size(), part == PagePart::ActionBar ? 1 : 0);
    QCOMPARE(insert.size(), part == PagePart::InsertZone ? 1 : 0);
    QCOMPARE(split.size(), part == PagePart::SplitZone ? 1 : 0);
    QCOMPARE(shown.model.selectedRows(),
             part == PagePart::SelectionBox ? QList<int>{5} : QList<int>());
    QCOMPARE(dragged.size(), 0);
    QCOMPARE(moved.size(), 0);
    QCOMPARE(clicked.size(), 0);
    QCOMPARE(shown.list->currentIndex(), current);
    QCOMPARE(shown.list->selectionModel()->selectedIndexes(),
             part == PagePart::SelectionBox ? QModelIndexList{shown.model.index(5)}
                                            : QModelIndexList());

    // What comes after is a click as ever.
    shown.click(shown.cell(1).thumbnail.center());
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(shown.list->currentIndex().row(), 1);
}

void TestPdfPageManagerView::otherPressReachesTheList()
{
    ShownGrid shown(a4Pages(5));
    shown.click(shown.cell(3).thumbnail.center());
    QCOMPARE(shown.list->currentIndex().row(), 3);
    QVERIFY(!shown.list->selectionModel()->isSelected(shown.model.index(3)));
    QVERIFY(shown.model.selectedRows().isEmpty());
}

void TestPdfPageManagerView::rightButtonDoesNotAct()
{
    ShownGrid shown(a4Pages(5));
    QSignalSpy remove(&shown.view, &PdfPageManagerView::deletePageRequested);
    shown.moveTo(shown.barPartOf(2, 3));
    QTest::mouseClick(shown.list->viewport(), Qt::RightButton, {}, shown.barPartOf(2, 3));
    QTest::mouseClick(shown.list->viewport(), Qt::RightButton, {},
                      shown.cell(2).selectionBox.center());
    QCOMPARE(remove.size(), 0);
    QVERIFY(shown.model.selectedRows().isEmpty());
}

void TestPdfPageManagerView::doubleClickOnABinDeletesOnePage()
{
    ShownGrid shown(a4Pages(5));
    connect(&shown.view, &PdfPageManagerView::deletePageRequested, &shown.model,
            [&](PdfPageId id) { shown.model.removePages({id}); });
    const QPoint point = shown.barPartOf(1, 3);
    shown.moveTo(point);
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, point);
    QCoreApplication::processEvents();
    shown.moveTo(point);
    pressAgain(shown.list->viewport(), point);
    QTest::mouseRelease(shown.list->viewport(), Qt::LeftButton, {}, point);
    QCOMPARE(shown.model.rowCount(), 4);
    // A click of its own deletes the next one.
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, point);
    QCOMPARE(shown.model.rowCount(), 3);
}

void TestPdfPageManagerView::secondPressOfADoubleClickActsAgain()
{
    ShownGrid shown(a4Pages(5));
    const QPoint point = shown.cell(1).selectionBox.center();
    shown.click(point);
    pressAgain(shown.list->viewport(), point);
    QVERIFY(shown.model.selectedRows().isEmpty());
}

void TestPdfPageManagerView::clickActsOnAnotherPageThanTheOneBefore()
{
    ShownGrid shown(a4Pages(5));
    QSignalSpy rotate(&shown.view, &PdfPageManagerView::rotatePageRequested);
    for (const int row : {1, 3, 0}) {
        shown.click(shown.cell(row).selectionBox.center());
        shown.moveTo(shown.barPartOf(row, 2));
        shown.click(shown.barPartOf(row, 2));
    }
    QCOMPARE(shown.model.selectedRows(), (QList<int>{0, 1, 3}));
    QCOMPARE(rotate.size(), 3);
}

void TestPdfPageManagerView::leavingEndsTheHover()
{
    ShownGrid shown(a4Pages(5));
    QSignalSpy preview(&shown.view, &PdfPageManagerView::previewPageRequested);
    shown.moveTo(shown.barPartOf(1, 0));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(shown.list->viewport(), &leave);
    shown.press(shown.barPartOf(1, 0));
    QCOMPARE(preview.size(), 0);
}

void TestPdfPageManagerView::scrollingMovesTheHover()
{
    ShownGrid shown(a4Pages(40));
    QSignalSpy rotate(&shown.view, &PdfPageManagerView::rotatePageRequested);
    const QPoint point = shown.barPartOf(1, 2);
    shown.moveTo(point);
    shown.list->verticalScrollBar()->setValue(2 * 272);
    QCoreApplication::processEvents();
    shown.press(point);
    QCOMPARE(rotate.size(), 1);
    QCOMPARE(rotate.at(0).at(0).value<PdfPageId>(), PdfPageId(10));
}

void TestPdfPageManagerView::insertZoneAsksForAnInsertion()
{
    ShownGrid shown(a4Pages(6));
    shown.view.setWorkspaceMode(kInsertMode);
    QSignalSpy insert(&shown.view, &PdfPageManagerView::insertAtRequested);
    QSignalSpy clicked(shown.list, &QAbstractItemView::clicked);
    for (const int row : {0, 3, 5}) {
        const QPoint point = shown.cell(row).insertZone.center();
        shown.click(point);
        QCOMPARE(insert.constLast().at(0).toInt(), row + 1);
        QCOMPARE(insert.constLast().at(1).toPoint(), shown.list->viewport()->mapToGlobal(point));
    }
    QCOMPARE(insert.size(), 3);
    QCOMPARE(clicked.size(), 0);
    shown.click(shown.cell(2).thumbnail.center());
    QCOMPARE(insert.size(), 3);
    QCOMPARE(clicked.size(), 1);
}

void TestPdfPageManagerView::insertZoneOnlyActsInInsertMode()
{
    ShownGrid shown(a4Pages(6));
    QSignalSpy insert(&shown.view, &PdfPageManagerView::insertAtRequested);
    for (const int mode : {0, kExtractMode, kSplitMode}) {
        shown.view.setWorkspaceMode(mode);
        shown.click(shown.cell(0).insertZone.center());
    }
    QCOMPARE(insert.size(), 0);
}

void TestPdfPageManagerView::splitGapIsToggled()
{
    ShownGrid shown(a4Pages(6));
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    shown.click(shown.cell(3).splitZone.center());
    QCOMPARE(split.size(), 0);
    shown.view.setWorkspaceMode(kSplitMode);
    shown.click(shown.cell(3).splitZone.center());
    QCOMPARE(lastRows(split), QList<int>{3});
    shown.click(shown.cell(1).splitZone.center());
    QCOMPARE(lastRows(split), (QList<int>{1, 3}));
    // The first page of a line: half of its gap is in view.
    shown.click(shown.cell(4).splitZone.center() + QPoint(4, 0));
    QCOMPARE(lastRows(split), (QList<int>{1, 3, 4}));
    QCOMPARE(split.size(), 3);
}

void TestPdfPageManagerView::sameGapTwiceReportsTheShorterList()
{
    ShownGrid shown(a4Pages(6));
    shown.view.setWorkspaceMode(kSplitMode);
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    shown.click(shown.cell(1).splitZone.center());
    shown.click(shown.cell(2).splitZone.center());
    QCOMPARE(lastRows(split), (QList<int>{1, 2}));
    shown.click(shown.cell(2).splitZone.center());
    QCOMPARE(lastRows(split), QList<int>{1});
    shown.click(shown.cell(1).splitZone.center());
    QCOMPARE(lastRows(split), QList<int>());
}

void TestPdfPageManagerView::onePageOffersNoSplit()
{
    ShownGrid shown(a4Pages(1));
    shown.view.setWorkspaceMode(kSplitMode);
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    shown.click({3, shown.cell(0).splitZone.center().y()});
    shown.click(shown.cell(0).insertZone.center());
    QCOMPARE(split.size(), 0);
    shown.view.setEveryPageSplit(true);
    QCOMPARE(lastRows(split), QList<int>());
}

void TestPdfPageManagerView::everyPageSplitReportsAllGaps()
{
    ShownGrid shown(a4Pages(4));
    shown.view.setWorkspaceMode(kSplitMode);
    shown.click(shown.cell(2).splitZone.center());
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    shown.view.setEveryPageSplit(true);
    QCOMPARE(lastRows(split), (QList<int>{1, 2, 3}));
    shown.view.setEveryPageSplit(false);
    QCOMPARE(lastRows(split), QList<int>{2});
    QCOMPARE(split.size(), 2);
}

void TestPdfPageManagerView::everyPageSplitIgnoresClicks()
{
    ShownGrid shown(a4Pages(4));
    shown.view.setWorkspaceMode(kSplitMode);
    shown.view.setEveryPageSplit(true);
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    QSignalSpy clicked(shown.list, &QAbstractItemView::clicked);
    shown.click(shown.cell(2).splitZone.center());
    QCOMPARE(split.size(), 0);
    QCOMPARE(clicked.size(), 0);
    shown.view.setEveryPageSplit(false);
    QCOMPARE(lastRows(split), QList<int>());
}

void TestPdfPageManagerView::splitPointsFollowTheirPages()
{
    ShownGrid shown(a4Pages(6));
    shown.view.setWorkspaceMode(kSplitMode);
    shown.click(shown.cell(2).splitZone.center());
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    QVERIFY(shown.model.moveRows({}, 2, 1, {}, 6));
    QTRY_COMPARE(lastRows(split), QList<int>{5});
    shown.model.insertBlankPage(0, {595, 842});
    QTRY_COMPARE(lastRows(split), QList<int>{6});
    // The first page of the document begins no new part.
    QVERIFY(shown.model.moveRows({}, 6, 1, {}, 0));
    QTRY_COMPARE(lastRows(split), QList<int>());
}

void TestPdfPageManagerView::splitPointsOfDeletedPagesStopCounting()
{
    ShownGrid shown(a4Pages(6));
    shown.view.setWorkspaceMode(kSplitMode);
    shown.click(shown.cell(2).splitZone.center());
    shown.click(shown.cell(3).splitZone.center());
    const QList<PdfPageRecord> before = shown.model.pages();
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    shown.model.removePages({3});
    QTRY_COMPARE(lastRows(split), QList<int>{2});
    shown.model.setPages(before, false);
    QTRY_COMPARE(lastRows(split), (QList<int>{2, 3}));
}

void TestPdfPageManagerView::splitPointsAreReportedAgainAfterAReset()
{
    ShownGrid shown(a4Pages(6));
    shown.view.setWorkspaceMode(kSplitMode);
    shown.click(shown.cell(2).splitZone.center());
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    shown.model.setPages(shown.model.pages(), true);
    QTRY_COMPARE(split.size(), 1);
    QCOMPARE(lastRows(split), QList<int>{2});
}

void TestPdfPageManagerView::splitPointsOfAnotherModelAreForgotten()
{
    ShownGrid shown(a4Pages(6));
    shown.view.setWorkspaceMode(kSplitMode);
    shown.click(shown.cell(2).splitZone.center());
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    PdfDocumentModel other;
    other.setPages(recordsOfSizes(a4Pages(6)), false);
    shown.view.setModel(&other);
    QTRY_COMPARE(lastRows(split), QList<int>());
    shown.view.setModel(nullptr);
}

void TestPdfPageManagerView::sameModelKeepsTheSplitPoints()
{
    ShownGrid shown(a4Pages(6));
    shown.view.setWorkspaceMode(kSplitMode);
    shown.click(shown.cell(2).splitZone.center());
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    shown.view.setModel(&shown.model);
    QCoreApplication::processEvents();
    QCOMPARE(split.size(), 0);
    shown.click(shown.cell(4).splitZone.center() + QPoint(4, 0));
    QCOMPARE(lastRows(split), (QList<int>{2, 4}));
    // The model is listened to once.
    shown.model.removePages({3});
    QTRY_COMPARE(lastRows(split), QList<int>{3});
    QCOMPARE(split.size(), 2);
}

void TestPdfPageManagerView::everyPageSplitFollowsThePageCount()
{
    ShownGrid shown(a4Pages(3));
    shown.view.setEveryPageSplit(true);
    QSignalSpy split(&shown.view, &PdfPageManagerView::splitPointsChanged);
    shown.model.removePages({1});
    QTRY_COMPARE(lastRows(split), QList<int>{1});
}

void TestPdfPageManagerView::toolTipsNameWhatIsUnderThePointer()
{
    ShownGrid shown(a4Pages(3));
    const auto toolTipAt = [&shown](QPoint point) {
        // The tip before is gone: one that is on its way out says nothing about this place.
        QToolTip::hideText();
        (void)QTest::qWaitFor([] { return !QToolTip::isVisible(); });
        shown.moveTo(point);
        QHelpEvent help(QEvent::ToolTip, point, shown.list->viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(shown.list->viewport(), &help);
        return QToolTip::text();
    };
    const QStringList actions{QStringLiteral("预览页面"), QStringLiteral("复制页面"),
                              QStringLiteral("向右旋转页面"), QStringLiteral("删除页面")};
    for (int part = 0; part < actions.size(); ++part) {
        QCOMPARE(toolTipAt(shown.barPartOf(1, part)), actions.at(part));
    }
    QCOMPARE(toolTipAt(shown.cell(1).caption.center()), QString());
    QCOMPARE(toolTipAt(shown.cell(1).selectionBox.center()), QStringLiteral("选择页面"));
    shown.model.selectAll();
    QCOMPARE(toolTipAt(shown.cell(1).selectionBox.center()), QStringLiteral("取消选择页面"));
    shown.view.setWorkspaceMode(kInsertMode);
    QCOMPARE(toolTipAt(shown.cell(1).insertZone.center()), QStringLiteral("在此处插入页面"));
    shown.view.setWorkspaceMode(kSplitMode);
    const QPoint gap = shown.cell(1).splitZone.center();
    QCOMPARE(toolTipAt(gap), QStringLiteral("在此处拆分"));
    shown.click(gap);
    QCOMPARE(toolTipAt(gap), QStringLiteral("取消此处的拆分"));
    // Nothing can be done there while every page is a part.
    shown.view.setEveryPageSplit(true);
    QCOMPARE(toolTipAt(gap), QString());
    QToolTip::hideText();
}

void TestPdfPageManagerView::worksWithoutAModel()
{
    ShownGrid shown(a4Pages(2));
    shown.view.setModel(nullptr);
    shown.view.setEveryPageSplit(true);
    shown.view.setWorkspaceMode(kSplitMode);
    shown.moveTo({100, 100});
    shown.click({100, 100});
    shown.slider->setValue(120);
    QTest::keyClick(shown.list, Qt::Key_Space);
    QTest::keyClick(shown.list, Qt::Key_A, Qt::ControlModifier);
    QTest::qWait(220);
    QCOMPARE(shown.view.thumbnails().heldCount(), 0);
    QVERIFY(!shown.picture().isNull());
}

QTEST_MAIN(TestPdfPageManagerView)
#include "tst_pdf_page_manager_view.moc"
