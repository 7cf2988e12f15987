// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/page_image_loader.h"

#include "pdf/core/pdf_render_manager.h"

PageImageLoader::PageImageLoader(QObject *parent)
    : QObject(parent)
{
    connect(&m_requests, &PageImageRequests::imageArrived, this, &PageImageLoader::acceptImage);
    connect(&m_requests, &PageImageRequests::imageFailed, this, &PageImageLoader::acceptFailure);
    connect(&m_requests, &PageImageRequests::roomAvailable, this, &PageImageLoader::roomAvailable);
}

PageImageLoader::~PageImageLoader() = default;

const PageImageLoader::HeldImage *PageImageLoader::image(PdfPageId id) const
{
    const auto held = m_images.constFind(id);
    return held == m_images.constEnd() ? nullptr : &held.value();
}

void PageImageLoader::setRenderManager(PdfRenderManager *manager)
{
    m_requests.setRenderManager(manager);
}

void PageImageLoader::request(const Demand &demand)
{
    dropImagesExcept(demand.kept);
    m_requests.setWaiting(false);
    if (m_requests.renderManager() == nullptr) {
        return;
    }
    const int stale =
        m_requests.staleCount(demand.visible + demand.nearby, PageImageRequests::Serving::ThisSize);
    requestMissing(demand.visible, demand.documentRevision, stale <= kMaximumStaleRequests);
    requestMissing(demand.nearby, demand.documentRevision, stale <= 0);
}

void PageImageLoader::forget(PdfPageId id)
{
    m_images.remove(id);
    m_failed.remove(id);
    m_requests.withdraw(id);
}

void PageImageLoader::clear()
{
    m_images.clear();
    m_failed.clear();
    forgetRequests();
}

void PageImageLoader::forgetRequests()
{
    m_requests.forgetAll();
}

void PageImageLoader::forgetFailures()
{
    m_requests.forgetFailures();
}

void PageImageLoader::acceptImage(PdfPageId id, const QImage &image, QSize size)
{
    m_images.insert(id, {image, size});
    m_failed.remove(id);
    emit imageArrived(id);
    if (!m_kept.contains(id)) {
        emit unkeptImageArrived();
    }
}

void PageImageLoader::acceptFailure(PdfPageId id)
{
    m_failed.insert(id);
    emit imageFailed(id);
}

void PageImageLoader::dropImagesExcept(const QSet<PdfPageId> &kept)
{
    m_kept = kept;
    m_images.removeIf([&kept](const auto &entry) { return !kept.contains(entry.key()); });
    m_failed.intersect(kept);
}

bool PageImageLoader::isHeld(const WantedPage &page) const
{
    const HeldImage *held = image(page.record.id);
    return held != nullptr && held->size == page.size;
}

void PageImageLoader::requestMissing(const QList<WantedPage> &pages, quint64 documentRevision,
                                     bool hasRoom)
{
    for (const WantedPage &page : pages) {
        if (isHeld(page)) {
            // A result for another size, asked for in between, must not replace this image.
            m_requests.withdraw(page.record.id);
            continue;
        }
        if (m_requests.isSettled(page)) {
            continue;
        }
        if (!hasRoom) {
            m_requests.setWaiting(true);
            return;
        }
        m_requests.request({page}, documentRevision, PdfRenderManager::kPageViewPriority, 1,
                           PageImageRequests::Counting::Outstanding);
    }
}
