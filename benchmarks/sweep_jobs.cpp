// SPDX-License-Identifier: AGPL-3.0-or-later
// Runs every task of the batch tools over the PDF files of a folder and tells how they ended.
//
//     sweep_jobs FOLDER [TYPE...]      types as in TaskRequest::type; all of them without
//
// Prints the number of tasks by type and outcome, the tasks that took longest, and every result
// that the engine does not open or that has another number of pages than its source.

#include "pdfcore/pdf_editor_backend.h"
#include "pdfcore/render_threads.h"
#include "taskcenter/task_center.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <map>

namespace {

constexpr int kSlowest = 10;
const QString kPassword = QStringLiteral("secret");

qsizetype pagesOf(const QString &path, const QString &password = {})
{
    PdfDocumentInfo info;
    return PdfEditorBackend::inspectDocument(path, password, &info, nullptr, nullptr)
               ? info.pageSizes.size()
               : -1;
}

TaskRequest requestFor(TaskType type, const QString &source, const QString &folder)
{
    TaskRequest request;
    request.type = static_cast<qint32>(type);
    request.inputFile = source;
    request.inputFiles = {source};
    request.outputPath = folder;
    request.options = {{QStringLiteral("password"), kPassword},
                       {QStringLiteral("saveOption"), 1},
                       {QStringLiteral("compressLevel"), 0},
                       {QStringLiteral("format"), 2},
                       {QStringLiteral("saveAsSeparateFiles"), true}};
    if (type == TaskType::Merge) {
        request.inputFiles.append(source);
    }
    if (type == TaskType::Merge || type == TaskType::Compress || type == TaskType::ImagesToPdf) {
        request.outputPath += QStringLiteral("/result.pdf");
    }
    return request;
}

/// Runs the task and waits for its end.
class Sweep final : public QObject
{
public:
    Sweep()
        : m_center(pdfcore::renderThreadLimit())
    {
        connect(&m_center, &TaskCenter::taskStatus, this,
                [this](const QString &id, int status) { onStatus(id, status); });
    }

    void run(const QStringList &files, TaskType type)
    {
        m_type = type;
        m_waiting = files;
        for (int i = 0; i < 2 * pdfcore::renderThreadLimit(); ++i) {
            submitNext();
        }
        if (!m_running.empty()) {
            QCoreApplication::exec();
        }
    }

    void print() const
    {
        QTextStream out(stdout);
        for (const auto &[outcome, count] : m_counts) {
            out << outcome << ": " << count << '\n';
        }
        auto slowest = m_times;
        std::sort(slowest.rbegin(), slowest.rend());
        for (qsizetype i = 0; i < std::min<qsizetype>(kSlowest, slowest.size()); ++i) {
            out << slowest.at(i).first << " ms: " << slowest.at(i).second << '\n';
        }
    }

private:
    struct Running
    {
        QString source;
        std::unique_ptr<QTemporaryDir> folder;
        QElapsedTimer timer;
    };

    void submitNext()
    {
        if (m_waiting.isEmpty()) {
            return;
        }
        Running running{m_waiting.takeFirst(), std::make_unique<QTemporaryDir>(), {}};
        running.timer.start();
        const QString id =
            m_center.submitTask(requestFor(m_type, running.source, running.folder->path()));
        m_running.emplace(id, std::move(running));
    }

    void onStatus(const QString &id, int status)
    {
        const auto found = m_running.find(id);
        if (found == m_running.end()) {
            return;
        }
        if (status == static_cast<int>(TaskStatus::Running)) {
            found->second.timer.start();
        }
        if (status < static_cast<int>(TaskStatus::Completed)) {
            return;
        }
        const Running running = std::move(found->second);
        m_running.erase(found);
        const QString type = QStringLiteral("type %1, ").arg(static_cast<int>(m_type));
        m_times.append({running.timer.elapsed(), type + QFileInfo(running.source).fileName()});
        const QString reason = m_center.errorMessage(id).section(u'\n', 0, 0);
        ++m_counts[type + QStringLiteral("status %1 ").arg(status) + reason];
        if (status == static_cast<int>(TaskStatus::Completed)) {
            check(running.source, m_center.resultPath(id));
        }
        const QStringList left =
            QDir(running.folder->path())
                .entryList({QStringLiteral(".quillora*")}, QDir::Files | QDir::Hidden);
        if (!left.isEmpty()) {
            QTextStream(stdout) << running.source << ": left " << left.join(u' ') << Qt::endl;
        }
        submitNext();
        if (m_running.empty()) {
            QCoreApplication::quit();
        }
    }

    void check(const QString &source, const QString &result) const
    {
        if (m_type == TaskType::PdfToImages) {
            return;
        }
        const qsizetype before = pagesOf(source);
        const qsizetype wanted = m_type == TaskType::Merge ? 2 * before : before;
        const qsizetype after =
            pagesOf(result, m_type == TaskType::Encrypt ? kPassword : QString());
        if (after != wanted && before >= 0) {
            QTextStream(stdout) << source << ": " << after << " pages instead of " << wanted
                                << Qt::endl;
        }
        if (m_type == TaskType::Compress && QFileInfo(result).size() > QFileInfo(source).size()) {
            QTextStream(stdout) << source << ": larger than before" << Qt::endl;
        }
    }

    TaskCenter m_center;
    TaskType m_type = TaskType::Merge;
    QStringList m_waiting;
    std::map<QString, Running> m_running;
    std::map<QString, int> m_counts;
    QList<std::pair<qint64, QString>> m_times;
};

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QStringList files;
    QDirIterator entries(arguments.value(1), {QStringLiteral("*.pdf")}, QDir::Files,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        files.append(entries.next());
    }
    files.sort();
    QList<TaskType> types{TaskType::Merge,       TaskType::Encrypt,     TaskType::Decrypt,
                          TaskType::PdfToImages, TaskType::ImagesToPdf, TaskType::Compress};
    if (arguments.size() > 2) {
        types.clear();
        for (const QString &type : arguments.mid(2)) {
            types.append(static_cast<TaskType>(type.toInt()));
        }
    }
    Sweep sweep;
    for (const TaskType type : types) {
        sweep.run(files, type);
    }
    sweep.print();
    return 0;
}
