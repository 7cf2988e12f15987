// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/pdf_viewer_widget.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/core/pdf_undo_manager.h"
#include "pdf/viewer/bars/floating_bar_placer.h"
#include "pdf/viewer/bars/pdf_bottom_control_bar.h"
#include "pdf/viewer/bars/pdf_top_tool_bar.h"
#include "pdf/viewer/bars/wheel_forwarder.h"
#include "pdf/viewer/commands/backend_error_box.h"
#include "pdf/viewer/commands/pdf_file_commands.h"
#include "pdf/viewer/commands/pdf_page_commands.h"
#include "pdf/viewer/grid/pdf_page_manager_view.h"
#include "pdf/viewer/reading/pdf_document_view.h"
#include "pdf/viewer/reading/reading_place_keeper.h"
#include "pdf/viewer/side_panel/pdf_operation_side_panel.h"
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"
#include "widgets/theme.h"

#include <QFrame>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>
#include <QUndoStack>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

// %1 handle
constexpr QLatin1String kSplitterStyleSheet{
    "QSplitter#pdfViewerSplitter::handle { background: %1; }"};
// %1 line
constexpr QLatin1String kDividerStyleSheet{
    "#pdfToolbarViewDivider { background: %1; border: none; }"};
constexpr int kSplitterHandleWidth = 1;
constexpr int kViewsWidth = 1000;

} // namespace

PdfViewerWidget::PdfViewerWidget(QWidget *parent)
    : QWidget(parent)
    , m_model(new PdfDocumentModel(this))
    , m_renderManager(new PdfRenderManager(this))
    , m_undoManager(new PdfUndoManager(m_model, this))
    , m_fileCommands(new PdfFileCommands(m_model, m_renderManager, m_undoManager, this))
    , m_pageCommands(new PdfPageCommands(m_model, m_undoManager, this))
{
    qRegisterMetaType<PdfViewMode>("PdfViewMode");
    qRegisterMetaType<PdfWorkspaceMode>("PdfWorkspaceMode");
    buildInterface();
    connectParts();
    refreshPageState();
    refreshSelectionState();
}

PdfViewerWidget::~PdfViewerWidget()
{
    // The history is emptied as it goes, when there is nothing left to show that.
    m_undoManager->undoStack()->disconnect(this);
}

bool PdfViewerWidget::openFile(const QString &path, const QString &password)
{
    return m_fileCommands->open(path, password);
}

bool PdfViewerWidget::isModified() const
{
    return m_model->isModified();
}

bool PdfViewerWidget::maybeSave()
{
    return m_fileCommands->maybeSave();
}

bool PdfViewerWidget::save()
{
    return m_fileCommands->save();
}

bool PdfViewerWidget::promptSaveAs()
{
    return m_fileCommands->promptSaveAs();
}

bool PdfViewerWidget::saveAs(const QString &path)
{
    return m_fileCommands->saveAs(path);
}

void PdfViewerWidget::setSaveFunction(PdfSaveFunction write)
{
    m_fileCommands->setSaveFunction(std::move(write));
}

void PdfViewerWidget::printDocument()
{
    m_fileCommands->print();
}

void PdfViewerWidget::revealInFolder()
{
    m_fileCommands->revealInFolder();
}

void PdfViewerWidget::insertPdfFiles(const QStringList &files, int beforeRow)
{
    m_pageCommands->insertFiles(files, beforeRow);
}

void PdfViewerWidget::chooseInsertFiles(int beforeRow)
{
    m_pageCommands->chooseInsertFiles(beforeRow);
}

void PdfViewerWidget::showInsertMenu(int beforeRow, const QPoint &globalPosition)
{
    m_pageCommands->showInsertMenu(beforeRow, globalPosition);
}

void PdfViewerWidget::extractPages(bool combineIntoOne, const QString &outputDirectory)
{
    m_pageCommands->extractPages(combineIntoOne, outputDirectory);
}

