// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/page_bands.h"
#include "pdfcore/src/session/session_pool.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

using namespace EngineCalls;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using pdfcore::EngineError;
using pdfcore::PoolLimits;
using pdfcore::SessionPool;

namespace {

/// How long something that must not happen is given to happen.
constexpr auto kMoment = 60ms;

/// How long something that must happen may take on a busy machine.
constexpr auto kPatience = 20s;

template <typename Future>
bool isReady(Future &future, std::chrono::milliseconds time)
{
    return future.wait_for(time) == std::future_status::ready;
}

/// Whether this process has the file open, as far as the system tells.
bool isOpen(const QString &path)
{
#ifdef Q_OS_WIN
    const QString elsewhere = path + u".elsewhere"_s;
    return !QFile::rename(path, elsewhere) || !QFile::rename(elsewhere, path);
#else
    const QString canonical = QFileInfo(path).canonicalFilePath();
    const QFileInfoList handles =
        QDir(u"/proc/self/fd"_s)
            .entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    return std::any_of(handles.begin(), handles.end(), [&canonical](const QFileInfo &handle) {
        return handle.symLinkTarget() == canonical;
    });
#endif
}

} // namespace

/// How open documents are lent, kept and closed.
class TestSessionPool : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void idleSessionIsReused();
    void otherSpellingOfThePathReusesTheSession();
    void otherLettersAreTheSameFileOnWindows();
    void twoBorrowersGetTwoSessions();
    void changedSizeIsReopened();
    void changedTimeIsReopened();
    void otherPasswordGetsASessionOfItsOwn();
    void otherFileGetsASessionOfItsOwn();
    void failedOpeningLendsNothing();
    void failedOpeningDoesNotBlockAClosure();
    void numberOfIdleSessionsIsBounded();
    void memoryOfIdleSessionsIsBounded();
    void renderingAgainTakesNoMoreMemory_data();
    void renderingAgainTakesNoMoreMemory();
    void idleSessionsCloseByThemselves();
    void usedSessionsDoNotExpire();
    void sessionsOfAFileShareItsPages();
    void pagesOfAChangedFileAreReadAnew();
    void pagesThatHadToBeMendedAreNotShared();
    void pagesThatInheritWhereTheyStandAreNotShared();
    void closeIdleClosesAllButLentOnes();
    void sessionInDoubtIsNotKept();
    void closureClosesTheIdleSessionsOfItsFileOnly();
    void closureWaitsForABorrowedSession();
    void closureWaitsForSessionsThatAreBeingClosed();
    void closureHoldsOthersBackUntilItEnds();
    void closureThatWaitsIsKnownUnderEverySpelling();
    void closureDoesNotHoldBackOtherFiles();
    void closureOfAnAbsentFile();
    void sessionsReturnedDuringAClosureAreNotKept();
    void fileReplacedUnderAClosureIsReadAnew();
    void movedLeaseIsGivenBackOnce();
    void manyThreads();

private:
    std::unique_ptr<Folder> m_folder;
    QString m_path;
};

void TestSessionPool::init()
{
    m_folder = std::make_unique<Folder>();
    m_path = m_folder->add(u"file.pdf"_s, PdfFixture::pagesByNumber(2));
}

void TestSessionPool::idleSessionIsReused()
{
    SessionPool pool;
    EngineError outcome;
    QCOMPARE(pool.idleCount(), 0);
    const pdfcore::DocumentSession *first = nullptr;
    {
        const SessionPool::Lease lease = pool.acquire(m_path, {}, &outcome);
        QVERIFY2(lease, qPrintable(outcome.message));
        QCOMPARE(lease->pageCount(), 2);
        QCOMPARE(pool.idleCount(), 0);
        first = lease.operator->();
    }
    QCOMPARE(pool.idleCount(), 1);
    QVERIFY(pool.idleBytes() > 0);
    const SessionPool::Lease again = pool.acquire(m_path, {}, &outcome);
    QCOMPARE(pool.idleCount(), 0);
    QCOMPARE(pool.idleBytes(), 0U);
    QCOMPARE(again.operator->(), first);
}

void TestSessionPool::otherSpellingOfThePathReusesTheSession()
{
    SessionPool pool;
    EngineError outcome;
    pool.acquire(m_path, {}, &outcome);
    QCOMPARE(pool.idleCount(), 1);
    const SessionPool::Lease lease =
        pool.acquire(m_folder->path() + u"/./file.pdf"_s, {}, &outcome);
    QVERIFY(lease);
    QCOMPARE(pool.idleCount(), 0);
}

