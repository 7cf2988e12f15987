// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/pdf_document_view.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/common/view_changes.h"
#include "widgets/scroll_bar_style.h"
#include "widgets/theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTransform>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double kZoomStep = 1.2;
constexpr double kWheelZoomStep = 1.12;
constexpr double kWheelScrollFactor = 1.5;
constexpr int kArrowKeyStep = 48;
constexpr double kRenderScaleTolerance = 0.01;
constexpr int kShadowOffset = 3;
constexpr QColor kShadowColor = Theme::shadow(32);

// %1 background
constexpr QLatin1String kStyleSheet{R"(
#pdfDocumentView { background: %1; border: none; }
#pdfDocumentView::corner { background: transparent; border: none; }
)"};

/// Fills a line one pixel wide along the inner edge of `rect`. A pen would lie half outside where
/// a logical pixel has several device pixels.
void drawInnerBorder(QPainter &painter, const QRect &rect, const QColor &color)
{
    painter.fillRect(QRect(rect.left(), rect.top(), rect.width(), 1), color);
    painter.fillRect(QRect(rect.left(), rect.bottom(), rect.width(), 1), color);
    painter.fillRect(QRect(rect.left(), rect.top(), 1, rect.height()), color);
    painter.fillRect(QRect(rect.right(), rect.top(), 1, rect.height()), color);
}

void drawSheet(QPainter &painter, const QRect &page)
{
    painter.fillRect(page, Theme::white);
    drawInnerBorder(painter, page, Theme::border);
}

/// Draws what is seen of the shadow that a page casts downwards.
void drawPageShadow(QPainter &painter, const QRect &page)
{
    painter.fillRect(QRect(page.left(), page.bottom() + 1, page.width(), kShadowOffset),
                     kShadowColor);
}

/// Whether the image of a page leaves nothing to be seen of what is below. Where a logical pixel is
/// not a whole number of pixels of the screen, edges may stay.
bool coversPage(const QImage &image, double ratio)
{
    return !image.hasAlphaChannel() && ratio == std::floor(ratio);
}

/// Draws a text where it is seen, however large the page is.
void drawNotice(QPainter &painter, const QRect &page, const QRect &viewport, const QString &text)
{
    constexpr int kFlags = Qt::AlignCenter | Qt::TextWordWrap;
    QRect area = page.intersected(viewport);
    const int textHeight =
        std::min(painter.boundingRect(area, kFlags, text).height(), page.height());
    if (area.height() < textHeight) {
        // It comes into view with the page rather than being squeezed into what is seen of that.
        const bool isUpperPartSeen = area.top() == page.top();
        area.setHeight(textHeight);
        if (!isUpperPartSeen) {
            area.moveBottom(page.bottom());
        }
    }
    painter.setPen(Theme::textMuted);
    painter.drawText(area, kFlags, text);
}

/// The pixels of the screen that a page takes, `ratio` for each logical one.
QSize shownSize(const QRect &page, double ratio)
{
    return {qCeil(page.width() * ratio), qCeil(page.height() * ratio)};
}

/// Draws into a rectangle of the viewport. The painter must not be transformed.
void drawPageImage(QPainter &painter, const QRect &page, const QImage &image)
{
    const double ratio = painter.device()->devicePixelRatioF();
    if (image.size() != shownSize(page, ratio)) {
        painter.drawImage(page, image);
        return;
    }
    // One pixel of the image per pixel of the screen. With fractional scaling the page's corner
    // falls between two screen pixels, which would blur the whole page.
    const QTransform toDevice = painter.deviceTransform();
    painter.setWorldTransform(toDevice.inverted());
    painter.drawImage(toDevice.map(QPointF(page.topLeft())).toPoint(), image);
    painter.resetTransform();
}

} // namespace

