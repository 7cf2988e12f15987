// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QColor>

/// The colours of the interface, and how they fade.
///
/// Widgets take their colours from here; a colour that has a name here is never spelled again.
/// The values are sRGB, opaque unless they take an alpha, and may be read from any thread.
namespace Theme {

/// The one accent: what matters most on a screen, and its states.
inline constexpr QColor accent{0x4F, 0x46, 0xE5};
inline constexpr QColor accentHover{0x63, 0x66, 0xF1};
inline constexpr QColor accentPressed{0x43, 0x38, 0xCA};
inline constexpr QColor accentTint{0xEE, 0xF2, 0xFF};
inline constexpr QColor accentTintLight{0xF7, 0xF7, 0xFF};

/// Text.
inline constexpr QColor ink{0x17, 0x20, 0x33};
inline constexpr QColor textSecondary{0x47, 0x55, 0x69};
inline constexpr QColor textMuted{0x84, 0x90, 0xA3};
inline constexpr QColor textDisabled{0xC5, 0xCB, 0xD5};
/// Titles of dialogs.
inline constexpr QColor inkStrong{0x11, 0x18, 0x27};
/// Controls that stand out by a face of their own.
inline constexpr QColor inkNeutral{0x17, 0x19, 0x1E};
/// What is chosen in a menu, a list or a bar, and the edge of what a drop goes to.
inline constexpr QColor chosen{0x25, 0x59, 0xEB};

/// Lines.
inline constexpr QColor border{0xE2, 0xE7, 0xEF};
inline constexpr QColor borderStrong{0xCB, 0xD3, 0xDF};
inline constexpr QColor borderSubtle{0xED, 0xF0, 0xF5};
inline constexpr QColor borderNeutral{0xE5, 0xE6, 0xEB};

/// Surfaces.
inline constexpr QColor white{0xFF, 0xFF, 0xFF};
inline constexpr QColor windowBackground{0xF7, 0xF8, 0xFC};
inline constexpr QColor hover{0xF1, 0xF3, 0xF8};
inline constexpr QColor pressed{0xE8, 0xEB, 0xF2};
inline constexpr QColor canvas{0xE9, 0xED, 0xF4};
/// Buttons of the window's frame: those of the title bar and of the tabs.
inline constexpr QColor frameHover{0xE4, 0xE6, 0xEB};
inline constexpr QColor framePressed{0xD8, 0xDB, 0xE0};
/// Handles of scroll bars beside pages.
inline constexpr QColor pageScrollBar{0xB8, 0xC0, 0xCE};
inline constexpr QColor pageScrollBarHover{0x98, 0xA3, 0xB5};

/// What shadows are made of, and the dimming behind a box; `alpha` is out of 255.
[[nodiscard]] constexpr QColor shadow(int alpha)
{
    return {15, 23, 42, alpha};
}

/// States.
inline constexpr QColor success{0x20, 0xA6, 0x6A};
inline constexpr QColor warning{0xE8, 0x9A, 0x3C};
inline constexpr QColor danger{0xE0, 0x52, 0x52};
inline constexpr QColor dangerStrong{0xD9, 0x4B, 0x4B};

/// What is left of the pictures of disabled controls, and of disabled cards with all they show.
inline constexpr double disabledOpacity = 0.4;
inline constexpr double disabledCardOpacity = 0.5;

/// Hues that tell kinds of tools and files apart.
inline constexpr QColor blue{0x3B, 0x6D, 0xB3};
inline constexpr QColor green{0x2F, 0x85, 0x5A};
inline constexpr QColor orange{0xD7, 0x67, 0x3F};
inline constexpr QColor violet{0x7C, 0x5C, 0xE7};

} // namespace Theme
