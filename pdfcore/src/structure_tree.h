#pragma once

#include "pdfcore/src/source_document.h"

namespace pdfcore {

/// Takes out of the structure tree of the main document what belongs to pages that are gone: marked
/// content, objects, elements that hold nothing else, and their entries in the parent tree.
void reduceStructure(SourceDocument &source);

} // namespace pdfcore
