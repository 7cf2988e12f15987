// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/source/source_document.h"

#include <vector>

namespace pdfcore {

/// The beads of an article thread (ISO 32000-2, 12.4.3), as far as they run on.
std::vector<QPDFObjectHandle> beadsOf(QPDFObjectHandle thread);

/// Whether a thread had beads and all of them are on pages that are gone.
bool isThreadGone(const SourceDocument &source, QPDFObjectHandle thread);

/// Joins the beads whose pages stay, and takes out threads that have none left.
void pruneThreads(SourceDocument &main);

} // namespace pdfcore
