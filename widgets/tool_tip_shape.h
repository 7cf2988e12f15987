// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/rounded_window.h"

#include <QObject>

/// Gives all tool tips of the program the shape that the application's style sheet means.
///
/// Belongs to the application object, whose events it filters.
class ToolTipShape final : public QObject
{
    Q_OBJECT

public:
    /// `shape` has to follow the style sheet's rule for QToolTip.
    ToolTipShape(const SeenShape &shape, QObject *application);
    ~ToolTipShape() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    SeenShape m_shape;
};
