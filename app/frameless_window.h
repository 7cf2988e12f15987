// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QWidget>

#include <array>

class TitleBar;
class WindowCorner;

/// The main window: frameless and translucent, with rounded corners and a 1-pixel border that it
/// paints itself, a title bar and one content widget below it.
///
/// It is moved by dragging where the title bar is. Its corners are square while it is maximised.
class FramelessWindow final : public QWidget
{
    Q_OBJECT

public:
    explicit FramelessWindow(QWidget *parent = nullptr);

    /// Takes `widget` as the content; the one before is removed and deleted later.
    /// A null `widget` changes nothing.
    void setContentWidget(QWidget *widget);

protected:
    /// Unsaved changes in any tab are asked about first; the user may keep the window open.
    void closeEvent(QCloseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void toggleMaximized();
    void restoreUnderPointer();
    void openLanguageDialog();
    void updateMask();

    bool m_dragging = false;
    QPoint m_dragOffset;   ///< Global press position minus the top left corner of the frame.
    int m_dragStripHeight; ///< From the upper edge of the window, in logical pixels.
    TitleBar *m_titleBar;
    QWidget *m_content = nullptr;
    std::array<WindowCorner *, 2> m_lowerCorners;
};
