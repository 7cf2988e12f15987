// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

/// Rounds one lower corner of the main window over a content that is square there.
///
/// It lies above the content, makes what the content painted outside the window's shape transparent
/// again and paints the border. It lets the mouse through.
class WindowCorner final : public QWidget
{
    Q_OBJECT

public:
    /// `corner` is Qt::BottomLeftCorner or Qt::BottomRightCorner of `window`.
    WindowCorner(Qt::Corner corner, QWidget *window);

    /// Puts the widget into its corner after a change of the window's size.
    void place();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Qt::Corner m_corner;
};
