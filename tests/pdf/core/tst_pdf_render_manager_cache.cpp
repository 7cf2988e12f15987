// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_editor_backend.h"
#include "pdfcore/pdf_file_revision.h"
#include "tests/pdf/core/render_bench.h"
#include "tests/support/pdf_fixture.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <vector>

using namespace RenderBench;

/// Which pages are served without the engine.
class TestPdfRenderManagerCache final : public QObject
{
    Q_OBJECT

private slots:
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
    void revisionsOfOneFileHaveImagesOfTheirOwn();
    void fileOfTwoSpellingsShowsWhatItHolds();
    void pathsWithPlaceMarkersAreKeptApart();
    void pathsThatEndInNumbersAreKeptApart_data();
    void pathsThatEndInNumbersAreKeptApart();
    void pageBeyondTheBoundIsDeliveredButNotCached();
    void largestPageWithinTheBoundIsCached();
    void leastRecentlyUsedPageIsRenderedAgain();
    void clearCacheForgetsAllImages();
};

void TestPdfRenderManagerCache::cachedPageIsDeliveredAfterTheCallHasReturned()
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

void TestPdfRenderManagerCache::cachedPageNeverReachesTheEngine()
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

void TestPdfRenderManagerCache::pageIsCachedBeforeItsSignalIsSent()
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

void TestPdfRenderManagerCache::mixedRequestAsksTheEngineForTheMissesOnly()
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

void TestPdfRenderManagerCache::twoRequestsBeforeTheResultBothReachTheEngine()
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

void TestPdfRenderManagerCache::duplicateOfAPageIsServedFromTheCache()
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

void TestPdfRenderManagerCache::blankPagesOfOneSizeShareAnImage()
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

void TestPdfRenderManagerCache::whatChangesThePictureIsPartOfTheKey_data()
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

void TestPdfRenderManagerCache::whatChangesThePictureIsPartOfTheKey()
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

void TestPdfRenderManagerCache::revisionsOfOneFileHaveImagesOfTheirOwn()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.pdf"));
    const auto firstPage = [&path](PdfPageId id) {
        PdfDocumentInfo info;
        PdfEditorBackend::inspectDocument(path, QString(), &info, nullptr, nullptr);
        PdfPageRecord record = page(id);
        record.sourcePath = path;
        record.revision = info.revision;
        return record;
    };
    QVERIFY(PdfFixture::write(path, PdfFixture::pagesByNumber(1)));
    const PdfPageRecord before = firstPage(1);
    QVERIFY(PdfFixture::write(path, PdfFixture::pagesByNumber(2)));
    const PdfPageRecord after = firstPage(2);
    QVERIFY(before.revision && after.revision && before.revision != after.revision);

    Bench bench;
    for (const PdfPageRecord &record : {before, after, before, after}) {
        bench.manager->requestPage(record, QSize(10, 10), Purpose::PageView, 0);
        bench.finish();
    }
    QCOMPARE(bench.engine.callCount(), 2);
    QCOMPARE(bench.engine.calls().back().sources.constFirst().revision, after.revision);
    QCOMPARE(bench.deliveries.size(), 4);
}

void TestPdfRenderManagerCache::fileOfTwoSpellingsShowsWhatItHolds()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.pdf"));
    const QString link = folder.filePath(QStringLiteral("link.pdf"));
    QVERIFY(PdfFixture::write(path, PdfFixture::pagesByNumber(9)));
    QVERIFY(QFile::link(path, link));
    PdfPageId nextId = 1;
    const auto firstPage = [&nextId](const QString &spelling) {
        PdfDocumentInfo info;
        PdfEditorBackend::inspectDocument(spelling, QString(), &info, nullptr, nullptr);
        PdfPageRecord record = page(nextId++);
        record.sourcePath = spelling;
        record.sourcePageIndex = 0;
        record.revision = info.revision;
        return record;
    };
    const auto picture = [](PdfRenderManager &manager, const PdfPageRecord &record) {
        QSignalSpy rendered(&manager, &PdfRenderManager::pageRendered);
        manager.requestPage(record, QSize(10, 10), PdfRenderPurpose::PageView, 0);
        return rendered.wait() ? rendered.constFirst().last().value<QImage>() : QImage();
    };
    PdfRenderManager manager;
    const PdfPageRecord before = firstPage(path);
    QCOMPARE(picture(manager, before).pixelColor(5, 5), PdfFixture::numberColour(0));

    // Another first page; the file is then seen by its other name first.
    PdfSourcePage eighth = before.toSourcePage();
    eighth.pageIndex = 8;
    QVERIFY(PdfEditorBackend::saveDocument({eighth}, path, nullptr, nullptr));
    const PdfPageRecord byLink = firstPage(link);
    const PdfPageRecord after = firstPage(path);
    QCOMPARE(picture(manager, byLink).pixelColor(5, 5), PdfFixture::numberColour(8));
    QCOMPARE(picture(manager, after).pixelColor(5, 5), PdfFixture::numberColour(8));
    QCOMPARE(picture(manager, before).pixelColor(5, 5), PdfFixture::numberColour(0));
}

void TestPdfRenderManagerCache::pathsWithPlaceMarkersAreKeptApart()
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

void TestPdfRenderManagerCache::pathsThatEndInNumbersAreKeptApart_data()
{
    QTest::addColumn<QChar>("mark");
    QTest::newRow("number sign") << QChar(u'#');
    QTest::newRow("bar") << QChar(u'|');
}

void TestPdfRenderManagerCache::pathsThatEndInNumbersAreKeptApart()
{
    QFETCH(QChar, mark);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.pdf"));
    PdfPageRecord numbered = page(1);
    numbered.sourcePath = path;
    // The first revision of all may be the one with the number 0.
    std::vector<PdfFileRevisionPtr> revisions;
    for (int pages = 1; pages <= 2; ++pages) {
        QVERIFY(PdfFixture::write(path, PdfFixture::pagesByNumber(pages)));
        PdfDocumentInfo info;
        QVERIFY(PdfEditorBackend::inspectDocument(path, QString(), &info, nullptr, nullptr));
        revisions.push_back(info.revision);
    }
    numbered.revision = revisions.back();
    QVERIFY(numbered.revision->generation() > 0);
    PdfPageRecord named = page(2);
    named.sourcePath = path + mark + QString::number(numbered.revision->generation());

    Bench bench;
    for (const PdfPageRecord &record : {numbered, named, numbered, named}) {
        bench.manager->requestPage(record, QSize(10, 10), Purpose::PageView, 0);
        bench.finish();
    }
    QCOMPARE(bench.engine.callCount(), 2);
    QCOMPARE(bench.deliveries.size(), 4);
}

void TestPdfRenderManagerCache::pageBeyondTheBoundIsDeliveredButNotCached()
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

void TestPdfRenderManagerCache::largestPageWithinTheBoundIsCached()
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

void TestPdfRenderManagerCache::leastRecentlyUsedPageIsRenderedAgain()
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

void TestPdfRenderManagerCache::clearCacheForgetsAllImages()
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

QTEST_GUILESS_MAIN(TestPdfRenderManagerCache)
#include "tst_pdf_render_manager_cache.moc"
