// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/reading/page_image_loader.h"
#include "tests/pdf/viewer/render_probe.h"

#include <QSignalSpy>
#include <QTest>

namespace {

const QSize kSize(30, 40);
// A page that only drain() asks for.
constexpr int kSentinel = 999;

PageImageLoader::WantedPage wanted(int pageIndex, QSize size = kSize)
{
    PdfPageRecord record;
    record.id = static_cast<PdfPageId>(pageIndex + 1);
    record.sourcePath = QStringLiteral("/documents/report.pdf");
    record.sourcePageIndex = pageIndex;
    return {record, size};
}

PdfPageId idOf(int pageIndex)
{
    return wanted(pageIndex).record.id;
}

/// Wants the pages first to last in the viewport, and no others.
PageImageLoader::Demand visible(int first, int last, QSize size = kSize)
{
    PageImageLoader::Demand demand;
    for (int index = first; index <= last; ++index) {
        demand.visible.append(wanted(index, size));
        demand.kept.insert(idOf(index));
    }
    return demand;
}

} // namespace

class TestPageImageLoader final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void requestedImageIsHeld();
    void heldImageIsNotRequestedAgain();
    void requestInFlightIsNotRepeated();
    void anotherSizeIsRequestedAndReplacesTheImage();
    void supersededResultIsIgnored();
    void resultOfAnotherRequestIsIgnored();
    void resultForAPageThatIsHeldAlreadyIsIgnored();
    void forgottenPageIgnoresItsResult();
    void thumbnailsAreIgnored();
    void imagesThatAreNotKeptAreDropped();
    void resultForAPageNoLongerKeptIsHeldUntilTheNextDemand();
    void pageWantedAgainAsItsResultArrivesIsNotRequestedTwice();
    void tooManyStaleRequestsHoldBackNewOnes();
    void heldBackRequestsAreAnnouncedWhenResultsArrive();
    void nearbyPagesWaitForAllStaleRequests();
    void failedPageIsNotRequestedUntilFailuresAreForgotten();
    void anotherRenderManagerIsAskedAgain();

private:
    /// Renders all that is queued.
    void drain();

    std::unique_ptr<RenderProbe> m_probe;
    std::unique_ptr<PdfRenderManager> m_manager;
    std::unique_ptr<PageImageLoader> m_loader;
    std::unique_ptr<QSignalSpy> m_rendered;
    std::unique_ptr<QSignalSpy> m_failed;
};

void TestPageImageLoader::init()
{
    m_probe = std::make_unique<RenderProbe>();
    m_manager = std::make_unique<PdfRenderManager>(nullptr, m_probe->function());
    m_rendered = std::make_unique<QSignalSpy>(m_manager.get(), &PdfRenderManager::pageRendered);
    m_failed = std::make_unique<QSignalSpy>(m_manager.get(), &PdfRenderManager::pageRenderFailed);
    m_loader = std::make_unique<PageImageLoader>();
    m_loader->setRenderManager(m_manager.get());
}

void TestPageImageLoader::cleanup()
{
    m_probe->release();
    m_loader.reset();
    m_rendered.reset();
    m_failed.reset();
    m_manager.reset();
    m_probe.reset();
}

void TestPageImageLoader::drain()
{
    m_probe->release();
    // Identifiers are counted from one, and every request is answered once.
    const quint64 requests =
        m_manager->requestPage(wanted(kSentinel).record, {1, 1}, PdfRenderPurpose::Thumbnail, 0);
    QTRY_COMPARE(static_cast<quint64>(m_rendered->size() + m_failed->size()), requests);
}

void TestPageImageLoader::requestedImageIsHeld()
{
    const QSignalSpy arrived(m_loader.get(), &PageImageLoader::imageArrived);
    QVERIFY(!m_loader->image(idOf(4)));
    m_loader->request(visible(4, 4));
    QTRY_COMPARE(arrived.size(), 1);
    QCOMPARE(arrived.first().first().value<PdfPageId>(), idOf(4));
    QVERIFY(m_loader->image(idOf(4)));
    QCOMPARE(m_loader->image(idOf(4))->size, kSize);
    QCOMPARE(m_loader->image(idOf(4))->image.pixelColor(0, 0), RenderProbe::colorOf(4));
}

