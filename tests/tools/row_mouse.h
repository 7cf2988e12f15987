// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QWidget>

/// Sends a mouse event to a widget as the system would; true if it was accepted.
inline bool sendMouse(QWidget &widget, QEvent::Type type, const QPointF &global,
                      Qt::MouseButton button, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, widget.mapFromGlobal(global), global, button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

inline bool pressLeft(QWidget &widget, const QPointF &global)
{
    return sendMouse(widget, QEvent::MouseButtonPress, global, Qt::LeftButton, Qt::LeftButton);
}

inline bool moveLeft(QWidget &widget, const QPointF &global)
{
    return sendMouse(widget, QEvent::MouseMove, global, Qt::NoButton, Qt::LeftButton);
}

inline bool releaseLeft(QWidget &widget, const QPointF &global)
{
    return sendMouse(widget, QEvent::MouseButtonRelease, global, Qt::LeftButton, Qt::NoButton);
}

/// What the tool tip at a place of a widget says, as it is read.
inline QString shownToolTip(QWidget &widget, const QPoint &position)
{
    QToolTip::hideText();
    QHelpEvent event(QEvent::ToolTip, position, widget.mapToGlobal(position));
    QCoreApplication::sendEvent(&widget, &event);
    const QString text = QToolTip::text();
    QToolTip::hideText();
    return Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}
