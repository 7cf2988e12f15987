// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QFont>
#include <QString>

/// Codes of fonts: the low eight bits are the height in logical pixels, further bits as below.

/// Weight 700 instead of 400.
inline constexpr int kBoldFont = 0x100;
/// With any of these bits the family is that of the application, else Arial.
inline constexpr int kApplicationFamily = 0xF000;

/// The font that a code stands for.
[[nodiscard]] inline QFont widgetFont(int code)
{
    constexpr int kPixelSize = 0xFF;
    QFont font;
    if ((code & kApplicationFamily) == 0) {
        font.setFamilies({QStringLiteral("Arial")});
    }
    font.setPixelSize(code & kPixelSize);
    font.setWeight((code & kBoldFont) != 0 ? QFont::Bold : QFont::Normal);
    font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}