void TestPageImageLoader::heldImageIsNotRequestedAgain()
{
    m_loader->request(visible(0, 0));
    QTRY_VERIFY(m_loader->image(idOf(0)));
    m_manager->clearCache();
    m_loader->request(visible(0, 0));
    drain();
    QCOMPARE(m_probe->renderCount(0), 1);
}

void TestPageImageLoader::requestInFlightIsNotRepeated()
{
    m_probe->hold();
    m_loader->request(visible(0, 0));
    m_loader->request(visible(0, 0));
    drain();
    QCOMPARE(m_probe->renderCount(0), 1);
}

void TestPageImageLoader::anotherSizeIsRequestedAndReplacesTheImage()
{
    m_loader->request(visible(0, 0));
    QTRY_VERIFY(m_loader->image(idOf(0)));
    m_probe->hold();
    m_loader->request(visible(0, 0, {60, 80}));
    QCOMPARE(m_loader->image(idOf(0))->size, kSize);
    m_probe->release();
    QTRY_COMPARE(m_loader->image(idOf(0))->size, QSize(60, 80));
}

void TestPageImageLoader::supersededResultIsIgnored()
{
    const QSignalSpy arrived(m_loader.get(), &PageImageLoader::imageArrived);
    m_probe->hold();
    m_loader->request(visible(0, 0, {60, 80}));
    m_loader->request(visible(0, 0));
    drain();
    QCOMPARE(arrived.size(), 1);
    QCOMPARE(m_loader->image(idOf(0))->size, kSize);
}

void TestPageImageLoader::resultOfAnotherRequestIsIgnored()
{
    QImage foreign(kSize, QImage::Format_RGB32);
    foreign.fill(Qt::black);
    m_probe->hold();
    m_loader->request(visible(0, 0));
    constexpr quint64 kForeignRequest = 77;
    emit m_manager->pageRendered(idOf(0), kSize, PdfRenderPurpose::PageView, kForeignRequest, 0,
                                 foreign);
    QVERIFY(!m_loader->image(idOf(0)));
    m_probe->release();
    QTRY_VERIFY(m_loader->image(idOf(0)));
    QCOMPARE(m_loader->image(idOf(0))->image.pixelColor(0, 0), RenderProbe::colorOf(0));
}

void TestPageImageLoader::resultForAPageThatIsHeldAlreadyIsIgnored()
{
    m_loader->request(visible(0, 0));
    QTRY_VERIFY(m_loader->image(idOf(0)));
    m_probe->hold();
    m_loader->request(visible(0, 0, {60, 80}));
    m_loader->request(visible(0, 0));
    drain();
    QCOMPARE(m_probe->renderCount(0), 2);
    QCOMPARE(m_loader->image(idOf(0))->size, kSize);
}

void TestPageImageLoader::forgottenPageIgnoresItsResult()
{
    m_probe->hold();
    m_loader->request(visible(0, 1));
    m_loader->forget(idOf(0));
    drain();
    QVERIFY(!m_loader->image(idOf(0)));
    QVERIFY(m_loader->image(idOf(1)));
}

void TestPageImageLoader::thumbnailsAreIgnored()
{
    m_probe->hold();
    m_loader->request(visible(0, 0));
    m_loader->forget(idOf(0));
    m_manager->requestPage(wanted(0).record, kSize, PdfRenderPurpose::Thumbnail, 0);
    drain();
    QVERIFY(!m_loader->image(idOf(0)));
}

void TestPageImageLoader::imagesThatAreNotKeptAreDropped()
{
    m_loader->request(visible(0, 2));
    QTRY_VERIFY(m_loader->image(idOf(0)) && m_loader->image(idOf(1)) && m_loader->image(idOf(2)));
    m_loader->request(visible(2, 3));
    QVERIFY(!m_loader->image(idOf(0)));
    QVERIFY(!m_loader->image(idOf(1)));
    QVERIFY(m_loader->image(idOf(2)));
}

void TestPageImageLoader::resultForAPageNoLongerKeptIsHeldUntilTheNextDemand()
{
    const QSignalSpy unkept(m_loader.get(), &PageImageLoader::unkeptImageArrived);
    m_probe->hold();
    m_loader->request(visible(0, 0));
    m_loader->request(visible(1, 1));
    drain();
    QVERIFY(m_loader->image(idOf(0)));
    QVERIFY(m_loader->image(idOf(1)));
    QCOMPARE(unkept.size(), 1);
    m_loader->request(visible(1, 1));
    QVERIFY(!m_loader->image(idOf(0)));
    QVERIFY(m_loader->image(idOf(1)));
}

