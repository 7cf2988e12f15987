// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Gives the document a balanced page tree of these pages (ISO 32000-2, 7.7.3.2).
void installPageTree(QPDF &document, const std::vector<QPDFObjectHandle> &pages);

} // namespace pdfcore
