// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"
#include "pdf/viewer/commands/document_saver.h"
#include "pdf/viewer/common/pdf_view_modes.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QList>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <QWidget>

class FloatingBarPlacer;
class PdfBottomControlBar;
class PdfDocumentModel;
class PdfDocumentView;
class PdfFileCommands;
class PdfOperationSidePanel;
class PdfPageCommands;
class PdfPageManagerView;
class PdfRenderManager;
class PdfThumbnailPanel;
class PdfTopToolBar;
class PdfUndoManager;
class ReadingPlaceKeeper;
class QSplitter;
class QStackedWidget;

/// The workspace of one open PDF: owns the document, its renderer, its edit history and the
/// commands that concern the whole document, and puts the parts together that show its pages.
///
/// Pages and rows are counted from zero. Whatever goes wrong is told to the user in a message box.
/// Lives on the interface thread.
class PdfViewerWidget final : public QWidget
{
    Q_OBJECT

public:
    explicit PdfViewerWidget(QWidget *parent = nullptr);
    ~PdfViewerWidget() override;

    /// Opens a file in place of the document shown, asking for a password as long as it needs
    /// another one. False when nothing was opened; the document shown then stays. The user has
    /// been told of a failure; giving up at the password is none.
    bool openFile(const QString &path, const QString &password);

    /// The document has changes that were not saved.
    [[nodiscard]] bool isModified() const;
    /// Asks what to do with unsaved changes; true when the document may be replaced or closed.
    [[nodiscard]] bool maybeSave();

    /// Writes the document to its file, or to one that the user chooses if it has none.
    bool save();
    /// Lets the user choose a file to save to.
    bool promptSaveAs();
    /// Writes the document to `path`, which becomes its file. Returns when it is written; the
    /// window stays alive meanwhile. Nothing is loaded anew.
    bool saveAs(const QString &path);
    /// Replaces what writes documents.
    void setSaveFunction(PdfSaveFunction write);

    /// Prints the document after the user has chosen how.
    void printDocument();
    /// Shows the document's file in the file manager.
    void revealInFolder();

    /// Inserts the pages of the files before `beforeRow`, in order, asking for passwords. A file
    /// that cannot be inserted is left out.
    void insertPdfFiles(const QStringList &files, int beforeRow);
    void chooseInsertFiles(int beforeRow);
    /// Offers what can be inserted before `beforeRow` in a menu.
    void showInsertMenu(int beforeRow, const QPoint &globalPosition);

    /// Writes the selected pages to files of their own, or to one, in `outputDirectory`.
    void extractPages(bool combineIntoOne, const QString &outputDirectory);
    /// Writes the parts between the cuts to files in `outputDirectory`: a cut before each of
    /// `beforeRows`, or before every page.
    void splitDocument(bool everyPage, const QList<int> &beforeRows,
                       const QString &outputDirectory);

    /// Tells the user that the engine failed: a sentence for `error` and the engine's own `detail`.
    void showBackendError(const QString &title, PdfBackendError error, const QString &detail);

signals:
    void currentPageChanged(int page);
    void pageCountChanged(int count);
    void zoomChanged(double zoom);
    void zoomFactorChanged(double factor);
    void modifiedChanged(bool modified);
    void documentLoaded(const QString &path);
    void documentClosed();
    void convertPdfToOfficeRequested(const QString &path);
    void externalToolRequested(const QString &toolId, const QString &path);
    /// The finished image of the current page was painted for the first time in this document.
    void firstPagePainted();
    /// The document was written to `path`, which is its file now.
    void documentSaved(const QString &path);

public slots:
    void setCurrentPage(int page);
    void goToPage(int page);
    void setZoomFactor(double factor);
    void zoomIn();
    void zoomOut();
    void fitWidth();
    void fitPage();
    void fitHeight();
    void showThumbnailPanel(bool show);
    void setViewMode(PdfViewMode mode);
    void setWorkspaceMode(PdfWorkspaceMode mode);

private:
    void buildInterface();
    void buildSplitter();
    // In pdf_viewer_connections.cpp.
    void connectParts();
    void connectDocumentView();
    void connectThumbnailPanel();
    void connectBottomBar();
    void connectToolBarModes();
    void connectToolBarEdits();
    void connectToolBarFile();
    void connectPageManagerView();
    void connectSidePanel();
    void connectModel();
    void connectCommands();

    void showOpenedDocument();
    void refreshPageState();
    void refreshSelectionState();
    void previewPage(PdfPageId id);
    /// Switches to the grid and to what it is to be used for.
    void manageIn(PdfWorkspaceMode mode);
    void applyFitMode();
    void showReadPageInGrid();
    /// Lets the views ask again for the images that were cancelled.
    void restartRequests();

    PdfDocumentModel *m_model;
    PdfRenderManager *m_renderManager;
    PdfUndoManager *m_undoManager;
    PdfTopToolBar *m_topToolBar = nullptr;
    QSplitter *m_splitter = nullptr;
    PdfThumbnailPanel *m_thumbnailPanel = nullptr;
    QStackedWidget *m_viewStack = nullptr;
    PdfDocumentView *m_documentView = nullptr;
    PdfPageManagerView *m_pageManagerView = nullptr;
    PdfOperationSidePanel *m_operationSidePanel = nullptr;
    PdfBottomControlBar *m_bottomBar = nullptr;
    PdfViewMode m_viewMode = PdfViewMode::DocumentView;
    PdfWorkspaceMode m_workspaceMode = PdfWorkspaceMode::NormalMode;
    bool m_thumbnailsVisible = true;
    PdfFileCommands *m_fileCommands;
    PdfPageCommands *m_pageCommands;
    FloatingBarPlacer *m_bottomBarPlacer = nullptr;
    ReadingPlaceKeeper *m_readingPlace = nullptr;
};
