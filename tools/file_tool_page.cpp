// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tools/file_tool_page.h"

#include "taskcenter/task_center.h"
#include "tools/files/file_drop_zone_widget.h"
#include "tools/files/file_list_widget.h"
#include "tools/options/tool_options_panel.h"
#include "tools/tasks/task_list_widget.h"
#include "tools/tasks/task_row.h"
#include "widgets/file_drop.h"

#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QStackedWidget>

FileToolPage::FileToolPage(ToolOptionsPanel *panel, const Texts &texts, QWidget *parent)
    : ToolPage(new QStackedWidget, panel, parent)
    , m_stack(findChild<QStackedWidget *>())
    , m_dropZone(new FileDropZoneWidget(m_stack))
    , m_files(new FileListWidget(m_stack))
    , m_tasks(new TaskListWidget(m_stack))
{
    setAcceptDrops(true);
    // The smallest window has less room beside the options than a drop zone asks for, which would
    // push them out of it.
    m_dropZone->setMinimumSize(0, 0);
    if (!texts.dropZone.isEmpty()) {
        m_dropZone->setText(texts.dropZone);
    }
    if (!texts.filter.isEmpty()) {
        m_dropZone->filter = m_files->filter = texts.filter;
        m_dropZone->caption = m_files->caption = texts.caption;
    }
    m_stack->addWidget(m_dropZone);
    m_stack->addWidget(m_files);
    m_stack->addWidget(m_tasks);

    // Later, so that the program which files are dropped from need not wait until they are listed.
    connect(m_dropZone, &FileDropZoneWidget::fileSelected, this, &FileToolPage::addFiles,
            Qt::QueuedConnection);
    connect(m_files, &FileListWidget::fileCountChange, this, [this](int count) {
        if (count == 0) {
            m_stack->setCurrentWidget(m_dropZone);
        }
    });
    // The end of a drag leaves the list empty. The order was made to be used.
    connect(m_files, &FileListWidget::fileOrderChanged, m_files, &FileListWidget::putBack);
    connect(m_tasks, &TaskListWidget::sigRestart, this, &FileToolPage::restart);
    connect(panel, &ToolOptionsPanel::startClicked, this, [this] {
        if (!inputFiles().isEmpty() && confirmStart()) {
            onStart();
        }
    });
    connect(&TaskCenter::instance(), &TaskCenter::taskStatus, this, &FileToolPage::onTaskStatus);
}

QStringList FileToolPage::inputFiles() const
{
    return m_files->files();
}

void FileToolPage::addInputFile(const QString &path)
{
    if (!path.isEmpty()) {
        addFiles({path});
    }
}

void FileToolPage::onStart()
{
    const QStringList files = m_files->takeFiles();
    if (files.isEmpty()) {
        return;
    }
    const QList<TaskRequest> requests = requestsFor(files);
    for (const TaskRequest &request : requests) {
        const QString id = TaskCenter::instance().submitTask(request);
        m_tasks->addTask({id, request.type, request.outputPath});
    }
    m_stack->setCurrentWidget(m_tasks);
    setOptionsVisible(false);
}

void FileToolPage::onTaskStatus(const QString &id, int status)
{
    m_tasks->updateStatus(id, status);
}

void FileToolPage::dragEnterEvent(QDragEnterEvent *event)
{
    if (takesDrops() && event->mimeData()->hasUrls()) {
        acceptAsCopy(*event);
    } else {
        event->ignore();
    }
}

void FileToolPage::dragMoveEvent(QDragMoveEvent *event)
{
    acceptAsCopy(*event);
}

/// The list of files takes no drops, but who has dropped some files wants to drop more.
void FileToolPage::dropEvent(QDropEvent *event)
{
    if (!takesDrops() || !acceptAsCopy(*event)) {
        return;
    }
    const QStringList files = filePaths(*event->mimeData());
    QMetaObject::invokeMethod(
        this, [this, files] { addFiles(files); }, Qt::QueuedConnection);
}

QString FileToolPage::outputFolder(const TaskRequest &request, const QString &source)
{
    return request.useSourceFolder ? QFileInfo(source).absolutePath() : request.outputPath;
}

void FileToolPage::addFiles(const QStringList &files)
{
    QStringList named = files;
    // What was dropped may be an address of the web, which names no file.
    named.removeAll(QString());
    if (named.isEmpty()) {
        return;
    }
    m_files->onAddFile(named);
    showFiles();
}

/// Also for a file that comes while tasks are shown: without the options nothing could be started.
void FileToolPage::showFiles()
{
    m_stack->setCurrentWidget(m_files);
    setOptionsVisible(true);
}

void FileToolPage::restart()
{
    m_stack->setCurrentWidget(m_dropZone);
    setOptionsVisible(true);
}

bool FileToolPage::takesDrops() const
{
    return m_stack->currentWidget() != m_tasks;
}
