// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/import_layout.h"

#include "pdfcore/paper_size.h"

#include <QPointF>

#include <algorithm>
#include <cmath>

namespace pdfcore {

namespace {

/// Where a point of the stored unit square is in the shown one, both with the y axis upwards.
QPointF turned(QPointF point, QImageIOHandler::Transformations orientation)
{
    if (orientation.testFlag(QImageIOHandler::TransformationMirror)) {
        point.setX(1 - point.x());
    }
    if (orientation.testFlag(QImageIOHandler::TransformationFlip)) {
        point.setY(1 - point.y());
    }
    if (orientation.testFlag(QImageIOHandler::TransformationRotate90)) {
        point = {point.y(), 1 - point.x()};
    }
    return point;
}

} // namespace

QSizeF importPageSize(const PdfPictureImportOptions &options)
{
    const QSizeF size = options.pageSize == PdfPictureImportOptions::PageSize::Letter
                            ? kLetterPageSize
                            : kA4PageSize;
    return options.orientation == PdfPictureImportOptions::Orientation::Landscape
               ? size.transposed()
               : size;
}

QRectF importArea(const PdfPictureImportOptions &options)
{
    const double margin = options.margin;
    if (!std::isfinite(margin) || margin < 0) {
        return {};
    }
    return QRectF(QPointF(0, 0), importPageSize(options))
        .adjusted(margin, margin, -margin, -margin);
}

PictureMatrix importMatrix(QSize pixels, QImageIOHandler::Transformations orientation,
                           const QRectF &area)
{
    QSizeF shown(pixels);
    if (orientation.testFlag(QImageIOHandler::TransformationRotate90)) {
        shown.transpose();
    }
    const double scale = std::min(area.width() / shown.width(), area.height() / shown.height());
    const QSizeF size = shown * scale;
    const QPointF corner = area.center() - QPointF(size.width() / 2, size.height() / 2);
    const auto place = [&](double x, double y) {
        const QPointF point = turned({x, y}, orientation);
        return corner + QPointF(point.x() * size.width(), point.y() * size.height());
    };
    const QPointF origin = place(0, 0);
    const QPointF right = place(1, 0) - origin;
    const QPointF up = place(0, 1) - origin;
    return {right.x(), right.y(), up.x(), up.y(), origin.x(), origin.y()};
}

} // namespace pdfcore
