// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/render/page_images.h"

#include <QImage>
#include <QSize>

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

namespace pdfcore {

class ColourSpaces;
class MupdfContext;

/// A page that was interpreted once for an image of a given size, of which any rows can be painted.
///
/// Rows come out as paintPage() paints them; only edges that slant across the first or the last of
/// the rows may be off by what one of the lines adds in which MuPDF looks at a pixel. Belongs to
/// the session's thread; the functions that take a MuPDF context throw its errors.
class RecordedPage final
{
public:
    /// @param keptBytes  What may be taken for the decoded images of the page; more than 0.
    RecordedPage(MupdfContext &context, const ColourSpaces &spaces, std::size_t keptBytes);
    ~RecordedPage();
    RecordedPage(const RecordedPage &) = delete;
    RecordedPage &operator=(const RecordedPage &) = delete;

    /// Interprets `page` with annotations and form fields, turned clockwise by `rotation` degrees
    /// and stretched to `size`. Once; the page is not needed any more afterwards.
    void record(fz_context *ctx, pdf_page *page, int rotation, QSize size);

    /// Paints rows from `top` on over the whole of `rows`, straight into its memory. It has the
    /// format kPageImageFormat and the width that the page was recorded for.
    void paint(fz_context *ctx, int top, QImage &rows);

    /// What all work on the page looks at; `abort` is set when the time ran out.
    [[nodiscard]] const fz_cookie &cookie() const { return m_cookie; }

private:
    MupdfContext &m_context;
    const ColourSpaces &m_spaces;
    PageImages m_images;
    fz_cookie m_cookie{};
    fz_display_list *m_list = nullptr;
};

} // namespace pdfcore