void TestSessionPool::otherLettersAreTheSameFileOnWindows()
{
    SessionPool pool;
    EngineError outcome;
    pool.acquire(m_path, {}, &outcome);
    const QString upper = m_folder->path(u"FILE.PDF"_s);
#ifdef Q_OS_WIN
    QVERIFY(pool.acquire(upper, {}, &outcome));
    QCOMPARE(pool.idleCount(), 1);
    const SessionPool::FileClosure closure(pool, upper);
    QCOMPARE(pool.idleCount(), 0);
#else
    if (QFileInfo::exists(upper)) {
        QSKIP("The file system does not tell the names apart.");
    }
    m_folder->add(u"FILE.PDF"_s, PdfFixture::pagesByNumber(3));
    QVERIFY(pool.acquire(upper, {}, &outcome));
    QCOMPARE(pool.idleCount(), 2);
    const SessionPool::FileClosure closure(pool, upper);
    QCOMPARE(pool.idleCount(), 1);
#endif
}

void TestSessionPool::twoBorrowersGetTwoSessions()
{
    SessionPool pool;
    EngineError outcome;
    {
        const SessionPool::Lease first = pool.acquire(m_path, {}, &outcome);
        const SessionPool::Lease second = pool.acquire(m_path, {}, &outcome);
        QVERIFY(first && second);
        QVERIFY(first.operator->() != second.operator->());
    }
    QCOMPARE(pool.idleCount(), 2);
}

void TestSessionPool::changedSizeIsReopened()
{
    SessionPool pool;
    EngineError outcome;
    const QDateTime modified = QFileInfo(m_path).lastModified();
    pool.acquire(m_path, {}, &outcome);
    m_folder->add(u"file.pdf"_s, PdfFixture::pagesByNumber(5));
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
    file.close();
    const SessionPool::Lease lease = pool.acquire(m_path, {}, &outcome);
    QVERIFY(lease);
    QCOMPARE(lease->pageCount(), 5);
    QCOMPARE(pool.idleCount(), 0);
}

void TestSessionPool::changedTimeIsReopened()
{
    SessionPool pool;
    EngineError outcome;
    pool.acquire(m_path, {}, &outcome);
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-3600),
                             QFileDevice::FileModificationTime));
    file.close();
    const SessionPool::Lease lease = pool.acquire(m_path, {}, &outcome);
    QVERIFY(lease);
    QCOMPARE(pool.idleCount(), 0);
    QCOMPARE(lease->file().modified, QFileInfo(m_path).lastModified());
}

void TestSessionPool::otherPasswordGetsASessionOfItsOwn()
{
    SessionPool pool;
    EngineError outcome;
    const QString locked = m_folder->add(
        u"locked.pdf"_s, PdfFixture::encrypted(PdfFixture::pagesByNumber(2), {"user", "owner", 4}));
    pool.acquire(locked, u"user"_s, &outcome);
    QCOMPARE(pool.idleCount(), 1);
    {
        const SessionPool::Lease owner = pool.acquire(locked, u"owner"_s, &outcome);
        QVERIFY(owner);
        QCOMPARE(pool.idleCount(), 1);
    }
    QCOMPARE(pool.idleCount(), 2);
    QVERIFY(!pool.acquire(locked, {}, &outcome));
    QCOMPARE(outcome.code, PdfBackendError::PasswordRequired);
    QVERIFY(!pool.acquire(locked, u"wrong"_s, &outcome));
    QCOMPARE(outcome.code, PdfBackendError::InvalidPassword);
    QCOMPARE(pool.idleCount(), 2);
}

void TestSessionPool::otherFileGetsASessionOfItsOwn()
{
    SessionPool pool;
    EngineError outcome;
    const QString other = m_folder->add(u"other.pdf"_s, PdfFixture::pagesByNumber(3));
    pool.acquire(m_path, {}, &outcome);
    const SessionPool::Lease lease = pool.acquire(other, {}, &outcome);
    QCOMPARE(lease->pageCount(), 3);
    QCOMPARE(pool.idleCount(), 1);
}

