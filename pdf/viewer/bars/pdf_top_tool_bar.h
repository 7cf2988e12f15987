// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/viewer/common/pdf_view_modes.h"

#include <QList>
#include <QWidget>

class QButtonGroup;
class QHBoxLayout;
class QMenu;
class QPushButton;
class RoundedPopupMenu;
class ToolBarButton;

/// The bar at the top of a viewer: view switching, the thumbnails, the tools, the commands of the
/// view shown, undo and redo, and what is done with the file.
///
/// The bar only asks; the viewer carries the requests out and tells the bar of its state. Setting a
/// state emits nothing.
///
/// A bar too narrow for the texts of the page-editing commands shows their icons alone.
class PdfTopToolBar final : public QWidget
{
    Q_OBJECT

public:
    explicit PdfTopToolBar(QWidget *parent = nullptr);
    ~PdfTopToolBar() override;

    /// Takes a value of PdfViewMode.
    void setViewMode(int mode);
    /// Takes a value of PdfWorkspaceMode.
    void setWorkspaceMode(int mode);
    /// For what needs a document with pages.
    void setDocumentActionsEnabled(bool enabled);
    /// For what needs selected pages: rotating and deleting.
    void setSelectionActionsEnabled(bool enabled);
    void setUndoRedoEnabled(bool canUndo, bool canRedo);
    void setThumbnailChecked(bool checked);
    void setSelectAllChecked(bool checked);

signals:
    void documentViewRequested();
    void pageManageViewRequested();
    void thumbnailToggled(bool visible);
    void insertModeRequested();
    void extractModeRequested();
    void splitModeRequested();
    void rotateLeftRequested();
    void rotateRightRequested();
    void deleteRequested();
    void selectAllToggled(bool selected);
    void handToolToggled(bool enabled);
    void undoRequested();
    void redoRequested();
    void searchRequested();
    void saveRequested();
    void saveAsRequested();
    void printRequested();
    void revealInFolderRequested();
    void compressRequested();
    void convertToOfficeRequested();
    void convertToImagesRequested();
    void encryptRequested();
    void decryptRequested();
    void pageNumberRequested();
    void annotationActionRequested(const QString &actionId);

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Command;
    struct AnnotationAction;
    struct MenuEntry;

    void createButtons();
    void createButtonGroups();
    void createHandToolGroup();
    void createMenus();
    void connectToggles();
    void buildLayout();
    [[nodiscard]] ToolBarButton *createButton(const QString &text, const QString &toolTip,
                                              const QString &iconPath, bool checkable);
    [[nodiscard]] ToolBarButton *createAnnotationButton(const AnnotationAction &action);
    [[nodiscard]] QWidget *createSeparator();
    [[nodiscard]] QWidget *createPageEditGroup();
    void addEntry(QMenu *menu, const MenuEntry &entry);
    void popUpMoreMenu();
    void updateSelectAllIcon();
    /// Leaves out the texts of the page-editing commands for which the bar has no room; that of
    /// "select all", whose check box speaks for itself, goes first.
    void fitTexts();

    PdfViewMode m_viewMode = PdfViewMode::DocumentView;
    PdfWorkspaceMode m_workspaceMode = PdfWorkspaceMode::NormalMode;
    ToolBarButton *m_documentViewButton = nullptr;
    ToolBarButton *m_pageManageViewButton = nullptr;
    ToolBarButton *m_thumbnailButton = nullptr;
    ToolBarButton *m_toolsButton = nullptr;
    ToolBarButton *m_insertButton = nullptr;
    ToolBarButton *m_extractButton = nullptr;
    ToolBarButton *m_splitButton = nullptr;
    ToolBarButton *m_rotateLeftButton = nullptr;
    ToolBarButton *m_rotateRightButton = nullptr;
    ToolBarButton *m_deleteButton = nullptr;
    ToolBarButton *m_selectAllButton = nullptr;
    ToolBarButton *m_undoButton = nullptr;
    ToolBarButton *m_redoButton = nullptr;
    ToolBarButton *m_moreButton = nullptr;
    QWidget *m_handToolGroup = nullptr;
    QWidget *m_pageEditGroup = nullptr;
    QButtonGroup *m_viewModeGroup = nullptr;
    QButtonGroup *m_workspaceModeGroup = nullptr;
    RoundedPopupMenu *m_toolsMenu = nullptr;
    RoundedPopupMenu *m_moreMenu = nullptr;
};
