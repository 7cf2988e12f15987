// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/switch_button.h"

#include "widgets/choice_card.h"
#include "widgets/control_painting.h"
#include "widgets/theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPropertyAnimation>

namespace {

constexpr QSize kSize{60, 30};
constexpr int kDuration = 200;
constexpr int kKnobInset = 3;

} // namespace

SwitchButton::SwitchButton(QWidget *parent)
    : QWidget(parent)
    , m_animation(new QPropertyAnimation(this, "sliderPosition", this))
{
    setFixedSize(kSize);
    setCursor(Qt::PointingHandCursor);
    m_animation->setDuration(kDuration);
    m_animation->setEasingCurve(QEasingCurve::OutCubic);
}

SwitchButton::~SwitchButton() = default;

void SwitchButton::setChecked(bool checked)
{
    m_animation->stop();
    m_checked = checked;
    setSliderPosition(checked ? 1.0 : 0.0);
}

void SwitchButton::setSliderPosition(double position)
{
    m_sliderPosition = position;
    update();
}

void SwitchButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        toggle();
        return;
    }
    QWidget::keyPressEvent(event);
}

void SwitchButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        toggle();
        return;
    }
    QWidget::mousePressEvent(event);
}

void SwitchButton::paintEvent(QPaintEvent * /*event*/)
{
    const int radius = height() / 2;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : Theme::disabledOpacity);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_checked ? ChoiceCard::accent : Theme::borderNeutral);
    painter.drawRoundedRect(rect(), radius, radius);
    if (!m_checked) {
        painter.setBrush(ChoiceCard::hoverFill);
        painter.drawRoundedRect(rect().adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    }
    const int knobSide = height() - 2 * kKnobInset;
    const int knobLeft = qRound((width() - height()) * m_sliderPosition) + kKnobInset;
    painter.setBrush(Theme::white);
    painter.drawEllipse(knobLeft, kKnobInset, knobSide, knobSide);
    painter.setOpacity(1.0);
    if (hasFocus()) {
        ControlPainting::drawFocusRing(painter, rect(), radius);
    }
}

void SwitchButton::toggle()
{
    m_checked = !m_checked;
    m_animation->stop();
    m_animation->setStartValue(m_sliderPosition);
    m_animation->setEndValue(m_checked ? 1.0 : 0.0);
    m_animation->start();
    update();
    emit toggled(m_checked);
}
