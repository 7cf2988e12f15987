// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/page_layout.h"

#include <QtMath>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace {

// Widget coordinates are 32-bit integers. Damaged files name page sizes that leave that range, so
// sides and positions stop well inside it.
constexpr int kMaximumPageSide = 1 << 24;
constexpr qint64 kMaximumContentHeight = std::numeric_limits<int>::max() / 2;

int pixels(double points, double zoom)
{
    const double length = points * zoom;
    if (!(length >= 1.0)) {
        return 1;
    }
    return qRound(std::min(length, static_cast<double>(kMaximumPageSide)));
}

QSize pixelSize(QSizeF displaySize, double zoom)
{
    return {pixels(displaySize.width(), zoom), pixels(displaySize.height(), zoom)};
}

/// Stacks the pages and returns the size of the content. `place` is called with the index, the
/// upper edge and the size of each page.
template <typename Place>
QSize stackPages(const QList<QSizeF> &displaySizes, double zoom, QSize viewport, Place &&place)
{
    if (displaySizes.isEmpty()) {
        return viewport;
    }
    int widest = 0;
    qint64 y = kPageTopMargin;
    for (qsizetype i = 0; i < displaySizes.size(); ++i) {
        const QSize size = pixelSize(displaySizes.at(i), zoom);
        widest = std::max(widest, size.width());
        place(i, static_cast<int>(y), size);
        y = std::min(y + size.height() + kPageGap, kMaximumContentHeight);
    }
    return {std::max(widest + 2 * kPageSideMargin, viewport.width()),
            static_cast<int>(y) - kPageGap + kPageBottomMargin};
}

} // namespace

PageLayout computePageLayout(const QList<QSizeF> &displaySizes, double zoom, QSize viewport)
{
    PageLayout layout;
    layout.zoom = zoom;
    layout.pages.resize(displaySizes.size());
    QRect *pages = layout.pages.data();
    layout.contentSize =
        stackPages(displaySizes, zoom, viewport, [pages](qsizetype i, int top, QSize size) {
            pages[i] = QRect(QPoint(0, top), size);
        });
    for (QRect &page : layout.pages) {
        page.moveLeft((layout.contentSize.width() - page.width()) / 2);
    }
    return layout;
}

int pageAtPoint(const PageLayout &layout, QPoint point)
{
    const auto [first, end] = pagesMeeting(layout, QRect(point, QSize(1, 1)));
    return first < end && layout.pages.at(first).contains(point) ? first : -1;
}

int nearestPage(const PageLayout &layout, int y)
{
    if (layout.pages.isEmpty()) {
        return -1;
    }
    const auto begin = layout.pages.cbegin();
    const auto below = std::partition_point(
        begin, layout.pages.cend(), [y](const QRect &page) { return page.center().y() < y; });
    const int row = static_cast<int>(std::distance(begin, below));
    if (below == begin) {
        return row;
    }
    const auto above = std::prev(below);
    const bool upperIsNearer =
        below == layout.pages.cend() || y - above->center().y() <= below->center().y() - y;
    return upperIsNearer ? row - 1 : row;
}

QPair<int, int> pagesMeeting(const PageLayout &layout, const QRect &region)
{
    if (region.isEmpty()) {
        return {0, 0};
    }
    const auto begin = layout.pages.cbegin();
    const auto end = layout.pages.cend();
    const auto first = std::partition_point(
        begin, end, [&region](const QRect &page) { return page.bottom() < region.top(); });
    const auto last = std::partition_point(
        first, end, [&region](const QRect &page) { return page.top() <= region.bottom(); });
    return {static_cast<int>(std::distance(begin, first)),
            static_cast<int>(std::distance(begin, last))};
}

double fitZoom(QSizeF displaySize, QSize viewport, PageFit fit)
{
    const double widthZoom =
        (viewport.width() - 2 * kPageSideMargin) / std::max(displaySize.width(), 1.0);
    if (fit == PageFit::Width) {
        return boundedZoom(widthZoom);
    }
    const double heightZoom = (viewport.height() - kPageTopMargin - kPageBottomMargin) /
                              std::max(displaySize.height(), 1.0);
    return boundedZoom(std::min(widthZoom, heightZoom));
}

double settledFitZoom(const QList<QSizeF> &displaySizes, int row, QSize viewport, QSize scrollBars,
                      PageFit fit)
{
    const auto missingBars = [&](double zoom) {
        const QSize content =
            stackPages(displaySizes, zoom, viewport, [](qsizetype, int, QSize) {});
        return QSize(content.height() > viewport.height() ? scrollBars.width() : 0,
                     content.width() > viewport.width() ? scrollBars.height() : 0);
    };
    const double zoom = fitZoom(displaySizes.at(row), viewport, fit);
    if (scrollBars.isNull()) {
        return zoom;
    }
    const QSize missing = missingBars(zoom);
    if (missing.isNull()) {
        return zoom;
    }
    const double zoomBesideBars = fitZoom(displaySizes.at(row), viewport - missing, fit);
    return missingBars(zoomBesideBars).isNull() ? zoomBesideBars : zoom;
}

double boundedZoom(double zoom)
{
    return std::clamp(zoom, kMinimumZoom, kMaximumZoom);
}

QSize renderTargetSize(QSize pageSize, double renderScale)
{
    const double width = pageSize.width();
    const double height = pageSize.height();
    const double scale = std::min({renderScale, kMaximumImageSide / std::max({width, height, 1.0}),
                                   std::sqrt(kMaximumImageArea / std::max(width * height, 1.0))});
    const auto side = [scale](double length) {
        return std::clamp(qCeil(length * scale), 1, kMaximumImageSide);
    };
    return {side(width), side(height)};
}

int centredScroll(int scroll, int maximum, int newMaximum, double ratio)
{
    return qRound(newMaximum / 2.0 + (scroll - maximum / 2.0) * ratio);
}

int pageForAnchor(const PageLayout &layout, QPointF point)
{
    if (layout.pages.isEmpty()) {
        return -1;
    }
    const auto below = std::upper_bound(layout.pages.begin(), layout.pages.end(), point.y(),
                                        [](double y, const QRect &page) { return y < page.top(); });
    return static_cast<int>(std::max<qsizetype>(below - layout.pages.begin() - 1, 0));
}

PageAnchor anchorOn(const PageLayout &layout, int row, QPointF point)
{
    const QRectF page = layout.pages.at(row);
    const QPointF inside(std::clamp(point.x(), page.left(), page.right()),
                         std::clamp(point.y(), page.top(), page.bottom()));
    return {(inside.x() - page.center().x()) / page.width(),
            (inside.y() - page.top()) / page.height(), point - inside};
}

QPointF placeOf(const PageLayout &layout, int row, const PageAnchor &anchor)
{
    const QRectF page = layout.pages.at(row);
    return QPointF(page.center().x() + anchor.shareX * page.width(),
                   page.top() + anchor.shareY * page.height()) +
           anchor.beyond;
}
