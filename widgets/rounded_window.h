// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QColor>
#include <QRectF>
#include <QRegion>

class QWidget;

/// What is seen of a window whose other parts are transparent: a rectangle with round corners.
struct SeenShape
{
    /// From the edges of the window, in logical pixels; what lies between may hold a shadow.
    int margin = 0;
    /// Of the corners, in logical pixels.
    int radius = 0;
    /// What the window paints along the edge of the shape.
    QColor edge;
};

/// The pixels whose centres lie in a rectangle with round corners. All corners are alike.
[[nodiscard]] QRegion roundedRegion(const QRect &rect, int radius);

/// The region of the polygon of a rectangle with round corners, whose points are whole pixels.
[[nodiscard]] QRegion roundedPolygonRegion(const QRectF &rect, qreal radius);

/// Makes a window transparent where it paints nothing. Where the desktop would show that as black,
/// the window is cut to its shape instead, without shadow and smooth corners; which of both is
/// decided each time the window is shown. To be called before that.
void showAsShape(QWidget &window, const SeenShape &shape);

/// Prepares a window without a frame, such as that of a menu, for contents with round corners. To
/// be called before it is shown.
void letCornersBeSeenThrough(QWidget &window, const SeenShape &shape);
