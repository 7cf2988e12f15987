// SPDX-License-Identifier: AGPL-3.0-or-later
#include "res/resources.h"
#include "taskcenter/task_center.h"
#include "tests/support/dialog_answers.h"
#include "tests/tools/tool_page_test.h"
#include "tools/files/file_drop_zone_widget.h"
#include "tools/files/file_list_widget.h"
#include "tools/image_to_pdf_page.h"
#include "tools/office_to_pdf_page.h"
#include "tools/pdf_compress_page.h"
#include "tools/pdf_convert_page.h"
#include "tools/pdf_decry_page.h"
#include "tools/pdf_encry_page.h"
#include "tools/pdf_merge_page.h"
#include "tools/pdf_to_office_page.h"
#include "tools/tasks/task_list_item.h"
#include "tools/tasks/task_list_widget.h"
#include "widgets/card_radio_button.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QSignalSpy>
#include <QStackedWidget>

#include <memory>

using namespace ToolPageTest;
using namespace Qt::StringLiterals;

namespace {

using Maker = std::unique_ptr<FileToolPage> (*)();
using OfficeMaker = std::unique_ptr<ToolPage> (*)();

template <typename Page>
std::unique_ptr<FileToolPage> make()
{
    return std::make_unique<Page>();
}

template <typename Page>
std::unique_ptr<ToolPage> makeOffice()
{
    return std::make_unique<Page>();
}

const QString kPdfFilter = u"PDF 文件 (*.pdf)"_s;
const QString kPdfCaption = u"选择 PDF"_s;

const QString kSeparatorStyle = u"QLabel{background-color:#E5E6EB;}"_s;

QLabel *separatorOf(const ToolPage &page)
{
    return part<QLabel>(page, "toolSeparator");
}

/// Whether a page's only row is made of this content, a line and its options.
bool hasFrameOf(const ToolPage &page, const QWidget *content)
{
    const auto *row = qobject_cast<QHBoxLayout *>(page.layout());
    return row != nullptr && row->contentsMargins() == QMargins() && row->spacing() == 0 &&
           row->count() == 3 && row->itemAt(0)->widget() == content &&
           row->itemAt(1)->widget() == separatorOf(page) &&
           row->itemAt(2)->widget() == page.optionsPanel();
}

/// The status that a row shows.
QString statusOf(const TaskListItem &row)
{
    return part<QLabel>(row, "taskStatus")->text();
}

} // namespace

/// How the pages go from files to tasks and back.
class TestToolPages final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void frame_data();
    void frame();
    void officePages_data();
    void officePages();
    void fitsIntoTheSmallestWindow_data() { addPages(); }
    void fitsIntoTheSmallestWindow();

    void fromFilesToTasksAndBack_data() { addPages(); }
    void fromFilesToTasksAndBack();
    void startWithoutFilesDoesNothing_data() { addPages(); }
    void startWithoutFilesDoesNothing();
    void lastFileThatGoesBringsTheDropZone();
    void clearedListBringsTheDropZone();
    void dropTakesFilesAnywhere_data();
    void dropTakesFilesAnywhere();
    void dropOfNoFileIsNothing();
    void dropThatMovesIsRefused();
    void dropIsACopyWhateverKeysAreHeld();
    void tasksTakeNoDrops();
    void fileFromElsewhere_data();
    void fileFromElsewhere();
    void fileFromElsewhereBringsTheOptionsBack();

    void optionsKeepTheirValues();
    void statusesOfOtherPagesMeanNothing();
    void statusIsForwarded();
    void submittedTasksAreReported();
    void reorderedFilesAreSubmittedInTheirOrder();
    void slotsAreNamed();

    void differentPasswordsAreAskedAbout();
    void startItselfDoesNotAsk();
    void equalPasswordsAreNotAskedAbout_data();
    void equalPasswordsAreNotAskedAbout();
    void passwordsWithoutFilesAreNotAskedAbout();

