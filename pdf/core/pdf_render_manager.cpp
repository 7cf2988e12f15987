// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_render_manager.h"

#include "pdf/core/page_render_job.h"
#include "pdfcore/render_threads.h"

#include <QPointer>
#include <QThreadPool>

#include <optional>
#include <utility>

namespace {

constexpr int kThreadExpiryMs = 15000;

/// Pages with the same key look the same: the identifier of the page is not part of it, so that a
/// duplicate shares the image of its original, and neither is the revision, so that undoing an
/// edit finds the images again.
QString cacheKey(const PdfPageAppearance &page, QSize targetSize, PdfRenderPurpose purpose)
{
    // One call with all arguments, because a path may contain place markers itself. The path comes
    // first, so that whatever it contains the numbers behind it are told apart. States of one file
    // that differ in content have a generation each.
    return QStringLiteral("%1|%2|%3|%4|%5|%6|%7|%8")
        .arg(page.sourcePath, QString::number(page.generation),
             QString::number(page.sourcePageIndex), QString::number(page.rotation),
             QString::number(targetSize.width()), QString::number(targetSize.height()),
             QString::number(static_cast<qint32>(purpose)), QString::number(page.blank ? 1 : 0));
}

} // namespace

PdfRenderManager::PdfRenderManager(QObject *parent, PdfPageRenderFunction render)
    : QObject(parent)
    , m_render(std::move(render))
    , m_channel(std::make_shared<PageRenderChannel>(this, [this] { deliverResult(); }))
    , m_queue(std::make_shared<PageRenderQueue>())
    , m_pool(new QThreadPool(this))
{
    qRegisterMetaType<PdfPageId>("PdfPageId");
    qRegisterMetaType<PdfRenderPurpose>("PdfRenderPurpose");
    m_pool->setMaxThreadCount(pdfcore::renderThreadLimit());
    m_pool->setExpiryTimeout(kThreadExpiryMs);
    m_headStartTimer.setSingleShot(true);
    m_headStartTimer.setInterval(kHeadStartMs);
    connect(&m_headStartTimer, &QTimer::timeout, this, &PdfRenderManager::endHeadStart);
}

PdfRenderManager::~PdfRenderManager()
{
    m_channel->close();
    cancelAll();
    m_queue->clear();
    m_pool->clear();
    m_pool->waitForDone();
    delete m_pool;
    m_cache.clear();
}

QList<quint64> PdfRenderManager::requestPages(const QList<PdfPageRecord> &pages,
                                              const QList<QSize> &targetSizes,
                                              PdfRenderPurpose purpose, quint64 documentRevision,
                                              int priority)
{
    QList<quint64> requestIds(pages.size(), 0);
    if (pages.size() != targetSizes.size()) {
        return requestIds;
    }
    PageRenderBatch batch;
    for (qsizetype i = 0; i < pages.size(); ++i) {
        const PdfPageRecord &page = pages.at(i);
        const QSize targetSize = targetSizes.at(i);
        const quint64 requestId = m_nextRequestId.fetch_add(1);
        requestIds[i] = requestId;
        if (targetSize.isEmpty()) {
            continue;
        }
        const QString key = cacheKey(page.appearance(), targetSize, purpose);
        const QImage image = m_cache.find(key);
        if (image.isNull()) {
            batch.sources.append(page.toSourcePage());
            batch.targetSizes.append(targetSize);
            batch.pageIds.append(page.id);
            batch.requestIds.append(requestId);
            batch.cacheKeys.append(key);
            continue;
        }
        QMetaObject::invokeMethod(
            this,
            [this, pageId = page.id, targetSize, purpose, requestId, documentRevision, image] {
                emit pageRendered(pageId, targetSize, purpose, requestId, documentRevision, image);
            },
            Qt::QueuedConnection);
    }
    if (!batch.sources.isEmpty()) {
        batch.purpose = purpose;
        batch.documentRevision = documentRevision;
        batch.generation = m_generation.load();
        batch.cancel = m_cancel;
        if (m_headStart == HeadStart::Due) {
            m_favouredRequest = batch.requestIds.constFirst();
        }
        m_queue->add(std::make_unique<PageRenderJob>(std::move(batch), m_render, m_channel),
                     priority);
        startOne();
    }
    return requestIds;
}

quint64 PdfRenderManager::requestPage(const PdfPageRecord &page, QSize targetSize,
                                      PdfRenderPurpose purpose, quint64 documentRevision,
                                      int priority)
{
    return requestPages({page}, {targetSize}, purpose, documentRevision, priority).value(0);
}

void PdfRenderManager::favourNextBatch()
{
    endHeadStart();
    m_headStart = HeadStart::Due;
}

void PdfRenderManager::cancelAll()
{
    m_generation.fetch_add(1);
    m_cancel.set();
    m_cancel = {};
    m_queue->clear();
    m_pool->clear();
    m_withheld = 0;
    endHeadStart();
}

void PdfRenderManager::clearCache()
{
    m_cache.clear();
}

void PdfRenderManager::startOne()
{
    if (m_headStart == HeadStart::Running) {
        ++m_withheld;
        return;
    }
    if (m_headStart == HeadStart::Due) {
        m_headStart = HeadStart::Running;
        m_headStartTimer.start();
    }
    m_pool->start([queue = m_queue] { queue->runNext(); });
}

void PdfRenderManager::endHeadStart()
{
    m_headStart = HeadStart::None;
    m_headStartTimer.stop();
    for (; m_withheld > 0; --m_withheld) {
        startOne();
    }
}

void PdfRenderManager::deliverResult()
{
    const std::optional<PageRenderResult> result = m_channel->take();
    if (!result) {
        return;
    }
    const PageRenderBatch &batch = result->batch;
    // Results of what was asked for before may still come in between.
    if (m_headStart == HeadStart::Running && batch.requestIds.value(0) == m_favouredRequest) {
        endHeadStart();
    }
    // A slot may cancel everything or delete the manager between two pages.
    const QPointer<PdfRenderManager> self(this);
    for (qsizetype i = 0; i < batch.sources.size(); ++i) {
        if (self == nullptr || batch.generation != m_generation.load()) {
            return;
        }
        const QImage image = result->images.value(i);
        if (image.isNull()) {
            emit pageRenderFailed(batch.pageIds.at(i), batch.purpose, batch.requestIds.at(i),
                                  result->messages.value(i));
            continue;
        }
        m_cache.insert(batch.cacheKeys.at(i), image);
        emit pageRendered(batch.pageIds.at(i), batch.targetSizes.at(i), batch.purpose,
                          batch.requestIds.at(i), batch.documentRevision, image);
    }
}
