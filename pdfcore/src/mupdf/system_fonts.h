// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <mupdf/fitz.h>

namespace pdfcore {

/// Lets `ctx` find the fonts that are installed on this computer, for documents that name fonts
/// without embedding them. What is not found is replaced by MuPDF's own fonts.
///
/// The font folders are read once, when the first such font is asked for, from whatever thread that
/// happens on.
void useSystemFonts(fz_context *ctx);

} // namespace pdfcore
