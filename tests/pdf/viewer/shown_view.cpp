// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_view.h"

#include <QCoreApplication>
#include <QScrollBar>
#include <QTest>

QList<QSizeF> a4Pages(int count)
{
    return QList<QSizeF>(count, QSizeF(595, 842));
}

QList<PdfPageRecord> recordsOfSizes(const QList<QSizeF> &sizes)
{
    QList<PdfPageRecord> records;
    for (const QSizeF &size : sizes) {
        PdfPageRecord record;
        record.id = static_cast<PdfPageId>(records.size() + 1);
        record.sourcePath = QStringLiteral("/documents/report.pdf");
        record.sourcePageIndex = static_cast<qint32>(records.size());
        record.pageSize = size;
        records.append(record);
    }
    return records;
}

ShownView::ShownView(const QList<QSizeF> &sizes, QSize viewportSize)
{
    model.setPages(recordsOfSizes(sizes), false);
    view.setModel(&model);
    view.setRenderManager(&manager);
    view.resize(viewportSize);
    view.show();
    resizeViewport(viewportSize);
}

ShownView::~ShownView()
{
    probe.release();
}

void ShownView::resizeViewport(QSize size)
{
    for (int attempt = 0; attempt < 3 && view.viewport()->size() != size; ++attempt) {
        view.resize(view.size() + size - view.viewport()->size());
        QCoreApplication::processEvents();
    }
    QCOMPARE(view.viewport()->size(), size);
}

bool ShownView::waitForVisiblePages() const
{
    const PageLayout pages = layout();
    const QRect visible(QPoint(scrollX(), scrollY()), view.viewport()->size());
    return QTest::qWaitFor([&] {
        const auto [first, end] = pagesMeeting(pages, visible);
        for (int row = first; row < end; ++row) {
            const QSize wanted = renderTargetSize(pages.pages.at(row).size(), kMinimumRenderScale);
            if (!probe.hasRendered(model.pageAt(row)->sourcePageIndex, wanted)) {
                return false;
            }
        }
        return true;
    });
}

int ShownView::scrollX() const
{
    return view.horizontalScrollBar()->value();
}

int ShownView::scrollY() const
{
    return view.verticalScrollBar()->value();
}

int ShownView::maximumScrollX() const
{
    return view.horizontalScrollBar()->maximum();
}

int ShownView::maximumScrollY() const
{
    return view.verticalScrollBar()->maximum();
}

void ShownView::scrollToY(int y)
{
    view.verticalScrollBar()->setValue(y);
}

PageLayout ShownView::layout() const
{
    QList<QSizeF> sizes;
    for (const PdfPageRecord &record : model.pages()) {
        sizes.append(record.displaySize());
    }
    return computePageLayout(sizes, view.zoomFactor(), view.viewport()->size());
}

QRect ShownView::pageInViewport(int row) const
{
    return layout().pages.at(row).translated(-scrollX(), -scrollY());
}
