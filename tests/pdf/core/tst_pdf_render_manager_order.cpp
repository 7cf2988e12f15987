// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_render_job.h"
#include "tests/pdf/core/render_bench.h"

#include <QSignalSpy>
#include <QTest>

#include <chrono>

using namespace RenderBench;

/// In which order jobs start, and how they end early.
class TestPdfRenderManagerOrder final : public QObject
{
    Q_OBJECT

private slots:
    // Order and cancellation.
    void higherPriorityStartsEarlier();
    void singlePageHasThePriorityOfAPageView();
    void equalPrioritiesStartInOrder();
    void idleThreadsTakeTheFirstRequestsFirst();
    void noMoreCallsAtOnceThanThreads();
    void cancelledJobThatRunsDeliversNothing();
    void cancelledJobThatIsDoneDeliversNothing();
    void cancelledJobThatWaitsIsNeverStarted();
    void cancelledResultIsNotCached();
    void requestAfterCancellationIsAnswered();
    void pageFromTheCacheArrivesDespiteCancellation();
    void cancellingInASlotStopsTheRestOfTheBatch();

    // Destruction.
    void cancellingReachesTheEngine();
    void cancellingLeavesLaterRequestsAlone();
    void destructorReachesTheEngine();
    void destructorWaitsForRunningJobs();
    void destructorDropsWaitingJobs();
    void nothingIsDeliveredAfterDestruction();
    void deletingTheManagerInASlotIsSafe();
    void channelDropsResultsOnceItIsClosed();
};

void TestPdfRenderManagerOrder::higherPriorityStartsEarlier()
{
    Bench bench;
    bench.occupyAllThreads();
    const int occupied = bench.engine.callCount();
    const QList<int> priorities{0, 20, 8, -1, 20};
    for (qsizetype i = 0; i < priorities.size(); ++i) {
        bench.manager->requestPages({page(1, static_cast<qint32>(i))}, {QSize(10, 10)},
                                    Purpose::PageView, 0, priorities.at(i));
    }
    // One thread works through the queue while the others stay occupied.
    bench.engine.letGo();
    for (qsizetype i = 0; i < priorities.size(); ++i) {
        bench.engine.waitForCall();
        bench.engine.letGo();
    }
    bench.engine.letGo(occupied);
    bench.finish();
    QList<qint32> started;
    const auto calls = bench.engine.calls();
    for (std::size_t i = static_cast<std::size_t>(occupied); i < calls.size(); ++i) {
        started.append(calls.at(i).sources.front().pageIndex);
    }
    QCOMPARE(started, (QList<qint32>{1, 4, 2, 0, 3}));
}

void TestPdfRenderManagerOrder::singlePageHasThePriorityOfAPageView()
{
    Bench bench;
    bench.occupyAllThreads();
    const int occupied = bench.engine.callCount();
    const QSize size(10, 10);
    bench.manager->requestPages({page(1, 0)}, {size}, Purpose::PageView, 0, 19);
    bench.manager->requestPage(page(1, 1), size, Purpose::PageView, 0);
    bench.manager->requestPages({page(1, 2)}, {size}, Purpose::PageView, 0, 21);
    bench.engine.letGo();
    QList<qint32> started;
    for (int i = 0; i < 3; ++i) {
        bench.engine.waitForCall();
        started.append(bench.engine.calls().back().sources.front().pageIndex);
        bench.engine.letGo();
    }
    bench.engine.letGo(occupied);
    bench.finish();
    QCOMPARE(started, (QList<qint32>{2, 1, 0}));
}

void TestPdfRenderManagerOrder::equalPrioritiesStartInOrder()
{
    Bench bench;
    bench.occupyAllThreads();
    const int occupied = bench.engine.callCount();
    for (qint32 i = 0; i < 6; ++i) {
        bench.manager->requestPage(page(1, i), QSize(10, 10), Purpose::PageView, 0);
    }
    bench.engine.letGo();
    for (int i = 0; i < 6; ++i) {
        bench.engine.waitForCall();
        QCOMPARE(bench.engine.calls().back().sources.front().pageIndex, i);
        bench.engine.letGo();
    }
    bench.engine.letGo(occupied);
    bench.finish();
}