void TestSessionPool::failedOpeningLendsNothing()
{
    SessionPool pool;
    EngineError outcome;
    const SessionPool::Lease lease = pool.acquire(m_folder->path(u"absent"_s), {}, &outcome);
    QVERIFY(!lease);
    QCOMPARE(outcome.code, PdfBackendError::FileNotFound);
    QCOMPARE(pool.idleCount(), 0);
    QVERIFY(pool.acquire(m_path, {}, &outcome));
    QCOMPARE(outcome.code, PdfBackendError::None);
    QVERIFY(outcome.message.isEmpty());
}

void TestSessionPool::failedOpeningDoesNotBlockAClosure()
{
    SessionPool pool;
    EngineError outcome;
    const QString text = m_folder->add(u"text.pdf"_s, "no document");
    QVERIFY(!pool.acquire(text, {}, &outcome));
    auto closing =
        std::async(std::launch::async, [&] { const SessionPool::FileClosure closure(pool, text); });
    QVERIFY(isReady(closing, kPatience));
}

void TestSessionPool::numberOfIdleSessionsIsBounded()
{
    PoolLimits limits;
    limits.sessions = 3;
    SessionPool pool(limits);
    EngineError outcome;
    std::vector<SessionPool::Lease> leases;
    for (int i = 0; i < 5; ++i) {
        leases.push_back(pool.acquire(m_path, {}, &outcome));
    }
    const pdfcore::DocumentSession *last = leases.back().operator->();
    for (SessionPool::Lease &lease : leases) {
        lease = {};
        QVERIFY(pool.idleCount() <= 3);
    }
    QCOMPARE(pool.idleCount(), 3);
    // Those that were used last are kept.
    const SessionPool::Lease again = pool.acquire(m_path, {}, &outcome);
    QCOMPARE(again.operator->(), last);
}

void TestSessionPool::memoryOfIdleSessionsIsBounded()
{
    PoolLimits limits;
    limits.bytes = 1;
    SessionPool pool(limits);
    EngineError outcome;
    {
        const SessionPool::Lease first = pool.acquire(m_path, {}, &outcome);
        const SessionPool::Lease second = pool.acquire(m_path, {}, &outcome);
    }
    // The last one stays: it is the document in use.
    QCOMPARE(pool.idleCount(), 1);
}

void TestSessionPool::renderingAgainTakesNoMoreMemory_data()
{
    QTest::addColumn<bool>("inBands");
    QTest::newRow("whole page") << false;
    QTest::newRow("page in bands") << true;
}

void TestSessionPool::renderingAgainTakesNoMoreMemory()
{
    QFETCH(const bool, inBands);
    // A path that grows to many lines, for which memory grows with it.
    constexpr int kLines = 5000;
    constexpr QSize kSize(20, 20);
    SessionPool pool;
    EngineError outcome;
    const QString path = m_folder->add(
        u"long.pdf"_s,
        PdfFixture::onePage("0 0 m " + QByteArray("9 9 l 0 9 l ").repeated(kLines) + " f"));
    const SessionPool::Lease lease = pool.acquire(path, {}, &outcome);
    QVERIFY(lease);
    const auto isRendered = [&] {
        if (!inBands) {
            return !lease->render(0, 0, kSize, &outcome).isNull();
        }
        pdfcore::PageBands bands(kSize, 0);
        return lease->renderBands(
            0, 0, bands, [](const QImage & /*band*/, int /*top*/) { return true; }, &outcome);
    };
    const auto bytesAfter = [&](int times) {
        for (int i = 0; i < times; ++i) {
            if (!isRendered()) {
                return std::size_t{0};
            }
        }
        return lease->bytesInUse();
    };
    constexpr std::size_t kSlack = std::size_t{64} << 10;
    const std::size_t before = bytesAfter(2);
    QVERIFY2(before > 0, qPrintable(outcome.message));
    QCOMPARE_LE(bytesAfter(20), before + kSlack);
}

void TestSessionPool::idleSessionsCloseByThemselves()
{
    PoolLimits limits;
    limits.idleTime = 30ms;
    SessionPool pool(limits);
    EngineError outcome;
    for (int round = 0; round < 2; ++round) {
        {
            const SessionPool::Lease first = pool.acquire(m_path, {}, &outcome);
            const SessionPool::Lease second = pool.acquire(m_path, {}, &outcome);
        }
        QTRY_COMPARE(pool.idleCount(), 0);
    }
}

void TestSessionPool::usedSessionsDoNotExpire()
{
    PoolLimits limits;
    limits.idleTime = 1ms;
    SessionPool pool(limits);
    EngineError outcome;
    const SessionPool::Lease lease = pool.acquire(m_path, {}, &outcome);
    pool.acquire(m_path, {}, &outcome);
    QTRY_COMPARE(pool.idleCount(), 0);
    QCOMPARE(lease->pages()->pageSizes.size(), lease->pageCount());
}

