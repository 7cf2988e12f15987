// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/field_frame.h"

#include "widgets/control_painting.h"
#include "widgets/theme.h"

QColor FieldFrame::lineColor(const State &state)
{
    if (!state.enabled) {
        return Theme::border;
    }
    if (state.focused) {
        return Theme::accent;
    }
    if (state.hovered) {
        return Theme::textMuted;
    }
    return state.error ? Theme::danger : Theme::border;
}

void FieldFrame::draw(QPainter &painter, const QRect &rect, const State &state, double lineWidth)
{
    ControlPainting::drawBox(painter, rect,
                             {.fill = state.enabled ? Theme::white : Theme::windowBackground,
                              .border = lineColor(state),
                              .lineWidth = lineWidth,
                              .radius = 5.0,
                              .inset = 1.0});
}
