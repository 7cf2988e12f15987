// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/source/annotation_copier.h"

namespace pdfcore {

namespace {

/// Entries of an annotation that name other annotations of its page: its pop-up, what it replies
/// to, and what a pop-up belongs to (ISO 32000-2, 12.5.6.2 and 12.5.6.14).
constexpr const char *kRelatives[] = {"/Popup", "/IRT", "/Parent"};

} // namespace

QPDFObjectHandle AnnotationCopier::add(QPDFObjectHandle annotation)
{
    QPDFObjectHandle copied = addOne(annotation);
    // A pop-up is not always listed among the annotations itself. It has none of its own.
    if (QPDFObjectHandle popup = annotation.getKey("/Popup");
        popup.isDictionary() && popup.isIndirect()) {
        addOne(popup);
    }
    return copied;
}

QPDFObjectHandle AnnotationCopier::addOne(QPDFObjectHandle annotation)
{
    if (annotation.isIndirect()) {
        if (const auto known = m_known.find(annotation.getObjGen()); known != m_known.end()) {
            return known->second;
        }
    }
    QPDFObjectHandle copied = m_document.makeIndirectObject(annotation.shallowCopy());
    // The structure tree knows one place for each annotation (ISO 32000-2, 14.7.5.4).
    copied.removeKey("/StructParent");
    if (annotation.isIndirect()) {
        m_known[annotation.getObjGen()] = copied;
    }
    m_copies.emplace_back(annotation, copied);
    return copied;
}

QPDFObjectHandle AnnotationCopier::copyOf(QPDFObjectHandle annotation) const
{
    const auto known = m_known.find(annotation.getObjGen());
    return known != m_known.end() ? known->second : QPDFObjectHandle::newNull();
}

void AnnotationCopier::relate(QPDFObjectHandle page)
{
    for (auto [original, copied] : m_copies) {
        relateToCopies(copied);
        if (original.hasKey("/P")) {
            copied.replaceKey("/P", page);
        }
    }
}

void AnnotationCopier::relateToCopies(QPDFObjectHandle annotation) const
{
    for (const char *key : kRelatives) {
        QPDFObjectHandle relative = annotation.getKey(key);
        if (!relative.isIndirect()) {
            continue;
        }
        if (const auto known = m_known.find(relative.getObjGen()); known != m_known.end()) {
            annotation.replaceKey(key, known->second);
        }
    }
}

} // namespace pdfcore
