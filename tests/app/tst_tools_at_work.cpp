// SPDX-License-Identifier: AGPL-3.0-or-later
#include "app/frameless_window.h"
#include "app/language_manager.h"
#include "app/main_page.h"
#include "pdf/core/pdf_document_model.h"
#include "pdf/viewer/pdf_show_page.h"
#include "res/resources.h"
#include "taskcenter/task_center.h"
#include "tests/app/app_test.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"
#include "tools/file_tool_page.h"
#include "tools/tasks/task_list_item.h"
#include "tools/tasks/task_list_widget.h"

#include <QAction>
#include <QMenu>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <algorithm>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// How long a task may take to end, in milliseconds.
constexpr int kPatience = 20'000;

const QString kConfirm = u"messageBoxConfirmButton"_s;
const QString kCancel = u"messageBoxCancelButton"_s;

} // namespace

/// The program while tools work, and the way of a file from its viewer to a tool.
class TestToolsAtWork final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void idleProgramClosesWithoutAQuestion();
    void programWithTasksAsksOnce_data();
    void programWithTasksAsksOnce();
    void finishedTasksAreNotAskedAbout();
    void keptDocumentComesBeforeTheTasks();
    void closedTabLetsItsTasksGoOn();
    void tabKeepsItsTasks();
    void toolsMenuHandsTheFileOver_data();
    void toolsMenuHandsTheFileOver();

private:
    [[nodiscard]] QTabWidget *tabs() const
    {
        return m_window->findChild<QTabWidget *>(u"mainTabWidget"_s);
    }
    [[nodiscard]] MainPage *page() const { return m_window->findChild<MainPage *>(); }
    /// Submits a task that takes many seconds; it ends with the test.
    void startLongTask();
    [[nodiscard]] static int unfinished() { return TaskCenter::instance().unfinishedTasks(); }

    std::unique_ptr<AppTestFolders> m_folders;
    std::unique_ptr<FramelessWindow> m_window;
    QString m_pdf;
    QString m_large;
    QStringList m_long; ///< The tasks that are to be cancelled.
};

void TestToolsAtWork::initTestCase()
{
    initResources();
    m_folders = std::make_unique<AppTestFolders>(u"tst_tools_at_work"_s);
    m_pdf = m_folders->filePath(u"report.pdf"_s);
    m_large = m_folders->filePath(u"large.pdf"_s);
    QVERIFY(PdfFixture::write(m_pdf, PdfFixture::pagesByNumber(1)));
    QVERIFY(PdfFixture::write(m_large, PdfFixture::pagesByNumber(300)));
}

void TestToolsAtWork::init()
{
    LanguageManager::instance()->setLanguage(u"zh_CN"_s);
    m_window = std::make_unique<FramelessWindow>();
    m_window->setContentWidget(new MainPage(m_window.get()));
    m_window->resize(1160, 780);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestToolsAtWork::cleanup()
{
    m_window.reset();
    for (const QString &id : std::exchange(m_long, {})) {
        TaskCenter::instance().cancel(id);
    }
    QTRY_COMPARE_WITH_TIMEOUT(unfinished(), 0, kPatience);
}

void TestToolsAtWork::cleanupTestCase()
{
    TaskCenter::instance().shutdown();
}

void TestToolsAtWork::startLongTask()
{
    TaskRequest request;
    request.type = static_cast<qint32>(TaskType::Merge);
    request.inputFiles = QStringList(300, m_large);
    request.outputPath = m_folders->filePath(u"merged.pdf"_s);
    m_long.append(TaskCenter::instance().submitTask(request));
    QCOMPARE(unfinished(), 1);
}

void TestToolsAtWork::idleProgramClosesWithoutAQuestion()
{
    page()->openTool(1);
    const DialogAnswers answers;
    QVERIFY(m_window->close());
    QCOMPARE(answers.kinds(), QList<int>());
}

void TestToolsAtWork::programWithTasksAsksOnce_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("closes");
    QTest::newRow("cancelled") << kCancel << false;
    QTest::newRow("confirmed") << kConfirm << true;
}

