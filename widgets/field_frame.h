// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QColor>
#include <QRect>

class QLineEdit;
class QPainter;

/// The frame of the fields that take text.
namespace FieldFrame {

struct State
{
    bool focused = false;
    bool hovered = false;
    bool error = false;
    bool enabled = true;
};

/// Gives a line edit inside the frame its style sheet and its colours, and puts its text at the
/// side where the layout begins. To be called again when the direction of the layout has changed.
void dress(QLineEdit &edit);

/// The colour of the line: the focus counts most, then the pointer, then the error.
[[nodiscard]] QColor lineColor(const State &state);

/// `lineWidth` is in logical pixels; 0 draws none.
void draw(QPainter &painter, const QRect &rect, const State &state, double lineWidth = 1.0);

} // namespace FieldFrame
