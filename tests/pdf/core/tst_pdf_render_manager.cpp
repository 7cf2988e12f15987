#include "pdf/core/pdf_render_manager.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QSet>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <semaphore>
#include <thread>
#include <vector>

namespace {

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
    };

    ~FakeEngine() { Q_ASSERT(m_running == 0); }

    PdfPageRenderFunction function()
    {
        return [this](const QList<PdfSourcePage> &sources, const QList<QSize> &sizes,
                      QStringList *errors) { return render(sources, sizes, errors); };
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
    QList<QImage> render(const QList<PdfSourcePage> &sources, const QList<QSize> &sizes,
                         QStringList *errors)
    {
        const int running = ++m_running;
        int most = m_mostAtOnce;
        while (most < running && !m_mostAtOnce.compare_exchange_weak(most, running)) {
        }
        {
            const std::lock_guard lock(m_mutex);
            m_calls.push_back({sources, sizes, std::this_thread::get_id()});
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

PdfPageRecord page(PdfPageId id, qint32 sourceIndex = 0)
{
    PdfPageRecord record;
    record.id = id;
    record.sourcePath = QStringLiteral("/documents/report.pdf");
    record.password = QStringLiteral("secret");
    record.sourcePageIndex = sourceIndex;
    record.pageSize = QSizeF(595, 842);
    return record;
}

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
class Bench final
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

} // namespace

class TestPdfRenderManager final : public QObject
{
    Q_OBJECT

private slots:
    // Requests.
    void typesAreRegisteredUnderTheirNames();
    void signalsStandInTheirOrder();
    void poolHasTwoToFourThreadsThatExpire();
    void identifiersCountEveryPageFromOne();
    void mismatchedListsGiveZerosAndNoWork();
    void emptyRequestGivesNothing();
    void emptySizesGiveAnIdentifierAndNoSignal();
    void onlyEmptySizesMakeNoCall();
    void onePageOfThreeWithAnEmptySizeYieldsTwoSignals();
    void requestOfManyPagesIsOneCall();
    void sourcesAreHandedOverComplete();
    void renderingRunsOnAnotherThreadAndSignalsOnTheManagers();
    void resultsCarryWhatWasAskedFor();
    void resultsOfABatchComeInItsOrder();
    void defaultRenderFunctionIsTheEngine();

    // Cache.
    void cachedPageIsDeliveredAfterTheCallHasReturned();
    void cachedPageNeverReachesTheEngine();
    void pageIsCachedBeforeItsSignalIsSent();
    void mixedRequestAsksTheEngineForTheMissesOnly();
    void twoRequestsBeforeTheResultBothReachTheEngine();
    void duplicateOfAPageIsServedFromTheCache();
    void blankPagesOfOneSizeShareAnImage();
    void whatChangesThePictureIsPartOfTheKey_data();
    void whatChangesThePictureIsPartOfTheKey();
    void pathsWithPlaceMarkersAreKeptApart();
    void pageBeyondTheBoundIsDeliveredButNotCached();
    void largestPageWithinTheBoundIsCached();
    void leastRecentlyUsedPageIsRenderedAgain();
    void clearCacheForgetsAllImages();

    // Failures.
    void failedPageIsReportedAndTheOthersArrive();
    void failedPageIsNotCached();
    void missingImagesAndMessagesCountAsFailures();

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
    void destructorWaitsForRunningJobs();
    void destructorDropsWaitingJobs();
    void nothingIsDeliveredAfterDestruction();
    void deletingTheManagerInASlotIsSafe();
    void channelDropsResultsOnceItIsClosed();
};

void TestPdfRenderManager::typesAreRegisteredUnderTheirNames()
{
    const Bench bench;
    QCOMPARE(QMetaType::fromName("PdfPageId"), QMetaType::fromType<quint64>());
    QCOMPARE(QMetaType::fromName("PdfRenderPurpose"), QMetaType::fromType<Purpose>());
    QCOMPARE(static_cast<qint32>(Purpose::Thumbnail), 0);
    QCOMPARE(static_cast<qint32>(Purpose::PageView), 1);
}

void TestPdfRenderManager::signalsStandInTheirOrder()
{
    const QMetaObject &meta = PdfRenderManager::staticMetaObject;
    QList<QByteArray> names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        if (meta.method(i).methodType() == QMetaMethod::Signal) {
            names.append(meta.method(i).methodSignature());
        }
    }
    QCOMPARE(names,
             (QList<QByteArray>{
                 "pageRendered(PdfPageId,QSize,PdfRenderPurpose,qulonglong,qulonglong,QImage)",
                 "pageRenderFailed(PdfPageId,PdfRenderPurpose,qulonglong,QString)"}));
}

void TestPdfRenderManager::poolHasTwoToFourThreadsThatExpire()
{
    const Bench bench;
    QVERIFY(bench.pool() != QThreadPool::globalInstance());
    QCOMPARE(bench.pool()->maxThreadCount(), std::clamp(QThread::idealThreadCount() - 1, 2, 4));
    QCOMPARE(bench.pool()->expiryTimeout(), 15000);
}

void TestPdfRenderManager::identifiersCountEveryPageFromOne()
{
    Bench bench;
    const QSize size(10, 10);
    QCOMPARE(
        bench.manager->requestPages({page(1), page(2, 1)}, {size, size}, Purpose::PageView, 0, 0),
        (QList<quint64>{1, 2}));
    QCOMPARE(bench.manager->requestPage(page(3, 2), size, Purpose::PageView, 0), 3U);
    bench.finish();
    // A page from the cache and a page without a size count as well.
    QCOMPARE(
        bench.manager->requestPages({page(1), page(2)}, {size, QSize()}, Purpose::PageView, 0, 0),
        (QList<quint64>{4, 5}));
    QCOMPARE(bench.manager->requestPage(page(4, 3), size, Purpose::PageView, 0), 6U);
    bench.finish();
}

void TestPdfRenderManager::mismatchedListsGiveZerosAndNoWork()
{
    Bench bench;
    QCOMPARE(
        bench.manager->requestPages({page(1), page(2)}, {QSize(10, 10)}, Purpose::PageView, 0, 0),
        (QList<quint64>{0, 0}));
    QCOMPARE(bench.manager->requestPages({page(1)}, {}, Purpose::PageView, 0, 0),
             QList<quint64>{0});
    QCOMPARE(bench.manager->requestPages({}, {QSize(10, 10)}, Purpose::PageView, 0, 0),
             QList<quint64>());
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 0);
    QVERIFY(bench.deliveries.isEmpty());
    // No identifier was used up.
    QCOMPARE(bench.manager->requestPage(page(1), QSize(), Purpose::PageView, 0), 1U);
}

