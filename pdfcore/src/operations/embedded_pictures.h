// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/base/engine_error.h"

#include <QString>

namespace pdfcore {

class PictureSet;

/// Makes a picture of each image in a file; see PdfPictureExport::exportImages(). Adds how many
/// were left out to `skipped`.
EngineError makeEmbeddedPictures(const QString &path, PictureSet &pictures,
                                 const PdfCancelFlag &cancel, qsizetype *skipped);

} // namespace pdfcore
