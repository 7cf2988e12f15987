// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/task_center.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRandomGenerator>
#include <QSet>
#include <QSignalSpy>
#include <QThread>

#include <map>
#include <memory>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// How long tasks may take in all.
constexpr int kPatience = 30'000;

/// Pages of a file that a task works on for a while.
constexpr int kMany = 1500;

/// Lets this program leave with so many tasks.
const QString kLeave = u"--leave-with-tasks"_s;
constexpr int kTasksLeft = 20;

/// Collects what a service reports.
class Reports
{
public:
    explicit Reports(TaskCenter &center)
        : m_connection(QObject::connect(&center, &TaskCenter::taskStatus, &center,
                                        [this](const QString &id, int status) {
                                            m_all.append({id, status});
                                            m_ofTask[id].append(status);
                                            m_threads.insert(QThread::currentThread());
                                        }))
    {}
    ~Reports() { QObject::disconnect(m_connection); }
    Reports(const Reports &) = delete;
    Reports &operator=(const Reports &) = delete;

    [[nodiscard]] QList<int> of(const QString &id) const
    {
        const auto found = m_ofTask.find(id);
        return found == m_ofTask.end() ? QList<int>() : found->second;
    }
    [[nodiscard]] bool isOver(const QString &id) const
    {
        return !of(id).isEmpty() && of(id).constLast() >= int(TaskStatus::Completed);
    }
    [[nodiscard]] bool areOver(const QStringList &ids) const
    {
        return std::all_of(ids.begin(), ids.end(),
                           [this](const QString &id) { return isOver(id); });
    }
    /// The tasks in the order in which they got the status.
    [[nodiscard]] QStringList order(TaskStatus status) const
    {
        QStringList ids;
        for (const auto &[id, reported] : m_all) {
            if (reported == int(status)) {
                ids.append(id);
            }
        }
        return ids;
    }
    [[nodiscard]] qsizetype count() const { return m_all.size(); }
    [[nodiscard]] const QSet<QThread *> &threads() const { return m_threads; }

private:
    QList<std::pair<QString, int>> m_all;
    std::map<QString, QList<int>> m_ofTask;
    QSet<QThread *> m_threads;
    QMetaObject::Connection m_connection;
};

const QList<int> kCompleted{0, 1, 3};
const QList<int> kFailed{0, 1, 4};

} // namespace

class TestTaskCenter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void instanceIsOne();
    void codes();
    void requestIsEmptyAtFirst();
    void identifiersDiffer();
    void statusesComeInOrder();
    void nothingIsReportedBeforeTheIdentifier();
    void reportsComeOnTheThreadOfTheService();
    void tasksBeginInTheOrderOfSubmission();
    void noMoreTasksRunThanMay();
    void failingTaskDisturbsNoOther();
    void reasonOfAFailureIsKept();
    void reasonNamesNoPassword();
    void completedTaskHasAResult();
    void tasksForOneNameGetTwoNames();
    void tasksOnOneSourceDisturbEachOtherNot();
    void tasksThatReplaceOneSourceUndoNothing();
    void tasksThatDoNotRunLeaveNoFolders();
    void waitingTaskIsCancelledAtOnce();
    void runningTaskIsCancelled();
    void finishedTaskIsNotCancelled();
    void cancelOfAnotherServiceMeansNothing();
    void shutdownEndsAllTasks();
    void shutdownTakesMoments();
    void tasksAfterTheShutdownAreCancelled();
    void serviceEndsWithItsTasks();
    void submittingDoesNotWait();
    void programEndsWithItsTasks();

private:
    TaskRequest merge(const QString &source, const QString &name);
    /// The work of a minute and more: for tests of tasks that are to be met at work.
    TaskRequest longMerge(const QString &source, const QString &name)
    {
        TaskRequest request = merge(source, name);
        request.inputFiles = QStringList(100, source);
        return request;
    }
    QString addMany(const QString &name)
    {
        return m_folder->add(name, PdfFixture::pagesByNumber(kMany));
    }
    [[nodiscard]] QStringList results() const
    {
        return QDir(m_folder->path(u"output"_s))
            .entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
    }

    std::unique_ptr<Folder> m_folder;
    QString m_small;
};

