// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_image_requests.h"

#include "tests/pdf/core/render_bench.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace RenderBench;
using Counting = PageImageRequests::Counting;
using Serving = PageImageRequests::Serving;
using WantedPage = PageImageRequests::WantedPage;

namespace {

constexpr QSize kSize{30, 40};
constexpr QSize kOtherSize{60, 80};
constexpr qint64 kBytes = 30 * 40 * 4;
constexpr qint64 kOtherBytes = 60 * 80 * 4;
constexpr quint64 kRevision = 7;

/// Page `id` of the document shows the page of that index.
WantedPage wanted(PdfPageId id, QSize size = kSize)
{
    return {page(id, static_cast<qint32>(id)), size};
}

WantedPage turned(PdfPageId id, QSize size = kSize)
{
    WantedPage result = wanted(id, size);
    result.record.rotation = 90;
    return result;
}

/// One image that the requests have let through.
struct Arrival
{
    PdfPageId id = 0;
    QImage image;
    QSize size;
    PdfPageAppearance appearance;
};

/// The requests of a view of thumbnails, on an engine that the test holds in its hand.
struct Fixture
{
    Fixture()
    {
        requests.setRenderManager(bench.manager.get());
        QObject::connect(&requests, &PageImageRequests::imageArrived, &requests,
                         [this](PdfPageId id, const QImage &image, QSize size,
                                const PdfPageAppearance &appearance) {
                             arrivals.append({id, image, size, appearance});
                         });
    }

    void request(const QList<WantedPage> &pages, Counting counting = Counting::Outstanding)
    {
        requests.request(pages, kRevision, 5, 1, counting);
    }

    /// Renders what was requested, but keeps the results from being delivered.
    void render() const { bench.pool()->waitForDone(); }

    /// From now on no page can be rendered.
    void breakPages()
    {
        bench.engine.paint = [](const QList<PdfSourcePage> &, const QList<QSize> &, QStringList *) {
            return QList<QImage>();
        };
    }

    Bench bench;
    PageImageRequests requests{Purpose::Thumbnail};
    QList<Arrival> arrivals;
};

} // namespace

/// What a view has asked a render manager for.
class TestPageImageRequests final : public QObject
{
    Q_OBJECT

private slots:
    // Results.
    void imageArrivesWithTheSizeAndTheLookThatWereAskedFor();
    void lateResultOfAnOvertakenRequestIsIgnored();
    void lateFailureOfAnOvertakenRequestIsIgnored();
    void resultOfAnotherSizeIsNotTaken();
    void resultsForAnotherPurposeAreIgnored();
    void withdrawnRequestIgnoresItsResult();
    void forgottenPageIgnoresItsResult();
    void resultsAfterEverythingWasForgottenAreIgnored();

    // What is requested.
    void pageUnderWayIsNotRequestedAgain();
    void anotherSizeOrLookIsRequested();
    void failedPageIsNotRequestedAgainUntilForgotten();
    void failuresThatAreKeptStay();
    void callsTakeSeveralPages();
    void revisionAndPurposeGoWithTheRequest();
    void nothingIsRequestedWithoutAManager();

    // Outstanding requests.
    void wantedRequestsAreNotStale();
    void requestOfAnotherSizeIsStaleUnlessItServes();
    void uncountedRequestsAreNeverStale();
    void withdrawnRequestIsStaleUntilItsResultComes();
    void failedRequestIsNoLongerOutstanding();
    void forgottenRequestsDoNotCount();
    void roomIsAnnouncedToAnOwnerWhoWaits();
    void uncountedResultsMakeNoRoom();

    // Changes of document and manager.
    void reconcilingWithdrawsWhatIsGoneOrDiffers();
    void reconcilingForgetsFailuresAndOutstandingRequests();
    void anotherManagerForgetsEverything();
    void pendingBytesFollowTheRequests();
};

