// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/interactive/link_pruner.h"
#include "pdfcore/src/save/source/object_copier.h"
#include "pdfcore/src/save/source/source_document.h"

#include <map>
#include <set>
#include <string>

namespace pdfcore {

/// Takes out of the main document's catalogue what leads to pages that are gone: named
/// destinations, the action on opening, article threads. What certifies the file as it was goes in
/// any case.
void pruneCatalogue(SourceDocument &main, LinkPruner &links);

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
/// destinations, optional content. Of destinations of the same name that of the main document
/// counts.
///
/// @param brokenNames  Names of destinations that must not be given a meaning.
void addToCatalogue(QPDF &output, SourceDocument &source, ObjectCopier &copier,
                    const std::set<std::string> &brokenNames);

} // namespace pdfcore
