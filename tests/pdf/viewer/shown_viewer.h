// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/bars/pdf_bottom_control_bar.h"
#include "pdf/viewer/bars/pdf_top_tool_bar.h"
#include "pdf/viewer/grid/page_manager_list_view.h"
#include "pdf/viewer/grid/pdf_page_manager_view.h"
#include "pdf/viewer/pdf_viewer_widget.h"
#include "pdf/viewer/reading/pdf_document_view.h"
#include "pdf/viewer/side_panel/pdf_operation_side_panel.h"
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"

#include <QByteArray>
#include <QList>
#include <QSize>
#include <QString>
#include <QTemporaryDir>
#include <QUndoStack>

#include <memory>

class QAction;
class QPushButton;
class QStackedWidget;

/// A viewer on the screen, with a folder for the files of one test.
class ShownViewer final
{
public:
    explicit ShownViewer(QSize size = {1240, 760});
    ~ShownViewer();

    /// The full path of a name in the folder.
    [[nodiscard]] QString path(const QString &name) const;
    /// Writes a file into the folder; returns its path.
    QString add(const QString &name, const QByteArray &data) const;
    /// Opens a file "report.pdf" of `count` pages, numbered from 0 by their colours.
    [[nodiscard]] bool openPages(int count) const;

    template <typename Part>
    [[nodiscard]] Part &part() const
    {
        return *viewer->findChild<Part *>();
    }
    [[nodiscard]] PdfDocumentModel &model() const { return part<PdfDocumentModel>(); }
    [[nodiscard]] PdfDocumentView &view() const { return part<PdfDocumentView>(); }
    [[nodiscard]] PdfPageManagerView &grid() const { return part<PdfPageManagerView>(); }
    [[nodiscard]] PdfThumbnailPanel &thumbnails() const { return part<PdfThumbnailPanel>(); }
    [[nodiscard]] PdfTopToolBar &toolBar() const { return part<PdfTopToolBar>(); }
    [[nodiscard]] PdfBottomControlBar &bottomBar() const { return part<PdfBottomControlBar>(); }
    [[nodiscard]] PdfOperationSidePanel &sidePanel() const { return part<PdfOperationSidePanel>(); }
    [[nodiscard]] QUndoStack &history() const { return part<QUndoStack>(); }
    [[nodiscard]] PdfWorkspaceMode gridMode() const;
    /// The stack of the document view and the grid.
    [[nodiscard]] QStackedWidget &views() const;

    [[nodiscard]] QPushButton &button(const char *objectName) const;
    /// An entry of one of the tool bar's menus.
    [[nodiscard]] QAction &menuEntry(const char *menuName, const QString &text) const;

    [[nodiscard]] PdfPageId idAt(int row) const { return model().pageAt(row)->id; }
    /// What the pages show at present: their numbers.
    [[nodiscard]] QList<int> numbers() const;
    [[nodiscard]] QList<int> rotations() const;
    /// Moves a page to before another, as a view does.
    void movePage(int row, int beforeRow) const;
    void select(const QList<int> &rows) const;

    std::unique_ptr<PdfViewerWidget> viewer;

private:
    QTemporaryDir m_folder;
};
