// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/pdf_file_commands.h"

#include "pdf/core/pdf_document_model.h"
#include "pdf/core/pdf_render_manager.h"
#include "pdf/core/pdf_undo_manager.h"
#include "pdf/viewer/commands/backend_error_box.h"
#include "pdf/viewer/commands/document_printing.h"
#include "pdf/viewer/commands/password_question.h"
#include "pdf/viewer/commands/reveal_in_folder.h"
#include "widgets/modern_message_box.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>

#include <utility>

namespace {

/// Lets the user choose a file to write; empty when nothing was chosen. The dialog's static
/// function would not add a suffix, so that what it asks before it replaces a file would be another
/// name.
QString askForTarget(QWidget *parent, const QString &caption, const QString &proposal,
                     const QString &filter)
{
    // The dialog belongs to its parent, which may be deleted while it is open.
    const QPointer<QFileDialog> dialog(
        new QFileDialog(parent, caption, QFileInfo(proposal).absolutePath(), filter));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setDefaultSuffix(QStringLiteral("pdf"));
    dialog->selectFile(proposal);
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (dialog == nullptr) {
        return {};
    }
    dialog->deleteLater();
    return isAccepted ? dialog->selectedFiles().value(0) : QString();
}

} // namespace

PdfFileCommands::PdfFileCommands(PdfDocumentModel *model, PdfRenderManager *renderManager,
                                 PdfUndoManager *undoManager, QWidget *parent)
    : QObject(parent)
    , m_model(model)
    , m_renderManager(renderManager)
    , m_undoManager(undoManager)
    , m_parent(parent)
    , m_write(&PdfEditorBackend::saveDocument)
{}

PdfFileCommands::~PdfFileCommands() = default;

bool PdfFileCommands::open(const QString &path, const QString &password)
{
    const QPointer<PdfFileCommands> self(this);
    if (path.isEmpty() || !maybeSave() || self == nullptr) {
        return false;
    }
    m_renderManager->cancelAll();
    m_renderManager->clearCache();

    const PasswordedRead read = readAskingForPasswords(
        m_parent, password, tr("此 PDF 已加密，请输入密码："),
        [this, &path](const QString &given, PdfBackendError *error, QString *message) {
            return m_model->loadDocument(path, given, error, message);
        });
    if (self == nullptr) {
        return false;
    }
    if (read.outcome == PasswordedRead::Outcome::Done) {
        emit opened();
        return true;
    }
    emit notOpened();
    if (read.outcome == PasswordedRead::Outcome::Failed) {
        showBackendErrorBox(m_parent, tr("无法打开 PDF"), read.error, read.message);
    }
    return false;
}

bool PdfFileCommands::maybeSave()
{
    if (!m_model->isModified()) {
        return true;
    }
    const QPointer<PdfFileCommands> self(this);
    const int answer = ModernMessageBox::questionWithDiscard(
        m_parent, tr("保存修改"), tr("当前 PDF 已修改，是否保存？"), QString(), tr("保存"),
        tr("不保存"), tr("取消"), ModernMessageBox::Warning);
    if (self == nullptr) {
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

bool PdfFileCommands::save()
{
    if (m_model->rowCount() == 0) {
        return false;
    }
    const QString path = m_model->documentPath();
    return path.isEmpty() ? promptSaveAs() : saveAs(path);
}

bool PdfFileCommands::promptSaveAs()
{
    const QString path = m_model->documentPath();
    const QString proposal =
        path.isEmpty() ? QDir(QDir::homePath()).filePath(tr("未命名.pdf")) : path;
    const QPointer<PdfFileCommands> self(this);
    const QString answer =
        askForTarget(m_parent, tr("将 PDF 保存为"), proposal, tr("PDF 文件 (*.pdf)"));
    return self != nullptr && !answer.isEmpty() && saveAs(answer);
}

bool PdfFileCommands::saveAs(const QString &path)
{
    if (path.isEmpty() || m_model->rowCount() == 0 || m_saving) {
        return false;
    }
    const QString target = QFileInfo(path).absoluteFilePath();
    const QPointer<PdfFileCommands> self(this);
    m_saving = true;
    const quint64 revision = m_model->documentRevision();
    const SaveResult result =
        saveShowingProgress(m_parent, m_model->sourcePages(), target, m_write);
    if (self == nullptr) {
        return result.ok;
    }
    m_saving = false;
    if (!result.ok) {
        showBackendErrorBox(m_parent, tr("保存 PDF 失败"), result.error, result.message);
        return false;
    }
    if (m_model->documentRevision() == revision) {
        m_model->markSaved(target);
        m_undoManager->markClean();
    } else {
        // The box lets nobody edit, but files that were dropped before may be inserted meanwhile.
        m_model->markSavedBefore(target);
        m_undoManager->markUnsaved();
    }
    emit saved(target);
    return true;
}

void PdfFileCommands::setSaveFunction(PdfSaveFunction write)
{
    m_write = std::move(write);
}

void PdfFileCommands::print()
{
    printAskingUser(*m_model, m_parent);
}

void PdfFileCommands::revealInFolder() const
{
    if (!m_model->documentPath().isEmpty()) {
        ::revealInFolder(m_model->documentPath());
    }
}
