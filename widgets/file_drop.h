// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QStringList>

class QDropEvent;
class QMimeData;

/// Accepts a drop as a copy, whatever keys are held, and ignores one that cannot be copied; true if
/// it was accepted. Whoever is told that files were moved may delete its own.
bool acceptAsCopy(QDropEvent &event);

/// The paths of all URLs in the data, in order; that of a URL which is no file is empty.
[[nodiscard]] QStringList filePaths(const QMimeData &data);