void TestPdfRenderManager::emptyRequestGivesNothing()
{
    Bench bench;
    QCOMPARE(bench.manager->requestPages({}, {}, Purpose::PageView, 0, 0), QList<quint64>());
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 0);
}

void TestPdfRenderManager::emptySizesGiveAnIdentifierAndNoSignal()
{
    Bench bench;
    quint64 expected = 0;
    for (const QSize size : {QSize(), QSize(0, 10), QSize(10, 0), QSize(-5, 10), QSize(10, -5)}) {
        QCOMPARE(bench.manager->requestPage(page(1), size, Purpose::PageView, 0), ++expected);
    }
    bench.finish();
    QVERIFY(bench.deliveries.isEmpty());
}

void TestPdfRenderManager::onlyEmptySizesMakeNoCall()
{
    Bench bench;
    const QList<quint64> ids = bench.manager->requestPages(
        {page(1), page(2)}, {QSize(), QSize(0, 5)}, Purpose::PageView, 0, 0);
    QCOMPARE(ids, (QList<quint64>{1, 2}));
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 0);
}

void TestPdfRenderManager::onePageOfThreeWithAnEmptySizeYieldsTwoSignals()
{
    Bench bench;
    const QList<quint64> ids = bench.manager->requestPages(
        {page(1, 0), page(2, 1), page(3, 2)}, {QSize(10, 10), QSize(0, 10), QSize(10, 10)},
        Purpose::Thumbnail, 0, 0);
    QCOMPARE(ids, (QList<quint64>{1, 2, 3}));
    bench.finish();
    QCOMPARE(bench.deliveredRequests(), (QList<quint64>{1, 3}));
    QCOMPARE(bench.deliveries.at(1).pageId, 3U);
}

