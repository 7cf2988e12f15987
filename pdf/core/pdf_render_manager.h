// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/page_image_cache.h"
#include "pdf/core/pdf_page_record.h"
#include "pdf/core/pdf_render_types.h"

#include <QImage>
#include <QList>
#include <QObject>
#include <QSize>
#include <QTimer>

#include <atomic>
#include <memory>

class PageRenderChannel;
class PageRenderQueue;
class QThreadPool;

/// Turns page records into images on threads of its own, and keeps the finished ones in a cache.
///
/// Every page of a request gets a request identifier, from 1 upwards; its image or failure arrives
/// later under that identifier, never before the request call has returned. The manager does not
/// know which results a view still wants: a view compares identifiers and ignores the others. It
/// is used on the thread it lives on, where its signals are sent as well; its destructor waits for
/// the pages that are being rendered.
class PdfRenderManager final : public QObject
{
    Q_OBJECT

public:
    /// Thread-pool priority of the pages that the reader is looking at.
    static constexpr int kPageViewPriority = 20;
    /// Longest head start of a favoured batch, in milliseconds.
    static constexpr int kHeadStartMs = 60;

    /// `render` is called on the pool threads, several at a time; by default it is the engine.
    explicit PdfRenderManager(QObject *parent = nullptr,
                              PdfPageRenderFunction render = PdfEditorBackend::renderPagesUnless);
    ~PdfRenderManager() override;

    /// Asks for page i at size i, in device pixels of the page as shown.
    ///
    /// Returns one identifier per page. A page with an empty size gets an identifier and nothing
    /// more. Lists of different lengths give no work and only zeros. `documentRevision` comes back
    /// unchanged with the images. What the cache does not hold goes to the engine in one call; a
    /// higher `priority` starts earlier.
    QList<quint64> requestPages(const QList<PdfPageRecord> &pages, const QList<QSize> &targetSizes,
                                PdfRenderPurpose purpose, quint64 documentRevision, int priority);
    /// Asks for one page; see requestPages().
    quint64 requestPage(const PdfPageRecord &page, QSize targetSize, PdfRenderPurpose purpose,
                        quint64 documentRevision, int priority = kPageViewPriority);
    /// Gives the next batch that has to be rendered a head start: what is asked for after it waits
    /// until its result has been delivered, but never longer than kHeadStartMs. For a reader who
    /// waits for one page while everything around it wants to be drawn as well.
    void favourNextBatch();
    /// Drops the batches that wait, and ends those being rendered without results.
    void cancelAll();
    void clearCache();

signals:
    void pageRendered(PdfPageId pageId, QSize targetSize, PdfRenderPurpose purpose,
                      quint64 requestId, quint64 documentRevision, QImage image);
    void pageRenderFailed(PdfPageId pageId, PdfRenderPurpose purpose, quint64 requestId,
                          QString message);

private:
    enum class HeadStart { None, Due, Running };

    void startOne();
    void endHeadStart();
    void deliverResult();

    PdfPageRenderFunction m_render;
    std::shared_ptr<PageRenderChannel> m_channel;
    std::shared_ptr<PageRenderQueue> m_queue;
    QThreadPool *m_pool;
    QTimer m_headStartTimer;
    HeadStart m_headStart = HeadStart::None;
    quint64 m_favouredRequest = 0; ///< First request of the batch that has the head start.
    int m_withheld = 0;            ///< Batches in the queue that no thread has been told of.
    PageImageCache m_cache;
    std::atomic<quint64> m_nextRequestId{1};
    std::atomic<quint64> m_generation{1};
    PdfCancelFlag m_cancel; ///< Of all batches of this generation.
};
