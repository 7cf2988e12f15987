// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/page_printer.h"

#include <QPainter>
#include <QPrinter>

#include <algorithm>
#include <utility>

namespace {

/// How many times the rows that two bands have in common go into an inch. A printer draws every row
/// where it belongs, but what shows a printed file smaller, with smooth edges of pictures, would
/// let the paper shine through between two bands; in common they have more than a pixel of a
/// screen.
constexpr int kOverlapsPerInch = 24;

} // namespace

PrintRange printRange(int fromPage, int toPage, int pageCount)
{
    PrintRange range;
    range.first = fromPage <= 0 ? 0 : std::max(std::min(pageCount, fromPage), 1) - 1;
    range.end = toPage < 1 ? pageCount : std::max(range.first + 1, std::min(pageCount, toPage));
    return range;
}

QSize printRenderSize(QSize size)
{
    constexpr qint64 kMostPixels = qint64{1} << 31;
    int part = 1;
    while (qint64{size.width() / part} * (size.height() / part) > kMostPixels) {
        ++part;
    }
    return QSize(size.width() / part, size.height() / part).expandedTo({1, 1});
}

PagePrinter::PagePrinter(PdfBandFunction render)
    : m_render(std::move(render))
{}

void PagePrinter::setCancelQuery(std::function<bool()> isCancelled)
{
    m_isCancelled = std::move(isCancelled);
}

PagePrinter::Outcome PagePrinter::print(const QList<PdfPageRecord> &pages, PrintRange range,
                                        QPrinter &printer)
{
    m_reason.clear();
    QPainter painter;
    if (!painter.begin(&printer)) {
        return Outcome::NotStarted;
    }
    bool goOn = true;
    for (int row = range.first; row < range.end && goOn; ++row) {
        if (row > range.first && !printer.newPage()) {
            m_reason = tr("打印机无法创建新页面。");
            break;
        }
        if (row < pages.size()) {
            goOn = printPage(pages.at(row), row + 1, printer, painter);
        }
    }
    const bool isCancelled = !goOn && m_reason.isEmpty();
    if (isCancelled) {
        printer.abort();
    }
    painter.end();
    if (isCancelled) {
        return Outcome::Cancelled;
    }
    return m_reason.isEmpty() ? Outcome::Printed : Outcome::Incomplete;
}

bool PagePrinter::printPage(const PdfPageRecord &page, int number, const QPrinter &printer,
                            QPainter &painter)
{
    // The painter's origin is the corner of the printable area.
    const QRect sheet(QPoint(0, 0),
                      printer.pageLayout().paintRectPixels(printer.resolution()).size());
    const QSize size =
        page.displaySize().scaled(sheet.size(), Qt::KeepAspectRatio).toSize().expandedTo({1, 1});
    QRect target(QPoint(0, 0), size.scaled(sheet.size(), Qt::KeepAspectRatio));
    target.moveCenter(sheet.center());
    const QSize rendered = printRenderSize(size);
    const auto edge = [&](int row) {
        return target.top() + static_cast<int>(qint64{row} * target.height() / rendered.height());
    };

    QString message;
    bool isCancelled = this->isCancelled();
    const bool printed =
        !isCancelled &&
        m_render(
            page.toSourcePage(), rendered, printer.resolution() / kOverlapsPerInch,
            [&](const QImage &band, int top) {
                const int y = edge(top);
                painter.drawImage(
                    QRect(target.left(), y, target.width(), edge(top + band.height()) - y), band);
                isCancelled = this->isCancelled();
                return !isCancelled;
            },
            nullptr, &message);
    if (!printed && !isCancelled) {
        m_reason = message.isEmpty() ? tr("第 %1 页渲染失败。").arg(number) : message;
    }
    return printed;
}
