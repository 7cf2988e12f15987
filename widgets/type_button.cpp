// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/type_button.h"

#include "widgets/control_painting.h"
#include "widgets/text_alignment.h"
#include "widgets/theme.h"
#include "widgets/widget_font.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int kHeight = 48;
constexpr int kMinimumWidth = 72;
constexpr int kPadding = 12;
constexpr int kIconSide = 24;
constexpr int kGap = 8;
constexpr int kFont = 14;

} // namespace

TypeButton::TypeButton(const QString &text, const QIcon &icon, QWidget *parent)
    : ChoiceButton(text, parent)
    , m_icon(icon)
{
    setFont(widgetFont(kFont));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

TypeButton::~TypeButton() = default;

QSize TypeButton::sizeHint() const
{
    ensurePolished();
    const int textWidth = fontMetrics().size(Qt::TextSingleLine, text()).width();
    const int iconWidth = m_icon.isNull() ? 0 : kIconSide + kGap;
    return {std::max(iconWidth + textWidth + 2 * kPadding, kMinimumWidth), kHeight};
}

QSize TypeButton::minimumSizeHint() const
{
    return {kMinimumWidth, kHeight};
}

void TypeButton::setIcon(const QIcon &icon)
{
    m_icon = icon;
    updateGeometry();
    update();
}

void TypeButton::paintEvent(QPaintEvent * /*event*/)
{
    const ChoiceCard::State state = cardState();
    QPainter painter(this);
    ChoiceCard::drawCard(painter, rect(), state);

    const int textWidth = fontMetrics().size(Qt::TextSingleLine, text()).width();
    const ControlPainting::Face face = ControlPainting::centredFace(
        rect().adjusted(kPadding, 0, -kPadding, 0), m_icon.isNull() ? 0 : kIconSide, kGap,
        textWidth, layoutDirection());
    painter.setOpacity(state.enabled ? 1.0 : Theme::disabledOpacity);
    ControlPainting::drawIcon(painter, face.icon, m_icon);
    painter.setOpacity(1.0);
    painter.setPen(ChoiceCard::titleColor(state));
    ControlPainting::drawText(painter, face.text, text(),
                              leadingSide(layoutDirection()) | Qt::AlignVCenter);
}
