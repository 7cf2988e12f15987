// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QMetaType>

/// How a viewer shows its document.
enum class PdfViewMode : qint32 {
    DocumentView = 0,   ///< The pages in one column, to read.
    PageManageView = 1, ///< The pages as a grid, to arrange.
};
Q_DECLARE_METATYPE(PdfViewMode)

/// What a viewer is used for.
enum class PdfWorkspaceMode : qint32 {
    NormalMode = 0,  ///< Reading and editing pages.
    InsertMode = 1,  ///< The grid offers places to insert at.
    ExtractMode = 2, ///< The side panel shows what extracting makes.
    SplitMode = 3,   ///< The side panel shows what splitting makes, the grid where it cuts.
};
Q_DECLARE_METATYPE(PdfWorkspaceMode)
