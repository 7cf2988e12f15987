// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/core/pdf_render_types.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QSize>

#include <functional>
#include <optional>

class PdfRenderManager;

/// What one view has asked a render manager for: one image per page at most, of one purpose.
///
/// A result is taken only if it answers the latest request of its page, by identifier and by size;
/// who owns the requests keeps the image. The manager cannot take back what it was asked for, so a
/// request that nobody waits for any more stays outstanding until its result comes. Owners hold
/// new requests back while too many of these are left. Lives on the interface thread.
class PageImageRequests final : public QObject
{
    Q_OBJECT

public:
    /// A page and the size in device pixels at which it is wanted.
    struct WantedPage
    {
        PdfPageRecord record;
        QSize size;
    };

    /// Whether a request counts as outstanding until its result comes.
    enum class Counting {
        Outstanding,
        Uncounted, ///< It is to hold back no other one.
    };

    /// Which request of a page serves the one who wants it.
    enum class Serving {
        ThisSize, ///< Only one at the wanted size, of what the page shows.
        AnySize,  ///< Whichever is under way.
    };

    explicit PageImageRequests(PdfRenderPurpose purpose, QObject *parent = nullptr);
    ~PageImageRequests() override;

    /// Memory that an image takes, in bytes.
    [[nodiscard]] static qint64 bytesOf(QSize size);

    [[nodiscard]] PdfRenderManager *renderManager() const;
    /// Whether there is nothing to be requested: the page is on its way, at just this size and as
    /// it looks, or has failed.
    [[nodiscard]] bool isSettled(const WantedPage &page) const;
    [[nodiscard]] bool isPending(PdfPageId id) const { return m_pending.contains(id); }
    [[nodiscard]] bool hasFailed(PdfPageId id) const { return m_failed.contains(id); }
    [[nodiscard]] int pendingCount() const { return static_cast<int>(m_pending.size()); }
    /// Memory that the images on their way will take.
    [[nodiscard]] qint64 pendingBytes() const { return m_pendingBytes; }
    /// How many outstanding requests are for something else than `wanted`, which names no page
    /// twice.
    [[nodiscard]] int staleCount(const QList<WantedPage> &wanted, Serving serving) const;

    /// Asks `manager` from now on; null for no one. What was asked of another is forgotten.
    void setRenderManager(PdfRenderManager *manager);
    /// Requests those pages that are not settled, `pagesPerCall` at a time; a request of another
    /// size or look is replaced. Does nothing without a manager.
    void request(const QList<WantedPage> &pages, quint64 documentRevision, int priority,
                 int pagesPerCall, Counting counting);
    /// Whether the owner has held requests back, and is to hear of room for them.
    void setWaiting(bool waiting) { m_waiting = waiting; }
    /// Ignores the result of the page's request, which stays outstanding.
    void withdraw(PdfPageId id);
    /// Withdraws the page's request, and lets the page be requested again if it has failed.
    void forget(PdfPageId id);
    /// Withdraws the requests of pages that are gone or show something else, forgets all failures,
    /// and counts nothing as outstanding: whoever replaced the document may have cancelled what was
    /// under way. `recordOf` gives the record of a page, null if there is none.
    void reconcile(const std::function<const PdfPageRecord *(PdfPageId)> &recordOf);
    /// Lets failed pages be requested again, except those in `kept`.
    void forgetFailures(const QSet<PdfPageId> &kept = {});
    /// Forgets all requests and failures, for instance because the requests were cancelled.
    void forgetAll();

signals:
    /// The image of a pending request, with the size and the look that were asked for.
    void imageArrived(PdfPageId id, const QImage &image, QSize size,
                      const PdfPageAppearance &appearance);
    /// No image could be made of the page.
    void imageFailed(PdfPageId id);
    /// The owner is waiting, and one request less is outstanding.
    void roomAvailable();

private:
    struct Request
    {
        quint64 id = 0;
        QSize size;
        PdfPageAppearance appearance;
    };

    [[nodiscard]] bool isInFlight(const WantedPage &page) const;
    [[nodiscard]] bool isServed(const WantedPage &page, Serving serving) const;
    void issue(const QList<WantedPage> &pages, quint64 documentRevision, int priority,
               Counting counting);
    void acceptImage(PdfPageId id, QSize size, PdfRenderPurpose purpose, quint64 requestId,
                     quint64 documentRevision, const QImage &image);
    void acceptFailure(PdfPageId id, PdfRenderPurpose purpose, quint64 requestId);
    /// The page's request, if it is the one with the identifier.
    [[nodiscard]] std::optional<Request> findRequest(PdfPageId id, quint64 requestId) const;
    void settle(quint64 requestId);

    PdfRenderPurpose m_purpose;
    QPointer<PdfRenderManager> m_renderManager;
    /// The latest request of each page.
    QHash<PdfPageId, Request> m_pending;
    QSet<PdfPageId> m_failed;
    /// Identifiers of the requests whose result has not come, whether it is still wanted or not.
    QSet<quint64> m_outstanding;
    qint64 m_pendingBytes = 0;
    bool m_waiting = false;
};