void PdfViewerWidget::splitDocument(bool everyPage, const QList<int> &beforeRows,
                                    const QString &outputDirectory)
{
    m_pageCommands->splitDocument(everyPage, beforeRows, outputDirectory);
}

void PdfViewerWidget::showBackendError(const QString &title, PdfBackendError error,
                                       const QString &detail)
{
    showBackendErrorBox(this, title, error, detail);
}

void PdfViewerWidget::setCurrentPage(int page)
{
    m_documentView->goToPage(page);
}

void PdfViewerWidget::goToPage(int page)
{
    m_documentView->goToPage(page);
}

void PdfViewerWidget::setZoomFactor(double factor)
{
    m_documentView->setZoomFactor(factor);
}

void PdfViewerWidget::zoomIn()
{
    m_documentView->zoomIn();
}

void PdfViewerWidget::zoomOut()
{
    m_documentView->zoomOut();
}

void PdfViewerWidget::fitWidth()
{
    m_documentView->fitWidth();
    m_bottomBar->setFitWidth(true);
}

void PdfViewerWidget::fitPage()
{
    m_documentView->fitPage();
    m_bottomBar->setFitWidth(false);
}

void PdfViewerWidget::fitHeight()
{
    fitPage();
}

void PdfViewerWidget::showThumbnailPanel(bool show)
{
    m_thumbnailsVisible = show;
    m_thumbnailPanel->setVisible(show && m_viewMode == PdfViewMode::DocumentView);
    m_topToolBar->setThumbnailChecked(show);
    QTimer::singleShot(0, this, &PdfViewerWidget::applyFitMode);
}

void PdfViewerWidget::applyFitMode()
{
    switch (m_documentView->fitMode()) {
    case PdfDocumentView::FitMode::Width:
        m_documentView->fitWidth();
        break;
    case PdfDocumentView::FitMode::Page:
        m_documentView->fitPage();
        break;
    case PdfDocumentView::FitMode::Manual:
        break;
    }
}

void PdfViewerWidget::setViewMode(PdfViewMode mode)
{
    const bool isDocumentView = mode == PdfViewMode::DocumentView;
    const bool opensGrid = !isDocumentView && m_viewMode == PdfViewMode::DocumentView;
    m_viewMode = mode;
    m_viewStack->setCurrentIndex(isDocumentView ? 0 : 1);
    setFocusProxy(m_viewStack->currentWidget());
    m_thumbnailPanel->setVisible(isDocumentView && m_thumbnailsVisible);
    m_bottomBarPlacer->setAllowed(isDocumentView && m_model->rowCount() > 0);
    m_topToolBar->setViewMode(static_cast<int>(mode));
    if (isDocumentView) {
        setWorkspaceMode(PdfWorkspaceMode::NormalMode);
    }
    if (opensGrid) {
        showReadPageInGrid();
        // The panels beside the grid take and leave their room later.
        QTimer::singleShot(0, this, &PdfViewerWidget::showReadPageInGrid);
    }
}

void PdfViewerWidget::showReadPageInGrid()
{
    m_pageManagerView->showPage(m_documentView->currentPage());
}

void PdfViewerWidget::setWorkspaceMode(PdfWorkspaceMode mode)
{
    m_workspaceMode = mode;
    m_topToolBar->setWorkspaceMode(static_cast<int>(mode));
    m_pageManagerView->setWorkspaceMode(static_cast<int>(mode));
    m_operationSidePanel->setWorkspaceMode(static_cast<int>(mode));
}