void TestPdfRenderManager::requestOfManyPagesIsOneCall()
{
    Bench bench;
    QList<PdfPageRecord> pages;
    QList<QSize> sizes;
    for (int i = 0; i < 20; ++i) {
        pages.append(page(static_cast<PdfPageId>(i) + 1, i));
        sizes.append(QSize(10 + i, 20));
    }
    bench.manager->requestPages(pages, sizes, Purpose::Thumbnail, 0, 8);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 1);
    QCOMPARE(bench.engine.calls().front().sizes, sizes);
    QCOMPARE(bench.deliveries.size(), 20);
}

void TestPdfRenderManager::sourcesAreHandedOverComplete()
{
    Bench bench;
    PdfPageRecord turned = page(1, 7);
    turned.rotation = 270;
    PdfPageRecord blank;
    blank.id = 2;
    blank.pageSize = QSizeF(300, 400);
    blank.origin = PdfPageOrigin::Blank;
    bench.manager->requestPages({turned, blank}, {QSize(20, 10), QSize(30, 40)}, Purpose::Thumbnail,
                                0, 0);
    bench.finish();
    const QList<PdfSourcePage> sources = bench.engine.calls().front().sources;
    QCOMPARE(sources.size(), 2);
    QCOMPARE(sources.at(0).filePath, QStringLiteral("/documents/report.pdf"));
    QCOMPARE(sources.at(0).password, QStringLiteral("secret"));
    QCOMPARE(sources.at(0).pageIndex, 7);
    QCOMPARE(sources.at(0).rotation, 270);
    QCOMPARE(sources.at(0).pageSize, QSizeF(595, 842));
    QVERIFY(!sources.at(0).isBlank);
    QVERIFY(sources.at(1).filePath.isEmpty());
    QCOMPARE(sources.at(1).pageIndex, -1);
    QVERIFY(sources.at(1).isBlank);
}

void TestPdfRenderManager::renderingRunsOnAnotherThreadAndSignalsOnTheManagers()
{
    Bench bench;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    QVERIFY(bench.engine.calls().front().thread != std::this_thread::get_id());
    QCOMPARE(bench.deliveries.size(), 1);
    QVERIFY(bench.deliveries.front().onOwnThread);
}

void TestPdfRenderManager::resultsCarryWhatWasAskedFor()
{
    Bench bench;
    // The second round comes from the cache.
    for (const quint64 revision : {quint64(77), quint64(1) << 40}) {
        bench.deliveries.clear();
        const quint64 id =
            bench.manager->requestPage(page(5, 3), QSize(12, 34), Purpose::Thumbnail, revision);
        bench.finish();
        QCOMPARE(bench.deliveries.size(), 1);
        const Delivery &delivery = bench.deliveries.front();
        QVERIFY(!delivery.failed);
        QCOMPARE(delivery.pageId, 5U);
        QCOMPARE(delivery.size, QSize(12, 34));
        QCOMPARE(delivery.purpose, Purpose::Thumbnail);
        QCOMPARE(delivery.requestId, id);
        QCOMPARE(delivery.revision, revision);
        QCOMPARE(delivery.image, FakeEngine::pageImage(page(5, 3).toSourcePage(), QSize(12, 34)));
    }
    QCOMPARE(bench.engine.callCount(), 1);
}

void TestPdfRenderManager::resultsOfABatchComeInItsOrder()
{
    Bench bench;
    QList<PdfPageRecord> pages;
    for (const int index : {9, 2, 5, 7}) {
        pages.append(page(static_cast<PdfPageId>(index), index));
    }
    const QList<quint64> ids =
        bench.manager->requestPages(pages, QList<QSize>(4, QSize(10, 10)), Purpose::PageView, 0, 0);
    bench.finish();
    QCOMPARE(bench.deliveredRequests(), ids);
    for (qsizetype i = 0; i < pages.size(); ++i) {
        QCOMPARE(bench.deliveries.at(i).pageId, pages.at(i).id);
        QCOMPARE(bench.deliveries.at(i).image,
                 FakeEngine::pageImage(pages.at(i).toSourcePage(), QSize(10, 10)));
    }
}

