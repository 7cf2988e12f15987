#pragma once

#include "pdfcore/src/link_reducer.h"
#include "pdfcore/src/object_copier.h"
#include "pdfcore/src/source_document.h"

#include <map>
#include <set>
#include <string>

namespace pdfcore {

/// Takes out of the main document's catalogue what leads to pages that are gone: named
/// destinations, the action on opening, article threads. What certifies the file as it was goes in
/// any case.
void reduceCatalogue(SourceDocument &main, LinkReducer &links);

/// Takes out of the main document what holds only for its pages in their order: the parts that a
/// document is produced in, the range of pages to print.
void dropSequenceEntries(SourceDocument &main);

/// Adds the attachments of a further source, whose pages have been mapped. One whose name is taken
/// gets another one.
///
/// @return  The new names under the old ones, as they stand in the file.
std::map<std::string, std::string> addAttachments(QPDF &output, SourceDocument &source,
                                                  ObjectCopier &copier);

/// Adds what else a further source says beside its pages, whose copies have been mapped: named
/// destinations, layers. Of destinations of the same name that of the main document counts.
///
/// @param brokenNames  Names of destinations that must not be given a meaning.
void addToCatalogue(QPDF &output, SourceDocument &source, ObjectCopier &copier,
                    const std::set<std::string> &brokenNames);

} // namespace pdfcore
