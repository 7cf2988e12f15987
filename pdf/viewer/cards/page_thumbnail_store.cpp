// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_thumbnail_store.h"

#include <QTransform>

#include <algorithm>
#include <utility>

namespace {

/// After trimming, this share of the budget is free.
constexpr int kFreeShare = 8;
constexpr int kBytesPerPixel = 4;

} // namespace

PageThumbnailStore::PageThumbnailStore(QObject *parent)
    : QObject(parent)
{}

PageThumbnailStore::~PageThumbnailStore() = default;

const QImage *PageThumbnailStore::image(const PdfPageRecord &record) const
{
    const auto held = m_held.constFind(record.id);
    return held != m_held.constEnd() && held->appearance == appearanceOf(record) ? &held->image
                                                                                 : nullptr;
}

bool PageThumbnailStore::isSettled(const WantedPage &page) const
{
    const auto held = m_held.constFind(page.record.id);
    if (held != m_held.constEnd() && held->size == page.size &&
        held->appearance == appearanceOf(page.record)) {
        return true;
    }
    return isInFlight(page) || m_failed.contains(page.record.id);
}

void PageThumbnailStore::setRenderManager(PdfRenderManager *manager)
{
    if (m_renderManager) {
        disconnect(m_renderManager, nullptr, this, nullptr);
    }
    forgetRequests();
    m_renderManager = manager;
    if (!manager) {
        return;
    }
    connect(manager, &PdfRenderManager::pageRendered, this, &PageThumbnailStore::acceptImage);
    connect(manager, &PdfRenderManager::pageRenderFailed, this, &PageThumbnailStore::acceptFailure);
}

void PageThumbnailStore::request(const QList<WantedPage> &pages, quint64 documentRevision,
                                 int priority, int pagesPerCall, Urgency urgency)
{
    if (!m_renderManager) {
        return;
    }
    if (urgency == Urgency::Visible) {
        m_hasWaiting = mustWait(pages);
        if (m_hasWaiting) {
            return;
        }
    }
    QList<WantedPage> missing;
    std::copy_if(pages.cbegin(), pages.cend(), std::back_inserter(missing),
                 [this](const WantedPage &page) { return !isSettled(page); });
    for (qsizetype begin = 0; begin < missing.size(); begin += pagesPerCall) {
        const QList<WantedPage> call = missing.mid(begin, pagesPerCall);
        QList<PdfPageRecord> records;
        QList<QSize> sizes;
        for (const WantedPage &page : call) {
            records.append(page.record);
            sizes.append(page.size);
        }
        const QList<quint64> requestIds = m_renderManager->requestPages(
            records, sizes, PdfRenderPurpose::Thumbnail, documentRevision, priority);
        for (qsizetype i = 0; i < call.size(); ++i) {
            setPending(records.at(i).id,
                       {requestIds.at(i), sizes.at(i), appearanceOf(records.at(i))});
            if (urgency == Urgency::Visible) {
                m_outstanding.insert(requestIds.at(i));
            }
        }
    }
}

void PageThumbnailStore::turn(const PdfPageRecord &record)
{
    HeldImage held = m_held.value(record.id);
    forget(record.id);
    const int degrees = record.rotation - std::exchange(held.appearance.rotation, record.rotation);
    if (held.image.isNull() || held.appearance != appearanceOf(record)) {
        return;
    }
    held.image = held.image.transformed(QTransform().rotate(degrees));
    held.size = QSize();
    hold(record.id, held);
}

void PageThumbnailStore::forget(PdfPageId id)
{
    dropHeld(id);
    dropPending(id);
    m_failed.remove(id);
}

void PageThumbnailStore::reconcile(const std::function<const PdfPageRecord *(PdfPageId)> &recordOf)
{
    const auto isGone = [&recordOf](PdfPageId id, const Appearance &appearance) {
        const PdfPageRecord *record = recordOf(id);
        return !record || appearance != appearanceOf(*record);
    };
    for (const PdfPageId id : m_held.keys()) {
        if (isGone(id, m_held.value(id).appearance)) {
            dropHeld(id);
        }
    }
    for (const PdfPageId id : m_pending.keys()) {
        if (isGone(id, m_pending.value(id).appearance)) {
            dropPending(id);
        }
    }
    m_failed.clear();
    // Whoever replaced the document may have cancelled what was under way.
    m_outstanding.clear();
}