void TestPageImageLoader::pageWantedAgainAsItsResultArrivesIsNotRequestedTwice()
{
    m_probe->hold();
    m_loader->request(visible(0, 0));
    m_loader->request(visible(1, 1));
    drain();
    const int requests = static_cast<int>(m_rendered->size());
    m_loader->request(visible(0, 1));
    QCOMPARE(m_loader->image(idOf(0))->size, kSize);
    QTest::qWait(20);
    QCOMPARE(m_rendered->size(), requests);
}

void TestPageImageLoader::tooManyStaleRequestsHoldBackNewOnes()
{
    constexpr int kLimit = PageImageLoader::kMaximumStaleRequests;
    m_probe->hold();
    for (int page = 0; page < 100; ++page) {
        m_loader->request(visible(page, page));
    }
    drain();
    // Each request makes the one before stale; the last one that fits finds the limit reached.
    QCOMPARE(m_probe->renders().size() - m_probe->renderCount(kSentinel), kLimit + 1);
    QCOMPARE(m_probe->renderCount(kLimit), 1);
    QCOMPARE(m_probe->renderCount(kLimit + 1), 0);
    QCOMPARE(m_probe->renderCount(99), 0);
}

void TestPageImageLoader::heldBackRequestsAreAnnouncedWhenResultsArrive()
{
    const QSignalSpy room(m_loader.get(), &PageImageLoader::roomAvailable);
    connect(m_loader.get(), &PageImageLoader::roomAvailable, this,
            [this] { m_loader->request(visible(99, 99)); });
    m_probe->hold();
    for (int page = 0; page < 100; ++page) {
        m_loader->request(visible(page, page));
    }
    QCOMPARE(room.size(), 0);
    m_probe->release();
    QTRY_VERIFY(m_loader->image(idOf(99)));
    QVERIFY(!room.isEmpty());
    QCOMPARE(m_probe->renderCount(98), 0);
    QCOMPARE(m_probe->renderCount(99), 1);
}

void TestPageImageLoader::nearbyPagesWaitForAllStaleRequests()
{
    PageImageLoader::Demand demand = visible(1, 1);
    demand.nearby.append(wanted(2));
    demand.kept.insert(idOf(2));
    connect(m_loader.get(), &PageImageLoader::roomAvailable, this,
            [this, demand] { m_loader->request(demand); });

    m_probe->hold();
    m_loader->request(visible(0, 0));
    m_loader->request(demand);
    const QList<RenderProbe::Render> expected{{0, 0, kSize}, {1, 0, kSize}};
    QTRY_COMPARE(m_probe->renders().size(), expected.size());
    QTest::qWait(20);
    QCOMPARE(m_probe->renderCount(2), 0);
    m_probe->release();
    QTRY_VERIFY(m_loader->image(idOf(2)));
    QTRY_VERIFY(m_loader->image(idOf(1)));
}

void TestPageImageLoader::failedPageIsNotRequestedUntilFailuresAreForgotten()
{
    m_probe->setFailing(0, true);
    m_loader->request(visible(0, 0));
    QTRY_COMPARE(m_failed->size(), 1);
    m_loader->request(visible(0, 0));
    drain();
    QCOMPARE(m_probe->renderCount(0), 1);

    m_probe->setFailing(0, false);
    m_loader->forgetFailures();
    m_loader->request(visible(0, 0));
    QTRY_VERIFY(m_loader->image(idOf(0)));
}

void TestPageImageLoader::anotherRenderManagerIsAskedAgain()
{
    RenderProbe other;
    PdfRenderManager otherManager(nullptr, other.function());
    m_probe->hold();
    m_loader->request(visible(0, 0));
    m_loader->setRenderManager(&otherManager);
    m_loader->request(visible(0, 0));
    QTRY_VERIFY(m_loader->image(idOf(0)));
    QCOMPARE(other.renderCount(0), 1);
    m_loader->setRenderManager(nullptr);
}

QTEST_GUILESS_MAIN(TestPageImageLoader)
#include "tst_page_image_loader.moc"
