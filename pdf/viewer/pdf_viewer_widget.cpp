// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/pdf_viewer_widget.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/core/pdf_undo_manager.h"
#include "pdf/viewer/bars/floating_bar_placer.h"
#include "pdf/viewer/bars/pdf_bottom_control_bar.h"
#include "pdf/viewer/bars/pdf_top_tool_bar.h"
#include "pdf/viewer/commands/page_files_writer.h"
#include "pdf/viewer/commands/page_printer.h"
#include "pdf/viewer/commands/password_question.h"
#include "pdf/viewer/commands/reveal_in_folder.h"
#include "pdf/viewer/common/rounded_popup_menu.h"
#include "pdf/viewer/grid/pdf_page_manager_view.h"
#include "pdf/viewer/reading/pdf_document_view.h"
#include "pdf/viewer/side_panel/pdf_operation_side_panel.h"
#include "pdf/viewer/thumbnails/pdf_thumbnail_panel.h"
#include "widgets/modern_message_box.h"
#include "widgets/theme.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>
#include <QUndoStack>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// %1 handle
constexpr QLatin1String kSplitterStyleSheet{
    "QSplitter#pdfViewerSplitter::handle { background: %1; }"};
// %1 line
constexpr QLatin1String kDividerStyleSheet{
    "#pdfToolbarViewDivider { background: %1; border: none; }"};
// %1 border
constexpr QLatin1String kInsertMenuStyleSheet{
    "QMenu#pdfInsertMenu { border: 1px solid %1; border-radius: 8px; font-size: 13px; }"};
constexpr int kSplitterHandleWidth = 1;
constexpr int kThumbnailPanelWidth = 210;
constexpr int kViewsWidth = 1000;
constexpr int kSidePanelWidth = 340;

bool needsPassword(PdfBackendError error)
{
    return error == PdfBackendError::PasswordRequired || error == PdfBackendError::InvalidPassword;
}

/// Shows the wait cursor for as long as it lives.
class WaitCursor
{
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;
};

} // namespace

PdfViewerWidget::PdfViewerWidget(QWidget *parent)
    : QWidget(parent)
    , m_model(new PdfDocumentModel(this))
    , m_renderManager(new PdfRenderManager(this))
    , m_undoManager(new PdfUndoManager(m_model, this))
    , m_write(&PdfEditorBackend::saveDocument)
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
    if (path.isEmpty() || (m_model->isModified() && !maybeSave())) {
        return false;
    }
    m_renderManager->cancelAll();
    m_renderManager->clearCache();

    const QPointer<PdfViewerWidget> self(this);
    PdfBackendError error = PdfBackendError::None;
    QString message;
    bool loaded = m_model->loadDocument(path, password, &error, &message);
    while (!loaded && needsPassword(error)) {
        const std::optional<QString> answer =
            askForPassword(this, error == PdfBackendError::PasswordRequired
                                     ? tr("此 PDF 已加密，请输入密码：")
                                     : tr("密码错误，请重新输入 PDF 密码："));
        if (!self) {
            return false;
        }
        if (!answer) {
            restartRequests();
            return false;
        }
        loaded = m_model->loadDocument(path, *answer, &error, &message);
    }
    if (!loaded) {
        restartRequests();
        showBackendError(tr("无法打开 PDF"), error, message);
        return false;
    }

    setViewMode(PdfViewMode::DocumentView);
    m_undoManager->reset();
    fitWidth();
    m_documentView->goToPage(0);
    // The reader waits for these; while they are rendered, the window has itself to paint.
    m_renderManager->favourNextBatch();
    m_documentView->requestPagesInView();
    refreshPageState();
    emit documentLoaded(m_model->documentPath());
    return true;
}

bool PdfViewerWidget::isModified() const
{
    return m_model->isModified();
}

bool PdfViewerWidget::maybeSave()
{
    if (!m_model->isModified()) {
        return true;
    }
    const QPointer<PdfViewerWidget> self(this);
    const int answer = ModernMessageBox::questionWithDiscard(
        this, tr("保存修改"), tr("当前 PDF 已修改，是否保存？"), QString(), tr("保存"),
        tr("不保存"), tr("取消"), ModernMessageBox::Warning);
    if (!self) {
        return false;
    }
    switch (answer) {
    case ModernMessageBox::Confirmed:
        return save();
    case ModernMessageBox::Cancelled:
        return false;
    default:
        return true;
    }
}

bool PdfViewerWidget::save()
{
    if (m_model->rowCount() == 0) {
        return false;
    }
    const QString path = m_model->documentPath();
    return path.isEmpty() ? promptSaveAs() : saveAs(path);
}

