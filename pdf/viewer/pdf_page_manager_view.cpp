#include "pdf/viewer/pdf_page_manager_view.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/page_grid_zoom_control.h"
#include "pdf/viewer/page_manager_delegate.h"
#include "pdf/viewer/page_manager_list_view.h"

#include <QMouseEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr int kZoomControlMargin = 16;
constexpr int kRestMs = 180;
constexpr int kVisiblePriority = 8;
/// Lower, so that the pages that come into view by scrolling go ahead of the ones around the old
/// place.
constexpr int kNearbyPriority = 7;
/// So many pages go to the engine in one call: few enough that the first ones are soon to be seen.
constexpr int kPagesPerCall = 4;
/// With more requests under way, pages outside of the view are not asked for.
constexpr int kMaximumPending = 64;

constexpr QLatin1String kStyleSheet{"#pdfPageManagerView { background: #FAFBFC; }"};

} // namespace

PdfPageManagerView::PdfPageManagerView(QWidget *parent)
    : QWidget(parent)
    , m_list(new PageManagerListView(m_splitPoints, this))
    , m_zoomControl(new PageGridZoomControl(this))
{
    buildInterface();
    connectParts();
}

PdfPageManagerView::~PdfPageManagerView()
{
    // The list paints from members that go before it; its last events concern nobody.
    m_list->viewport()->removeEventFilter(this);
    delete m_list;
}

void PdfPageManagerView::setModel(PdfDocumentModel *model)
{
    if (m_model) {
        disconnect(m_model, nullptr, this, nullptr);
    }
    if (model != m_model) {
        m_splitPoints.clear();
    }
    m_model = model;
    m_list->setModel(model);
    m_thumbnails.clear();
    movePointer(std::nullopt);
    if (model) {
        connect(model, &QAbstractItemModel::modelReset, this, [this] {
            m_documentReset = true;
            onRowsChanged();
        });
        connect(model, &QAbstractItemModel::rowsInserted, this, &PdfPageManagerView::onRowsChanged);
        connect(model, &QAbstractItemModel::rowsRemoved, this, &PdfPageManagerView::onRowsChanged);
        connect(model, &QAbstractItemModel::rowsMoved, this, &PdfPageManagerView::onRowsChanged);
        connect(model, &QAbstractItemModel::dataChanged, this, &PdfPageManagerView::onDataChanged);
    }
    onRowsChanged();
    scheduleRequests();
}

void PdfPageManagerView::setRenderManager(PdfRenderManager *manager)
{
    m_thumbnails.setRenderManager(manager);
    scheduleRequests();
}

void PdfPageManagerView::setWorkspaceMode(int mode)
{
    m_list->setMode(static_cast<PdfWorkspaceMode>(mode));
    movePointer(m_pointer);
}

void PdfPageManagerView::setEveryPageSplit(bool enabled)
{
    m_splitPoints.setEveryPage(enabled);
    m_list->viewport()->update();
    movePointer(m_pointer);
    reportSplitPoints();
}

void PdfPageManagerView::restartRequests()
{
    m_thumbnails.forgetRequests();
    scheduleRequests();
}

bool PdfPageManagerView::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    switch (event->type()) {
    case QEvent::ScreenChangeInternal:
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    case QEvent::DevicePixelRatioChange:
#endif
        schedulePass();
        break;
    default:
        break;
    }
    return handled;
}

