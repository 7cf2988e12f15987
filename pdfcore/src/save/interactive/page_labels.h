// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/save/source/source_document.h"

#include <optional>
#include <string>
#include <vector>

namespace pdfcore {

/// What numbers a page (ISO 32000-2, 12.4.2).
struct PageLabel
{
    std::string style; ///< Name of the numbering style; empty for none.
    QPDFObjectHandle prefix = QPDFObjectHandle::newNull();
    long long number = 1; ///< Within its style.
};

/// The labels that a source document has for its pages.
///
/// QPDFPageLabelDocumentHelper looks labels up in the number tree, which a damaged one leads
/// astray.
class SourceLabels
{
public:
    explicit SourceLabels(const SourceDocument &source);

    [[nodiscard]] bool areEmpty() const { return m_ranges.empty(); }
    /// The label of page `index`; nothing where the document has none for it.
    [[nodiscard]] std::optional<PageLabel> at(int index) const;

private:
    struct Range
    {
        long long first;
        PageLabel label;
    };

    std::vector<Range> m_ranges; ///< By their first pages.
};

/// What becomes of pages without a label.
enum class Unlabelled {
    NumberByPlace, ///< In the output.
    Leave,         ///< Those before the first one with a label stay without.
};

/// Writes the labels of all pages of the output.
void installLabels(QPDF &output, const std::vector<std::optional<PageLabel>> &labels,
                   Unlabelled unlabelled);

} // namespace pdfcore
