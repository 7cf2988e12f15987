// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

class QWidget;

/// Lets a click on a button or box close the menu or list that it has opened, and no more: Qt
/// would repeat the click to the opener, which would open the pop-up again. To be called once for
/// each pop-up.
void keepClosingClickFrom(QWidget &popup, QWidget &opener);
