// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/cards/page_thumbnail_store.h"

#include "tests/pdf/viewer/render_probe.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr QSize kSize{100, 100};
constexpr qint64 kImageBytes = 100 * 100 * 4;

/// A store with a probe behind its render manager.
struct Fixture
{
    explicit Fixture(int pageCount = 10)
        : records(recordsOfSizes(a4Pages(pageCount)))
    {
        store.setRenderManager(&manager);
    }
    ~Fixture() { probe.release(); }

    void request(const QList<int> &rows, QSize size = kSize,
                 PageThumbnailStore::Urgency urgency = PageThumbnailStore::Urgency::Visible)
    {
        QList<PageThumbnailStore::WantedPage> pages;
        for (const int row : rows) {
            pages.append({records.at(row), size});
        }
        store.request(pages, 1, 5, 1, urgency);
    }

    [[nodiscard]] const PdfPageRecord *find(PdfPageId id) const
    {
        for (const PdfPageRecord &record : records) {
            if (record.id == id) {
                return &record;
            }
        }
        return nullptr;
    }

    RenderProbe probe;
    PdfRenderManager manager{nullptr, probe.function()};
    PageThumbnailStore store;
    QList<PdfPageRecord> records;
};

QList<int> rowsFrom(int first, int count)
{
    QList<int> rows;
    for (int i = 0; i < count; ++i) {
        rows.append(first + i);
    }
    return rows;
}

} // namespace

/// The thumbnails of one view.
class TestPageThumbnailStore final : public QObject
{
    Q_OBJECT

private slots:
    void requestedImageArrives();
    void heldAndPendingPagesAreNotRequestedAgain();
    void anotherSizeIsRequestedAndTheOldImageServesMeanwhile();
    void imageOfWhatThePageNoLongerShowsIsNotGivenOut();
    void overtakenResultIsIgnored();
    void forgottenRequestIsIgnored();
    void turnedImageServesUntilTheNewOneComes();
    void reconcileDropsPagesThatAreGoneOrDiffer();
    void failureIsReportedOnceAndNotRepeated();
    void failureOutOfViewIsTriedAgain();
    void trimDropsTheFarthestImagesFirst();
    void roomCountsWhatIsOnItsWay();
    void urgentRequestsWaitForStaleOnes();
    void clearedStoreHasItsBudgetBack();
    void clearedStoreDoesNotWaitForOldRequests();
    void cancelledRequestsCanBeRestarted();
    void imagesForOtherPurposesAreIgnored();
    void callsTakeSeveralPages();
    void replacedRequestsDoNotCount();
    void reloadedPagesAreTriedAgain();
    void cancelledFailuresAreTriedAgain();
};

void TestPageThumbnailStore::requestedImageArrives()
{
    Fixture f;
    const QSignalSpy arrived(&f.store, &PageThumbnailStore::imageArrived);
    f.request({3});
    QVERIFY(f.store.isPending(4));
    QCOMPARE(f.store.image(f.records.at(3)), nullptr);
    QTRY_COMPARE(arrived.size(), 1);
    QCOMPARE(arrived.at(0).at(0).value<PdfPageId>(), PdfPageId(4));
    QVERIFY(!f.store.isPending(4));
    const QImage *image = f.store.image(f.records.at(3));
    QVERIFY(image);
    QCOMPARE(image->size(), kSize);
    QCOMPARE(image->pixelColor(5, 5), RenderProbe::colorOf(3));
    QCOMPARE(f.store.heldBytes(), kImageBytes);
}

void TestPageThumbnailStore::heldAndPendingPagesAreNotRequestedAgain()
{
    Fixture f;
    f.probe.hold();
    f.request({0});
    f.request({0, 1});
    f.probe.release();
    QTRY_COMPARE(f.store.heldCount(), 2);
    f.request({0, 1});
    QCOMPARE(f.store.pendingCount(), 0);
    QCOMPARE(f.probe.renders().size(), 2);
}

