// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"

#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Makes images of their own of the large ones that stand in the contents of pages and of the forms
/// that these draw (ISO 32000-2, 8.9.7), so that they can become smaller and be kept once. Contents
/// that cannot be read stay as they are.
void takeOutInlineImages(const std::vector<QPDFObjectHandle> &pages, const PdfCancelFlag &cancel);

} // namespace pdfcore