void TestPdfRenderManager::defaultRenderFunctionIsTheEngine()
{
    PdfRenderManager manager;
    QSignalSpy rendered(&manager, &PdfRenderManager::pageRendered);
    QSignalSpy failed(&manager, &PdfRenderManager::pageRenderFailed);
    PdfPageRecord blank;
    blank.id = 1;
    blank.pageSize = QSizeF(100, 200);
    blank.origin = PdfPageOrigin::Blank;
    PdfPageRecord missing = page(2);
    missing.sourcePath = QStringLiteral("/documents/that/are/not/there.pdf");
    manager.requestPages({blank, missing}, {QSize(50, 100), QSize(50, 100)}, Purpose::PageView, 0,
                         0);
    QTRY_COMPARE(rendered.size() + failed.size(), 2);
    QCOMPARE(rendered.size(), 1);
    const auto image = rendered.front().at(5).value<QImage>();
    QCOMPARE(image.size(), QSize(50, 100));
    QCOMPARE(image.pixelColor(25, 50), QColor(Qt::white));
    QVERIFY(!failed.front().at(3).toString().isEmpty());
}

void TestPdfRenderManager::cachedPageIsDeliveredAfterTheCallHasReturned()
{
    Bench bench;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 1);
    bench.finish();
    bench.deliveries.clear();
    const quint64 id = bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 2);
    QVERIFY(bench.deliveries.isEmpty());
    QCoreApplication::sendPostedEvents(bench.manager.get(), QEvent::MetaCall);
    QCOMPARE(bench.deliveredRequests(), QList<quint64>{id});
    QVERIFY(bench.deliveries.front().onOwnThread);
}

void TestPdfRenderManager::cachedPageNeverReachesTheEngine()
{
    Bench bench;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 1);
    bench.finish();
    for (int i = 0; i < 5; ++i) {
        bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 1);
    }
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 1);
    QCOMPARE(bench.deliveries.size(), 6);
}

void TestPdfRenderManager::pageIsCachedBeforeItsSignalIsSent()
{
    Bench bench;
    connect(
        bench.manager.get(), &PdfRenderManager::pageRendered, bench.manager.get(),
        [&bench] { bench.manager->requestPage(page(2), QSize(10, 10), Purpose::PageView, 0); },
        Qt::SingleShotConnection);
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 1);
    QCOMPARE(bench.deliveredRequests(), (QList<quint64>{1, 2}));
}

void TestPdfRenderManager::mixedRequestAsksTheEngineForTheMissesOnly()
{
    Bench bench;
    const QSize size(10, 10);
    bench.manager->requestPage(page(2, 1), size, Purpose::PageView, 1);
    bench.finish();
    bench.deliveries.clear();
    const QList<quint64> ids = bench.manager->requestPages(
        {page(1, 0), page(2, 1), page(3, 2)}, {size, size, size}, Purpose::PageView, 1, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 2);
    const QList<PdfSourcePage> misses = bench.engine.calls().back().sources;
    QCOMPARE(misses.size(), 2);
    QCOMPARE(misses.at(0).pageIndex, 0);
    QCOMPARE(misses.at(1).pageIndex, 2);
    QList<quint64> delivered = bench.deliveredRequests();
    std::sort(delivered.begin(), delivered.end());
    QCOMPARE(delivered, ids);
}

void TestPdfRenderManager::twoRequestsBeforeTheResultBothReachTheEngine()
{
    Bench bench;
    std::atomic<int> calls{0};
    bench.engine.paint = [&calls](const QList<PdfSourcePage> &, const QList<QSize> &sizes,
                                  QStringList *) {
        QImage image(sizes.front(), QImage::Format_RGB32);
        image.fill(++calls == 1 ? Qt::red : Qt::blue);
        return QList<QImage>{image};
    };
    const auto first = bench.manager->requestPage(page(1), QSize(9, 9), Purpose::PageView, 0);
    bench.pool()->waitForDone();
    const auto second = bench.manager->requestPage(page(1), QSize(9, 9), Purpose::PageView, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 2);
    QCOMPARE(bench.deliveredRequests(), (QList<quint64>{first, second}));

    bench.manager->requestPage(page(1), QSize(9, 9), Purpose::PageView, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 2);
    QCOMPARE(bench.deliveries.back().image.pixelColor(4, 4), QColor(Qt::blue));
}