PdfDocumentView::PdfDocumentView(QWidget *parent)
    : QAbstractScrollArea(parent)
{
    setObjectName(QStringLiteral("pdfDocumentView"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setStyleSheet(QString(kStyleSheet).arg(Theme::canvas.name()) %
                  scrollBarStyleSheet(kPageScrollBarLook));
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    verticalScrollBar()->setSingleStep(kArrowKeyStep);
    horizontalScrollBar()->setSingleStep(kArrowKeyStep);
    // Pages and scroll values count from the left in every interface language.
    setLayoutDirection(Qt::LeftToRight);

    connect(&m_images, &PageImageLoader::imageArrived, this, &PdfDocumentView::updatePage);
    connect(&m_images, &PageImageLoader::imageFailed, this, &PdfDocumentView::updatePage);
    connect(&m_images, &PageImageLoader::unkeptImageArrived, this, &PdfDocumentView::postPass);
    connect(&m_images, &PageImageLoader::roomAvailable, this, &PdfDocumentView::postPass);
}

PdfDocumentView::~PdfDocumentView() = default;

void PdfDocumentView::setModel(PdfDocumentModel *model)
{
    if (m_model != nullptr) {
        disconnect(m_model, nullptr, this, nullptr);
    }
    m_model = model;
    if (model != nullptr) {
        connect(model, &QAbstractItemModel::modelReset, this, &PdfDocumentView::onModelReset);
        connect(model, &QAbstractItemModel::rowsInserted, this, &PdfDocumentView::invalidateLayout);
        connect(model, &QAbstractItemModel::rowsRemoved, this, &PdfDocumentView::invalidateLayout);
        connect(model, &QAbstractItemModel::rowsMoved, this, &PdfDocumentView::invalidateLayout);
        connect(model, &QAbstractItemModel::dataChanged, this, &PdfDocumentView::onDataChanged);
    }
    m_images.clear();
    m_firstPageAnnounced = false;
    layoutPages(std::nullopt);
}

void PdfDocumentView::setRenderManager(PdfRenderManager *manager)
{
    m_images.setRenderManager(manager);
    schedulePass();
}

void PdfDocumentView::setHandToolEnabled(bool enabled)
{
    m_handTool = enabled;
    showToolCursor();
}

void PdfDocumentView::restartRequests()
{
    m_images.forgetRequests();
    schedulePass();
}

void PdfDocumentView::makeCurrent(int page)
{
    if (page >= 0 && page < pageCount()) {
        m_pageUnknown = false;
        setCurrentPage(page);
    }
}

std::optional<PdfDocumentView::ReadingPlace> PdfDocumentView::readingPlace() const
{
    if (m_currentPage >= m_layout.pages.size()) {
        return std::nullopt;
    }
    const QRect visible = visibleRegion();
    return ReadingPlace{anchorOn(m_layout, m_currentPage, QRectF(visible).center()),
                        m_layout.pages.at(m_currentPage).top() - visible.top()};
}

void PdfDocumentView::restorePlace(int page, const ReadingPlace &place, PlaceFor whom)
{
    if (page < 0 || page >= pageCount()) {
        return;
    }
    const QScopedValueRollback scrolling(m_inProgrammaticScroll, true);
    ensureLayout();
    if (adoptFitZoom(page)) {
        layoutPages(scrollFraction());
    }
    const double middle = QRectF(viewport()->rect()).center().y();
    verticalScrollBar()->setValue(whom == PlaceFor::SamePage
                                      ? qRound(placeOf(m_layout, page, place.middle).y() - middle)
                                      : m_layout.pages.at(page).top() -
                                            std::max(place.top, kPageTopMargin));
    makeCurrent(page);
    schedulePass();
}

void PdfDocumentView::requestPagesInView()
{
    if (isVisible()) {
        runPass();
    }
}

void PdfDocumentView::setZoomFactor(double factor)
{
    if (std::isnan(factor)) {
        return;
    }
    const double zoom = boundedZoom(factor);
    const bool differs = !qFuzzyCompare(zoom, m_zoomFactor);
    if (!differs && m_fitMode == FitMode::Manual) {
        return;
    }
    ensureLayout();
    m_fitMode = FitMode::Manual;
    if (differs) {
        adoptZoom(zoom);
    }
    layoutPages(scrollFraction());
}

void PdfDocumentView::zoomIn()
{
    setZoomFactor(m_zoomFactor * kZoomStep);
}

void PdfDocumentView::zoomOut()
{
    setZoomFactor(m_zoomFactor / kZoomStep);
}

void PdfDocumentView::fitWidth()
{
    ensureLayout();
    m_fitMode = FitMode::Width;
    adoptFitZoom(m_currentPage);
    layoutPages(scrollFraction());
    // Away from the middle, the page would not be seen in its full width.
    const QScopedValueRollback scrolling(m_inProgrammaticScroll, true);
    horizontalScrollBar()->setValue(horizontalScrollBar()->maximum() / 2);
}

void PdfDocumentView::fitPage()
{
    ensureLayout();
    m_fitMode = FitMode::Page;
    adoptFitZoom(m_currentPage);
    layoutPages(scrollFraction());
    goToPage(m_currentPage);
}

void PdfDocumentView::goToPage(int page)
{
    if (page < 0 || page >= pageCount()) {
        return;
    }
    ensureLayout();
    const QScopedValueRollback scrolling(m_inProgrammaticScroll, true);
    if (adoptFitZoom(page)) {
        layoutPages(std::nullopt);
    }
    m_pageUnknown = false;
    ++m_visits;
    const QRect rect = m_layout.pages.at(page);
    scrollTo({rect.center().x() - viewport()->width() / 2, rect.top() - kPageTopMargin});
    setCurrentPage(page);
    schedulePass();
}

bool PdfDocumentView::event(QEvent *event)
{
    const bool handled = QAbstractScrollArea::event(event);
    if (isScreenChange(*event)) {
        adoptRenderScale();
    }
    return handled;
}

void PdfDocumentView::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    m_shown = true;
    adoptRenderScale();
    schedulePass();
}

void PdfDocumentView::resizeEvent(QResizeEvent *event)
{
    QAbstractScrollArea::resizeEvent(event);
    const std::optional<double> position = pendingPosition();
    if (pageCount() > 0) {
        adoptFitZoom(m_currentPage);
    }
    layoutPages(position);
}

void PdfDocumentView::scrollContentsBy(int /*dx*/, int dy)
{
    m_scrolled = m_scrolled || dy != 0;
    viewport()->update();
    // Where the reader scrolls to while a layout is due counts for more than where they were.
    m_keptPosition.reset();
    ensureLayout();
    if (!m_inProgrammaticScroll) {
        updateCurrentPage();
    }
    schedulePass();
}

void PdfDocumentView::paintEvent(QPaintEvent * /*event*/)
{
    ensureLayout();
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRect region = visibleRegion();
    const auto [first, end] = pagesMeeting(m_layout, region.adjusted(0, -kShadowOffset, 0, 0));
    // No pixel is painted twice while the reader scrolls: a large window has millions of them.
    QRegion canvas = viewport()->rect();
    for (int row = first; row < end; ++row) {
        if (isCovered(row)) {
            canvas -= pageOnViewport(row);
        }
    }
    for (const QRect &part : canvas) {
        painter.fillRect(part, Theme::canvas);
    }
    for (int row = first; row < end; ++row) {
        drawPage(painter, row);
    }
    if (!m_firstPageAnnounced && isFirstPageFinished()) {
        m_firstPageAnnounced = true;
        QMetaObject::invokeMethod(this, &PdfDocumentView::firstPagePainted, Qt::QueuedConnection);
    }
}

void PdfDocumentView::keyPressEvent(QKeyEvent *event)
{
    const bool backwards = event->modifiers().testFlag(Qt::ShiftModifier);
    switch (event->key()) {
    case Qt::Key_Home:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
        break;
    case Qt::Key_End:
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
        break;
    case Qt::Key_Space:
        verticalScrollBar()->triggerAction(backwards ? QAbstractSlider::SliderPageStepSub
                                                     : QAbstractSlider::SliderPageStepAdd);
        break;
    default:
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    event->accept();
}

void PdfDocumentView::mousePressEvent(QMouseEvent *event)
{
    if (startsPanning(*event)) {
        m_panning = true;
        m_lastPanPosition = event->position().toPoint();
        viewport()->setCursor(Qt::ClosedHandCursor);
        event->accept();
        return;
    }
    if (event->button() == Qt::LeftButton) {
        ensureLayout();
        const int row = pageAtPoint(m_layout, event->position().toPoint() + scrollOffset());
        if (row >= 0) {
            emit pageClicked(row);
        }
    }
    QAbstractScrollArea::mousePressEvent(event);
}

void PdfDocumentView::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_panning) {
        QAbstractScrollArea::mouseMoveEvent(event);
        return;
    }
    const QPoint position = event->position().toPoint();
    scrollTo(scrollOffset() - (position - m_lastPanPosition));
    m_lastPanPosition = position;
    event->accept();
}

