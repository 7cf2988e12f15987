// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/checkerboards.h"

#include <QColor>

namespace Checkerboards {

namespace {

constexpr QRgb kWhite = qRgb(255, 255, 255);
constexpr QRgb kBlack = qRgb(0, 0, 0);

QRgb pixelAt(QPoint point)
{
    return (point.x() + point.y()) % 2 == 0 ? kWhite : kBlack;
}

} // namespace

QList<QImage> render(const PdfCancelFlag & /*cancel*/, const QList<PdfSourcePage> & /*pages*/,
                     const QList<QSize> &sizes, QStringList * /*errors*/)
{
    QList<QImage> images;
    for (const QSize &size : sizes) {
        QImage image(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                image.setPixel(x, y, pixelAt({x, y}));
            }
        }
        images.append(image);
    }
    return images;
}

int wrongPixels(const QImage &image, const QRect &area, QPoint origin)
{
    int wrong = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            wrong += image.pixel(x, y) == pixelAt(QPoint(x, y) - origin) ? 0 : 1;
        }
    }
    return wrong;
}

} // namespace Checkerboards
