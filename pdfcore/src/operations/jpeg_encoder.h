// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/operations/picture_encoder.h"

#include <QByteArray>
#include <QSize>

#include <memory>
#include <optional>

namespace pdfcore {

/// An encoder for JPEG files of quality 90; of a picture without opacity whose sides have at most
/// PdfPictureExport::kMostPixelsOfSide pixels.
std::unique_ptr<PictureEncoder> newJpegEncoder(const PictureForm &form, PictureSink sink);

/// What a JPEG file says at its beginning.
struct JpegHeader
{
    QSize size;
    int components = 0;
};

/// The header of a JPEG file with 8 bits per component; nothing when it is none.
std::optional<JpegHeader> readJpegHeader(const QByteArray &file);

} // namespace pdfcore
