// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QMenu>

/// A menu in a window with rounded corners.
class RoundedPopupMenu final : public QMenu
{
    Q_OBJECT

public:
    /// Of the corners, in logical pixels; style sheets that draw a border have to follow it.
    static constexpr int kCornerRadius = 8;

    explicit RoundedPopupMenu(QWidget *parent = nullptr);
    ~RoundedPopupMenu() override;

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void updateMask();
};
