// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/page_image_loader.h"

#include "pdf/core/pdf_render_manager.h"

PageImageLoader::PageImageLoader(QObject *parent)
    : QObject(parent)
{
    connect(&m_requests, &PageImageRequests::imageArrived, this, &PageImageLoader::acceptImage);
    connect(&m_requests, &PageImageRequests::imageFailed, this, &PageImageLoader::acceptFailure);
    connect(&m_fitter, &PageImageFitter::fitted, this, &PageImageLoader::acceptFitted);
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
    m_shownSizes = demand.shown;
    m_wantedSizes.clear();
    for (const QList<WantedPage> *pages : {&demand.visible, &demand.nearby}) {
        for (const WantedPage &page : *pages) {
            m_wantedSizes.insert(page.record.id, page.size);
            fitImage(page.record.id);
        }
    }
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
    fitImage(id);
    if (!m_kept.contains(id)) {
        emit unkeptImageArrived();
    }
}

/// Has an image brought into its form, unless one of another size is about to take its place.
void PageImageLoader::fitImage(PdfPageId id)
{
    const HeldImage *held = image(id);
    const QSize shown = m_shownSizes.value(id);
    if (held == nullptr || shown.isEmpty() || held->size != m_wantedSizes.value(id) ||
        PageImageFitter::isFitted(held->image, shown) ||
        m_beingFitted.value(id) == held->image.cacheKey()) {
        return;
    }
    m_beingFitted.insert(id, held->image.cacheKey());
    m_fitter.fit(id, held->image, shown);
}

void PageImageLoader::acceptFitted(PdfPageId id, qint64 originalKey, const QImage &image)
{
    if (m_beingFitted.value(id) == originalKey) {
        m_beingFitted.remove(id);
    }
    const auto held = m_images.find(id);
    if (held != m_images.end() && held->image.cacheKey() == originalKey) {
        held->image = image;
        emit imageArrived(id);
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
    m_beingFitted.removeIf([&kept](const auto &entry) { return !kept.contains(entry.key()); });
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
