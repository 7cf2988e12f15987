#include "tests/pdf/viewer/page_drag.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>
#include <QWidget>

namespace {

void sendMove(QWidget *widget, QPoint to, Qt::MouseButtons buttons)
{
    QMouseEvent move(QEvent::MouseMove, to, widget->mapToGlobal(to), Qt::NoButton, buttons,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &move);
}

} // namespace

void moveMouse(QWidget *widget, QPoint to)
{
    sendMove(widget, to, Qt::NoButton);
}

void dragWithMouse(QWidget *source, QPoint from, QWidget *target, QPoint to)
{
    // The drag runs an event loop of its own as soon as the pointer has moved far enough.
    QTimer::singleShot(0, target, [=] {
        for (const QPoint &point : {to - QPoint(1, 0), to}) {
            sendMove(target, point, Qt::LeftButton);
            QCoreApplication::processEvents();
        }
        QTest::mouseRelease(target, Qt::LeftButton, {}, to);
    });
    const int distance = QApplication::startDragDistance() + 1;
    QTest::mousePress(source, Qt::LeftButton, {}, from);
    sendMove(source, from + QPoint(0, distance), Qt::LeftButton);
    sendMove(source, from + QPoint(0, 2 * distance), Qt::LeftButton);
}
