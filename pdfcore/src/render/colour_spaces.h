// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/render/colour_transform.h"

#include <memory>
#include <unordered_map>
#include <unordered_set>

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

namespace pdfcore {

class MupdfContext;

/// The ICC-based colour spaces of one open document.
///
/// MuPDF takes ICC-based spaces for device spaces when it is built without a colour engine. Before
/// a page is interpreted, prepare() finds the profiles that its resources name and puts a colour
/// space of our own for each into MuPDF's store, where the interpreter then finds it; the painting
/// device recognises these spaces and converts their colours. Belongs to the session's thread.
class ColourSpaces final
{
public:
    explicit ColourSpaces(MupdfContext &context);
    ~ColourSpaces();
    ColourSpaces(const ColourSpaces &) = delete;
    ColourSpaces &operator=(const ColourSpaces &) = delete;

    /// Registers the profiles that `page` can reach. Damaged resources are passed over.
    void prepare(pdf_document *document, pdf_obj *page);

    /// How colours of `space` become sRGB; null where MuPDF's own conversion is right, and
    /// for L*a*b*.
    [[nodiscard]] const ColourTransform *transformOf(const fz_colorspace *space) const;

    /// How pixels of L*a*b* become sRGB, whose bytes go from one limit of a* and b* to the other.
    /// MuPDF has one such space for all, so that the limits are those of the first one in the
    /// document.
    [[nodiscard]] const ColourTransform *labPixels() const;

private:
    void visit(fz_context *ctx, pdf_document *document, pdf_obj *object, int depth) noexcept;
    void visitColourSpace(fz_context *ctx, pdf_document *document, pdf_obj *space,
                          int depth) noexcept;
    void registerProfile(fz_context *ctx, pdf_document *document, pdf_obj *space) noexcept;
    void noteLab(fz_context *ctx, pdf_obj *space) noexcept;
    bool enter(fz_context *ctx, pdf_obj *object) noexcept;

    MupdfContext &m_context;
    std::unordered_map<const fz_colorspace *, std::shared_ptr<const ColourTransform>> m_transforms;
    std::unordered_map<int, fz_colorspace *> m_spacesByStream; ///< Owned; null: nothing to convert.
    std::shared_ptr<const ColourTransform> m_labPixels; ///< Null: no such space was found yet.
    std::unordered_set<int> m_visited;
};

} // namespace pdfcore
