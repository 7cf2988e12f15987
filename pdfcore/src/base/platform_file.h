// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

class QFileDevice;

namespace pdfcore {

/// Makes sure that what was written to `file` has reached the disk. False when it did not.
bool syncToDisk(QFileDevice &file);

/// Makes sure that a rename in the folder at `path` has reached the disk, where that is possible.
void syncFolder(const QString &path);

/// Makes sure that new files and their names have reached the disk: all at once where the system
/// can do that, which takes a fraction of the time. Returns those that may not have.
[[nodiscard]] QStringList syncFiles(const QStringList &paths);

/// The spelling of an absolute path by which Windows takes it at any length and as it stands; a
/// path on a network share has one of its own. Computed alike on every system.
[[nodiscard]] QString extendedWindowsPath(const QString &path);

/// Gives the file at `path` a second name. False where that cannot be.
bool linkFile(const QString &path, const QString &name);

/// What tells the file at `path` from another one that took its name; 0 where that is not known.
[[nodiscard]] quint64 fileNumber(const QString &path);

/// Moves `from` over `to`, which may exist, in one step within one folder.
///
/// On failure both files are as they were and the reason is in `reason`.
bool replaceFile(const QString &from, const QString &to, QString *reason);

/// Moves `from` to `to` in one step within one folder, unless there is something, which stays;
/// then `isTaken` is set.
///
/// On failure `from` is as it was and the reason is in `reason`. Where neither a move that replaces
/// nothing nor second names are to be had, as on some network shares, an empty file holds the place
/// for a moment.
bool placeFile(const QString &from, const QString &to, bool *isTaken, QString *reason);

} // namespace pdfcore
