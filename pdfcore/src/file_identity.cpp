#include "pdfcore/src/file_identity.h"

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
    }
    return identity;
}

QString comparablePath(const QString &path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

} // namespace pdfcore
