// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/side_panel/page_output_plan.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

/// What became of the files of a plan.
struct PageFilesResult
{
    QStringList written;  ///< Paths.
    QStringList failures; ///< The engine's reason for each file that failed, or its path.
};

/// Writes several files; has the contract of PdfEditorBackend::saveDocuments().
using PdfSaveAllFunction = std::function<QList<PdfSaveOutcome>(const QList<PdfOutputFile> &files)>;

/// Writes the planned files into `directory` and returns when all are done; existing ones are
/// replaced. A file that fails does not stop the others.
///
/// @param pages  The document's pages; the plan's rows lead into it.
/// @param write  What writes the files: all together, since a long document would be opened and
///               searched for each of them otherwise.
[[nodiscard]] PageFilesResult
writePageFiles(const QList<PageOutputFile> &plan, const QList<PdfSourcePage> &pages,
               const QString &directory,
               const PdfSaveAllFunction &write = &PdfEditorBackend::saveDocuments);
