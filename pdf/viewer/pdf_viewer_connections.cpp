// SPDX-License-Identifier: AGPL-3.0-or-later
// How the parts of a viewer are connected with each other and with the viewer's operations.
#include "pdf/viewer/pdf_viewer_widget.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_undo_manager.h"
#include "pdf/viewer/bars/pdf_bottom_control_bar.h"
#include "pdf/viewer/bars/pdf_top_tool_bar.h"
#include "pdf/viewer/commands/pdf_file_commands.h"
#include "pdf/viewer/common/external_tools.h"
#include "pdf/viewer/grid/pdf_page_manager_view.h"
#include "pdf/viewer/reading/pdf_document_view.h"
#include "pdf/viewer/side_panel/pdf_operation_side_panel.h"
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"

#include <QUndoStack>

#include <algorithm>

namespace {

constexpr int kQuarterTurn = 90;

} // namespace

void PdfViewerWidget::connectParts()
{
    connectDocumentView();
    connectThumbnailPanel();
    connectBottomBar();
    connectToolBarModes();
    connectToolBarEdits();
    connectToolBarFile();
    connectPageManagerView();
    connectSidePanel();
    connectModel();
    connectCommands();
}

void PdfViewerWidget::connectDocumentView()
{
    connect(m_documentView, &PdfDocumentView::currentPageChanged, this, [this](int page) {
        m_thumbnailPanel->setCurrentPage(page);
        m_bottomBar->setCurrentPage(page);
        emit currentPageChanged(page);
    });
    // Current in all views, this one included: the next page is the one behind it.
    connect(m_documentView, &PdfDocumentView::pageClicked, m_documentView,
            &PdfDocumentView::makeCurrent);
    connect(m_documentView, &PdfDocumentView::zoomFactorChanged, this, [this](double factor) {
        m_bottomBar->setZoom(factor);
        emit zoomChanged(factor);
        emit zoomFactorChanged(factor);
    });
    connect(m_documentView, &PdfDocumentView::firstPagePainted, this,
            &PdfViewerWidget::firstPagePainted);
}

void PdfViewerWidget::connectThumbnailPanel()
{
    const PdfThumbnailPanel *panel = m_thumbnailPanel;
    connect(panel, &PdfThumbnailPanel::pageActivated, m_documentView, &PdfDocumentView::goToPage);
    connect(panel, &PdfThumbnailPanel::previewPageRequested, this, &PdfViewerWidget::previewPage);
    connect(panel, &PdfThumbnailPanel::rotatePageRequested, this,
            [this](PdfPageId id) { m_undoManager->rotatePages({id}, kQuarterTurn); });
    connect(panel, &PdfThumbnailPanel::deletePageRequested, this,
            [this](PdfPageId id) { m_undoManager->deletePages({id}); });
    connect(panel, &PdfThumbnailPanel::chooseInsertFilesRequested, this,
            &PdfViewerWidget::chooseInsertFiles);
    // Files are dropped while the program that they come from waits. It is let go first: reading
    // them takes time, and boxes may open.
    connect(panel, &PdfThumbnailPanel::insertFilesRequested, this, &PdfViewerWidget::insertPdfFiles,
            Qt::QueuedConnection);
}

void PdfViewerWidget::connectBottomBar()
{
    const PdfBottomControlBar *bar = m_bottomBar;
    connect(bar, &PdfBottomControlBar::previousPageRequested, this,
            [this] { m_documentView->goToPage(std::max(m_documentView->currentPage() - 1, 0)); });
    connect(bar, &PdfBottomControlBar::nextPageRequested, this, [this] {
        m_documentView->goToPage(
            std::min(m_documentView->currentPage() + 1, m_model->rowCount() - 1));
    });
    connect(bar, &PdfBottomControlBar::pageRequested, this, &PdfViewerWidget::goToPage);
    connect(bar, &PdfBottomControlBar::zoomRequested, this, &PdfViewerWidget::setZoomFactor);
    connect(bar, &PdfBottomControlBar::fitWidthRequested, this, &PdfViewerWidget::fitWidth);
    connect(bar, &PdfBottomControlBar::fitPageRequested, this, &PdfViewerWidget::fitPage);
}

void PdfViewerWidget::connectToolBarModes()
{
    const PdfTopToolBar *bar = m_topToolBar;
    connect(bar, &PdfTopToolBar::documentViewRequested, this,
            [this] { setViewMode(PdfViewMode::DocumentView); });
    connect(bar, &PdfTopToolBar::pageManageViewRequested, this,
            [this] { setViewMode(PdfViewMode::PageManageView); });
    connect(bar, &PdfTopToolBar::thumbnailToggled, this, &PdfViewerWidget::showThumbnailPanel);
    connect(bar, &PdfTopToolBar::insertModeRequested, this,
            [this] { manageIn(PdfWorkspaceMode::InsertMode); });
    connect(bar, &PdfTopToolBar::extractModeRequested, this,
            [this] { manageIn(PdfWorkspaceMode::ExtractMode); });
    connect(bar, &PdfTopToolBar::splitModeRequested, this,
            [this] { manageIn(PdfWorkspaceMode::SplitMode); });
    connect(bar, &PdfTopToolBar::handToolToggled, m_documentView,
            &PdfDocumentView::setHandToolEnabled);
}

