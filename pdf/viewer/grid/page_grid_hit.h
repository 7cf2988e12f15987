// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/common/pdf_view_modes.h"

#include <QList>
#include <QPoint>
#include <QRect>
#include <QSize>

/// The cells of the page grid that are in view.
struct PageGridCells
{
    /// Row of the first cell.
    int firstRow = 0;
    /// The rectangles of the cells in the viewport, in row order.
    QList<QRect> cells;
    QSize thumbnail;
    /// Number of pages of the whole document.
    int pageCount = 0;
};

/// The thing in the page grid that a press would act on.
struct PageGridHit
{
    enum Kind {
        Nothing,
        InsertZone,   ///< Inserts behind the page.
        SplitZone,    ///< Splits before the page.
        SelectionBox, ///< Chooses the page.
        Action,       ///< A part of the action bar.
    };

    /// Parts of the action bar, from left to right.
    enum ActionPart : int {
        PreviewPart,
        DuplicatePart,
        RotatePart,
        DeletePart,
        PartCount,
    };

    Kind kind = Nothing;
    /// The page concerned, -1 for none.
    int row = -1;
    /// The part of the action bar, -1 for none.
    int part = -1;

    friend bool operator==(const PageGridHit &, const PageGridHit &) = default;
};

/// The page whose cell contains `point`, or -1.
[[nodiscard]] int pageInGridAt(const PageGridCells &grid, QPoint point);

/// What a press at `point` would act on. Only the page of `hoveredRow` shows its action bar.
[[nodiscard]] PageGridHit hitTestPageGrid(const PageGridCells &grid, QPoint point,
                                          PdfWorkspaceMode mode, int hoveredRow);