void TestPdfRenderManagerOrder::idleThreadsTakeTheFirstRequestsFirst()
{
    Bench bench;
    bench.occupyAllThreads();
    const int threads = bench.engine.callCount();
    bench.engine.letGo(threads);
    QVERIFY(bench.pool()->waitForDone());

    // All threads are there and wait for work, which the first requests of the burst bring.
    constexpr int kBurst = 8;
    for (qint32 i = 0; i < kBurst; ++i) {
        bench.manager->requestPage(page(2, i), QSize(10, 10), Purpose::PageView, 0);
    }
    QSet<qint32> started;
    for (int i = 0; i < threads; ++i) {
        bench.engine.waitForCall();
    }
    const auto calls = bench.engine.calls();
    for (std::size_t i = static_cast<std::size_t>(threads); i < calls.size(); ++i) {
        started.insert(calls.at(i).sources.front().pageIndex);
    }
    QSet<qint32> first;
    for (qint32 i = 0; i < threads; ++i) {
        first.insert(i);
    }
    QCOMPARE(started, first);
    bench.engine.letGo(kBurst);
    bench.finish();
}

void TestPdfRenderManagerOrder::noMoreCallsAtOnceThanThreads()
{
    Bench bench;
    bench.occupyAllThreads();
    const int threads = bench.pool()->maxThreadCount();
    for (qint32 i = 0; i < 20; ++i) {
        bench.manager->requestPage(page(1, i), QSize(10, 10), Purpose::PageView, 0);
    }
    bench.engine.letGo(threads + 20);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), threads + 20);
    QCOMPARE(bench.engine.mostAtOnce(), threads);
}

void TestPdfRenderManagerOrder::cancelledJobThatRunsDeliversNothing()
{
    Bench bench;
    bench.engine.holdCalls();
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.engine.waitForCall();
    bench.manager->cancelAll();
    bench.engine.letGo();
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 1);
    QVERIFY(bench.deliveries.isEmpty());
}

void TestPdfRenderManagerOrder::cancelledJobThatIsDoneDeliversNothing()
{
    Bench bench;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.pool()->waitForDone();
    bench.manager->cancelAll();
    bench.finish();
    QVERIFY(bench.deliveries.isEmpty());
}

void TestPdfRenderManagerOrder::cancelledJobThatWaitsIsNeverStarted()
{
    Bench bench;
    bench.occupyAllThreads();
    const int occupied = bench.engine.callCount();
    for (qint32 i = 0; i < 5; ++i) {
        bench.manager->requestPage(page(1, i), QSize(10, 10), Purpose::PageView, 0);
    }
    bench.manager->cancelAll();
    bench.engine.letGo(occupied + 5);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), occupied);
    QVERIFY(bench.deliveries.isEmpty());
}

void TestPdfRenderManagerOrder::cancelledResultIsNotCached()
{
    Bench bench;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.pool()->waitForDone();
    bench.manager->cancelAll();
    bench.finish();
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 2);
}

void TestPdfRenderManagerOrder::requestAfterCancellationIsAnswered()
{
    Bench bench;
    bench.engine.holdCalls();
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.engine.waitForCall();
    bench.manager->cancelAll();
    const quint64 id = bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.engine.letGo(2);
    bench.finish();
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{id});
    QVERIFY(!bench.deliveries.front().failed);
}

void TestPdfRenderManagerOrder::pageFromTheCacheArrivesDespiteCancellation()
{
    Bench bench;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    bench.deliveries.clear();
    const quint64 id = bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.manager->cancelAll();
    bench.finish();
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{id});
}

void TestPdfRenderManagerOrder::cancellingInASlotStopsTheRestOfTheBatch()
{
    Bench bench;
    connect(bench.manager.get(), &PdfRenderManager::pageRendered, bench.manager.get(),
            &PdfRenderManager::cancelAll);
    const QSize size(10, 10);
    bench.manager->requestPages({page(1, 0), page(2, 1), page(3, 2)}, {size, size, size},
                                Purpose::PageView, 0, 0);
    bench.finish();
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{1});
}

void TestPdfRenderManagerOrder::cancellingReachesTheEngine()
{
    Bench bench;
    bench.engine.holdCalls();
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.engine.waitForCall();
    const PdfCancelFlag cancel = bench.engine.calls().front().cancel;
    QVERIFY(!cancel.isSet());
    bench.manager->cancelAll();
    QVERIFY(cancel.isSet());
    bench.engine.letGo();
    bench.finish();
}

void TestPdfRenderManagerOrder::cancellingLeavesLaterRequestsAlone()
{
    Bench bench;
    bench.manager->cancelAll();
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    QVERIFY(!bench.engine.calls().front().cancel.isSet());
    QCOMPARE(bench.deliveries.size(), 1);
}