void TestPageImageRequests::imageArrivesWithTheSizeAndTheLookThatWereAskedFor()
{
    Fixture f;
    f.request({turned(3)});
    QVERIFY(f.requests.isPending(3));
    QCOMPARE(f.requests.pendingCount(), 1);
    f.bench.finish();
    QCOMPARE(f.arrivals.size(), 1);
    QCOMPARE(f.arrivals.front().id, PdfPageId(3));
    QCOMPARE(f.arrivals.front().size, kSize);
    QVERIFY(f.arrivals.front().appearance == turned(3).record.appearance());
    QCOMPARE(f.arrivals.front().image,
             FakeEngine::pageImage(turned(3).record.toSourcePage(), kSize));
    QVERIFY(!f.requests.isPending(3));
}

void TestPageImageRequests::lateResultOfAnOvertakenRequestIsIgnored()
{
    Fixture f;
    f.request({wanted(1)});
    f.render();
    // Of the same size, so that nothing but the identifier tells the two apart.
    f.request({turned(1)});
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 2);
    QCOMPARE(f.arrivals.size(), 1);
    QCOMPARE(f.arrivals.front().image,
             FakeEngine::pageImage(turned(1).record.toSourcePage(), kSize));
}

void TestPageImageRequests::lateFailureOfAnOvertakenRequestIsIgnored()
{
    Fixture f;
    f.bench.engine.paint = [](const QList<PdfSourcePage> &sources, const QList<QSize> &sizes,
                              QStringList *) {
        return sources.front().rotation == 0
                   ? QList<QImage>()
                   : QList<QImage>{FakeEngine::pageImage(sources.front(), sizes.front())};
    };
    const QSignalSpy failed(&f.requests, &PageImageRequests::imageFailed);
    f.request({wanted(1)});
    f.render();
    f.request({turned(1)});
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 2);
    QVERIFY(failed.isEmpty());
    QVERIFY(!f.requests.hasFailed(1));
    QCOMPARE(f.arrivals.size(), 1);
}

void TestPageImageRequests::resultOfAnotherSizeIsNotTaken()
{
    Fixture f;
    f.request({wanted(1)});
    // The identifier of the request, the first one of its manager.
    emit f.bench.manager->pageRendered(1, kOtherSize, Purpose::Thumbnail, 1, kRevision,
                                       QImage(kOtherSize, QImage::Format_RGB32));
    QVERIFY(f.arrivals.isEmpty());
    QVERIFY(f.requests.isPending(1));
    f.bench.finish();
    QCOMPARE(f.arrivals.size(), 1);
    QCOMPARE(f.arrivals.front().size, kSize);
}

void TestPageImageRequests::resultsForAnotherPurposeAreIgnored()
{
    Fixture f;
    f.request({wanted(1)});
    emit f.bench.manager->pageRendered(1, kSize, Purpose::PageView, 1, kRevision,
                                       QImage(kSize, QImage::Format_RGB32));
    emit f.bench.manager->pageRenderFailed(1, Purpose::PageView, 1, QString());
    QVERIFY(f.arrivals.isEmpty());
    QVERIFY(!f.requests.hasFailed(1));
    QVERIFY(f.requests.isPending(1));
    QCOMPARE(f.requests.staleCount({}, Serving::AnySize), 1);
}

void TestPageImageRequests::withdrawnRequestIgnoresItsResult()
{
    Fixture f;
    f.request({wanted(1), wanted(2)});
    f.requests.withdraw(1);
    QVERIFY(!f.requests.isPending(1));
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 2);
    QCOMPARE(f.arrivals.size(), 1);
    QCOMPARE(f.arrivals.front().id, PdfPageId(2));
}

void TestPageImageRequests::forgottenPageIgnoresItsResult()
{
    Fixture f;
    f.request({wanted(1), wanted(2)});
    f.requests.forget(2);
    QVERIFY(!f.requests.isPending(2));
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 2);
    QCOMPARE(f.arrivals.size(), 1);
    QCOMPARE(f.arrivals.front().id, PdfPageId(1));
}

void TestPageImageRequests::resultsAfterEverythingWasForgottenAreIgnored()
{
    Fixture f;
    f.request({wanted(1), wanted(2)});
    f.requests.forgetAll();
    QCOMPARE(f.requests.pendingCount(), 0);
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 2);
    QVERIFY(f.arrivals.isEmpty());
}

