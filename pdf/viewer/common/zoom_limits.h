// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

/// The limits of the zoom at which pages are read, as factors: 1.0 is 100 %.
inline constexpr double kMinimumZoom = 0.1;
inline constexpr double kMaximumZoom = 5.0;
