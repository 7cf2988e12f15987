// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"
#include "pdfcore/src/base/engine_error.h"

namespace pdfcore {

/// Renders page i at size i, into element i of both lists, which have the length of `pages`, until
/// `cancel` is set; pages that were not rendered by then have a message too.
///
/// A thread takes one of the engine's slots while it renders. A batch of several pages is shared
/// with further threads as far as there are slots that nobody waits for; these leave again once
/// somebody does. The call returns when all pages are done. These are threads of their own because
/// a caller in a pool of Qt may hold the last one there. Nothing is thrown.
void renderBatch(const PdfCancelFlag &cancel, const QList<PdfSourcePage> &pages,
                 const QList<QSize> &targetSizes, QList<QImage> &images, QStringList &messages);

/// Renders one page without waiting for a slot, since the interface thread does not wait for other
/// work. A null image on failure, with the error in `outcome`.
QImage renderOne(const PdfSourcePage &page, QSize size, EngineError *outcome);

} // namespace pdfcore
