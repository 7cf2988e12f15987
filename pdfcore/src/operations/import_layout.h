// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_picture_import.h"

#include <QImageIOHandler>
#include <QRectF>
#include <QSize>
#include <QSizeF>

#include <array>

namespace pdfcore {

/// The six numbers of a transformation matrix (ISO 32000-2, 8.3.3).
using PictureMatrix = std::array<double, 6>;

/// The size of the pages in points.
QSizeF importPageSize(const PdfPictureImportOptions &options);

/// What the margins leave of a page, in points from its lower left corner; empty if they leave
/// nothing.
QRectF importArea(const PdfPictureImportOptions &options);

/// Puts the unit square, which a picture fills (ISO 32000-2, 8.9.5.1), into the middle of `area`,
/// as large as possible.
///
/// @param pixels       Width and height of the picture as it is stored.
/// @param orientation  What has to be done to the stored picture to show it.
PictureMatrix importMatrix(QSize pixels, QImageIOHandler::Transformations orientation,
                           const QRectF &area);

} // namespace pdfcore
