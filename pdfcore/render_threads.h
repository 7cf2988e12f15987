// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QThread>

#include <algorithm>

namespace pdfcore {

inline constexpr int kFewestRenderThreads = 2;
inline constexpr int kMostRenderThreads = 4;

/// Threads that render at the same time in one process, callers of the engine included: all
/// processors but one, which is left to the interface, and at least 2 and at most 4.
///
/// May be called from any thread.
[[nodiscard]] inline int renderThreadLimit()
{
    return std::clamp(QThread::idealThreadCount() - 1, kFewestRenderThreads, kMostRenderThreads);
}

} // namespace pdfcore
