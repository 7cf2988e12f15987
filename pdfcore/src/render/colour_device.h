// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <cstddef>

#include <mupdf/fitz.h>

namespace pdfcore {

class ColourSpaces;
class MupdfContext;

/// Pixels around a part of a page within which things are painted too: the bounds that a font
/// claims for its letters may be too small.
inline constexpr float kPartReach = 64;

/// Makes a device that hands every call on to `target` after turning CMYK and ICC-based colours,
/// images, shadings and groups into RGB. `area` is what the target covers, in device pixels.
///
/// A page that goes through such devices once for each part of it gets `keptBytes`, the memory that
/// may be taken to decode its images as a whole and keep them for the next part; 0 otherwise.
///
/// It also looks at the clock of `context` and sets `cookie->abort` when the time is up. `spaces`,
/// `context` and `cookie` must outlive the device; `target` is kept. Throws MuPDF errors. Close
/// and drop it like any device; closing closes the target too.
fz_device *newColourDevice(fz_context *ctx, fz_device *target, fz_irect area,
                           const ColourSpaces &spaces, std::size_t keptBytes, MupdfContext &context,
                           fz_cookie &cookie);

/// Hands the images that a device of newColourDevice() keeps to `device`, a new one for the next
/// pass of the same page. Does not throw.
void takeImages(fz_device *device, fz_device *from);

} // namespace pdfcore
