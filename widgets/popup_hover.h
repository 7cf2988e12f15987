// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

class QWidget;

/// Ends the hovered look of a button or box with the menu or list that it opens, unless the pointer
/// is over it again by then. While a pop-up is open Qt tells no other widget that the pointer has
/// left it. To be called once for each pop-up.
void endHoverWithPopup(QWidget &popup, QWidget &opener);
