// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/mupdf/mupdf_context.h"

#include "pdfcore/src/mupdf/system_fonts.h"

#include <cstdlib>
#include <cstring>
#include <mutex>

namespace pdfcore {

namespace {

/// Decoded images and fonts that one context may keep for its document.
constexpr std::size_t kStoreBytes = std::size_t{24} << 20;

/// Allocations between two looks at the clock.
constexpr unsigned kCallsPerClockCheck = 64;

/// Room in front of each block for its size; keeps the block aligned for any type.
constexpr std::size_t kHeaderBytes = alignof(std::max_align_t);
static_assert(kHeaderBytes >= sizeof(std::size_t));

std::mutex &sharedLibraryMutex()
{
    static std::mutex mutex;
    return mutex;
}

void lockShared(void * /*user*/, int lock)
{
    if (lock == FZ_LOCK_FREETYPE) {
        sharedLibraryMutex().lock();
    }
}

void unlockShared(void * /*user*/, int lock)
{
    if (lock == FZ_LOCK_FREETYPE) {
        sharedLibraryMutex().unlock();
    }
}

void discardMessage(void * /*user*/, const char * /*message*/) {}

std::size_t blockSize(const void *block)
{
    std::size_t size = 0;
    std::memcpy(&size, static_cast<const char *>(block) - kHeaderBytes, sizeof size);
    return size;
}

void *withHeader(void *raw, std::size_t size)
{
    std::memcpy(raw, &size, sizeof size);
    return static_cast<char *>(raw) + kHeaderBytes;
}

} // namespace

MupdfContext::MupdfContext()
{
    m_allocFunctions = {&m_allocator, &allocate, &reallocate, &release};
    m_lockFunctions = {nullptr, &lockShared, &unlockShared};
    m_context = fz_new_context(&m_allocFunctions, &m_lockFunctions, kStoreBytes);
    if (m_context == nullptr) {
        return;
    }
    fz_set_warning_callback(m_context, &discardMessage, nullptr);
    fz_set_error_callback(m_context, &discardMessage, nullptr);
    useSystemFonts(m_context);
}

MupdfContext::~MupdfContext()
{
    fz_drop_context(m_context);
}

void MupdfContext::beginWork(const WorkBudget &budget)
{
    m_allocator.breach = BudgetBreach::None;
    m_allocator.refusedBytes = 0;
    m_allocator.limit = m_allocator.inUse + budget.bytes;
    m_allocator.deadline = std::chrono::steady_clock::now() + budget.time;
    m_allocator.hasDeadline = true;
    m_allocator.cancelled = budget.cancelled;
    m_allocator.callsUntilClock = 0;
}

BudgetBreach MupdfContext::endWork()
{
    m_allocator.limit = 0;
    m_allocator.hasDeadline = false;
    m_allocator.cancelled = nullptr;
    settleRefusal(m_allocator, 0);
    return m_allocator.breach;
}

bool MupdfContext::isOutOfTime() noexcept
{
    return m_allocator.hasDeadline && isOver(m_allocator);
}

bool MupdfContext::isOver(Allocator &allocator)
{
    if (allocator.breach == BudgetBreach::Time || allocator.breach == BudgetBreach::Cancelled) {
        return true;
    }
    if (allocator.cancelled != nullptr && *allocator.cancelled) {
        allocator.breach = BudgetBreach::Cancelled;
        return true;
    }
    if (std::chrono::steady_clock::now() < allocator.deadline) {
        return false;
    }
    allocator.breach = BudgetBreach::Time;
    return true;
}

void MupdfContext::settleRefusal(Allocator &allocator, std::size_t asked)
{
    if (allocator.refusedBytes != 0 && allocator.refusedBytes != asked &&
        allocator.breach == BudgetBreach::None) {
        allocator.breach = BudgetBreach::Memory;
    }
    allocator.refusedBytes = 0;
}

bool MupdfContext::mayAllocate(Allocator &allocator, std::size_t grown)
{
    const bool hasEnded =
        allocator.breach == BudgetBreach::Time || allocator.breach == BudgetBreach::Cancelled;
    if (hasEnded && allocator.hasDeadline) {
        return false;
    }
    if (allocator.limit != 0 &&
        grown > allocator.limit - std::min(allocator.inUse, allocator.limit)) {
        settleRefusal(allocator, grown);
        allocator.refusedBytes = grown;
        return false;
    }
    settleRefusal(allocator, grown);
    if (allocator.hasDeadline) {
        if (allocator.callsUntilClock == 0) {
            allocator.callsUntilClock = kCallsPerClockCheck;
            if (isOver(allocator)) {
                return false;
            }
        }
        --allocator.callsUntilClock;
    }
    return true;
}

void *MupdfContext::allocate(void *user, std::size_t size)
{
    auto &allocator = *static_cast<Allocator *>(user);
    if (size > SIZE_MAX - kHeaderBytes || !mayAllocate(allocator, size)) {
        return nullptr;
    }
    void *raw = std::malloc(size + kHeaderBytes);
    if (raw == nullptr) {
        return nullptr;
    }
    allocator.inUse += size;
    return withHeader(raw, size);
}

void *MupdfContext::reallocate(void *user, void *block, std::size_t size)
{
    if (block == nullptr) {
        return allocate(user, size);
    }
    if (size == 0) {
        release(user, block);
        return nullptr;
    }
    auto &allocator = *static_cast<Allocator *>(user);
    const std::size_t oldSize = blockSize(block);
    if (size > SIZE_MAX - kHeaderBytes ||
        (size > oldSize && !mayAllocate(allocator, size - oldSize))) {
        return nullptr;
    }
    void *raw = std::realloc(static_cast<char *>(block) - kHeaderBytes, size + kHeaderBytes);
    if (raw == nullptr) {
        return nullptr;
    }
    allocator.inUse = allocator.inUse - oldSize + size;
    return withHeader(raw, size);
}

void MupdfContext::release(void *user, void *block)
{
    if (block == nullptr) {
        return;
    }
    static_cast<Allocator *>(user)->inUse -= blockSize(block);
    std::free(static_cast<char *>(block) - kHeaderBytes);
}

QString MupdfContext::caughtReason() const
{
    return QString::fromUtf8(fz_caught_message(m_context));
}

} // namespace pdfcore
