// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QSizeF>

#include <array>
#include <optional>

#include <mupdf/pdf.h>

namespace pdfcore {

/// What decides about the size of a page, as the page itself says it.
struct PageBoxEntries
{
    using Box = std::optional<std::array<double, 4>>;

    int parentNumber = 0; ///< Object number of the node that the page inherits the rest from.
    Box mediaBox;
    Box cropBox;
    std::optional<double> rotate;
    std::optional<double> userUnit;

    bool operator==(const PageBoxEntries &) const = default;
};

/// Reads the entries of a page from the tokens of its object, without building the object, which
/// takes most of the time where a document has thousands of pages. Nothing when the object is not a
/// page, or is one that is written in an unusual way; then it has to be looked at as a whole.
/// Throws the errors of MuPDF.
std::optional<PageBoxEntries> readPageTokens(fz_context *ctx, pdf_document *document, int number);

/// The last few sizes of pages that have been computed: most pages of a document say the same as
/// others. Allocates nothing, so that it can be used between calls of MuPDF.
class KnownPageSizes
{
public:
    std::optional<QSizeF> find(const PageBoxEntries &entries) const;
    void remember(const PageBoxEntries &entries, QSizeF size);

private:
    struct Known
    {
        PageBoxEntries entries;
        QSizeF size;
    };

    std::array<Known, 8> m_known;
    std::size_t m_count = 0;
    std::size_t m_next = 0; ///< Where the next one goes.
};

} // namespace pdfcore
