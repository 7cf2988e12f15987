// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/common/rounded_popup_menu.h"

#include "widgets/rounded_window.h"
#include "widgets/theme.h"

RoundedPopupMenu::RoundedPopupMenu(QWidget *parent)
    : QMenu(parent)
{
    letCornersBeSeenThrough(*this, {.radius = kCornerRadius, .edge = Theme::border});
}

RoundedPopupMenu::~RoundedPopupMenu() = default;

void RoundedPopupMenu::showEvent(QShowEvent *event)
{
    QMenu::showEvent(event);
    updateMask();
}

void RoundedPopupMenu::resizeEvent(QResizeEvent *event)
{
    QMenu::resizeEvent(event);
    updateMask();
}

void RoundedPopupMenu::updateMask()
{
    if (width() <= 0 || height() <= 0) {
        return;
    }
    setMask(roundedPolygonRegion(QRectF(rect()).adjusted(0, 0, -0.5, -0.5), kCornerRadius));
}
