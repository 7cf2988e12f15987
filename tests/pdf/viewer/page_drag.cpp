// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/page_drag.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <QWidget>

void moveMouse(QWidget *widget, QPoint to, Qt::MouseButtons buttons)
{
    QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, buttons,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &move);
}

void pressAgain(QWidget *widget, QPoint point)
{
    QMouseEvent press(QEvent::MouseButtonDblClick, point, widget->mapToGlobal(point),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &press);
}

void pressAndMoveMouse(QWidget *widget, QPoint from)
{
    QTest::mousePress(widget, Qt::LeftButton, {}, from);
    const QPoint farther = from + QPoint(0, -40);
    for (const QPoint &point : {from + QPoint(2, 0), from - QPoint(2, 0), from, farther}) {
        moveMouse(widget, point, Qt::LeftButton);
    }
    QTest::mouseRelease(widget, Qt::LeftButton, {}, farther);
}

void dragWithMouse(QWidget *source, QPoint from, QWidget *target, QPoint to)
{
    // The drag runs an event loop of its own as soon as the pointer has moved far enough.
    QTimer::singleShot(0, target, [=] {
        for (const QPoint &point : {to - QPoint(1, 0), to}) {
            moveMouse(target, point, Qt::LeftButton);
            QCoreApplication::processEvents();
        }
        QTest::mouseRelease(target, Qt::LeftButton, {}, to);
    });
    const int distance = QApplication::startDragDistance() + 1;
    QTest::mousePress(source, Qt::LeftButton, {}, from);
    moveMouse(source, from + QPoint(0, distance), Qt::LeftButton);
    moveMouse(source, from + QPoint(0, 2 * distance), Qt::LeftButton);
}
