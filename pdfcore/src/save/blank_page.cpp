// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/blank_page.h"

#include "pdfcore/paper_size.h"

#include <cmath>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

QPDFObjectHandle newBlankPage(QPDF &document, const QSizeF &size)
{
    const bool usable =
        std::isfinite(size.width()) && std::isfinite(size.height()) && !size.isEmpty();
    const QSizeF box = usable ? size : kA4PageSize;
    QPDFObjectHandle page = QPDFObjectHandle::newDictionary();
    page.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
    page.replaceKey("/MediaBox", QPDFObjectHandle::newArray(
                                     QPDFObjectHandle::Rectangle(0, 0, box.width(), box.height())));
    page.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    return document.makeIndirectObject(page);
}

} // namespace pdfcore
