// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/page_image_requests.h"
#include "pdf/core/pdf_page_record.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QSize>

#include <functional>

class PdfRenderManager;

/// Gets thumbnails from a render manager and holds a bounded amount of them.
///
/// A thumbnail belongs to a page and to what the page showed when it was asked for; it is not
/// given out any more once the page shows something else. Lives on the interface thread.
class PageThumbnailStore final : public QObject
{
    Q_OBJECT

public:
    /// The most memory that thumbnails may take before trim() is due.
    static constexpr qint64 kDefaultBudget = 96ll * 1024 * 1024;
    /// With more urgent results outstanding that are not wanted any more, new requests wait.
    static constexpr int kMaximumStaleRequests = 16;

    /// A page and the size in device pixels at which it is wanted.
    using WantedPage = PageImageRequests::WantedPage;

    enum class Urgency {
        Visible,    ///< The reader is waiting for it.
        Background, ///< It may come into view some day.
    };

    explicit PageThumbnailStore(QObject *parent = nullptr);
    ~PageThumbnailStore() override;

    /// The image held for a page, of whatever size; null if there is none of what it shows now.
    /// Valid until the store's next change.
    [[nodiscard]] const QImage *image(const PdfPageRecord &record) const;
    /// Whether an image of just this page and size is held or on its way, or failed.
    [[nodiscard]] bool isSettled(const WantedPage &page) const;
    [[nodiscard]] bool isPending(PdfPageId id) const { return m_requests.isPending(id); }
    [[nodiscard]] bool hasFailed(PdfPageId id) const { return m_requests.hasFailed(id); }
    [[nodiscard]] int pendingCount() const { return m_requests.pendingCount(); }
    [[nodiscard]] int heldCount() const { return static_cast<int>(m_held.size()); }
    [[nodiscard]] qint64 heldBytes() const { return m_heldBytes; }
    [[nodiscard]] bool isOverBudget() const { return m_heldBytes > m_budget; }
    /// Whether what is held and what is on its way fits into the budget.
    [[nodiscard]] bool hasRoom() const
    {
        return m_heldBytes + m_requests.pendingBytes() < m_budget;
    }
    void setBudget(qint64 bytes) { m_budget = bytes; }

    /// Asks `manager` from now on; null for no one. What was asked of another is forgotten.
    void setRenderManager(PdfRenderManager *manager);
    [[nodiscard]] PdfRenderManager *renderManager() const { return m_requests.renderManager(); }
    /// Requests those pages that are not settled, `pagesPerCall` at a time. Urgent requests wait
    /// while too much is outstanding that is no longer wanted; roomAvailable() tells when to come
    /// again.
    void request(const QList<WantedPage> &pages, quint64 documentRevision, int priority,
                 int pagesPerCall, Urgency urgency);
    /// Goes on with the image of a page that was turned, turned likewise, until a new one comes.
    void turn(const PdfPageRecord &record);
    /// Drops everything about a page; the result of its request will be ignored.
    void forget(PdfPageId id);
    /// Drops everything about pages that are not in the document any more or show something else.
    /// `recordOf` gives the record of a page, null if there is none.
    void reconcile(const std::function<const PdfPageRecord *(PdfPageId)> &recordOf);
    /// Drops images, the ones with the greatest distance first, until there is some room in the
    /// budget. Images with the distance 0 stay.
    void trim(const std::function<int(PdfPageId)> &distanceOf);
    /// Lets failed pages be requested again, except those in `kept`.
    void forgetFailuresExcept(const QSet<PdfPageId> &kept);
    /// Ignores the results of all requests, for instance because they were cancelled.
    void forgetRequests();
    /// Drops all images and ignores the results of all requests.
    void clear();

signals:
    /// A new image is held for the page.
    void imageArrived(PdfPageId id);
    /// No image could be made of the page.
    void imageFailed(PdfPageId id);
    /// Requests that had to wait may be made now.
    void roomAvailable();

private:
    struct HeldImage
    {
        QImage image;
        QSize size;
        PdfPageAppearance appearance;
    };

    void acceptImage(PdfPageId id, const QImage &image, QSize size,
                     const PdfPageAppearance &appearance);
    void hold(PdfPageId id, const HeldImage &held);
    void dropHeld(PdfPageId id);
    [[nodiscard]] bool isHeld(const WantedPage &page) const;

    PageImageRequests m_requests{PdfRenderPurpose::Thumbnail};
    QHash<PdfPageId, HeldImage> m_held;
    qint64 m_budget = kDefaultBudget;
    qint64 m_heldBytes = 0;
};
