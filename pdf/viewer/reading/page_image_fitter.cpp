// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/page_image_fitter.h"

#include <utility>

namespace {

constexpr QImage::Format kScreenFormat = QImage::Format_RGB32;

QSize fittedSize(QSize image, QSize shown)
{
    const auto area = [](QSize size) { return qint64{size.width()} * size.height(); };
    return !shown.isEmpty() && area(shown) <= area(image) ? shown : image;
}

} // namespace

PageImageFitter::PageImageFitter(QObject *parent)
    : QObject(parent)
{
    m_pool.setMaxThreadCount(1);
}

PageImageFitter::~PageImageFitter()
{
    m_pool.clear();
    m_pool.waitForDone();
}

QImage PageImageFitter::fittedTo(const QImage &image, QSize shown)
{
    const QSize size = fittedSize(image.size(), shown);
    // Converted first, which is what the scaling does best.
    const QImage converted = image.convertToFormat(kScreenFormat);
    return converted.size() == size
               ? converted
               : converted.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                     .convertToFormat(kScreenFormat);
}

bool PageImageFitter::isFitted(const QImage &image, QSize shown)
{
    return image.format() == kScreenFormat && image.size() == fittedSize(image.size(), shown);
}

void PageImageFitter::fit(PdfPageId id, const QImage &image, QSize shown)
{
    m_pool.start([this, id, image, shown] {
        QImage result = fittedTo(image, shown);
        if (result.isNull()) {
            // For want of memory; the image itself can be painted as well.
            return;
        }
        QMetaObject::invokeMethod(
            this,
            [this, id, key = image.cacheKey(), result = std::move(result)] {
                emit fitted(id, key, result);
            },
            Qt::QueuedConnection);
    });
}
