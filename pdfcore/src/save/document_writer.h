// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"
#include "pdfcore/src/base/atomic_file.h"
#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/save/output_document.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

class Pipeline;
class QPDF;

namespace pdfcore {

class DocumentExtract;

/// What a new file is protected by.
enum class NewProtection {
    OfMainDocument, ///< See OutputDocument::protection().
    None,
    Password, ///< A new one.
};

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
    NewProtection newProtection = NewProtection::OfMainDocument;
    QString newPassword; ///< Opens the file; for NewProtection::Password.
    /// Entries of the outline that are put above those of the documents, by their pages.
    std::vector<Heading> headings;
    /// Ends the writing with an error when it is set before the file has its place.
    PdfCancelFlag cancel;
    /// Becomes the path of the file, if not null.
    QString *placed = nullptr;
    /// Changes the output before it is written, if set. It is told whether metadata have to stay as
    /// they are: where they may be left readable beside what is encrypted, and in archives that
    /// have them without filters (ISO 19005-1, 6.7.2). QPDF's exceptions may come out of it.
    std::function<void(QPDF &output, bool keepsMetadata)> edit;
    /// Writes what stands in a temporary file once more, in its own way, if set; for files with
    /// object streams that are not encrypted. What it throws ends the writing.
    std::function<void(const QString &written, Pipeline &to)> rewrite;
    /// Whether documents of many pages are packed like others.
    bool packsManyPages = false;
    /// What the file may replace only, if set. A document that is open may replace what others have
    /// saved since; an operation on a file must not undo another one.
    PdfFileRevisionPtr replaced;
    /// A file of as many bytes, or more, does not come into being; 0: any may.
    qint64 sizeLimit = 0;
    /// Becomes true, if not null, when a file was written that is of no use: it has that size, or
    /// it cannot be read back.
    bool *isUseless = nullptr;
};

/// Writes the pages to a new file; see PdfEditorBackend::saveDocument().
EngineError writeDocument(const QList<PdfSourcePage> &pages, const PdfPlacement &placement,
                          const WriteOptions &options = {});

} // namespace pdfcore