void TestPageThumbnailStore::anotherSizeIsRequestedAndTheOldImageServesMeanwhile()
{
    Fixture f;
    f.request({0});
    QTRY_COMPARE(f.store.heldCount(), 1);
    f.request({0}, {200, 200});
    QVERIFY(f.store.isPending(1));
    QVERIFY(f.store.image(f.records.at(0)));
    QTRY_COMPARE(f.store.image(f.records.at(0))->size(), QSize(200, 200));
    QCOMPARE(f.store.heldBytes(), 4 * kImageBytes);
}

void TestPageThumbnailStore::imageOfWhatThePageNoLongerShowsIsNotGivenOut()
{
    Fixture f;
    f.request({0});
    QTRY_COMPARE(f.store.heldCount(), 1);
    PdfPageRecord turned = f.records.at(0);
    turned.rotation = 90;
    QCOMPARE(f.store.image(turned), nullptr);
    PdfPageRecord other = f.records.at(0);
    other.sourcePageIndex = 5;
    QCOMPARE(f.store.image(other), nullptr);
    PdfPageRecord blank = f.records.at(0);
    blank.origin = PdfPageOrigin::Blank;
    QCOMPARE(f.store.image(blank), nullptr);
}

void TestPageThumbnailStore::overtakenResultIsIgnored()
{
    Fixture f;
    f.probe.hold();
    f.request({0});
    QTRY_COMPARE(f.probe.renders().size(), 1);
    f.records[0].rotation = 90;
    f.store.forget(1);
    f.request({0}, {120, 100});
    const QSignalSpy arrived(&f.store, &PageThumbnailStore::imageArrived);
    const QSignalSpy rendered(&f.manager, &PdfRenderManager::pageRendered);
    f.probe.release();
    QTRY_COMPARE(rendered.size(), 2);
    QCOMPARE(arrived.size(), 1);
    QCOMPARE(f.store.image(f.records.at(0))->size(), QSize(120, 100));
}

void TestPageThumbnailStore::forgottenRequestIsIgnored()
{
    Fixture f;
    f.probe.hold();
    f.request({0});
    f.store.forget(1);
    const QSignalSpy rendered(&f.manager, &PdfRenderManager::pageRendered);
    f.probe.release();
    QTRY_COMPARE(rendered.size(), 1);
    QCOMPARE(f.store.heldCount(), 0);
}

void TestPageThumbnailStore::turnedImageServesUntilTheNewOneComes()
{
    Fixture f;
    f.request({0}, {80, 120});
    QTRY_COMPARE(f.store.heldCount(), 1);
    f.records[0].rotation = 90;
    f.store.turn(f.records.at(0));
    QCOMPARE(f.store.image(f.records.at(0))->size(), QSize(120, 80));
    QCOMPARE(f.store.heldBytes(), qint64(80 * 120 * 4));
    QVERIFY(!f.store.isSettled({f.records.at(0), {120, 80}}));
    f.request({0}, {120, 80});
    QVERIFY(f.store.isPending(1));
    QTRY_VERIFY(f.store.isSettled({f.records.at(0), {120, 80}}) && !f.store.isPending(1));
}

void TestPageThumbnailStore::reconcileDropsPagesThatAreGoneOrDiffer()
{
    Fixture f;
    f.request({0, 1, 2});
    QTRY_COMPARE(f.store.heldCount(), 3);
    f.probe.hold();
    f.request({3, 4});
    f.records[1].rotation = 180;
    f.records.remove(4);
    f.records.remove(0);
    f.store.reconcile([&f](PdfPageId id) { return f.find(id); });
    QCOMPARE(f.store.heldCount(), 1);
    QVERIFY(f.store.image(*f.find(3)));
    QVERIFY(f.store.isPending(4));
    QVERIFY(!f.store.isPending(5));
    QCOMPARE(f.store.heldBytes(), kImageBytes);
}

void TestPageThumbnailStore::failureIsReportedOnceAndNotRepeated()
{
    Fixture f;
    f.probe.setFailing(2, true);
    const QSignalSpy failed(&f.store, &PageThumbnailStore::imageFailed);
    f.request({2});
    QTRY_COMPARE(failed.size(), 1);
    QVERIFY(f.store.hasFailed(3));
    f.request({2});
    QCOMPARE(f.store.pendingCount(), 0);
    f.store.forgetFailuresExcept({3});
    f.request({2});
    QCOMPARE(f.store.pendingCount(), 0);
    QCOMPARE(f.probe.renderCount(2), 1);
}

