// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QColor>

/// What printing inks look like on a screen.
inline const QColor kCyan(0, 174, 239);
inline const QColor kMagenta(236, 0, 140);
inline const QColor kYellow(255, 242, 0);
inline const QColor kBlack(35, 31, 32);
inline const QColor kCyanMagenta(46, 49, 146);
inline const QColor kMagentaYellow(237, 28, 36);
inline const QColor kCyanYellow(0, 166, 80);
inline const QColor kHalfCyan(128, 215, 247);
inline const QColor kHalfMagenta(246, 128, 198);
inline const QColor kHalfCyanMagenta(134, 120, 195);