void TestSessionPool::sessionsOfAFileShareItsPages()
{
    SessionPool pool;
    EngineError outcome;
    const SessionPool::Lease first = pool.acquire(m_path, {}, &outcome);
    const SessionPool::Lease second = pool.acquire(m_path, {}, &outcome);
    QVERIFY(first && second);
    QCOMPARE(second->pages(), first->pages());
    QVERIFY(!second->render(0, 0, {10, 10}, &outcome).isNull());
}

void TestSessionPool::pagesOfAChangedFileAreReadAnew()
{
    SessionPool pool;
    EngineError outcome;
    const QString path = m_folder->add(u"changing.pdf"_s, PdfFixture::pagesByNumber(2));
    const SessionPool::Lease before = pool.acquire(path, {}, &outcome);
    QCOMPARE(before->pageCount(), 2);
    m_folder->add(u"changing.pdf"_s, PdfFixture::pagesByNumber(5));
    const SessionPool::Lease after = pool.acquire(path, {}, &outcome);
    QCOMPARE(after->pageCount(), 5);
}

void TestSessionPool::pagesThatHadToBeMendedAreNotShared()
{
    // A page that stands directly in its parent has a number in one session only.
    SessionPool pool;
    EngineError outcome;
    const QString path = m_folder->add(
        u"direct.pdf"_s,
        PdfFixture::fromObjects({"<< /Type /Catalog /Pages 2 0 R >>",
                                 "<< /Type /Pages /Count 1 /Kids [<< /Type /Page /Parent 2 0 R "
                                 "/MediaBox [0 0 10 10] >>] >>"}));
    const SessionPool::Lease first = pool.acquire(path, {}, &outcome);
    const SessionPool::Lease second = pool.acquire(path, {}, &outcome);
    QVERIFY(first && second);
    QVERIFY(first->pages() != second->pages());
    QVERIFY(!second->render(0, 0, {10, 10}, &outcome).isNull());
}

void TestSessionPool::pagesThatInheritWhereTheyStandAreNotShared()
{
    // What a page without a way up inherits is written into it, in the memory of one session only.
    SessionPool pool;
    EngineError outcome;
    const QString path = m_folder->add(
        u"orphan.pdf"_s,
        PdfFixture::fromObjects({"<< /Type /Catalog /Pages 2 0 R >>",
                                 "<< /Type /Pages /Count 1 /Kids [3 0 R] /MediaBox [0 0 10 10] >>",
                                 "<< /Type /Page /Contents 4 0 R >>",
                                 PdfFixture::streamBody({}, "1 0 0 rg 0 0 10 10 re f")}));
    const SessionPool::Lease first = pool.acquire(path, {}, &outcome);
    const SessionPool::Lease second = pool.acquire(path, {}, &outcome);
    for (const SessionPool::Lease *lease : {&first, &second}) {
        QVERIFY(*lease);
        COMPARE_COLOUR(middle((*lease)->render(0, 0, {20, 20}, &outcome)), Qt::red, 0);
    }
}

void TestSessionPool::closeIdleClosesAllButLentOnes()
{
    SessionPool pool;
    EngineError outcome;
    const SessionPool::Lease lease = pool.acquire(m_path, {}, &outcome);
    pool.acquire(m_path, {}, &outcome);
    pool.acquire(m_folder->add(u"other.pdf"_s, PdfFixture::pagesByNumber(1)), {}, &outcome);
    QCOMPARE(pool.idleCount(), 2);
    pool.closeIdle();
    QCOMPARE(pool.idleCount(), 0);
    QCOMPARE(lease->pages()->pageSizes.size(), lease->pageCount());
}

void TestSessionPool::sessionInDoubtIsNotKept()
{
    SessionPool pool;
    pdfcore::SessionBudgets budgets;
    budgets.page = {0ms, 0};
    pool.setBudgets(budgets);
    EngineError outcome;
    {
        const SessionPool::Lease lease = pool.acquire(m_path, {}, &outcome);
        QVERIFY(lease->render(0, 0, {9, 9}, &outcome).isNull());
        QCOMPARE(outcome.code, PdfBackendError::RenderFailed);
        QVERIFY(!lease->isUsable());
    }
    QCOMPARE(pool.idleCount(), 0);
}

