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
    const fz_rect reach = fz_expand_rect(
        fz_rect_from_irect(fz_make_irect(0, top, rows.width(), top + rows.height())), kPartReach);
    paintRows(ctx, rows, top, {m_spaces, m_images, m_context, m_cookie}, [&](fz_device *device) {
        fz_run_display_list(ctx, m_list, device, fz_identity, reach, &m_cookie);
    });
}

} // namespace pdfcore
