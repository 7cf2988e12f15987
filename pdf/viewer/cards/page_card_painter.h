// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QFont>
#include <QIcon>
#include <QImage>
#include <QList>
#include <QRect>
#include <QSize>
#include <QString>

class QPainter;

/// Paints the parts of page cards for the thumbnail panel and the page grid.
///
/// Rectangles are in logical pixels of the painter's device; the painter must not be transformed.
namespace PageCardPainter {

/// The state of a card as a whole.
struct CardState
{
    bool hovered = false;
    bool pressed = false;
    /// The page is chosen.
    bool selected = false;
    /// The page is the list's current one without being chosen.
    bool current = false;
    /// The page is being dragged; its card shows where it came from.
    bool dragged = false;
    bool enabled = true;
};

/// The state of a small part that can be clicked.
struct PartState
{
    bool hovered = false;
    bool pressed = false;
    /// Checked, or chosen.
    bool on = false;
    bool enabled = true;
};

/// One button of an action bar.
struct Action
{
    QIcon icon;
    /// What it does cannot be undone by pressing it again.
    bool destructive = false;
};

void drawCard(QPainter &painter, const QRect &card, const CardState &state);

/// The page in the middle of `box`. `targetSize` is its size in device pixels; an image of that
/// size is drawn pixel by pixel, any other is scaled.
void drawPage(QPainter &painter, const QRect &box, QSize targetSize, const QImage &image,
              const CardState &state);
/// An empty page in the middle of `box` and a text over it.
void drawWaitingPage(QPainter &painter, const QRect &box, QSize targetSize, const QString &text,
                     const QFont &font, const CardState &state);

void drawCaption(QPainter &painter, const QRect &caption, const QString &text, const QFont &font,
                 const CardState &state);

/// `hoveredPart` and `pressedPart` are -1 for none.
void drawActionBar(QPainter &painter, const QRect &bar, const QList<Action> &actions,
                   int hoveredPart, int pressedPart);

void drawSelectionBox(QPainter &painter, const QRect &zone, const PartState &state);

/// The button in `zone` between two cells where pages can be inserted, and a line in `gap`. At the
/// edge of a view, both are what is left of them in view.
void drawInsertMarker(QPainter &painter, const QRect &zone, const QRect &gap,
                      const PartState &state);
/// The dashed line in `gap` where the document can be split, and the scissors in its middle. At the
/// edge of a view, `gap` is what is left of it in view.
void drawSplitLine(QPainter &painter, const QRect &gap, const PartState &state);

/// The line that marks where a dragged page would go, along the longer side of `line`.
void drawDropIndicator(QPainter &painter, const QRect &line);

} // namespace PageCardPainter
