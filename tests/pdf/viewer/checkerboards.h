// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QStringList>

/// Pages of single pixels of black and white in turn, in which every blur is seen.
namespace Checkerboards {

/// Stands in for the engine. The upper left pixel of each page is white.
[[nodiscard]] QList<QImage> render(const PdfCancelFlag &cancel, const QList<PdfSourcePage> &pages,
                                   const QList<QSize> &sizes, QStringList *errors);

/// The number of pixels in `area` that differ from a checkerboard whose pixel at `origin` is white.
[[nodiscard]] int wrongPixels(const QImage &image, const QRect &area, QPoint origin);

} // namespace Checkerboards
