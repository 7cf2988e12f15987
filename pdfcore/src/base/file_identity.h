// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QDateTime>
#include <QString>
#include <QtGlobal>

namespace pdfcore {

/// What tells one revision of a file from another: where it is, how large, and when it was written.
struct FileIdentity
{
    QString path;
    qint64 size = -1;
    QDateTime modified;
    quint64 number = 0; ///< Changes when another file takes the name; 0 where that is not known.

    /// Reads the identity of the file at `path` now; `size` is -1 when there is no such file.
    static FileIdentity of(const QString &path);

    [[nodiscard]] bool exists() const { return size >= 0; }
    /// Whether the file has not been written between the two; the path does not count.
    [[nodiscard]] bool isSameRevision(const FileIdentity &other) const
    {
        return size == other.size && modified == other.modified && number == other.number;
    }
};

/// The path by which the engine keeps a file apart from others, however it was spelled.
QString comparablePath(const QString &path);

} // namespace pdfcore
