// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/core/render_bench.h"

#include <QElapsedTimer>
#include <QSet>
#include <QTest>

using namespace RenderBench;

namespace {

constexpr QSize kSize(10, 10);

/// A bench on which a favoured page is being rendered and others have been asked for after it.
class FavouredBench final : public Bench
{
public:
    FavouredBench()
    {
        engine.holdCalls();
        manager->favourNextBatch();
        favouredId = ask(0);
        engine.waitForCall();
    }

    /// Asks for one page of the file.
    quint64 ask(qint32 sourceIndex, int priority = PdfRenderManager::kPageViewPriority)
    {
        return manager->requestPage(page(static_cast<PdfPageId>(sourceIndex) + 1, sourceIndex),
                                    kSize, Purpose::PageView, 0, priority);
    }

    /// The pages of the file in the order in which the engine was called for them.
    QList<qint32> started() const
    {
        QList<qint32> indexes;
        for (const FakeEngine::Call &call : engine.calls()) {
            indexes.append(call.sources.front().pageIndex);
        }
        return indexes;
    }

    /// Jobs that a thread was told of and that are not finished.
    int activeThreads() const { return pool()->activeThreadCount(); }

    quint64 favouredId = 0;
};

} // namespace

/// What a batch that is favoured does to those that are asked for after it.
class TestPdfRenderManagerHeadStart final : public QObject
{
    Q_OBJECT

private slots:
    void laterRequestsWaitForTheFavouredBatch();
    void laterRequestsStartWhenTheFavouredBatchIsDelivered();
    void failureOfTheFavouredPageEndsTheHeadStart();
    void headStartIsLimitedInTime();
    void onlyOneBatchIsFavoured();
    void favouringAgainEndsTheOldHeadStart();
    void cancellingEndsTheHeadStart();
    void cancellingForgetsWhatWasToBeFavoured();
    void pageFromTheCacheDoesNotUseUpTheHeadStart();
    void withheldRequestsKeepTheirPriorities();
    void destructorDropsWithheldJobs();
    void resultsOfEarlierRequestsDoNotEndTheHeadStart();
};

void TestPdfRenderManagerHeadStart::laterRequestsWaitForTheFavouredBatch()
{
    FavouredBench bench;
    QVERIFY(bench.pool()->maxThreadCount() > 1);
    bench.ask(1);
    bench.ask(2, 100);
    QCOMPARE(bench.activeThreads(), 1);

    // Nor do they start when it is rendered but not delivered yet.
    bench.engine.letGo();
    QVERIFY(bench.pool()->waitForDone());
    bench.ask(3);
    QCOMPARE(bench.activeThreads(), 0);
    QCOMPARE(bench.started(), QList<qint32>{0});

    bench.engine.letGo(3);
    bench.finish();
    bench.finish();
    QCOMPARE(bench.deliveries.size(), 4);
}

void TestPdfRenderManagerHeadStart::laterRequestsStartWhenTheFavouredBatchIsDelivered()
{
    FavouredBench bench;
    const quint64 second = bench.ask(1);
    QCOMPARE(bench.activeThreads(), 1);
    bench.engine.letGo();
    bench.finish();
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{bench.favouredId});
    QCOMPARE(bench.activeThreads(), 1);
    bench.engine.waitForCall();
    // The head start is over for what comes now, too.
    const quint64 third = bench.ask(2);
    QCOMPARE(bench.activeThreads(), 2);
    bench.engine.waitForCall();
    QCOMPARE(bench.started(), (QList<qint32>{0, 1, 2}));

    bench.engine.letGo(2);
    bench.finish();
    const QList<quint64> delivered = bench.deliveredRequests();
    QCOMPARE(QSet<quint64>(delivered.cbegin(), delivered.cend()),
             (QSet<quint64>{bench.favouredId, second, third}));
}

