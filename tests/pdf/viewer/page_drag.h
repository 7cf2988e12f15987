#pragma once

#include <QPoint>

class QWidget;

/// Moves the mouse to a point of `widget` without a button down.
void moveMouse(QWidget *widget, QPoint to);

/// Drags with the left button of the mouse from a point of `source` to a point of `target` and
/// lets go there, as a user would. Points are in the widgets' own coordinates.
void dragWithMouse(QWidget *source, QPoint from, QWidget *target, QPoint to);