void TestPageImageRequests::pageUnderWayIsNotRequestedAgain()
{
    Fixture f;
    f.request({wanted(1)});
    QVERIFY(f.requests.isSettled(wanted(1)));
    f.request({wanted(1), wanted(2)});
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 2);

    // Whether a finished image is kept is not for the requests to know.
    QVERIFY(!f.requests.isSettled(wanted(1)));
    f.request({wanted(1)});
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 3);
}

void TestPageImageRequests::anotherSizeOrLookIsRequested()
{
    Fixture f;
    f.request({wanted(1), wanted(2)});
    QVERIFY(!f.requests.isSettled(wanted(1, kOtherSize)));
    QVERIFY(!f.requests.isSettled(turned(2)));
    f.request({wanted(1, kOtherSize), turned(2)});
    QCOMPARE(f.requests.pendingCount(), 2);
    QVERIFY(f.requests.isSettled(wanted(1, kOtherSize)));
    QVERIFY(f.requests.isSettled(turned(2)));
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 4);
    QCOMPARE(f.arrivals.size(), 2);
}

void TestPageImageRequests::failedPageIsNotRequestedAgainUntilForgotten()
{
    Fixture f;
    f.breakPages();
    const QSignalSpy failed(&f.requests, &PageImageRequests::imageFailed);
    f.request({wanted(1), wanted(2)});
    f.bench.finish();
    QCOMPARE(failed.size(), 2);
    QVERIFY(f.requests.hasFailed(1));
    QVERIFY(!f.requests.isPending(1));
    QVERIFY(f.requests.isSettled(wanted(1, kOtherSize)));
    f.request({wanted(1), wanted(2)});
    QCOMPARE(f.requests.pendingCount(), 0);

    // Withdrawing concerns the request, not what is known of the page.
    f.requests.withdraw(1);
    QVERIFY(f.requests.hasFailed(1));
    f.requests.forget(1);
    f.request({wanted(1), wanted(2)});
    QVERIFY(f.requests.isPending(1));
    QVERIFY(!f.requests.isPending(2));
    f.requests.forgetFailures();
    f.request({wanted(2)});
    QVERIFY(f.requests.isPending(2));
}

void TestPageImageRequests::failuresThatAreKeptStay()
{
    Fixture f;
    f.breakPages();
    f.request({wanted(1), wanted(2)});
    f.bench.finish();
    f.requests.forgetFailures({2, 3});
    QVERIFY(!f.requests.hasFailed(1));
    QVERIFY(f.requests.hasFailed(2));
    QVERIFY(!f.requests.hasFailed(3));
}

void TestPageImageRequests::callsTakeSeveralPages()
{
    Fixture f;
    f.request({wanted(2)});
    f.requests.request({wanted(1), wanted(2), wanted(3), wanted(4), wanted(5), wanted(6)},
                       kRevision, 5, 2, Counting::Outstanding);
    QCOMPARE(f.requests.pendingCount(), 6);
    f.bench.finish();
    QList<QList<qint32>> calls;
    for (const FakeEngine::Call &call : f.bench.engine.calls()) {
        QList<qint32> indexes;
        for (const PdfSourcePage &source : call.sources) {
            indexes.append(source.pageIndex);
        }
        calls.append(indexes);
    }
    std::sort(calls.begin(), calls.end());
    // The page that was under way leaves no hole in a call.
    QCOMPARE(calls, (QList<QList<qint32>>{{1, 3}, {2}, {4, 5}, {6}}));
    QCOMPARE(f.arrivals.size(), 6);
}

void TestPageImageRequests::revisionAndPurposeGoWithTheRequest()
{
    Fixture f;
    f.request({wanted(1)});
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 1);
    QCOMPARE(f.bench.deliveries.front().revision, kRevision);
    QCOMPARE(f.bench.deliveries.front().purpose, Purpose::Thumbnail);
    QCOMPARE(f.bench.deliveries.front().size, kSize);
}

