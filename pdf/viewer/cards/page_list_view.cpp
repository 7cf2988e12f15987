// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_list_view.h"

#include "pdf/core/page_drag_format.h"
#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/cards/page_card_painter.h"
#include "widgets/scroll_bar_style.h"

#include <QAbstractItemDelegate>
#include <QDrag>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QStyleOptionViewItem>

namespace {

constexpr QLatin1String kStyleSheet{
    "QListView { background: transparent; border: none; outline: none; }"};

constexpr double kDragPixmapOpacity = 0.85;
constexpr int kDragPixmapMaximumSide = 240;

std::optional<PdfPageId> pageIn(const QDropEvent &event)
{
    return PageDragFormat::firstPageId(event.mimeData()->data(PageDragFormat::kMimeType));
}

} // namespace

PageListView::PageListView(QWidget *parent)
    : QListView(parent)
{
    setLayoutDirection(Qt::LeftToRight);
    setFrameShape(QFrame::NoFrame);
    setStyleSheet(kStyleSheet % scrollBarStyleSheet(kPageScrollBarLook));
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setUniformItemSizes(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setDefaultDropAction(Qt::MoveAction);
    setDragDropMode(QAbstractItemView::InternalMove);
}

PageListView::~PageListView() = default;

PdfDocumentModel *PageListView::documentModel() const
{
    return qobject_cast<PdfDocumentModel *>(model());
}

void PageListView::doItemsLayout()
{
    m_layoutPosted = false;
    ++m_layoutCount;
    QListView::doItemsLayout();
    emit laidOut();
}

PageDropTarget PageListView::dropTargetAt(QPoint point) const
{
    // Between two rows lies a gap that belongs to none of them.
    const int x = viewport()->rect().center().x();
    QModelIndex index = indexAt({x, point.y()});
    if (!index.isValid()) {
        index = indexAt({x, point.y() + 2 * spacing()});
    }
    if (!index.isValid()) {
        index = model()->index(model()->rowCount() - 1, 0);
    }
    return dropTargetInColumn(visualRect(index), index.row(), spacing(), point);
}

void PageListView::startDrag(Qt::DropActions supportedActions)
{
    const QModelIndex index = currentIndex();
    const PdfDocumentModel *document = documentModel();
    if (!index.isValid() || document == nullptr) {
        return;
    }
    setPressedPage(0);
    m_leftIsDown = false;
    emit dragStarted();
    // The nested event loop of the drag may outlive the view.
    const QPointer<PageListView> self(this);
    auto *drag = new QDrag(this);
    drag->setMimeData(document->mimeData({index}));
    const QPixmap pixmap = dragPixmap(index);
    drag->setPixmap(pixmap);
    drag->setHotSpot(QPoint(pixmap.width(), pixmap.height()) / (2 * pixmap.devicePixelRatio()));
    m_draggedPage = document->pageAt(index.row())->id;
    m_dragScroller.begin(m_pressPoint);
    viewport()->update();
    // A filter sees events before those that were installed earlier, as the drag's own is.
    QMetaObject::invokeMethod(&m_dragScroller, &DragScroller::takeWheel, Qt::QueuedConnection);
    drag->exec(supportedActions, Qt::MoveAction);
    if (self != nullptr) {
        m_dragScroller.end();
        m_draggedPage = 0;
        // A drag that was given up may end over this view without leaving it.
        forgetDrag();
        viewport()->update();
        emit dragEnded();
    }
}

void PageListView::dragEnterEvent(QDragEnterEvent *event)
{
    if (!isOwnPageDrag(*event)) {
        event->ignore();
        return;
    }
    setState(DraggingState);
    event->setDropAction(Qt::MoveAction);
    event->accept();
}

void PageListView::dragMoveEvent(QDragMoveEvent *event)
{
    setDropTarget(dropTargetOf(*event));
    const std::optional<PdfPageId> id = pageIn(*event);
    if (!isOwnPageDrag(*event) || !id) {
        event->ignore();
        return;
    }
    m_heldPage = {*id, event->position().toPoint()};
    m_dragScroller.moveTo(m_heldPage->point);
    // Also where the page would stay: the pointer is on its way to another place.
    event->setDropAction(Qt::MoveAction);
    event->accept();
}

void PageListView::dragLeaveEvent(QDragLeaveEvent * /*event*/)
{
    setState(NoState);
    forgetDrag();
}

void PageListView::dropEvent(QDropEvent *event)
{
    const std::optional<PageDropTarget> target = dropTargetOf(*event);
    setState(NoState);
    forgetDrag();
    if (!target ||
        !model()->dropMimeData(event->mimeData(), Qt::MoveAction, target->row, 0, QModelIndex())) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::MoveAction);
    event->accept();
}

void PageListView::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    // Another place is under the pointer now.
    setDropTarget(m_heldPage ? dropTargetFor(m_heldPage->id, m_heldPage->point) : std::nullopt);
}

