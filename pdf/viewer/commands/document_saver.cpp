// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/document_saver.h"

#include "widgets/modern_message_box.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <QTimer>

#include <memory>

namespace {

/// What the user is told while a document is written.
class SaveProgress
{
    Q_DECLARE_TR_FUNCTIONS(SaveProgress)

public:
    static MessageBoxOptions box()
    {
        MessageBoxOptions options;
        options.kind = ModernMessageBox::Information;
        options.title = tr("正在保存 PDF");
        options.message = tr("正在写入文件，大文件可能需要一些时间。");
        options.details = tr("保存完成前请不要关闭程序。");
        options.showConfirm = false;
        options.showProgress = true;
        options.closable = false;
        return options;
    }
};

} // namespace

SaveResult saveShowingProgress(QWidget *parent, const QList<PdfSourcePage> &pages,
                               const QString &path, const PdfSaveFunction &write)
{
    const auto result = std::make_shared<SaveResult>();
    const std::unique_ptr<QThread> thread(QThread::create([pages, path, write, result] {
        result->ok = write(pages, path, &result->error, &result->message);
    }));
    // The box belongs to its parent, which may be deleted while it is open.
    const QPointer<ModernMessageBox> box(new ModernMessageBox(SaveProgress::box(), parent));
    QObject::connect(thread.get(), &QThread::finished, box, &QDialog::accept);
    // Not before the box runs its event loop, which a fast save would otherwise leave running.
    QTimer::singleShot(0, box, [&thread] { thread->start(); });
    box->exec();
    thread->wait();
    delete box;
    return *result;
}
