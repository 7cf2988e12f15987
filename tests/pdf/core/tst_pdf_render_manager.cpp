// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/core/render_bench.h"
#include "tests/pdf/signal_signatures.h"

#include <QSet>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace RenderBench;

/// What a request gives, and what comes of pages that fail.
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

    // Failures.
    void failedPageIsReportedAndTheOthersArrive();
    void failedPageIsNotCached();
    void missingImagesAndMessagesCountAsFailures();
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
    QCOMPARE(signalSignatures(PdfRenderManager::staticMetaObject),
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

QTEST_GUILESS_MAIN(TestPdfRenderManager)
#include "tst_pdf_render_manager.moc"