bool PdfPageManagerView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_list->viewport()) {
        return QWidget::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::Resize:
        placeZoomControl();
        scheduleRequests();
        break;
    case QEvent::MouseMove: {
        const auto &move = *static_cast<QMouseEvent *>(event);
        const bool isLeftDown = move.buttons().testFlag(Qt::LeftButton);
        m_pressed = m_pressed && isLeftDown;
        movePointer(move.position().toPoint());
        // The list has not seen the press; what it makes of the move would belong to another one.
        return m_pressTaken && isLeftDown;
    }
    case QEvent::Leave:
        movePointer(std::nullopt);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return pressAt(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonRelease:
        return releasePress();
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void PdfPageManagerView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    placeZoomControl();
    scheduleRequests();
}

void PdfPageManagerView::buildInterface()
{
    setObjectName(QStringLiteral("pdfPageManagerView"));
    setFocusProxy(m_list);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(kStyleSheet);

    m_list->setObjectName(QStringLiteral("pdfPageGrid"));
    m_list->setViewMode(QListView::IconMode);
    m_list->setFlow(QListView::LeftToRight);
    m_list->setWrapping(true);
    m_list->setResizeMode(QListView::Adjust);
    m_list->setMovement(QListView::Snap);
    m_list->setSpacing(0);
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setDragEnabled(true);
    m_list->setAcceptDrops(true);
    m_list->setDropIndicatorShown(true);
    m_list->setDefaultDropAction(Qt::MoveAction);
    m_list->setDragDropMode(QAbstractItemView::InternalMove);
    m_list->setItemDelegate(new PageManagerDelegate(m_thumbnails, m_hover, m_list));
    m_list->setMetrics(pageGridMetrics(kInitialGridZoom));
    m_list->viewport()->installEventFilter(this);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    m_zoomControl->raise();

    m_restTimer.setSingleShot(true);
    m_restTimer.setInterval(kRestMs);
}

void PdfPageManagerView::connectParts()
{
    connect(m_zoomControl, &PageGridZoomControl::zoomChanged, this, &PdfPageManagerView::setZoom);
    connect(m_list, &PageListView::dragStarted, this, [this] { movePointer(std::nullopt); });
    connect(m_list, &PageListView::laidOut, this, &PdfPageManagerView::scheduleRequests);
    connect(m_list->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &PdfPageManagerView::scheduleRequests);
    connect(&m_restTimer, &QTimer::timeout, this, &PdfPageManagerView::onRest);
    connect(&m_thumbnails, &PageThumbnailStore::imageArrived, this, [this](PdfPageId id) {
        trimThumbnails();
        updateCell(id);
    });
    connect(&m_thumbnails, &PageThumbnailStore::imageFailed, this, &PdfPageManagerView::updateCell);
    connect(&m_thumbnails, &PageThumbnailStore::roomAvailable, this,
            &PdfPageManagerView::schedulePass);
}

void PdfPageManagerView::placeZoomControl()
{
    const QRect viewport(m_list->viewport()->mapTo(this, QPoint()), m_list->viewport()->size());
    const QSize size = m_zoomControl->sizeHint();
    m_zoomControl->setGeometry(viewport.left() + (viewport.width() - size.width()) / 2,
                               viewport.bottom() + 1 - kZoomControlMargin - size.height(),
                               size.width(), size.height());
    m_zoomControl->show();
    m_zoomControl->raise();
}

void PdfPageManagerView::setZoom(int percent)
{
    const PageGridMetrics metrics = pageGridMetrics(percent);
    if (metrics == m_list->metrics()) {
        return;
    }
    // The page in the upper left corner stays in view, however the others are arranged.
    const QModelIndex anchor = m_list->indexAt({0, 0});
    m_list->setMetrics(metrics);
    if (anchor.isValid() && m_list->verticalScrollBar()->value() > 0) {
        m_list->scrollTo(anchor, QAbstractItemView::PositionAtTop);
    }
    // The thumbnails held serve, scaled, until the zoom has come to rest.
    m_zooming = true;
    m_restTimer.start();
}

void PdfPageManagerView::onRowsChanged()
{
    m_rowsChanged = true;
    schedulePass();
}

void PdfPageManagerView::onDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                       const QList<int> &roles)
{
    if (!roles.isEmpty() && !roles.contains(PdfDocumentModel::RotationRole) &&
        !roles.contains(PdfDocumentModel::DisplaySizeRole)) {
        return;
    }
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row) {
        const PdfPageRecord &record = *m_model->pageAt(row);
        if (row >= m_firstVisibleRow && row <= m_lastVisibleRow) {
            m_thumbnails.turn(record);
        } else {
            m_thumbnails.forget(record.id);
        }
    }
    schedulePass();
}

