// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/engine.h"

#include "pdfcore/render_threads.h"

namespace pdfcore {

Engine &Engine::instance()
{
    static Engine engine;
    return engine;
}

Engine::Engine()
    : m_sessions(std::make_shared<SessionPool>())
    , m_superseded(*m_sessions)
    , m_revisions(m_sessions, m_superseded)
    , m_renderSlots(renderThreadLimit())
{}

Engine::~Engine() = default;

} // namespace pdfcore
