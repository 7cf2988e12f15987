// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

/// A rotation in degrees, of either sense and any number of turns, as one of 0 to 359.
[[nodiscard]] constexpr int withoutFullTurns(int degrees)
{
    return (degrees % 360 + 360) % 360;
}