bool PdfViewerWidget::promptSaveAs()
{
    const QString path = m_model->documentPath();
    const QString proposal =
        path.isEmpty() ? QDir(QDir::homePath()).filePath(tr("未命名.pdf")) : path;
    const QPointer<PdfViewerWidget> self(this);
    const QString answer =
        QFileDialog::getSaveFileName(this, tr("将 PDF 保存为"), proposal, tr("PDF 文件 (*.pdf)"));
    return self && !answer.isEmpty() && saveAs(answer);
}

bool PdfViewerWidget::saveAs(const QString &path)
{
    if (path.isEmpty() || m_model->rowCount() == 0 || m_saving) {
        return false;
    }
    const QString target = QFileInfo(path).absoluteFilePath();
    const QPointer<PdfViewerWidget> self(this);
    m_saving = true;
    const SaveResult result = saveShowingProgress(this, m_model->sourcePages(), target, m_write);
    if (!self) {
        return result.ok;
    }
    m_saving = false;
    if (!result.ok) {
        showBackendError(tr("保存 PDF 失败"), result.error, result.message);
        return false;
    }
    m_model->markSaved(target);
    m_undoManager->markClean();
    emit documentSaved(target);
    return true;
}

void PdfViewerWidget::printDocument()
{
    const int count = m_model->rowCount();
    if (count == 0) {
        return;
    }
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(QFileInfo(m_model->documentPath()).fileName());
    printer.setFromTo(1, count);
    const QPointer<PdfViewerWidget> self(this);
    {
        const QPointer<QPrintDialog> dialog(new QPrintDialog(&printer, this));
        dialog->setWindowTitle(tr("打印 PDF"));
        dialog->setMinMax(1, count);
        const bool accepted = dialog->exec() == QDialog::Accepted && dialog;
        delete dialog;
        if (!accepted || !self) {
            return;
        }
    }
    PagePrinter pages;
    PagePrinter::Outcome outcome{};
    {
        const WaitCursor cursor;
        outcome = pages.print(m_model->pages(),
                              printRange(printer.fromPage(), printer.toPage(), count), printer);
    }
    if (outcome == PagePrinter::Outcome::NotStarted) {
        ModernMessageBox::showError(this, tr("打印失败"), tr("无法启动打印任务。"), QString());
    } else if (outcome == PagePrinter::Outcome::Incomplete) {
        ModernMessageBox::showError(this, tr("打印未完成"), pages.reason(), QString());
    }
}

void PdfViewerWidget::revealInFolder()
{
    if (!m_model->documentPath().isEmpty()) {
        ::revealInFolder(m_model->documentPath());
    }
}

void PdfViewerWidget::insertPdfFiles(const QStringList &files, int beforeRow)
{
    const QPointer<PdfViewerWidget> self(this);
    int row = std::clamp(beforeRow, 0, m_model->rowCount());
    for (const QString &file : files) {
        const int before = m_model->rowCount();
        const bool inserted = insertPdfFile(file, row);
        if (!self) {
            return;
        }
        if (inserted) {
            row += m_model->rowCount() - before;
        }
    }
}

bool PdfViewerWidget::insertPdfFile(const QString &file, int row)
{
    const QPointer<PdfViewerWidget> self(this);
    PdfBackendError error = PdfBackendError::None;
    QString message;
    bool inserted = m_undoManager->insertPdf(file, row, QString(), &error, &message);
    while (!inserted && needsPassword(error)) {
        const std::optional<QString> answer =
            askForPassword(this, error == PdfBackendError::PasswordRequired
                                     ? tr("插入的 PDF 已加密，请输入密码：")
                                     : tr("密码错误，请重新输入 PDF 密码："));
        if (!self || !answer) {
            return false;
        }
        inserted = m_undoManager->insertPdf(file, row, *answer, &error, &message);
    }
    if (!inserted) {
        showBackendError(tr("插入 PDF 失败"), error, message);
    }
    return inserted;
}

void PdfViewerWidget::chooseInsertFiles(int beforeRow)
{
    const QPointer<PdfViewerWidget> self(this);
    const QStringList files = QFileDialog::getOpenFileNames(
        this, tr("插入 PDF"), QFileInfo(m_model->documentPath()).absolutePath(),
        tr("PDF 文件 (*.pdf)"));
    if (self) {
        insertPdfFiles(files, beforeRow);
    }
}

void PdfViewerWidget::showInsertMenu(int beforeRow, const QPoint &globalPosition)
{
    const QPointer<RoundedPopupMenu> menu(new RoundedPopupMenu(this));
    menu->setObjectName(QStringLiteral("pdfInsertMenu"));
    menu->setStyleSheet(QString(kInsertMenuStyleSheet).arg(Theme::borderStrong.name()));
    const QAction *insertFiles = menu->addAction(tr("插入 PDF"));
    menu->addSeparator();
    const QAction *insertBlank = menu->addAction(tr("在后面插入空白页"));
    const QAction *chosen = menu->exec(globalPosition);
    if (!menu) {
        return;
    }
    menu->deleteLater();
    if (chosen == insertFiles) {
        chooseInsertFiles(beforeRow);
    } else if (chosen == insertBlank) {
        insertBlankPage(beforeRow);
    }
}

