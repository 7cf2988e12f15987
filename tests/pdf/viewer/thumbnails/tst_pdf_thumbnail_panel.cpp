// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"

#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/thumbnails/pdf_insert_drop_zone.h"
#include "tests/pdf/signal_signatures.h"
#include "tests/pdf/viewer/page_drag.h"
#include "tests/pdf/viewer/shown_panel.h"
#include "tests/pdf/viewer/shown_view.h"
#include "widgets/theme.h"

#include <QDragEnterEvent>
#include <QIcon>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QUrl>

namespace {

QList<PdfPageId> idsOf(const PdfDocumentModel &model)
{
    QList<PdfPageId> ids;
    for (const PdfPageRecord &record : model.pages()) {
        ids.append(record.id);
    }
    return ids;
}

/// Whether something of the colour is painted in the rectangle.
bool holdsColor(const QImage &image, const QRect &rect, const QColor &color)
{
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            if (image.pixelColor(x, y) == color) {
                return true;
            }
        }
    }
    return false;
}

} // namespace

/// The thumbnail panel as its user sees and handles it.
class TestPdfThumbnailPanel final : public QObject
{
    Q_OBJECT

private slots:
    void hasItsShape();
    void signalsInOrder();
    void listHasItsSettings();
    void clickActivatesThePage();
    void arrowKeyActivatesThePage();
    void keyThatStaysOnItsPageActivatesNothing_data();
    void keyThatStaysOnItsPageActivatesNothing();
    void stripOfTheHoveredRowActs_data();
    void stripOfTheHoveredRowActs();
    void middleThirdRotatesWithoutChangingTheSelection();
    void stripOfAnotherRowDoesNotAct();
    void rightButtonDoesNotActOnTheStrip();
    void doubleClickOnABinOpensNoPage();
    void secondPressOfADoubleClickActsAgain();
    void clickActsOnAnotherPageThanTheOneBefore();
    void doubleClickOnABinDeletesOnePage();
    void releaseOnTheStripIsNoClick();
    void movingWithThePressedStripNeitherSelectsNorDrags_data();
    void movingWithThePressedStripNeitherSelectsNorDrags();
    void leavingEndsTheHover();
    void scrollingMovesTheHover();
    void toolTipsNameTheActions();
    void setCurrentPageSelectsAndScrolls();
    void setCurrentPageIgnoresRowsOutOfRange();
    void setCurrentPageActivatesNothing();
    void currentPageSurvivesUndo();
    void undoLeavesTheListWhereItWasScrolledTo();
    void newDocumentBeginsAtItsFirstPage();
    void panelBeginsAnewWithItsModel();
    void removedCurrentPageLeavesASelectedOne();
    void checkStateIsNotToggledByClicks();
    void chooseInsertsBehindTheLastPage();
    void droppedFilesAreInsertedBehindTheLastPage();
    void pageFromOutsideTheProgramIsRefused();
    void modelCanBeReplacedAndTakenAway();
    void paintsCardImageCaptionAndStrip();
    void stripIsPaintedOnTheHoveredRowOnly();
    void stripShowsItsIconsInOrder();
    void binUnderThePointerIsRed();
    void cardUnderAPressLooksPressed();
    void waitingAndFailedPagesShowATextEach();
};

void TestPdfThumbnailPanel::hasItsShape()
{
    const ShownPanel shown(a4Pages(3));
    const PdfThumbnailPanel panel;
    QCOMPARE(panel.objectName(), QStringLiteral("pdfThumbnailPanel"));
    QCOMPARE(panel.minimumWidth(), 176);
    QCOMPARE(panel.maximumWidth(), 280);
    QCOMPARE(panel.width(), 210);
    QCOMPARE(panel.sizeHint().width(), 210);
    QCOMPARE(panel.sizePolicy().verticalPolicy(), QSizePolicy::Expanding);

    const auto *zone = shown.panel.findChild<PdfInsertDropZone *>();
    const QRect list = shown.list->geometry();
    QCOMPARE(list.topLeft(), QPoint(8, 10));
    QCOMPARE(list.right(), shown.panel.width() - 1 - 8);
    QCOMPARE(zone->geometry().top(), list.bottom() + 1 + 8);
    QCOMPARE(zone->geometry().bottom(), shown.panel.height() - 1 - 10);
}

