// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QWidget>

class QListWidget;
class TaskListItem;
struct TaskRow;

/// The tasks that a page has submitted: a row each, and a button to start over.
class TaskListWidget final : public QWidget
{
    Q_OBJECT

public:
    explicit TaskListWidget(QWidget *parent = nullptr);

    /// Appends a row.
    void addTask(const TaskRow &task);
    /// Shows the status of a task, a TaskStatus; does nothing for tasks that have no row here.
    void updateStatus(const QString &id, int status);

    /// The rows from top to bottom.
    [[nodiscard]] QList<TaskListItem *> rows() const;

signals:
    /// The user wants to start over; the rows are gone, the tasks go on.
    void sigRestart();

private:
    void restart();

    QListWidget *m_list;
    QHash<QString, TaskListItem *> m_rowOfTask;
};
