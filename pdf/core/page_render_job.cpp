// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_render_job.h"

#include <QObject>

#include <utility>

PageRenderChannel::PageRenderChannel(QObject *receiver, std::function<void()> onResult)
    : m_receiver(receiver)
    , m_onResult(std::move(onResult))
{}

void PageRenderChannel::post(PageRenderResult result)
{
    // The lock is kept while the call is queued, so that the receiver cannot go in between.
    const std::lock_guard lock(m_mutex);
    if (m_receiver == nullptr) {
        return;
    }
    m_results.push_back(std::move(result));
    QMetaObject::invokeMethod(m_receiver, m_onResult, Qt::QueuedConnection);
}

std::optional<PageRenderResult> PageRenderChannel::take()
{
    const std::lock_guard lock(m_mutex);
    if (m_results.empty()) {
        return std::nullopt;
    }
    PageRenderResult result = std::move(m_results.front());
    m_results.pop_front();
    return result;
}

void PageRenderChannel::close()
{
    const std::lock_guard lock(m_mutex);
    m_receiver = nullptr;
    m_results.clear();
}

PageRenderJob::PageRenderJob(PageRenderBatch batch, PdfPageRenderFunction render,
                             std::shared_ptr<PageRenderChannel> channel)
    : m_batch(std::move(batch))
    , m_render(std::move(render))
    , m_channel(std::move(channel))
{}

void PageRenderJob::run()
{
    PageRenderResult result;
    result.images =
        m_render(m_batch.cancel, m_batch.sources, m_batch.targetSizes, &result.messages);
    result.batch = std::move(m_batch);
    m_channel->post(std::move(result));
}

void PageRenderQueue::add(std::unique_ptr<PageRenderJob> job, int priority)
{
    const std::lock_guard lock(m_mutex);
    m_jobs.emplace(priority, std::move(job));
}

void PageRenderQueue::runNext()
{
    std::unique_ptr<PageRenderJob> job;
    {
        const std::lock_guard lock(m_mutex);
        if (m_jobs.empty()) {
            return;
        }
        job = std::move(m_jobs.begin()->second);
        m_jobs.erase(m_jobs.begin());
    }
    job->run();
}

void PageRenderQueue::clear()
{
    const std::lock_guard lock(m_mutex);
    m_jobs.clear();
}
