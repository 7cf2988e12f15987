// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <qpdf/QPDF.hh>

namespace pdfcore {

/// Whether a document bears a signature (ISO 32000-2, 12.8), which any change of the file would
/// break: in a form field, on a page, or as one that grants rights.
bool isSigned(QPDF &document);

} // namespace pdfcore