private:
    static void addPages();
    void show(std::unique_ptr<FileToolPage> page);
    void makePage()
    {
        QFETCH(Maker, maker);
        show(maker());
    }
    [[nodiscard]] FileDropZoneWidget *dropZone() const
    {
        return m_page->findChild<FileDropZoneWidget *>();
    }
    [[nodiscard]] FileListWidget *list() const { return m_page->findChild<FileListWidget *>(); }
    [[nodiscard]] TaskListWidget *tasks() const { return m_page->findChild<TaskListWidget *>(); }
    [[nodiscard]] QWidget *current() const
    {
        return m_page->findChild<QStackedWidget *>()->currentWidget();
    }
    [[nodiscard]] bool showsOptions() const
    {
        return m_page->optionsPanel()->isVisible() && separatorOf(*m_page)->isVisible();
    }
    [[nodiscard]] bool hidesOptions() const
    {
        return m_page->optionsPanel()->isHidden() && separatorOf(*m_page)->isHidden();
    }
    [[nodiscard]] QStringList taskPaths() const
    {
        QStringList paths;
        for (const TaskListItem *row : tasks()->rows()) {
            paths.append(row->path());
        }
        return paths;
    }
    void clickStart() const
    {
        QTest::mouseClick(part<QWidget>(*m_page, "toolStartButton"), Qt::LeftButton);
    }
    void typePasswords(const QString &first, const QString &second) const
    {
        part<QWidget>(*m_page, "firstPassword")->findChild<QLineEdit *>()->setText(first);
        part<QWidget>(*m_page, "secondPassword")->findChild<QLineEdit *>()->setText(second);
    }

    std::unique_ptr<ToolTestHome> m_home;
    std::unique_ptr<FileToolPage> m_page;
    /// Three files, none of which is a PDF or an image, so that no task takes long.
    QStringList m_files;
};

void TestToolPages::initTestCase()
{
    initResources();
}

void TestToolPages::init()
{
    m_home.reset();
    m_home = std::make_unique<ToolTestHome>();
    m_files = {m_home->add(u"in/a.pdf"_s), m_home->add(u"in/b.pdf"_s), m_home->add(u"in/c.pdf"_s)};
}

void TestToolPages::cleanup()
{
    QTRY_COMPARE_WITH_TIMEOUT(TaskCenter::instance().unfinishedTasks(), 0, 20'000);
    // No report is left for the next test.
    QCoreApplication::sendPostedEvents();
    m_page.reset();
}

void TestToolPages::cleanupTestCase()
{
    TaskCenter::instance().shutdown();
}

void TestToolPages::addPages()
{
    QTest::addColumn<Maker>("maker");
    QTest::newRow("compress") << Maker(make<PdfCompressPage>);
    QTest::newRow("images to PDF") << Maker(make<ImageToPdfPage>);
    QTest::newRow("PDF to images") << Maker(make<PdfConvertPage>);
    QTest::newRow("encrypt") << Maker(make<PdfEncryPage>);
    QTest::newRow("decrypt") << Maker(make<PdfDecryPage>);
    QTest::newRow("merge") << Maker(make<PdfMergePage>);
}

void TestToolPages::show(std::unique_ptr<FileToolPage> page)
{
    m_page = std::move(page);
    m_page->resize(1000, 700);
    m_page->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_page.get()));
    // Results go beside their sources, which are the test's own, or to a folder of its own.
    if (!choosePlace(*m_page->optionsPanel(), SourceFolder)) {
        QVERIFY(choosePlace(*m_page->optionsPanel(), Chosen, m_home->path(u"in"_s)));
    }
}

void TestToolPages::frame_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("caption");
    const auto row = [](const char *name, Maker maker, const QString &text) {
        QTest::newRow(name) << maker << text << kPdfFilter << kPdfCaption;
    };
    row("compress", make<PdfCompressPage>, u"从你的桌面上添加或拖放PDF文件，开始压缩。"_s);
    row("PDF to images", make<PdfConvertPage>, u"从你的桌面上添加或拖放PDF文件，开始转换。"_s);
    row("encrypt", make<PdfEncryPage>, u"从你的桌面上添加或拖放PDF文件，开始加密。"_s);
    row("decrypt", make<PdfDecryPage>, u"从你的桌面上添加或拖放PDF文件，开始解密。"_s);
    row("merge", make<PdfMergePage>, u"从你的桌面上添加或拖放PDF文件，开始合并。"_s);
    QTest::newRow("images to PDF")
        << Maker(make<ImageToPdfPage>) << u"添加或拖拽图像文件进行转换。"_s
        << u"图像文件 (*.jpg *.jpeg *.png)"_s << u"选择图片"_s;
}

