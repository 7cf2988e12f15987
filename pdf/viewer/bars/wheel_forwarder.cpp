// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/bars/wheel_forwarder.h"

#include <QCoreApplication>
#include <QWheelEvent>
#include <QWidget>

WheelForwarder::WheelForwarder(QWidget *from, QWidget *to)
    : QObject(from)
    , m_to(to)
{
    from->installEventFilter(this);
    for (QWidget *part : from->findChildren<QWidget *>()) {
        if (part->window() == from->window()) {
            part->installEventFilter(this);
        }
    }
}

bool WheelForwarder::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Wheel) {
        return QObject::eventFilter(watched, event);
    }
    const auto &wheel = *static_cast<QWheelEvent *>(event);
    QWheelEvent forwarded(m_to->mapFromGlobal(wheel.globalPosition()), wheel.globalPosition(),
                          wheel.pixelDelta(), wheel.angleDelta(), wheel.buttons(),
                          wheel.modifiers(), wheel.phase(), wheel.inverted(), wheel.source());
    QCoreApplication::sendEvent(m_to, &forwarded);
    event->accept();
    return true;
}