void TestPageImageRequests::nothingIsRequestedWithoutAManager()
{
    Fixture f;
    f.bench.manager.reset();
    QCOMPARE(f.requests.renderManager(), nullptr);
    f.request({wanted(1)});
    QCOMPARE(f.requests.pendingCount(), 0);
    QCOMPARE(f.requests.pendingBytes(), 0);
}

void TestPageImageRequests::wantedRequestsAreNotStale()
{
    Fixture f;
    f.request({wanted(1), wanted(2), wanted(3)});
    QCOMPARE(f.requests.staleCount({wanted(1), wanted(2), wanted(3)}, Serving::ThisSize), 0);
    QCOMPARE(f.requests.staleCount({wanted(2), wanted(9)}, Serving::ThisSize), 2);
    QCOMPARE(f.requests.staleCount({}, Serving::ThisSize), 3);
    f.bench.finish();
    QCOMPARE(f.requests.staleCount({}, Serving::ThisSize), 0);
}

void TestPageImageRequests::requestOfAnotherSizeIsStaleUnlessItServes()
{
    Fixture f;
    f.request({wanted(1)});
    QCOMPARE(f.requests.staleCount({wanted(1, kOtherSize)}, Serving::ThisSize), 1);
    QCOMPARE(f.requests.staleCount({wanted(1, kOtherSize)}, Serving::AnySize), 0);
    // Once it has been replaced it serves nobody.
    f.request({wanted(1, kOtherSize)});
    QCOMPARE(f.requests.staleCount({wanted(1, kOtherSize)}, Serving::ThisSize), 1);
    QCOMPARE(f.requests.staleCount({wanted(1, kOtherSize)}, Serving::AnySize), 1);
}

void TestPageImageRequests::uncountedRequestsAreNeverStale()
{
    Fixture f;
    f.request({wanted(1), wanted(2)}, Counting::Uncounted);
    f.request({wanted(3)});
    QCOMPARE(f.requests.pendingCount(), 3);
    QCOMPARE(f.requests.staleCount({}, Serving::AnySize), 1);
    // What is wanted and uncounted does not make up for what is stale.
    QCOMPARE(f.requests.staleCount({wanted(1), wanted(2)}, Serving::AnySize), 1);
    QCOMPARE(f.requests.staleCount({wanted(1), wanted(2)}, Serving::ThisSize), 1);
}

void TestPageImageRequests::withdrawnRequestIsStaleUntilItsResultComes()
{
    Fixture f;
    f.request({wanted(1)});
    f.requests.withdraw(1);
    QCOMPARE(f.requests.staleCount({wanted(1)}, Serving::AnySize), 1);
    f.bench.finish();
    QCOMPARE(f.requests.staleCount({wanted(1)}, Serving::AnySize), 0);
}

void TestPageImageRequests::failedRequestIsNoLongerOutstanding()
{
    Fixture f;
    f.breakPages();
    f.request({wanted(1)});
    f.bench.finish();
    QCOMPARE(f.requests.staleCount({}, Serving::AnySize), 0);
}

void TestPageImageRequests::forgottenRequestsDoNotCount()
{
    Fixture f;
    const QSignalSpy room(&f.requests, &PageImageRequests::roomAvailable);
    f.request({wanted(1), wanted(2)});
    f.requests.setWaiting(true);
    f.requests.forgetAll();
    QCOMPARE(f.requests.staleCount({}, Serving::AnySize), 0);
    f.request({wanted(3)});
    QCOMPARE(f.requests.staleCount({}, Serving::AnySize), 1);
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 3);
    QVERIFY(room.isEmpty());
}

void TestPageImageRequests::roomIsAnnouncedToAnOwnerWhoWaits()
{
    Fixture f;
    QList<int> staleAtRoom;
    connect(&f.requests, &PageImageRequests::roomAvailable, this, [&f, &staleAtRoom] {
        staleAtRoom.append(f.requests.staleCount({}, Serving::AnySize));
    });
    f.request({wanted(1)});
    f.bench.finish();
    QVERIFY(staleAtRoom.isEmpty());

    f.request({wanted(2), wanted(3)});
    f.requests.setWaiting(true);
    f.bench.finish();
    QCOMPARE(staleAtRoom, (QList<int>{1, 0}));

    f.request({wanted(4)});
    f.requests.setWaiting(false);
    f.bench.finish();
    QCOMPARE(staleAtRoom.size(), 2);
}

