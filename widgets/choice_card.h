// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/theme.h"

#include <QColor>
#include <QRect>

class QPainter;

/// The card that stands for one of several choices, and its colours, which switches share.
namespace ChoiceCard {

inline constexpr QColor accent{0x16, 0x5D, 0xFF};
inline constexpr QColor checkedFill{0xE8, 0xF1, 0xFF};
inline constexpr QColor hoverFill{0xF2, 0xF3, 0xF5};
inline constexpr QColor pressedFill = Theme::borderNeutral;
/// In logical pixels, like all lengths here.
inline constexpr double radius = 5.0;

struct State
{
    bool checked = false;
    bool hovered = false;
    bool pressed = false;
    bool focused = false;
    bool enabled = true;
};

/// The card without what stands on it.
void drawCard(QPainter &painter, const QRect &rect, const State &state);

/// The round mark of a radio button in a square rectangle.
void drawRadioMark(QPainter &painter, const QRectF &rect, const State &state);

/// The colour of the text that names the choice.
[[nodiscard]] QColor titleColor(const State &state);

} // namespace ChoiceCard
