// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QCache>
#include <QImage>
#include <QString>

#include <mutex>

/// Finished page images, bounded by the memory of their pixels; the least recently used go first.
///
/// All operations may be called from any thread.
class PageImageCache final
{
public:
    /// Bound of the total cost: 256 MiB of pixels.
    static constexpr qsizetype kMaxCost = 262144;

    explicit PageImageCache(qsizetype maxCost = kMaxCost);

    /// What an image counts for: its size in KiB, rounded down, and at least 1.
    [[nodiscard]] static qsizetype costOf(const QImage &image);

    /// The image under `key`, which becomes the most recently used; null if there is none.
    [[nodiscard]] QImage find(const QString &key);
    /// Keeps `image` under `key` in place of the one there; an image beyond the bound is not kept.
    void insert(const QString &key, const QImage &image);
    void clear();

private:
    std::mutex m_mutex;
    QCache<QString, QImage> m_images;
};
