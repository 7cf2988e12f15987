// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"

#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Lets a document have only one of all streams that are equal, and of fonts, encodings, colour
/// spaces and the like, of which it does not matter which is which. Others, such as annotations,
/// stay even where they are equal.
void joinEqualObjects(QPDF &document, const std::vector<QPDFObjectHandle> &objects,
                      const PdfCancelFlag &cancel);

} // namespace pdfcore
