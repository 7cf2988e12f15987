// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>

#include <mupdf/pdf.h>

namespace pdfcore {

/// What the least and the greatest value of each component of a Lab image mean: L* from 0 to 100,
/// a* and b* from -128 to 127.
using LabRanges = std::array<float, 6>;

/// The ranges of an image (ISO 32000-2, 8.6.5.4 and table 87). Throws MuPDF errors.
LabRanges labRangesOf(fz_context *ctx, pdf_obj *image);

/// Converts `count` packed pixels of 8 bits per component to packed sRGB; false when there is not
/// enough memory. Either may be the other. Does not throw.
bool labToRgb(const LabRanges &ranges, const unsigned char *lab, unsigned char *rgb,
              std::size_t count);

} // namespace pdfcore
