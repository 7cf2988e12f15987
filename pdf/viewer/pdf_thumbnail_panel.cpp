#include "pdf/viewer/pdf_thumbnail_panel.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/page_card_geometry.h"
#include "pdf/viewer/page_list_view.h"
#include "pdf/viewer/pdf_insert_drop_zone.h"
#include "pdf/viewer/thumbnail_delegate.h"
#include "widgets/theme.h"

#include <QItemSelectionModel>
#include <QMouseEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

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
    : QWidget(parent)
    , m_list(new PageListView(this))
    , m_dropZone(new PdfInsertDropZone(this))
    , m_generationTimer(this)
{
    buildInterface();
    connectParts();
}

PdfThumbnailPanel::~PdfThumbnailPanel()
{
    // The list paints from members that go before it; its last events concern nobody.
    m_list->viewport()->removeEventFilter(this);
    delete m_list;
}

QSize PdfThumbnailPanel::sizeHint() const
{
    return {kInitialWidth, QWidget::sizeHint().height()};
}

void PdfThumbnailPanel::setModel(PdfDocumentModel *model)
{
    if (m_model) {
        disconnect(m_model, nullptr, this, nullptr);
    }
    m_model = model;
    m_list->setModel(model);
    reset();
    if (!model) {
        return;
    }
    connect(model, &QAbstractItemModel::modelReset, this, &PdfThumbnailPanel::onRowsChanged);
    connect(model, &QAbstractItemModel::rowsInserted, this, &PdfThumbnailPanel::onRowsChanged);
    connect(model, &QAbstractItemModel::rowsRemoved, this, &PdfThumbnailPanel::onRowsChanged);
    connect(model, &QAbstractItemModel::rowsMoved, this, &PdfThumbnailPanel::onRowsChanged);
    connect(model, &QAbstractItemModel::dataChanged, this, &PdfThumbnailPanel::onDataChanged);
    schedulePass();
}

void PdfThumbnailPanel::setRenderManager(PdfRenderManager *manager)
{
    m_thumbnails.setRenderManager(manager);
    m_generationCursor = 0;
    schedulePass();
}

void PdfThumbnailPanel::setCurrentPage(int row)
{
    if (!m_model || row < 0 || row >= pageCount()) {
        return;
    }
    m_currentPage = m_model->pageAt(row)->id;
    const QModelIndex index = m_model->index(row);
    if (m_list->currentIndex() != index || !m_list->selectionModel()->isSelected(index)) {
        m_list->setCurrentIndex(index);
    }
    m_list->scrollTo(index);
    schedulePass();
}

void PdfThumbnailPanel::restartRequests()
{
    m_thumbnails.forgetRequests();
    m_generationCursor = 0;
    schedulePass();
}

bool PdfThumbnailPanel::event(QEvent *event)
{
    const bool handled = QWidget::event(event);
    switch (event->type()) {
    case QEvent::ScreenChangeInternal:
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
    case QEvent::DevicePixelRatioChange:
#endif
        m_generationCursor = 0;
        schedulePass();
        break;
    default:
        break;
    }
    return handled;
}

