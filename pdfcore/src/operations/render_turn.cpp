// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/render_turn.h"

#include <utility>

namespace pdfcore {

RenderTurn::RenderTurn(RenderSlots &renderSlots, KeptSession &session, PdfCancelFlag cancel)
    : m_slots(renderSlots)
    , m_session(session)
    , m_cancel(std::move(cancel))
{}

bool RenderTurn::take()
{
    if (m_cancel.isSet()) {
        return false;
    }
    if (m_slot && !m_slots.isAwaited()) {
        return true;
    }
    // Whoever has a slot may wait for the file to be closed before it goes on.
    m_session.giveBack();
    m_slot.reset();
    if (!m_slots.take(m_cancel)) {
        return false;
    }
    m_slot.emplace(m_slots);
    return true;
}

} // namespace pdfcore
