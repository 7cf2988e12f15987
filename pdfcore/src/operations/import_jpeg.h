// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/operations/imported_picture.h"

#include <QFile>

#include <optional>

namespace pdfcore {

/// Reads the header of a JPEG file, from its beginning up to the first scan (ISO/IEC 10918-1, B.2).
///
/// The orientation is left open. None where DCTDecode does not take the file (ISO 32000-2, 7.4.8)
/// though other decoders may; throws PictureFailure where none can start.
std::optional<ImportedPicture> inspectJpeg(QFile &file);

} // namespace pdfcore
