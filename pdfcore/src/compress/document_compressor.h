// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/compress/image_shrinker.h"

#include <qpdf/QPDF.hh>

namespace pdfcore {

/// Makes what a document consists of as small as it gets by changing streams and images, dropping
/// what no page shows and no reader needs (thumbnails of pages, private data of the programs that
/// made it), and keeping equal objects once. Stops early when it is cancelled. QPDF's exceptions
/// may come out of it.
///
/// @param keepsMetadata  Metadata stay as they are.
void compressDocument(QPDF &document, const ImageAims &aims, bool keepsMetadata,
                      const PdfCancelFlag &cancel);

} // namespace pdfcore