void PdfViewerWidget::connectToolBarEdits()
{
    const PdfTopToolBar *bar = m_topToolBar;
    connect(bar, &PdfTopToolBar::rotateLeftRequested, this, [this] {
        m_undoManager->rotatePages(m_model->selectedPageIds().values(), -kQuarterTurn);
    });
    connect(bar, &PdfTopToolBar::rotateRightRequested, this, [this] {
        m_undoManager->rotatePages(m_model->selectedPageIds().values(), kQuarterTurn);
    });
    connect(bar, &PdfTopToolBar::deleteRequested, this,
            [this] { m_undoManager->deletePages(m_model->selectedPageIds().values()); });
    connect(bar, &PdfTopToolBar::selectAllToggled, this, [this](bool selected) {
        if (selected) {
            m_model->selectAll();
        } else {
            m_model->clearSelection();
        }
    });

    QUndoStack *stack = m_undoManager->undoStack();
    connect(bar, &PdfTopToolBar::undoRequested, stack, &QUndoStack::undo);
    connect(bar, &PdfTopToolBar::redoRequested, stack, &QUndoStack::redo);
    connect(stack, &QUndoStack::canUndoChanged, this, [this, stack](bool canUndo) {
        m_topToolBar->setUndoRedoEnabled(canUndo, stack->canRedo());
    });
    connect(stack, &QUndoStack::canRedoChanged, this, [this, stack](bool canRedo) {
        m_topToolBar->setUndoRedoEnabled(stack->canUndo(), canRedo);
    });
}

void PdfViewerWidget::connectToolBarFile()
{
    const PdfTopToolBar *bar = m_topToolBar;
    connect(bar, &PdfTopToolBar::saveRequested, this, &PdfViewerWidget::save);
    connect(bar, &PdfTopToolBar::saveAsRequested, this, &PdfViewerWidget::promptSaveAs);
    connect(bar, &PdfTopToolBar::printRequested, this, &PdfViewerWidget::printDocument);
    connect(bar, &PdfTopToolBar::revealInFolderRequested, this, &PdfViewerWidget::revealInFolder);
    connect(bar, &PdfTopToolBar::convertToOfficeRequested, this,
            [this] { emit convertPdfToOfficeRequested(m_model->documentPath()); });

    struct ToolRequest
    {
        void (PdfTopToolBar::*requested)();
        QLatin1String toolId;
    };
    static constexpr ToolRequest kToolRequests[] = {
        {&PdfTopToolBar::compressRequested, ExternalTools::kCompress},
        {&PdfTopToolBar::convertToImagesRequested, ExternalTools::kImages},
        {&PdfTopToolBar::encryptRequested, ExternalTools::kEncrypt},
        {&PdfTopToolBar::decryptRequested, ExternalTools::kDecrypt},
        {&PdfTopToolBar::pageNumberRequested, ExternalTools::kPageNumber},
        {&PdfTopToolBar::searchRequested, ExternalTools::kSearch},
    };
    for (const ToolRequest &request : kToolRequests) {
        connect(bar, request.requested, this, [this, toolId = request.toolId] {
            emit externalToolRequested(toolId, m_model->documentPath());
        });
    }
}

void PdfViewerWidget::connectPageManagerView()
{
    const PdfPageManagerView *grid = m_pageManagerView;
    connect(grid, &PdfPageManagerView::previewPageRequested, this, &PdfViewerWidget::previewPage);
    connect(grid, &PdfPageManagerView::duplicatePageRequested, this,
            [this](PdfPageId id) { m_undoManager->duplicatePages({id}); });
    connect(grid, &PdfPageManagerView::rotatePageRequested, this,
            [this](PdfPageId id) { m_undoManager->rotatePages({id}, kQuarterTurn); });
    connect(grid, &PdfPageManagerView::deletePageRequested, this,
            [this](PdfPageId id) { m_undoManager->deletePages({id}); });
    connect(grid, &PdfPageManagerView::insertAtRequested, this, &PdfViewerWidget::showInsertMenu);
    connect(grid, &PdfPageManagerView::splitPointsChanged, m_operationSidePanel,
            &PdfOperationSidePanel::setSplitPoints);
}

void PdfViewerWidget::connectSidePanel()
{
    const PdfOperationSidePanel *panel = m_operationSidePanel;
    connect(panel, &PdfOperationSidePanel::extractRequested, this, &PdfViewerWidget::extractPages);
    connect(panel, &PdfOperationSidePanel::splitRequested, this, &PdfViewerWidget::splitDocument);
    connect(panel, &PdfOperationSidePanel::everyPageSplitToggled, m_pageManagerView,
            &PdfPageManagerView::setEveryPageSplit);
}

void PdfViewerWidget::connectModel()
{
    connect(m_model, &PdfDocumentModel::modelReset, this, &PdfViewerWidget::refreshPageState);
    connect(m_model, &PdfDocumentModel::rowsInserted, this, &PdfViewerWidget::refreshPageState);
    connect(m_model, &PdfDocumentModel::rowsRemoved, this, &PdfViewerWidget::refreshPageState);
    connect(m_model, &PdfDocumentModel::modifiedChanged, this, &PdfViewerWidget::modifiedChanged);
    connect(m_model, &PdfDocumentModel::selectionChanged, this,
            &PdfViewerWidget::refreshSelectionState);
    // With a page more, not every page is selected any longer.
    connect(m_model, &PdfDocumentModel::rowsInserted, this,
            &PdfViewerWidget::refreshSelectionState);
}

void PdfViewerWidget::connectCommands()
{
    const PdfFileCommands *commands = m_fileCommands;
    connect(commands, &PdfFileCommands::opened, this, &PdfViewerWidget::showOpenedDocument);
    connect(commands, &PdfFileCommands::notOpened, this, &PdfViewerWidget::restartRequests);
    connect(commands, &PdfFileCommands::saved, this, &PdfViewerWidget::documentSaved);
}
