// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QColor>
#include <QIcon>
#include <QRect>
#include <QString>

class QEvent;
class QPainter;
class QWidget;

/// What the styled controls have in common in their looks. Lengths are in logical pixels; edges are
/// put on whole pixels of the device, so that lines are sharp at every scale.
///
/// All of it is for the interface thread.
namespace ControlPainting {

/// A rectangle with round corners and a line along its edge.
struct Box
{
    /// Nothing is filled when invalid.
    QColor fill = {};
    /// No line when invalid.
    QColor border = {};
    double lineWidth = 1.0;
    /// Of the outer edge of the line.
    double radius = 6.0;
    /// From the rectangle to the outer edge of the line.
    double inset = 0.0;
};

void drawBox(QPainter &painter, const QRectF &rect, const Box &box);

/// Where the parts of a face with an icon before a text are.
struct Face
{
    QRect icon;
    QRect text;
};

/// Icon and text side by side in the middle of `room`; mirrored from right to left. The text gets
/// narrower where there is no room for it. An icon of side 0 is none.
[[nodiscard]] Face centredFace(const QRect &room, int iconSide, int gap, int textWidth,
                               Qt::LayoutDirection direction);

/// A ring inside the edge of what has the keyboard focus, seen on light and on strong colours.
void drawFocusRing(QPainter &painter, const QRectF &rect, double radius);

/// One line of text, elided where it is wider than the rectangle. The horizontal alignment is taken
/// as it is, whichever way the text runs.
void drawText(QPainter &painter, const QRect &rect, const QString &text, Qt::Alignment alignment);

/// The same for a path, which runs from left to right in every language and is elided in the
/// middle.
void drawPath(QPainter &painter, const QRect &rect, const QString &path, Qt::Alignment alignment);

/// The icon's picture in a size in logical pixels for a scale; smaller only where the icon is.
[[nodiscard]] QPixmap pixmapOf(const QIcon &icon, const QSize &size, double ratio);

/// An icon in the middle of the rectangle, pixel for pixel where it has a picture for the scale.
void drawIcon(QPainter &painter, const QRect &rect, const QIcon &icon);

/// An icon of one colour in another one.
void drawTinted(QPainter &painter, const QRect &rect, const QIcon &icon, const QColor &color);

/// Answers a QEvent::ToolTip of a widget without a tool tip of its own with the whole text, which
/// its face shows elided. False for any other event or widget.
bool showWholeText(const QEvent &event, QWidget &widget, const QString &text);

} // namespace ControlPainting
