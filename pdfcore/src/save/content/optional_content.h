// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/source/object_copier.h"
#include "pdfcore/src/save/source/source_document.h"

namespace pdfcore {

/// Adds the optional content groups (ISO 32000-2, 8.11) of a further source document to those of
/// the output, shown or hidden as they were there.
void joinOptionalContent(QPDF &output, SourceDocument &source, ObjectCopier &copier);

} // namespace pdfcore
