// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/page_painter.h"

#include "pdfcore/src/mupdf/mupdf_internals.h"
#include "pdfcore/src/render/colour_device.h"

#include <algorithm>

namespace pdfcore {

fz_matrix pageToImage(fz_rect bounds, int rotation, int width, int height)
{
    fz_matrix matrix = fz_translate(-bounds.x0, -bounds.y0);
    matrix = fz_concat(matrix, fz_rotate(static_cast<float>(rotation)));
    const fz_rect turned = fz_transform_rect(bounds, matrix);
    matrix = fz_concat(matrix, fz_translate(-turned.x0, -turned.y0));
    const float pageWidth = std::max(turned.x1 - turned.x0, 1e-3F);
    const float pageHeight = std::max(turned.y1 - turned.y0, 1e-3F);
    return fz_concat(matrix, fz_scale(static_cast<float>(width) / pageWidth,
                                      static_cast<float>(height) / pageHeight));
}

void keepSignatureAppearances(fz_context *ctx, pdf_obj *page)
{
    pdf_obj *annotations = pdf_dict_get(ctx, page, PDF_NAME(Annots));
    const int count = pdf_array_len(ctx, annotations);
    for (int i = 0; i < count; ++i) {
        pdf_obj *annotation = pdf_array_get(ctx, annotations, i);
        pdf_obj *type = pdf_dict_get_inheritable(ctx, annotation, PDF_NAME(FT));
        if (pdf_name_eq(ctx, type, PDF_NAME(Sig)) == 0 ||
            pdf_dict_get_inheritable(ctx, annotation, PDF_NAME(V)) != nullptr) {
            continue;
        }
        pdf_obj *appearance = pdf_dict_getl(ctx, annotation, PDF_NAME(AP), PDF_NAME(N), nullptr);
        // A field of no known kind is left alone.
        if (pdf_is_stream(ctx, appearance) != 0) {
            pdf_dict_put_name(ctx, annotation, PDF_NAME(FT), "None");
        }
    }
}

void paintPage(fz_context *ctx, pdf_page *page, int rotation, QImage &image,
               const PaintTools &tools)
{
    const fz_matrix ctm = pageToImage(boundsOf(ctx, page), rotation, image.width(), image.height());
    paintRows(ctx, image, 0, tools,
              [&](fz_device *device) { pdf_run_page(ctx, page, device, ctm, &tools.cookie); });
}

void paintRowsBy(fz_context *ctx, QImage &rows, int top, const PaintTools &tools, DrawOn drawOn,
                 const void *draw)
{
    const int width = rows.width();
    const int height = rows.height();
    fz_irect area = fz_make_irect(0, top, width, top + height);
    fz_pixmap *pixmap = nullptr;
    fz_device *painter = nullptr;
    fz_device *colours = nullptr;
    fz_var(area);
    fz_var(pixmap);
    fz_var(painter);
    fz_var(colours);
    fz_try(ctx)
    {
        pixmap = fz_new_pixmap_with_data(ctx, fz_device_rgb(ctx), width, height, nullptr, 0,
                                         static_cast<int>(rows.bytesPerLine()), rows.bits());
        moveDown(pixmap, top);
        fz_clear_pixmap_with_value(ctx, pixmap, 0xFF);
        painter = fz_new_draw_device(ctx, fz_identity, pixmap);
        colours = newColourDevice(ctx, painter, area, tools.spaces, tools.images, tools.context,
                                  tools.cookie);
        drawOn(draw, colours);
        fz_close_device(ctx, colours);
    }
    fz_always(ctx)
    {
        fz_drop_device(ctx, colours);
        fz_drop_device(ctx, painter);
        fz_drop_pixmap(ctx, pixmap);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

} // namespace pdfcore
