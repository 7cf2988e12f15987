// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/common/output_names.h"

#include <QDir>

namespace {

/// The first of "base", then `pattern` with the base and 1, 2, 3, that does not exist in the
/// folder.
QString freeName(const QDir &folder, const QString &base, const QString &suffix,
                 const QString &pattern)
{
    QString name = base + suffix;
    for (int count = 1; folder.exists(name); ++count) {
        name = pattern.arg(base, QString::number(count));
    }
    return name;
}

} // namespace

QString OutputNames::pdfFile(const QString &folder, const QString &base)
{
    const QString name =
        freeName(QDir(folder), base, QStringLiteral(".pdf"), QStringLiteral("%1(%2).pdf"));
    return QDir::toNativeSeparators(folder + QDir::separator() + name);
}

QString OutputNames::createFolder(const QString &folder, const QString &base)
{
    const QDir parent(folder);
    const QString name = freeName(parent, base, QString(), QStringLiteral("%1 (%2)"));
    QString path = parent.filePath(name);
    QDir().mkpath(path);
    return path;
}
