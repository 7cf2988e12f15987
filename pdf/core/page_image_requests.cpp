// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_image_requests.h"

#include "pdf/core/pdf_render_manager.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int kBytesPerPixel = 4;

} // namespace

PageImageRequests::PageImageRequests(PdfRenderPurpose purpose, QObject *parent)
    : QObject(parent)
    , m_purpose(purpose)
{}

PageImageRequests::~PageImageRequests() = default;

qint64 PageImageRequests::bytesOf(QSize size)
{
    return static_cast<qint64>(size.width()) * size.height() * kBytesPerPixel;
}

PdfRenderManager *PageImageRequests::renderManager() const
{
    return m_renderManager;
}

bool PageImageRequests::isSettled(const WantedPage &page) const
{
    return isInFlight(page) || hasFailed(page.record.id);
}

int PageImageRequests::staleCount(const QList<WantedPage> &wanted, Serving serving) const
{
    const auto served =
        std::count_if(wanted.cbegin(), wanted.cend(),
                      [this, serving](const WantedPage &page) { return isServed(page, serving); });
    return static_cast<int>(m_outstanding.size() - served);
}

void PageImageRequests::setRenderManager(PdfRenderManager *manager)
{
    if (m_renderManager != nullptr) {
        disconnect(m_renderManager, nullptr, this, nullptr);
    }
    forgetAll();
    m_renderManager = manager;
    if (manager == nullptr) {
        return;
    }
    connect(manager, &PdfRenderManager::pageRendered, this, &PageImageRequests::acceptImage);
    connect(manager, &PdfRenderManager::pageRenderFailed, this, &PageImageRequests::acceptFailure);
}

void PageImageRequests::request(const QList<WantedPage> &pages, quint64 documentRevision,
                                int priority, int pagesPerCall, Counting counting)
{
    if (m_renderManager == nullptr) {
        return;
    }
    QList<WantedPage> missing;
    std::copy_if(pages.cbegin(), pages.cend(), std::back_inserter(missing),
                 [this](const WantedPage &page) { return !isSettled(page); });
    for (qsizetype begin = 0; begin < missing.size(); begin += pagesPerCall) {
        issue(missing.mid(begin, pagesPerCall), documentRevision, priority, counting);
    }
}

void PageImageRequests::withdraw(PdfPageId id)
{
    const auto pending = m_pending.constFind(id);
    if (pending != m_pending.constEnd()) {
        m_pendingBytes -= bytesOf(pending->size);
        m_pending.erase(pending);
    }
}

void PageImageRequests::forget(PdfPageId id)
{
    withdraw(id);
    m_failed.remove(id);
}

void PageImageRequests::reconcile(const std::function<const PdfPageRecord *(PdfPageId)> &recordOf)
{
    for (const PdfPageId id : m_pending.keys()) {
        const PdfPageRecord *record = recordOf(id);
        if (record == nullptr || m_pending.value(id).appearance != record->appearance()) {
            withdraw(id);
        }
    }
    m_failed.clear();
    m_outstanding.clear();
}

void PageImageRequests::forgetFailures(const QSet<PdfPageId> &kept)
{
    m_failed.intersect(kept);
}

void PageImageRequests::forgetAll()
{
    m_pending.clear();
    m_pendingBytes = 0;
    m_failed.clear();
    m_outstanding.clear();
    m_waiting = false;
}

bool PageImageRequests::isInFlight(const WantedPage &page) const
{
    const auto pending = m_pending.constFind(page.record.id);
    return pending != m_pending.constEnd() && pending->size == page.size &&
           pending->appearance == page.record.appearance();
}

bool PageImageRequests::isServed(const WantedPage &page, Serving serving) const
{
    const auto pending = m_pending.constFind(page.record.id);
    return pending != m_pending.constEnd() && m_outstanding.contains(pending->id) &&
           (serving == Serving::AnySize || isInFlight(page));
}

void PageImageRequests::issue(const QList<WantedPage> &pages, quint64 documentRevision,
                              int priority, Counting counting)
{
    QList<PdfPageRecord> records;
    QList<QSize> sizes;
    for (const WantedPage &page : pages) {
        records.append(page.record);
        sizes.append(page.size);
    }
    const QList<quint64> requestIds =
        m_renderManager->requestPages(records, sizes, m_purpose, documentRevision, priority);
    for (qsizetype i = 0; i < pages.size(); ++i) {
        const PdfPageRecord &record = records.at(i);
        withdraw(record.id);
        m_pending.insert(record.id, {requestIds.at(i), sizes.at(i), record.appearance()});
        m_pendingBytes += bytesOf(sizes.at(i));
        if (counting == Counting::Outstanding) {
            m_outstanding.insert(requestIds.at(i));
        }
    }
}

void PageImageRequests::acceptImage(PdfPageId id, QSize size, PdfRenderPurpose purpose,
                                    quint64 requestId, quint64 /*documentRevision*/,
                                    const QImage &image)
{
    if (purpose != m_purpose) {
        return;
    }
    const std::optional<Request> request = findRequest(id, requestId);
    if (request && request->size == size) {
        withdraw(id);
        emit imageArrived(id, image, size, request->appearance);
    }
    settle(requestId);
}

void PageImageRequests::acceptFailure(PdfPageId id, PdfRenderPurpose purpose, quint64 requestId)
{
    if (purpose != m_purpose) {
        return;
    }
    if (findRequest(id, requestId)) {
        withdraw(id);
        m_failed.insert(id);
        emit imageFailed(id);
    }
    settle(requestId);
}

std::optional<PageImageRequests::Request> PageImageRequests::findRequest(PdfPageId id,
                                                                         quint64 requestId) const
{
    const auto pending = m_pending.constFind(id);
    if (pending == m_pending.constEnd() || pending->id != requestId) {
        return std::nullopt;
    }
    return *pending;
}

void PageImageRequests::settle(quint64 requestId)
{
    if (m_outstanding.remove(requestId) && m_waiting) {
        emit roomAvailable();
    }
}
