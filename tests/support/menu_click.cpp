// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/support/menu_click.h"

#include <QCoreApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QTest>

void clickMenuEntry(QMenu &menu, QAction *entry)
{
    moveToMenuEntry(menu, entry);
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(entry).center());
}

void moveToMenuEntry(QMenu &menu, QAction *entry)
{
    constexpr int kMoves = 10;
    const QPoint place = menu.actionGeometry(entry).center();
    for (int distance = kMoves; distance >= 0; --distance) {
        const QPoint position = place - QPoint(distance, 0);
        QMouseEvent move(QEvent::MouseMove, position, menu.mapToGlobal(position), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&menu, &move);
    }
}
