// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QSizeF>

/// Where the parts of a page's card stand, in the thumbnail panel and in the page grid.
///
/// All rectangles are in logical pixels of the viewport that the item's rectangle is given in.

/// The box into which the thumbnail panel scales a page.
inline constexpr QSize kThumbnailBox{136, 166};
/// Height of one row of the thumbnail panel: card and caption.
inline constexpr int kThumbnailRowHeight = 216;

/// One row of the thumbnail panel.
struct ThumbnailRowGeometry
{
    QRect card;
    /// The box of the page image, in the middle of the card.
    QRect imageArea;
    QRect caption;
    QRect actionStrip;
};

[[nodiscard]] ThumbnailRowGeometry thumbnailRowGeometry(const QRect &item);

/// Limits and start of the page grid's zoom, in percent.
inline constexpr int kMinimumGridZoom = 70;
inline constexpr int kMaximumGridZoom = 160;
inline constexpr int kInitialGridZoom = 80;

/// The sizes in the page grid that depend on its zoom.
struct PageGridMetrics
{
    QSize cell;
    QSize thumbnail;

    friend bool operator==(const PageGridMetrics &, const PageGridMetrics &) = default;
};

/// The sizes at a zoom, which is brought into the limits.
[[nodiscard]] PageGridMetrics pageGridMetrics(int zoomPercent);

/// One cell of the page grid.
struct PageCellGeometry
{
    QRect cell;
    /// The box of the page image.
    QRect thumbnail;
    /// The card behind the page image.
    QRect card;
    QRect caption;
    QRect selectionBox;
    QRect actionBar;
    /// Where a click inserts behind the page.
    QRect insertZone;
    /// Where a click splits before the page.
    QRect splitZone;
};

[[nodiscard]] PageCellGeometry pageCellGeometry(const QRect &cell, QSize thumbnail);

/// The part of a bar, divided into equal parts, that contains `point`; -1 outside the bar. What is
/// left over by the division belongs to the last part.
[[nodiscard]] int barPartAt(const QRect &bar, int parts, QPoint point);
/// The rectangle of one part of a bar.
[[nodiscard]] QRect barPart(const QRect &bar, int parts, int part);

/// The size in device pixels of a page that is fitted into `box` logical pixels, at least 1 × 1.
/// A page of unknown size counts as one of A4.
[[nodiscard]] QSize thumbnailTargetSize(QSizeF displaySize, QSize box, double devicePixelRatio);

/// The rectangle of `size` in the middle of `box`.
[[nodiscard]] QRectF centredIn(const QRectF &box, QSizeF size);

/// `rect`, shifted sideways so that as much as possible of it lies between `left` and `right`.
[[nodiscard]] QRect shiftedBetween(const QRect &rect, int left, int right);

/// Where a dragged page would be put.
struct PageDropTarget
{
    /// The row before which the page comes to stand.
    int row = -1;
    /// The line that marks the gap.
    QRect indicator;

    friend bool operator==(const PageDropTarget &, const PageDropTarget &) = default;
};

/// The gap nearest to `point` above or below the item of `row`, which is `spacing` away from its
/// neighbours.
[[nodiscard]] PageDropTarget dropTargetInColumn(const QRect &item, int row, int spacing,
                                                QPoint point);
/// The gap nearest to `point` to the left or right of the cell of `row`.
[[nodiscard]] PageDropTarget dropTargetInGrid(const PageCellGeometry &cell, int row, QPoint point);