void TestTaskCenter::init()
{
    m_folder = std::make_unique<Folder>();
    QVERIFY(QDir(m_folder->path()).mkdir(u"output"_s));
    m_small = m_folder->add(u"small.pdf"_s, PdfFixture::pagesByNumber(2));
}

TaskRequest TestTaskCenter::merge(const QString &source, const QString &name)
{
    TaskRequest request;
    request.type = int(TaskType::Merge);
    request.inputFiles = {source, source};
    request.outputPath = QDir::toNativeSeparators(m_folder->path(u"output/"_s + name));
    return request;
}

void TestTaskCenter::instanceIsOne()
{
    QCOMPARE(&TaskCenter::instance(), &TaskCenter::instance());
    QCOMPARE(TaskCenter::instance().thread(), thread());
    Reports reports(TaskCenter::instance());
    const QString id = TaskCenter::instance().submitTask(merge(m_small, u"a.pdf"_s));
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(id), kCompleted, kPatience);
}

void TestTaskCenter::codes()
{
    QCOMPARE(int(TaskType::Merge), 0);
    QCOMPARE(int(TaskType::Encrypt), 2);
    QCOMPARE(int(TaskType::Decrypt), 3);
    QCOMPARE(int(TaskType::PdfToImages), 4);
    QCOMPARE(int(TaskType::ImagesToPdf), 5);
    QCOMPARE(int(TaskType::Compress), 6);
    QCOMPARE(int(TaskStatus::Queued), 0);
    QCOMPARE(int(TaskStatus::Running), 1);
    QCOMPARE(int(TaskStatus::Paused), 2);
    QCOMPARE(int(TaskStatus::Completed), 3);
    QCOMPARE(int(TaskStatus::Failed), 4);
    QCOMPARE(int(TaskStatus::Cancelled), 5);
}

void TestTaskCenter::requestIsEmptyAtFirst()
{
    const TaskRequest request;
    QVERIFY(request.id.isEmpty() && request.outputPath.isEmpty() && request.inputFile.isEmpty());
    QVERIFY(request.inputFiles.isEmpty() && request.options.isEmpty());
    QVERIFY(!request.useSourceFolder);
    // The members stand in this order.
    const TaskRequest whole{u"id"_s, 6, {u"in"_s}, u"out"_s, u"one"_s, true, {{u"key"_s, 1}}};
    QCOMPARE(whole.type, 6);
    QCOMPARE(whole.inputFiles, QStringList{u"in"_s});
    QCOMPARE(whole.outputPath, u"out"_s);
    QCOMPARE(whole.inputFile, u"one"_s);
    QVERIFY(whole.useSourceFolder);
}

void TestTaskCenter::identifiersDiffer()
{
    TaskCenter center(2);
    QSet<QString> ids;
    TaskRequest request;
    request.type = -1;
    request.id = u"mine"_s;
    for (int i = 0; i < 200; ++i) {
        ids.insert(center.submitTask(request));
    }
    QCOMPARE(ids.size(), 200);
    QVERIFY(!ids.contains(QString()));
    QVERIFY(!ids.contains(u"mine"_s));
}

void TestTaskCenter::statusesComeInOrder()
{
    TaskCenter center(2);
    Reports reports(center);
    const QString good = center.submitTask(merge(m_small, u"a.pdf"_s));
    const QString bad = center.submitTask(merge(m_folder->path(u"missing"_s), u"b.pdf"_s));
    QTRY_VERIFY_WITH_TIMEOUT(reports.areOver({good, bad}), kPatience);
    QTest::qWait(20);
    QCOMPARE(reports.of(good), kCompleted);
    QCOMPARE(reports.of(bad), kFailed);
    QCOMPARE(reports.count(), 6);
}

void TestTaskCenter::nothingIsReportedBeforeTheIdentifier()
{
    TaskCenter center(2);
    Reports reports(center);
    TaskRequest request;
    request.type = -1;
    const QString id = center.submitTask(request);
    // It fails at once.
    QThread::msleep(50);
    QCOMPARE(reports.count(), 0);
    QTRY_COMPARE(reports.of(id), kFailed);
}

