// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class QRadioButton;

/// Whether a tool replaces its source file or keeps it, which it does at first.
class SaveOption final : public QWidget
{
    Q_OBJECT

public:
    explicit SaveOption(QWidget *parent = nullptr);

    /// For the option "saveOption" of a request: 0 replaces the source, 1 keeps it.
    [[nodiscard]] int value() const;

    [[nodiscard]] QRadioButton *replaceButton() const { return m_replace; }
    [[nodiscard]] QRadioButton *keepButton() const { return m_keep; }

private:
    QRadioButton *m_replace;
    QRadioButton *m_keep;
};
