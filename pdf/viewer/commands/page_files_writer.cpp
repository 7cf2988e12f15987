// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/page_files_writer.h"

#include <QDir>

PageFilesResult writePageFiles(const QList<PageOutputFile> &plan, const QList<PdfSourcePage> &pages,
                               const QString &directory, const PdfSaveFunction &write)
{
    PageFilesResult result;
    for (const PageOutputFile &file : plan) {
        QList<PdfSourcePage> part;
        part.reserve(file.rows.size());
        for (const int row : file.rows) {
            part.append(pages.at(row));
        }
        const QString path = QDir(directory).filePath(file.fileName);
        QString message;
        if (write(part, path, nullptr, &message)) {
            result.written.append(path);
        } else {
            result.failures.append(message.isEmpty() ? path : message);
        }
    }
    return result;
}