void TestTaskCenter::reportsComeOnTheThreadOfTheService()
{
    TaskCenter center(2);
    Reports reports(center);
    QString id;
    QThread *other = QThread::create([&] { id = center.submitTask(merge(m_small, u"a.pdf"_s)); });
    other->start();
    QVERIFY(other->wait());
    delete other;
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(id), kCompleted, kPatience);
    QCOMPARE(reports.threads(), QSet<QThread *>{QThread::currentThread()});
}

void TestTaskCenter::tasksBeginInTheOrderOfSubmission()
{
    for (const int threads : {1, 3}) {
        TaskCenter center(threads);
        Reports reports(center);
        QStringList ids;
        for (int i = 0; i < 30; ++i) {
            ids.append(center.submitTask(merge(m_small, u"%1.pdf"_s.arg(i))));
        }
        QTRY_VERIFY_WITH_TIMEOUT(reports.areOver(ids), kPatience);
        QCOMPARE(reports.order(TaskStatus::Queued), ids);
        QCOMPARE(reports.order(TaskStatus::Running), ids);
    }
}

void TestTaskCenter::noMoreTasksRunThanMay()
{
    TaskCenter center(2);
    int running = 0;
    int most = 0;
    int over = 0;
    connect(&center, &TaskCenter::taskStatus, this, [&](const QString & /*id*/, int status) {
        running += status == int(TaskStatus::Running) ? 1 : 0;
        most = std::max(most, running);
        const bool isOver = status >= int(TaskStatus::Completed);
        running -= isOver ? 1 : 0;
        over += isOver ? 1 : 0;
    });
    const QString source = addMany(u"many.pdf"_s);
    for (int i = 0; i < 6; ++i) {
        center.submitTask(merge(source, u"%1.pdf"_s.arg(i)));
    }
    QTRY_COMPARE_WITH_TIMEOUT(over, 6, kPatience);
    QCOMPARE(most, 2);
}

void TestTaskCenter::failingTaskDisturbsNoOther()
{
    TaskCenter center(2);
    Reports reports(center);
    const QString damaged = m_folder->add(u"damaged.pdf"_s, "%PDF-1.7 and nothing more");
    QStringList good;
    QStringList bad;
    for (int i = 0; i < 5; ++i) {
        bad.append(center.submitTask(merge(damaged, u"bad%1.pdf"_s.arg(i))));
        good.append(center.submitTask(merge(m_small, u"good%1.pdf"_s.arg(i))));
    }
    QTRY_VERIFY_WITH_TIMEOUT(reports.areOver(good + bad), kPatience);
    for (int i = 0; i < 5; ++i) {
        QCOMPARE(reports.of(bad.at(i)), kFailed);
        QCOMPARE(reports.of(good.at(i)), kCompleted);
        QCOMPARE(numbersIn(m_folder->path(u"output/good%1.pdf"_s.arg(i))),
                 (QList<int>{0, 1, 0, 1}));
    }
    QCOMPARE(results().size(), 5);
}

void TestTaskCenter::reasonOfAFailureIsKept()
{
    TaskCenter center(2);
    Reports reports(center);
    const QString bad = center.submitTask(merge(m_folder->path(u"gone.pdf"_s), u"a.pdf"_s));
    const QString good = center.submitTask(merge(m_small, u"b.pdf"_s));
    QTRY_VERIFY_WITH_TIMEOUT(reports.areOver({bad, good}), kPatience);
    const QStringList lines = center.errorMessage(bad).split(u'\n');
    QCOMPARE(lines.value(0), u"找不到文件或无法打开文件。"_s);
    QCOMPARE(lines.value(1), u"gone.pdf"_s);
    QVERIFY(!lines.value(2).isEmpty());
    QVERIFY(center.errorMessage(good).isEmpty());
    QVERIFY(center.errorMessage(u"unknown"_s).isEmpty());
}

void TestTaskCenter::reasonNamesNoPassword()
{
    TaskCenter center(2);
    Reports reports(center);
    TaskRequest request;
    request.type = int(TaskType::Decrypt);
    request.inputFile = m_folder->add(
        u"locked.pdf"_s, PdfFixture::encrypted(PdfFixture::pagesByNumber(1), {"user", "o", 6}));
    request.outputPath = m_folder->path(u"output"_s);
    request.options = {{u"password"_s, u"pa55word"_s}, {u"saveOption"_s, 1}};
    const QString id = center.submitTask(request);
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(id), kFailed, kPatience);
    QVERIFY(center.errorMessage(id).startsWith(u"密码不正确。"_s));
    QVERIFY(!center.errorMessage(id).contains(u"pa55word"_s));
}