void TestPdfThumbnailPanel::signalsInOrder()
{
    QCOMPARE(signalSignatures(PdfThumbnailPanel::staticMetaObject),
             (QByteArrayList{"pageActivated(int)", "insertFilesRequested(QStringList,int)",
                             "chooseInsertFilesRequested(int)", "previewPageRequested(PdfPageId)",
                             "rotatePageRequested(PdfPageId)", "deletePageRequested(PdfPageId)"}));
}

void TestPdfThumbnailPanel::listHasItsSettings()
{
    const ShownPanel shown(a4Pages(3));
    const QListView &list = *shown.list;
    QCOMPARE(list.viewMode(), QListView::ListMode);
    QCOMPARE(list.flow(), QListView::TopToBottom);
    QVERIFY(!list.isWrapping());
    QCOMPARE(list.spacing(), 2);
    QVERIFY(list.uniformItemSizes());
    QCOMPARE(list.editTriggers(), QAbstractItemView::NoEditTriggers);
    QCOMPARE(list.selectionMode(), QAbstractItemView::SingleSelection);
    QVERIFY(list.dragEnabled());
    QVERIFY(list.acceptDrops());
    QVERIFY(list.showDropIndicator());
    QCOMPARE(list.defaultDropAction(), Qt::MoveAction);
    QCOMPARE(list.dragDropMode(), QAbstractItemView::InternalMove);
    QCOMPARE(list.horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(list.verticalScrollBar()->singleStep(), 42);
}

void TestPdfThumbnailPanel::clickActivatesThePage()
{
    ShownPanel shown(a4Pages(5));
    QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, shown.cardCentre(1));
    QCOMPARE(activated.size(), 1);
    QCOMPARE(activated.at(0).at(0).toInt(), 1);
}

void TestPdfThumbnailPanel::arrowKeyActivatesThePage()
{
    ShownPanel shown(a4Pages(5));
    shown.panel.setCurrentPage(1);
    QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    QTest::keyClick(shown.list, Qt::Key_Down);
    QCOMPARE(activated.size(), 1);
    QCOMPARE(activated.at(0).at(0).toInt(), 2);
}

void TestPdfThumbnailPanel::keyThatStaysOnItsPageActivatesNothing_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("up from the first page") << 0 << Qt::Key_Up;
    QTest::newRow("down from the last page") << 4 << Qt::Key_Down;
    QTest::newRow("to the start from there") << 0 << Qt::Key_Home;
    QTest::newRow("to the end from there") << 4 << Qt::Key_End;
    QTest::newRow("Control alone") << 2 << Qt::Key_Control;
    QTest::newRow("letter") << 2 << Qt::Key_X;
}

/// The reader may have scrolled away from the page that is current.
void TestPdfThumbnailPanel::keyThatStaysOnItsPageActivatesNothing()
{
    QFETCH(const int, row);
    QFETCH(const Qt::Key, key);
    ShownPanel shown(a4Pages(5));
    shown.panel.setCurrentPage(row);
    QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    QTest::keyClick(shown.list, key);
    QCOMPARE(activated.size(), 0);
    QCOMPARE(shown.list->currentIndex().row(), row);
}

void TestPdfThumbnailPanel::stripOfTheHoveredRowActs_data()
{
    QTest::addColumn<int>("part");
    QTest::newRow("preview") << 0;
    QTest::newRow("rotate") << 1;
    QTest::newRow("delete") << 2;
}

void TestPdfThumbnailPanel::stripOfTheHoveredRowActs()
{
    QFETCH(int, part);
    ShownPanel shown(a4Pages(5));
    QSignalSpy preview(&shown.panel, &PdfThumbnailPanel::previewPageRequested);
    QSignalSpy rotate(&shown.panel, &PdfThumbnailPanel::rotatePageRequested);
    QSignalSpy remove(&shown.panel, &PdfThumbnailPanel::deletePageRequested);
    const QList<QSignalSpy *> spies{&preview, &rotate, &remove};
    shown.moveTo(shown.stripPart(1, part));
    QTest::mousePress(shown.list->viewport(), Qt::LeftButton, {}, shown.stripPart(1, part));
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(spies.at(i)->size(), i == part ? 1 : 0);
    }
    QCOMPARE(spies.at(part)->at(0).at(0).value<PdfPageId>(), PdfPageId(2));
}

