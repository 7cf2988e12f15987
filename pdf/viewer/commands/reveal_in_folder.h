// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>

/// Shows the file in the system's file manager, selected where that is possible. Returns at once;
/// nothing is reported when there is no file manager.
void revealInFolder(const QString &filePath);