void PdfViewerWidget::insertBlankPage(int beforeRow)
{
    const int neighbour = std::max(std::min(m_model->rowCount(), beforeRow) - 1, 0);
    const PdfPageRecord *page = m_model->pageAt(neighbour);
    m_undoManager->insertBlankPage(beforeRow, page ? page->displaySize() : kBlankPageSize);
}

void PdfViewerWidget::extractPages(bool combineIntoOne, const QString &outputDirectory)
{
    writeFiles(planExtract(baseName(), m_model->selectedRows(), combineIntoOne), outputDirectory,
               {tr("提取失败"), tr("部分页面提取失败"), tr("提取完成")});
}

void PdfViewerWidget::splitDocument(bool everyPage, const QList<int> &beforeRows,
                                    const QString &outputDirectory)
{
    writeFiles(planSplit(baseName(), m_model->rowCount(), everyPage, beforeRows), outputDirectory,
               {tr("拆分失败"), tr("部分文件拆分失败"), tr("拆分完成")});
}

void PdfViewerWidget::writeFiles(const QList<PageOutputFile> &plan, const QString &outputDirectory,
                                 const BatchTexts &texts)
{
    if (plan.isEmpty() || outputDirectory.isEmpty()) {
        return;
    }
    if (!QDir().mkpath(outputDirectory)) {
        ModernMessageBox::showError(this, texts.noFolderTitle, tr("无法创建目标文件夹。"),
                                    QString());
        return;
    }
    PageFilesResult result;
    {
        const WaitCursor cursor;
        result = writePageFiles(plan, m_model->sourcePages(), outputDirectory);
    }
    if (!result.failures.isEmpty()) {
        ModernMessageBox::showError(this, texts.failedTitle,
                                    tr("已生成 %1 个文件，%2 个文件失败。\n\n%3")
                                        .arg(QString::number(result.written.size()),
                                             QString::number(result.failures.size()),
                                             result.failures.join(u'\n')),
                                    QString());
        return;
    }
    ModernMessageBox::showMessage(
        this, ModernMessageBox::Information, texts.doneTitle,
        tr("已生成 %1 个 PDF 文件。\n%2")
            .arg(QString::number(result.written.size()), QDir::toNativeSeparators(outputDirectory)),
        QString());
}

void PdfViewerWidget::showBackendError(const QString &title, PdfBackendError error,
                                       const QString &detail)
{
    QString sentence;
    switch (error) {
    case PdfBackendError::FileNotFound:
        sentence = tr("文件不存在或已被移动。");
        break;
    case PdfBackendError::PasswordRequired:
        sentence = tr("PDF 需要密码。");
        break;
    case PdfBackendError::InvalidPassword:
        sentence = tr("PDF 密码错误。");
        break;
    case PdfBackendError::InvalidDocument:
        sentence = tr("PDF 已损坏或格式不受支持。");
        break;
    case PdfBackendError::RenderFailed:
        sentence = tr("页面渲染失败。");
        break;
    case PdfBackendError::WriteFailed:
        sentence = tr("无法写入目标文件，请检查权限和磁盘空间。");
        break;
    case PdfBackendError::None:
    default:
        sentence = tr("操作未完成。");
        break;
    }
    ModernMessageBox::showError(this, title, sentence, detail.trimmed());
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
    m_viewMode = mode;
    m_viewStack->setCurrentIndex(isDocumentView ? 0 : 1);
    setFocusProxy(m_viewStack->currentWidget());
    m_thumbnailPanel->setVisible(isDocumentView && m_thumbnailsVisible);
    m_bottomBarPlacer->setAllowed(isDocumentView && m_model->rowCount() > 0);
    m_topToolBar->setViewMode(static_cast<int>(mode));
    if (isDocumentView) {
        setWorkspaceMode(PdfWorkspaceMode::NormalMode);
    }
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
    setFocusProxy(m_documentView);
}

void PdfViewerWidget::buildSplitter()
{
    m_thumbnailPanel = new PdfThumbnailPanel;
    m_thumbnailPanel->setModel(m_model);
    m_thumbnailPanel->setRenderManager(m_renderManager);
    m_documentView = new PdfDocumentView;
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
    m_splitter->setSizes({kThumbnailPanelWidth, kViewsWidth, kSidePanelWidth});
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

QString PdfViewerWidget::baseName() const
{
    return QFileInfo(m_model->documentPath()).completeBaseName();
}
