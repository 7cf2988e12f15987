// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QPushButton>

/// The title bar's maximise button.
///
/// Its property "maximized" is the title bar's record of the window's state. It stands in front of
/// the property of QWidget, which is read-only and tells of the button itself.
class MaximizeButton final : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(bool maximized MEMBER m_maximized)

public:
    using QPushButton::QPushButton;

private:
    bool m_maximized = false;
};
