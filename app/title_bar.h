// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class QPushButton;
class QToolButton;

/// The strip at the top of the main window: logo and name, the language button and the
/// window buttons.
///
/// It only asks; the window carries the requests out and does the dragging, so presses that hit no
/// button are left to the parent.
class TitleBar final : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kHeight = 40;

    explicit TitleBar(QWidget *parent = nullptr);

    /// Shows the state of the window, which calls this after each change of it.
    void setMaximized(bool maximized);
    /// Sets all texts and tool tips anew.
    void retranslateUi();

signals:
    void languageRequested();
    void minimizeRequested();
    void maximizeRestoreRequested();
    void closeRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    template <typename Button>
    [[nodiscard]] QPushButton *createWindowButton(const QString &iconPath);
    void updateMaximizeToolTip();

    QToolButton *m_languageButton;
    QPushButton *m_minimizeButton;
    QPushButton *m_maximizeButton;
    QPushButton *m_closeButton;
};
