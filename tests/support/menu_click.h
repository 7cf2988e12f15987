// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

class QAction;
class QMenu;

/// Clicks an entry of an open menu as a user does: after moving the pointer to it. Some releases of
/// Qt take a click that comes without a move for the end of the click that opened the menu.
void clickMenuEntry(QMenu &menu, QAction *entry);

/// Moves the pointer to an entry of an open menu, in as many steps as a menu waits for.
void moveToMenuEntry(QMenu &menu, QAction *entry);
