// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_card_geometry.h"

#include "pdf/viewer/reading/page_layout.h"

#include <algorithm>

namespace {

// Thumbnail panel.
constexpr QMargins kRowCardMargins{6, 4, 6, 30};
constexpr int kRowImageMargin = 4;
constexpr int kRowStripMargin = 8;
constexpr int kRowStripRise = 41;
constexpr int kRowStripHeight = 34;

// Page grid, at a zoom of 100 percent.
constexpr QSizeF kCellSize{300.0, 340.0};
constexpr QSizeF kCellThumbnailSize{258.0, 290.0};
constexpr int kCellExtraWidth = 20;

constexpr int kCellThumbnailTop = 12;
constexpr int kCellCardMargin = 6;
constexpr int kCellCaptionHeight = 32;
constexpr QPoint kSelectionBoxOffset{14, 13};
constexpr int kSelectionBoxSide = 28;
constexpr int kCellBarMargin = 12;
constexpr int kCellBarRise = 43;
constexpr int kCellBarHeight = 36;
constexpr int kInsertZoneSide = 34;
constexpr int kInsertZoneOverlap = 16;
constexpr int kSplitZoneWidth = 28;
constexpr int kSplitZoneMargin = 42;

constexpr int kIndicatorWidth = 4;

} // namespace

ThumbnailRowGeometry thumbnailRowGeometry(const QRect &item)
{
    ThumbnailRowGeometry row;
    row.card = item.marginsRemoved(kRowCardMargins);
    const QSize box =
        kThumbnailBox.boundedTo(row.card.size() - QSize(2 * kRowImageMargin, 2 * kRowImageMargin));
    row.imageArea = centredIn(row.card, box).toRect();
    row.caption = QRect(row.card.left(), row.card.bottom() + 1, row.card.width(),
                        item.bottom() - row.card.bottom());
    row.actionStrip = QRect(row.card.left() + kRowStripMargin, row.card.bottom() - kRowStripRise,
                            row.card.width() - 2 * kRowStripMargin, kRowStripHeight);
    return row;
}

PageGridMetrics pageGridMetrics(int zoomPercent)
{
    const double factor = std::clamp(zoomPercent, kMinimumGridZoom, kMaximumGridZoom) / 100.0;
    return {(kCellSize * factor).toSize() + QSize(kCellExtraWidth, 0),
            (kCellThumbnailSize * factor).toSize()};
}

PageCellGeometry pageCellGeometry(const QRect &cell, QSize thumbnail)
{
    PageCellGeometry geometry;
    geometry.cell = cell;
    const QRect box(
        QPoint(cell.center().x() - thumbnail.width() / 2, cell.top() + kCellThumbnailTop),
        thumbnail);
    geometry.thumbnail = box;
    geometry.card =
        box.adjusted(-kCellCardMargin, -kCellCardMargin, kCellCardMargin, kCellCardMargin);
    const int captionHeight = std::min(cell.bottom() - geometry.card.bottom(), kCellCaptionHeight);
    geometry.caption = QRect(geometry.card.left(), geometry.card.bottom() + 1,
                             geometry.card.width(), captionHeight);
    geometry.selectionBox =
        QRect(box.topLeft() + kSelectionBoxOffset, QSize(kSelectionBoxSide, kSelectionBoxSide));
    geometry.actionBar = QRect(box.left() + kCellBarMargin, box.bottom() - kCellBarRise,
                               box.width() - 2 * kCellBarMargin, kCellBarHeight);
    geometry.insertZone =
        QRect(cell.right() - kInsertZoneOverlap, box.center().y() - kInsertZoneSide / 2,
              kInsertZoneSide, kInsertZoneSide);
    geometry.splitZone = QRect(cell.left() - kSplitZoneWidth / 2, box.top() + kSplitZoneMargin,
                               kSplitZoneWidth, box.height() - 2 * kSplitZoneMargin);
    return geometry;
}

int barPartAt(const QRect &bar, int parts, QPoint point)
{
    if (!bar.contains(point)) {
        return -1;
    }
    const int partWidth = std::max(bar.width() / parts, 1);
    return std::clamp((point.x() - bar.left()) / partWidth, 0, parts - 1);
}

QRect barPart(const QRect &bar, int parts, int part)
{
    const int partWidth = std::max(bar.width() / parts, 1);
    const int left = bar.left() + part * partWidth;
    const int right = part == parts - 1 ? bar.right() : left + partWidth - 1;
    return QRect(QPoint(left, bar.top()), QPoint(right, bar.bottom()));
}

QSize thumbnailTargetSize(QSizeF displaySize, QSize box, double devicePixelRatio)
{
    const QSizeF page = displaySize.isEmpty() ? kDefaultPageSize : displaySize;
    return page.scaled(QSizeF(box) * devicePixelRatio, Qt::KeepAspectRatio)
        .toSize()
        .expandedTo(QSize(1, 1));
}

QRectF centredIn(const QRectF &box, QSizeF size)
{
    QRectF rect(QPointF(), size);
    rect.moveCenter(box.center());
    return rect;
}

QRect shiftedBetween(const QRect &rect, int left, int right)
{
    if (rect.left() < left) {
        return rect.translated(left - rect.left(), 0);
    }
    return rect.translated(std::min(right - rect.right(), 0), 0);
}

PageDropTarget dropTargetInColumn(const QRect &item, int row, int spacing, QPoint point)
{
    const bool below = point.y() > item.center().y();
    const int gap = below ? item.bottom() + 1 + spacing : item.top() - spacing;
    const QRect card = thumbnailRowGeometry(item).card;
    return {row + (below ? 1 : 0),
            QRect(card.left(), gap - kIndicatorWidth / 2, card.width(), kIndicatorWidth)};
}

PageDropTarget dropTargetInGrid(const PageCellGeometry &cell, int row, QPoint point)
{
    const bool behind = point.x() > cell.cell.center().x();
    const int gap = behind ? cell.cell.right() + 1 : cell.cell.left();
    return {row + (behind ? 1 : 0),
            QRect(gap - kIndicatorWidth / 2, cell.card.top(), kIndicatorWidth, cell.card.height())};
}
