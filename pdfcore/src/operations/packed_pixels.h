// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/operations/picture_encoder.h"

#include <cstddef>
#include <memory>

namespace pdfcore {

/// Pixels as they are decoded, 8 bits per component.
struct RawPixels
{
    int width = 0;
    int height = 0;
    const unsigned char *samples = nullptr; ///< Colorants, multiplied by the opacity, if any.
    std::ptrdiff_t stride = 0;              ///< Bytes of a row.
    int colorants = 0;                      ///< 1, 3, or 0 for a stencil in black.
    bool hasAlpha = false;
    const unsigned char *mask = nullptr; ///< One byte per pixel: how opaque it is; null: all are.
    std::ptrdiff_t maskStride = 0;
};

/// What these pixels become.
///
/// @param onWhite  They are put on white; otherwise the opacity is part of them.
[[nodiscard]] PixelKind kindOf(const RawPixels &raw, bool onWhite);

/// The pixels without gaps, of the kind that kindOf() says. Throws std::bad_alloc.
std::unique_ptr<unsigned char[]> packedPixels(const RawPixels &raw, bool onWhite);

} // namespace pdfcore
