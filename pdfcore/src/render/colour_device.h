// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <mupdf/fitz.h>

namespace pdfcore {

class ColourSpaces;
class MupdfContext;
class PageImages;

/// Pixels around a part of a page within which things are painted too: the bounds that a font
/// claims for its letters may be too small.
inline constexpr float kPartReach = 64;

/// Makes a device that hands every call on to `target` after turning CMYK, ICC-based and L*a*b*
/// colours, images, shadings and groups into RGB, also those within letters that a font draws in
/// colours of its own. `area` is what the target covers, in device pixels.
///
/// It also looks at the clock of `context` and sets `cookie->abort` when the time is up. `spaces`,
/// `images`, `context` and `cookie` must outlive the device; `target` is kept. Throws MuPDF errors.
/// Close and drop it like any device; closing closes the target too.
fz_device *newColourDevice(fz_context *ctx, fz_device *target, fz_irect area,
                           const ColourSpaces &spaces, PageImages &images, MupdfContext &context,
                           fz_cookie &cookie);

} // namespace pdfcore
