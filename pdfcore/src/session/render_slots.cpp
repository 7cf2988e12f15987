// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/render_slots.h"

#include <chrono>

namespace pdfcore {

namespace {

/// Whoever sets a flag does not know who waits.
constexpr std::chrono::milliseconds kCancelPoll{20};

} // namespace

bool RenderSlots::take(const PdfCancelFlag &cancel)
{
    std::unique_lock lock(m_mutex);
    const auto ticket = m_waiting.insert(m_waiting.end(), m_nextTicket++);
    const auto isNext = [&] { return m_inUse < m_limit && m_waiting.begin() == ticket; };
    while (!isNext() && !cancel.isSet()) {
        m_changed.wait_for(lock, kCancelPoll);
    }
    const bool isTaken = !cancel.isSet();
    m_inUse += isTaken ? 1 : 0;
    m_waiting.erase(ticket);
    // There may be a slot for the one behind, too.
    m_changed.notify_all();
    return isTaken;
}

bool RenderSlots::tryTake()
{
    const std::lock_guard lock(m_mutex);
    if (m_inUse >= m_limit || !m_waiting.empty()) {
        return false;
    }
    ++m_inUse;
    return true;
}

void RenderSlots::force()
{
    const std::lock_guard lock(m_mutex);
    ++m_inUse;
}

void RenderSlots::giveBack()
{
    {
        const std::lock_guard lock(m_mutex);
        --m_inUse;
    }
    m_changed.notify_all();
}

bool RenderSlots::isAwaited() const
{
    const std::lock_guard lock(m_mutex);
    return !m_waiting.empty();
}

int RenderSlots::inUse() const
{
    const std::lock_guard lock(m_mutex);
    return m_inUse;
}

} // namespace pdfcore