void PdfDocumentView::mouseReleaseEvent(QMouseEvent *event)
{
    const bool isPanButton =
        event->button() == Qt::LeftButton || event->button() == Qt::MiddleButton;
    if (!m_panning || !isPanButton) {
        QAbstractScrollArea::mouseReleaseEvent(event);
        return;
    }
    m_panning = false;
    showToolCursor();
    event->accept();
}

void PdfDocumentView::wheelEvent(QWheelEvent *event)
{
    event->accept();
    if (event->modifiers().testFlag(Qt::ControlModifier)) {
        zoomByWheel(*event);
        return;
    }
    QPoint delta = event->pixelDelta();
    if (delta.isNull()) {
        delta = (QPointF(event->angleDelta()) * kWheelScrollFactor).toPoint();
    }
    if (event->modifiers().testFlag(Qt::ShiftModifier) && delta.x() == 0) {
        delta = delta.transposed();
    }
    scrollTo(scrollOffset() - delta);
}

int PdfDocumentView::pageCount() const
{
    return m_model != nullptr ? m_model->rowCount() : 0;
}

const PdfPageRecord *PdfDocumentView::recordAt(int row) const
{
    return m_model != nullptr ? m_model->pageAt(row) : nullptr;
}

QList<QSizeF> PdfDocumentView::displaySizes() const
{
    const int count = pageCount();
    QList<QSizeF> sizes(count, kDefaultPageSize);
    QSizeF *size = sizes.data();
    for (int row = 0; row < count; ++row, ++size) {
        if (const PdfPageRecord *record = recordAt(row)) {
            *size = record->displaySize();
        }
    }
    return sizes;
}

