// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/page_copies.h"

#include "pdfcore/src/save/source/annotation_copier.h"

#include <qpdf/QPDFPageObjectHelper.hh>

#include <vector>

namespace pdfcore {

QPDFObjectHandle newPageCopy(QPDF &output, QPDFObjectHandle page, AnnotationCopies *copies)
{
    QPDFObjectHandle copied = QPDFPageObjectHelper(page).shallowCopyPage().getObjectHandle();
    for (const char *key : {"/StructParents", "/B", "/DPart"}) {
        copied.removeKey(key);
    }
    QPDFObjectHandle annotations = page.getKey("/Annots");
    if (!annotations.isArray()) {
        return copied;
    }
    AnnotationCopier copier(output);
    std::vector<QPDFObjectHandle> own;
    for (const QPDFObjectHandle &annotation : annotations.getArrayAsVector()) {
        if (QPDFObjectHandle(annotation).isDictionary()) {
            own.push_back(copier.add(annotation));
        }
    }
    copier.relate(copied);
    *copies = copier.copies();
    copied.replaceKey("/Annots", QPDFObjectHandle::newArray(own));
    return copied;
}

} // namespace pdfcore
