// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>

class PasswordInput;
class QLabel;

/// A password field with the message about it below.
class PasswordField final : public QWidget
{
    Q_OBJECT

public:
    explicit PasswordField(QWidget *parent = nullptr);

    [[nodiscard]] QString text() const;
    [[nodiscard]] PasswordInput *input() const { return m_input; }
    [[nodiscard]] QLabel *label() const { return m_label; }

    void showMessage(const QString &message);
    /// Hides the message, or shows the last one again; an empty line if there was none.
    void setMessageVisible(bool visible);
    void setError(bool error);

signals:
    void textChanged(const QString &text);

private:
    PasswordInput *m_input;
    QLabel *m_label;
};
