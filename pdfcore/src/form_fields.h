#pragma once

#include "pdfcore/src/annotation_copier.h"
#include "pdfcore/src/object_copier.h"
#include "pdfcore/src/source_document.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace pdfcore {

/// The fields of one source, without those whose widgets were on pages that are gone, and without
/// the values of signatures, which do not hold for a document that was written anew.
class FormFields
{
public:
    /// Reads and reduces the form of a source, in place.
    ///
    /// @param keepsBareFields  Whether fields that no page shows stay.
    static FormFields of(SourceDocument &source, bool keepsBareFields);

    [[nodiscard]] QPDFObjectHandle form() const { return m_form; }
    [[nodiscard]] const std::vector<QPDFObjectHandle> &roots() const { return m_roots; }
    [[nodiscard]] const std::vector<QPDFObjectHandle> &calculationOrder() const
    {
        return m_calculationOrder;
    }

private:
    QPDFObjectHandle m_form = QPDFObjectHandle::newNull(); ///< The form's dictionary.
    std::vector<QPDFObjectHandle> m_roots;
    std::vector<QPDFObjectHandle> m_calculationOrder;
};

/// The form of the output.
class OutputForm
{
public:
    /// Starts with the form of the main document.
    OutputForm(QPDF &output, const FormFields &main);

    /// Keeps the names of these fields from being given to others that have to be renamed.
    void reserveNames(const FormFields &fields);

    /// Adds copies of the fields of another source, whose pages have been mapped. A name that is
    /// taken gets a number behind it.
    void add(const FormFields &fields, ObjectCopier &copier);

    /// Gives the widgets of a page's copy fields of their own, with the values of the originals.
    void addCopies(const AnnotationCopies &copies);

    /// Writes the form into the catalogue. Forms of the XFA kind describe pages of their own, so
    /// they go when the pages are not those of the main document any more.
    void install(bool pagesChanged);

private:
    using Clones = std::map<QPDFObjGen, QPDFObjectHandle>;
    using Names = std::map<std::string, std::string>;

    QPDFObjectHandle cloneOf(QPDFObjectHandle field, Clones &clones,
                             std::vector<QPDFObjectHandle> &roots, int depth);
    void addRoots(const std::vector<QPDFObjectHandle> &fields);
    void adoptDefaults(QPDFObjectHandle form, std::vector<QPDFObjectHandle> &roots,
                       ObjectCopier &copier);
    Names adoptResources(QPDFObjectHandle resources);

    QPDF &m_output;
    QPDFObjectHandle m_form;
    std::vector<QPDFObjectHandle> m_roots;
    std::vector<QPDFObjectHandle> m_calculationOrder;
    std::set<QPDFObjGen> m_rootIds;
    std::set<std::string> m_names; ///< Partial names of the roots, in UTF-8.
    std::set<std::string> m_reservedNames;
};

} // namespace pdfcore
