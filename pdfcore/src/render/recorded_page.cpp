// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/recorded_page.h"

#include "pdfcore/src/mupdf/mupdf_context.h"
#include "pdfcore/src/mupdf/mupdf_internals.h"
#include "pdfcore/src/render/colour_device.h"
#include "pdfcore/src/render/page_painter.h"

namespace pdfcore {

RecordedPage::RecordedPage(MupdfContext &context, const ColourSpaces &spaces, std::size_t keptBytes)
    : m_context(context)
    , m_spaces(spaces)
    , m_images(context, keptBytes)
{}

RecordedPage::~RecordedPage()
{
    fz_drop_display_list(m_context.get(), m_list);
}

void RecordedPage::record(fz_context *ctx, pdf_page *page, int rotation, QSize size)
{
    // Recorded as it is to be painted, so that nothing is rounded twice.
    const fz_matrix ctm = pageToImage(boundsOf(ctx, page), rotation, size.width(), size.height());
    fz_device *recorder = nullptr;
    fz_var(recorder);
    fz_drop_display_list(ctx, m_list);
    m_list = nullptr;
    fz_try(ctx)
    {
        m_list = fz_new_display_list(ctx, fz_infinite_rect);
        recorder = fz_new_list_device(ctx, m_list);
        pdf_run_page(ctx, page, recorder, ctm, &m_cookie);
        fz_close_device(ctx, recorder);
    }
    fz_always(ctx)
    {
        fz_drop_device(ctx, recorder);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

void RecordedPage::paint(fz_context *ctx, int top, QImage &rows)
{
    const int width = rows.width();
    const int height = rows.height();
    fz_irect area = fz_make_irect(0, top, width, top + height);
    fz_pixmap *pixmap = nullptr;
    fz_device *draw = nullptr;
    fz_device *colours = nullptr;
    fz_var(area);
    fz_var(pixmap);
    fz_var(draw);
    fz_var(colours);
    fz_try(ctx)
    {
        pixmap = fz_new_pixmap_with_data(ctx, fz_device_rgb(ctx), width, height, nullptr, 0,
                                         static_cast<int>(rows.bytesPerLine()), rows.bits());
        moveDown(pixmap, top);
        fz_clear_pixmap_with_value(ctx, pixmap, 0xFF);
        draw = fz_new_draw_device(ctx, fz_identity, pixmap);
        colours = newColourDevice(ctx, draw, area, m_spaces, m_images, m_context, m_cookie);
        fz_run_display_list(ctx, m_list, colours, fz_identity,
                            fz_expand_rect(fz_rect_from_irect(area), kPartReach), &m_cookie);
        fz_close_device(ctx, colours);
    }
    fz_always(ctx)
    {
        fz_drop_device(ctx, colours);
        fz_drop_device(ctx, draw);
        fz_drop_pixmap(ctx, pixmap);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

} // namespace pdfcore
