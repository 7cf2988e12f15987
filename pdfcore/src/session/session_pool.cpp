// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/session_pool.h"

#include <iterator>
#include <utility>

namespace pdfcore {

SessionPool::Lease::Lease(SessionPool *pool, QString key, std::unique_ptr<DocumentSession> session)
    : m_pool(pool)
    , m_key(std::move(key))
    , m_session(std::move(session))
{}

SessionPool::Lease::~Lease()
{
    giveBack();
}

SessionPool::Lease::Lease(Lease &&other) noexcept
    : m_pool(std::exchange(other.m_pool, nullptr))
    , m_key(std::move(other.m_key))
    , m_session(std::move(other.m_session))
{}

SessionPool::Lease &SessionPool::Lease::operator=(Lease &&other) noexcept
{
    if (this != &other) {
        giveBack();
        m_pool = std::exchange(other.m_pool, nullptr);
        m_key = std::move(other.m_key);
        m_session = std::move(other.m_session);
    }
    return *this;
}

void SessionPool::Lease::giveBack()
{
    if (m_pool != nullptr) {
        std::exchange(m_pool, nullptr)->giveBack(m_key, std::move(m_session));
    }
}

SessionPool::FileClosure::FileClosure(SessionPool &pool, const QString &path)
    : m_pool(pool)
    , m_key(comparablePath(path))
{
    std::unique_lock lock(m_pool.m_mutex);
    m_pool.m_closed.insert(m_key);
    m_pool.close(lock, m_pool.takeIdle(m_key));
    m_pool.m_changed.wait(lock, [this] { return !m_pool.m_lent.contains(m_key); });
}

SessionPool::FileClosure::~FileClosure()
{
    const std::lock_guard lock(m_pool.m_mutex);
    m_pool.m_closed.erase(m_pool.m_closed.find(m_key));
    m_pool.m_changed.notify_all();
}

SessionPool::SessionPool(const PoolLimits &limits)
    : m_limits(limits)
    , m_expiryThread([this] { closeExpiredSessions(); })
{}

SessionPool::~SessionPool()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopping = true;
        m_changed.notify_all();
    }
    m_expiryThread.join();
}

SessionPool::Lease SessionPool::acquire(const QString &path, const QString &password,
                                        EngineError *outcome, const std::atomic<bool> *cancelled)
{
    *outcome = {};
    const QString key = comparablePath(path);
    // Whatever happens from here on, the entry among the lent ones goes with the lease.
    Lease lease;
    Sessions outdated;
    FileIdentity file;
    SessionBudgets budgets;
    std::shared_ptr<const PageTree> pages;
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return !m_closed.contains(key); });
        file = FileIdentity::of(path);
        m_lent.insert(key);
        lease = Lease(this, key, takeIdle(key, file, password, outdated));
        if (lease) {
            return lease;
        }
        budgets = m_budgets;
        budgets.open.cancelled = cancelled;
        pages = knownPages(key, file);
    }
    lease.m_session = DocumentSession::open(file, password, budgets, outcome, pages);
    if (!lease) {
        return {};
    }
    if (!pages && lease->pages()->isOfFile) {
        rememberPages(key, file, lease->pages());
    }
    return lease;
}

std::shared_ptr<const PageTree> SessionPool::knownPages(const QString &key,
                                                        const FileIdentity &file) const
{
    const auto known = m_pages.find(key);
    if (known == m_pages.end() || !known->second.file.isSameRevision(file)) {
        return nullptr;
    }
    return known->second.pages.lock();
}

void SessionPool::rememberPages(const QString &key, const FileIdentity &file,
                                const std::shared_ptr<const PageTree> &pages)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_pages, [](const auto &entry) { return entry.second.pages.expired(); });
    m_pages[key] = {file, pages};
}

void SessionPool::setBudgets(const SessionBudgets &budgets)
{
    const std::lock_guard lock(m_mutex);
    m_budgets = budgets;
}

bool SessionPool::isAwaited(const QString &path) const
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed.empty()) {
            return false;
        }
    }
    const QString key = comparablePath(path);
    const std::lock_guard lock(m_mutex);
    return m_closed.contains(key);
}

