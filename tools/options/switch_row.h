// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class SwitchButton;

/// A switch with its text before it; a click on the text does not switch.
class SwitchRow final : public QWidget
{
    Q_OBJECT

public:
    explicit SwitchRow(const QString &text, QWidget *parent = nullptr);

    [[nodiscard]] SwitchButton *switchButton() const { return m_switch; }

private:
    SwitchButton *m_switch;
};
