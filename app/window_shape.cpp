// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/window_shape.h"

#include <algorithm>

namespace {

constexpr qreal kOutlineInset = 0.5;
constexpr qreal kBorderWidth = 1.0;

QPainterPath roundedPath(const QRectF &rect, qreal inset, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius, radius);
    return path;
}

} // namespace

QPainterPath WindowShape::outline(const QRect &window, qreal radius)
{
    return roundedPath(QRectF(window), kOutlineInset, radius);
}

QPainterPath WindowShape::interior(const QRect &window, qreal radius)
{
    return roundedPath(QRectF(window), kOutlineInset + kBorderWidth, std::max(radius - 1, 0.0));
}
