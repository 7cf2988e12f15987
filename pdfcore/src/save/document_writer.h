// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/base/atomic_file.h"
#include "pdfcore/src/base/engine_error.h"

#include <QList>
#include <QString>
#include <QStringList>

class QPDF;

namespace pdfcore {

class DocumentExtract;

/// What else than its pages goes into the writing of a file.
struct WriteOptions
{
    /// Has all pages that are not blank, in the place of their file.
    const DocumentExtract *extract = nullptr;
    /// The file of the extract where that is protected, for the output to be so too.
    QPDF *protection = nullptr;
    AtomicFile::Flush flush = AtomicFile::Flush::First;
    /// The path of what the caller has to flush, if anything, is added to it.
    QStringList *unflushed = nullptr;
};

/// Writes the pages to a new file at `path`; see PdfEditorBackend::saveDocument().
EngineError writeDocument(const QList<PdfSourcePage> &pages, const QString &path,
                          const WriteOptions &options = {});

} // namespace pdfcore
