// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/session/session_pool.h"

#include <QString>

namespace pdfcore {

/// Keeps a document open from one use to the next, unless somebody waits for it to be closed.
class KeptSession final
{
public:
    /// @param cancel  Ends opening a document.
    explicit KeptSession(PdfCancelFlag cancel);

    /// The session of the revision that the page names, for the calling thread until the next call
    /// of one of these; null with an error when there is none.
    DocumentSession *borrow(const PdfSourcePage &page, EngineError *outcome);

    /// Gives the session back if it is not to be used again.
    void giveBackUnlessUsable();
    void giveBack() { m_session = {}; }

private:
    const PdfCancelFlag m_cancel;
    SessionPool::Lease m_session;
    QString m_path;
    QString m_password;
};

} // namespace pdfcore
