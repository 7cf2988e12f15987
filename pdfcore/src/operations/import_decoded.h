// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/operations/imported_picture.h"

#include <QString>

namespace pdfcore {

/// Decodes a picture with Qt to see what it is. Throws PictureFailure.
ImportedPicture inspectDecoded(const QString &path);

/// Compresses its colours, and its opacity. Both decode it again, so that none is kept.
void writeDecodedRows(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel);
void writeDecodedMask(const QString &path, const ByteSink &sink, const PdfCancelFlag &cancel);

} // namespace pdfcore
