// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QFont>

/// The font of the texts of the tool pages, in logical pixels.
[[nodiscard]] inline QFont toolFont(int pixelSize, QFont::Weight weight = QFont::Normal)
{
    QFont font(QStringLiteral("Arial"));
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}
