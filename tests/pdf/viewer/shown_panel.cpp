// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdf/viewer/shown_panel.h"

#include "pdf/viewer/cards/page_card_geometry.h"
#include "res/resources.h"
#include "tests/pdf/viewer/page_drag.h"
#include "tests/pdf/viewer/shown_view.h"

#include <QCoreApplication>

ShownPanel::ShownPanel(const QList<QSizeF> &sizes, QSize size)
{
    initResources();
    list = panel.findChild<PageListView *>(QStringLiteral("pdfThumbnailList"));
    model.setPages(recordsOfSizes(sizes), false);
    panel.setModel(&model);
    panel.setRenderManager(&manager);
    panel.resize(size);
    panel.show();
    QCoreApplication::processEvents();
}

ShownPanel::~ShownPanel()
{
    probe.release();
}

QRect ShownPanel::itemAt(int row) const
{
    return list->visualRect(model.index(row));
}

QPoint ShownPanel::cardCentre(int row) const
{
    return thumbnailRowGeometry(itemAt(row)).card.center();
}

QPoint ShownPanel::stripPart(int row, int part) const
{
    return barPart(thumbnailRowGeometry(itemAt(row)).actionStrip, 3, part).center();
}

void ShownPanel::moveTo(QPoint point)
{
    moveMouse(list->viewport(), point);
}

QImage ShownPanel::picture()
{
    return list->viewport()->grab().toImage();
}

const QImage *ShownPanel::thumbnail(int row) const
{
    return panel.thumbnails().image(*model.pageAt(row));
}