void TestToolPages::frame()
{
    QFETCH(QString, text);
    QFETCH(QString, filter);
    QFETCH(QString, caption);
    makePage();
    const auto *stack = m_page->findChild<QStackedWidget *>();
    QVERIFY(hasFrameOf(*m_page, stack));
    QCOMPARE(stack->count(), 3);
    QCOMPARE(stack->widget(0), dropZone());
    QCOMPARE(stack->widget(1), list());
    QCOMPARE(stack->widget(2), tasks());
    QCOMPARE(current(), dropZone());
    QVERIFY(showsOptions());
    QCOMPARE(separatorOf(*m_page)->minimumWidth(), 1);
    QCOMPARE(separatorOf(*m_page)->maximumWidth(), 1);
    QCOMPARE(separatorOf(*m_page)->styleSheet(), kSeparatorStyle);
    QCOMPARE(m_page->optionsPanel()->width(), 320);
    QCOMPARE(separatorOf(*m_page)->height(), m_page->height());
    QCOMPARE(stack->width(), m_page->width() - 321);

    QCOMPARE(dropZone()->text(), text);
    QCOMPARE(dropZone()->filter, filter);
    QCOMPARE(dropZone()->caption, caption);
    QCOMPARE(list()->filter, filter);
    QCOMPARE(list()->caption, caption);
}

void TestToolPages::officePages_data()
{
    QTest::addColumn<OfficeMaker>("maker");
    QTest::addColumn<QString>("text");
    QTest::newRow("Office to PDF")
        << OfficeMaker(makeOffice<OfficeToPdfPage>) << u"添加或拖拽文件进行转换。"_s;
    QTest::newRow("PDF to Office") << OfficeMaker(makeOffice<PdfToOfficePage>)
                                   << u"从你的桌面上添加或拖放PDF文件，开始转换。"_s;
}

void TestToolPages::officePages()
{
    QFETCH(OfficeMaker, maker);
    QFETCH(QString, text);
    const auto page = maker();
    page->resize(1000, 700);
    page->show();
    QVERIFY(QTest::qWaitForWindowExposed(page.get()));
    auto *zone = page->findChild<FileDropZoneWidget *>();
    QVERIFY(hasFrameOf(*page, zone));
    QCOMPARE(zone->text(), text);
    QCOMPARE(separatorOf(*page)->styleSheet(), kSeparatorStyle);
    QCOMPARE(separatorOf(*page)->width(), 1);
    QVERIFY(!page->findChild<FileListWidget *>());
    QVERIFY(!page->findChild<TaskListWidget *>());
    QVERIFY(page->minimumSizeHint().width() <= 938);

    // Nothing is submitted, and the user learns why, whether a file comes or the start is wanted.
    const DialogAnswers answers;
    QTest::mouseClick(part<QWidget>(*page, "toolStartButton"), Qt::LeftButton);
    QCOMPARE(answers.kinds().size(), 1);
    QCOMPARE(answers.seen().at(1), u"此版本尚不能转换 Office 文件。"_s);
    QCOMPARE(dropFiles(*zone, m_files), Qt::CopyAction);
    QTRY_COMPARE(answers.kinds().size(), 2);
    QCOMPARE(TaskCenter::instance().unfinishedTasks(), 0);
}

void TestToolPages::fitsIntoTheSmallestWindow()
{
    makePage();
    // Beside the frame, below the title bar and the tabs.
    m_page->resize(938, 516);
    QCoreApplication::processEvents();
    QCOMPARE(m_page->size(), QSize(938, 516));
    QVERIFY(m_page->rect().contains(m_page->optionsPanel()->geometry()));
    m_page->addInputFile(m_files[0]);
    QVERIFY(m_page->minimumSizeHint().width() <= 938);
    QVERIFY(m_page->minimumSizeHint().height() <= 516);
}

