// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <mupdf/fitz.h>

namespace pdfcore {

class ColourTransform;

/// Converts `source`, whose colorants are those of `transform`, to a new RGB pixmap. Throws MuPDF
/// errors.
fz_pixmap *newRgbPixmap(fz_context *ctx, const fz_pixmap *source, const ColourTransform &transform);

} // namespace pdfcore