void TestTaskCenter::completedTaskHasAResult()
{
    TaskCenter center(2);
    Reports reports(center);
    const QString id = center.submitTask(merge(m_small, u"a.pdf"_s));
    QVERIFY(center.resultPath(id).isEmpty() || reports.isOver(id));
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(id), kCompleted, kPatience);
    QCOMPARE(center.resultPath(id), m_folder->path(u"output/a.pdf"_s));
}

void TestTaskCenter::tasksForOneNameGetTwoNames()
{
    TaskCenter center(4);
    Reports reports(center);
    QStringList ids;
    for (int i = 0; i < 8; ++i) {
        ids.append(center.submitTask(merge(m_small, u"pdf_merge.pdf"_s)));
    }
    QTRY_VERIFY_WITH_TIMEOUT(reports.areOver(ids), kPatience);
    QStringList expected{u"pdf_merge.pdf"_s};
    for (int i = 1; i < 8; ++i) {
        expected.append(u"pdf_merge(%1).pdf"_s.arg(i));
    }
    QStringList found = results();
    expected.sort();
    found.sort();
    QCOMPARE(found, expected);
    QSet<QString> named;
    for (const QString &id : std::as_const(ids)) {
        named.insert(center.resultPath(id));
    }
    QCOMPARE(named.size(), 8);
}

void TestTaskCenter::tasksOnOneSourceDisturbEachOtherNot()
{
    TaskCenter center(4);
    Reports reports(center);
    const QString source = m_folder->add(u"in.pdf"_s, PdfFixture::pagesByNumber(40));
    QStringList ids;
    for (int i = 0; i < 6; ++i) {
        TaskRequest request;
        request.type = int(TaskType::Encrypt);
        request.inputFile = source;
        request.outputPath = m_folder->path(u"output"_s);
        request.options = {{u"password"_s, u"secret"_s}, {u"saveOption"_s, 1}};
        ids.append(center.submitTask(request));
    }
    QTRY_VERIFY_WITH_TIMEOUT(reports.areOver(ids), kPatience);
    for (const QString &id : std::as_const(ids)) {
        QCOMPARE(reports.of(id), kCompleted);
        QCOMPARE(inspect(center.resultPath(id), u"secret"_s).pageSizes.size(), 40);
    }
    QCOMPARE(results().size(), 6);
}

void TestTaskCenter::tasksThatReplaceOneSourceUndoNothing()
{
    // Photographs take longer to make smaller than to encrypt.
    QImage photograph(3000, 2000, QImage::Format_RGB32);
    QRandomGenerator random(1);
    for (int y = 0; y < photograph.height(); ++y) {
        auto *line = reinterpret_cast<quint32 *>(photograph.scanLine(y));
        random.generate(line, line + photograph.width());
    }
    const QString picture = m_folder->path(u"photograph.jpg"_s);
    QVERIFY(photograph.save(picture, "JPEG", 80));
    const QString source = m_folder->path(u"photographs.pdf"_s);

    TaskCenter center(2);
    Reports reports(center);
    TaskRequest request;
    request.type = int(TaskType::ImagesToPdf);
    request.inputFiles = {picture};
    request.outputPath = source;
    const QString making = center.submitTask(request);
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(making), kCompleted, kPatience);

    request = {};
    request.inputFile = source;
    request.options = {{u"password"_s, u"secret"_s}, {u"saveOption"_s, 0}, {u"compressLevel"_s, 1}};
    request.type = int(TaskType::Compress);
    const QString compressing = center.submitTask(request);
    request.type = int(TaskType::Encrypt);
    const QString encrypting = center.submitTask(request);
    QTRY_VERIFY_WITH_TIMEOUT(reports.areOver({encrypting, compressing}), kPatience);
    const bool isEncrypted = reports.of(encrypting) == kCompleted;
    QVERIFY(isEncrypted || reports.of(compressing) == kCompleted);
    QCOMPARE(inspect(source).error == PdfBackendError::PasswordRequired, isEncrypted);
}

