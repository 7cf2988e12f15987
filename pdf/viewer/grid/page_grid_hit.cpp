// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/page_grid_hit.h"

#include "pdf/viewer/cards/page_card_geometry.h"

namespace {

/// The first row from `firstRow` on whose zone contains the point, or -1.
int rowOfZoneAt(const PageGridCells &grid, QPoint point, QRect PageCellGeometry::*zone,
                int firstRow)
{
    for (qsizetype i = 0; i < grid.cells.size(); ++i) {
        const int row = grid.firstRow + static_cast<int>(i);
        if (row >= firstRow &&
            (pageCellGeometry(grid.cells.at(i), grid.thumbnail).*zone).contains(point)) {
            return row;
        }
    }
    return -1;
}

PageGridHit markHitAt(const PageGridCells &grid, QPoint point, PdfWorkspaceMode mode)
{
    if (mode == PdfWorkspaceMode::InsertMode) {
        const int row = rowOfZoneAt(grid, point, &PageCellGeometry::insertZone, 0);
        return row < 0 ? PageGridHit() : PageGridHit{PageGridHit::InsertZone, row, -1};
    }
    if (mode == PdfWorkspaceMode::SplitMode && grid.pageCount >= 2) {
        const int row = rowOfZoneAt(grid, point, &PageCellGeometry::splitZone, 1);
        return row < 0 ? PageGridHit() : PageGridHit{PageGridHit::SplitZone, row, -1};
    }
    return {};
}

} // namespace

int pageInGridAt(const PageGridCells &grid, QPoint point)
{
    for (qsizetype i = 0; i < grid.cells.size(); ++i) {
        if (grid.cells.at(i).contains(point)) {
            return grid.firstRow + static_cast<int>(i);
        }
    }
    return -1;
}

PageGridHit hitTestPageGrid(const PageGridCells &grid, QPoint point, PdfWorkspaceMode mode,
                            int hoveredRow)
{
    if (const PageGridHit mark = markHitAt(grid, point, mode); mark.kind != PageGridHit::Nothing) {
        return mark;
    }
    const int row = pageInGridAt(grid, point);
    if (row < 0) {
        return {};
    }
    const PageCellGeometry cell =
        pageCellGeometry(grid.cells.at(row - grid.firstRow), grid.thumbnail);
    if (cell.selectionBox.contains(point)) {
        return {PageGridHit::SelectionBox, row, -1};
    }
    const int part = barPartAt(cell.actionBar, PageGridHit::PartCount, point);
    if (row == hoveredRow && part >= 0) {
        return {PageGridHit::Action, row, part};
    }
    return {};
}
