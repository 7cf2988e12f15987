// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/interactive/link_pruner.h"
#include "pdfcore/src/save/source/source_document.h"

#include <set>
#include <vector>

namespace pdfcore {

/// The field that a field or widget is a part of (ISO 32000-2, 12.7.4); null when there is none.
/// Damaged files name a page instead.
QPDFObjectHandle parentField(QPDFObjectHandle field);

/// The fields of one source document, without those whose widgets were on pages that are gone, and
/// without the values of signatures (ISO 32000-2, 12.8), which do not hold for a document that was
/// written anew.
///
/// QPDFAcroFormDocumentHelper has nothing that takes out the widgets of some pages, and follows the
/// fields below each other to a depth of its own only.
class FormFields
{
public:
    /// Reads and prunes the form of a source document, in place. Afterwards the kids of a field are
    /// all of its widgets and fields, and each of them names it as its parent.
    ///
    /// @param keepsBareFields  Whether fields that no page shows stay.
    static FormFields of(SourceDocument &source, LinkPruner &links, bool keepsBareFields);

    /// The form's dictionary (ISO 32000-2, 12.7.3); null when there is none.
    [[nodiscard]] QPDFObjectHandle form() const { return m_form; }
    /// Whether there were fields before the form was pruned.
    [[nodiscard]] bool hadFields() const { return m_hadFields; }
    [[nodiscard]] const std::vector<QPDFObjectHandle> &roots() const { return m_roots; }
    [[nodiscard]] const std::vector<QPDFObjectHandle> &calculationOrder() const
    {
        return m_calculationOrder;
    }

    /// Whether a field of the form stays.
    [[nodiscard]] bool holds(const QPDFObjectHandle &field) const
    {
        return m_kept.count(QPDFObjectHandle(field).getObjGen()) != 0;
    }

private:
    std::set<QPDFObjGen> m_kept;
    QPDFObjectHandle m_form = QPDFObjectHandle::newNull(); ///< The form's dictionary.
    std::vector<QPDFObjectHandle> m_roots;
    std::vector<QPDFObjectHandle> m_calculationOrder;
    bool m_hadFields = false;
};

} // namespace pdfcore
