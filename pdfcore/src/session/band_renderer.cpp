// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/band_renderer.h"

#include "pdfcore/src/base/source_page.h"
#include "pdfcore/src/render/page_bands.h"
#include "pdfcore/src/session/engine.h"
#include "pdfcore/src/session/revision_loan.h"

namespace pdfcore {

namespace {

bool renderBlank(PageBands &bands, const PdfPageBandSink &sink, EngineError *outcome)
{
    if (!bands.isValid()) {
        *outcome = noMemoryFor(bands.bandSize());
        return false;
    }
    while (bands.next()) {
        bands.newRows().fill(Qt::white);
        if (!sink(bands.image(), bands.top())) {
            return false;
        }
    }
    return true;
}

} // namespace

bool renderBands(const PdfSourcePage &page, QSize size, int overlap, const PdfPageBandSink &sink,
                 EngineError *outcome)
{
    *outcome = {};
    if (size.isEmpty()) {
        *outcome = {PdfBackendError::RenderFailed,
                    QStringLiteral("The size to render at is empty.")};
        return false;
    }
    PageBands bands(size, overlap);
    if (isBlankPage(page)) {
        return renderBlank(bands, sink, outcome);
    }
    // The interface thread, which prints, does not wait for other work.
    RenderSlots &renderSlots = Engine::instance().renderSlots();
    renderSlots.force();
    const RenderSlot slot(renderSlots);
    QString path;
    const SessionPool::Lease session = borrowRevision(page, &path, outcome);
    return session && session->renderBands(page.pageIndex, page.rotation, bands, sink, outcome);
}

} // namespace pdfcore