void TestTaskCenter::tasksThatDoNotRunLeaveNoFolders()
{
    TaskCenter center(1);
    Reports reports(center);
    const QString source = addMany(u"many.pdf"_s);
    const QString first = center.submitTask(longMerge(source, u"a.pdf"_s));
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(first), (QList<int>{0, 1}), kPatience);
    const auto submit = [&](const QString &name) {
        TaskRequest request;
        request.type = int(TaskType::PdfToImages);
        request.inputFiles = {m_small};
        request.outputPath = m_folder->path(u"output/"_s + name);
        QDir().mkdir(request.outputPath);
        return center.submitTask(request);
    };
    const QString cancelled = submit(u"cancelled"_s);
    submit(u"dropped"_s);
    submit(u"in use"_s);
    m_folder->add(u"output/in use/file"_s, "some bytes");
    center.cancel(cancelled);
    QVERIFY(!QFileInfo::exists(m_folder->path(u"output/cancelled"_s)));
    center.shutdown();
    submit(u"late"_s);
    QCOMPARE(QDir(m_folder->path(u"output"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
             QStringList{u"in use"_s});
}

void TestTaskCenter::waitingTaskIsCancelledAtOnce()
{
    TaskCenter center(1);
    Reports reports(center);
    const QString source = addMany(u"many.pdf"_s);
    const QString first = center.submitTask(merge(source, u"first.pdf"_s));
    const QString waiting = center.submitTask(merge(m_small, u"waiting.pdf"_s));
    const QString last = center.submitTask(merge(m_small, u"last.pdf"_s));
    center.cancel(waiting);
    QTRY_COMPARE(reports.of(waiting), (QList<int>{0, 5}));
    QTRY_VERIFY_WITH_TIMEOUT(reports.areOver({first, last}), kPatience);
    QCOMPARE(reports.of(waiting), (QList<int>{0, 5}));
    QCOMPARE(reports.of(last), kCompleted);
    QCOMPARE(results(), (QStringList{u"first.pdf"_s, u"last.pdf"_s}));
    QVERIFY(center.errorMessage(waiting).isEmpty());
}

void TestTaskCenter::runningTaskIsCancelled()
{
    TaskCenter center(1);
    Reports reports(center);
    const QString source = addMany(u"many.pdf"_s);
    const QString id = center.submitTask(longMerge(source, u"a.pdf"_s));
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(id), (QList<int>{0, 1}), kPatience);
    center.cancel(id);
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(id), (QList<int>{0, 1, 5}), kPatience);
    QCOMPARE(results(), QStringList());
    QVERIFY(center.resultPath(id).isEmpty());
    QVERIFY(center.errorMessage(id).isEmpty());
}

void TestTaskCenter::finishedTaskIsNotCancelled()
{
    TaskCenter center(1);
    Reports reports(center);
    const QString id = center.submitTask(merge(m_small, u"a.pdf"_s));
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(id), kCompleted, kPatience);
    center.cancel(id);
    QTest::qWait(20);
    QCOMPARE(reports.of(id), kCompleted);
    QCOMPARE(results(), QStringList{u"a.pdf"_s});
}

void TestTaskCenter::cancelOfAnotherServiceMeansNothing()
{
    TaskCenter center(1);
    Reports reports(center);
    const QString id = center.submitTask(merge(m_small, u"a.pdf"_s));
    center.cancel(u"unknown"_s);
    center.cancel({});
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(id), kCompleted, kPatience);
}

void TestTaskCenter::shutdownEndsAllTasks()
{
    TaskCenter center(2);
    Reports reports(center);
    const QString source = addMany(u"many.pdf"_s);
    const QByteArray before = contentOf(source);
    QStringList ids;
    for (int i = 0; i < 10; ++i) {
        ids.append(center.submitTask(longMerge(source, u"%1.pdf"_s.arg(i))));
    }
    QTRY_COMPARE_WITH_TIMEOUT(reports.order(TaskStatus::Running).size(), 2, kPatience);
    center.shutdown();
    QTRY_VERIFY(reports.areOver(ids));
    for (int i = 0; i < 10; ++i) {
        QCOMPARE(reports.of(ids.at(i)), i < 2 ? (QList<int>{0, 1, 5}) : (QList<int>{0, 5}));
    }
    QCOMPARE(results(), QStringList());
    QCOMPARE(contentOf(source), before);
}

