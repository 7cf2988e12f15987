// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/page_manager_list_view.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/grid/page_split_points.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSet>
#include <QSignalBlocker>

#include <algorithm>

namespace {

/// With these a click or a key marks pages.
constexpr Qt::KeyboardModifiers kMarkingKeys = Qt::ShiftModifier | Qt::ControlModifier;

} // namespace

PageManagerListView::PageManagerListView(const PageSplitPoints &splitPoints, QWidget *parent)
    : PageListView(parent)
    , m_splitPoints(splitPoints)
{}

PageManagerListView::~PageManagerListView() = default;

void PageManagerListView::setMetrics(const PageGridMetrics &metrics)
{
    m_metrics = metrics;
    setGridSize(metrics.cell);
}

void PageManagerListView::setMode(PdfWorkspaceMode mode)
{
    m_mode = mode;
    viewport()->update();
}

void PageManagerListView::setHoveredMark(const PageGridHit &mark, bool pressed)
{
    if (mark != m_hoveredMark || pressed != m_markPressed) {
        m_hoveredMark = mark;
        m_markPressed = pressed;
        viewport()->update();
    }
}

PageGridCells PageManagerListView::visibleCells() const
{
    PageGridCells grid;
    grid.thumbnail = m_metrics.thumbnail;
    grid.pageCount = model() != nullptr ? model()->rowCount() : 0;
    if (grid.pageCount == 0) {
        return grid;
    }
    const int bottom = viewport()->height() - 1;
    const QModelIndex first = indexAt({0, 0});
    const QModelIndex lowest = indexAt({0, bottom});
    grid.firstRow = std::max(first.row(), 0);
    const int lastRow = lowest.isValid()
                            ? std::min(lowest.row() + columnCount(), grid.pageCount) - 1
                            : grid.pageCount - 1;
    for (int row = grid.firstRow; row <= lastRow; ++row) {
        const QRect cell = visualRect(model()->index(row, 0));
        if (cell.top() > bottom) {
            break;
        }
        grid.cells.append(cell);
    }
    return grid;
}

PageGridHit PageManagerListView::hitAt(QPoint point, int hoveredRow) const
{
    return hitTestPageGrid(visibleCells(), point, m_mode, hoveredRow);
}

bool PageManagerListView::isSplitBefore(int row) const
{
    const PdfPageRecord *record =
        documentModel() != nullptr ? documentModel()->pageAt(row) : nullptr;
    return record != nullptr && m_splitPoints.contains(record->id);
}

bool PageManagerListView::areSplitPointsFixed() const
{
    return m_splitPoints.isEveryPage();
}

void PageManagerListView::setModel(QAbstractItemModel *model)
{
    if (documentModel() != nullptr) {
        disconnect(documentModel(), nullptr, this, nullptr);
    }
    PageListView::setModel(model);
    if (documentModel() != nullptr) {
        connect(documentModel(), &PdfDocumentModel::selectionChanged, this,
                &PageManagerListView::showChosenPages);
    }
    showChosenPages();
}

void PageManagerListView::selectAll()
{
    // What counts are the pages chosen in the document, not the rows marked in this list.
    if (documentModel() != nullptr) {
        documentModel()->selectAll();
    }
}

PageDropTarget PageManagerListView::dropTargetAt(QPoint point) const
{
    const int rightmost = columnCount() * m_metrics.cell.width() - 1;
    QModelIndex index = indexAt({std::clamp(point.x(), 0, rightmost), std::max(point.y(), 0)});
    if (!index.isValid()) {
        // Behind the last page, in its line or below.
        index = model()->index(model()->rowCount() - 1, 0);
        point.setX(viewport()->width());
    }
    const PageCellGeometry cell = pageCellGeometry(visualRect(index), m_metrics.thumbnail);
    PageDropTarget target = dropTargetInGrid(cell, index.row(), point);
    target.indicator = shiftedBetween(target.indicator, 0, viewport()->width() - 1);
    return target;
}