QPoint PdfDocumentView::scrollOffset() const
{
    return {horizontalScrollBar()->value(), verticalScrollBar()->value()};
}

QSize PdfDocumentView::hiddenScrollBars() const
{
    const bool verticalMayCome = verticalScrollBarPolicy() == Qt::ScrollBarAsNeeded &&
                                 !verticalScrollBar()->isVisibleTo(this);
    const bool horizontalMayCome = horizontalScrollBarPolicy() == Qt::ScrollBarAsNeeded &&
                                   !horizontalScrollBar()->isVisibleTo(this);
    return {verticalMayCome ? verticalScrollBar()->sizeHint().width() : 0,
            horizontalMayCome ? horizontalScrollBar()->sizeHint().height() : 0};
}

QRect PdfDocumentView::visibleRegion() const
{
    return {scrollOffset(), viewport()->size()};
}

QSize PdfDocumentView::targetSizeAt(int row) const
{
    return renderTargetSize(m_layout.pages.at(row).size(), m_renderScale);
}

bool PdfDocumentView::isFirstPageFinished() const
{
    const PdfPageRecord *record = recordAt(m_currentPage);
    if (record == nullptr || m_currentPage >= m_layout.pages.size() ||
        !m_layout.pages.at(m_currentPage).intersects(visibleRegion())) {
        return false;
    }
    const PageImageLoader::HeldImage *held = m_images.image(record->id);
    return held != nullptr && held->size == targetSizeAt(m_currentPage);
}

void PdfDocumentView::onModelReset()
{
    m_images.clear();
    m_firstPageAnnounced = false;
    m_currentPage = 0;
    layoutPages(std::nullopt);
    // The view still shows what it did, perhaps another page than the first. The next pass finds
    // out and says so, unless somebody has gone to a page before.
    m_pageUnknown = true;
}

void PdfDocumentView::onDataChanged(const QModelIndex &topLeft, const QModelIndex &bottomRight,
                                    const QList<int> &roles)
{
    if (!changesPageImages(roles)) {
        return;
    }
    for (int row = topLeft.row(); row <= bottomRight.row(); ++row) {
        if (const PdfPageRecord *record = recordAt(row)) {
            m_images.forget(record->id);
        }
    }
    invalidateLayout();
}

double PdfDocumentView::scrollFraction() const
{
    return static_cast<double>(verticalScrollBar()->value()) /
           std::max(m_layout.contentSize.height(), 1);
}

std::optional<double> PdfDocumentView::pendingPosition() const
{
    return m_layoutDirty ? m_keptPosition : scrollFraction();
}

void PdfDocumentView::invalidateLayout()
{
    m_keptPosition = pendingPosition();
    m_layoutDirty = true;
    viewport()->update();
    schedulePass();
}

void PdfDocumentView::ensureLayout()
{
    // A slot may come here before the view has heard of a change of the rows.
    if (m_layoutDirty || m_layout.pages.size() != pageCount()) {
        layoutPages(pendingPosition());
    }
}

