// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/revision_loan.h"

#include "pdfcore/src/session/engine.h"

namespace pdfcore {

SessionPool::Lease borrowRevision(const PdfSourcePage &page, QString *path, EngineError *outcome,
                                  const std::atomic<bool> *cancelled)
{
    FileRevisions &revisions = Engine::instance().revisions();
    *path = revisions.locate(page, outcome);
    while (!outcome->isError()) {
        SessionPool::Lease session =
            Engine::instance().sessions().acquire(*path, page.password, outcome, cancelled);
        // The content may have moved before it could be borrowed; now it cannot any more.
        EngineError moved;
        const QString found = revisions.locate(page, &moved);
        if (found == *path) {
            return session;
        }
        *path = found;
        *outcome = moved;
    }
    return {};
}

} // namespace pdfcore
