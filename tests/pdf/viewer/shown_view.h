// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/viewer/reading/pdf_document_view.h"
#include "tests/pdf/viewer/render_probe.h"

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QSizeF>

/// `count` sizes of A4 pages, in points.
[[nodiscard]] QList<QSizeF> a4Pages(int count);

/// Records of the pages of one file, with the identifiers 1, 2, and so on.
[[nodiscard]] QList<PdfPageRecord> recordsOfSizes(const QList<QSizeF> &sizes);

/// A document view on the screen, with a model of pages of the given sizes and a probe behind its
/// render manager.
class ShownView final
{
public:
    explicit ShownView(const QList<QSizeF> &sizes, QSize viewportSize = {864, 600});
    ~ShownView();

    /// Resizes the view until its viewport has the size.
    void resizeViewport(QSize size);
    /// Waits until every page in the viewport has been rendered at the size it is wanted at.
    [[nodiscard]] bool waitForVisiblePages() const;

    [[nodiscard]] int scrollX() const;
    [[nodiscard]] int scrollY() const;
    [[nodiscard]] int maximumScrollX() const;
    [[nodiscard]] int maximumScrollY() const;
    void scrollToY(int y);
    /// The layout that the view should have now.
    [[nodiscard]] PageLayout layout() const;
    /// A page's rectangle in the viewport.
    [[nodiscard]] QRect pageInViewport(int row) const;

    RenderProbe probe;
    PdfDocumentModel model;
    PdfRenderManager manager{nullptr, probe.function()};
    PdfDocumentView view;
};
