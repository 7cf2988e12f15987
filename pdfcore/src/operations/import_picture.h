// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/operations/imported_picture.h"

#include <QString>

namespace pdfcore {

/// Reads what a document has to say about the picture in a file. Throws PictureFailure.
ImportedPicture inspectPicture(const QString &path, const PdfCancelFlag &cancel);

/// Hands the samples of a picture that inspectPicture() has described to `sink`, in the form that
/// `coding` says. Throws PictureFailure, and whatever `sink` throws.
void writePictureSamples(const QString &path, PictureCoding coding, const ByteSink &sink,
                         const PdfCancelFlag &cancel);

/// Hands the opacity of such a picture to `sink`, compressed like rows.
void writePictureMask(const QString &path, PictureCoding coding, const ByteSink &sink,
                      const PdfCancelFlag &cancel);

} // namespace pdfcore