void TestPdfRenderManagerHeadStart::failureOfTheFavouredPageEndsTheHeadStart()
{
    FavouredBench bench;
    bench.engine.paint = [](const QList<PdfSourcePage> &sources, const QList<QSize> &,
                            QStringList *errors) {
        errors->append(QStringLiteral("broken"));
        return QList<QImage>(sources.size());
    };
    bench.ask(1);
    QCOMPARE(bench.activeThreads(), 1);
    bench.engine.letGo();
    bench.finish();
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{bench.favouredId});
    QVERIFY(bench.deliveries.front().failed);
    QCOMPARE(bench.activeThreads(), 1);
    bench.engine.waitForCall();
    QCOMPARE(bench.started(), (QList<qint32>{0, 1}));
    bench.engine.letGo();
    bench.finish();
}

void TestPdfRenderManagerHeadStart::headStartIsLimitedInTime()
{
    QElapsedTimer sinceTheRequest;
    sinceTheRequest.start();
    FavouredBench bench;
    bench.ask(1);
    QTRY_COMPARE(bench.started(), (QList<qint32>{0, 1}));
    // Timers of Qt may be early by a twentieth.
    QVERIFY(sinceTheRequest.elapsed() >= PdfRenderManager::kHeadStartMs * 19 / 20);
    QVERIFY(bench.deliveries.isEmpty());
    bench.engine.letGo(2);
    bench.finish();
    QCOMPARE(bench.deliveries.size(), 2);
}

void TestPdfRenderManagerHeadStart::onlyOneBatchIsFavoured()
{
    FavouredBench bench;
    bench.engine.letGo();
    bench.finish();
    bench.ask(1);
    bench.ask(2);
    QCOMPARE(bench.activeThreads(), 2);
    bench.engine.letGo(2);
    bench.finish();
    QCOMPARE(bench.deliveries.size(), 3);
}

void TestPdfRenderManagerHeadStart::favouringAgainEndsTheOldHeadStart()
{
    FavouredBench bench;
    bench.ask(1);
    QCOMPARE(bench.activeThreads(), 1);
    bench.manager->favourNextBatch();
    QCOMPARE(bench.activeThreads(), 2);
    bench.engine.waitForCall();

    // What comes next is favoured, and what follows it waits.
    bench.ask(2);
    bench.ask(3);
    bench.engine.letGo(2);
    bench.engine.waitForCall();
    QVERIFY(comesTrue([&bench] { return bench.activeThreads() == 1; }));
    QCOMPARE(bench.started(), (QList<qint32>{0, 1, 2}));
    bench.engine.letGo(2);
    bench.finish();
    bench.finish();
    QCOMPARE(bench.deliveries.size(), 4);
}

void TestPdfRenderManagerHeadStart::cancellingEndsTheHeadStart()
{
    FavouredBench bench;
    bench.ask(1);
    bench.manager->cancelAll();
    QCOMPARE(bench.activeThreads(), 1);
    const quint64 third = bench.ask(2);
    QCOMPARE(bench.activeThreads(), 2);
    bench.engine.waitForCall();
    bench.engine.letGo(2);
    bench.finish();
    QCOMPARE(bench.started(), (QList<qint32>{0, 2}));
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{third});
}

void TestPdfRenderManagerHeadStart::cancellingForgetsWhatWasToBeFavoured()
{
    Bench bench;
    bench.engine.holdCalls();
    bench.manager->favourNextBatch();
    bench.manager->cancelAll();
    bench.manager->requestPage(page(1, 0), kSize, Purpose::PageView, 0);
    bench.manager->requestPage(page(2, 1), kSize, Purpose::PageView, 0);
    QCOMPARE(bench.pool()->activeThreadCount(), 2);
    bench.engine.letGo(2);
    bench.finish();
    QCOMPARE(bench.deliveries.size(), 2);
}