/// An order of magnitude, for a machine that is busy and a program that is instrumented.
void TestTaskCenter::shutdownTakesMoments()
{
    TaskCenter center(2);
    Reports reports(center);
    const QString id = center.submitTask(longMerge(addMany(u"many.pdf"_s), u"a.pdf"_s));
    QTRY_COMPARE_WITH_TIMEOUT(reports.of(id), (QList<int>{0, 1}), kPatience);
    QElapsedTimer timer;
    timer.start();
    center.shutdown();
    QVERIFY2(timer.elapsed() < 20'000, qPrintable(QString::number(timer.elapsed())));
    QTRY_COMPARE(reports.of(id), (QList<int>{0, 1, 5}));
}

void TestTaskCenter::tasksAfterTheShutdownAreCancelled()
{
    TaskCenter center(2);
    Reports reports(center);
    center.shutdown();
    const QString id = center.submitTask(merge(m_small, u"a.pdf"_s));
    QVERIFY(!id.isEmpty());
    QTRY_COMPARE(reports.of(id), (QList<int>{0, 5}));
    QCOMPARE(results(), QStringList());
}

void TestTaskCenter::serviceEndsWithItsTasks()
{
    const QString source = addMany(u"many.pdf"_s);
    {
        TaskCenter center(2);
        for (int i = 0; i < 10; ++i) {
            center.submitTask(merge(source, u"%1.pdf"_s.arg(i)));
        }
    }
    for (const QString &name : results()) {
        QVERIFY2(name.endsWith(u".pdf"_s), qPrintable(name));
    }
    QVERIFY(results().size() < 10);
    QCoreApplication::processEvents();
}

void TestTaskCenter::submittingDoesNotWait()
{
    TaskCenter center(1);
    const QString source = addMany(u"many.pdf"_s);
    QElapsedTimer timer;
    timer.start();
    Reports reports(center);
    const QString first = center.submitTask(merge(source, u"0.pdf"_s));
    for (int i = 1; i < 50; ++i) {
        center.submitTask(merge(source, u"%1.pdf"_s.arg(i)));
    }
    // None can be done by now.
    QVERIFY(results().size() < 10);
    QVERIFY(!reports.isOver(first));
}

/// In a program of its own, which is this one, left while tasks run and wait.
void TestTaskCenter::programEndsWithItsTasks()
{
    const QString source = addMany(u"many.pdf"_s);
    const QByteArray before = contentOf(source);
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(),
                  {kLeave, source, m_folder->path(u"output"_s)});
    QVERIFY(program.waitForFinished(kPatience));
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    const QStringList names = results();
    QVERIFY2(names.size() < kTasksLeft, qPrintable(names.join(u' ')));
    for (const QString &name : names) {
        QVERIFY2(name.endsWith(u".pdf"_s), qPrintable(name));
        QCOMPARE(inspect(m_folder->path(u"output/"_s + name)).pageSizes.size(), 2 * kMany);
    }
    QCOMPARE(contentOf(source), before);
}

namespace {

/// Leaves the application as soon as a task runs.
int leaveWithTasks(QCoreApplication &application, const QString &source, const QString &folder)
{
    TaskCenter &center = TaskCenter::instance();
    QObject::connect(&center, &TaskCenter::taskStatus, &application,
                     [](const QString & /*id*/, int status) {
                         if (status == int(TaskStatus::Running)) {
                             QCoreApplication::quit();
                         }
                     });
    for (int i = 0; i < kTasksLeft; ++i) {
        TaskRequest request;
        request.type = int(TaskType::Merge);
        request.inputFiles = {source, source};
        request.outputPath = folder + u"/%1.pdf"_s.arg(i);
        center.submitTask(request);
    }
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == kLeave) {
        return leaveWithTasks(application, arguments.value(2), arguments.value(3));
    }
    TestTaskCenter test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_task_center.moc"
