#pragma once

#include "pdfcore/src/link_reducer.h"
#include "pdfcore/src/source_document.h"

#include <vector>

namespace pdfcore {

/// The fields of one source, without those whose widgets were on pages that are gone, and without
/// the values of signatures, which do not hold for a document that was written anew.
class FormFields
{
public:
    /// Reads and reduces the form of a source, in place. Afterwards the kids of a field are all of
    /// its widgets and fields, and each of them names it as its parent.
    ///
    /// @param keepsBareFields  Whether fields that no page shows stay.
    static FormFields of(SourceDocument &source, LinkReducer &links, bool keepsBareFields);

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

} // namespace pdfcore
