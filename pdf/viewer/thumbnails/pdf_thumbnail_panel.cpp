// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/cards/page_list_view.h"
#include "pdf/viewer/thumbnails/pdf_insert_drop_zone.h"
#include "pdf/viewer/thumbnails/thumbnail_delegate.h"
#include "widgets/theme.h"

#include <QItemSelectionModel>
#include <QScrollBar>
#include <QSet>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kMinimumWidth = 176;
constexpr int kMaximumWidth = 280;
constexpr int kInitialWidth = 210;
constexpr QMargins kMargins{8, 10, 8, 10};
constexpr int kSpacing = 8;
constexpr int kListSpacing = 2;
constexpr int kScrollStep = 42;

constexpr int kProbeOffset = 4;
constexpr int kRowsAbove = 2;
constexpr int kRowsBelow = 4;
constexpr int kVisiblePriority = 10;
constexpr int kBackgroundPriority = 2;
constexpr int kMaximumPending = 18;
constexpr int kBatchSize = 8;
constexpr int kGenerationDelayMs = 20;
constexpr int kGenerationRetryMs = 50;

// %1 background, %2 border
constexpr QLatin1String kStyleSheet{
    "#pdfThumbnailPanel { background: %1; border: none; border-right: 1px solid %2; }"};

} // namespace

PdfThumbnailPanel::PdfThumbnailPanel(QWidget *parent)
    : PageCardsView(parent)
    , m_list(new PageListView(this))
    , m_dropZone(new PdfInsertDropZone(this))
    , m_generationTimer(this)
{
    buildInterface();
    connectParts();
}

PdfThumbnailPanel::~PdfThumbnailPanel()
{
    removeList();
}

QSize PdfThumbnailPanel::sizeHint() const
{
    return {kInitialWidth, QWidget::sizeHint().height()};
}

void PdfThumbnailPanel::setModel(PdfDocumentModel *model)
{
    useModel(model);
    m_generationTimer.stop();
    m_generationCursor = 0;
    m_currentPage = 0;
    showHover({});
    m_list->viewport()->update();
    schedulePass();
}

void PdfThumbnailPanel::setRenderManager(PdfRenderManager *manager)
{
    thumbnailStore().setRenderManager(manager);
    missThumbnails();
}

void PdfThumbnailPanel::setCurrentPage(int row)
{
    if (row < 0 || row >= pageCount()) {
        return;
    }
    m_currentPage = documentModel()->pageAt(row)->id;
    const QModelIndex index = documentModel()->index(row);
    if (m_list->currentIndex() != index || !m_list->selectionModel()->isSelected(index)) {
        m_list->setCurrentIndex(index);
    }
    m_list->scrollTo(index);
    schedulePass();
}

void PdfThumbnailPanel::restartRequests()
{
    thumbnailStore().forgetRequests();
    missThumbnails();
}

void PdfThumbnailPanel::settleRows()
{
    m_generationCursor = 0;
    restoreCurrentRow();
}

void PdfThumbnailPanel::requestThumbnails()
{
    if (canRequest() && pageCount() > 0) {
        requestVisibleRows();
        scheduleGeneration(kGenerationDelayMs);
    }
}

void PdfThumbnailPanel::missThumbnails()
{
    m_generationCursor = 0;
    schedulePass();
}

void PdfThumbnailPanel::updateHover()
{
    PageHover now;
    if (documentModel() != nullptr && pointer()) {
        now.row = m_list->indexAt(*pointer()).row();
        now.part = stripPartAt(now.row, *pointer());
    }
    now.pressed = isStillPressed(now.row == hover().row && now.part == hover().part);
    showHover(now);
}

bool PdfThumbnailPanel::pressAt(QPoint point)
{
    const int row = hover().row;
    const int part = stripPartAt(row, point);
    if (part < 0) {
        return false;
    }
    takePress();
    showHover({row, part, false, true});
    const PdfPageId id = documentModel()->pageAt(row)->id;
    switch (part) {
    case ThumbnailDelegate::PreviewPart:
        emit previewPageRequested(id);
        break;
    case ThumbnailDelegate::RotatePart:
        emit rotatePageRequested(id);
        break;
    default:
        emit deletePageRequested(id);
        break;
    }
    return true;
}

void PdfThumbnailPanel::showEvent(QShowEvent *event)
{
    PageCardsView::showEvent(event);
    m_shown = true;
    schedulePass();
}

void PdfThumbnailPanel::buildInterface()
{
    setObjectName(QStringLiteral("pdfThumbnailPanel"));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QString(kStyleSheet).arg(Theme::windowBackground.name(), Theme::border.name()));
    setMinimumWidth(kMinimumWidth);
    setMaximumWidth(kMaximumWidth);
    resize(kInitialWidth, height());
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);

    m_list->setObjectName(QStringLiteral("pdfThumbnailList"));
    m_list->setViewMode(QListView::ListMode);
    m_list->setFlow(QListView::TopToBottom);
    m_list->setWrapping(false);
    m_list->setSpacing(kListSpacing);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->verticalScrollBar()->setSingleStep(kScrollStep);
    m_list->setItemDelegate(new ThumbnailDelegate(thumbnails(), hover(), m_list));
    useList(m_list);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargins);
    layout->setSpacing(kSpacing);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_dropZone);

    m_generationTimer.setSingleShot(true);
}

