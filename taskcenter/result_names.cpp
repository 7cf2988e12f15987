// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/result_names.h"

#include <QDir>
#include <QFileInfo>

namespace {

/// What the count of "base(n)" says; 0 for any other name.
int countIn(const QString &name, const QString &base)
{
    if (!name.startsWith(base + u'(') || !name.endsWith(u')')) {
        return 0;
    }
    const qsizetype first = base.size() + 1;
    bool isNumber = false;
    const int count = QStringView(name).mid(first, name.size() - first - 1).toInt(&isNumber);
    return isNumber ? count : 0;
}

} // namespace

PdfPlacement ResultNames::newFile(const QString &path, const QString &base)
{
    const QFileInfo info(QDir::fromNativeSeparators(path));
    const QString name = info.completeBaseName();
    const int count = countIn(name, base);
    const QString folder = info.absolutePath();
    const QString stem = count > 0 ? base : name;
    const QString suffix = info.suffix().isEmpty() ? QString() : u'.' + info.suffix();
    const QString first = info.fileName().isEmpty() ? QString() : info.absoluteFilePath();
    return PdfPlacement::firstFree([=](int attempt) {
        return attempt == 0 ? first
                            : QDir(folder).filePath(
                                  QStringLiteral("%1(%2)%3")
                                      .arg(stem, QString::number(count + attempt), suffix));
    });
}

PdfPlacement ResultNames::newFileIn(const QString &folder, const QString &base)
{
    if (folder.isEmpty()) {
        return newFile(QString(), base);
    }
    return newFile(QDir(QDir::fromNativeSeparators(folder)).filePath(base + QStringLiteral(".pdf")),
                   base);
}
