// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QTabBar>

class QPainter;

/// The tab bar of the workspace, which paints its tabs itself.
///
/// A tab whose data is kHomeTabData is the home tab: 90 pixels wide. Every tab but one inserted at
/// index 0 has a close button. Tool tips show what a tab's title cannot. Titles are shown as they
/// are: an ampersand makes no keyboard shortcut.
class CustomTabBar final : public QTabBar
{
    Q_OBJECT

public:
    static constexpr int kHomeTabData = 1;

    explicit CustomTabBar(QWidget *parent = nullptr);

protected:
    QSize tabSizeHint(int index) const override;
    void tabInserted(int index) override;
    bool event(QEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setHoveredIndex(int index);
    void closeTabOf(const QWidget *button);
    void paintTab(QPainter &painter, int index) const;
    void paintTabFace(QPainter &painter, int index, const QRect &tab) const;
    [[nodiscard]] bool isHighlighted(int index) const;

    int m_hoveredIndex = -1; ///< The tab under the mouse, or -1.
};