void PdfDocumentView::layoutPages(std::optional<double> keptPosition)
{
    m_layoutDirty = false;
    QScrollBar &horizontal = *horizontalScrollBar();
    const int oldScroll = horizontal.value();
    const int oldMaximum = horizontal.maximum();
    const double ratio = m_zoomFactor / m_layout.zoom;
    m_layout = computePageLayout(displaySizes(), m_zoomFactor, viewport()->size());
    {
        // Only where the content comes to rest decides about the current page.
        const QScopedValueRollback scrolling(m_inProgrammaticScroll, true);
        m_scrolled = false;
        setScrollRanges();
        // The pages stand around the middle of the column, however wide its widest page is.
        horizontal.setValue(centredScroll(oldScroll, oldMaximum, horizontal.maximum(), ratio));
        if (keptPosition) {
            verticalScrollBar()->setValue(qRound(m_layout.contentSize.height() * *keptPosition));
        }
    }
    if (m_scrolled && !m_inProgrammaticScroll) {
        updateCurrentPage();
    }
    if (!m_layout.pages.isEmpty() && m_currentPage >= m_layout.pages.size()) {
        setCurrentPage(static_cast<int>(m_layout.pages.size()) - 1);
    }
    viewport()->update();
    schedulePass();
}

void PdfDocumentView::setScrollRanges()
{
    const QSize content = m_layout.contentSize;
    const QSize visible = viewport()->size();
    horizontalScrollBar()->setPageStep(visible.width());
    horizontalScrollBar()->setRange(0, std::max(content.width() - visible.width(), 0));
    verticalScrollBar()->setPageStep(visible.height());
    verticalScrollBar()->setRange(0, std::max(content.height() - visible.height(), 0));
}

double PdfDocumentView::fitZoomOf(int page) const
{
    const int count = pageCount();
    if (count == 0) {
        return 1.0;
    }
    const PageFit fit = m_fitMode == FitMode::Width ? PageFit::Width : PageFit::Page;
    return settledFitZoom(displaySizes(), std::clamp(page, 0, count - 1), viewport()->size(),
                          hiddenScrollBars(), fit);
}

bool PdfDocumentView::adoptFitZoom(int page)
{
    if (m_fitMode == FitMode::Manual) {
        return false;
    }
    const double zoom = fitZoomOf(page);
    if (qFuzzyCompare(zoom, m_zoomFactor)) {
        return false;
    }
    adoptZoom(zoom);
    return true;
}

void PdfDocumentView::adoptZoom(double zoom)
{
    m_zoomFactor = zoom;
    emit zoomFactorChanged(zoom);
}

void PdfDocumentView::scrollTo(QPoint offset)
{
    horizontalScrollBar()->setValue(offset.x());
    verticalScrollBar()->setValue(offset.y());
}

void PdfDocumentView::updateCurrentPage()
{
    m_pageUnknown = false;
    const int row = nearestPage(m_layout, verticalScrollBar()->value() + viewport()->height() / 2);
    if (row >= 0) {
        setCurrentPage(row);
    }
}

void PdfDocumentView::setCurrentPage(int page)
{
    if (page != m_currentPage) {
        m_currentPage = page;
        emit currentPageChanged(page);
    }
}

void PdfDocumentView::schedulePass()
{
    m_images.forgetFailures();
    postPass();
}

void PdfDocumentView::postPass()
{
    if (!m_passPosted) {
        m_passPosted = true;
        QMetaObject::invokeMethod(this, &PdfDocumentView::runPass, Qt::QueuedConnection);
    }
}

void PdfDocumentView::runPass()
{
    m_passPosted = false;
    ensureLayout();
    if (m_pageUnknown) {
        updateCurrentPage();
    }
    adoptRenderScale();
    const bool isOutOfSight = m_shown && !isVisible();
    if (!isOutOfSight) {
        m_images.request(demand());
    }
}

void PdfDocumentView::adoptRenderScale()
{
    const double scale = std::max(viewport()->devicePixelRatioF(), kMinimumRenderScale);
    if (std::abs(scale - m_renderScale) <= kRenderScaleTolerance) {
        return;
    }
    m_renderScale = scale;
    m_images.clear();
    viewport()->update();
    schedulePass();
}

