// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "widgets/theme.h"

#include <QMargins>
#include <QString>

/// How scroll bars look. Lengths are in logical pixels.
struct ScrollBarLook
{
    /// The whole bar across, margins included.
    int thickness = 10;
    /// Around the handle of a vertical bar; a horizontal one has them turned.
    QMargins margins{2, 2, 2, 2};
    QColor handle = Theme::borderStrong;
    QColor hoveredHandle = Theme::textMuted;
    int radius = 3;
    int minimumLength = 32;
};

/// The scroll bars beside pages, on a canvas that is darker than the other surfaces.
inline constexpr ScrollBarLook kPageScrollBarLook{
    10, {1, 2, 1, 2}, Theme::pageScrollBar, Theme::pageScrollBarHover, 4, 32};

/// The rules for all scroll bars in the widget whose style sheet holds them: a handle without a
/// groove and without arrows.
[[nodiscard]] QString scrollBarStyleSheet(const ScrollBarLook &look);
