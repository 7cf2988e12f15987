// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/session/document_session.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>

#include <QString>

namespace pdfcore {

/// How many idle sessions a pool keeps, and for how long.
struct PoolLimits
{
    std::size_t sessions = 6;
    std::size_t bytes = std::size_t{128} << 20;
    std::chrono::milliseconds idleTime = std::chrono::seconds{15};
};

/// Open documents, lent to one thread at a time.
///
/// A thread that needs a document gets an idle session of the same revision of the file, opened
/// with the same password, or opens one more. Returned sessions wait for the next use, bounded in
/// number and memory, and are closed after a while without use, or when their file is about to be
/// replaced. All operations may be called from any thread.
class SessionPool final
{
public:
    /// A borrowed session; goes back to the pool when destroyed. Empty when opening failed.
    class Lease
    {
    public:
        Lease() = default;
        Lease(SessionPool *pool, QString key, std::unique_ptr<DocumentSession> session);
        ~Lease();
        Lease(Lease &&other) noexcept;
        Lease &operator=(Lease &&other) noexcept;
        Lease(const Lease &) = delete;
        Lease &operator=(const Lease &) = delete;

        explicit operator bool() const { return m_session != nullptr; }
        DocumentSession *operator->() const { return m_session.get(); }

    private:
        friend class SessionPool;

        void giveBack();

        SessionPool *m_pool = nullptr;
        QString m_key;
        std::unique_ptr<DocumentSession> m_session;
    };

    /// Keeps a file closed while it lives: idle sessions are closed, borrowed ones waited for, and
    /// new ones held back until it is destroyed. Not for a thread that holds a lease of the file.
    class FileClosure
    {
    public:
        FileClosure(SessionPool &pool, const QString &path);
        ~FileClosure();
        FileClosure(const FileClosure &) = delete;
        FileClosure &operator=(const FileClosure &) = delete;

    private:
        SessionPool &m_pool;
        QString m_key;
    };

    explicit SessionPool(const PoolLimits &limits = {});
    ~SessionPool();
    SessionPool(const SessionPool &) = delete;
    SessionPool &operator=(const SessionPool &) = delete;

    /// Borrows a session for the file. An empty lease on failure, with the error in `outcome`.
    ///
    /// @param cancelled  Ends opening the file once it is set; null: nothing does.
    Lease acquire(const QString &path, const QString &password, EngineError *outcome,
                  const std::atomic<bool> *cancelled = nullptr);

    /// Sets what the work of sessions that are opened from now on may cost.
    void setBudgets(const SessionBudgets &budgets);

    /// Whether somebody waits for all sessions of the file to be given back, or keeps it closed.
    [[nodiscard]] bool isAwaited(const QString &path) const;

    /// Sessions that are open and idle now.
    [[nodiscard]] int idleCount() const;
    /// Sessions that are in use now or being closed.
    [[nodiscard]] int lentCount() const;
    /// Memory that the idle sessions hold, in bytes.
    [[nodiscard]] std::size_t idleBytes() const;
    /// Closes every idle session.
    void closeIdle();
    /// Closes every idle session of the file.
    void closeIdle(const QString &path);

private:
    using Clock = std::chrono::steady_clock;

    struct IdleSession
    {
        QString key;
        std::unique_ptr<DocumentSession> session;
        Clock::time_point since;
    };
    using Sessions = std::list<IdleSession>;

    /// The pages of a file, for as long as a session of it is open.
    struct KnownPages
    {
        FileIdentity file;
        std::weak_ptr<const PageTree> pages;
    };

    std::unique_ptr<DocumentSession> takeIdle(const QString &key, const FileIdentity &file,
                                              const QString &password, Sessions &outdated);
    std::shared_ptr<const PageTree> knownPages(const QString &key, const FileIdentity &file) const;
    void rememberPages(const QString &key, const FileIdentity &file,
                       const std::shared_ptr<const PageTree> &pages);
    void giveBack(const QString &key, std::unique_ptr<DocumentSession> session);
    Sessions takeIdle(const QString &key);
    /// Closes sessions with the lock released. Until they are closed their files count as lent.
    void close(std::unique_lock<std::mutex> &lock, Sessions sessions);
    Sessions takeSurplus();
    Sessions takeExpired(Clock::time_point now);
    void closeExpiredSessions();

    const PoolLimits m_limits;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    SessionBudgets m_budgets;
    Sessions m_idle;               ///< Most recently used first.
    std::multiset<QString> m_lent; ///< One entry for each session that is in use or being closed.
    std::multiset<QString> m_closed;
    std::map<QString, KnownPages> m_pages; ///< By the file's key.
    bool m_stopping = false;
    std::thread m_expiryThread;
};

} // namespace pdfcore
