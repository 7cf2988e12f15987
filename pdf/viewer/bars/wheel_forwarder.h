// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

/// Lets the wheel over one widget turn what another one shows, as if the pointer were over that.
/// For a bar that floats over a view: whoever scrolls does not aim between the two, and a list in
/// the bar would change its value under the pointer.
class WheelForwarder final : public QObject
{
    Q_OBJECT

public:
    /// From `from`, which owns it, and what is in it now, to `to`; both are in one window. Lists
    /// that drop down from it turn themselves.
    WheelForwarder(QWidget *from, QWidget *to);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_to;
};
