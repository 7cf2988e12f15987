// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// The entries of a name tree or a number tree, in the order in which they are found.
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