void PdfThumbnailPanel::connectParts()
{
    connect(m_list, &QAbstractItemView::clicked, this,
            [this](const QModelIndex &index) { emit pageActivated(index.row()); });
    connect(m_list, &PageListView::rowChosenByKey, this, &PdfThumbnailPanel::pageActivated);
    connect(m_list, &PageListView::dragEnded, this, &PdfThumbnailPanel::markCurrentPage);
    connect(m_list, &PageListView::laidOut, this, &PdfThumbnailPanel::schedulePass);
    connect(m_list->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &PdfThumbnailPanel::schedulePass);
    connect(m_dropZone, &QPushButton::clicked, this,
            [this] { emit chooseInsertFilesRequested(pageCount()); });
    connect(m_dropZone, &PdfInsertDropZone::filesDropped, this,
            [this](const QStringList &files) { emit insertFilesRequested(files, pageCount()); });
    connect(&m_generationTimer, &QTimer::timeout, this, &PdfThumbnailPanel::generateBatch);

    const auto generateMore = [this] { scheduleGeneration(kGenerationDelayMs); };
    connect(&thumbnails(), &PageThumbnailStore::imageArrived, this, generateMore);
    connect(&thumbnails(), &PageThumbnailStore::imageFailed, this, generateMore);
}

bool PdfThumbnailPanel::canRequest() const
{
    const bool isOutOfSight = m_shown && !isVisible();
    return documentModel() != nullptr && (thumbnails().renderManager() != nullptr) && !isOutOfSight;
}

void PdfThumbnailPanel::restoreCurrentRow()
{
    const QItemSelectionModel *selection = m_list->selectionModel();
    if (pageCount() == 0 || !selection->selectedIndexes().isEmpty()) {
        return;
    }
    const int row = m_list->currentIndex().isValid() ? m_list->currentIndex().row()
                                                     : documentModel()->rowForPageId(m_currentPage);
    if (row < 0) {
        setCurrentPage(0);
        return;
    }
    markRow(row);
}

void PdfThumbnailPanel::markCurrentPage()
{
    // The press that began a drag has marked the page that was dragged.
    const int row = documentModel() != nullptr ? documentModel()->rowForPageId(m_currentPage) : -1;
    if (row >= 0) {
        markRow(row);
    }
}

void PdfThumbnailPanel::markRow(int row)
{
    // The reader may have scrolled away from the current page; it need not come back into view.
    m_list->setAutoScroll(false);
    m_list->setCurrentIndex(documentModel()->index(row));
    m_list->setAutoScroll(true);
}

int PdfThumbnailPanel::rowAtHeight(int y, int towards) const
{
    // Between two rows lies a gap that belongs to none of them.
    const QModelIndex index = m_list->indexAt({kProbeOffset, y});
    return index.isValid() ? index.row()
                           : m_list->indexAt({kProbeOffset, y + 2 * kListSpacing * towards}).row();
}

PdfThumbnailPanel::RowRange PdfThumbnailPanel::visibleRows() const
{
    const int lastRow = pageCount() - 1;
    const int bottom = m_list->viewport()->height() - 1;
    const int first = std::max(rowAtHeight(kProbeOffset, 1), 0);
    int last = rowAtHeight(bottom, -1);
    if (last < 0) {
        const bool endsInView =
            m_list->visualRect(documentModel()->index(lastRow)).bottom() < bottom;
        last = endsInView ? lastRow : std::min(lastRow, kRowsBelow);
    }
    return {std::max(first - kRowsAbove, 0), std::min(lastRow, last + kRowsBelow)};
}

void PdfThumbnailPanel::requestVisibleRows()
{
    setRequestedRows(visibleRows());
    const auto wanted = wantedPages(requestedRows(), kThumbnailBox);
    QSet<PdfPageId> ids;
    for (const PageThumbnailStore::WantedPage &page : wanted) {
        ids.insert(page.record.id);
    }
    thumbnailStore().forgetFailuresExcept(ids);
    // One call per row: the first thumbnails are to be seen before the last ones are made.
    thumbnailStore().request(wanted, documentModel()->documentRevision(), kVisiblePriority, 1,
                             PageThumbnailStore::Urgency::Visible);
}

void PdfThumbnailPanel::scheduleGeneration(int delay)
{
    if (m_generationCursor < pageCount() && !m_generationTimer.isActive()) {
        m_generationTimer.start(delay);
    }
}

void PdfThumbnailPanel::generateBatch()
{
    if (!canRequest()) {
        return;
    }
    if (thumbnails().pendingCount() >= kMaximumPending) {
        scheduleGeneration(kGenerationRetryMs);
        return;
    }
    const int count = pageCount();
    QList<PageThumbnailStore::WantedPage> wanted;
    while (m_generationCursor < count && wanted.size() < kBatchSize) {
        const PageThumbnailStore::WantedPage page = wantedPage(m_generationCursor, kThumbnailBox);
        ++m_generationCursor;
        if (!thumbnails().isSettled(page)) {
            wanted.append(page);
        }
    }
    if (!thumbnails().hasRoom()) {
        // The rest of a long document is made as it comes into view.
        m_generationCursor = count;
        return;
    }
    thumbnailStore().request(wanted, documentModel()->documentRevision(), kBackgroundPriority, 1,
                             PageThumbnailStore::Urgency::Background);
    scheduleGeneration(kGenerationDelayMs);
}

int PdfThumbnailPanel::stripPartAt(int row, QPoint point) const
{
    if (documentModel() == nullptr || row < 0) {
        return -1;
    }
    const QRect item = m_list->visualRect(documentModel()->index(row));
    return barPartAt(thumbnailRowGeometry(item).actionStrip, ThumbnailDelegate::PartCount, point);
}

void PdfThumbnailPanel::showHover(const PageHover &hover)
{
    setHover(hover);
    m_list->viewport()->setCursor(hover.part >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
}
