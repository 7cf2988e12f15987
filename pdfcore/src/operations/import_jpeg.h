// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/operations/imported_picture.h"

#include <QFile>

namespace pdfcore {

/// Reads the header of a JPEG file, from its beginning up to the first scan (ISO/IEC 10918-1, B.2).
/// Throws PictureFailure where no decoder can start, or DCTDecode does not take the file (ISO
/// 32000-2, 7.4.8), which it does if its samples have 8 bits and its codes are those of Huffman.
ImportedPicture inspectJpeg(QFile &file);

} // namespace pdfcore