int SessionPool::idleCount() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_idle.size());
}

int SessionPool::lentCount() const
{
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_lent.size());
}

std::size_t SessionPool::idleBytes() const
{
    const std::lock_guard lock(m_mutex);
    std::size_t bytes = 0;
    for (const IdleSession &idle : m_idle) {
        bytes += idle.session->bytesInUse();
    }
    return bytes;
}

void SessionPool::closeIdle()
{
    std::unique_lock lock(m_mutex);
    close(lock, std::exchange(m_idle, {}));
}

void SessionPool::closeIdle(const QString &path)
{
    const QString key = comparablePath(path);
    std::unique_lock lock(m_mutex);
    close(lock, takeIdle(key));
}

SessionPool::Sessions SessionPool::takeIdle(const QString &key)
{
    Sessions taken;
    for (auto it = m_idle.begin(); it != m_idle.end();) {
        const auto next = std::next(it);
        if (it->key == key) {
            taken.splice(taken.end(), m_idle, it);
        }
        it = next;
    }
    return taken;
}

std::unique_ptr<DocumentSession> SessionPool::takeIdle(const QString &key, const FileIdentity &file,
                                                       const QString &password, Sessions &outdated)
{
    std::unique_ptr<DocumentSession> found;
    for (auto it = m_idle.begin(); it != m_idle.end();) {
        const auto next = std::next(it);
        if (it->key == key) {
            const FileIdentity &opened = it->session->file();
            if (!opened.isSameRevision(file)) {
                outdated.splice(outdated.end(), m_idle, it);
            } else if (!found && it->session->password() == password) {
                found = std::move(it->session);
                m_idle.erase(it);
            }
        }
        it = next;
    }
    return found;
}

void SessionPool::giveBack(const QString &key, std::unique_ptr<DocumentSession> session)
{
    std::unique_lock lock(m_mutex);
    m_lent.erase(m_lent.find(key));
    const bool keep = session && session->isUsable() && !m_closed.contains(key) && !m_stopping;
    if (keep) {
        m_idle.push_front({key, std::move(session), Clock::now()});
    } else {
        // Closed before the wait for it ends: on some systems an open file cannot be replaced.
        session.reset();
    }
    m_changed.notify_all();
    close(lock, takeSurplus());
}

void SessionPool::close(std::unique_lock<std::mutex> &lock, Sessions sessions)
{
    if (sessions.empty()) {
        return;
    }
    for (const IdleSession &idle : sessions) {
        m_lent.insert(idle.key);
    }
    lock.unlock();
    for (IdleSession &idle : sessions) {
        idle.session.reset();
    }
    lock.lock();
    for (const IdleSession &idle : sessions) {
        m_lent.erase(m_lent.find(idle.key));
    }
    m_changed.notify_all();
}

SessionPool::Sessions SessionPool::takeSurplus()
{
    Sessions surplus;
    std::size_t bytes = 0;
    std::size_t count = 0;
    for (auto it = m_idle.begin(); it != m_idle.end();) {
        const auto next = std::next(it);
        bytes += it->session->bytesInUse();
        ++count;
        if (count > m_limits.sessions || (count > 1 && bytes > m_limits.bytes)) {
            surplus.splice(surplus.end(), m_idle, it);
        }
        it = next;
    }
    return surplus;
}

SessionPool::Sessions SessionPool::takeExpired(Clock::time_point now)
{
    Sessions expired;
    while (!m_idle.empty() && now - m_idle.back().since >= m_limits.idleTime) {
        expired.splice(expired.end(), m_idle, std::prev(m_idle.end()));
    }
    return expired;
}

void SessionPool::closeExpiredSessions()
{
    std::unique_lock lock(m_mutex);
    while (!m_stopping) {
        if (m_idle.empty()) {
            m_changed.wait(lock, [this] { return m_stopping || !m_idle.empty(); });
            continue;
        }
        m_changed.wait_until(lock, m_idle.back().since + m_limits.idleTime);
        close(lock, takeExpired(Clock::now()));
    }
}

} // namespace pdfcore
