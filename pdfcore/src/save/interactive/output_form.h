// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/interactive/action_targets.h"
#include "pdfcore/src/save/interactive/form_fields.h"
#include "pdfcore/src/save/source/annotation_copier.h"
#include "pdfcore/src/save/source/object_copier.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace pdfcore {

/// The form of the output (ISO 32000-2, 12.7.3).
///
/// QPDFAcroFormDocumentHelper copies the fields of a page too, but of each page for itself, so that
/// fields with widgets on several pages fall apart, and without the order of calculation and what
/// actions act on.
class OutputForm
{
public:
    /// Starts with the form of the main document.
    OutputForm(QPDF &output, const FormFields &main);

    /// Keeps the names of these fields from being given to others that have to be renamed.
    void reserveNames(const FormFields &fields);

    /// Adds copies of the fields of another source document, whose pages have been mapped. A name
    /// that is taken gets a number behind it: fields of one name are one field (ISO 32000-2,
    /// 12.7.4.2).
    ///
    /// @return  The new names under the old ones.
    ActionTargets::Names add(const FormFields &fields, ObjectCopier &copier);

    /// Gives the widgets of a page's copy fields of their own, with the values of the originals.
    ///
    /// @param page    The copy.
    /// @param copies  Its annotations, by those that they are copies of.
    void addCopies(QPDFObjectHandle page, const AnnotationCopies &copies);

    /// Writes the form into the catalogue. Forms of the XFA kind (ISO 32000-1, 12.7.8) describe
    /// pages of their own, so they go when the pages are not those of the main document any more.
    void install(bool pagesChanged);

private:
    using Clones = ActionTargets::Objects;
    using Names = ActionTargets::Names;
    using Places = std::map<QPDFObjGen, std::size_t>;

    QPDFObjectHandle cloneOf(QPDFObjectHandle field, Clones &clones,
                             std::vector<QPDFObjectHandle> &roots);
    const Places &placesOf(QPDFObjectHandle field);
    static void setKids(QPDFObjectHandle original, QPDFObjectHandle clone,
                        const std::map<std::size_t, QPDFObjectHandle> &byPlace);
    void addToCalculationOrder(const Clones &clones);
    [[nodiscard]] bool isTaken(const std::string &name) const;
    std::string freeFieldName(const std::string &wanted, const std::set<std::string> &fresh);
    Names addRoots(const std::vector<QPDFObjectHandle> &fields);
    void adoptDefaults(QPDFObjectHandle form, std::vector<QPDFObjectHandle> &roots,
                       ObjectCopier &copier);
    Names adoptResources(QPDFObjectHandle resources);

    QPDF &m_output;
    QPDFObjectHandle m_form;
    std::vector<QPDFObjectHandle> m_roots;
    std::vector<QPDFObjectHandle> m_calculationOrder;
    std::size_t m_ownOrder; ///< Fields in it before those of copies.
    bool m_hadFields;       ///< Of the main document, before pages went.
    std::set<QPDFObjGen> m_rootIds;
    std::set<std::string> m_names; ///< Partial names of the topmost fields, in UTF-8.
    std::set<std::string> m_reservedNames;
    std::map<QPDFObjGen, Places> m_places;          ///< Of the kids of fields that were copied.
    std::map<QPDFObjGen, std::size_t> m_calculated; ///< Places in the order, without copies.
    std::map<std::string, int> m_nextNumbers;       ///< Behind a name that is taken.
};

} // namespace pdfcore
