// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"

#include <QString>

/// How much smaller a file is made.
enum class PdfCompressionLevel {
    Basic,  ///< Best quality at a moderate size.
    Strong, ///< The smallest file.
};

/// Makes PDF files smaller. Static, thread-safe; see PdfFileOperations, also for the errors.
class PdfCompression final
{
public:
    PdfCompression() = delete;

    /// Writes a smaller file that shows the same. Text, fonts, links, forms, outlines and the
    /// layout stay untouched; streams and images change:
    ///
    /// - Colour and grey images that have more than one and a half times the dots to an inch of the
    ///   level, where they stand largest on a page (ISO 32000-2, 8.9.4; in its user units), are
    ///   brought down to these: 200 for Basic, 120 for Strong; half as many again for drawings,
    ///   which have few colours in large areas.
    /// - These and others become JPEG pictures, of a quality of 85 or 65 as libjpeg counts, unless
    ///   they are drawings, or soft masks without loss before. What has a palette gets its colours.
    /// - An image changes only when it gets smaller by a tenth. Its colour space (or that of its
    ///   palette), masks, decode array and intent stay; stencils, images with colour keys or fewer
    ///   than 8 bits, and those in CCITT, JBIG2 or JPEG 2000 stay as they are. Large images within
    ///   the contents of pages (8.9.7) become objects like others.
    /// - All else is compressed anew without loss, equal streams and fonts are kept once, objects
    ///   that nothing leads to, thumbnails of pages and private data of applications are dropped.
    ///   Objects are packed (7.5.7) and so are metadata, but for archives by PDF/A-1 (ISO 19005-1),
    ///   which know neither.
    ///
    /// The result is never larger than the source. When nothing helps, and when it is not certain
    /// what a damaged file shows, it is a copy of the source; so it is for a document that bears a
    /// signature, which any change would break. A protected file that opens without a password
    /// keeps its protection; others fail with PasswordRequired.
    static PdfOperationOutcome compress(const QString &source, PdfCompressionLevel level,
                                        const PdfPlacement &placement, const PdfCancelFlag &cancel);
};
