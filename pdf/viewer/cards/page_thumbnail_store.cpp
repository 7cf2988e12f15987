// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_thumbnail_store.h"

#include <QTransform>

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

/// After trimming, this share of the budget is free.
constexpr int kFreeShare = 8;

} // namespace

PageThumbnailStore::PageThumbnailStore(QObject *parent)
    : QObject(parent)
{
    connect(&m_requests, &PageImageRequests::imageArrived, this, &PageThumbnailStore::acceptImage);
    connect(&m_requests, &PageImageRequests::imageFailed, this, &PageThumbnailStore::imageFailed);
    connect(&m_requests, &PageImageRequests::roomAvailable, this,
            &PageThumbnailStore::roomAvailable);
}

PageThumbnailStore::~PageThumbnailStore() = default;

const QImage *PageThumbnailStore::image(const PdfPageRecord &record) const
{
    const auto held = m_held.constFind(record.id);
    return held != m_held.constEnd() && held->appearance == record.appearance() ? &held->image
                                                                                : nullptr;
}

bool PageThumbnailStore::isSettled(const WantedPage &page) const
{
    return isHeld(page) || m_requests.isSettled(page);
}

void PageThumbnailStore::setRenderManager(PdfRenderManager *manager)
{
    m_requests.setRenderManager(manager);
}

void PageThumbnailStore::request(const QList<WantedPage> &pages, quint64 documentRevision,
                                 int priority, int pagesPerCall, Urgency urgency)
{
    if (m_requests.renderManager() == nullptr) {
        return;
    }
    const bool urgent = urgency == Urgency::Visible;
    if (urgent) {
        const bool mustWait = m_requests.staleCount(pages, PageImageRequests::Serving::AnySize) >
                              kMaximumStaleRequests;
        m_requests.setWaiting(mustWait);
        if (mustWait) {
            return;
        }
    }
    QList<WantedPage> missing;
    std::copy_if(pages.cbegin(), pages.cend(), std::back_inserter(missing),
                 [this](const WantedPage &page) { return !isHeld(page); });
    m_requests.request(missing, documentRevision, priority, pagesPerCall,
                       urgent ? PageImageRequests::Counting::Outstanding
                              : PageImageRequests::Counting::Uncounted);
}

void PageThumbnailStore::turn(const PdfPageRecord &record)
{
    HeldImage held = m_held.value(record.id);
    forget(record.id);
    const int degrees = record.rotation - std::exchange(held.appearance.rotation, record.rotation);
    if (held.image.isNull() || held.appearance != record.appearance()) {
        return;
    }
    held.image = held.image.transformed(QTransform().rotate(degrees));
    held.size = QSize();
    hold(record.id, held);
}

void PageThumbnailStore::forget(PdfPageId id)
{
    dropHeld(id);
    m_requests.forget(id);
}

void PageThumbnailStore::reconcile(const std::function<const PdfPageRecord *(PdfPageId)> &recordOf)
{
    for (const PdfPageId id : m_held.keys()) {
        const PdfPageRecord *record = recordOf(id);
        if (record == nullptr || m_held.value(id).appearance != record->appearance()) {
            dropHeld(id);
        }
    }
    m_requests.reconcile(recordOf);
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
    m_requests.forgetFailures(kept);
}

void PageThumbnailStore::forgetRequests()
{
    m_requests.forgetAll();
}

void PageThumbnailStore::clear()
{
    m_held.clear();
    m_heldBytes = 0;
    forgetRequests();
}

bool PageThumbnailStore::isHeld(const WantedPage &page) const
{
    const auto held = m_held.constFind(page.record.id);
    return held != m_held.constEnd() && held->size == page.size &&
           held->appearance == page.record.appearance();
}

void PageThumbnailStore::acceptImage(PdfPageId id, const QImage &image, QSize size,
                                     const PdfPageAppearance &appearance)
{
    hold(id, {image, size, appearance});
    emit imageArrived(id);
}

void PageThumbnailStore::hold(PdfPageId id, const HeldImage &held)
{
    dropHeld(id);
    m_held.insert(id, held);
    m_heldBytes += PageImageRequests::bytesOf(held.image.size());
}

void PageThumbnailStore::dropHeld(PdfPageId id)
{
    const auto held = m_held.constFind(id);
    if (held != m_held.constEnd()) {
        m_heldBytes -= PageImageRequests::bytesOf(held->image.size());
        m_held.erase(held);
    }
}
