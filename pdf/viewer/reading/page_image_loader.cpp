// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/page_image_loader.h"

#include <algorithm>

PageImageLoader::PageImageLoader(QObject *parent)
    : QObject(parent)
{}

PageImageLoader::~PageImageLoader() = default;

const PageImageLoader::HeldImage *PageImageLoader::image(PdfPageId id) const
{
    const auto held = m_images.constFind(id);
    return held == m_images.constEnd() ? nullptr : &held.value();
}

void PageImageLoader::setRenderManager(PdfRenderManager *manager)
{
    if (m_renderManager) {
        disconnect(m_renderManager, nullptr, this, nullptr);
    }
    forgetRequests();
    m_renderManager = manager;
    if (!manager) {
        return;
    }
    connect(manager, &PdfRenderManager::pageRendered, this, &PageImageLoader::acceptImage);
    connect(manager, &PdfRenderManager::pageRenderFailed, this, &PageImageLoader::acceptFailure);
}

void PageImageLoader::request(const Demand &demand)
{
    dropImagesExcept(demand.kept);
    m_held = false;
    if (!m_renderManager) {
        return;
    }
    const auto stale =
        m_outstanding.size() - countInFlight(demand.visible) - countInFlight(demand.nearby);
    requestMissing(demand.visible, demand.documentRevision, stale <= kMaximumStaleRequests);
    requestMissing(demand.nearby, demand.documentRevision, stale <= 0);
}

void PageImageLoader::forget(PdfPageId id)
{
    m_images.remove(id);
    m_pending.remove(id);
}

void PageImageLoader::clear()
{
    m_images.clear();
    forgetRequests();
}

void PageImageLoader::forgetRequests()
{
    m_pending.clear();
    m_failed.clear();
    m_outstanding.clear();
    m_held = false;
}

void PageImageLoader::forgetFailures()
{
    m_failed.clear();
}

void PageImageLoader::acceptImage(PdfPageId id, QSize size, PdfRenderPurpose purpose,
                                  quint64 requestId, quint64 /*documentRevision*/,
                                  const QImage &image)
{
    if (purpose != PdfRenderPurpose::PageView) {
        return;
    }
    const auto pending = m_pending.constFind(id);
    if (pending != m_pending.constEnd() && pending->requestId == requestId &&
        pending->size == size) {
        m_pending.erase(pending);
        m_images.insert(id, {image, size});
        emit imageArrived(id);
        if (!m_kept.contains(id)) {
            emit unkeptImageArrived();
        }
    }
    settle(requestId);
}

void PageImageLoader::acceptFailure(PdfPageId id, PdfRenderPurpose purpose, quint64 requestId)
{
    if (purpose != PdfRenderPurpose::PageView) {
        return;
    }
    const auto pending = m_pending.constFind(id);
    if (pending != m_pending.constEnd() && pending->requestId == requestId) {
        m_pending.erase(pending);
        m_failed.insert(id);
    }
    settle(requestId);
}

void PageImageLoader::dropImagesExcept(const QSet<PdfPageId> &kept)
{
    m_kept = kept;
    m_images.removeIf([&kept](const auto &entry) { return !kept.contains(entry.key()); });
}

void PageImageLoader::settle(quint64 requestId)
{
    if (m_outstanding.remove(requestId) && m_held) {
        emit roomAvailable();
    }
}

bool PageImageLoader::isHeld(const WantedPage &page) const
{
    const HeldImage *held = image(page.record.id);
    return held && held->size == page.size;
}

bool PageImageLoader::isInFlight(const WantedPage &page) const
{
    const auto pending = m_pending.constFind(page.record.id);
    return pending != m_pending.constEnd() && pending->size == page.size;
}

int PageImageLoader::countInFlight(const QList<WantedPage> &pages) const
{
    return static_cast<int>(std::count_if(
        pages.cbegin(), pages.cend(), [this](const WantedPage &page) { return isInFlight(page); }));
}

void PageImageLoader::requestMissing(const QList<WantedPage> &pages, quint64 documentRevision,
                                     bool hasRoom)
{
    for (const WantedPage &page : pages) {
        if (isHeld(page)) {
            // A result for another size, asked for in between, must not replace this image.
            m_pending.remove(page.record.id);
            continue;
        }
        if (isInFlight(page) || m_failed.contains(page.record.id)) {
            continue;
        }
        if (!hasRoom) {
            m_held = true;
            return;
        }
        const quint64 requestId =
            m_renderManager->requestPage(page.record, page.size, PdfRenderPurpose::PageView,
                                         documentRevision, PdfRenderManager::kPageViewPriority);
        if (requestId != 0) {
            m_pending.insert(page.record.id, {page.size, requestId});
            m_outstanding.insert(requestId);
        }
    }
}
