// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/task_center.h"

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/render_threads.h"
#include "taskcenter/task_error_text.h"
#include "taskcenter/task_job.h"

#include <QCoreApplication>
#include <QHash>
#include <QLoggingCategory>
#include <QThreadPool>
#include <QUuid>

#include <algorithm>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(tasks, "quillora.tasks", QtWarningMsg)

struct Task
{
    QString id;
    TaskRequest request;
    PdfCancelFlag cancel;
};

TaskStatus statusFor(const PdfOperationOutcome &outcome)
{
    switch (outcome.error) {
    case PdfOperationError::None:
        return TaskStatus::Completed;
    case PdfOperationError::Cancelled:
        return TaskStatus::Cancelled;
    default:
        return TaskStatus::Failed;
    }
}

} // namespace

/// The tasks that wait and run, and what became of the others. Any thread.
class TaskCenter::Queue final
{
public:
    Queue(TaskCenter &center, int threads)
        : m_center(center)
    {
        m_pool.setMaxThreadCount(std::max(threads, 1));
        // The interface and pages that somebody waits for come first.
        m_pool.setThreadPriority(QThread::LowPriority);
    }

    void add(Task task);
    void cancel(const QString &id);
    void shutdown();
    [[nodiscard]] PdfOperationOutcome outcome(const QString &id) const;

private:
    void runNext();
    std::optional<Task> takeNext();
    void finish(const QString &id, const PdfOperationOutcome &outcome);
    void report(const QString &id, TaskStatus status);

    TaskCenter &m_center;
    mutable std::mutex m_mutex; ///< Guards what follows, and the order of reports.
    bool m_isClosed = false;
    std::deque<Task> m_waiting;
    QHash<QString, PdfCancelFlag> m_running;
    QHash<QString, PdfOperationOutcome> m_outcomes; ///< Of tasks that completed or failed.
    QThreadPool m_pool;
};

void TaskCenter::Queue::add(Task task)
{
    const std::lock_guard lock(m_mutex);
    report(task.id, TaskStatus::Queued);
    if (m_isClosed) {
        report(task.id, TaskStatus::Cancelled);
        return;
    }
    m_waiting.push_back(std::move(task));
    m_pool.start([this] { runNext(); });
}

void TaskCenter::Queue::cancel(const QString &id)
{
    const std::lock_guard lock(m_mutex);
    const auto waiting = std::find_if(m_waiting.begin(), m_waiting.end(),
                                      [&](const Task &task) { return task.id == id; });
    if (waiting != m_waiting.end()) {
        m_waiting.erase(waiting);
        report(id, TaskStatus::Cancelled);
    } else if (const auto running = m_running.constFind(id); running != m_running.constEnd()) {
        running->set();
    }
}

void TaskCenter::Queue::shutdown()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        for (const Task &task : m_waiting) {
            report(task.id, TaskStatus::Cancelled);
        }
        m_waiting.clear();
        for (const PdfCancelFlag &running : std::as_const(m_running)) {
            running.set();
        }
    }
    m_pool.waitForDone();
}

PdfOperationOutcome TaskCenter::Queue::outcome(const QString &id) const
{
    const std::lock_guard lock(m_mutex);
    return m_outcomes.value(id);
}

void TaskCenter::Queue::runNext()
{
    if (const std::optional<Task> task = takeNext()) {
        finish(task->id, runTaskJob(task->request, task->cancel));
    }
}

std::optional<Task> TaskCenter::Queue::takeNext()
{
    const std::lock_guard lock(m_mutex);
    if (m_waiting.empty()) {
        return std::nullopt;
    }
    Task task = std::move(m_waiting.front());
    m_waiting.pop_front();
    m_running.insert(task.id, task.cancel);
    report(task.id, TaskStatus::Running);
    return task;
}

void TaskCenter::Queue::finish(const QString &id, const PdfOperationOutcome &outcome)
{
    const TaskStatus status = statusFor(outcome);
    qCDebug(tasks) << id << static_cast<int>(status) << outcome.message;
    const std::lock_guard lock(m_mutex);
    m_running.remove(id);
    if (status != TaskStatus::Cancelled) {
        m_outcomes.insert(id, outcome);
    }
    report(id, status);
}

void TaskCenter::Queue::report(const QString &id, TaskStatus status)
{
    TaskCenter *center = &m_center;
    QMetaObject::invokeMethod(
        center, [center, id, status] { emit center->taskStatus(id, static_cast<int>(status)); },
        Qt::QueuedConnection);
}

TaskCenter &TaskCenter::instance()
{
    static TaskCenter center(pdfcore::renderThreadLimit());
    static const bool isPrepared = [] {
        if (const QCoreApplication *application = QCoreApplication::instance()) {
            center.moveToThread(application->thread());
        }
        // While there still is an application that the libraries which the tasks use may need.
        qAddPostRoutine([] { center.shutdown(); });
        return true;
    }();
    Q_UNUSED(isPrepared)
    return center;
}

TaskCenter::TaskCenter(int threads, QObject *parent)
    : QObject(parent)
    , m_queue(std::make_unique<Queue>(*this, threads))
{}

TaskCenter::~TaskCenter()
{
    m_queue->shutdown();
}

QString TaskCenter::submitTask(TaskRequest request)
{
    QString id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    request.id = id;
    m_queue->add({id, std::move(request), PdfCancelFlag()});
    return id;
}

void TaskCenter::cancel(const QString &id)
{
    m_queue->cancel(id);
}

void TaskCenter::shutdown()
{
    m_queue->shutdown();
}

QString TaskCenter::errorMessage(const QString &id) const
{
    return taskErrorText(m_queue->outcome(id));
}

QString TaskCenter::resultPath(const QString &id) const
{
    return m_queue->outcome(id).result;
}