void PdfPageManagerView::reportSplitPoints()
{
    m_reportedSplitRows = m_model ? m_splitPoints.rows(*m_model) : QList<int>();
    emit splitPointsChanged(m_reportedSplitRows);
}

void PdfPageManagerView::reportMovedSplitPoints()
{
    const QList<int> rows = m_model ? m_splitPoints.rows(*m_model) : QList<int>();
    // Whoever listens may have dropped the rows of a document that was replaced.
    const bool mayBeForgotten = std::exchange(m_documentReset, false) && !rows.isEmpty();
    if (rows != m_reportedSplitRows || mayBeForgotten) {
        reportSplitPoints();
    }
}

void PdfPageManagerView::schedulePass()
{
    if (!m_passPosted) {
        m_passPosted = true;
        QMetaObject::invokeMethod(this, &PdfPageManagerView::runPass, Qt::QueuedConnection);
    }
}

void PdfPageManagerView::scheduleRequests()
{
    schedulePass();
    m_restTimer.start();
}

void PdfPageManagerView::runPass()
{
    m_passPosted = false;
    if (std::exchange(m_rowsChanged, false)) {
        m_thumbnails.reconcile([this](PdfPageId id) {
            return m_model ? m_model->pageAt(m_model->rowForPageId(id)) : nullptr;
        });
        reportMovedSplitPoints();
    }
    movePointer(m_pointer);
    if (canRequest() && !m_zooming) {
        requestVisiblePages();
    }
}

void PdfPageManagerView::onRest()
{
    m_zooming = false;
    if (canRequest()) {
        requestVisiblePages();
        requestNearbyPages();
    }
}

bool PdfPageManagerView::canRequest() const
{
    return m_model && m_thumbnails.renderManager() && isVisible();
}

void PdfPageManagerView::requestVisiblePages()
{
    const PageGridCells grid = m_list->visibleCells();
    m_firstVisibleRow = grid.firstRow;
    m_lastVisibleRow = grid.firstRow + static_cast<int>(grid.cells.size()) - 1;
    m_thumbnails.request(wantedPages(m_firstVisibleRow, m_lastVisibleRow),
                         m_model->documentRevision(), kVisiblePriority, kPagesPerCall,
                         PageThumbnailStore::Urgency::Visible);
}

void PdfPageManagerView::requestNearbyPages()
{
    const int screen = m_lastVisibleRow - m_firstVisibleRow + 1;
    const auto below = wantedPages(m_lastVisibleRow + 1, m_lastVisibleRow + screen);
    const auto above = wantedPages(m_firstVisibleRow - screen, m_firstVisibleRow - 1);

    QSet<PdfPageId> near;
    for (const auto &page : below + above + wantedPages(m_firstVisibleRow, m_lastVisibleRow)) {
        near.insert(page.record.id);
    }
    m_thumbnails.forgetFailuresExcept(near);
    if (m_thumbnails.pendingCount() > kMaximumPending) {
        return;
    }
    m_thumbnails.request(below + above, m_model->documentRevision(), kNearbyPriority, kPagesPerCall,
                         PageThumbnailStore::Urgency::Background);
}

QList<PageThumbnailStore::WantedPage> PdfPageManagerView::wantedPages(int first, int last) const
{
    QList<PageThumbnailStore::WantedPage> pages;
    for (int row = std::max(first, 0); row <= std::min(last, m_model->rowCount() - 1); ++row) {
        const PdfPageRecord &record = *m_model->pageAt(row);
        pages.append({record, thumbnailTargetSize(record.displaySize(), m_list->metrics().thumbnail,
                                                  devicePixelRatioF())});
    }
    return pages;
}