void PageThumbnailStore::trim(const std::function<int(PdfPageId)> &distanceOf)
{
    QList<std::pair<int, PdfPageId>> farthestFirst;
    for (auto held = m_held.cbegin(); held != m_held.cend(); ++held) {
        if (const int distance = distanceOf(held.key()); distance > 0) {
            farthestFirst.append({distance, held.key()});
        }
    }
    std::sort(farthestFirst.begin(), farthestFirst.end(), std::greater<>());
    const qint64 goal = m_budget - m_budget / kFreeShare;
    for (const auto &[distance, id] : farthestFirst) {
        if (m_heldBytes <= goal) {
            break;
        }
        dropHeld(id);
    }
}

void PageThumbnailStore::forgetFailuresExcept(const QSet<PdfPageId> &kept)
{
    m_failed.intersect(kept);
}

void PageThumbnailStore::forgetRequests()
{
    m_pending.clear();
    m_pendingBytes = 0;
    m_failed.clear();
    m_outstanding.clear();
    m_hasWaiting = false;
}

void PageThumbnailStore::clear()
{
    m_held.clear();
    m_heldBytes = 0;
    forgetRequests();
}

PageThumbnailStore::Appearance PageThumbnailStore::appearanceOf(const PdfPageRecord &record)
{
    return {record.sourcePath, record.sourcePageIndex, record.rotation,
            record.origin == PdfPageOrigin::Blank};
}

qint64 PageThumbnailStore::bytesOf(QSize size)
{
    return static_cast<qint64>(size.width()) * size.height() * kBytesPerPixel;
}

bool PageThumbnailStore::isInFlight(const WantedPage &page) const
{
    const auto pending = m_pending.constFind(page.record.id);
    return pending != m_pending.constEnd() && pending->size == page.size &&
           pending->appearance == appearanceOf(page.record);
}

void PageThumbnailStore::acceptImage(PdfPageId id, QSize /*size*/, PdfRenderPurpose purpose,
                                     quint64 requestId, quint64 /*documentRevision*/,
                                     const QImage &image)
{
    if (purpose != PdfRenderPurpose::Thumbnail) {
        return;
    }
    PendingRequest request;
    if (takePending(id, requestId, &request)) {
        hold(id, {image, request.size, request.appearance});
        emit imageArrived(id);
    }
    settle(requestId);
}

void PageThumbnailStore::acceptFailure(PdfPageId id, PdfRenderPurpose purpose, quint64 requestId)
{
    if (purpose != PdfRenderPurpose::Thumbnail) {
        return;
    }
    PendingRequest request;
    if (takePending(id, requestId, &request)) {
        m_failed.insert(id);
        emit imageFailed(id);
    }
    settle(requestId);
}

bool PageThumbnailStore::takePending(PdfPageId id, quint64 requestId, PendingRequest *request)
{
    const auto pending = m_pending.constFind(id);
    if (pending == m_pending.constEnd() || pending->requestId != requestId) {
        return false;
    }
    *request = *pending;
    dropPending(id);
    return true;
}

void PageThumbnailStore::settle(quint64 requestId)
{
    if (m_outstanding.remove(requestId) && m_hasWaiting) {
        emit roomAvailable();
    }
}

void PageThumbnailStore::setPending(PdfPageId id, const PendingRequest &request)
{
    dropPending(id);
    m_pending.insert(id, request);
    m_pendingBytes += bytesOf(request.size);
}

void PageThumbnailStore::dropPending(PdfPageId id)
{
    const auto pending = m_pending.constFind(id);
    if (pending != m_pending.constEnd()) {
        m_pendingBytes -= bytesOf(pending->size);
        m_pending.erase(pending);
    }
}

void PageThumbnailStore::hold(PdfPageId id, const HeldImage &held)
{
    dropHeld(id);
    m_held.insert(id, held);
    m_heldBytes += bytesOf(held.image.size());
}

void PageThumbnailStore::dropHeld(PdfPageId id)
{
    const auto held = m_held.constFind(id);
    if (held != m_held.constEnd()) {
        m_heldBytes -= bytesOf(held->image.size());
        m_held.erase(held);
    }
}

bool PageThumbnailStore::mustWait(const QList<WantedPage> &pages) const
{
    const auto wanted = std::count_if(pages.cbegin(), pages.cend(), [this](const auto &page) {
        const auto pending = m_pending.constFind(page.record.id);
        return pending != m_pending.constEnd() && m_outstanding.contains(pending->requestId);
    });
    return m_outstanding.size() - wanted > kMaximumStaleRequests;
}
