// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/render_threads.h"
#include "pdfcore/src/session/engine.h"
#include "pdfcore/src/session/render_slots.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

using namespace EngineCalls;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using pdfcore::Engine;
using pdfcore::RenderSlots;

namespace {

constexpr int kLimit = 2;

/// Waits until the condition holds; false when it never does.
template <typename Condition>
bool waitUntil(Condition &&condition)
{
    for (int i = 0; i < 5000; ++i) {
        if (condition()) {
            return true;
        }
        std::this_thread::sleep_for(1ms);
    }
    return false;
}

/// A page that keeps a thread busy for longer than any test, unless it is cancelled.
QByteArray endlessPage()
{
    QByteArray content;
    for (int i = 0; i < 2'000'000; ++i) {
        content += "q 1 0 0 1 0 0 cm 0 0 9 9 re f Q\n";
    }
    QList<QByteArray> objects{
        "<< /Type /Catalog /Pages 2 0 R >>",
        "<< /Type /Pages /Kids [3 0 R] /Count 1 /MediaBox [0 0 200 200] >>",
        "<< /Type /Page /Parent 2 0 R /Contents 4 0 R /Resources << >> >>",
        PdfFixture::streamBody({}, content),
    };
    return PdfFixture::fromObjects(objects);
}

QList<PdfSourcePage> pagesOf(const QString &path, int count)
{
    QList<PdfSourcePage> pages;
    for (int i = 0; i < count; ++i) {
        pages.append(filePage(path, i));
    }
    return pages;
}

} // namespace

/// How many threads render at the same time, and how their work is cancelled.
class TestRenderSlots : public QObject
{
    Q_OBJECT

private slots:
    void slotsAreLimited();
    void waitingThreadsTakeTheirTurn();
    void nobodyGoesAheadOfThoseWhoWait();
    void forcedSlotCounts();
    void cancelledThreadWaitsNoLonger();
    void threadBehindACancelledOneGetsTheSlot();

    void batchesOfSeveralCallersStayWithinTheLimit();
    void helpersLeaveForThoseWhoWait();
    void singlePageDoesNotWait();
    void pageInBandsTakesASlot_data();
    void pageInBandsTakesASlot();
    void batchWaitsForASlot();

    void cancelEndsAPage();
    void cancelEndsTheRestOfABatch();
    void cancelBeforeTheStartRendersNothing();
    void cancelEndsWaiting();
    void documentIsRenderedAgainAfterACancel();
};

void TestRenderSlots::slotsAreLimited()
{
    RenderSlots renderSlots(kLimit);
    QVERIFY(renderSlots.take({}));
    QVERIFY(renderSlots.tryTake());
    QVERIFY(!renderSlots.tryTake());
    QCOMPARE(renderSlots.inUse(), kLimit);
    renderSlots.giveBack();
    QVERIFY(renderSlots.tryTake());
    QVERIFY(!renderSlots.isAwaited());
}

void TestRenderSlots::waitingThreadsTakeTheirTurn()
{
    RenderSlots renderSlots(1);
    QVERIFY(renderSlots.take({}));
    std::mutex mutex;
    std::vector<int> order;
    std::vector<std::thread> threads;
    std::atomic<int> started{0};
    for (int i = 0; i < 5; ++i) {
        threads.emplace_back([&, i] {
            ++started;
            renderSlots.take({});
            {
                const std::lock_guard lock(mutex);
                order.push_back(i);
            }
            renderSlots.giveBack();
        });
        QVERIFY(waitUntil([&] { return started == i + 1 && renderSlots.isAwaited(); }));
        // Long enough for the thread to stand behind the ones before.
        std::this_thread::sleep_for(10ms);
    }
    renderSlots.giveBack();
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(order, (std::vector<int>{0, 1, 2, 3, 4}));
    QCOMPARE(renderSlots.inUse(), 0);
}

void TestRenderSlots::nobodyGoesAheadOfThoseWhoWait()
{
    RenderSlots renderSlots(1);
    renderSlots.force();
    renderSlots.force();
    std::thread waiting([&] { renderSlots.take({}); });
    QVERIFY(waitUntil([&] { return renderSlots.isAwaited(); }));
    renderSlots.giveBack();
    QVERIFY(!renderSlots.tryTake());
    renderSlots.giveBack();
    // Free, but promised to the other thread, however long that takes to wake up.
    QVERIFY(!renderSlots.tryTake());
    waiting.join();
    QCOMPARE(renderSlots.inUse(), 1);
}

void TestRenderSlots::forcedSlotCounts()
{
    RenderSlots renderSlots(kLimit);
    renderSlots.force();
    renderSlots.force();
    renderSlots.force();
    QCOMPARE(renderSlots.inUse(), 3);
    renderSlots.giveBack();
    QVERIFY(!renderSlots.tryTake());
    renderSlots.giveBack();
    QVERIFY(renderSlots.tryTake());
}