void TestToolPages::fromFilesToTasksAndBack()
{
    makePage();
    emit dropZone()->fileSelected(m_files);
    QTRY_COMPARE(current(), list());
    QCOMPARE(m_page->inputFiles(), m_files);
    QVERIFY(showsOptions());

    QStringList expected;
    for (const TaskRequest &request : m_page->requestsFor(m_files)) {
        expected.append(QDir::cleanPath(QDir::fromNativeSeparators(request.outputPath)));
    }
    if (qobject_cast<PdfConvertPage *>(m_page.get()) != nullptr) {
        // Asking has made the folders; the next ones have other names.
        for (QString &folder : expected) {
            folder += u" (1)"_s;
        }
    }
    clickStart();
    QCOMPARE(current(), tasks());
    QVERIFY(hidesOptions());
    QVERIFY(m_page->inputFiles().isEmpty());
    QCOMPARE(taskPaths(), expected);
    QStringList ids;
    for (const TaskListItem *row : tasks()->rows()) {
        QVERIFY(!row->id().isEmpty());
        QVERIFY(!ids.contains(row->id()));
        ids.append(row->id());
    }

    QTest::mouseClick(part<QWidget>(*m_page, "taskRestartButton"), Qt::LeftButton);
    QCOMPARE(current(), dropZone());
    QVERIFY(showsOptions());
    QVERIFY(tasks()->rows().isEmpty());
    QVERIFY(m_page->inputFiles().isEmpty());
    // Once more, with another file.
    emit dropZone()->fileSelected({m_files[2]});
    QTRY_COMPARE(current(), list());
    QCOMPARE(m_page->inputFiles(), QStringList{m_files[2]});
    clickStart();
    QCOMPARE(tasks()->rows().size(), 1);
    QVERIFY(!ids.contains(tasks()->rows().constFirst()->id()));
}

void TestToolPages::startWithoutFilesDoesNothing()
{
    makePage();
    const QSignalSpy reported(&TaskCenter::instance(), &TaskCenter::taskStatus);
    clickStart();
    m_page->onStart();
    QCOMPARE(current(), dropZone());
    QVERIFY(showsOptions());
    QVERIFY(tasks()->rows().isEmpty());
    QCOMPARE(TaskCenter::instance().unfinishedTasks(), 0);
    QCoreApplication::processEvents();
    QCOMPARE(reported.size(), 0);
}

void TestToolPages::lastFileThatGoesBringsTheDropZone()
{
    show(make<PdfMergePage>());
    m_page->addInputFile(m_files[0]);
    m_page->addInputFile(m_files[1]);
    const auto *view = part<QListWidget>(*m_page, "fileList");
    for (const int left : {1, 0}) {
        const QWidget *row = view->itemWidget(view->item(0));
        QTest::mouseClick(part<QWidget>(*row, "fileCloseButton"), Qt::LeftButton);
        QCOMPARE(m_page->inputFiles().size(), left);
        QCOMPARE(current(), left == 0 ? static_cast<QWidget *>(dropZone()) : list());
    }
    QVERIFY(showsOptions());
}

void TestToolPages::clearedListBringsTheDropZone()
{
    show(make<PdfCompressPage>());
    m_page->addInputFile(m_files[0]);
    m_page->addInputFile(m_files[1]);
    QTest::mouseClick(part<QWidget>(*m_page, "fileListClearButton"), Qt::LeftButton);
    QCOMPARE(current(), dropZone());
    QVERIFY(showsOptions());
}

void TestToolPages::dropTakesFilesAnywhere_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::newRow("drop zone") << QByteArray("dropZoneText");
    QTest::newRow("list") << QByteArray("fileList");
    QTest::newRow("options") << QByteArray("toolOptionsTitle");
    QTest::newRow("line") << QByteArray("toolSeparator");
}

void TestToolPages::dropTakesFilesAnywhere()
{
    QFETCH(QByteArray, target);
    show(make<PdfMergePage>());
    if (target == "fileList") {
        m_page->addInputFile(m_files[2]);
    }
    const QStringList before = m_page->inputFiles();
    auto *widget = part<QWidget>(*m_page, target.constData());
    if (const auto *area = qobject_cast<QAbstractScrollArea *>(widget)) {
        widget = area->viewport();
    }
    // Whoever dropped them goes on before they are listed.
    QCOMPARE(dropFiles(*widget, {m_files[1], m_files[0], m_files[1]}), Qt::CopyAction);
    QCOMPARE(m_page->inputFiles(), before);
    QTRY_COMPARE(m_page->inputFiles(), before + (QStringList{m_files[1], m_files[0]}));
    QCOMPARE(current(), list());
    QVERIFY(showsOptions());
}