void TestPdfThumbnailPanel::middleThirdRotatesWithoutChangingTheSelection()
{
    ShownPanel shown(a4Pages(5));
    shown.panel.setCurrentPage(0);
    QSignalSpy rotate(&shown.panel, &PdfThumbnailPanel::rotatePageRequested);
    QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    shown.moveTo(shown.stripPart(1, 1));
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, shown.stripPart(1, 1));
    QCOMPARE(rotate.size(), 1);
    QCOMPARE(activated.size(), 0);
    QCOMPARE(shown.list->currentIndex().row(), 0);
    QCOMPARE(shown.list->selectionModel()->selectedIndexes(),
             QModelIndexList{shown.model.index(0)});
    QVERIFY(shown.model.selectedRows().isEmpty());
}

void TestPdfThumbnailPanel::stripOfAnotherRowDoesNotAct()
{
    ShownPanel shown(a4Pages(5));
    QSignalSpy rotate(&shown.panel, &PdfThumbnailPanel::rotatePageRequested);
    QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    shown.moveTo(shown.cardCentre(0));
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, shown.stripPart(1, 1));
    QCOMPARE(rotate.size(), 0);
    QCOMPARE(activated.size(), 1);
}

void TestPdfThumbnailPanel::rightButtonDoesNotActOnTheStrip()
{
    ShownPanel shown(a4Pages(5));
    QSignalSpy remove(&shown.panel, &PdfThumbnailPanel::deletePageRequested);
    shown.moveTo(shown.stripPart(1, 2));
    QTest::mouseClick(shown.list->viewport(), Qt::RightButton, {}, shown.stripPart(1, 2));
    QCOMPARE(remove.size(), 0);
}

void TestPdfThumbnailPanel::doubleClickOnABinDeletesOnePage()
{
    ShownPanel shown(a4Pages(5));
    connect(&shown.panel, &PdfThumbnailPanel::deletePageRequested, &shown.model,
            [&](PdfPageId id) { shown.model.removePages({id}); });
    const QPoint point = shown.stripPart(1, 2);
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

void TestPdfThumbnailPanel::doubleClickOnABinOpensNoPage()
{
    ShownPanel shown(a4Pages(5));
    connect(&shown.panel, &PdfThumbnailPanel::deletePageRequested, &shown.model,
            [&](PdfPageId id) { shown.model.removePages({id}); });
    QWidget *viewport = shown.list->viewport();
    // The page that comes under the pointer is the one that was clicked last.
    QTest::mouseClick(viewport, Qt::LeftButton, {}, shown.cardCentre(2));
    const QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    const QPoint point = shown.stripPart(1, 2);
    shown.moveTo(point);
    QTest::mouseClick(viewport, Qt::LeftButton, {}, point);
    QCoreApplication::processEvents();
    shown.moveTo(point);
    pressAgain(viewport, point);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, point);
    QCOMPARE(shown.model.rowCount(), 4);
    QCOMPARE(activated.size(), 0);
}

void TestPdfThumbnailPanel::secondPressOfADoubleClickActsAgain()
{
    ShownPanel shown(a4Pages(5));
    QSignalSpy rotate(&shown.panel, &PdfThumbnailPanel::rotatePageRequested);
    const QPoint point = shown.stripPart(0, 1);
    shown.moveTo(point);
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, point);
    pressAgain(shown.list->viewport(), point);
    QCOMPARE(rotate.size(), 2);
}

void TestPdfThumbnailPanel::clickActsOnAnotherPageThanTheOneBefore()
{
    ShownPanel shown(a4Pages(5));
    QSignalSpy rotate(&shown.panel, &PdfThumbnailPanel::rotatePageRequested);
    for (const int row : {1, 0}) {
        shown.moveTo(shown.stripPart(row, 1));
        QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, shown.stripPart(row, 1));
    }
    QCOMPARE(rotate.size(), 2);
}