bool PdfThumbnailPanel::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_list->viewport()) {
        return QWidget::eventFilter(watched, event);
    }
    switch (event->type()) {
    case QEvent::MouseMove: {
        const auto &move = *static_cast<QMouseEvent *>(event);
        const bool isLeftDown = move.buttons().testFlag(Qt::LeftButton);
        if (!isLeftDown) {
            setHover({m_hover.row, m_hover.part, false, false});
        }
        movePointer(move.position().toPoint());
        // The list has not seen the press; what it makes of the move would belong to another one.
        return m_stripPressed && isLeftDown;
    }
    case QEvent::Leave:
        movePointer(std::nullopt);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return pressStrip(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonRelease:
        return releaseStrip();
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void PdfThumbnailPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
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
    m_list->setUniformItemSizes(true);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setDragEnabled(true);
    m_list->setAcceptDrops(true);
    m_list->setDropIndicatorShown(true);
    m_list->setDefaultDropAction(Qt::MoveAction);
    m_list->setDragDropMode(QAbstractItemView::InternalMove);
    m_list->verticalScrollBar()->setSingleStep(kScrollStep);
    m_list->setItemDelegate(new ThumbnailDelegate(m_thumbnails, m_hover, m_list));
    m_list->viewport()->installEventFilter(this);

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
    connect(m_list, &PageListView::dragStarted, this, [this] { movePointer(std::nullopt); });
    connect(m_list, &PageListView::laidOut, this, &PdfThumbnailPanel::schedulePass);
    connect(m_list->verticalScrollBar(), &QScrollBar::valueChanged, this,
            &PdfThumbnailPanel::schedulePass);
    connect(m_dropZone, &QPushButton::clicked, this,
            [this] { emit chooseInsertFilesRequested(pageCount()); });
    connect(m_dropZone, &PdfInsertDropZone::filesDropped, this,
            [this](const QStringList &files) { emit insertFilesRequested(files, pageCount()); });
    connect(&m_generationTimer, &QTimer::timeout, this, &PdfThumbnailPanel::generateBatch);

    connect(&m_thumbnails, &PageThumbnailStore::imageArrived, this, [this](PdfPageId id) {
        trimThumbnails();
        updateRow(id);
        scheduleGeneration(kGenerationDelayMs);
    });
    connect(&m_thumbnails, &PageThumbnailStore::imageFailed, this, [this](PdfPageId id) {
        updateRow(id);
        scheduleGeneration(kGenerationDelayMs);
    });
    connect(&m_thumbnails, &PageThumbnailStore::roomAvailable, this,
            &PdfThumbnailPanel::schedulePass);
}

int PdfThumbnailPanel::pageCount() const
{
    return m_model ? m_model->rowCount() : 0;
}

bool PdfThumbnailPanel::canRequest() const
{
    const bool isOutOfSight = m_shown && !isVisible();
    return m_model && m_thumbnails.renderManager() && !isOutOfSight;
}

void PdfThumbnailPanel::reset()
{
    m_generationTimer.stop();
    m_thumbnails.clear();
    m_generationCursor = 0;
    m_requestedRows = {};
    m_currentPage = 0;
    m_rowsChanged = false;
    setHover({});
    m_list->viewport()->update();
}

void PdfThumbnailPanel::onRowsChanged()
{
    m_rowsChanged = true;
    schedulePass();
}

void PdfThumbnailPanel::onDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                      const QList<int> &roles)
{
    if (!roles.isEmpty() && !roles.contains(PdfDocumentModel::RotationRole) &&
        !roles.contains(PdfDocumentModel::DisplaySizeRole)) {
        return;
    }
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row) {
        const PdfPageRecord &record = *m_model->pageAt(row);
        if (row >= m_requestedRows.first && row <= m_requestedRows.last) {
            m_thumbnails.turn(record);
        } else {
            m_thumbnails.forget(record.id);
        }
    }
    m_generationCursor = 0;
    schedulePass();
}

void PdfThumbnailPanel::schedulePass()
{
    if (!m_passPosted) {
        m_passPosted = true;
        QMetaObject::invokeMethod(this, &PdfThumbnailPanel::runPass, Qt::QueuedConnection);
    }
}

void PdfThumbnailPanel::runPass()
{
    m_passPosted = false;
    if (!m_model) {
        return;
    }
    if (m_rowsChanged) {
        reconcileRows();
    }
    movePointer(m_pointer);
    if (canRequest() && pageCount() > 0) {
        requestVisibleRows();
        scheduleGeneration(kGenerationDelayMs);
    }
}

void PdfThumbnailPanel::reconcileRows()
{
    m_rowsChanged = false;
    m_thumbnails.reconcile(
        [this](PdfPageId id) { return m_model->pageAt(m_model->rowForPageId(id)); });
    m_generationCursor = 0;
    restoreCurrentRow();
}

void PdfThumbnailPanel::restoreCurrentRow()
{
    const QItemSelectionModel *selection = m_list->selectionModel();
    if (pageCount() == 0 || !selection->selectedIndexes().isEmpty()) {
        return;
    }
    const int row = m_list->currentIndex().isValid() ? m_list->currentIndex().row()
                                                     : m_model->rowForPageId(m_currentPage);
    if (row < 0) {
        setCurrentPage(0);
        return;
    }
    // The reader may have scrolled away from the current page; it need not come back into view.
    m_list->setAutoScroll(false);
    m_list->setCurrentIndex(m_model->index(row));
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
        const bool endsInView = m_list->visualRect(m_model->index(lastRow)).bottom() < bottom;
        last = endsInView ? lastRow : std::min(lastRow, kRowsBelow);
    }
    return {std::max(first - kRowsAbove, 0), std::min(lastRow, last + kRowsBelow)};
}

