// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/cards/page_list_view.h"
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"
#include "tests/pdf/viewer/render_probe.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <QRect>
#include <QSizeF>

/// A thumbnail panel on the screen, with a model of pages of the given sizes and a probe behind
/// its render manager.
class ShownPanel final
{
public:
    explicit ShownPanel(const QList<QSizeF> &sizes, QSize size = {210, 760});
    ~ShownPanel();

    [[nodiscard]] QRect itemAt(int row) const;
    [[nodiscard]] QPoint cardCentre(int row) const;
    /// The centre of a part of a row's action strip.
    [[nodiscard]] QPoint stripPart(int row, int part) const;
    void moveTo(QPoint point);
    [[nodiscard]] QImage picture();
    /// The thumbnail held for a row, null if there is none.
    [[nodiscard]] const QImage *thumbnail(int row) const;

    RenderProbe probe;
    PdfDocumentModel model;
    PdfRenderManager manager{nullptr, probe.function()};
    PdfThumbnailPanel panel;
    PageListView *list = nullptr;
};
