// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

// Trees are read and written as a whole. QPDF's own QPDFNameTreeObjectHelper has names as text, so
// that names of different bytes may become one, and it and QPDFNumberTreeObjectHelper look entries
// up by a search that relies on order and limits, which damaged files do not keep.

/// The entries of a name tree (ISO 32000-2, 7.9.6) or a number tree (7.9.7), in the order in which
/// they are found.
using NameEntries = std::vector<std::pair<std::string, QPDFObjectHandle>>;
using NumberEntries = std::vector<std::pair<long long, QPDFObjectHandle>>;

/// Reads a whole name tree. Names are as they stand in the file, byte by byte. Nodes that are met
/// again, entries without a value and whatever else is damaged are left out.
NameEntries readNameTree(QPDFObjectHandle root);

/// Reads a whole number tree; see readNameTree().
NumberEntries readNumberTree(QPDFObjectHandle root);

/// Makes a tree of the entries, which are brought into order; of equal keys the first one counts.
QPDFObjectHandle newNameTree(QPDF &document, NameEntries entries);
QPDFObjectHandle newNumberTree(QPDF &document, NumberEntries entries);

} // namespace pdfcore