void TestPdfRenderManager::duplicateOfAPageIsServedFromTheCache()
{
    Bench bench;
    const PdfPageRecord original = page(1, 4);
    PdfPageRecord duplicate = original;
    duplicate.id = 2;
    duplicate.origin = PdfPageOrigin::Duplicate;
    duplicate.changed = true;
    bench.manager->requestPage(original, QSize(10, 10), Purpose::PageView, 1);
    bench.finish();
    bench.manager->requestPage(duplicate, QSize(10, 10), Purpose::PageView, 2);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 1);
    QCOMPARE(bench.deliveries.size(), 2);
    QCOMPARE(bench.deliveries.at(1).pageId, 2U);
    QCOMPARE(bench.deliveries.at(1).image, bench.deliveries.at(0).image);
}

void TestPdfRenderManager::blankPagesOfOneSizeShareAnImage()
{
    Bench bench;
    PdfPageRecord blank;
    blank.id = 1;
    blank.origin = PdfPageOrigin::Blank;
    blank.pageSize = QSizeF(595, 842);
    bench.manager->requestPage(blank, QSize(10, 14), Purpose::PageView, 1);
    bench.finish();
    blank.id = 2;
    bench.manager->requestPage(blank, QSize(10, 14), Purpose::PageView, 1);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 1);
    QCOMPARE(bench.deliveries.size(), 2);
}

void TestPdfRenderManager::whatChangesThePictureIsPartOfTheKey_data()
{
    QTest::addColumn<PdfPageRecord>("other");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<Purpose>("purpose");
    QTest::addColumn<bool>("shared");

    const QSize size(10, 20);
    const auto changed = [](const std::function<void(PdfPageRecord &)> &change) {
        PdfPageRecord record = page(1, 4);
        change(record);
        return record;
    };
    QTest::newRow("same page") << page(1, 4) << size << Purpose::PageView << true;
    QTest::newRow("other identifier") << page(2, 4) << size << Purpose::PageView << true;
    QTest::newRow("other password")
        << changed([](PdfPageRecord &record) { record.password = QStringLiteral("other"); }) << size
        << Purpose::PageView << true;
    QTest::newRow("other file") << changed([](PdfPageRecord &record) { record.sourcePath += u'x'; })
                                << size << Purpose::PageView << false;
    QTest::newRow("other page of the file") << page(1, 5) << size << Purpose::PageView << false;
    QTest::newRow("other rotation") << changed([](PdfPageRecord &record) { record.rotation = 180; })
                                    << size << Purpose::PageView << false;
    QTest::newRow("other width") << page(1, 4) << QSize(11, 20) << Purpose::PageView << false;
    QTest::newRow("other height") << page(1, 4) << QSize(10, 21) << Purpose::PageView << false;
    QTest::newRow("other purpose") << page(1, 4) << size << Purpose::Thumbnail << false;
    QTest::newRow("blank") << changed([](PdfPageRecord &record) {
        record.origin = PdfPageOrigin::Blank;
    }) << size << Purpose::PageView
                           << false;
}

void TestPdfRenderManager::whatChangesThePictureIsPartOfTheKey()
{
    QFETCH(PdfPageRecord, other);
    QFETCH(QSize, size);
    QFETCH(Purpose, purpose);
    QFETCH(bool, shared);
    Bench bench;
    bench.manager->requestPage(page(1, 4), QSize(10, 20), Purpose::PageView, 0);
    bench.finish();
    bench.manager->requestPage(other, size, purpose, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), shared ? 1 : 2);
    QCOMPARE(bench.deliveries.size(), 2);
}