void TestToolPages::dropOfNoFileIsNothing()
{
    show(make<PdfMergePage>());
    QMimeData text;
    text.setText(u"a.pdf"_s);
    for (QWidget *target : {static_cast<QWidget *>(m_page.get()), dropZone()->parentWidget()}) {
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &enter);
        QVERIFY(!enter.isAccepted());
    }
    const QUrl web(u"https://example.org/a.pdf"_s);
    QCOMPARE(drop(*dropZone(), {web}), Qt::CopyAction);
    QCOMPARE(drop(*m_page->optionsPanel(), {web}), Qt::CopyAction);
    QCoreApplication::processEvents();
    QCOMPARE(current(), dropZone());
    // Among files, it alone is left out.
    drop(*dropZone(), {web, QUrl::fromLocalFile(m_files[0])});
    QTRY_COMPARE(m_page->inputFiles(), QStringList{m_files[0]});
    emit dropZone()->fileSelected({});
    emit dropZone()->fileSelected({QString(), m_files[1]});
    QTRY_COMPARE(m_page->inputFiles(), (QStringList{m_files[0], m_files[1]}));
}

void TestToolPages::dropThatMovesIsRefused()
{
    show(make<PdfMergePage>());
    const QList<QUrl> urls{QUrl::fromLocalFile(m_files[0])};
    QCOMPARE(drop(*dropZone(), urls, Qt::MoveAction), Qt::IgnoreAction);
    QCOMPARE(drop(*m_page->optionsPanel(), urls, Qt::MoveAction), Qt::IgnoreAction);
    // From the moment on at which it comes.
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(m_page->optionsPanel(), &enter);
    QVERIFY(!enter.isAccepted());
    QCoreApplication::processEvents();
    QVERIFY(m_page->inputFiles().isEmpty());
}

void TestToolPages::dropIsACopyWhateverKeysAreHeld()
{
    show(make<PdfMergePage>());
    const Qt::DropActions both = Qt::CopyAction | Qt::MoveAction;
    QCOMPARE(drop(*dropZone(), {QUrl::fromLocalFile(m_files[0])}, both, Qt::ShiftModifier),
             Qt::CopyAction);
    QCOMPARE(
        drop(*m_page->optionsPanel(), {QUrl::fromLocalFile(m_files[1])}, both, Qt::ShiftModifier),
        Qt::CopyAction);
    QTRY_COMPARE(m_page->inputFiles(), (QStringList{m_files[0], m_files[1]}));
}

void TestToolPages::tasksTakeNoDrops()
{
    show(make<PdfMergePage>());
    m_page->addInputFile(m_files[0]);
    clickStart();
    QCOMPARE(dropFiles(*part<QListWidget>(*m_page, "taskList")->viewport(), m_files),
             Qt::IgnoreAction);
    QCoreApplication::processEvents();
    QCOMPARE(current(), tasks());
    QVERIFY(m_page->inputFiles().isEmpty());
}

void TestToolPages::fileFromElsewhere_data()
{
    QTest::addColumn<Maker>("maker");
    QTest::newRow("compress") << Maker(make<PdfCompressPage>);
    QTest::newRow("PDF to images") << Maker(make<PdfConvertPage>);
    QTest::newRow("encrypt") << Maker(make<PdfEncryPage>);
    QTest::newRow("decrypt") << Maker(make<PdfDecryPage>);
}

void TestToolPages::fileFromElsewhere()
{
    makePage();
    m_page->addInputFile(QString());
    QCOMPARE(current(), dropZone());
    m_page->addInputFile(m_files[1]);
    QCOMPARE(current(), list());
    m_page->addInputFile(m_files[0]);
    m_page->addInputFile(m_files[1]);
    m_page->addInputFile(QString());
    QCOMPARE(m_page->inputFiles(), (QStringList{m_files[1], m_files[0]}));
    QVERIFY(showsOptions());
}

