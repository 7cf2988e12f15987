// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_compression.h"

#include "pdfcore/src/compress/document_compressor.h"
#include "pdfcore/src/compress/signatures.h"
#include "pdfcore/src/compress/tight_file.h"
#include "pdfcore/src/operations/file_copy.h"
#include "pdfcore/src/operations/operation_outcome.h"
#include "pdfcore/src/operations/source_pages.h"
#include "pdfcore/src/save/document_writer.h"
#include "pdfcore/src/save/output_sources.h"

#include <QFileInfo>
#include <QList>

#include <utility>

using pdfcore::EngineError;
using pdfcore::ImageAims;
using pdfcore::outcomeOf;
using pdfcore::WriteOptions;

namespace {

ImageAims aimsOf(PdfCompressionLevel level)
{
    if (level == PdfCompressionLevel::Strong) {
        return {120, 65, true, 27};
    }
    return {200, 85, false, 32};
}

/// Whether the file bears a signature; so does, for all that is known, one that cannot be read.
bool isSignedFile(const PdfSourcePage &page, EngineError *error)
{
    pdfcore::OutputSources sources;
    pdfcore::SourceDocument *document = sources.get(page, error);
    return document == nullptr || pdfcore::isSigned(document->document());
}

} // namespace

PdfOperationOutcome PdfCompression::compress(const QString &source, PdfCompressionLevel level,
                                             const PdfPlacement &placement,
                                             const PdfCancelFlag &cancel)
{
    return pdfcore::guarded([&]() -> PdfOperationOutcome {
        QList<PdfSourcePage> pages;
        EngineError error = pdfcore::addPages(source, {}, &pages);
        if (!error.isError() && cancel.isSet()) {
            error = pdfcore::cancelledError(PdfBackendError::WriteFailed);
        }
        if (error.isError()) {
            return outcomeOf(error, cancel, source);
        }
        if (pages.isEmpty() || isSignedFile(pages.constFirst(), &error)) {
            const bool isLocked = error.code == PdfBackendError::PasswordRequired ||
                                  error.code == PdfBackendError::FileNotFound;
            return isLocked ? outcomeOf(error, cancel, source)
                            : pdfcore::copyFile(source, placement, cancel);
        }
        QString placed;
        bool isUseless = false;
        WriteOptions options;
        options.isUseless = &isUseless;
        options.replaced = pdfcore::replacedRevision(pages, placement);
        options.cancel = cancel;
        options.placed = &placed;
        options.sizeLimit = QFileInfo(source).size();
        options.edit = [&](QPDF &document, bool keepsMetadata) {
            pdfcore::compressDocument(document, aimsOf(level), keepsMetadata, cancel);
        };
        options.packsManyPages = true;
        options.rewrite = [&cancel](const QString &written, Pipeline &to) {
            pdfcore::writeTightly(written, to, cancel);
        };
        error = pdfcore::writeDocument(pages, placement, options);
        // A document that cannot be made smaller stays as it is. A full disk is told, and a file
        // that another operation has changed meanwhile.
        const bool isUnwritable = (error.code == PdfBackendError::WriteFailed && !isUseless) ||
                                  error.code == PdfBackendError::FileNotFound;
        if (error.isError() && !isUnwritable && !cancel.isSet()) {
            return pdfcore::copyFile(source, placement, cancel);
        }
        PdfOperationOutcome outcome = outcomeOf(error, cancel, source);
        outcome.result = placed;
        return outcome;
    });
}
