// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <map>
#include <utility>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Annotations and their copies.
using AnnotationCopies = std::vector<std::pair<QPDFObjectHandle, QPDFObjectHandle>>;

/// Copies annotations (ISO 32000-2, 12.5.2) of a page for another page of the same document.
class AnnotationCopier
{
public:
    explicit AnnotationCopier(QPDF &document)
        : m_document(document)
    {}

    /// Copies an annotation, with its pop-up. An object comes out as one copy however often it is
    /// added.
    QPDFObjectHandle add(QPDFObjectHandle annotation);

    /// Gives the copies to `page`; what they say about others that were copied too is said of the
    /// copies.
    void relate(QPDFObjectHandle page);

    /// What another annotation of the page says about those that were copied is said of the copies.
    void relateToCopies(QPDFObjectHandle annotation) const;

    /// The copy of an annotation; null when it was not copied.
    [[nodiscard]] QPDFObjectHandle copyOf(QPDFObjectHandle annotation) const;

    [[nodiscard]] const AnnotationCopies &copies() const { return m_copies; }

private:
    QPDFObjectHandle addOne(QPDFObjectHandle annotation);

    QPDF &m_document;
    AnnotationCopies m_copies;
    std::map<QPDFObjGen, QPDFObjectHandle> m_known;
};

} // namespace pdfcore
