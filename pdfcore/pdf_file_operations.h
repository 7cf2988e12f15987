// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"

#include <QString>
#include <QStringList>

/// Operations of the PDF engine that make a PDF file of whole PDF files.
///
/// All are static, keep no state that a caller could notice and may be called from any thread, also
/// at the same time. None throws. Each writes to a temporary file in the folder of its result,
/// reads that back, and places it in one step; on failure, and when `cancel` is set before that
/// step, there is no result, whatever was to be replaced is as it was, and no temporary file
/// remains. A source file may be the one that is replaced, and may be open in a viewer.
///
/// Errors of all: FileNotFound, PasswordRequired, InvalidPassword, InvalidDocument, WriteFailed,
/// Cancelled.
class PdfFileOperations final
{
public:
    PdfFileOperations() = delete;

    /// Joins all pages of the source files, in this order. Outlines, links, form fields, labels,
    /// attachments and tags stay; the outline gets an entry for each file, named like the file
    /// without its last suffix and above those of the file. What a document has only one of, such
    /// as a title, comes from the first one. Source files that need a password fail.
    static PdfOperationOutcome join(const QStringList &sources, const PdfPlacement &placement,
                                    const PdfCancelFlag &cancel);

    /// Encrypts a file with AES-256 (ISO 32000-2, 7.6.4, revision 6): `password` opens it, and
    /// whoever has opened it may do anything; the owner password is random. Fails with an empty
    /// password. A source file that needs a password fails, and so does one whose attachments do.
    static PdfOperationOutcome protect(const QString &source, const QString &password,
                                       const PdfPlacement &placement, const PdfCancelFlag &cancel);

    /// Takes the encryption away with the user or the owner password. A source file that is not
    /// encrypted is copied as it is.
    static PdfOperationOutcome unprotect(const QString &source, const QString &password,
                                         const PdfPlacement &placement,
                                         const PdfCancelFlag &cancel);
};