void TestSessionPool::closureClosesTheIdleSessionsOfItsFileOnly()
{
    SessionPool pool;
    EngineError outcome;
    const QString other = m_folder->add(u"other.pdf"_s, PdfFixture::pagesByNumber(3));
    {
        const SessionPool::Lease first = pool.acquire(m_path, {}, &outcome);
        const SessionPool::Lease second = pool.acquire(m_path, {}, &outcome);
        const SessionPool::Lease third = pool.acquire(other, {}, &outcome);
    }
    QCOMPARE(pool.idleCount(), 3);
    const SessionPool::FileClosure closure(pool, m_folder->path() + u"/./file.pdf"_s);
    QCOMPARE(pool.idleCount(), 1);
    const SessionPool::Lease kept = pool.acquire(other, {}, &outcome);
    QCOMPARE(pool.idleCount(), 0);
}

void TestSessionPool::closureWaitsForABorrowedSession()
{
    SessionPool pool;
    EngineError outcome;
    SessionPool::Lease lease = pool.acquire(m_path, {}, &outcome);
    std::atomic<bool> closed{false};
    auto closing = std::async(std::launch::async, [&] {
        const SessionPool::FileClosure closure(pool, m_path);
        closed = true;
    });
    const bool early = isReady(closing, kMoment);
    const bool closedEarly = closed;
    lease = {};
    QVERIFY(isReady(closing, kPatience));
    QVERIFY(!early);
    QVERIFY(!closedEarly);
}