PageImageLoader::Demand PdfDocumentView::demand() const
{
    PageImageLoader::Demand demand;
    if (m_model == nullptr) {
        return demand;
    }
    demand.documentRevision = m_model->documentRevision();
    const QRect visible = visibleRegion();
    const QRect wanted = visible.adjusted(0, -visible.height(), 0, visible.height());
    const QRect kept = wanted.adjusted(0, -visible.height(), 0, visible.height());

    QList<int> visibleRows;
    QList<int> nearbyRows;
    const auto [first, end] = pagesMeeting(m_layout, kept);
    for (int row = first; row < end; ++row) {
        const PdfPageRecord *record = recordAt(row);
        if (record == nullptr) {
            continue;
        }
        demand.kept.insert(record->id);
        const QRect &page = m_layout.pages.at(row);
        demand.shown.insert(record->id, shownSize(page, viewport()->devicePixelRatioF()));
        if (page.intersects(visible)) {
            visibleRows.append(row);
        } else if (page.intersects(wanted)) {
            nearbyRows.append(row);
        }
    }

    const int middle = visible.center().y();
    const auto appendByDistance = [this, middle](QList<int> rows,
                                                 QList<PageImageLoader::WantedPage> &pages) {
        const auto distance = [this, middle](int row) {
            return std::abs(m_layout.pages.at(row).center().y() - middle);
        };
        std::stable_sort(rows.begin(), rows.end(),
                         [&](int a, int b) { return distance(a) < distance(b); });
        for (const int row : rows) {
            pages.append({*recordAt(row), targetSizeAt(row)});
        }
    };
    appendByDistance(visibleRows, demand.visible);
    appendByDistance(nearbyRows, demand.nearby);
    return demand;
}

void PdfDocumentView::updatePage(PdfPageId id)
{
    const QRect region = visibleRegion();
    const auto [first, end] = pagesMeeting(m_layout, region);
    for (int row = first; row < end; ++row) {
        const PdfPageRecord *record = recordAt(row);
        if (record != nullptr && record->id == id) {
            viewport()->update(m_layout.pages.at(row).translated(-region.topLeft()));
        }
    }
}

QRect PdfDocumentView::pageOnViewport(int row) const
{
    return m_layout.pages.at(row).translated(-scrollOffset());
}

const PageImageLoader::HeldImage *PdfDocumentView::heldImage(int row) const
{
    const PdfPageRecord *record = recordAt(row);
    return record != nullptr ? m_images.image(record->id) : nullptr;
}

bool PdfDocumentView::isCovered(int row) const
{
    const PageImageLoader::HeldImage *held = heldImage(row);
    return held != nullptr && coversPage(held->image, viewport()->devicePixelRatioF());
}

void PdfDocumentView::drawPage(QPainter &painter, int row) const
{
    const QRect page = pageOnViewport(row);
    drawPageShadow(painter, page);
    if (!isCovered(row)) {
        drawSheet(painter, page);
    }
    if (const PageImageLoader::HeldImage *held = heldImage(row)) {
        drawPageImage(painter, page, held->image);
        return;
    }
    const PdfPageRecord *record = recordAt(row);
    const bool hasFailed = record != nullptr && m_images.hasFailed(record->id);
    drawNotice(painter, page, viewport()->rect(),
               hasFailed ? tr("无法显示此页面") : tr("正在渲染第 %1 页…").arg(row + 1));
}

bool PdfDocumentView::startsPanning(const QMouseEvent &event) const
{
    return event.button() == Qt::MiddleButton || (m_handTool && event.button() == Qt::LeftButton);
}

void PdfDocumentView::showToolCursor()
{
    viewport()->setCursor(m_handTool ? Qt::OpenHandCursor : Qt::ArrowCursor);
}

void PdfDocumentView::zoomByWheel(const QWheelEvent &event)
{
    // A touchpad's gesture begins and ends with events that move nothing.
    if (event.angleDelta().isNull()) {
        return;
    }
    ensureLayout();
    const double zoom =
        event.angleDelta().y() > 0 ? m_zoomFactor * kWheelZoomStep : m_zoomFactor / kWheelZoomStep;
    const QPointF pointer = event.position();
    const QPointF point = pointer + scrollOffset();
    const int row = pageForAnchor(m_layout, point);
    if (row < 0) {
        setZoomFactor(zoom);
        return;
    }
    // What is under the pointer stays there. Multiplying the scroll values by the ratio of the
    // zooms would do only if everything grew with the zoom, but the margins and the gaps between
    // pages do not: after some hundred pages the reader would be on another one.
    const PageAnchor anchor = anchorOn(m_layout, row, point);
    setZoomFactor(zoom);
    scrollTo((placeOf(m_layout, row, anchor) - pointer).toPoint());
}