void TestPageThumbnailStore::failureOutOfViewIsTriedAgain()
{
    Fixture f;
    f.probe.setFailing(2, true);
    f.request({2});
    QTRY_VERIFY(f.store.hasFailed(3));
    f.probe.setFailing(2, false);
    f.store.forgetFailuresExcept({1, 2});
    f.request({2});
    QTRY_VERIFY(f.store.image(f.records.at(2)));
    QVERIFY(!f.store.hasFailed(3));
}

void TestPageThumbnailStore::trimDropsTheFarthestImagesFirst()
{
    Fixture f;
    f.store.setBudget(7 * kImageBytes);
    f.request(rowsFrom(0, 8));
    QTRY_COMPARE(f.store.heldCount(), 8);
    QVERIFY(f.store.isOverBudget());
    f.store.trim([](PdfPageId id) { return static_cast<int>(id) - 1; });
    QVERIFY(!f.store.isOverBudget());
    // An eighth of the budget is free now, though eight images made it full.
    QCOMPARE(f.store.heldCount(), 6);
    QVERIFY(f.store.image(f.records.at(5)));
    QVERIFY(!f.store.image(f.records.at(6)));

    f.store.setBudget(kImageBytes);
    f.store.trim([](PdfPageId id) { return id <= 3 ? 0 : 1; });
    QCOMPARE(f.store.heldCount(), 3);
}

void TestPageThumbnailStore::roomCountsWhatIsOnItsWay()
{
    Fixture f;
    f.probe.hold();
    f.store.setBudget(2 * kImageBytes);
    QVERIFY(f.store.hasRoom());
    f.request({0});
    QVERIFY(f.store.hasRoom());
    f.request({1});
    QVERIFY(!f.store.hasRoom());
    f.store.forget(2);
    QVERIFY(f.store.hasRoom());
}

void TestPageThumbnailStore::urgentRequestsWaitForStaleOnes()
{
    constexpr int kStale = PageThumbnailStore::kMaximumStaleRequests + 1;
    Fixture f(2 * kStale);
    f.probe.hold();
    f.request(rowsFrom(0, kStale));
    f.request({kStale});
    QCOMPARE(f.store.pendingCount(), kStale);
    QVERIFY(!f.store.isPending(kStale + 1));

    QSignalSpy room(&f.store, &PageThumbnailStore::roomAvailable);
    f.probe.release();
    QVERIFY(room.wait());
    f.request({kStale});
    QVERIFY(f.store.isPending(kStale + 1));
}

void TestPageThumbnailStore::clearedStoreHasItsBudgetBack()
{
    Fixture f;
    f.store.setBudget(2 * kImageBytes);
    f.request(rowsFrom(0, 3));
    QTRY_COMPARE(f.store.heldCount(), 3);
    QVERIFY(f.store.isOverBudget());
    f.store.clear();
    QCOMPARE(f.store.heldCount(), 0);
    QVERIFY(!f.store.isOverBudget());
    f.request(rowsFrom(3, 1));
    QTRY_COMPARE(f.store.heldCount(), 1);
    QVERIFY(!f.store.isOverBudget());
}

void TestPageThumbnailStore::clearedStoreDoesNotWaitForOldRequests()
{
    constexpr int kStale = PageThumbnailStore::kMaximumStaleRequests + 1;
    Fixture f(2 * kStale);
    f.probe.hold();
    f.request(rowsFrom(0, kStale));
    f.request({kStale});
    QVERIFY(!f.store.isPending(kStale + 1));
    f.store.clear();
    QCOMPARE(f.store.pendingCount(), 0);
    f.request({kStale});
    QVERIFY(f.store.isPending(kStale + 1));

    const QSignalSpy room(&f.store, &PageThumbnailStore::roomAvailable);
    const QSignalSpy rendered(&f.manager, &PdfRenderManager::pageRendered);
    f.probe.release();
    QTRY_COMPARE(rendered.size(), kStale + 1);
    QCOMPARE(room.size(), 0);
    QCOMPARE(f.store.heldCount(), 1);
}

