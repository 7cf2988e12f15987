// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/choice_button.h"

#include "widgets/control_painting.h"

#include <QKeyEvent>
#include <QMouseEvent>

ChoiceButton::ChoiceButton(const QString &text, QWidget *parent)
    : QWidget(parent)
{
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setText(text);
}

ChoiceButton::~ChoiceButton() = default;

void ChoiceButton::setSelected(bool selected)
{
    if (selected != m_selected) {
        m_selected = selected;
        update();
    }
}

void ChoiceButton::setText(const QString &text)
{
    m_text = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

ChoiceCard::State ChoiceButton::cardState() const
{
    return {.checked = m_selected,
            .hovered = underMouse(),
            .pressed = m_down,
            .focused = hasFocus(),
            .enabled = isEnabled()};
}

bool ChoiceButton::event(QEvent *event)
{
    if (event->type() == QEvent::ToolTip && width() < sizeHint().width() &&
        ControlPainting::showWholeText(*event, *this, m_text)) {
        return true;
    }
    if (event->type() == QEvent::EnabledChange || event->type() == QEvent::Hide) {
        m_held = false;
        m_down = false;
    }
    return QWidget::event(event);
}

void ChoiceButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        emit sigSelected();
        return;
    }
    QWidget::keyPressEvent(event);
}

void ChoiceButton::mouseMoveEvent(QMouseEvent *event)
{
    const bool down = m_held && rect().contains(event->position().toPoint());
    if (down != m_down) {
        m_down = down;
        update();
    }
}

void ChoiceButton::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_held = true;
    m_down = true;
    update();
}

void ChoiceButton::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !m_held) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_held = false;
    m_down = false;
    update();
    if (rect().contains(event->position().toPoint())) {
        emit sigSelected();
    }
}
