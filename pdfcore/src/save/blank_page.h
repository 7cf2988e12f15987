// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QSizeF>

#include <qpdf/QPDF.hh>

namespace pdfcore {

/// Makes an empty page of `size` points in `document` (ISO 32000-2, 7.7.3.3); a size that no page
/// can have means A4.
QPDFObjectHandle newBlankPage(QPDF &document, const QSizeF &size);

} // namespace pdfcore
