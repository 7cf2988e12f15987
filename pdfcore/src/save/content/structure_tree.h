// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/source/source_document.h"

#include <set>

namespace pdfcore {

/// Takes out of the structure tree (ISO 32000-2, 14.7) of the main document what belongs to pages
/// that are gone: marked content, objects, elements that hold nothing else, and their entries in
/// the parent tree.
///
/// @param goneAnnotations  Annotations of kept pages that had to go as well.
void pruneStructure(SourceDocument &source, const std::set<QPDFObjGen> &goneAnnotations);

} // namespace pdfcore