void TestRenderSlots::cancelledThreadWaitsNoLonger()
{
    RenderSlots renderSlots(1);
    renderSlots.force();
    const PdfCancelFlag cancel;
    std::atomic<bool> isTaken{true};
    std::thread waiting([&] { isTaken = renderSlots.take(cancel); });
    QVERIFY(waitUntil([&] { return renderSlots.isAwaited(); }));
    cancel.set();
    waiting.join();
    QVERIFY(!isTaken);
    QVERIFY(!renderSlots.isAwaited());
    QCOMPARE(renderSlots.inUse(), 1);
}

void TestRenderSlots::threadBehindACancelledOneGetsTheSlot()
{
    RenderSlots renderSlots(1);
    renderSlots.force();
    const PdfCancelFlag cancel;
    std::thread first([&] { renderSlots.take(cancel); });
    QVERIFY(waitUntil([&] { return renderSlots.isAwaited(); }));
    std::atomic<bool> isTaken{false};
    std::thread second([&] { isTaken = renderSlots.take({}); });
    cancel.set();
    first.join();
    renderSlots.giveBack();
    second.join();
    QVERIFY(isTaken);
}

/// As several viewers do, each with threads of its own.
void TestRenderSlots::batchesOfSeveralCallersStayWithinTheLimit()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(16));
    const QList<PdfSourcePage> pages = pagesOf(path, 16);
    const QList<QSize> sizes(16, QSize(900, 900));
    std::atomic<int> failed{0};
    std::atomic<bool> isDone{false};
    int most = 0;
    std::thread watching([&] {
        while (!isDone) {
            most = std::max(most, Engine::instance().sessions().lentCount());
            std::this_thread::yield();
        }
    });
    std::vector<std::thread> callers;
    for (int i = 0; i < 3 * pdfcore::kMostRenderThreads; ++i) {
        callers.emplace_back([&] {
            for (const QImage &image : PdfEditorBackend::renderPages(pages, sizes, nullptr)) {
                failed += image.isNull() ? 1 : 0;
            }
        });
    }
    for (std::thread &caller : callers) {
        caller.join();
    }
    isDone = true;
    watching.join();
    QCOMPARE(failed, 0);
    QVERIFY2(most <= pdfcore::renderThreadLimit(), qPrintable(QString::number(most)));
    QVERIFY(most > 0);
    QCOMPARE(Engine::instance().renderSlots().inUse(), 0);
}

/// A batch that began alone has all slots; another one gets the next that is free.
void TestRenderSlots::helpersLeaveForThoseWhoWait()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const QList<PdfSourcePage> many(400, filePage(path));
    const QList<QSize> sizes(400, QSize(700, 700));
    const PdfCancelFlag cancel;
    QStringList errors;
    std::thread longBatch(
        [&] { PdfEditorBackend::renderPagesUnless(cancel, many, sizes, &errors); });
    QVERIFY(waitUntil([&] { return Engine::instance().renderSlots().inUse() > 1; }));
    const QList<QImage> images =
        PdfEditorBackend::renderPages({filePage(path)}, {QSize(10, 10)}, nullptr);
    cancel.set();
    longBatch.join();
    QVERIFY(!images.constFirst().isNull());
    // Most of the long batch was still to come. At its end, each thread has one page at most.
    const qsizetype rest = errors.count(u"It was cancelled."_s);
    QVERIFY2(rest > 2 * pdfcore::kMostRenderThreads, qPrintable(QString::number(rest)));
}

void TestRenderSlots::singlePageDoesNotWait()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    RenderSlots &renderSlots = Engine::instance().renderSlots();
    for (int i = 0; i < pdfcore::renderThreadLimit(); ++i) {
        renderSlots.force();
    }
    const Rendering rendering = render(filePage(path));
    for (int i = 0; i < pdfcore::renderThreadLimit(); ++i) {
        renderSlots.giveBack();
    }
    QVERIFY(rendering.ok);
    QCOMPARE(renderSlots.inUse(), 0);
}

void TestRenderSlots::pageInBandsTakesASlot_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<bool>("ok");
    QTest::newRow("to the end") << 0 << true;
    QTest::newRow("a page that there is not") << 7 << false;
}

void TestRenderSlots::pageInBandsTakesASlot()
{
    QFETCH(const int, index);
    QFETCH(const bool, ok);
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    const RenderSlots &renderSlots = Engine::instance().renderSlots();
    int during = -1;
    const bool isDone = PdfEditorBackend::renderPageInBands(
        filePage(path, index), {60, 90}, 0,
        [&](const QImage &, int) {
            during = renderSlots.inUse();
            return true;
        },
        nullptr, nullptr);
    QCOMPARE(isDone, ok);
    QCOMPARE(during, ok ? 1 : -1);
    QCOMPARE(renderSlots.inUse(), 0);
}

