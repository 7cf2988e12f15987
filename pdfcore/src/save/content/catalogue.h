// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/interactive/link_pruner.h"
#include "pdfcore/src/save/source/object_copier.h"
#include "pdfcore/src/save/source/source_document.h"

#include <map>
#include <set>
#include <string>

namespace pdfcore {

/// Takes out of the main document's catalogue (ISO 32000-2, 7.7.2) what leads to pages that are
/// gone: named destinations, the action on opening, article threads. What certifies the revision
/// that was read (12.8) goes in any case.
void pruneCatalogue(SourceDocument &main, LinkPruner &links);

/// Takes out of the main document what holds only for its pages in their order: the parts that a
/// document is produced in (ISO 32000-2, 14.12), the range of pages to print (12.2).
void dropSequenceEntries(SourceDocument &main);

/// Adds the attachments (ISO 32000-2, 7.11.4) of a further source document, whose pages have been
/// mapped. One whose name is taken gets another one.
///
/// QPDFEmbeddedFileDocumentHelper would put a file in the place of another one of the same name.
///
/// @return  The new names under the old ones, as they stand in the file.
std::map<std::string, std::string> addAttachments(QPDF &output, SourceDocument &source,
                                                  ObjectCopier &copier);

/// Adds what else a further source document says beside its pages, whose copies have been mapped:
/// named destinations (ISO 32000-2, 12.3.2.4), optional content. Of destinations of the same name
/// that of the main document counts.
///
/// @param brokenNames  Names of destinations that must not be given a meaning.
void addToCatalogue(QPDF &output, SourceDocument &source, ObjectCopier &copier,
                    const std::set<std::string> &brokenNames);

} // namespace pdfcore
