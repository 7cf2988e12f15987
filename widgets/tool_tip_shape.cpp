// SPDX-License-Identifier: AGPL-3.0-or-later
#include "widgets/tool_tip_shape.h"

#include <QEvent>
#include <QLabel>

namespace {

/// The window of a tool tip, or null for any other object.
QLabel *toolTipWindow(QObject *object)
{
    // The class has no header.
    return object->inherits("QTipLabel") ? qobject_cast<QLabel *>(object) : nullptr;
}

} // namespace

ToolTipShape::ToolTipShape(const SeenShape &shape, QObject *application)
    : QObject(application)
    , m_shape(shape)
{
    application->installEventFilter(this);
}

ToolTipShape::~ToolTipShape() = default;

bool ToolTipShape::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Polish) {
        if (QLabel *toolTip = toolTipWindow(watched)) {
            letCornersBeSeenThrough(*toolTip, m_shape);
        }
    } else if (event->type() == QEvent::StyleChange) {
        if (QLabel *toolTip = toolTipWindow(watched)) {
            // It holds the style sheet's padding, which the frame of the label has as well. The
            // tool tip takes its size and its place after this event.
            toolTip->setMargin(0);
        }
    }
    return QObject::eventFilter(watched, event);
}