void TestPdfRenderManagerHeadStart::pageFromTheCacheDoesNotUseUpTheHeadStart()
{
    Bench bench;
    bench.manager->requestPage(page(1, 0), kSize, Purpose::PageView, 0);
    bench.finish();
    bench.deliveries.clear();

    bench.engine.holdCalls();
    bench.manager->favourNextBatch();
    const quint64 cached = bench.manager->requestPage(page(1, 0), kSize, Purpose::PageView, 0);
    const quint64 empty = bench.manager->requestPage(page(2, 1), QSize(), Purpose::PageView, 0);
    const quint64 favoured = bench.manager->requestPage(page(3, 2), kSize, Purpose::PageView, 0);
    const quint64 later = bench.manager->requestPage(page(4, 3), kSize, Purpose::PageView, 0);
    QCOMPARE(bench.pool()->activeThreadCount(), 1);
    // The image that was there is delivered without ending what it did not begin.
    QCoreApplication::sendPostedEvents(bench.manager.get(), QEvent::MetaCall);
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{cached});
    QCOMPARE(bench.pool()->activeThreadCount(), 1);

    bench.engine.letGo(2);
    bench.finish();
    bench.finish();
    QCOMPARE(bench.deliveredRequests(), (QList<quint64>{cached, favoured, later}));
    QVERIFY(empty != 0);
}

void TestPdfRenderManagerHeadStart::withheldRequestsKeepTheirPriorities()
{
    FavouredBench bench;
    // A single thread, so that the order can be told.
    bench.pool()->setMaxThreadCount(1);
    const QList<int> priorities{0, 20, 8, -1, 20};
    QList<quint64> ids;
    for (qsizetype i = 0; i < priorities.size(); ++i) {
        ids.append(bench.ask(static_cast<qint32>(i) + 1, priorities.at(i)));
    }
    QCOMPARE(bench.started(), QList<qint32>{0});
    bench.engine.letGo(6);
    bench.finish();
    bench.finish();
    QCOMPARE(bench.started(), (QList<qint32>{0, 2, 5, 3, 1, 4}));
    QCOMPARE(bench.deliveredRequests(), (QList<quint64>{bench.favouredId, ids.at(1), ids.at(4),
                                                        ids.at(2), ids.at(0), ids.at(3)}));
}

void TestPdfRenderManagerHeadStart::destructorDropsWithheldJobs()
{
    CountedJobs jobs;
    jobs.manager->favourNextBatch();
    for (qint32 i = 0; i < 5; ++i) {
        jobs.manager->requestPage(page(1, i), kSize, Purpose::PageView, 0);
    }
    jobs.engine.waitForCall();
    jobs.destroyWhileRunning(1);
    QCOMPARE(jobs.engine.callCount(), 1);
    QVERIFY(!jobs.isAnyJobLeft());
    // Nothing is left of its timer.
    QTest::qWait(2 * PdfRenderManager::kHeadStartMs);
    QCOMPARE(jobs.engine.callCount(), 1);
}

void TestPdfRenderManagerHeadStart::resultsOfEarlierRequestsDoNotEndTheHeadStart()
{
    Bench bench;
    // Rendered, but not delivered yet.
    const quint64 earlier = bench.manager->requestPage(page(1, 0), kSize, Purpose::PageView, 0);
    QVERIFY(bench.pool()->waitForDone());
    bench.engine.holdCalls();
    bench.manager->favourNextBatch();
    bench.manager->requestPage(page(2, 1), kSize, Purpose::PageView, 0);
    bench.manager->requestPage(page(3, 2), kSize, Purpose::PageView, 0);
    QCoreApplication::sendPostedEvents(bench.manager.get(), QEvent::MetaCall);
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{earlier});
    QCOMPARE(bench.pool()->activeThreadCount(), 1);
    bench.engine.letGo(2);
    bench.finish();
    bench.finish();
    QCOMPARE(bench.deliveries.size(), 3);
}

QTEST_GUILESS_MAIN(TestPdfRenderManagerHeadStart)
#include "tst_pdf_render_manager_head_start.moc"
