// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/picture_source.h"

#include "pdfcore/src/session/engine.h"

namespace pdfcore {

EngineError openPictureSource(const QString &path, const PdfCancelFlag &cancel,
                              PictureSource *source)
{
    EngineError error;
    const SessionPool::Lease session =
        Engine::instance().sessions().acquire(path, {}, &error, &cancel.value());
    if (!session) {
        return error;
    }
    source->page.filePath = path;
    source->page.revision = Engine::instance().revisions().use(session->file());
    source->pageSizes = session->pages()->pageSizes;
    return {};
}

} // namespace pdfcore