void TestToolPages::fileFromElsewhereBringsTheOptionsBack()
{
    show(make<PdfCompressPage>());
    m_page->addInputFile(m_files[0]);
    clickStart();
    m_page->addInputFile(QString());
    QCOMPARE(current(), tasks());
    QVERIFY(hidesOptions());
    m_page->addInputFile(m_files[1]);
    QCOMPARE(current(), list());
    QVERIFY(showsOptions());
    QCOMPARE(m_page->inputFiles(), QStringList{m_files[1]});
    // The tasks before stay listed.
    clickStart();
    QCOMPARE(tasks()->rows().size(), 2);
}

void TestToolPages::optionsKeepTheirValues()
{
    show(make<PdfCompressPage>());
    QVERIFY(choosePlace(*m_page->optionsPanel(), Chosen, m_home->path(u"in"_s)));
    part<CardRadioButton>(*m_page, "basicLevelCard")->radioButton()->click();
    part<QRadioButton>(*m_page, "replaceSourceButton")->click();
    const QStringList before = linesOf(m_page->optionsPanel()->buildRequest());
    m_page->addInputFile(m_files[0]);
    clickStart();
    QTest::mouseClick(part<QWidget>(*m_page, "taskRestartButton"), Qt::LeftButton);
    QCOMPARE(linesOf(m_page->optionsPanel()->buildRequest()), before);
    QVERIFY(before.contains(u"compressLevel: int 0"_s) && before.contains(u"saveOption: int 0"_s));
}

void TestToolPages::statusesOfOtherPagesMeanNothing()
{
    PdfDecryPage other;
    other.addInputFile(m_files[1]);
    other.onStart();
    const QList<TaskListItem *> otherRows = other.findChild<TaskListWidget *>()->rows();
    QCOMPARE(otherRows.size(), 1);
    show(make<PdfCompressPage>());
    m_page->addInputFile(m_files[0]);
    m_page->onStart();
    QCOMPARE(tasks()->rows().size(), 1);
    const TaskListItem *row = tasks()->rows().constFirst();
    QTRY_COMPARE(statusOf(*row), u"失败"_s);
    QTRY_COMPARE(statusOf(*otherRows.constFirst()), u"失败"_s);
    emit TaskCenter::instance().taskStatus(row->id(), 2);
    QCOMPARE(statusOf(*row), u"已暂停"_s);
    QCOMPARE(statusOf(*otherRows.constFirst()), u"失败"_s);
    emit TaskCenter::instance().taskStatus(u"none"_s, 5);
    m_page->onTaskStatus(otherRows.constFirst()->id(), 5);
    QCOMPARE(statusOf(*row), u"已暂停"_s);
    QCOMPARE(statusOf(*otherRows.constFirst()), u"失败"_s);
}

void TestToolPages::statusIsForwarded()
{
    show(make<PdfCompressPage>());
    m_page->addInputFile(m_files[0]);
    m_page->onStart();
    QCOMPARE(tasks()->rows().size(), 1);
    const TaskListItem *row = tasks()->rows().constFirst();
    QCOMPARE(statusOf(*row), u"处理中..."_s);
    m_page->onTaskStatus(row->id(), 5);
    QCOMPARE(statusOf(*row), u"已取消"_s);
    m_page->onTaskStatus(row->id(), 6);
    QCOMPARE(statusOf(*row), u"已取消"_s);
    m_page->onTaskStatus(row->id(), -1);
    QCOMPARE(statusOf(*row), u"已取消"_s);
}

void TestToolPages::submittedTasksAreReported()
{
    const QSignalSpy reported(&TaskCenter::instance(), &TaskCenter::taskStatus);
    show(make<PdfEncryPage>());
    m_page->addInputFile(m_files[0]);
    m_page->addInputFile(m_files[1]);
    m_page->onStart();
    for (const TaskListItem *row : tasks()->rows()) {
        QTRY_COMPARE(statusOf(*row), u"失败"_s);
    }
    QStringList queued;
    for (const QList<QVariant> &report : reported) {
        if (report.at(1).toInt() == int(TaskStatus::Queued)) {
            queued.append(report.at(0).toString());
        }
    }
    // In the order of the list.
    QCOMPARE(queued, (QStringList{tasks()->rows().at(0)->id(), tasks()->rows().at(1)->id()}));
}