void PageListView::paintEvent(QPaintEvent *event)
{
    // The base class would mark a place of its own as well, and it knows of none.
    const bool isIndicatorShown = showDropIndicator();
    setDropIndicatorShown(false);
    QListView::paintEvent(event);
    setDropIndicatorShown(isIndicatorShown);
    if (m_dropTarget && isIndicatorShown) {
        QPainter painter(viewport());
        PageCardPainter::drawDropIndicator(painter, m_dropTarget->indicator);
    }
}

void PageListView::mousePressEvent(QMouseEvent *event)
{
    const PdfDocumentModel *document = documentModel();
    m_pressPoint = event->position().toPoint();
    m_leftIsDown = event->button() == Qt::LeftButton;
    const QModelIndex index = indexAt(m_pressPoint);
    if (event->button() == Qt::LeftButton && document != nullptr && index.isValid()) {
        setPressedPage(document->pageAt(index.row())->id);
    }
    QListView::mousePressEvent(event);
}

void PageListView::mouseMoveEvent(QMouseEvent *event)
{
    // The end of a drag is not always the last that is heard of its button. Without a press there
    // is nothing to drag, and no corner for a rubber band.
    if (event->buttons().testFlag(Qt::LeftButton) && !m_leftIsDown) {
        return;
    }
    QListView::mouseMoveEvent(event);
}

void PageListView::mouseReleaseEvent(QMouseEvent *event)
{
    m_leftIsDown = false;
    setPressedPage(0);
    QListView::mouseReleaseEvent(event);
}

void PageListView::keyPressEvent(QKeyEvent *event)
{
    const QModelIndex before = currentIndex();
    QListView::keyPressEvent(event);
    if (currentIndex().isValid() && currentIndex() != before) {
        emit rowChosenByKey(currentIndex().row());
    }
}

void PageListView::dataChanged(const QModelIndex & /*topLeft*/, const QModelIndex & /*bottomRight*/,
                               const QList<int> & /*roles*/)
{
    // All rows have the same size whatever they show, so there is nothing to lay out.
    viewport()->update();
}

void PageListView::rowsInserted(const QModelIndex &parent, int start, int end)
{
    m_layoutPosted = true;
    QListView::rowsInserted(parent, start, end);
}

void PageListView::rowsAboutToBeRemoved(const QModelIndex & /*parent*/, int /*start*/, int /*end*/)
{
    // The base class would choose and scroll to another current row, which lays out all rows,
    // again for each removed one. The selection model finds a current row by itself.
    postLayout();
}

void PageListView::selectionChanged(const QItemSelection &selected,
                                    const QItemSelection &deselected)
{
    if (m_layoutPosted) {
        viewport()->update();
        return;
    }
    QListView::selectionChanged(selected, deselected);
}

void PageListView::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    if (m_layoutPosted) {
        viewport()->update();
        return;
    }
    QListView::currentChanged(current, previous);
}

bool PageListView::isOwnPageDrag(const QDropEvent &event) const
{
    const auto *source = qobject_cast<const QAbstractItemView *>(event.source());
    return source != nullptr && documentModel() != nullptr && source->model() == model() &&
           event.possibleActions().testFlag(Qt::MoveAction) &&
           event.mimeData()->hasFormat(PageDragFormat::kMimeType);
}

std::optional<PageDropTarget> PageListView::dropTargetOf(const QDropEvent &event) const
{
    const std::optional<PdfPageId> id = pageIn(event);
    if (!isOwnPageDrag(event) || !id) {
        return std::nullopt;
    }
    return dropTargetFor(*id, event.position().toPoint());
}

std::optional<PageDropTarget> PageListView::dropTargetFor(PdfPageId id, QPoint point) const
{
    const int source = documentModel() != nullptr ? documentModel()->rowForPageId(id) : -1;
    if (source < 0) {
        return std::nullopt;
    }
    const PageDropTarget target = dropTargetAt(point);
    const bool wouldStay = target.row == source || target.row == source + 1;
    return wouldStay ? std::nullopt : std::make_optional(target);
}

void PageListView::forgetDrag()
{
    m_heldPage.reset();
    m_dragScroller.leave();
    setDropTarget(std::nullopt);
}

void PageListView::setPressedPage(PdfPageId id)
{
    if (id != m_pressedPage) {
        m_pressedPage = id;
        viewport()->update();
    }
}

void PageListView::setDropTarget(const std::optional<PageDropTarget> &target)
{
    if (target != m_dropTarget) {
        m_dropTarget = target;
        viewport()->update();
    }
}

QPixmap PageListView::dragPixmap(const QModelIndex &index) const
{
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = QRect(QPoint(), visualRect(index).size());
    const double ratio = devicePixelRatioF();
    QPixmap pixmap(option.rect.size() * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setOpacity(kDragPixmapOpacity);
    itemDelegate()->paint(&painter, option, index);
    painter.end();
    const int limit = qRound(kDragPixmapMaximumSide * ratio);
    if (pixmap.width() <= limit && pixmap.height() <= limit) {
        return pixmap;
    }
    return pixmap.scaled(limit, limit, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

void PageListView::postLayout()
{
    m_layoutPosted = true;
    scheduleDelayedItemsLayout();
    viewport()->update();
}
