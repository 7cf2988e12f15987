// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

class QAction;
class QLabel;
class QMenu;

/// A button that opens a menu and shows the entry that was chosen last.
class CustomMenuButton final : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)

public:
    explicit CustomMenuButton(QWidget *parent = nullptr);
    ~CustomMenuButton() override;

    [[nodiscard]] QString text() const;
    [[nodiscard]] QLabel *label() const { return m_label; }
    /// Belongs to the button.
    [[nodiscard]] QMenu *menu() const { return m_menu; }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    void setText(const QString &text);
    /// Adds an entry to the menu that can be chosen.
    QAction *addMenuItem(const QString &text);

public slots:
    /// For the signals of the menu's actions: shows the sending one and tells of it.
    void onMenuItemClicked();
    /// Opens the menu below the button, and returns when it is closed, or closes it.
    void toggleMenu();

signals:
    void menuItemSelected(QAction *action);

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *m_label;
    QMenu *m_menu;
};
