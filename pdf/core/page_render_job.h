// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/core/pdf_render_types.h"

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>

class QObject;

/// The pages of one request that were not in the cache. All lists have the same length.
struct PageRenderBatch
{
    QList<PdfSourcePage> sources;
    QList<QSize> targetSizes;
    QList<PdfPageId> pageIds;
    QList<quint64> requestIds;
    QList<QString> cacheKeys;
    PdfRenderPurpose purpose{};
    quint64 documentRevision = 0;
    /// The manager's generation when the batch was started.
    quint64 generation = 0;
    PdfCancelFlag cancel; ///< Set when nobody wants the batch any more.
};

/// A batch with what the engine made of it; both lists may be shorter than the batch.
struct PageRenderResult
{
    PageRenderBatch batch;
    QList<QImage> images;
    QStringList messages;
};

/// The way of results from the pool threads to their receiver, and the weak reference of the jobs
/// to it: shared by the receiver and its jobs, and closed when the receiver goes.
class PageRenderChannel final
{
public:
    /// `onResult` is called once per result, on the thread of `receiver`.
    PageRenderChannel(QObject *receiver, std::function<void()> onResult);

    /// Hands a result over by a queued call of `onResult`; drops it after close(). Any thread.
    void post(PageRenderResult result);
    /// The oldest result not yet taken.
    [[nodiscard]] std::optional<PageRenderResult> take();
    /// Drops the results not yet taken and all that come later.
    void close();

private:
    std::mutex m_mutex;
    QObject *m_receiver;
    std::function<void()> m_onResult;
    std::deque<PageRenderResult> m_results;
};

/// Renders one batch on a pool thread. Touches nothing but its own copy of the batch.
class PageRenderJob final
{
public:
    PageRenderJob(PageRenderBatch batch, PdfPageRenderFunction render,
                  std::shared_ptr<PageRenderChannel> channel);

    void run();

private:
    PageRenderBatch m_batch;
    PdfPageRenderFunction m_render;
    std::shared_ptr<PageRenderChannel> m_channel;
};

/// The jobs that have not started, by priority and then in the order they came. Any thread.
///
/// Each job goes with one turn on a thread pool, and each turn runs the job that is most urgent
/// when it begins: a pool of its own accord runs what it was given while threads were idle after
/// all else.
class PageRenderQueue final
{
public:
    void add(std::unique_ptr<PageRenderJob> job, int priority);
    /// Runs the most urgent job, if there is one left.
    void runNext();
    /// Drops the jobs that have not started.
    void clear();

private:
    std::mutex m_mutex;
    std::multimap<int, std::unique_ptr<PageRenderJob>, std::greater<>> m_jobs;
};
