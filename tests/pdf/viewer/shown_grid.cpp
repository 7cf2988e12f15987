// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_grid.h"

#include "res/resources.h"
#include "tests/pdf/viewer/page_drag.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QSlider>
#include <QTest>

ShownGrid::ShownGrid(const QList<QSizeF> &sizes, QSize size)
{
    initResources();
    list = view.findChild<PageManagerListView *>(QStringLiteral("pdfPageGrid"));
    slider = view.findChild<QSlider *>(QStringLiteral("pdfPageGridZoomSlider"));
    model.setPages(recordsOfSizes(sizes), false);
    view.setModel(&model);
    view.setRenderManager(&manager);
    view.resize(size);
    view.show();
    QCoreApplication::processEvents();
}

ShownGrid::~ShownGrid()
{
    probe.release();
}

PageCellGeometry ShownGrid::cell(int row) const
{
    return pageCellGeometry(list->visualRect(model.index(row)), list->metrics().thumbnail);
}

QPoint ShownGrid::barPartOf(int row, int part) const
{
    return barPart(cell(row).actionBar, 4, part).center();
}

void ShownGrid::moveTo(QPoint point)
{
    moveMouse(list->viewport(), point);
}

void ShownGrid::press(QPoint point)
{
    QTest::mousePress(list->viewport(), Qt::LeftButton, {}, point);
}

void ShownGrid::click(QPoint point)
{
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, point);
}

QImage ShownGrid::picture()
{
    return list->viewport()->grab().toImage();
}

const QImage *ShownGrid::thumbnail(int row) const
{
    return view.thumbnails().image(*model.pageAt(row));
}
