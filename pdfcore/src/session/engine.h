// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/session/file_revisions.h"
#include "pdfcore/src/session/render_slots.h"
#include "pdfcore/src/session/session_pool.h"
#include "pdfcore/src/session/superseded_folder.h"

#include <memory>

namespace pdfcore {

/// What the calls of the engine have in common: the open documents, the superseded content and the
/// revisions in use. Any thread.
///
/// The members stand in the order in which they need each other, so that each of them goes before
/// what it needs. Only a PdfFileRevision may outlive its engine; its content goes with the folder
/// then.
class Engine final
{
public:
    /// The engine of the process, which goes when the process ends.
    static Engine &instance();

    Engine();
    ~Engine();
    Engine(const Engine &) = delete;
    Engine &operator=(const Engine &) = delete;

    [[nodiscard]] SessionPool &sessions() { return *m_sessions; }
    [[nodiscard]] FileRevisions &revisions() { return m_revisions; }
    [[nodiscard]] RenderSlots &renderSlots() { return m_renderSlots; }

private:
    std::shared_ptr<SessionPool> m_sessions; ///< Revisions can tell whether it is still there.
    SupersededFolder m_superseded;           ///< Has the sessions of what it removes closed.
    FileRevisions m_revisions;               ///< Has sessions closed and content kept.
    RenderSlots m_renderSlots;
};

} // namespace pdfcore