void TestPdfThumbnailPanel::releaseOnTheStripIsNoClick()
{
    ShownPanel shown(a4Pages(5));
    QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, shown.cardCentre(1));
    QCOMPARE(activated.size(), 1);
    const QPoint point = shown.stripPart(1, 0);
    shown.moveTo(point);
    QTest::mousePress(shown.list->viewport(), Qt::LeftButton, {}, point);
    shown.moveTo(shown.cardCentre(1));
    QTest::mouseRelease(shown.list->viewport(), Qt::LeftButton, {}, shown.cardCentre(1));
    QCOMPARE(activated.size(), 1);
}

void TestPdfThumbnailPanel::movingWithThePressedStripNeitherSelectsNorDrags_data()
{
    QTest::addColumn<int>("clickedRow");
    QTest::newRow("nothing chosen before") << -1;
    QTest::newRow("another page chosen before") << 0;
}

void TestPdfThumbnailPanel::movingWithThePressedStripNeitherSelectsNorDrags()
{
    QFETCH(int, clickedRow);
    ShownPanel shown(a4Pages(5));
    // A list that gets the focus makes its first row the current one.
    shown.panel.activateWindow();
    shown.list->setFocus();
    QTRY_VERIFY(shown.list->hasFocus());
    QModelIndexList selected;
    if (clickedRow >= 0) {
        QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, shown.cardCentre(clickedRow));
        selected = {shown.model.index(clickedRow)};
    }
    const QModelIndex current = shown.list->currentIndex();
    QSignalSpy rotate(&shown.panel, &PdfThumbnailPanel::rotatePageRequested);
    QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    QSignalSpy dragged(shown.list, &PageListView::dragStarted);
    QSignalSpy moved(&shown.model, &QAbstractItemModel::rowsMoved);
    const QPoint point = shown.stripPart(1, 1);
    shown.moveTo(point);
    pressAndMoveMouse(shown.list->viewport(), point);
    QCOMPARE(rotate.size(), 1);
    QCOMPARE(dragged.size(), 0);
    QCOMPARE(moved.size(), 0);
    QCOMPARE(activated.size(), 0);
    QCOMPARE(shown.list->currentIndex(), current);
    QCOMPARE(shown.list->selectionModel()->selectedIndexes(), selected);

    // What comes after is a click as ever.
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, shown.cardCentre(1));
    QCOMPARE(activated.size(), 1);
    QCOMPARE(shown.list->currentIndex().row(), 1);
}

void TestPdfThumbnailPanel::leavingEndsTheHover()
{
    ShownPanel shown(a4Pages(5));
    QSignalSpy rotate(&shown.panel, &PdfThumbnailPanel::rotatePageRequested);
    shown.moveTo(shown.stripPart(0, 1));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(shown.list->viewport(), &leave);
    QTest::mousePress(shown.list->viewport(), Qt::LeftButton, {}, shown.stripPart(0, 1));
    QCOMPARE(rotate.size(), 0);
}

void TestPdfThumbnailPanel::scrollingMovesTheHover()
{
    ShownPanel shown(a4Pages(9));
    QSignalSpy rotate(&shown.panel, &PdfThumbnailPanel::rotatePageRequested);
    const QPoint point = shown.stripPart(0, 1);
    shown.moveTo(point);
    shown.list->verticalScrollBar()->setValue(2 * (kThumbnailRowHeight + 2 * 2));
    QCoreApplication::processEvents();
    const int row = shown.list->indexAt(point).row();
    QVERIFY(row > 0);
    QTest::mousePress(shown.list->viewport(), Qt::LeftButton, {}, shown.stripPart(row, 1));
    QCOMPARE(rotate.size(), 1);
    QCOMPARE(rotate.at(0).at(0).value<PdfPageId>(), shown.model.pageAt(row)->id);
}

