// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QImage>

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

#include <type_traits>

namespace pdfcore {

class ColourSpaces;
class MupdfContext;
class PageImages;

/// The format of the images that pages are painted to. Without an alpha channel MuPDF paints
/// faster, and an image takes a quarter less memory.
inline constexpr QImage::Format kPageImageFormat = QImage::Format_RGB888;

/// Lets the fields of a page that wait for a signature look as the file says, as in other viewers;
/// MuPDF would draw an invitation to sign in their place. Before the page is loaded; only in
/// memory.
void keepSignatureAppearances(fz_context *ctx, pdf_obj *page);

/// Maps the space of a page with these bounds, turned clockwise by `rotation` degrees, to an image
/// of `width` × `height` pixels.
fz_matrix pageToImage(fz_rect bounds, int rotation, int width, int height);

/// What painting works with, of the session that paints.
struct PaintTools
{
    const ColourSpaces &spaces;
    PageImages &images;
    MupdfContext &context;
    fz_cookie &cookie; ///< `abort` is set when the time ran out.
};

/// Paints `page` with annotations and form fields over the whole of `image`, straight into its
/// memory.
///
/// `image` has the format kPageImageFormat; the page is turned clockwise by `rotation` degrees and
/// stretched to fill it. Throws MuPDF errors.
void paintPage(fz_context *ctx, pdf_page *page, int rotation, QImage &image,
               const PaintTools &tools);

/// What paintRows() calls: `draw` as it was given, and the device to draw on.
using DrawOn = void (*)(const void *draw, fz_device *device);

void paintRowsBy(fz_context *ctx, QImage &rows, int top, const PaintTools &tools, DrawOn drawOn,
                 const void *draw);

/// Paints what `draw` sends to the device that it is given over the whole of `rows`, which are the
/// rows from `top` on of a larger image. Format and errors as for paintPage().
///
/// An error of MuPDF jumps over whoever calls, so that `draw` must hold nothing that has to be
/// given back, which a std::function would.
template <typename Draw>
void paintRows(fz_context *ctx, QImage &rows, int top, const PaintTools &tools, const Draw &draw)
{
    static_assert(std::is_trivially_destructible_v<Draw>);
    paintRowsBy(
        ctx, rows, top, tools,
        [](const void *given, fz_device *device) { (*static_cast<const Draw *>(given))(device); },
        &draw);
}

} // namespace pdfcore
