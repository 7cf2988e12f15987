// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QStringList>

#include <memory>

class FramelessWindow;

/// The program's start, in steps that run() takes in the order of their declaration.
namespace Startup {

/// Sets the high-DPI attributes; before the application object exists.
void setAttributes();
/// Sets the application's names, version and window icon.
void setIdentity();
/// Sets the font, the palette and the style sheet of tool tips and menus.
void setAppearance();
/// Builds and shows the main window. Its workspace is built anew whenever the language changes.
[[nodiscard]] std::unique_ptr<FramelessWindow> showMainWindow();
/// Opens the file named by the second of the program's `arguments` in the workspace of `window`,
/// if there is such a file. Further arguments are ignored.
void openFileArgument(const FramelessWindow &window, const QStringList &arguments);

/// Runs the whole program and returns its exit code.
[[nodiscard]] int run(int &argc, char **argv);

} // namespace Startup