void TestPdfThumbnailPanel::toolTipsNameTheActions()
{
    ShownPanel shown(a4Pages(3));
    const auto toolTipAt = [&shown](QPoint point) {
        // The tip before is gone: one that is on its way out says nothing about this place.
        QToolTip::hideText();
        (void)QTest::qWaitFor([] { return !QToolTip::isVisible(); });
        shown.moveTo(point);
        QHelpEvent help(QEvent::ToolTip, point, shown.list->viewport()->mapToGlobal(point));
        QCoreApplication::sendEvent(shown.list->viewport(), &help);
        return QToolTip::text();
    };
    const QStringList actions{QStringLiteral("预览页面"), QStringLiteral("向右旋转页面"),
                              QStringLiteral("删除页面")};
    for (int part = 0; part < actions.size(); ++part) {
        QCOMPARE(toolTipAt(shown.stripPart(0, part)), actions.at(part));
    }
    const QRect item = shown.list->visualRect(shown.model.index(0));
    QCOMPARE(toolTipAt(thumbnailRowGeometry(item).caption.center()), QString());
    QToolTip::hideText();
}

void TestPdfThumbnailPanel::setCurrentPageSelectsAndScrolls()
{
    ShownPanel shown(a4Pages(30));
    shown.panel.setCurrentPage(20);
    QCOMPARE(shown.list->currentIndex().row(), 20);
    QVERIFY(shown.list->selectionModel()->isSelected(shown.model.index(20)));
    QVERIFY(shown.list->viewport()->rect().contains(shown.cardCentre(20)));
    shown.list->verticalScrollBar()->setValue(0);
    shown.panel.setCurrentPage(20);
    QVERIFY(shown.list->viewport()->rect().contains(shown.cardCentre(20)));
}

void TestPdfThumbnailPanel::setCurrentPageIgnoresRowsOutOfRange()
{
    PdfThumbnailPanel empty;
    empty.setCurrentPage(0);
    ShownPanel shown(a4Pages(3));
    shown.panel.setCurrentPage(1);
    shown.panel.setCurrentPage(-1);
    shown.panel.setCurrentPage(3);
    QCOMPARE(shown.list->currentIndex().row(), 1);
}

void TestPdfThumbnailPanel::setCurrentPageActivatesNothing()
{
    ShownPanel shown(a4Pages(5));
    QSignalSpy activated(&shown.panel, &PdfThumbnailPanel::pageActivated);
    shown.panel.setCurrentPage(3);
    QCoreApplication::processEvents();
    QCOMPARE(activated.size(), 0);
}

void TestPdfThumbnailPanel::currentPageSurvivesUndo()
{
    ShownPanel shown(a4Pages(30));
    shown.panel.setCurrentPage(20);
    QCoreApplication::processEvents();
    const int scroll = shown.list->verticalScrollBar()->value();
    QList<PdfPageRecord> before = shown.model.pages();
    before.removeAt(3);
    shown.model.setPages(before, true);
    QTRY_COMPARE(shown.list->currentIndex().row(), 19);
    QVERIFY(shown.list->selectionModel()->isSelected(shown.model.index(19)));
    QCOMPARE(shown.list->verticalScrollBar()->value(), scroll);
}

void TestPdfThumbnailPanel::undoLeavesTheListWhereItWasScrolledTo()
{
    ShownPanel shown(a4Pages(30));
    shown.panel.setCurrentPage(20);
    QCoreApplication::processEvents();
    shown.list->verticalScrollBar()->setValue(100);
    QList<PdfPageRecord> before = shown.model.pages();
    before.removeAt(3);
    shown.model.setPages(before, true);
    QTRY_COMPARE(shown.list->currentIndex().row(), 19);
    QCoreApplication::processEvents();
    QCOMPARE(shown.list->verticalScrollBar()->value(), 100);
}

void TestPdfThumbnailPanel::newDocumentBeginsAtItsFirstPage()
{
    ShownPanel shown(a4Pages(30));
    shown.panel.setCurrentPage(20);
    QCoreApplication::processEvents();
    QList<PdfPageRecord> records = recordsOfSizes(a4Pages(25));
    for (PdfPageRecord &record : records) {
        record.id += 100;
    }
    shown.model.setPages(records, false);
    QTRY_COMPARE(shown.list->currentIndex().row(), 0);
    QVERIFY(shown.list->viewport()->rect().contains(shown.cardCentre(0)));
}