void PdfPageManagerView::trimThumbnails()
{
    if (!m_thumbnails.isOverBudget()) {
        return;
    }
    m_thumbnails.trim([this](PdfPageId id) {
        const int row = m_model ? m_model->rowForPageId(id) : -1;
        if (row < 0) {
            return std::numeric_limits<int>::max();
        }
        return std::max({m_firstVisibleRow - row, row - m_lastVisibleRow, 0});
    });
}

void PdfPageManagerView::updateCell(PdfPageId id)
{
    const int row = m_model ? m_model->rowForPageId(id) : -1;
    if (row >= m_firstVisibleRow && row <= m_lastVisibleRow) {
        m_list->viewport()->update(m_list->visualRect(m_model->index(row)));
    }
}

void PdfPageManagerView::movePointer(std::optional<QPoint> point)
{
    m_pointer = point;
    const int row = m_model && point ? m_list->indexAt(*point).row() : -1;
    PageGridHit hit;
    if (m_model && point) {
        hit = m_list->hitAt(*point, row);
    }
    showHit(hit, row, m_pressed && hit == m_hoveredHit);
}

void PdfPageManagerView::showHit(const PageGridHit &hit, int row, bool pressed)
{
    const bool isLocked = hit.kind == PageGridHit::SplitZone && m_splitPoints.isEveryPage();
    const PageGridHit shown = isLocked ? PageGridHit() : hit;
    const PageHover hover{row, shown.part,
                          shown.kind == PageGridHit::SelectionBox && shown.row == row, pressed};
    if (hover != m_hover) {
        m_hover = hover;
        m_list->viewport()->update();
    }
    m_hoveredHit = shown;
    m_list->setHoveredMark(shown, pressed);
    m_list->viewport()->setCursor(shown.kind == PageGridHit::Nothing ? Qt::ArrowCursor
                                                                     : Qt::PointingHandCursor);
}

bool PdfPageManagerView::pressAt(const QMouseEvent &event)
{
    m_pressTaken = false;
    if (event.button() != Qt::LeftButton || !m_model) {
        return false;
    }
    const QPoint point = event.position().toPoint();
    const PageGridHit hit = m_list->hitAt(point, m_hover.row);
    if (hit.kind == PageGridHit::Nothing) {
        return false;
    }
    m_pressTaken = true;
    m_pressed = true;
    showHit(hit, m_hover.row, true);
    const PdfPageRecord &page = *m_model->pageAt(hit.row);
    switch (hit.kind) {
    case PageGridHit::InsertZone:
        emit insertAtRequested(hit.row + 1, m_list->viewport()->mapToGlobal(point));
        break;
    case PageGridHit::SplitZone:
        toggleSplitBefore(page.id);
        break;
    case PageGridHit::SelectionBox:
        m_model->setPageSelected(page.id, !page.selected);
        break;
    case PageGridHit::Action:
        requestAction(hit.part, page.id);
        break;
    case PageGridHit::Nothing:
        break;
    }
    return true;
}

void PdfPageManagerView::requestAction(int part, PdfPageId id)
{
    switch (part) {
    case PageGridHit::PreviewPart:
        emit previewPageRequested(id);
        break;
    case PageGridHit::DuplicatePart:
        emit duplicatePageRequested(id);
        break;
    case PageGridHit::RotatePart:
        emit rotatePageRequested(id);
        break;
    default:
        emit deletePageRequested(id);
        break;
    }
}

void PdfPageManagerView::toggleSplitBefore(PdfPageId id)
{
    if (m_splitPoints.isEveryPage()) {
        return;
    }
    m_splitPoints.toggle(id);
    m_list->viewport()->update();
    reportSplitPoints();
}

bool PdfPageManagerView::releasePress()
{
    m_pressed = false;
    movePointer(m_pointer);
    // The list has not seen the press, so the release must not become its click.
    return std::exchange(m_pressTaken, false);
}
