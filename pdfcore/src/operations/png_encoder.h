// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/operations/picture_encoder.h"

#include <memory>

namespace pdfcore {

/// An encoder for PNG files.
std::unique_ptr<PictureEncoder> newPngEncoder(const PictureForm &form, PictureSink sink);

} // namespace pdfcore