void TestPdfThumbnailPanel::panelBeginsAnewWithItsModel()
{
    ShownPanel shown(a4Pages(6));
    shown.panel.setCurrentPage(4);
    shown.panel.setModel(nullptr);
    shown.panel.setModel(&shown.model);
    shown.model.setPages(recordsOfSizes(a4Pages(6)), false);
    QTRY_COMPARE(shown.list->currentIndex().row(), 0);
    QVERIFY(shown.list->selectionModel()->isSelected(shown.model.index(0)));
}

void TestPdfThumbnailPanel::removedCurrentPageLeavesASelectedOne()
{
    ShownPanel shown(a4Pages(10));
    shown.panel.setCurrentPage(4);
    QCoreApplication::processEvents();
    shown.model.removePages({5});
    QTRY_COMPARE(shown.list->selectionModel()->selectedIndexes().size(), 1);
    QCOMPARE(shown.list->selectionModel()->selectedIndexes().constFirst(),
             shown.list->currentIndex());
}

void TestPdfThumbnailPanel::checkStateIsNotToggledByClicks()
{
    ShownPanel shown(a4Pages(3));
    const QRect item = shown.itemAt(0);
    for (int y = item.top(); y < item.bottom(); y += 6) {
        for (int x = item.left(); x < item.left() + 40; x += 6) {
            QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, {x, y});
        }
    }
    QTest::keyClick(shown.list, Qt::Key_Space);
    QVERIFY(shown.model.selectedRows().isEmpty());
}

void TestPdfThumbnailPanel::chooseInsertsBehindTheLastPage()
{
    ShownPanel shown(a4Pages(7));
    QSignalSpy chosen(&shown.panel, &PdfThumbnailPanel::chooseInsertFilesRequested);
    QTest::mouseClick(shown.panel.findChild<PdfInsertDropZone *>(), Qt::LeftButton);
    QCOMPARE(chosen.size(), 1);
    QCOMPARE(chosen.at(0).at(0).toInt(), 7);
}

