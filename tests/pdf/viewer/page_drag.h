// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QPoint>
#include <Qt>

class QWidget;

/// Moves the mouse to a point of `widget` with the buttons that are down.
void moveMouse(QWidget *widget, QPoint to, Qt::MouseButtons buttons = Qt::NoButton);

/// Presses the left button of the mouse at a point of `widget` as the second press of a double
/// click.
void pressAgain(QWidget *widget, QPoint point);

/// Presses the left button of the mouse at a point of `widget`, moves it by a few pixels and then
/// far enough for a drag, and lets go there.
void pressAndMoveMouse(QWidget *widget, QPoint from);

/// Drags with the left button of the mouse from a point of `source` to a point of `target` and
/// lets go there, as a user would. Points are in the widgets' own coordinates.
void dragWithMouse(QWidget *source, QPoint from, QWidget *target, QPoint to);
