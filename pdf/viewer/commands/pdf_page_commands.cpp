// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/pdf_page_commands.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_undo_manager.h"
#include "pdf/viewer/commands/backend_error_box.h"
#include "pdf/viewer/commands/page_files_writer.h"
#include "pdf/viewer/commands/password_question.h"
#include "pdf/viewer/commands/wait_cursor.h"
#include "pdf/viewer/common/rounded_popup_menu.h"
#include "widgets/modern_message_box.h"
#include "widgets/theme.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>

#include <algorithm>

namespace {

// %1 border
constexpr QLatin1String kInsertMenuStyleSheet{
    "QMenu#pdfInsertMenu { border: 1px solid %1; border-radius: 8px; font-size: 13px; }"};

} // namespace

PdfPageCommands::PdfPageCommands(PdfDocumentModel *model, PdfUndoManager *undoManager,
                                 QWidget *parent)
    : QObject(parent)
    , m_model(model)
    , m_undoManager(undoManager)
    , m_parent(parent)
{}

PdfPageCommands::~PdfPageCommands() = default;

void PdfPageCommands::insertFiles(const QStringList &files, int beforeRow)
{
    const QPointer<PdfPageCommands> self(this);
    int row = std::clamp(beforeRow, 0, m_model->rowCount());
    for (const QString &file : files) {
        const int before = m_model->rowCount();
        const bool inserted = insertFile(file, row);
        if (self == nullptr) {
            return;
        }
        if (inserted) {
            row += m_model->rowCount() - before;
        }
    }
}

bool PdfPageCommands::insertFile(const QString &file, int row)
{
    const PasswordedRead read = readAskingForPasswords(
        m_parent, QString(), tr("插入的 PDF 已加密，请输入密码："),
        [this, &file, row](const QString &given, PdfBackendError *error, QString *message) {
            return m_undoManager->insertPdf(file, row, given, error, message);
        });
    if (read.outcome == PasswordedRead::Outcome::Failed) {
        showBackendErrorBox(m_parent, tr("插入 PDF 失败"), read.error, read.message);
    }
    return read.outcome == PasswordedRead::Outcome::Done;
}

void PdfPageCommands::chooseInsertFiles(int beforeRow)
{
    const QPointer<PdfPageCommands> self(this);
    const QStringList files = QFileDialog::getOpenFileNames(
        m_parent, tr("插入 PDF"), QFileInfo(m_model->documentPath()).absolutePath(),
        tr("PDF 文件 (*.pdf)"));
    if (self != nullptr) {
        insertFiles(files, beforeRow);
    }
}

void PdfPageCommands::showInsertMenu(int beforeRow, const QPoint &globalPosition)
{
    // The menu belongs to its parent, which may be deleted while it is open.
    const QPointer<RoundedPopupMenu> menu(new RoundedPopupMenu(m_parent));
    menu->setObjectName(QStringLiteral("pdfInsertMenu"));
    menu->setStyleSheet(QString(kInsertMenuStyleSheet).arg(Theme::borderStrong.name()));
    const QAction *fileEntry = menu->addAction(tr("插入 PDF"));
    menu->addSeparator();
    const QAction *blankEntry = menu->addAction(tr("在后面插入空白页"));
    const QAction *chosen = menu->exec(globalPosition);
    if (menu == nullptr) {
        return;
    }
    menu->deleteLater();
    if (chosen == fileEntry) {
        chooseInsertFiles(beforeRow);
    } else if (chosen == blankEntry) {
        insertBlankPage(beforeRow);
    }
}

void PdfPageCommands::insertBlankPage(int beforeRow)
{
    const int neighbour = std::max(std::min(m_model->rowCount(), beforeRow) - 1, 0);
    const PdfPageRecord *page = m_model->pageAt(neighbour);
    m_undoManager->insertBlankPage(beforeRow,
                                   page != nullptr ? page->displaySize() : kBlankPageSize);
}

void PdfPageCommands::extractPages(bool combineIntoOne, const QString &outputDirectory) const
{
    writeFiles(planExtract(baseName(), m_model->selectedRows(), combineIntoOne), outputDirectory,
               {tr("提取失败"), tr("部分页面提取失败"), tr("提取完成")});
}

void PdfPageCommands::splitDocument(bool everyPage, const QList<int> &beforeRows,
                                    const QString &outputDirectory) const
{
    writeFiles(planSplit(baseName(), m_model->rowCount(), everyPage, beforeRows), outputDirectory,
               {tr("拆分失败"), tr("部分文件拆分失败"), tr("拆分完成")});
}

QString PdfPageCommands::baseName() const
{
    return QFileInfo(m_model->documentPath()).completeBaseName();
}

void PdfPageCommands::writeFiles(const QList<PageOutputFile> &plan, const QString &outputDirectory,
                                 const BatchTexts &texts) const
{
    if (plan.isEmpty() || outputDirectory.isEmpty()) {
        return;
    }
    if (!QDir().mkpath(outputDirectory)) {
        ModernMessageBox::showError(m_parent, texts.noFolderTitle, tr("无法创建目标文件夹。"),
                                    QString());
        return;
    }
    PageFilesResult result;
    {
        const WaitCursor cursor;
        result = writePageFiles(plan, m_model->sourcePages(), outputDirectory);
    }
    if (!result.failures.isEmpty()) {
        ModernMessageBox::showError(m_parent, texts.failedTitle,
                                    tr("已生成 %1 个文件，%2 个文件失败。\n\n%3")
                                        .arg(QString::number(result.written.size()),
                                             QString::number(result.failures.size()),
                                             result.failures.join(u'\n')),
                                    QString());
        return;
    }
    ModernMessageBox::showMessage(
        m_parent, ModernMessageBox::Information, texts.doneTitle,
        tr("已生成 %1 个 PDF 文件。\n%2")
            .arg(QString::number(result.written.size()), QDir::toNativeSeparators(outputDirectory)),
        QString());
}