void TestPdfThumbnailPanel::droppedFilesAreInsertedBehindTheLastPage()
{
    ShownPanel shown(a4Pages(7));
    QSignalSpy inserted(&shown.panel, &PdfThumbnailPanel::insertFilesRequested);
    auto *zone = shown.panel.findChild<PdfInsertDropZone *>();
    const QStringList files{QStringLiteral("/b/第一.pdf"), QStringLiteral("/a/second.PDF")};
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(files.at(0)), QUrl::fromLocalFile(files.at(1))});
    QDragEnterEvent enter({30, 30}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(zone, &enter);
    QDropEvent drop({30, 30}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(zone, &drop);
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(inserted.at(0).at(0).toStringList(), files);
    QCOMPARE(inserted.at(0).at(1).toInt(), 7);
}

void TestPdfThumbnailPanel::pageFromOutsideTheProgramIsRefused()
{
    ShownPanel shown(a4Pages(3), {210, 900});
    const std::unique_ptr<QMimeData> data(shown.model.mimeData({shown.model.index(0)}));
    const QPoint point = shown.itemAt(2).center() + QPoint(0, 60);
    QDragEnterEvent enter(point, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(shown.list->viewport(), &enter);
    QVERIFY(!enter.isAccepted());
    QDropEvent drop(point, Qt::MoveAction, data.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(shown.list->viewport(), &drop);
    QCOMPARE(idsOf(shown.model), (QList<PdfPageId>{1, 2, 3}));
}

void TestPdfThumbnailPanel::modelCanBeReplacedAndTakenAway()
{
    ShownPanel shown(a4Pages(5));
    QTRY_VERIFY(shown.thumbnail(0));
    PdfDocumentModel other;
    other.setPages(recordsOfSizes(a4Pages(2)), false);
    shown.panel.setModel(&other);
    QCOMPARE(shown.panel.thumbnails().heldCount(), 0);
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 2);
    QSignalSpy chosen(&shown.panel, &PdfThumbnailPanel::chooseInsertFilesRequested);
    shown.panel.setModel(nullptr);
    shown.moveTo({50, 50});
    QTest::mouseClick(shown.list->viewport(), Qt::LeftButton, {}, {50, 50});
    QTest::mouseClick(shown.panel.findChild<PdfInsertDropZone *>(), Qt::LeftButton);
    QCOMPARE(chosen.at(0).at(0).toInt(), 0);
    QCOMPARE(shown.panel.thumbnails().heldCount(), 0);
}

void TestPdfThumbnailPanel::paintsCardImageCaptionAndStrip()
{
    ShownPanel shown({{595, 842}, {842, 595}, {595, 842}});
    shown.panel.setCurrentPage(1);
    QTRY_VERIFY(shown.thumbnail(0) && shown.thumbnail(1));
    const ThumbnailRowGeometry first = thumbnailRowGeometry(shown.itemAt(0));
    const ThumbnailRowGeometry second = thumbnailRowGeometry(shown.itemAt(1));
    QImage image = shown.picture();
    QCOMPARE(image.pixelColor(first.card.center()), RenderProbe::colorOf(0));
    QCOMPARE(image.pixelColor(second.card.center()), RenderProbe::colorOf(1));
    // An image of 136 x 96 in the middle of the box.
    const QRect sheet(second.imageArea.left(), second.imageArea.center().y() - 47, 136, 96);
    QCOMPARE(image.pixelColor(sheet.left(), sheet.center().y()), RenderProbe::colorOf(1));
    QCOMPARE(image.pixelColor(sheet.right(), sheet.center().y()), RenderProbe::colorOf(1));
    QVERIFY(image.pixelColor(sheet.left() - 1, sheet.center().y()) != RenderProbe::colorOf(1));
    QVERIFY(image.pixelColor(sheet.center().x(), sheet.top() - 2) != RenderProbe::colorOf(1));

    const QPoint inFirstCard = first.card.topLeft() + QPoint(10, 10);
    const QPoint inSecondCard = second.card.topLeft() + QPoint(10, 10);
    QCOMPARE(image.pixelColor(inFirstCard), Theme::white);
    QCOMPARE(image.pixelColor(inSecondCard), Theme::accentTint);
    QVERIFY(holdsColor(image, second.card.adjusted(0, 40, 0, -40), Theme::accent));
    QVERIFY(holdsColor(image, second.caption, Theme::accent));
    QVERIFY(!holdsColor(image, first.caption, Theme::accent));

    shown.moveTo(first.card.topLeft() + QPoint(10, 10));
    image = shown.picture();
    QCOMPARE(image.pixelColor(inFirstCard), Theme::hover);
    QCOMPARE(image.pixelColor(first.actionStrip.center() + QPoint(0, 12)), Theme::white);
    shown.moveTo(shown.stripPart(0, 1));
    image = shown.picture();
    QCOMPARE(image.pixelColor(first.actionStrip.center() + QPoint(0, 12)), Theme::hover);
    QCOMPARE(shown.list->viewport()->cursor().shape(), Qt::PointingHandCursor);
    QTest::mousePress(shown.list->viewport(), Qt::LeftButton, {}, shown.stripPart(0, 1));
    image = shown.picture();
    QCOMPARE(image.pixelColor(first.actionStrip.center() + QPoint(0, 12)), Theme::pressed);
}

void TestPdfThumbnailPanel::stripIsPaintedOnTheHoveredRowOnly()
{
    ShownPanel shown(a4Pages(3), {210, 900});
    QTRY_COMPARE(shown.panel.thumbnails().heldCount(), 3);
    // Below the icons of the strip, where the page shows as long as there is no strip.
    const auto colorInTheStrip = [&shown](int row) {
        const QRect strip = thumbnailRowGeometry(shown.itemAt(row)).actionStrip;
        return shown.picture().pixelColor(strip.center() + QPoint(0, 12));
    };
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(colorInTheStrip(row), RenderProbe::colorOf(row));
    }
    for (int hovered = 0; hovered < 3; ++hovered) {
        shown.moveTo(thumbnailRowGeometry(shown.itemAt(hovered)).card.topLeft() + QPoint(10, 10));
        for (int row = 0; row < 3; ++row) {
            QCOMPARE(colorInTheStrip(row),
                     row == hovered ? QColor(Theme::white) : RenderProbe::colorOf(row));
        }
    }
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(shown.list->viewport(), &leave);
    QCOMPARE(colorInTheStrip(2), RenderProbe::colorOf(2));
}

void TestPdfThumbnailPanel::stripShowsItsIconsInOrder()
{
    ShownPanel shown(a4Pages(2));
    shown.moveTo(thumbnailRowGeometry(shown.itemAt(0)).card.topLeft() + QPoint(10, 10));
    const QRect strip = thumbnailRowGeometry(shown.itemAt(0)).actionStrip;
    const QImage picture = shown.picture().convertToFormat(QImage::Format_RGB32);
    const QStringList icons{QStringLiteral(":/res/icons/pdfviewer/expand.png"),
                            QStringLiteral(":/res/icons/pdfviewer/rotate-right.png"),
                            QStringLiteral(":/res/icons/modern/trash.png")};
    QList<QImage> painted;
    for (int part = 0; part < 3; ++part) {
        constexpr QSize kIconSize(20, 20);
        const QRect place = centredIn(barPart(strip, 3, part), kIconSize).toRect();
        painted.append(picture.copy(place));
        QImage expected(kIconSize, QImage::Format_RGB32);
        expected.fill(Theme::white);
        QPainter painter(&expected);
        QIcon(icons.at(part)).paint(&painter, expected.rect());
        painter.end();
        QVERIFY2(painted.constLast() == expected, qPrintable(icons.at(part)));
    }
    QVERIFY(painted.at(0) != painted.at(1));
    QVERIFY(painted.at(1) != painted.at(2));
    QVERIFY(painted.at(2) != painted.at(0));
}

void TestPdfThumbnailPanel::binUnderThePointerIsRed()
{
    ShownPanel shown(a4Pages(2));
    const auto look = [&shown](int part) {
        return shown.picture().pixelColor(shown.stripPart(1, part) + QPoint(0, 13));
    };
    for (const int part : {0, 1, 2}) {
        shown.moveTo(shown.stripPart(1, part));
        QCOMPARE(look(part), part == 2 ? QColor(0xFD, 0xEC, 0xEC) : Theme::hover);
    }
    QTest::mousePress(shown.list->viewport(), Qt::LeftButton, {}, shown.stripPart(1, 2));
    QCOMPARE(look(2), QColor(0xFA, 0xD9, 0xD9));
}

void TestPdfThumbnailPanel::cardUnderAPressLooksPressed()
{
    ShownPanel shown(a4Pages(3));
    const auto look = [&shown](int row) {
        const QRect card = thumbnailRowGeometry(shown.itemAt(row)).card;
        return shown.picture().pixel(card.topLeft() + QPoint(8, 8));
    };
    shown.moveTo(shown.cardCentre(1));
    QCOMPARE(look(1), Theme::hover.rgb());
    QTest::mousePress(shown.list->viewport(), Qt::LeftButton, {}, shown.cardCentre(1));
    QCOMPARE(look(1), Theme::accentTint.darker(104).rgb());
    QTest::mouseRelease(shown.list->viewport(), Qt::LeftButton, {}, shown.cardCentre(1));
    QCOMPARE(look(1), Theme::accentTint.rgb());
}

void TestPdfThumbnailPanel::waitingAndFailedPagesShowATextEach()
{
    ShownPanel shown(a4Pages(2));
    shown.probe.hold();
    shown.probe.setFailing(0, true);
    shown.model.setPages(recordsOfSizes(a4Pages(2)), false);
    shown.manager.cancelAll();
    shown.manager.clearCache();
    shown.panel.setModel(nullptr);
    shown.panel.setModel(&shown.model);
    QCoreApplication::processEvents();
    const QRect box = thumbnailRowGeometry(shown.itemAt(0)).imageArea;
    const QImage waiting = shown.picture().copy(box);
    QVERIFY(holdsColor(waiting, waiting.rect(), Theme::textMuted));
    shown.probe.release();
    QTRY_VERIFY(shown.panel.thumbnails().hasFailed(1));
    const QImage failed = shown.picture().copy(box);
    QVERIFY(holdsColor(failed, failed.rect(), Theme::textMuted));
    QVERIFY(failed != waiting);
}

QTEST_MAIN(TestPdfThumbnailPanel)
#include "tst_pdf_thumbnail_panel.moc"
