// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_render_manager.h"

#include <QCoreApplication>
#include <QImage>
#include <QList>
#include <QObject>
#include <QThread>
#include <QThreadPool>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <semaphore>
#include <thread>
#include <vector>

/// A render manager on an engine that the test holds in its hand.
namespace RenderBench {

using Purpose = PdfRenderPurpose;

/// Stands in for the engine: notes every call, paints each page in a colour of its own, and on
/// demand holds every call until it is let go.
class FakeEngine final
{
public:
    struct Call
    {
        QList<PdfSourcePage> sources;
        QList<QSize> sizes;
        std::thread::id thread;
        PdfCancelFlag cancel;
    };

    ~FakeEngine() { Q_ASSERT(m_running == 0); }

    PdfPageRenderFunction function()
    {
        return [this](const PdfCancelFlag &cancel, const QList<PdfSourcePage> &sources,
                      const QList<QSize> &sizes,
                      QStringList *errors) { return render(cancel, sources, sizes, errors); };
    }

    /// From now on calls wait for letGo().
    void holdCalls() { m_holding = true; }
    /// Lets `count` of the waiting and coming calls go on.
    void letGo(int count = 1) { m_permits.release(count); }
    /// Returns when another call has begun.
    void waitForCall() { m_begun.acquire(); }

    std::vector<Call> calls() const
    {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }
    int callCount() const { return static_cast<int>(calls().size()); }
    int mostAtOnce() const { return m_mostAtOnce; }

    /// What a call returns instead of the images; set before the first request.
    std::function<QList<QImage>(const QList<PdfSourcePage> &, const QList<QSize> &, QStringList *)>
        paint = [](const QList<PdfSourcePage> &sources, const QList<QSize> &sizes,
                   QStringList *errors) {
            QList<QImage> images;
            for (qsizetype i = 0; i < sources.size(); ++i) {
                images.append(pageImage(sources.at(i), sizes.at(i)));
                errors->append(QString());
            }
            return images;
        };

    static QImage pageImage(const PdfSourcePage &page, QSize size)
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor::fromRgb(10 + page.pageIndex, page.rotation / 2, page.isBlank ? 1 : 0));
        return image;
    }

private:
    QList<QImage> render(const PdfCancelFlag &cancel, const QList<PdfSourcePage> &sources,
                         const QList<QSize> &sizes, QStringList *errors)
    {
        const int running = ++m_running;
        int most = m_mostAtOnce;
        while (most < running && !m_mostAtOnce.compare_exchange_weak(most, running)) {
        }
        {
            const std::lock_guard lock(m_mutex);
            m_calls.push_back({sources, sizes, std::this_thread::get_id(), cancel});
        }
        m_begun.release();
        if (m_holding) {
            m_permits.acquire();
        }
        QList<QImage> images = paint(sources, sizes, errors);
        --m_running;
        return images;
    }

    mutable std::mutex m_mutex;
    std::vector<Call> m_calls;
    std::counting_semaphore<> m_begun{0};
    std::counting_semaphore<> m_permits{0};
    std::atomic<bool> m_holding{false};
    std::atomic<int> m_running{0};
    std::atomic<int> m_mostAtOnce{0};
};

/// A page of a protected file.
[[nodiscard]] PdfPageRecord page(PdfPageId id, qint32 sourceIndex = 0);

/// One signal of the manager, as it came.
struct Delivery
{
    PdfPageId pageId = 0;
    QSize size;
    Purpose purpose = Purpose::Thumbnail;
    quint64 requestId = 0;
    quint64 revision = 0;
    QImage image;
    QString message;
    bool failed = false;
    bool onOwnThread = false;
};

/// A manager on a fake engine, with everything it delivered.
class Bench
{
public:
    Bench()
    {
        QObject::connect(manager.get(), &PdfRenderManager::pageRendered, &m_context,
                         [this](PdfPageId id, QSize size, Purpose purpose, quint64 requestId,
                                quint64 revision, const QImage &image) {
                             deliveries.append({id, size, purpose, requestId, revision, image,
                                                QString(), false, isOwnThread()});
                         });
        QObject::connect(
            manager.get(), &PdfRenderManager::pageRenderFailed, &m_context,
            [this](PdfPageId id, Purpose purpose, quint64 requestId, const QString &message) {
                deliveries.append(
                    {id, QSize(), purpose, requestId, 0, QImage(), message, true, isOwnThread()});
            });
    }
    /// Lets calls go that a test which failed has left waiting.
    ~Bench() { engine.letGo(1000); }
    Q_DISABLE_COPY_MOVE(Bench)

    QThreadPool *pool() const { return manager->findChild<QThreadPool *>(); }

    /// Waits until all jobs are done, and delivers what they left.
    void finish()
    {
        pool()->waitForDone();
        QCoreApplication::sendPostedEvents(manager.get(), QEvent::MetaCall);
    }

    /// Keeps every pool thread in a call to the engine; each letGo() frees one.
    void occupyAllThreads()
    {
        engine.holdCalls();
        for (int i = 0; i < pool()->maxThreadCount(); ++i) {
            manager->requestPage(page(1000, 200 + i), QSize(1, 1), Purpose::PageView, 0);
            engine.waitForCall();
        }
    }

    QList<quint64> deliveredRequests() const
    {
        QList<quint64> ids;
        for (const Delivery &delivery : deliveries) {
            ids.append(delivery.requestId);
        }
        return ids;
    }

    FakeEngine engine;
    std::unique_ptr<PdfRenderManager> manager =
        std::make_unique<PdfRenderManager>(nullptr, engine.function());
    QList<Delivery> deliveries;

private:
    bool isOwnThread() const { return QThread::currentThread() == manager->thread(); }

    QObject m_context;
};

/// Waits for other threads, without running the events of this one.
template <typename Condition>
bool comesTrue(Condition &&condition)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition() && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    return condition();
}

/// A manager on an engine that holds its calls, with a count of the jobs it has.
class CountedJobs final
{
public:
    CountedJobs() { engine.holdCalls(); }

    /// Destroys the manager while calls run, which end only after all other jobs are gone.
    void destroyWhileRunning(int runningCalls)
    {
        std::thread release([this, runningCalls] {
            comesTrue([this, runningCalls] { return token.use_count() <= 2 + runningCalls; });
            engine.letGo(1000);
        });
        manager.reset();
        release.join();
    }
    bool isAnyJobLeft() const { return token.use_count() > 1; }

    FakeEngine engine;
    /// Held by the manager, by every job, and here.
    std::shared_ptr<int> token = std::make_shared<int>(0);
    std::unique_ptr<PdfRenderManager> manager = std::make_unique<PdfRenderManager>(
        nullptr, [held = token, render = engine.function()](
                     const PdfCancelFlag &cancel, const QList<PdfSourcePage> &sources,
                     const QList<QSize> &sizes,
                     QStringList *errors) { return render(cancel, sources, sizes, errors); });
};

} // namespace RenderBench
