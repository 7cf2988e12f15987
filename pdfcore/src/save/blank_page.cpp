// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/blank_page.h"

#include <cmath>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

namespace {

constexpr QSizeF kA4{595, 842};

} // namespace

QPDFObjectHandle newBlankPage(QPDF &document, const QSizeF &size)
{
    const bool usable =
        std::isfinite(size.width()) && std::isfinite(size.height()) && !size.isEmpty();
    const QSizeF box = usable ? size : kA4;
    QPDFObjectHandle page = QPDFObjectHandle::newDictionary();
    page.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
    page.replaceKey("/MediaBox", QPDFObjectHandle::newArray(
                                     QPDFObjectHandle::Rectangle(0, 0, box.width(), box.height())));
    page.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    return document.makeIndirectObject(page);
}

} // namespace pdfcore