void TestRenderSlots::batchWaitsForASlot()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(2));
    RenderSlots &renderSlots = Engine::instance().renderSlots();
    for (int i = 0; i < pdfcore::renderThreadLimit(); ++i) {
        renderSlots.force();
    }
    QList<QImage> images;
    std::atomic<bool> isDone{false};
    std::thread caller([&] {
        images = PdfEditorBackend::renderPages(pagesOf(path, 2), {{9, 9}, {9, 9}}, nullptr);
        isDone = true;
    });
    const bool isWaiting = waitUntil([&] { return renderSlots.isAwaited(); });
    std::this_thread::sleep_for(50ms);
    const bool wasDone = isDone;
    for (int i = 0; i < pdfcore::renderThreadLimit(); ++i) {
        renderSlots.giveBack();
    }
    caller.join();
    QVERIFY(isWaiting);
    QVERIFY(!wasDone);
    QVERIFY(!images.at(0).isNull());
    QVERIFY(!images.at(1).isNull());
}

void TestRenderSlots::cancelEndsAPage()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, endlessPage());
    const PdfCancelFlag cancel;
    QList<QImage> images;
    QStringList errors;
    std::thread caller([&] {
        images =
            PdfEditorBackend::renderPagesUnless(cancel, {filePage(path)}, {{500, 500}}, &errors);
    });
    const bool isRendering =
        waitUntil([] { return Engine::instance().renderSlots().inUse() == 1; });
    std::this_thread::sleep_for(50ms);
    cancel.set();
    caller.join();
    QVERIFY(isRendering);
    QVERIFY(images.constFirst().isNull());
    // Not what it says when the time is up.
    QCOMPARE(errors, QStringList{u"It was cancelled."_s});
}

void TestRenderSlots::cancelEndsTheRestOfABatch()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, endlessPage());
    const PdfCancelFlag cancel;
    QStringList errors;
    std::thread caller([&] {
        PdfEditorBackend::renderPagesUnless(cancel, QList<PdfSourcePage>(9, filePage(path)),
                                            QList<QSize>(9, QSize(500, 500)), &errors);
    });
    const bool isRendering = waitUntil([] { return Engine::instance().renderSlots().inUse() > 0; });
    cancel.set();
    caller.join();
    QVERIFY(isRendering);
    QCOMPARE(errors.size(), 9);
    for (const QString &error : errors) {
        QCOMPARE(error, u"It was cancelled."_s);
    }
    QCOMPARE(Engine::instance().renderSlots().inUse(), 0);
}

void TestRenderSlots::cancelBeforeTheStartRendersNothing()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(2));
    const PdfCancelFlag cancel;
    cancel.set();
    QStringList errors;
    const QList<QImage> images =
        PdfEditorBackend::renderPagesUnless(cancel, pagesOf(path, 2), {{9, 9}, {9, 9}}, &errors);
    QCOMPARE(images.size(), 2);
    QVERIFY(images.at(0).isNull());
    QVERIFY(images.at(1).isNull());
    QCOMPARE(errors, (QStringList{u"It was cancelled."_s, u"It was cancelled."_s}));
}

void TestRenderSlots::cancelEndsWaiting()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(1));
    RenderSlots &renderSlots = Engine::instance().renderSlots();
    for (int i = 0; i < pdfcore::renderThreadLimit(); ++i) {
        renderSlots.force();
    }
    const PdfCancelFlag cancel;
    QStringList errors;
    std::thread caller([&] {
        PdfEditorBackend::renderPagesUnless(cancel, {filePage(path)}, {{9, 9}}, &errors);
    });
    const bool isWaiting = waitUntil([&] { return renderSlots.isAwaited(); });
    cancel.set();
    caller.join();
    for (int i = 0; i < pdfcore::renderThreadLimit(); ++i) {
        renderSlots.giveBack();
    }
    QVERIFY(isWaiting);
    QCOMPARE(errors, QStringList{u"It was cancelled."_s});
}

void TestRenderSlots::documentIsRenderedAgainAfterACancel()
{
    Folder folder;
    const QString path = folder.add(u"in.pdf"_s, PdfFixture::pagesByNumber(3));
    QVERIFY(render(filePage(path)).ok);
    const PdfCancelFlag cancel;
    cancel.set();
    PdfEditorBackend::renderPagesUnless(cancel, pagesOf(path, 3), QList<QSize>(3, QSize(9, 9)),
                                        nullptr);
    QCOMPARE(numbersIn(path), (QList<int>{0, 1, 2}));
}

QTEST_GUILESS_MAIN(TestRenderSlots)
#include "tst_render_slots.moc"
