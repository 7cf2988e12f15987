// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QPainterPath>
#include <QRect>

/// The shape of the main window in logical pixels: a rounded rectangle with a 1-pixel border.
///
/// `window` is the rectangle of the whole window, `radius` that of its corners; 0 makes them
/// square.
namespace WindowShape {

inline constexpr int kCornerRadius = 12;
/// The radius of what fills a corner inside the border.
inline constexpr int kInnerCornerRadius = kCornerRadius - 1;

/// The outer edge of the border.
[[nodiscard]] QPainterPath outline(const QRect &window, qreal radius);
/// The inner edge of the border.
[[nodiscard]] QPainterPath interior(const QRect &window, qreal radius);

} // namespace WindowShape
