// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class QAction;
class QLineEdit;

/// A field for a password with a lock before it. While it is not empty, an eye behind it shows and
/// hides what was typed.
class PasswordInput final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool error READ hasError WRITE setError)

public:
    explicit PasswordInput(QWidget *parent = nullptr);
    ~PasswordInput() override;

    [[nodiscard]] QLineEdit *lineEdit() const { return m_edit; }
    [[nodiscard]] QString text() const;
    [[nodiscard]] bool hasError() const { return m_error; }

    /// Marks what was typed as wrong; the focus and the pointer are shown in its place.
    void setError(bool error);
    void setPlaceholderText(const QString &text);

protected:
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void toggleEcho();
    /// Whether what was typed can be read.
    [[nodiscard]] bool isShown() const;
    void refreshEye();

    QLineEdit *m_edit;
    QAction *m_eye;
    bool m_error = false;
};
