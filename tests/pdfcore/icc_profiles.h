// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>

/// ICC profiles whose colours nobody could take for those of the usual device spaces.
namespace IccProfiles {

/// sRGB itself.
QByteArray standardRgb();

/// RGB with the primaries of sRGB and no gamma: the middle grey is light.
QByteArray linearRgb();

/// sRGB with red and green exchanged.
QByteArray swappedRgb();

/// Grey with the gamma of sRGB, and without.
QByteArray standardGray();
QByteArray linearGray();

/// CMYK by the plain formula with cyan and magenta exchanged: full cyan looks like (255, 0, 255).
QByteArray swappedCmyk();

} // namespace IccProfiles
