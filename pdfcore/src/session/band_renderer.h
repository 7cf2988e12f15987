// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"
#include "pdfcore/src/base/engine_error.h"

namespace pdfcore {

/// Renders one page at `size` and hands it to `sink` band after band; see
/// PdfEditorBackend::renderPageInBands(). What the sink throws gets out.
bool renderBands(const PdfSourcePage &page, QSize size, int overlap, const PdfPageBandSink &sink,
                 EngineError *outcome);

} // namespace pdfcore
