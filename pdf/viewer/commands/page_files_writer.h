// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/commands/document_saver.h"
#include "pdf/viewer/side_panel/page_output_plan.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What became of the files of a plan.
struct PageFilesResult
{
    QStringList written;  ///< Paths.
    QStringList failures; ///< The engine's reason for each file that failed, or its path.
};

/// Writes the planned files into `directory`, one after the other on the calling thread; existing
/// ones are replaced. A file that fails does not stop the others.
///
/// @param pages  The document's pages; the plan's rows lead into it.
/// @param write  What writes each file.
[[nodiscard]] PageFilesResult
writePageFiles(const QList<PageOutputFile> &plan, const QList<PdfSourcePage> &pages,
               const QString &directory,
               const PdfSaveFunction &write = &PdfEditorBackend::saveDocument);
