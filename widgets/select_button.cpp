// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/select_button.h"

#include "widgets/control_painting.h"
#include "widgets/widget_font.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int kHeight = 45;
constexpr int kMinimumWidth = 64;
constexpr int kPadding = 12;
constexpr int kFont = 14;

} // namespace

SelectButton::SelectButton(const QString &text, QWidget *parent)
    : ChoiceButton(text, parent)
{
    setFont(widgetFont(kFont));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

SelectButton::~SelectButton() = default;

QSize SelectButton::sizeHint() const
{
    ensurePolished();
    const int textWidth = fontMetrics().size(Qt::TextSingleLine, text()).width();
    return {std::max(textWidth + 2 * kPadding, kMinimumWidth), kHeight};
}

QSize SelectButton::minimumSizeHint() const
{
    return {kMinimumWidth, kHeight};
}

void SelectButton::paintEvent(QPaintEvent * /*event*/)
{
    const ChoiceCard::State state = cardState();
    QPainter painter(this);
    ChoiceCard::drawCard(painter, rect(), state);
    painter.setPen(ChoiceCard::titleColor(state));
    ControlPainting::drawText(painter, rect().adjusted(kPadding, 0, -kPadding, 0), text(),
                              Qt::AlignCenter);
}