PageThumbnailStore::WantedPage PdfThumbnailPanel::wantedPage(int row) const
{
    const PdfPageRecord &record = *m_model->pageAt(row);
    return {record, thumbnailTargetSize(record.displaySize(), kThumbnailBox, devicePixelRatioF())};
}

void PdfThumbnailPanel::requestVisibleRows()
{
    m_requestedRows = visibleRows();
    QList<PageThumbnailStore::WantedPage> wanted;
    QSet<PdfPageId> ids;
    for (int row = m_requestedRows.first; row <= m_requestedRows.last; ++row) {
        wanted.append(wantedPage(row));
        ids.insert(wanted.constLast().record.id);
    }
    m_thumbnails.forgetFailuresExcept(ids);
    // One call per row: the first thumbnails are to be seen before the last ones are made.
    m_thumbnails.request(wanted, m_model->documentRevision(), kVisiblePriority, 1,
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
    if (m_thumbnails.pendingCount() >= kMaximumPending) {
        scheduleGeneration(kGenerationRetryMs);
        return;
    }
    const int count = pageCount();
    QList<PageThumbnailStore::WantedPage> wanted;
    while (m_generationCursor < count && wanted.size() < kBatchSize) {
        const PageThumbnailStore::WantedPage page = wantedPage(m_generationCursor);
        ++m_generationCursor;
        if (!m_thumbnails.isSettled(page)) {
            wanted.append(page);
        }
    }
    if (!m_thumbnails.hasRoom()) {
        // The rest of a long document is made as it comes into view.
        m_generationCursor = count;
        return;
    }
    m_thumbnails.request(wanted, m_model->documentRevision(), kBackgroundPriority, 1,
                         PageThumbnailStore::Urgency::Background);
    scheduleGeneration(kGenerationDelayMs);
}

void PdfThumbnailPanel::trimThumbnails()
{
    if (!m_thumbnails.isOverBudget()) {
        return;
    }
    const auto [first, last] = m_requestedRows;
    m_thumbnails.trim([this, first = first, last = last](PdfPageId id) {
        const int row = m_model->rowForPageId(id);
        if (row < 0) {
            return pageCount();
        }
        return row < first ? first - row : std::max(row - last, 0);
    });
}

void PdfThumbnailPanel::updateRow(PdfPageId id)
{
    const int row = m_model ? m_model->rowForPageId(id) : -1;
    if (row >= m_requestedRows.first && row <= m_requestedRows.last) {
        m_list->viewport()->update(m_list->visualRect(m_model->index(row)));
    }
}

int PdfThumbnailPanel::stripPartAt(int row, QPoint point) const
{
    if (!m_model || row < 0) {
        return -1;
    }
    const QRect item = m_list->visualRect(m_model->index(row));
    return barPartAt(thumbnailRowGeometry(item).actionStrip, ThumbnailDelegate::PartCount, point);
}

void PdfThumbnailPanel::movePointer(std::optional<QPoint> point)
{
    m_pointer = point;
    PageHover hover;
    if (m_model && point) {
        hover.row = m_list->indexAt(*point).row();
        hover.part = stripPartAt(hover.row, *point);
        hover.pressed = m_hover.pressed && hover.row == m_hover.row && hover.part == m_hover.part;
    }
    setHover(hover);
}

void PdfThumbnailPanel::setHover(const PageHover &hover)
{
    if (hover == m_hover) {
        return;
    }
    m_hover = hover;
    m_list->viewport()->setCursor(hover.part >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    m_list->viewport()->update();
}

bool PdfThumbnailPanel::pressStrip(const QMouseEvent &event)
{
    m_stripPressed = false;
    const int part = stripPartAt(m_hover.row, event.position().toPoint());
    if (event.button() != Qt::LeftButton || part < 0) {
        return false;
    }
    m_stripPressed = true;
    setHover({m_hover.row, part, false, true});
    const PdfPageId id = m_model->pageAt(m_hover.row)->id;
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

bool PdfThumbnailPanel::releaseStrip()
{
    setHover({m_hover.row, m_hover.part, false, false});
    // The list has not seen the press, so the release must not become its click.
    return std::exchange(m_stripPressed, false);
}
