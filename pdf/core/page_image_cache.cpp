// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_image_cache.h"

#include <algorithm>
#include <memory>

PageImageCache::PageImageCache(qsizetype maxCost)
    : m_images(maxCost)
{}

qsizetype PageImageCache::costOf(const QImage &image)
{
    return std::max<qsizetype>(image.sizeInBytes() / 1024, 1);
}

QImage PageImageCache::find(const QString &key)
{
    const std::lock_guard lock(m_mutex);
    const QImage *image = m_images.object(key);
    return image != nullptr ? *image : QImage();
}

void PageImageCache::insert(const QString &key, const QImage &image)
{
    auto copy = std::make_unique<QImage>(image);
    const std::lock_guard lock(m_mutex);
    // QCache makes room before it drops the image it replaces, which would cost others their place.
    m_images.remove(key);
    m_images.insert(key, copy.release(), costOf(image));
}

void PageImageCache::clear()
{
    const std::lock_guard lock(m_mutex);
    m_images.clear();
}