void TestSessionPool::closureWaitsForSessionsThatAreBeingClosed()
{
#if !defined(Q_OS_WIN) && !defined(Q_OS_LINUX)
    QSKIP("This system does not tell which files are open.");
#endif
    PoolLimits limits;
    limits.idleTime = 1ms;
    SessionPool pool(limits);
    EngineError outcome;
    // Large enough, and often enough, for the closing to take a while.
    const QString large = m_folder->add(u"large.pdf"_s, PdfFixture::pagesByNumber(5000));
    std::vector<SessionPool::Lease> leases;
    for (int i = 0; i < 5; ++i) {
        leases.push_back(pool.acquire(large, {}, &outcome));
        QVERIFY2(leases.back(), qPrintable(outcome.message));
    }
    QVERIFY(isOpen(large));
    leases.clear();
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (pool.idleCount() != 0 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    // No longer idle, but the thread that closes them has only begun.
    const SessionPool::FileClosure closure(pool, large);
    QVERIFY(!isOpen(large));
}

void TestSessionPool::closureHoldsOthersBackUntilItEnds()
{
    SessionPool pool;
    auto closure = std::make_unique<SessionPool::FileClosure>(pool, m_path);
    auto second = std::make_unique<SessionPool::FileClosure>(pool, m_path);
    auto opening = std::async(std::launch::async, [&] {
        EngineError outcome;
        return static_cast<bool>(pool.acquire(m_path, {}, &outcome));
    });
    const bool early = isReady(opening, kMoment);
    closure.reset();
    const bool stillEarly = isReady(opening, kMoment);
    second.reset();
    QVERIFY(isReady(opening, kPatience));
    QVERIFY(!early);
    QVERIFY(!stillEarly);
    QVERIFY(opening.get());
}

void TestSessionPool::closureThatWaitsIsKnownUnderEverySpelling()
{
    SessionPool pool;
    EngineError outcome;
    const QString spelling = m_folder->path() + u"/./file.pdf"_s;
    const QString other = m_folder->add(u"other.pdf"_s, PdfFixture::pagesByNumber(1));
    SessionPool::Lease lease = pool.acquire(m_path, {}, &outcome);
    const bool early = pool.isAwaited(m_path) || pool.isAwaited(spelling);
    auto closing = std::async(std::launch::async,
                              [&] { const SessionPool::FileClosure closure(pool, m_path); });
    const bool isKnown = QTest::qWaitFor([&] { return pool.isAwaited(m_path); });
    const bool isKnownOtherwise = pool.isAwaited(spelling);
    const bool isOtherAwaited = pool.isAwaited(other);
    lease = {};
    QVERIFY(isReady(closing, kPatience));
    QVERIFY(!early);
    QVERIFY(isKnown);
    QVERIFY(isKnownOtherwise);
    QVERIFY(!isOtherAwaited);
    QVERIFY(!pool.isAwaited(m_path));
}

void TestSessionPool::closureDoesNotHoldBackOtherFiles()
{
    SessionPool pool;
    EngineError outcome;
    const SessionPool::FileClosure closure(pool, m_path);
    QVERIFY(
        pool.acquire(m_folder->add(u"other.pdf"_s, PdfFixture::pagesByNumber(1)), {}, &outcome));
}

void TestSessionPool::closureOfAnAbsentFile()
{
    SessionPool pool;
    EngineError outcome;
    const QString absent = m_folder->path(u"new.pdf"_s);
    {
        const SessionPool::FileClosure closure(pool, absent);
        // What is closed under its old name opens under its new state.
        QVERIFY(QFile::copy(m_path, absent));
    }
    QVERIFY(pool.acquire(absent, {}, &outcome));
}

void TestSessionPool::sessionsReturnedDuringAClosureAreNotKept()
{
    SessionPool pool;
    EngineError outcome;
    SessionPool::Lease first = pool.acquire(m_path, {}, &outcome);
    SessionPool::Lease second = pool.acquire(m_path, {}, &outcome);
    std::promise<void> finish;
    auto closing = std::async(std::launch::async, [&] {
        const SessionPool::FileClosure closure(pool, m_path);
        finish.get_future().wait();
        return pool.idleCount();
    });
    std::this_thread::sleep_for(kMoment);
    first = {};
    second = {};
    finish.set_value();
    QCOMPARE(closing.get(), 0);
}

void TestSessionPool::fileReplacedUnderAClosureIsReadAnew()
{
    SessionPool pool;
    EngineError outcome;
    const QDateTime modified = QFileInfo(m_path).lastModified();
    const QByteArray before = contentOf(m_path);
    pool.acquire(m_path, {}, &outcome);
    {
        // Same size, same time: only the closure tells that it is another file.
        const SessionPool::FileClosure closure(pool, m_path);
        QByteArray content =
            PdfFixture::fromObjects({"<< /Type /Catalog /Pages 2 0 R >>",
                                     "<< /Type /Pages /Kids [3 0 R 3 0 R 3 0 R] /Count 3 >>",
                                     "<< /Type /Page /Parent 2 0 R >>"});
        QVERIFY(content.size() <= before.size());
        content.append(QByteArray(before.size() - content.size(), '\n'));
        m_folder->add(u"file.pdf"_s, content);
        QFile file(m_path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(modified, QFileDevice::FileModificationTime));
    }
    const SessionPool::Lease lease = pool.acquire(m_path, {}, &outcome);
    QVERIFY2(lease, qPrintable(outcome.message));
    QCOMPARE(lease->pageCount(), 3);
}

void TestSessionPool::movedLeaseIsGivenBackOnce()
{
    SessionPool pool;
    EngineError outcome;
    SessionPool::Lease first = pool.acquire(m_path, {}, &outcome);
    SessionPool::Lease second = std::move(first);
    QVERIFY(second);
    first = {};
    QCOMPARE(pool.idleCount(), 0);
    SessionPool::Lease third;
    QVERIFY(!third);
    third = std::move(second);
    second = std::move(third);
    QVERIFY(second);
    second = {};
    QCOMPARE(pool.idleCount(), 1);
    const SessionPool::FileClosure closure(pool, m_path);
    QCOMPARE(pool.idleCount(), 0);
}

void TestSessionPool::manyThreads()
{
    constexpr int kThreads = 6;
    constexpr int kRounds = 40;
    PoolLimits limits;
    limits.sessions = 2;
    limits.idleTime = 1ms;
    SessionPool pool(limits);
    const QString other = m_folder->add(u"other.pdf"_s, PdfFixture::pagesByNumber(1));
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            for (int round = 0; round < kRounds; ++round) {
                const QString &path = (thread + round) % 2 == 0 ? m_path : other;
                if (thread == 0) {
                    const SessionPool::FileClosure closure(pool, path);
                    continue;
                }
                EngineError outcome;
                const SessionPool::Lease lease = pool.acquire(path, {}, &outcome);
                if (!lease || lease->pageCount() != (path == m_path ? 2 : 1) ||
                    lease->render(0, 0, {4, 4}, &outcome).isNull()) {
                    ++wrong;
                }
                if (round % 16 == 0) {
                    pool.closeIdle();
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    QCOMPARE(wrong.load(), 0);
    QTRY_COMPARE(pool.idleCount(), 0);
}

QTEST_GUILESS_MAIN(TestSessionPool)
#include "tst_session_pool.moc"
