// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <mupdf/pdf.h>

namespace pdfcore {

/// Takes the images that MuPDF cannot load, for which it gives a whole page up, away from what
/// refers to them on the page: in its resources, those of its annotations and all that these use.
/// Only in memory. Says whether there were any; not when the search fails. Does not throw.
bool dropBrokenImages(fz_context *ctx, pdf_document *document, pdf_obj *page);

} // namespace pdfcore
