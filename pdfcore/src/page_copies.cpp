#include "pdfcore/src/page_copies.h"

#include "pdfcore/src/qpdf_objects.h"

#include <map>
#include <vector>

namespace pdfcore {

namespace {

/// Entries of an annotation that name other annotations of its page.
constexpr const char *kRelatives[] = {"/Popup", "/IRT", "/Parent"};

class AnnotationCopier
{
public:
    AnnotationCopier(QPDF &output, AnnotationCopies &copies)
        : m_output(output)
        , m_copies(copies)
    {}

    QPDFObjectHandle add(QPDFObjectHandle annotation)
    {
        if (annotation.isIndirect()) {
            if (const auto known = m_known.find(annotation.getObjGen()); known != m_known.end())
                return known->second;
        }
        QPDFObjectHandle copied = m_output.makeIndirectObject(annotation.shallowCopy());
        copied.removeKey("/StructParent");
        if (annotation.isIndirect())
            m_known[annotation.getObjGen()] = copied;
        m_copies.emplace_back(annotation, copied);
        // A pop-up is not always listed among the annotations itself.
        if (QPDFObjectHandle popup = annotation.getKey("/Popup"); popup.isDictionary())
            add(popup);
        return copied;
    }

    void relate(QPDFObjectHandle page)
    {
        for (auto [original, copied] : m_copies) {
            for (const char *key : kRelatives) {
                QPDFObjectHandle relative = original.getKey(key);
                if (!relative.isIndirect())
                    continue;
                if (const auto known = m_known.find(relative.getObjGen()); known != m_known.end())
                    copied.replaceKey(key, known->second);
            }
            copied.replaceKey("/P", page);
        }
    }

private:
    QPDF &m_output;
    AnnotationCopies &m_copies;
    std::map<QPDFObjGen, QPDFObjectHandle> m_known;
};

} // namespace

QPDFObjectHandle newPageCopy(QPDF &output, QPDFObjectHandle page, AnnotationCopies *copies)
{
    QPDFObjectHandle copied = output.makeIndirectObject(page.shallowCopy());
    for (const char *key : {"/StructParents", "/B"})
        copied.removeKey(key);
    QPDFObjectHandle annotations = page.getKey("/Annots");
    if (!annotations.isArray())
        return copied;
    AnnotationCopier copier(output, *copies);
    std::vector<QPDFObjectHandle> own;
    for (const QPDFObjectHandle &annotation : annotations.getArrayAsVector()) {
        if (QPDFObjectHandle(annotation).isDictionary())
            own.push_back(copier.add(annotation));
    }
    copier.relate(copied);
    copied.replaceKey("/Annots", QPDFObjectHandle::newArray(own));
    return copied;
}

} // namespace pdfcore