void TestPdfRenderManager::pathsWithPlaceMarkersAreKeptApart()
{
    Bench bench;
    PdfPageRecord first = page(1, 3);
    first.sourcePath = QStringLiteral("/documents/100%2.pdf");
    PdfPageRecord second = page(2, 3);
    second.sourcePath = QStringLiteral("/documents/1003.pdf");
    bench.manager->requestPage(first, QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    bench.manager->requestPage(second, QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 2);
    bench.manager->requestPage(first, QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 2);
}

void TestPdfRenderManager::pageBeyondTheBoundIsDeliveredButNotCached()
{
    Bench bench;
    // One line of pixels more than 256 MiB; the memory is reserved but never touched.
    const QSize size(8192, 8193);
    bench.engine.paint = [](const QList<PdfSourcePage> &, const QList<QSize> &sizes,
                            QStringList *) {
        return QList<QImage>{QImage(sizes.front(), QImage::Format_RGB32)};
    };
    bench.manager->requestPage(page(1), size, Purpose::PageView, 0);
    bench.finish();
    QCOMPARE(bench.deliveries.size(), 1);
    QCOMPARE(bench.deliveries.front().image.size(), size);
    bench.deliveries.clear();
    bench.manager->requestPage(page(1), size, Purpose::PageView, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 2);
    QCOMPARE(bench.deliveries.size(), 1);
}

void TestPdfRenderManager::largestPageWithinTheBoundIsCached()
{
    Bench bench;
    const QSize size(8192, 8192);
    bench.engine.paint = [](const QList<PdfSourcePage> &, const QList<QSize> &sizes,
                            QStringList *) {
        return QList<QImage>{QImage(sizes.front(), QImage::Format_RGB32)};
    };
    for (int i = 0; i < 2; ++i) {
        bench.manager->requestPage(page(1), size, Purpose::PageView, 0);
        bench.finish();
    }
    QCOMPARE(bench.engine.callCount(), 1);
    QCOMPARE(bench.deliveries.size(), 2);
}

void TestPdfRenderManager::leastRecentlyUsedPageIsRenderedAgain()
{
    Bench bench;
    bench.engine.paint = [](const QList<PdfSourcePage> &, const QList<QSize> &sizes,
                            QStringList *) {
        return QList<QImage>{QImage(sizes.front(), QImage::Format_RGB32)};
    };
    // Two pages of 100 MiB fit, three do not.
    const QSize size(8192, 3200);
    const auto callsFor = [&bench, size](qint32 index) {
        const int before = bench.engine.callCount();
        bench.manager->requestPage(page(1, index), size, Purpose::PageView, 0);
        bench.finish();
        bench.deliveries.clear();
        return bench.engine.callCount() - before;
    };
    QCOMPARE(callsFor(0), 1);
    QCOMPARE(callsFor(1), 1);
    QCOMPARE(callsFor(0), 0);
    QCOMPARE(callsFor(2), 1);
    QCOMPARE(callsFor(0), 0);
    QCOMPARE(callsFor(2), 0);
    QCOMPARE(callsFor(1), 1);
}

void TestPdfRenderManager::clearCacheForgetsAllImages()
{
    Bench bench;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    bench.manager->clearCache();
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 2);
    QCOMPARE(bench.deliveries.size(), 2);
}

void TestPdfRenderManager::failedPageIsReportedAndTheOthersArrive()
{
    Bench bench;
    bench.engine.paint = [](const QList<PdfSourcePage> &sources, const QList<QSize> &sizes,
                            QStringList *errors) {
        QList<QImage> images;
        for (qsizetype i = 0; i < sources.size(); ++i) {
            const bool fails = sources.at(i).pageIndex == 1;
            images.append(fails ? QImage() : FakeEngine::pageImage(sources.at(i), sizes.at(i)));
            errors->append(fails ? QStringLiteral("bad page") : QString());
        }
        return images;
    };
    const QSize size(10, 10);
    const QList<quint64> ids = bench.manager->requestPages(
        {page(1, 0), page(2, 1), page(3, 2)}, {size, size, size}, Purpose::Thumbnail, 0, 0);
    bench.finish();
    QCOMPARE(bench.deliveredRequests(), ids);
    QVERIFY(!bench.deliveries.at(0).failed);
    QVERIFY(bench.deliveries.at(1).failed);
    QVERIFY(!bench.deliveries.at(2).failed);
    QCOMPARE(bench.deliveries.at(1).pageId, 2U);
    QCOMPARE(bench.deliveries.at(1).purpose, Purpose::Thumbnail);
    QCOMPARE(bench.deliveries.at(1).message, QStringLiteral("bad page"));
}

void TestPdfRenderManager::failedPageIsNotCached()
{
    Bench bench;
    std::atomic<bool> fails{true};
    bench.engine.paint = [&fails](const QList<PdfSourcePage> &sources, const QList<QSize> &sizes,
                                  QStringList *errors) {
        errors->append(fails ? QStringLiteral("bad page") : QString());
        return QList<QImage>{fails ? QImage()
                                   : FakeEngine::pageImage(sources.front(), sizes.front())};
    };
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    fails = false;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.finish();
    QCOMPARE(bench.engine.callCount(), 2);
    QVERIFY(bench.deliveries.at(0).failed);
    QVERIFY(!bench.deliveries.at(1).failed);
}