void TestToolPages::reorderedFilesAreSubmittedInTheirOrder()
{
    show(make<PdfCompressPage>());
    for (const QString &file : m_files) {
        m_page->addInputFile(file);
    }
    auto *view = part<QListWidget>(*m_page, "fileList");
    QTRY_VERIFY(view->itemWidget(view->item(2))->isVisible());
    // The first row goes to the place of the last one.
    QWidget *row = view->itemWidget(view->item(0));
    const QPoint from = row->rect().center();
    const QPoint to = row->mapFromGlobal(
        view->viewport()->mapToGlobal(view->visualItemRect(view->item(2)).center()));
    QTest::mousePress(row, Qt::LeftButton, Qt::NoModifier, from);
    QTest::mouseMove(row, from + QPoint(0, QApplication::startDragDistance() + 1));
    QTest::mouseMove(row, to);
    const QPoint end = row->mapFromGlobal(
        view->viewport()->mapToGlobal(view->visualItemRect(view->item(2)).center()));
    QTest::mouseRelease(row, Qt::LeftButton, Qt::NoModifier, end);
    const QStringList order{m_files[1], m_files[2], m_files[0]};
    QCOMPARE(m_page->inputFiles(), order);
    QCOMPARE(current(), list());
    QVERIFY(showsOptions());

    QStringList expected;
    for (const TaskRequest &request : m_page->requestsFor(order)) {
        expected.append(QDir::fromNativeSeparators(request.outputPath));
    }
    clickStart();
    QCOMPARE(taskPaths(), expected);
}

void TestToolPages::slotsAreNamed()
{
    const QMetaObject &type = FileToolPage::staticMetaObject;
    for (const char *name : {"onStart()", "onTaskStatus(QString,int)"}) {
        const int index = type.indexOfSlot(name);
        QVERIFY2(index >= 0, name);
        QCOMPARE(type.method(index).access(), QMetaMethod::Public);
    }
    QVERIFY(ToolOptionsPanel::staticMetaObject.indexOfSignal("startClicked()") >= 0);
}

void TestToolPages::differentPasswordsAreAskedAbout()
{
    show(make<PdfEncryPage>());
    m_page->addInputFile(m_files[0]);
    typePasswords(u"one"_s, u"other"_s);
    DialogAnswers answers;
    answers.addButton(u"messageBoxCancelButton"_s);
    clickStart();
    QVERIFY(answers.allGiven());
    QCOMPARE(answers.seen(), (QStringList{u"加密PDF"_s, u"两个密码应该匹配"_s,
                                          u"继续将使用第一个密码加密文件。"_s}));
    QCOMPARE(current(), list());
    QCOMPARE(m_page->inputFiles(), QStringList{m_files[0]});
    QVERIFY(tasks()->rows().isEmpty());

    answers.addButton(u"messageBoxConfirmButton"_s);
    clickStart();
    QCOMPARE(answers.kinds().size(), 2);
    QCOMPARE(current(), tasks());
    QCOMPARE(tasks()->rows().size(), 1);
}

void TestToolPages::startItselfDoesNotAsk()
{
    show(make<PdfEncryPage>());
    m_page->addInputFile(m_files[0]);
    typePasswords(u"one"_s, u"other"_s);
    const DialogAnswers answers;
    m_page->onStart();
    QCOMPARE(answers.kinds().size(), 0);
    QCOMPARE(current(), tasks());
}

void TestToolPages::equalPasswordsAreNotAskedAbout_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("equal") << u"secret"_s;
    QTest::newRow("empty") << QString();
}

void TestToolPages::equalPasswordsAreNotAskedAbout()
{
    QFETCH(QString, password);
    show(make<PdfEncryPage>());
    m_page->addInputFile(m_files[0]);
    typePasswords(password, password);
    const DialogAnswers answers;
    clickStart();
    QCOMPARE(answers.kinds().size(), 0);
    QCOMPARE(current(), tasks());
}

void TestToolPages::passwordsWithoutFilesAreNotAskedAbout()
{
    show(make<PdfEncryPage>());
    typePasswords(u"one"_s, u"other"_s);
    const DialogAnswers answers;
    clickStart();
    QCOMPARE(answers.kinds().size(), 0);
    QCOMPARE(current(), dropZone());
}

QTEST_MAIN(TestToolPages)
#include "tst_tool_pages.moc"
