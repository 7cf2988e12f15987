// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/session/render_slots.h"

#include <functional>
#include <future>

namespace pdfcore {

/// Does pieces of work one after another, each beside the calling thread if there is a slot for it
/// that nobody waits for, and otherwise at once. For one thread.
class SideWork final
{
public:
    explicit SideWork(RenderSlots &renderSlots);
    /// Waits for the last piece.
    ~SideWork();
    SideWork(const SideWork &) = delete;
    SideWork &operator=(const SideWork &) = delete;

    /// Waits for the piece before and begins another, unless one has failed. The work does not
    /// throw.
    void begin(const std::function<EngineError()> &work);

    /// Whether a piece that has been waited for failed.
    [[nodiscard]] bool hasFailed() const { return m_error.isError(); }

    /// Waits for all pieces; the error of the first one that failed.
    EngineError finish();

private:
    void collect();

    RenderSlots &m_slots;
    std::future<EngineError> m_running;
    EngineError m_error;
};

} // namespace pdfcore
