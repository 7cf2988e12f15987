// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/session/kept_session.h"
#include "pdfcore/src/session/render_slots.h"

#include <optional>

namespace pdfcore {

/// A slot of the engine for an operation of many steps, which lets others have their turn in
/// between. For one thread.
class RenderTurn final
{
public:
    RenderTurn(RenderSlots &renderSlots, KeptSession &session, PdfCancelFlag cancel);

    /// Before each step: has a slot afterwards, at once unless somebody else waits for one. False
    /// when it was cancelled.
    bool take();

private:
    RenderSlots &m_slots;
    KeptSession &m_session;
    const PdfCancelFlag m_cancel;
    std::optional<RenderSlot> m_slot;
};

} // namespace pdfcore