void TestPdfRenderManager::missingImagesAndMessagesCountAsFailures()
{
    Bench bench;
    bench.engine.paint = [](const QList<PdfSourcePage> &sources, const QList<QSize> &sizes,
                            QStringList *errors) {
        *errors = {QString(), QStringLiteral("ran out of paper")};
        return QList<QImage>{FakeEngine::pageImage(sources.front(), sizes.front())};
    };
    const QSize size(10, 10);
    bench.manager->requestPages({page(1, 0), page(2, 1), page(3, 2)}, {size, size, size},
                                Purpose::PageView, 0, 0);
    bench.finish();
    QCOMPARE(bench.deliveries.size(), 3);
    QVERIFY(!bench.deliveries.at(0).failed);
    QVERIFY(bench.deliveries.at(1).failed);
    QCOMPARE(bench.deliveries.at(1).message, QStringLiteral("ran out of paper"));
    QVERIFY(bench.deliveries.at(2).failed);
    QCOMPARE(bench.deliveries.at(2).message, QString());
}

void TestPdfRenderManager::higherPriorityStartsEarlier()
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

void TestPdfRenderManager::singlePageHasThePriorityOfAPageView()
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

void TestPdfRenderManager::equalPrioritiesStartInOrder()
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

void TestPdfRenderManager::idleThreadsTakeTheFirstRequestsFirst()
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

void TestPdfRenderManager::noMoreCallsAtOnceThanThreads()
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

void TestPdfRenderManager::cancelledJobThatRunsDeliversNothing()
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

void TestPdfRenderManager::cancelledJobThatIsDoneDeliversNothing()
{
    Bench bench;
    bench.manager->requestPage(page(1), QSize(10, 10), Purpose::PageView, 0);
    bench.pool()->waitForDone();
    bench.manager->cancelAll();
    bench.finish();
    QVERIFY(bench.deliveries.isEmpty());
}

void TestPdfRenderManager::cancelledJobThatWaitsIsNeverStarted()
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

void TestPdfRenderManager::cancelledResultIsNotCached()
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

void TestPdfRenderManager::requestAfterCancellationIsAnswered()
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

void TestPdfRenderManager::pageFromTheCacheArrivesDespiteCancellation()
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

void TestPdfRenderManager::cancellingInASlotStopsTheRestOfTheBatch()
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

void TestPdfRenderManager::destructorWaitsForRunningJobs()
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

void TestPdfRenderManager::destructorDropsWaitingJobs()
{
    FakeEngine engine;
    // Held by the manager, by every job, and here: tells how many jobs are left.
    const auto token = std::make_shared<int>(0);
    auto manager = std::make_unique<PdfRenderManager>(
        nullptr, [token, render = engine.function()](
                     const QList<PdfSourcePage> &sources, const QList<QSize> &sizes,
                     QStringList *errors) { return render(sources, sizes, errors); });
    engine.holdCalls();
    const int threads = manager->findChild<QThreadPool *>()->maxThreadCount();
    for (qint32 i = 0; i < threads + 50; ++i) {
        manager->requestPage(page(1, i), QSize(10, 10), Purpose::PageView, 0);
    }
    for (int i = 0; i < threads; ++i) {
        engine.waitForCall();
    }
    // The running calls end only after the waiting jobs are gone, which takes the destructor.
    std::thread release([&engine, token = std::weak_ptr<int>(token), threads] {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (token.use_count() > 2 + threads && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
        }
        engine.letGo(threads + 50);
    });
    manager.reset();
    release.join();
    QCOMPARE(engine.callCount(), threads);
    QCOMPARE(token.use_count(), 1L);
}

void TestPdfRenderManager::nothingIsDeliveredAfterDestruction()
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

void TestPdfRenderManager::deletingTheManagerInASlotIsSafe()
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

void TestPdfRenderManager::channelDropsResultsOnceItIsClosed()
{
    PdfRenderManager manager;
    PageRenderChannel channel(&manager);
    channel.post({});
    QVERIFY(channel.take().has_value());
    QVERIFY(!channel.take().has_value());
    channel.post({});
    channel.close();
    QVERIFY(!channel.take().has_value());
    channel.post({});
    QVERIFY(!channel.take().has_value());
}

QTEST_GUILESS_MAIN(TestPdfRenderManager)
#include "tst_pdf_render_manager.moc"