void TestToolsAtWork::programWithTasksAsksOnce()
{
    QFETCH(QString, button);
    QFETCH(bool, closes);
    startLongTask();
    const DialogAnswers answers({button});
    QCOMPARE(m_window->close(), closes);
    QVERIFY(answers.allGiven());
    QCOMPARE(answers.kinds().size(), 1);
    QCOMPARE(answers.seen(),
             (QStringList{u"任务仍在进行"_s, u"关闭程序将停止尚未完成的任务。"_s, QString()}));
    QCOMPARE(m_window->isVisible(), !closes);
    // Asking stops nothing; the program does so at its end.
    QCOMPARE(unfinished(), 1);
}

void TestToolsAtWork::finishedTasksAreNotAskedAbout()
{
    startLongTask();
    const QString id = m_long.constFirst();
    TaskCenter::instance().cancel(id);
    QTRY_COMPARE_WITH_TIMEOUT(unfinished(), 0, kPatience);
    const DialogAnswers answers;
    QVERIFY(page()->maybeClose());
    QCOMPARE(answers.kinds(), QList<int>());
}

void TestToolsAtWork::keptDocumentComesBeforeTheTasks()
{
    startLongTask();
    page()->openFile(m_pdf);
    auto *model = m_window->findChild<PdfDocumentModel *>();
    QVERIFY(model != nullptr);
    model->setModified(true);
    const DialogAnswers answers({kCancel});
    QVERIFY(!page()->maybeClose());
    QCOMPARE(answers.kinds().size(), 1);
    QVERIFY(!answers.seen().contains(u"任务仍在进行"_s));
    model->setModified(false);
}

void TestToolsAtWork::closedTabLetsItsTasksGoOn()
{
    startLongTask();
    page()->openToolWithFile(1, m_pdf);
    const DialogAnswers answers;
    QTest::mouseClick(tabs()->tabBar()->tabButton(1, QTabBar::RightSide), Qt::LeftButton);
    QCOMPARE(tabs()->count(), 1);
    QCOMPARE(answers.kinds(), QList<int>());
    QCOMPARE(unfinished(), 1);
}

void TestToolsAtWork::tabKeepsItsTasks()
{
    page()->openToolWithFile(1, m_pdf);
    auto *tool = qobject_cast<FileToolPage *>(tabs()->currentWidget());
    QVERIFY(tool != nullptr);
    tool->onStart();
    const auto *tasks = tool->findChild<TaskListWidget *>();
    const QList<TaskListItem *> rows = tasks->rows();
    QCOMPARE(rows.size(), 1);
    page()->openTool(8);
    tabs()->setCurrentIndex(0);
    page()->openTool(1);
    QCOMPARE(tabs()->currentWidget(), tool);
    QCOMPARE(tasks->rows(), rows);
    QVERIFY(tasks->isVisible());
}

void TestToolsAtWork::toolsMenuHandsTheFileOver_data()
{
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("taken");
    QTest::newRow("compress") << u"压缩"_s << 1 << true;
    QTest::newRow("PDF to Office") << u"PDF 转为 Office"_s << 2 << false;
    QTest::newRow("PDF to images") << u"PDF 转为图像"_s << 5 << true;
    QTest::newRow("decrypt") << u"解锁 PDF"_s << 6 << true;
    QTest::newRow("encrypt") << u"加密 PDF"_s << 7 << true;
}

void TestToolsAtWork::toolsMenuHandsTheFileOver()
{
    QFETCH(QString, entry);
    QFETCH(int, type);
    QFETCH(bool, taken);
    page()->openFile(m_pdf);
    const auto *menu = tabs()->currentWidget()->findChild<QMenu *>(u"pdfToolsMenu"_s);
    QVERIFY(menu != nullptr);
    const QList<QAction *> actions = menu->actions();
    const auto found = std::find_if(actions.begin(), actions.end(),
                                    [&entry](QAction *action) { return action->text() == entry; });
    QVERIFY(found != actions.end());
    (*found)->trigger();
    QCOMPARE(page()->indexOfTool(type), 2);
    QCOMPARE(tabs()->currentIndex(), 2);
    const auto *tool = qobject_cast<FileToolPage *>(tabs()->currentWidget());
    QCOMPARE(tool != nullptr, taken);
    if (tool != nullptr) {
        QCOMPARE(tool->inputFiles(), QStringList{QFileInfo(m_pdf).canonicalFilePath()});
    }
}

QTEST_MAIN(TestToolsAtWork)
#include "tst_tools_at_work.moc"
