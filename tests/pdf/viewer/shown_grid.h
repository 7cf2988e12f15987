// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/grid/page_manager_list_view.h"
#include "pdf/viewer/grid/pdf_page_manager_view.h"
#include "tests/pdf/viewer/render_probe.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <QSizeF>

class QSlider;

/// A page grid on the screen, with a model of pages of the given sizes and a probe behind its
/// render manager.
class ShownGrid final
{
public:
    explicit ShownGrid(const QList<QSizeF> &sizes, QSize size = {1100, 720});
    ~ShownGrid();

    [[nodiscard]] PageCellGeometry cell(int row) const;
    /// The centre of a part of a page's action bar.
    [[nodiscard]] QPoint barPartOf(int row, int part) const;
    void moveTo(QPoint point);
    void press(QPoint point);
    void click(QPoint point);
    [[nodiscard]] QImage picture();
    /// The thumbnail held for a row, null if there is none.
    [[nodiscard]] const QImage *thumbnail(int row) const;

    RenderProbe probe;
    PdfDocumentModel model;
    PdfRenderManager manager{nullptr, probe.function()};
    PdfPageManagerView view;
    PageManagerListView *list = nullptr;
    QSlider *slider = nullptr;
};
