// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "taskcenter/task_request.h"

#include <QObject>
#include <QString>

#include <memory>

/// The task service: does the jobs of the batch tools on threads of its own.
///
/// Tasks are begun in the order in which they were submitted and know nothing of each other: one
/// that fails disturbs no other. The object belongs to the interface thread, where it reports; its
/// functions may be called from any thread and none waits for a task but shutdown().
class TaskCenter final : public QObject
{
    Q_OBJECT

public:
    /// The service of the process; it ends with the application.
    static TaskCenter &instance();

    /// A service of its own. `threads` is how many tasks run at the same time, at least 1.
    explicit TaskCenter(int threads, QObject *parent = nullptr);
    /// Ends like shutdown().
    ~TaskCenter() override;

    /// Queues a task and returns its identifier, which no other task has.
    QString submitTask(TaskRequest request);

    /// Ends a task: at once while it is queued, else at its next page, image or stretch of a file.
    /// Nothing of it remains, unless it was complete before.
    void cancel(const QString &id);

    /// Drops all tasks that are queued, cancels those that run and waits for them, which takes
    /// moments. Tasks that are submitted later are cancelled at once.
    void shutdown();

    /// How many tasks are queued or run.
    [[nodiscard]] int unfinishedTasks() const;

    /// Why a task failed, in the language of the interface and without any password; empty unless
    /// it has.
    [[nodiscard]] QString errorMessage(const QString &id) const;
    /// The file or folder that a completed task has made; empty unless it is completed. It differs
    /// from TaskRequest::outputPath where that was taken.
    [[nodiscard]] QString resultPath(const QString &id) const;

signals:
    /// A task has got another status, one of TaskStatus. On the interface thread, from an event, so
    /// never before submitTask() has returned: first 0, then 1, then 3, 4 or 5; 5 may follow 0.
    void taskStatus(const QString &id, int status);

protected:
    void customEvent(QEvent *event) override;

private:
    class Queue;

    const std::unique_ptr<Queue> m_queue;
};
