#include "pdfcore/src/batch_renderer.h"

#include "pdfcore/src/session_pool.h"
#include "pdfcore/src/source_files.h"
#include "pdfcore/src/source_page.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace pdfcore {

namespace {

constexpr int kFewestThreads = 2;
constexpr int kMostThreads = 4;

/// Pixels of the largest image that is made: 2 GiB of memory, enough for A2 paper at 1200 dpi.
constexpr qint64 kMaxPixels = qint64{1} << 29;

QImage renderBlank(QSize size, EngineError *outcome)
{
    QImage image(size, QImage::Format_RGB32);
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
        if (isBlankPage(page))
            return renderBlank(size, outcome);
        if (!borrow(page, outcome))
            return {};
        QImage image = m_session->render(page.pageIndex, page.rotation, size, outcome);
        if (!m_session->isUsable())
            m_session = {};
        return image;
    }

private:
    bool borrow(const PdfSourcePage &page, EngineError *outcome)
    {
        // A session that is kept is of one state of the file already.
        const QString path = SourceFiles::instance().locate(page, outcome);
        if (outcome->isError())
            return false;
        if (m_session && m_path == path && m_password == page.password)
            return true;
        m_session = {};
        m_session = SessionPool::instance().acquire(path, page.password, outcome);
        if (!m_session)
            return false;
        m_path = path;
        m_password = page.password;
        // The file may have been replaced before it could be borrowed; now it cannot be any more.
        if (SourceFiles::instance().locate(page, outcome) == path)
            return true;
        m_session = {};
        return !outcome->isError() && borrow(page, outcome);
    }

    SessionPool::Lease m_session;
    QString m_path;
    QString m_password;
};

/// The threads that render now.
std::atomic<int> &busyThreads()
{
    static std::atomic<int> count{0};
    return count;
}

/// Counts a thread among the busy ones for as long as it lives.
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
        const BusyThread busy;
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

int renderThreadLimit()
{
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()) - 1, kFewestThreads,
                      kMostThreads);
}

void renderBatch(const QList<PdfSourcePage> &pages, const QList<QSize> &targetSizes,
                 QList<QImage> &images, QStringList &messages)
{
    SharedBatch batch(pages, targetSizes, images, messages);
    const int idle = renderThreadLimit() - 1 - busyThreads();
    const auto wanted = std::min<qsizetype>(idle, pages.size() - 1);
    std::vector<std::thread> helpers;
    try {
        for (qsizetype i = 0; i < wanted; ++i)
            helpers.emplace_back([&batch] { batch.work(); });
    } catch (const std::system_error &) {
        // Without another thread the work takes longer.
    }
    batch.work();
    for (std::thread &helper : helpers)
        helper.join();
}

QImage renderOne(const PdfSourcePage &page, QSize size, EngineError *outcome)
{
    const BusyThread busy;
    return BatchRenderer().render(page, size, outcome);
}

} // namespace pdfcore