void PageManagerListView::paintEvent(QPaintEvent *event)
{
    PageListView::paintEvent(event);
    QPainter painter(viewport());
    if (m_mode == PdfWorkspaceMode::InsertMode) {
        drawInsertMarks(painter);
    } else if (m_mode == PdfWorkspaceMode::SplitMode) {
        drawSplitMarks(painter);
    }
}

void PageManagerListView::mousePressEvent(QMouseEvent *event)
{
    const bool isPlain = (event->modifiers() & kMarkingKeys) == 0;
    if (isPlain) {
        keepMarks();
    }
    {
        const QScopedValueRollback marking(m_isMarking, true);
        PageListView::mousePressEvent(event);
    }
    const QModelIndex index = indexAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || !index.isValid()) {
        return;
    }
    if (event->modifiers().testFlag(Qt::ShiftModifier)) {
        markRangeTo(index);
        return;
    }
    m_rangeStart = index;
    if (isPlain) {
        // The base class drags only what a press has marked, and would draw a rubber band here.
        setState(DraggingState);
    }
}

void PageManagerListView::mouseMoveEvent(QMouseEvent *event)
{
    // A move may begin a drag, which has an event loop of its own; a rubber band is on its way by
    // the second one.
    const QScopedValueRollback marking(m_isMarking, state() != DraggingState);
    PageListView::mouseMoveEvent(event);
}

void PageManagerListView::keyPressEvent(QKeyEvent *event)
{
    const PdfPageRecord *record =
        documentModel() != nullptr ? documentModel()->pageAt(currentIndex().row()) : nullptr;
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier &&
        (record != nullptr)) {
        documentModel()->setPageSelected(record->id, !record->selected);
        return;
    }
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Select) {
        // The base class would mark the current row.
        event->ignore();
        return;
    }
    if ((event->modifiers() & kMarkingKeys) == 0) {
        keepMarks();
    }
    const QPersistentModelIndex before = currentIndex();
    {
        const QScopedValueRollback marking(m_isMarking, true);
        PageListView::keyPressEvent(event);
    }
    if (currentIndex() == before) {
        return;
    }
    if (!event->modifiers().testFlag(Qt::ShiftModifier)) {
        m_rangeStart = currentIndex();
        return;
    }
    if (!m_rangeStart.isValid()) {
        m_rangeStart = before;
    }
    markRangeTo(currentIndex());
}

QItemSelectionModel::SelectionFlags PageManagerListView::selectionCommand(const QModelIndex &index,
                                                                          const QEvent *event) const
{
    // One page is chosen by its box. Clicks and keys without Shift or Ctrl go from page to page and
    // leave those that are chosen alone; a rubber band adds to them.
    const auto *input = dynamic_cast<const QInputEvent *>(event);
    const Qt::KeyboardModifiers keys = input != nullptr ? input->modifiers() : Qt::NoModifier;
    if ((keys & kMarkingKeys) == Qt::ControlModifier) {
        return PageListView::selectionCommand(index, event);
    }
    return state() == DragSelectingState && event != nullptr && event->type() == QEvent::MouseMove
               ? QItemSelectionModel::SelectCurrent
               : QItemSelectionModel::NoUpdate;
}

void PageManagerListView::updateGeometries()
{
    // The base class sets a range without the room at the bottom. Nobody may hear of it, or the
    // scroll bar and with it the whole layout would come and go for ever.
    QScrollBar *bar = verticalScrollBar();
    const int oldMaximum = bar->maximum();
    const int oldValue = bar->value();
    {
        const QSignalBlocker blocker(bar);
        PageListView::updateGeometries();
        bar->setRange(0, oldMaximum);
        bar->setValue(oldValue);
    }
    const int height =
        model() != nullptr && model()->rowCount() > 0 ? contentsSize().height() + kBottomRoom : 0;
    bar->setRange(0, std::max(height - viewport()->height(), 0));
}

void PageManagerListView::selectionChanged(const QItemSelection &selected,
                                           const QItemSelection &deselected)
{
    PageListView::selectionChanged(selected, deselected);
    if (m_isMarking) {
        chooseMarkedPages();
    }
}

