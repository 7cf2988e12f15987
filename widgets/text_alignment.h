// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QStyle>

/// For text that stays at the left also when it runs from right to left.
inline constexpr Qt::Alignment kAlwaysLeft = Qt::AlignLeft | Qt::AlignVCenter | Qt::AlignAbsolute;

/// The side at which a layout of that direction begins, whichever way the text itself runs.
[[nodiscard]] inline Qt::Alignment leadingSide(Qt::LayoutDirection direction)
{
    return QStyle::visualAlignment(direction, Qt::AlignLeft) | Qt::AlignAbsolute;
}
