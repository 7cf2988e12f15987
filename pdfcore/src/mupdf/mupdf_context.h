// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <utility>

#include <mupdf/fitz.h>

namespace pdfcore {

/// How much one piece of work may cost before it is given up.
struct WorkBudget
{
    std::chrono::milliseconds time;
    std::size_t bytes; ///< On top of what the context holds when the work starts.
    /// Ends the work once it is set, from any thread; null: nothing does.
    const std::atomic<bool> *cancelled = nullptr;
};

/// Which part of its budget a piece of work used up, or that it was cancelled before.
enum class BudgetBreach { None, Time, Memory, Cancelled };

/// A MuPDF context of its own, with counted memory and limits on time and memory.
///
/// The context is never cloned and belongs to one thread at a time; it may be handed from thread
/// to thread as long as the hand-over itself is synchronised. FreeType, HarfBuzz and OpenJPEG keep
/// process-wide state, so the lock that guards them is one for all contexts; the others guard the
/// context's own data and need not lock at all.
///
/// When a budget is used up, or the work cancelled, every further allocation fails, which ends the
/// work at the next one.
class MupdfContext final
{
public:
    MupdfContext();
    ~MupdfContext();
    MupdfContext(const MupdfContext &) = delete;
    MupdfContext &operator=(const MupdfContext &) = delete;

    /// Null when the context could not be created for want of memory.
    [[nodiscard]] fz_context *get() const { return m_context; }

    /// Bytes that are allocated through the context now.
    [[nodiscard]] std::size_t bytesInUse() const { return m_allocator.inUse; }

    /// Starts counting time and memory against `budget`. Work must not nest.
    void beginWork(const WorkBudget &budget);
    /// Lifts the limits and tells which of them was hit.
    BudgetBreach endWork();
    /// True when the current work has used up its time or was cancelled; looked at by long loops.
    [[nodiscard]] bool isOutOfTime() noexcept;

    /// Runs `body`, which may throw MuPDF errors; false and the reason when it did.
    ///
    /// The error path is a longjmp: `body` and what it calls must not hold C++ objects with
    /// destructors, and no C++ exception may leave it.
    template <typename Body>
    bool run(Body &&body, QString *reason)
    {
        bool ok = true;
        fz_var(ok);
        fz_try(m_context)
        {
            body(m_context);
        }
        fz_catch(m_context)
        {
            ok = false;
        }
        if (!ok && reason != nullptr) {
            *reason = caughtReason();
        }
        return ok;
    }

private:
    struct Allocator
    {
        std::size_t inUse = 0;
        std::size_t limit = 0; ///< 0: no limit.
        bool hasDeadline = false;
        std::chrono::steady_clock::time_point deadline;
        const std::atomic<bool> *cancelled = nullptr;
        unsigned callsUntilClock = 0;
        BudgetBreach breach = BudgetBreach::None;
        /// What the last call asked for in vain; 0 when it was granted. MuPDF frees what it can and
        /// asks again, and memory has run out only when that fails too.
        std::size_t refusedBytes = 0;
    };

    static void *allocate(void *user, std::size_t size);
    static void *reallocate(void *user, void *block, std::size_t size);
    static void release(void *user, void *block);
    /// Records that memory ran out unless what was refused last is what is asked for again now.
    static void settleRefusal(Allocator &allocator, std::size_t asked);
    /// Whether the work is to end; notes why.
    static bool isOver(Allocator &allocator);
    static bool mayAllocate(Allocator &allocator, std::size_t grown);

    [[nodiscard]] QString caughtReason() const;

    Allocator m_allocator;
    fz_alloc_context m_allocFunctions{};
    fz_locks_context m_lockFunctions{};
    fz_context *m_context = nullptr;
};

} // namespace pdfcore
