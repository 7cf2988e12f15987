// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/operations/picture_encoder.h"

#include <QSizeF>
#include <QString>

namespace pdfcore {

class PictureSet;

/// The picture of a page of `pageSize` points; see PdfPictureExport::exportPages().
PictureForm pagePictureForm(QSizeF pageSize, int dpi);

/// Makes a picture of each page of a file; see PdfPictureExport::exportPages().
EngineError makePagePictures(const QString &path, int dpi, PictureSet &pictures,
                             const PdfCancelFlag &cancel);

} // namespace pdfcore
