// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/page_printer.h"

#include "pdfcore/pdf_editor_backend.h"

#include <QPainter>
#include <QPrinter>

#include <algorithm>

PrintRange printRange(int fromPage, int toPage, int pageCount)
{
    PrintRange range;
    range.first = fromPage <= 0 ? 0 : std::max(std::min(pageCount, fromPage), 1) - 1;
    range.end = toPage < 1 ? pageCount : std::max(range.first + 1, std::min(pageCount, toPage));
    return range;
}

PagePrinter::Outcome PagePrinter::print(const QList<PdfPageRecord> &pages, PrintRange range,
                                        QPrinter &printer)
{
    m_reason.clear();
    QPainter painter;
    if (!painter.begin(&printer)) {
        return Outcome::NotStarted;
    }
    for (int row = range.first; row < range.end; ++row) {
        if (row > range.first && !printer.newPage()) {
            m_reason = tr("打印机无法创建新页面。");
            break;
        }
        if (row >= pages.size()) {
            continue;
        }
        const PdfPageRecord &page = pages.at(row);
        // The painter's origin is the corner of the printable area.
        const QRect sheet(QPoint(0, 0),
                          printer.pageLayout().paintRectPixels(printer.resolution()).size());
        const QSize size = page.displaySize()
                               .scaled(sheet.size(), Qt::KeepAspectRatio)
                               .toSize()
                               .expandedTo({1, 1});
        QString message;
        const QImage image =
            PdfEditorBackend::renderPage(page.toSourcePage(), size, nullptr, &message);
        if (image.isNull()) {
            m_reason = message.isEmpty() ? tr("第 %1 页渲染失败。").arg(row + 1) : message;
            break;
        }
        QRect target(QPoint(0, 0), image.size().scaled(sheet.size(), Qt::KeepAspectRatio));
        target.moveCenter(sheet.center());
        painter.drawImage(target, image);
    }
    painter.end();
    return m_reason.isEmpty() ? Outcome::Printed : Outcome::Incomplete;
}
