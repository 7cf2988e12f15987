#pragma once

#include <QImage>

#include <mupdf/fitz.h>
#include <mupdf/pdf.h>

namespace pdfcore {

class ColourSpaces;
class MupdfContext;

/// Lets the fields of a page that wait for a signature look as the file says, as in other viewers;
/// MuPDF would draw an invitation to sign in their place. Before the page is loaded; only in
/// memory.
void keepSignatureLooks(fz_context *ctx, pdf_obj *page);

/// Paints `page` with annotations and form fields over the whole of `image`, straight into its
/// memory.
///
/// `image` is 32 bits per pixel (QImage::Format_RGB32); the page is turned clockwise by `rotation`
/// degrees and stretched to fill it. Throws MuPDF errors; `cookie->abort` is set when the time ran
/// out.
void paintPage(fz_context *ctx, pdf_page *page, int rotation, QImage &image,
               const ColourSpaces &spaces, MupdfContext &context, fz_cookie &cookie);

} // namespace pdfcore
