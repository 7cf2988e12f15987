// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_picture_import.h"

#include "pdfcore/src/base/atomic_file.h"
#include "pdfcore/src/operations/import_document.h"
#include "pdfcore/src/operations/import_layout.h"
#include "pdfcore/src/operations/operation_outcome.h"
#include "pdfcore/src/qpdf/qpdf_io.h"
#include "pdfcore/src/save/result_file.h"

#include <qpdf/QPDFWriter.hh>

#include <exception>

using pdfcore::AtomicFile;
using pdfcore::EngineError;
using pdfcore::ImportDocument;
using pdfcore::outcomeOf;

namespace {

/// Bytes of pictures up to which the identifier of the file is made of its content.
constexpr qint64 kMaxIdentifiedBytes = qint64{64} << 20;

PdfOperationOutcome writeFailed(const QString &reason)
{
    return {PdfOperationError::WriteFailed, reason, {}, {}};
}

PdfOperationOutcome write(ImportDocument &document, AtomicFile &file, const PdfCancelFlag &cancel)
{
    pdfcore::QDeviceOutput output(file.device(), &cancel.value());
    try {
        QPDFWriter writer(document.finish());
        writer.setObjectStreamMode(qpdf_o_generate);
        // Equal pictures make equal files, unless finding out what the identifier of the file is
        // takes longer than all else.
        writer.setDeterministicID(document.sourceBytes() <= kMaxIdentifiedBytes);
        // Profiles of version 4 and components of 16 bits.
        writer.setMinimumPDFVersion("1.7");
        pdfcore::writeQpdf(writer, output);
    } catch (const std::exception &exception) {
        if (document.failure().isError()) {
            return document.failure();
        }
        return outcomeOf({PdfBackendError::WriteFailed, QString::fromUtf8(exception.what())},
                         cancel);
    }
    if (document.failure().isError()) {
        return document.failure();
    }
    QString reason;
    return file.finishWriting(&reason) ? PdfOperationOutcome() : writeFailed(reason);
}

PdfOperationOutcome importPictures(const QStringList &pictures,
                                   const PdfPictureImportOptions &options,
                                   const PdfPlacement &placement, const PdfCancelFlag &cancel)
{
    if (pictures.isEmpty()) {
        return writeFailed(QStringLiteral("There are no pictures."));
    }
    if (pdfcore::importArea(options).isEmpty()) {
        return writeFailed(QStringLiteral("The margins leave nothing of the pages."));
    }
    if (placement.path().isEmpty()) {
        return writeFailed(QStringLiteral("There is no file name."));
    }
    ImportDocument document(options, cancel);
    for (const QString &picture : pictures) {
        PdfOperationOutcome outcome = document.addPage(picture);
        if (outcome.isError()) {
            return outcome;
        }
    }
    AtomicFile file = pdfcore::fileFor(placement);
    QString reason;
    if (!file.open(&reason)) {
        return writeFailed(reason);
    }
    if (PdfOperationOutcome outcome = write(document, file, cancel); outcome.isError()) {
        return outcome;
    }
    if (PdfOperationOutcome outcome = document.checkUnchanged(); outcome.isError()) {
        return outcome;
    }
    EngineError error = pdfcore::checkResult(file.temporaryPath(), {}, document.pageCount());
    if (!error.isError() && cancel.isSet()) {
        error = pdfcore::cancelledError(PdfBackendError::WriteFailed);
    }
    if (!error.isError()) {
        error = pdfcore::placeResult(file, placement);
    }
    PdfOperationOutcome outcome = outcomeOf(error, cancel);
    outcome.result = outcome.isError() ? QString() : file.target();
    return outcome;
}

} // namespace

PdfOperationOutcome PdfPictureImport::toDocument(const QStringList &pictures,
                                                 const PdfPictureImportOptions &options,
                                                 const PdfPlacement &placement,
                                                 const PdfCancelFlag &cancel)
{
    return pdfcore::guarded([&] { return importPictures(pictures, options, placement, cancel); });
}
