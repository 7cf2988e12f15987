// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/choice_card.h"

#include "widgets/control_painting.h"
#include "widgets/theme.h"

#include <QPainter>

namespace {

constexpr double kInset = 1.0;
constexpr double kMarkLineWidth = 1.5;
/// The part of the mark's width that its dot takes.
constexpr double kDotShare = 0.5;

QColor fillOf(const ChoiceCard::State &state)
{
    if (state.checked) {
        return ChoiceCard::checkedFill;
    }
    if (!state.enabled) {
        return Theme::white;
    }
    if (state.pressed) {
        return ChoiceCard::pressedFill;
    }
    return state.hovered ? ChoiceCard::hoverFill : Theme::white;
}

} // namespace

void ChoiceCard::drawCard(QPainter &painter, const QRect &rect, const State &state)
{
    const double opacity = painter.opacity();
    painter.setOpacity(state.enabled ? opacity : opacity * Theme::disabledCardOpacity);
    ControlPainting::drawBox(painter, rect,
                             {.fill = fillOf(state),
                              .border = state.checked ? accent : Theme::borderNeutral,
                              .radius = radius,
                              .inset = kInset});
    painter.setOpacity(opacity);
    if (state.focused) {
        ControlPainting::drawFocusRing(painter, rect, radius + kInset);
    }
}

void ChoiceCard::drawRadioMark(QPainter &painter, const QRectF &rect, const State &state)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(state.enabled ? 1.0 : Theme::disabledCardOpacity);
    QColor line = Theme::borderStrong;
    if (state.checked) {
        line = accent;
    } else if (state.enabled && (state.hovered || state.pressed)) {
        line = Theme::textMuted;
    }
    const double inset = kMarkLineWidth / 2;
    painter.setPen(QPen(line, kMarkLineWidth));
    painter.setBrush(Theme::white);
    painter.drawEllipse(rect.adjusted(inset, inset, -inset, -inset));
    if (state.checked) {
        const double side = rect.width() * kDotShare;
        painter.setPen(Qt::NoPen);
        painter.setBrush(accent);
        painter.drawEllipse(rect.center(), side / 2, side / 2);
    }
    painter.restore();
}

QColor ChoiceCard::titleColor(const State &state)
{
    if (!state.enabled) {
        return Theme::textMuted;
    }
    return state.checked ? accent : Theme::ink;
}
