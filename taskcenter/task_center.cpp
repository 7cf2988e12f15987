// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/task_center.h"

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/render_threads.h"
#include "taskcenter/task_error_text.h"
#include "taskcenter/task_job.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHash>
#include <QLoggingCategory>
#include <QThread>
#include <QUuid>

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

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
    struct Report
    {
        QString id;
        TaskStatus status;
    };

    Queue(TaskCenter &center, int threads)
        : m_center(center)
        , m_mostThreads(static_cast<std::size_t>(std::max(threads, 1)))
    {}

    void add(Task task);
    void cancel(const QString &id);
    void shutdown();
    /// The changes since the last call, in order.
    std::vector<Report> takeReports();
    [[nodiscard]] PdfOperationOutcome outcome(const QString &id) const;
    [[nodiscard]] std::size_t unfinished() const;

private:
    void addThread();
    void work();
    std::optional<Task> takeNext();
    void finish(const QString &id, const PdfOperationOutcome &outcome);
    void report(const QString &id, TaskStatus status);

    TaskCenter &m_center;
    const std::size_t m_mostThreads;
    mutable std::mutex m_mutex;        ///< Guards what follows, and the order of reports.
    std::condition_variable m_changed; ///< There is a task, or there are no more.
    bool m_isClosed = false;
    std::size_t m_idleThreads = 0;
    std::vector<std::thread> m_threads;
    std::vector<Report> m_reports;
    std::deque<Task> m_waiting;
    QHash<QString, PdfCancelFlag> m_running;
    QHash<QString, PdfOperationOutcome> m_outcomes; ///< Of tasks that completed or failed.
};

void TaskCenter::Queue::add(Task task)
{
    const std::lock_guard lock(m_mutex);
    report(task.id, TaskStatus::Queued);
    if (m_isClosed) {
        discardTaskJob(task.request);
        report(task.id, TaskStatus::Cancelled);
        return;
    }
    m_waiting.push_back(std::move(task));
    if (m_idleThreads < m_waiting.size() && m_threads.size() < m_mostThreads) {
        addThread();
    }
    if (m_threads.empty()) {
        const QString id = m_waiting.back().id;
        m_waiting.pop_back();
        m_outcomes.insert(id, {PdfOperationError::WriteFailed,
                               QStringLiteral("There is no thread to do it on."),
                               {},
                               {}});
        report(id, TaskStatus::Failed);
    }
    m_changed.notify_one();
}

void TaskCenter::Queue::cancel(const QString &id)
{
    const std::lock_guard lock(m_mutex);
    const auto waiting = std::find_if(m_waiting.begin(), m_waiting.end(),
                                      [&](const Task &task) { return task.id == id; });
    if (waiting != m_waiting.end()) {
        discardTaskJob(waiting->request);
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
            discardTaskJob(task.request);
            report(task.id, TaskStatus::Cancelled);
        }
        m_waiting.clear();
        for (const PdfCancelFlag &running : std::as_const(m_running)) {
            running.set();
        }
    }
    m_changed.notify_all();
    // None is added any more.
    for (std::thread &thread : m_threads) {
        if (thread.joinable()) {
            thread.join();
        }
    }
}

PdfOperationOutcome TaskCenter::Queue::outcome(const QString &id) const
{
    const std::lock_guard lock(m_mutex);
    return m_outcomes.value(id);
}

std::size_t TaskCenter::Queue::unfinished() const
{
    const std::lock_guard lock(m_mutex);
    return m_waiting.size() + static_cast<std::size_t>(m_running.size());
}

/// Adds a thread, unless the system has none left.
void TaskCenter::Queue::addThread()
{
    try {
        m_threads.emplace_back([this] { work(); });
    } catch (const std::system_error &) {
        // Those that there are do the work.
    }
}

/// What each thread does until the service ends.
void TaskCenter::Queue::work()
{
    // The interface and pages that somebody waits for come first.
    QThread::currentThread()->setPriority(QThread::LowPriority);
    while (const std::optional<Task> task = takeNext()) {
        finish(task->id, runTaskJob(task->request, task->cancel));
    }
}

/// Waits for the next task; nothing once there are no more.
std::optional<Task> TaskCenter::Queue::takeNext()
{
    std::unique_lock lock(m_mutex);
    ++m_idleThreads;
    m_changed.wait(lock, [this] { return m_isClosed || !m_waiting.empty(); });
    --m_idleThreads;
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

/// Notes a change of a status, for which an event comes.
void TaskCenter::Queue::report(const QString &id, TaskStatus status)
{
    m_reports.push_back({id, status});
    QCoreApplication::postEvent(&m_center, new QEvent(QEvent::User));
}

std::vector<TaskCenter::Queue::Report> TaskCenter::Queue::takeReports()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_reports, {});
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

void TaskCenter::customEvent(QEvent * /*event*/)
{
    for (const Queue::Report &report : m_queue->takeReports()) {
        emit taskStatus(report.id, static_cast<int>(report.status));
    }
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

int TaskCenter::unfinishedTasks() const
{
    return static_cast<int>(m_queue->unfinished());
}

QString TaskCenter::errorMessage(const QString &id) const
{
    return taskErrorText(m_queue->outcome(id));
}

QString TaskCenter::resultPath(const QString &id) const
{
    return m_queue->outcome(id).result;
}
