// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/field_frame.h"

#include "widgets/control_painting.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QLineEdit>
#include <QPalette>

namespace {

constexpr int kFont = 14;

constexpr QLatin1String kLineEditStyleSheet{
    "QLineEdit {    background: transparent;    border: none;}"};

} // namespace

void FieldFrame::dress(QLineEdit &edit)
{
    if (edit.styleSheet().isEmpty()) {
        QPalette palette = edit.palette();
        palette.setColor(QPalette::Text, Theme::ink);
        palette.setColor(QPalette::Disabled, QPalette::Text, Theme::textMuted);
        palette.setColor(QPalette::PlaceholderText, Theme::textMuted);
        edit.setPalette(palette);
        edit.setFont(widgetFont(kFont));
        edit.setStyleSheet(kLineEditStyleSheet);
    }
    edit.setAlignment(leadingSide(edit.layoutDirection()) | Qt::AlignVCenter);
}

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
