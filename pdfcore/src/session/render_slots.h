// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"

#include <condition_variable>
#include <mutex>
#include <set>

namespace pdfcore {

/// Keeps the number of threads that render at the same time within a limit, whoever started them.
/// Any thread.
class RenderSlots final
{
public:
    explicit RenderSlots(int limit)
        : m_limit(limit)
    {}
    RenderSlots(const RenderSlots &) = delete;
    RenderSlots &operator=(const RenderSlots &) = delete;

    /// Waits until the calling thread may render; in the order of the calls. False when that was
    /// cancelled before.
    bool take(const PdfCancelFlag &cancel);
    /// Takes a slot that nobody waits for; false when there is none.
    bool tryTake();
    /// Takes a slot at once, if need be beyond the limit: for a thread that must not wait.
    void force();
    void giveBack();

    /// Whether a thread waits, so that one that only helps another should leave.
    [[nodiscard]] bool isAwaited() const;
    [[nodiscard]] int inUse() const;

private:
    const int m_limit;
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_inUse = 0;
    unsigned long long m_nextTicket = 0;
    std::set<unsigned long long> m_waiting; ///< Tickets, the oldest first.
};

/// Has a slot that was taken for it, for as long as it lives.
class RenderSlot final
{
public:
    explicit RenderSlot(RenderSlots &renderSlots)
        : m_slots(renderSlots)
    {}
    ~RenderSlot() { m_slots.giveBack(); }
    RenderSlot(const RenderSlot &) = delete;
    RenderSlot &operator=(const RenderSlot &) = delete;

private:
    RenderSlots &m_slots;
};

} // namespace pdfcore
