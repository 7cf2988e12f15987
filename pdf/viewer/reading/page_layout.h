// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/common/zoom_limits.h"
#include "pdfcore/paper_size.h"

#include <QList>
#include <QPair>
#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QSize>
#include <QSizeF>

/// Where the pages of a document stand in the continuous view.
///
/// All rectangles are in content coordinates: logical pixels, the origin at the upper left corner
/// of everything that can be scrolled to.
struct PageLayout
{
    /// One rectangle per page, in page order and therefore sorted by their upper edges.
    QList<QRect> pages;
    QSize contentSize;
    /// Logical pixels per point.
    double zoom = 1.0;
};

/// Distance from the content's left or right edge to the widest page.
inline constexpr int kPageSideMargin = 32;
/// Distance from the content's upper edge to the first page.
inline constexpr int kPageTopMargin = 32;
/// Distance between two pages.
inline constexpr int kPageGap = 18;
/// Distance from the last page to the content's lower edge.
inline constexpr int kPageBottomMargin = 32;

/// Size in points of a page about which nothing is known.
inline constexpr QSizeF kDefaultPageSize = kA4PageSize;

/// The least number of device pixels rendered per logical pixel.
inline constexpr double kMinimumRenderScale = 1.5;
/// The largest side of a rendered page in device pixels.
inline constexpr int kMaximumImageSide = 8192;
/// The largest area of a rendered page in device pixels.
inline constexpr int kMaximumImageArea = 33554432;

/// What of a page a fit zoom brings into the viewport.
enum class PageFit {
    Width,
    Page,
};

/// Stacks pages of the given sizes (points) in one centred column, one point being `zoom` logical
/// pixels. Without pages the content is as large as the viewport.
[[nodiscard]] PageLayout computePageLayout(const QList<QSizeF> &displaySizes, double zoom,
                                           QSize viewport);

/// The page that contains `point` (content coordinates), or -1.
[[nodiscard]] int pageAtPoint(const PageLayout &layout, QPoint point);

/// The page whose centre is nearest to the height `y`, the upper one of two at the same distance;
/// -1 without pages.
[[nodiscard]] int nearestPage(const PageLayout &layout, int y);

/// The pages that share at least one row of pixels with `region`: the first one and the one behind
/// the last. Whether they also meet it from the left and the right is not looked at.
[[nodiscard]] QPair<int, int> pagesMeeting(const PageLayout &layout, const QRect &region);

/// The zoom at which a page of `displaySize` points fits into the viewport, within the limits.
[[nodiscard]] double fitZoom(QSizeF displaySize, QSize viewport, PageFit fit);

/// The fit zoom of page `row` in a viewport whose scroll bars come and go as they are needed.
///
/// `scrollBars` is what scroll bars that are hidden now would take of the viewport. If the fit
/// zoom brings on a scroll bar, and the fit zoom beside that scroll bar makes it needless, then the
/// view would change between the two for ever; the smaller zoom is the answer then.
[[nodiscard]] double settledFitZoom(const QList<QSizeF> &displaySizes, int row, QSize viewport,
                                    QSize scrollBars, PageFit fit);

/// `zoom` brought into the limits, kMinimumZoom and kMaximumZoom.
[[nodiscard]] double boundedZoom(double zoom);

/// The size in device pixels at which a page shown at `pageSize` logical pixels is rendered:
/// `renderScale` times as large, less where the image would become too large.
[[nodiscard]] QSize renderTargetSize(QSize pageSize, double renderScale);

/// The scroll value that keeps what is in the middle of the viewport there when the zoom is
/// multiplied by `ratio`, for content that is itself laid out around its middle. `maximum` is the
/// greatest scroll value before, `newMaximum` the one after.
[[nodiscard]] int centredScroll(int scroll, int maximum, int newMaximum, double ratio);

/// A point of the content, told by the page that it lies on or beside. Unlike its coordinates it
/// stays what it is when the zoom or the size of the page changes.
struct PageAnchor
{
    /// From -0.5 to 0.5 of the page's width, seen from its middle.
    double shareX = 0.0;
    /// From 0 to 1 of the page's height, seen from its upper edge.
    double shareY = 0.0;
    /// Logical pixels beyond the page's edges. Margins and gaps are not zoomed.
    QPointF beyond;
};

/// The page on which `point` (content coordinates) lies or whose lower gap it is in, the first one
/// above all pages; -1 without pages.
[[nodiscard]] int pageForAnchor(const PageLayout &layout, QPointF point);

/// What `point` (content coordinates) is, seen from page `row`.
[[nodiscard]] PageAnchor anchorOn(const PageLayout &layout, int row, QPointF point);

/// Where a point is, in content coordinates.
[[nodiscard]] QPointF placeOf(const PageLayout &layout, int row, const PageAnchor &anchor);
