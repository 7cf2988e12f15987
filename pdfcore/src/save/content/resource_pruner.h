// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/source/source_document.h"

namespace pdfcore {

/// Gives the kept pages of a source document resources (ISO 32000-2, 7.8.3) of their own, in which
/// is only what they use, where they share them with pages that are gone: otherwise a part of a
/// document is as large as the whole. A page whose content cannot be read for certain keeps
/// everything.
///
/// QPDFPageObjectHelper::removeUnreferencedResources() knows of fonts and XObjects alone, and not
/// of what annotations take from the resources of their page.
void pruneResources(SourceDocument &source);

} // namespace pdfcore
