// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QColor>
#include <QLatin1String>
#include <QRect>

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

/// For line edits inside the frame, which leave the drawing to it.
inline constexpr QLatin1String kLineEditStyleSheet{
    "QLineEdit {    background: transparent;    border: none;}"};

/// The colour of the line: the focus counts most, then the pointer, then the error.
[[nodiscard]] QColor lineColor(const State &state);

/// `lineWidth` is in logical pixels; 0 draws none.
void draw(QPainter &painter, const QRect &rect, const State &state, double lineWidth = 1.0);

} // namespace FieldFrame
