// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/batch_renderer.h"

#include "pdfcore/render_threads.h"
#include "pdfcore/src/base/source_page.h"
#include "pdfcore/src/render/page_painter.h"
#include "pdfcore/src/session/engine.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>
#include <vector>

namespace pdfcore {

namespace {

/// Pixels of the largest image that is made: 2 GiB of memory, enough for A2 paper at 1200 dpi.
constexpr qint64 kMaxPixels = qint64{1} << 29;

QImage renderBlank(QSize size, EngineError *outcome)
{
    QImage image(size, kPageImageFormat);
    if (image.isNull()) {
        *outcome = {PdfBackendError::RenderFailed, QStringLiteral("Not enough memory.")};
        return {};
    }
    image.fill(Qt::white);
    return image;
}

/// Renders pages one after another, keeping a document open while pages of the same file follow.
class BatchRenderer
{
public:
    QImage render(const PdfSourcePage &page, QSize size, EngineError *outcome)
    {
        *outcome = {};
        if (size.isEmpty()) {
            *outcome = {PdfBackendError::RenderFailed,
                        QStringLiteral("The size to render at is empty.")};
            return {};
        }
        if (qint64{size.width()} * size.height() > kMaxPixels) {
            *outcome = {PdfBackendError::RenderFailed,
                        QStringLiteral("An image of %1 × %2 pixels is too large.")
                            .arg(size.width())
                            .arg(size.height())};
            return {};
        }
        if (isBlankPage(page)) {
            return renderBlank(size, outcome);
        }
        if (!borrow(page, outcome)) {
            return {};
        }
        QImage image = m_session->render(page.pageIndex, page.rotation, size, outcome);
        if (!m_session->isUsable()) {
            m_session = {};
        }
        return image;
    }

private:
    bool borrow(const PdfSourcePage &page, EngineError *outcome)
    {
        const QString path = Engine::instance().revisions().locate(page, outcome);
        if (outcome->isError()) {
            return false;
        }
        if (m_session && m_path == path && m_password == page.password &&
            m_session->file().isSameRevision(FileIdentity::of(path)) &&
            !Engine::instance().sessions().isAwaited(path)) {
            return true;
        }
        m_session = {};
        m_session = Engine::instance().sessions().acquire(path, page.password, outcome);
        m_path = path;
        m_password = page.password;
        // The content may have moved before it could be borrowed; now it cannot any more.
        EngineError moved;
        if (Engine::instance().revisions().locate(page, &moved) == path) {
            return static_cast<bool>(m_session);
        }
        m_session = {};
        if (!moved.isError()) {
            return borrow(page, outcome);
        }
        *outcome = moved;
        return false;
    }

    SessionPool::Lease m_session;
    QString m_path;
    QString m_password;
};

/// The threads that render now or are about to.
std::atomic<int> &busyThreads()
{
    static std::atomic<int> count{0};
    return count;
}

/// Takes as many as it can of `wanted` threads that may render besides those that do. Each is given
/// back with --busyThreads().
int reserveThreads(int wanted)
{
    int busy = busyThreads();
    for (;;) {
        const int granted = std::min(renderThreadLimit() - busy, wanted);
        if (granted <= 0) {
            return 0;
        }
        if (busyThreads().compare_exchange_weak(busy, busy + granted)) {
            return granted;
        }
    }
}

/// Counts the calling thread among the busy ones for as long as it lives.
class BusyThread
{
public:
    BusyThread() { ++busyThreads(); }
    ~BusyThread() { --busyThreads(); }
    BusyThread(const BusyThread &) = delete;
    BusyThread &operator=(const BusyThread &) = delete;
};

/// A batch that several threads work off together. The lists are large enough before they start,
/// and each thread writes to elements of its own.
class SharedBatch
{
public:
    SharedBatch(const QList<PdfSourcePage> &pages, const QList<QSize> &sizes, QList<QImage> &images,
                QStringList &messages)
        : m_pages(pages)
        , m_sizes(sizes)
        , m_images(images.data())
        , m_messages(messages.data())
    {}

    void work()
    {
        BatchRenderer renderer;
        for (qsizetype i = m_next++; i < m_pages.size(); i = m_next++) {
            try {
                EngineError outcome;
                m_images[i] = renderer.render(m_pages.at(i), m_sizes.value(i), &outcome);
                m_messages[i] = outcome.message;
            } catch (const std::exception &exception) {
                m_images[i] = {};
                m_messages[i] = QString::fromUtf8(exception.what());
            }
        }
    }

private:
    const QList<PdfSourcePage> &m_pages;
    const QList<QSize> &m_sizes;
    QImage *m_images;
    QString *m_messages;
    std::atomic<qsizetype> m_next{0};
};

} // namespace

void renderBatch(const QList<PdfSourcePage> &pages, const QList<QSize> &targetSizes,
                 QList<QImage> &images, QStringList &messages)
{
    const BusyThread busy;
    SharedBatch batch(pages, targetSizes, images, messages);
    std::vector<std::thread> helpers;
    int granted =
        reserveThreads(static_cast<int>(std::min<qsizetype>(pages.size(), kMostRenderThreads)) - 1);
    try {
        helpers.reserve(static_cast<std::size_t>(granted));
        for (; granted > 0; --granted) {
            helpers.emplace_back([&batch] {
                batch.work();
                --busyThreads();
            });
        }
    } catch (const std::exception &) {
        // Without another thread the work takes longer.
        busyThreads() -= granted;
    }
    batch.work();
    for (std::thread &helper : helpers) {
        helper.join();
    }
}

QImage renderOne(const PdfSourcePage &page, QSize size, EngineError *outcome)
{
    const BusyThread busy;
    return BatchRenderer().render(page, size, outcome);
}

} // namespace pdfcore
