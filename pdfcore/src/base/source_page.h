// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"

namespace pdfcore {

/// Whether a page is created empty. A copy of a blank page names no file either, whatever its flag.
[[nodiscard]] inline bool isBlankPage(const PdfSourcePage &page)
{
    return page.isBlank || page.filePath.isEmpty();
}

} // namespace pdfcore
