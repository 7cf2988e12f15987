// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/page_files_writer.h"

#include <QDir>

PageFilesResult writePageFiles(const QList<PageOutputFile> &plan, const QList<PdfSourcePage> &pages,
                               const QString &directory, const PdfSaveAllFunction &write)
{
    QList<PdfOutputFile> files;
    files.reserve(plan.size());
    for (const PageOutputFile &planned : plan) {
        PdfOutputFile file{{}, QDir(directory).filePath(planned.fileName)};
        file.pages.reserve(planned.rows.size());
        for (const int row : planned.rows) {
            file.pages.append(pages.at(row));
        }
        files.append(file);
    }
    const QList<PdfSaveOutcome> outcomes = write(files);
    PageFilesResult result;
    for (qsizetype i = 0; i < files.size(); ++i) {
        const PdfSaveOutcome &outcome = outcomes.at(i);
        if (outcome.error == PdfBackendError::None) {
            result.written.append(files.at(i).path);
        } else {
            result.failures.append(outcome.message.isEmpty() ? files.at(i).path : outcome.message);
        }
    }
    return result;
}
