// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/base/file_identity.h"

#include "pdfcore/src/base/platform_file.h"

#include <QFileInfo>

namespace pdfcore {

FileIdentity FileIdentity::of(const QString &path)
{
    const QFileInfo info(path);
    FileIdentity identity;
    identity.path = path;
    if (info.isFile()) {
        identity.size = info.size();
        identity.modified = info.lastModified();
        identity.number = fileNumber(path);
    }
    return identity;
}

QString comparablePath(const QString &path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    QString found = canonical.isEmpty() ? info.absoluteFilePath() : canonical;
#ifdef Q_OS_WIN
    // A canonical path has the letters as they were typed, not as the folder has them.
    return found.toCaseFolded();
#else
    return found;
#endif
}

} // namespace pdfcore
