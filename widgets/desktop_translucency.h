// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <optional>

/// Whether the desktop shows what is behind the transparent parts of a window.
///
/// Desktops of today do. On an X server without a compositing manager, as remote desktops often
/// are, such parts are black. A manager may start or end at any time, so who shows a window asks
/// anew. For the interface thread, with an application object.
namespace DesktopTranslucency {

/// Asks the desktop.
bool ask();

/// What the desktop answered last; asks it the first time.
[[nodiscard]] bool isShown();

/// Answers in place of the desktop, which differs from one machine to the next; nothing gives the
/// answer back to the desktop. For tests.
void pretend(std::optional<bool> shown);

} // namespace DesktopTranslucency
