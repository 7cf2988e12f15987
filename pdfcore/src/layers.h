#pragma once

#include "pdfcore/src/object_copier.h"
#include "pdfcore/src/source_document.h"

namespace pdfcore {

/// Adds the layers of a further source to those of the output, shown or hidden as they were there.
void addLayers(QPDF &output, SourceDocument &source, ObjectCopier &copier);

} // namespace pdfcore
