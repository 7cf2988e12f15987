// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/side_work.h"

#include <system_error>
#include <utility>

namespace pdfcore {

SideWork::SideWork(RenderSlots &renderSlots)
    : m_slots(renderSlots)
{}

SideWork::~SideWork()
{
    if (m_running.valid()) {
        m_running.wait();
    }
}

void SideWork::begin(const std::function<EngineError()> &work)
{
    collect();
    if (m_error.isError()) {
        return;
    }
    if (m_slots.tryTake()) {
        try {
            m_running = std::async(std::launch::async, [&renderSlots = m_slots, work] {
                const RenderSlot slot(renderSlots);
                return work();
            });
            return;
        } catch (const std::system_error &) {
            // Without another thread the work takes longer.
            m_slots.giveBack();
        }
    }
    m_error = work();
}

EngineError SideWork::finish()
{
    collect();
    return m_error;
}

void SideWork::collect()
{
    if (!m_running.valid()) {
        return;
    }
    const EngineError error = m_running.get();
    if (!m_error.isError()) {
        m_error = error;
    }
}

} // namespace pdfcore
