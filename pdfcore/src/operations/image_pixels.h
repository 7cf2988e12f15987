// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_picture_export.h"
#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/operations/image_search.h"
#include "pdfcore/src/operations/picture_encoder.h"
#include "pdfcore/src/session/document_session.h"

#include <QByteArray>

#include <memory>

namespace pdfcore {

/// An image out of a document: the bytes of a JPEG file, or pixels without gaps between the rows.
struct EmbeddedImage
{
    bool isFile = false;
    PictureForm form; ///< Of pixels.
    std::unique_ptr<unsigned char[]> pixels;
    QByteArray file;
};

/// Gets an image out of a document, for a picture in `format`; see
/// PdfPictureExport::exportImages(). False when it cannot be decoded within the budget of a page.
bool extractImage(DocumentSession &session, const FoundImage &found, PdfPictureFormat format,
                  const PdfCancelFlag &cancel, EmbeddedImage *image);

} // namespace pdfcore