void TestPageImageRequests::uncountedResultsMakeNoRoom()
{
    Fixture f;
    const QSignalSpy room(&f.requests, &PageImageRequests::roomAvailable);
    f.request({wanted(1)}, Counting::Uncounted);
    f.requests.setWaiting(true);
    f.bench.finish();
    QCOMPARE(f.arrivals.size(), 1);
    QVERIFY(room.isEmpty());
}

void TestPageImageRequests::reconcilingWithdrawsWhatIsGoneOrDiffers()
{
    Fixture f;
    f.request({wanted(1), wanted(2), wanted(3)});
    const PdfPageRecord same = wanted(1).record;
    const PdfPageRecord other = turned(2).record;
    f.requests.reconcile([&same, &other](PdfPageId id) -> const PdfPageRecord * {
        return id == 1 ? &same : id == 2 ? &other : nullptr;
    });
    QVERIFY(f.requests.isPending(1));
    QVERIFY(!f.requests.isPending(2));
    QVERIFY(!f.requests.isPending(3));
    f.bench.finish();
    QCOMPARE(f.arrivals.size(), 1);
    QCOMPARE(f.arrivals.front().id, PdfPageId(1));
}

void TestPageImageRequests::reconcilingForgetsFailuresAndOutstandingRequests()
{
    Fixture f;
    f.breakPages();
    f.request({wanted(1)});
    f.bench.finish();
    f.request({wanted(2)});
    const PdfPageRecord first = wanted(1).record;
    const PdfPageRecord second = wanted(2).record;
    f.requests.reconcile([&](PdfPageId id) { return id == 1 ? &first : &second; });
    QVERIFY(!f.requests.hasFailed(1));
    QVERIFY(f.requests.isPending(2));
    QCOMPARE(f.requests.staleCount({}, Serving::AnySize), 0);
}

void TestPageImageRequests::anotherManagerForgetsEverything()
{
    Fixture f;
    f.breakPages();
    f.request({wanted(1)});
    f.bench.finish();
    f.request({wanted(2)});
    f.render();
    QVERIFY(f.requests.hasFailed(1));

    Bench other;
    f.requests.setRenderManager(other.manager.get());
    QCOMPARE(f.requests.renderManager(), other.manager.get());
    QVERIFY(!f.requests.hasFailed(1));
    QCOMPARE(f.requests.pendingCount(), 0);
    QCOMPARE(f.requests.pendingBytes(), 0);
    QCOMPARE(f.requests.staleCount({}, Serving::AnySize), 0);

    // Both managers count their requests from one.
    f.request({wanted(1), wanted(2)});
    f.bench.finish();
    QCOMPARE(f.bench.deliveries.size(), 2);
    QVERIFY(!f.requests.hasFailed(2));
    QVERIFY(f.requests.isPending(2));
    other.finish();
    QCOMPARE(f.arrivals.size(), 2);

    f.requests.setRenderManager(nullptr);
    QCOMPARE(f.requests.renderManager(), nullptr);
}

void TestPageImageRequests::pendingBytesFollowTheRequests()
{
    Fixture f;
    f.request({wanted(1), wanted(2)});
    QCOMPARE(f.requests.pendingBytes(), 2 * kBytes);
    f.request({wanted(2, kOtherSize)});
    QCOMPARE(f.requests.pendingBytes(), kBytes + kOtherBytes);
    f.requests.withdraw(1);
    QCOMPARE(f.requests.pendingBytes(), kOtherBytes);
    f.bench.finish();
    QCOMPARE(f.requests.pendingBytes(), 0);

    f.request({wanted(3)});
    f.requests.forgetAll();
    QCOMPARE(f.requests.pendingBytes(), 0);
}

QTEST_GUILESS_MAIN(TestPageImageRequests)
#include "tst_page_image_requests.moc"