void TestPdfRenderManagerOrder::destructorReachesTheEngine()
{
    FakeEngine engine;
    engine.holdCalls();
    auto manager = std::make_unique<PdfRenderManager>(nullptr, engine.function());
    manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    engine.waitForCall();
    const PdfCancelFlag cancel = engine.calls().front().cancel;
    engine.paint = [&](const QList<PdfSourcePage> &, const QList<QSize> &, QStringList *) {
        // What the engine does with a page that takes long.
        while (!cancel.isSet()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return QList<QImage>();
    };
    engine.letGo();
    manager.reset();
    QVERIFY(cancel.isSet());
}

void TestPdfRenderManagerOrder::destructorWaitsForRunningJobs()
{
    FakeEngine engine;
    engine.holdCalls();
    std::binary_semaphore destroyed(0);
    std::atomic<bool> finished{false};
    std::atomic<bool> outlivedTheManager{false};
    engine.paint = [&](const QList<PdfSourcePage> &, const QList<QSize> &, QStringList *) {
        // Gives a destructor that does not wait the time to get ahead.
        outlivedTheManager = destroyed.try_acquire_for(std::chrono::milliseconds(100));
        finished = true;
        return QList<QImage>();
    };
    auto manager = std::make_unique<PdfRenderManager>(nullptr, engine.function());
    connect(manager.get(), &QObject::destroyed, this, [&destroyed] { destroyed.release(); });
    manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    engine.waitForCall();
    engine.letGo();
    manager.reset();
    QVERIFY(finished);
    QVERIFY(!outlivedTheManager);
}

void TestPdfRenderManagerOrder::destructorDropsWaitingJobs()
{
    CountedJobs jobs;
    const int threads = jobs.manager->findChild<QThreadPool *>()->maxThreadCount();
    for (qint32 i = 0; i < threads + 50; ++i) {
        jobs.manager->requestPage(page(1, i), QSize(10, 10), Purpose::PageView, 0);
    }
    for (int i = 0; i < threads; ++i) {
        jobs.engine.waitForCall();
    }
    jobs.destroyWhileRunning(threads);
    QCOMPARE(jobs.engine.callCount(), threads);
    QVERIFY(!jobs.isAnyJobLeft());
}

void TestPdfRenderManagerOrder::nothingIsDeliveredAfterDestruction()
{
    Bench bench;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    bench.deliveries.clear();

    // A result from the cache, one that waits for its delivery, and one still being rendered.
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.manager->requestPage(page(2, 1), QSize(10, 10), Purpose::PageView, 0);
    bench.pool()->waitForDone();
    bench.engine.waitForCall();
    bench.engine.waitForCall();
    bench.engine.holdCalls();
    bench.manager->requestPage(page(3, 2), QSize(10, 10), Purpose::PageView, 0);
    bench.engine.waitForCall();
    bench.engine.letGo();
    bench.manager.reset();
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCOMPARE(bench.engine.callCount(), 3);
    QVERIFY(bench.deliveries.isEmpty());
}

void TestPdfRenderManagerOrder::deletingTheManagerInASlotIsSafe()
{
    Bench bench;
    connect(bench.manager.get(), &PdfRenderManager::pageRendered, this,
            [&bench] { bench.manager.reset(); });
    const QSize size(10, 10);
    bench.manager->requestPages({page(1, 0), page(2, 1)}, {size, size}, Purpose::PageView, 0, 0);
    bench.pool()->waitForDone();
    QCoreApplication::sendPostedEvents(bench.manager.get(), QEvent::MetaCall);
    QVERIFY(!bench.manager);
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{1});
}

void TestPdfRenderManagerOrder::channelDropsResultsOnceItIsClosed()
{
    QObject receiver;
    int calls = 0;
    PageRenderChannel channel(&receiver, [&calls] { ++calls; });
    channel.post({});
    QCOMPARE(calls, 0);
    QCoreApplication::sendPostedEvents(&receiver, QEvent::MetaCall);
    QCOMPARE(calls, 1);
    QVERIFY(channel.take().has_value());
    QVERIFY(!channel.take().has_value());
    channel.post({});
    channel.close();
    QVERIFY(!channel.take().has_value());
    channel.post({});
    QVERIFY(!channel.take().has_value());
    QCoreApplication::sendPostedEvents(&receiver, QEvent::MetaCall);
    // The second result was announced before it was dropped.
    QCOMPARE(calls, 2);
}

QTEST_GUILESS_MAIN(TestPdfRenderManagerOrder)
#include "tst_pdf_render_manager_order.moc"
