// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QWidget>

/// Prepares a window, such as that of a menu, for contents with round corners. To be called before
/// it is shown.
inline void letCornersBeSeenThrough(QWidget &window)
{
    // The window system's shadow would be that of a window with square corners.
    window.setWindowFlags(window.windowFlags() | Qt::FramelessWindowHint |
                          Qt::NoDropShadowWindowHint);
    window.setAttribute(Qt::WA_TranslucentBackground);
}