void PdfViewerWidget::buildInterface()
{
    setObjectName(QStringLiteral("pdfViewerWidget"));
    m_topToolBar = new PdfTopToolBar(this);
    buildSplitter();

    auto *divider = new QFrame(this);
    divider->setObjectName(QStringLiteral("pdfToolbarViewDivider"));
    divider->setFixedHeight(1);
    divider->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    divider->setStyleSheet(QString(kDividerStyleSheet).arg(Theme::border.name()));

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_topToolBar);
    layout->addWidget(divider);
    layout->addWidget(m_splitter, 1);

    // Floats over the views and is in no layout.
    m_bottomBar = new PdfBottomControlBar(m_viewStack);
    m_bottomBarPlacer = new FloatingBarPlacer(m_bottomBar);
    new WheelForwarder(m_bottomBar, m_documentView->viewport());
    setFocusProxy(m_documentView);
}

void PdfViewerWidget::buildSplitter()
{
    m_thumbnailPanel = new PdfThumbnailPanel;
    m_thumbnailPanel->setModel(m_model);
    m_thumbnailPanel->setRenderManager(m_renderManager);
    m_documentView = new PdfDocumentView;
    m_readingPlace = new ReadingPlaceKeeper(m_model, m_documentView);
    m_documentView->setModel(m_model);
    m_documentView->setRenderManager(m_renderManager);
    m_pageManagerView = new PdfPageManagerView;
    m_pageManagerView->setModel(m_model);
    m_pageManagerView->setRenderManager(m_renderManager);
    m_operationSidePanel = new PdfOperationSidePanel;
    m_operationSidePanel->setModel(m_model);

    m_viewStack = new QStackedWidget;
    m_viewStack->addWidget(m_documentView);
    m_viewStack->addWidget(m_pageManagerView);

    m_splitter = new QSplitter(Qt::Horizontal, this);
    m_splitter->setObjectName(QStringLiteral("pdfViewerSplitter"));
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(kSplitterHandleWidth);
    m_splitter->setStyleSheet(QString(kSplitterStyleSheet).arg(Theme::border.name()));
    m_splitter->addWidget(m_thumbnailPanel);
    m_splitter->addWidget(m_viewStack);
    m_splitter->addWidget(m_operationSidePanel);
    m_splitter->setStretchFactor(0, 0);
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setStretchFactor(2, 0);
    m_splitter->setSizes({m_thumbnailPanel->sizeHint().width(), kViewsWidth,
                          m_operationSidePanel->sizeHint().width()});
}

void PdfViewerWidget::showOpenedDocument()
{
    setViewMode(PdfViewMode::DocumentView);
    m_undoManager->reset();
    m_readingPlace->forget();
    fitWidth();
    m_documentView->goToPage(0);
    // The reader waits for these; while they are rendered, the window has itself to paint.
    m_renderManager->favourNextBatch();
    m_documentView->requestPagesInView();
    refreshPageState();
    emit documentLoaded(m_model->documentPath());
}

void PdfViewerWidget::refreshPageState()
{
    const int count = m_model->rowCount();
    m_bottomBar->setPageCount(count);
    m_bottomBar->setCurrentPage(std::min(std::max(count - 1, 0), m_documentView->currentPage()));
    m_bottomBarPlacer->setAllowed(count > 0 && m_viewMode == PdfViewMode::DocumentView);
    m_topToolBar->setDocumentActionsEnabled(count > 0);
    emit pageCountChanged(count);
}

void PdfViewerWidget::refreshSelectionState()
{
    const int count = m_model->rowCount();
    const auto selected = static_cast<int>(m_model->selectedRows().size());
    m_topToolBar->setSelectionActionsEnabled(selected > 0);
    m_topToolBar->setSelectAllChecked(count > 0 && selected == count);
}

void PdfViewerWidget::previewPage(PdfPageId id)
{
    setViewMode(PdfViewMode::DocumentView);
    m_documentView->goToPage(m_model->rowForPageId(id));
}

void PdfViewerWidget::manageIn(PdfWorkspaceMode mode)
{
    setViewMode(PdfViewMode::PageManageView);
    setWorkspaceMode(mode);
}

void PdfViewerWidget::restartRequests()
{
    m_documentView->restartRequests();
    m_thumbnailPanel->restartRequests();
    m_pageManagerView->restartRequests();
}
