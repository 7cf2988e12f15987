// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/kept_session.h"

#include "pdfcore/src/session/engine.h"
#include "pdfcore/src/session/revision_loan.h"

#include <utility>

namespace pdfcore {

KeptSession::KeptSession(PdfCancelFlag cancel)
    : m_cancel(std::move(cancel))
{}

DocumentSession *KeptSession::borrow(const PdfSourcePage &page, EngineError *outcome)
{
    const QString path = Engine::instance().revisions().locate(page, outcome);
    if (outcome->isError()) {
        return nullptr;
    }
    if (m_session && m_path == path && m_password == page.password &&
        m_session->file().isSameRevision(FileIdentity::of(path)) &&
        !Engine::instance().sessions().isAwaited(path)) {
        return m_session.operator->();
    }
    // Not before the one in hand is given back, which may be waited for.
    m_session = {};
    m_session = borrowRevision(page, &m_path, outcome, &m_cancel.value());
    m_password = page.password;
    return m_session.operator->();
}

void KeptSession::giveBackUnlessUsable()
{
    if (m_session && !m_session->isUsable()) {
        m_session = {};
    }
}

} // namespace pdfcore
