// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QtGlobal>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif

/// Stands for a full disk while it lives: no file of this program gets larger than `bytes`. Where
/// the system cannot do that, isActive() is false.
class FullDisk final
{
public:
    explicit FullDisk([[maybe_unused]] quint64 bytes)
    {
#ifdef Q_OS_UNIX
        std::signal(SIGXFSZ, SIG_IGN);
        m_isActive = getrlimit(RLIMIT_FSIZE, &m_before) == 0;
        rlimit limited = m_before;
        limited.rlim_cur = bytes;
        m_isActive = m_isActive && setrlimit(RLIMIT_FSIZE, &limited) == 0;
#endif
    }
    ~FullDisk()
    {
#ifdef Q_OS_UNIX
        if (m_isActive) {
            setrlimit(RLIMIT_FSIZE, &m_before);
        }
#endif
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

    [[nodiscard]] bool isActive() const
    {
        return m_isActive;
    }

private:
    bool m_isActive = false;
#ifdef Q_OS_UNIX
    rlimit m_before{};
#endif
};
