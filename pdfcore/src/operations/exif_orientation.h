// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImageIOHandler>

namespace pdfcore {

/// What has to be done to a stored picture to show it, as its EXIF data say (EXIF 2.32, 4.6.4.A,
/// Orientation); nothing where they are damaged or do not say.
///
/// @param exif  The data from their TIFF header on.
QImageIOHandler::Transformations exifOrientation(const QByteArray &exif);

} // namespace pdfcore
