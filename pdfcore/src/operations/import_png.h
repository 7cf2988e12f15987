// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/operations/imported_picture.h"

#include <QString>

namespace pdfcore {

/// Reads what a document has to say about the picture in a PNG file, and whether all of its image
/// data is there. A picture with alpha is decoded to see whether it needs that. Throws
/// PictureFailure.
ImportedPicture inspectPng(const QString &path, const PdfCancelFlag &cancel);

/// Hands the image data to `sink` as it is in the file. For a picture that is not interlaced and
/// has no alpha channel.
void writePngData(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel);

/// Compresses the picture without its alpha.
void writePngRows(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel);

/// Compresses its alpha, or what tRNS makes of its colours.
void writePngMask(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel);

} // namespace pdfcore
