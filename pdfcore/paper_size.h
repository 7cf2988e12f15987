// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QSizeF>

/// An upright A4 page in points: the size of every page of which nothing else is known.
inline constexpr QSizeF kA4PageSize{595.0, 842.0};

/// An upright page of the size Letter in points.
inline constexpr QSizeF kLetterPageSize{612.0, 792.0};
