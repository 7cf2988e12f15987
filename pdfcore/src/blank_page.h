#pragma once

#include <QSizeF>

#include <qpdf/QPDF.hh>

namespace pdfcore {

/// Makes an empty page of `size` points in `document`; an empty size means A4.
QPDFObjectHandle newBlankPage(QPDF &document, const QSizeF &size);

} // namespace pdfcore