void TestPageThumbnailStore::cancelledRequestsCanBeRestarted()
{
    Fixture f;
    f.probe.hold();
    f.request(rowsFrom(0, 10));
    f.manager.cancelAll();
    f.probe.release();
    f.store.forgetRequests();
    f.request(rowsFrom(0, 10));
    QTRY_COMPARE(f.store.heldCount(), 10);
}

void TestPageThumbnailStore::imagesForOtherPurposesAreIgnored()
{
    Fixture f;
    const QSignalSpy rendered(&f.manager, &PdfRenderManager::pageRendered);
    f.manager.requestPage(f.records.at(0), kSize, PdfRenderPurpose::PageView, 1);
    QTRY_COMPARE(rendered.size(), 1);
    QCOMPARE(f.store.heldCount(), 0);
}

void TestPageThumbnailStore::callsTakeSeveralPages()
{
    QList<qsizetype> calls;
    std::mutex mutex;
    PdfRenderManager manager(nullptr, [&](const PdfCancelFlag & /*cancel*/,
                                          const QList<PdfSourcePage> &pages,
                                          const QList<QSize> &sizes, QStringList * /*errors*/) {
        const std::lock_guard lock(mutex);
        calls.append(pages.size());
        QList<QImage> images;
        for (const QSize &size : sizes) {
            images.append(QImage(size, QImage::Format_RGB32));
        }
        return images;
    });
    PageThumbnailStore store;
    store.setRenderManager(&manager);
    QList<PageThumbnailStore::WantedPage> pages;
    for (const PdfPageRecord &record : recordsOfSizes(a4Pages(10))) {
        pages.append({record, kSize});
    }
    store.request(pages, 1, 5, 4, PageThumbnailStore::Urgency::Visible);
    QTRY_COMPARE(store.heldCount(), 10);
    std::sort(calls.begin(), calls.end());
    QCOMPARE(calls, (QList<qsizetype>{2, 4, 4}));
}

void TestPageThumbnailStore::replacedRequestsDoNotCount()
{
    Fixture f;
    f.probe.hold();
    f.store.setBudget(2 * kImageBytes);
    // Each takes the place of the one before, whatever size that was of.
    for (const QSize size : {QSize(120, 100), QSize(110, 100), QSize(120, 100), kSize}) {
        f.request({0}, size);
        QCOMPARE(f.store.pendingCount(), 1);
        QVERIFY(f.store.hasRoom());
    }
    const QSignalSpy arrived(&f.store, &PageThumbnailStore::imageArrived);
    f.probe.release();
    QTRY_COMPARE(arrived.size(), 1);
    QCOMPARE(f.store.heldBytes(), kImageBytes);
    QVERIFY(f.store.hasRoom());
    f.probe.hold();
    f.request({1});
    QVERIFY(!f.store.hasRoom());
}

void TestPageThumbnailStore::reloadedPagesAreTriedAgain()
{
    Fixture f;
    f.probe.setFailing(2, true);
    f.request({2});
    QTRY_VERIFY(f.store.hasFailed(3));
    f.probe.setFailing(2, false);
    f.store.reconcile([&f](PdfPageId id) { return f.find(id); });
    QVERIFY(!f.store.hasFailed(3));
    f.request({2});
    QTRY_VERIFY(f.store.image(f.records.at(2)));
}

void TestPageThumbnailStore::cancelledFailuresAreTriedAgain()
{
    Fixture f;
    f.probe.setFailing(2, true);
    f.request({2});
    QTRY_VERIFY(f.store.hasFailed(3));
    f.probe.setFailing(2, false);
    f.store.forgetRequests();
    f.request({2});
    QTRY_VERIFY(f.store.image(f.records.at(2)));
}

QTEST_GUILESS_MAIN(TestPageThumbnailStore)
#include "tst_page_thumbnail_store.moc"