void PageManagerListView::showChosenPages()
{
    if (m_isMarking || documentModel() == nullptr) {
        return;
    }
    QItemSelection chosen;
    const QList<int> rows = documentModel()->selectedRows();
    for (qsizetype first = 0; first < rows.size();) {
        qsizetype last = first;
        while (last + 1 < rows.size() && rows.at(last + 1) == rows.at(last) + 1) {
            ++last;
        }
        chosen.select(model()->index(rows.at(first), 0), model()->index(rows.at(last), 0));
        first = last + 1;
    }
    selectionModel()->select(chosen, QItemSelectionModel::ClearAndSelect);
    keepMarks();
}

/// Instead of the base class, whose releases differ in where a range starts.
void PageManagerListView::markRangeTo(const QModelIndex &index)
{
    const int start = m_rangeStart.isValid() ? m_rangeStart.row() : index.row();
    const QItemSelection range(model()->index(std::min(start, index.row()), 0),
                               model()->index(std::max(start, index.row()), 0));
    const QScopedValueRollback marking(m_isMarking, true);
    selectionModel()->select(range, QItemSelectionModel::SelectCurrent);
}

void PageManagerListView::keepMarks()
{
    if (selectionModel() != nullptr) {
        selectionModel()->select(QModelIndex(), QItemSelectionModel::Select);
    }
}

void PageManagerListView::chooseMarkedPages()
{
    QSet<PdfPageId> ids;
    const QItemSelection marked = selectionModel()->selection();
    for (const QItemSelectionRange &range : marked) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            if (const PdfPageRecord *record = documentModel()->pageAt(row)) {
                ids.insert(record->id);
            }
        }
    }
    documentModel()->setSelectedPageIds(ids);
}

int PageManagerListView::columnCount() const
{
    // As many as the list has put beside each other; it wraps a little earlier than a whole cell
    // would fit.
    const int count = model() != nullptr ? model()->rowCount() : 0;
    if (count == 0) {
        return 1;
    }
    const int first = visualRect(model()->index(0, 0)).left();
    int columns = 1;
    while (columns < count && visualRect(model()->index(columns, 0)).left() > first) {
        ++columns;
    }
    return columns;
}

QRect PageManagerListView::clippedSideways(const QRect &zone) const
{
    return zone.intersected(QRect(0, zone.top(), viewport()->width(), zone.height()));
}

PageCardPainter::PartState PageManagerListView::markState(PageGridHit::Kind kind, int row) const
{
    PageCardPainter::PartState state;
    state.hovered = m_hoveredMark == PageGridHit{kind, row, -1};
    state.pressed = state.hovered && m_markPressed;
    state.enabled = isEnabled();
    return state;
}

void PageManagerListView::drawInsertMarks(QPainter &painter) const
{
    const PageGridCells grid = visibleCells();
    for (qsizetype i = 0; i < grid.cells.size(); ++i) {
        const PageCellGeometry cell = pageCellGeometry(grid.cells.at(i), grid.thumbnail);
        const QRect zone = clippedSideways(cell.insertZone);
        const QRect gap(zone.left(), cell.card.top(), zone.width(), cell.card.height());
        const int row = grid.firstRow + static_cast<int>(i);
        PageCardPainter::drawInsertMarker(painter, zone, gap,
                                          markState(PageGridHit::InsertZone, row));
    }
}

void PageManagerListView::drawSplitMarks(QPainter &painter) const
{
    const PageGridCells grid = visibleCells();
    for (qsizetype i = 0; i < grid.cells.size(); ++i) {
        const int row = grid.firstRow + static_cast<int>(i);
        if (row == 0) {
            continue;
        }
        const PageCellGeometry cell = pageCellGeometry(grid.cells.at(i), grid.thumbnail);
        const QRect zone = clippedSideways(cell.splitZone);
        const QRect gap(zone.left(), cell.card.top(), zone.width(), cell.card.height());
        PageCardPainter::PartState state = markState(PageGridHit::SplitZone, row);
        state.on = isSplitBefore(row);
        PageCardPainter::drawSplitLine(painter, gap, state);
    }
}
