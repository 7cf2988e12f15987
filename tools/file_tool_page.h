// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "taskcenter/task_request.h"
#include "tools/tool_page.h"

#include <QList>
#include <QString>
#include <QStringList>

class FileDropZoneWidget;
class FileListWidget;
class QStackedWidget;
class TaskListWidget;

/// A page of a tool that works: it collects files, takes the options, submits tasks and shows how
/// they stand.
///
/// It shows a drop zone while no file is chosen, then the list of the files, and after the start
/// the list of its tasks without the options. Options keep their values.
class FileToolPage : public ToolPage
{
    Q_OBJECT

public:
    /// What a page says while it has no file; an empty text keeps that of FileDropZoneWidget.
    struct Texts
    {
        QString dropZone;
        /// Name filter and title of the file dialog.
        QString filter;
        QString caption;
    };

    /// Full paths of the chosen files in list order.
    [[nodiscard]] QStringList inputFiles() const;

    /// Appends the file at `path` and shows the list. An empty path does nothing, and one that is
    /// listed already is left out.
    void addInputFile(const QString &path);

    /// The requests for such files, in the order in which they are to be submitted. What a request
    /// needs to exist, such as a folder for pictures, is created.
    [[nodiscard]] virtual QList<TaskRequest> requestsFor(const QStringList &files) const = 0;

public slots:
    /// Takes the files from the list and submits their tasks; does nothing when there are none.
    void onStart();
    void onTaskStatus(const QString &id, int status);

protected:
    /// Takes the panel.
    FileToolPage(ToolOptionsPanel *panel, const Texts &texts, QWidget *parent);

    /// Whether the start that was asked for is to take place.
    [[nodiscard]] virtual bool confirmStart() { return true; }

    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

    /// Where the results of a request go that has one source.
    [[nodiscard]] static QString outputFolder(const TaskRequest &request, const QString &source);

private:
    void addFiles(const QStringList &files);
    void showFiles();
    void restart();
    [[nodiscard]] bool takesDrops() const;

    QStackedWidget *m_stack;
    FileDropZoneWidget *m_dropZone;
    FileListWidget *m_files;
    TaskListWidget *m_tasks;
};
