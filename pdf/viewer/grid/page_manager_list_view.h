// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/cards/page_card_geometry.h"
#include "pdf/viewer/cards/page_card_painter.h"
#include "pdf/viewer/cards/page_list_view.h"
#include "pdf/viewer/grid/page_grid_hit.h"

class PageSplitPoints;

/// The pages of a document as a grid, with the marks between them where pages can be inserted or
/// the document can be split.
///
/// Below the last page there is room for a bar that floats over the grid.
class PageManagerListView final : public PageListView
{
    Q_OBJECT

public:
    /// Room below the last page, in logical pixels.
    static constexpr int kBottomRoom = 68;

    /// `splitPoints` must outlive the view.
    explicit PageManagerListView(const PageSplitPoints &splitPoints, QWidget *parent = nullptr);
    ~PageManagerListView() override;

    [[nodiscard]] const PageGridMetrics &metrics() const { return m_metrics; }
    void setMetrics(const PageGridMetrics &metrics);

    [[nodiscard]] PdfWorkspaceMode mode() const { return m_mode; }
    void setMode(PdfWorkspaceMode mode);

    /// The mark under the pointer, and whether a mouse button is down on it.
    void setHoveredMark(const PageGridHit &mark, bool pressed);

    /// The cells that are at least partly in the viewport.
    [[nodiscard]] PageGridCells visibleCells() const;
    /// What a press at a point of the viewport would act on.
    [[nodiscard]] PageGridHit hitAt(QPoint point, int hoveredRow) const;
    [[nodiscard]] bool isSplitBefore(int row) const;
    /// Every gap is a split point, whatever is pressed.
    [[nodiscard]] bool areSplitPointsFixed() const;

    void setModel(QAbstractItemModel *model) override;
    void selectAll() override;

protected:
    [[nodiscard]] PageDropTarget dropTargetAt(QPoint point) const override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex &index, const QEvent *event) const override;

protected slots:
    void updateGeometries() override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;

private:
    [[nodiscard]] int columnCount() const;
    /// Marks the rows of the pages that are chosen in the document.
    void showChosenPages();
    /// Begins a new range: the next one comes on top of what is marked, instead of in the place of
    /// the last one.
    void keepMarks();
    /// Marks the rows from where the range starts to `index`.
    void markRangeTo(const QModelIndex &index);
    /// Chooses the pages whose rows are marked.
    void chooseMarkedPages();
    /// What is left of a zone between the left and the right edge of the viewport.
    [[nodiscard]] QRect clippedSideways(const QRect &zone) const;
    [[nodiscard]] PageCardPainter::PartState markState(PageGridHit::Kind kind, int row) const;
    void drawInsertMarks(QPainter &painter) const;
    void drawSplitMarks(QPainter &painter) const;

    const PageSplitPoints &m_splitPoints;
    PageGridMetrics m_metrics;
    PdfWorkspaceMode m_mode = PdfWorkspaceMode::NormalMode;
    PageGridHit m_hoveredMark;
    bool m_markPressed = false;
    QPersistentModelIndex m_rangeStart;
    bool m_isMarking = false; ///< The user changes which rows are marked.
};
