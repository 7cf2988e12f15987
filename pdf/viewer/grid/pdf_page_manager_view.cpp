// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/pdf_page_manager_view.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/grid/page_grid_zoom_control.h"
#include "pdf/viewer/grid/page_manager_delegate.h"
#include "pdf/viewer/grid/page_manager_list_view.h"

#include <QEvent>
#include <QScrollBar>
#include <QSet>
#include <QVBoxLayout>

#include <optional>
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
    : PageCardsView(parent)
    , m_list(new PageManagerListView(m_splitPoints, this))
    , m_zoomControl(new PageGridZoomControl(this))
{
    buildInterface();
    connectParts();
}

PdfPageManagerView::~PdfPageManagerView()
{
    removeList();
}

void PdfPageManagerView::setModel(PdfDocumentModel *model)
{
    if (model != documentModel()) {
        m_splitPoints.clear();
    }
    useModel(model);
    movePointer(std::nullopt);
    if (model != nullptr) {
        connect(model, &QAbstractItemModel::modelReset, this, [this] { m_documentReset = true; });
    }
    onRowsChanged();
    scheduleRequests();
}

void PdfPageManagerView::setRenderManager(PdfRenderManager *manager)
{
    thumbnailStore().setRenderManager(manager);
    scheduleRequests();
}

void PdfPageManagerView::setWorkspaceMode(int mode)
{
    m_list->setMode(static_cast<PdfWorkspaceMode>(mode));
    updateHover();
}

void PdfPageManagerView::setEveryPageSplit(bool enabled)
{
    m_splitPoints.setEveryPage(enabled);
    m_list->viewport()->update();
    updateHover();
    reportSplitPoints();
}

void PdfPageManagerView::showPage(int row)
{
    if (documentModel() == nullptr || row < 0 || row >= pageCount()) {
        return;
    }
    const QModelIndex index = documentModel()->index(row);
    m_list->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    m_list->scrollTo(index);
}

void PdfPageManagerView::restartRequests()
{
    thumbnailStore().forgetRequests();
    scheduleRequests();
}

void PdfPageManagerView::settleRows()
{
    reportMovedSplitPoints();
}

void PdfPageManagerView::requestThumbnails()
{
    if (canRequest() && !m_zooming) {
        requestVisiblePages();
    }
}

void PdfPageManagerView::updateHover()
{
    const auto point = documentModel() != nullptr ? pointer() : std::nullopt;
    const int row = point ? m_list->indexAt(*point).row() : -1;
    const PageGridHit hit = point ? m_list->hitAt(*point, row) : PageGridHit();
    showHit(hit, row, isStillPressed(hit == m_hoveredHit));
}

bool PdfPageManagerView::pressAt(QPoint point)
{
    const PageGridHit hit = m_list->hitAt(point, hover().row);
    if (hit.kind == PageGridHit::Nothing) {
        return false;
    }
    takePress();
    showHit(hit, hover().row, true);
    const PdfPageRecord &page = *documentModel()->pageAt(hit.row);
    switch (hit.kind) {
    case PageGridHit::InsertZone:
        emit insertAtRequested(hit.row + 1, m_list->viewport()->mapToGlobal(point));
        break;
    case PageGridHit::SplitZone:
        toggleSplitBefore(page.id);
        break;
    case PageGridHit::SelectionBox:
        documentModel()->setPageSelected(page.id, !page.selected);
        break;
    case PageGridHit::Action:
        requestAction(hit.part, page.id);
        break;
    case PageGridHit::Nothing:
        break;
    }
    return true;
}

bool PdfPageManagerView::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_list->viewport() && event->type() == QEvent::Resize) {
        placeZoomControl();
        scheduleRequests();
    }
    return PageCardsView::eventFilter(watched, event);
}

void PdfPageManagerView::showEvent(QShowEvent *event)
{
    PageCardsView::showEvent(event);
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
    m_list->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_list->setItemDelegate(new PageManagerDelegate(thumbnails(), hover(), m_list));
    m_list->setMetrics(pageGridMetrics(kInitialGridZoom));
    useList(m_list);

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
    connect(m_list, &PageListView::laidOut, this, &PdfPageManagerView::scheduleRequests);
    connect(m_list->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &PdfPageManagerView::scheduleRequests);
    connect(&m_restTimer, &QTimer::timeout, this, &PdfPageManagerView::onRest);
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

void PdfPageManagerView::reportSplitPoints()
{
    m_reportedSplitRows =
        documentModel() != nullptr ? m_splitPoints.rows(*documentModel()) : QList<int>();
    emit splitPointsChanged(m_reportedSplitRows);
}

void PdfPageManagerView::reportMovedSplitPoints()
{
    const QList<int> rows =
        documentModel() != nullptr ? m_splitPoints.rows(*documentModel()) : QList<int>();
    // Whoever listens may have dropped the rows of a document that was replaced.
    const bool mayBeForgotten = std::exchange(m_documentReset, false) && !rows.isEmpty();
    if (rows != m_reportedSplitRows || mayBeForgotten) {
        reportSplitPoints();
    }
}

void PdfPageManagerView::scheduleRequests()
{
    schedulePass();
    m_restTimer.start();
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
    return documentModel() != nullptr && (thumbnails().renderManager() != nullptr) && isVisible();
}

void PdfPageManagerView::requestVisiblePages()
{
    const PageGridCells grid = m_list->visibleCells();
    setRequestedRows({grid.firstRow, grid.firstRow + static_cast<int>(grid.cells.size()) - 1});
    thumbnailStore().request(wantedPages(requestedRows(), m_list->metrics().thumbnail),
                             documentModel()->documentRevision(), kVisiblePriority, kPagesPerCall,
                             PageThumbnailStore::Urgency::Visible);
}

void PdfPageManagerView::requestNearbyPages()
{
    const QSize box = m_list->metrics().thumbnail;
    const RowRange visible = requestedRows();
    const auto below = wantedPages({visible.last + 1, visible.last + visible.count()}, box);
    const auto above = wantedPages({visible.first - visible.count(), visible.first - 1}, box);

    QSet<PdfPageId> nearby;
    for (const auto &page : below + above + wantedPages(visible, box)) {
        nearby.insert(page.record.id);
    }
    thumbnailStore().forgetFailuresExcept(nearby);
    if (thumbnails().pendingCount() > kMaximumPending) {
        return;
    }
    thumbnailStore().request(below + above, documentModel()->documentRevision(), kNearbyPriority,
                             kPagesPerCall, PageThumbnailStore::Urgency::Background);
}

void PdfPageManagerView::showHit(const PageGridHit &hit, int row, bool pressed)
{
    const bool isLocked = hit.kind == PageGridHit::SplitZone && m_splitPoints.isEveryPage();
    const PageGridHit shown = isLocked ? PageGridHit() : hit;
    setHover(
        {row, shown.part, shown.kind == PageGridHit::SelectionBox && shown.row == row, pressed});
    m_hoveredHit = shown;
    m_list->setHoveredMark(shown, pressed);
    m_list->viewport()->setCursor(shown.kind == PageGridHit::Nothing ? Qt::ArrowCursor
                                                                     : Qt::PointingHandCursor);
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
