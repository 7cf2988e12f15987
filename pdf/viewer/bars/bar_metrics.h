// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QSize>

/// Sizes that the bars of a viewer have in common, in logical pixels.
inline constexpr QSize kBarSeparatorSize{1, 34};
inline constexpr QSize kBarIconSize{24, 24};
