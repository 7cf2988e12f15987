// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/commands/page_files_writer.h"
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"
#include "widgets/modern_message_box.h"

#include <QApplication>
#include <QCursor>
#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTest>
#include <QTimer>

#include <functional>

using namespace Qt::StringLiterals;
using PageNumbers::numbersIn;

namespace {

const QList<int> kOneInformation{ModernMessageBox::Information};
const QList<int> kOneError{ModernMessageBox::Danger};

/// Called when new files are flushed to the disk, which is while they are written.
std::function<void()> whileWriting;

} // namespace

#ifdef Q_OS_LINUX
// The engine is a shared library and finds this before the one of the system.
extern "C" int syncfs(int /*file*/) noexcept
{
    if (whileWriting) {
        whileWriting();
    }
    return 0;
}
#endif

class TestPageFilesWriter final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Writing the files of a plan.
    void filesHoldTheirPlannedPages();
    void failingFileDoesNotStopTheOthers();
    void failureWithoutAFolderNamesEveryFile();
    void failureWithoutAReasonNamesItsPath();
    void existingFilesAreReplaced();

    // Extracting.
    void extractingSeveralPagesWritesAFileForEach();
    void extractingCombinedWritesOneFile();
    void extractingASinglePageIgnoresCombining();
    void extractingKeepsRotations();
    void extractingWithoutSelectionDoesNothing();
    void extractingWithoutAFolderDoesNothing();
    void extractingTwiceOverwritesTheFiles();
    void extractingNamesFilesAfterTheWholeBaseName();
    void extractingMakesTheFolderWithItsParents();
    void extractingIntoAFolderThatCannotBeMadeIsReported();
    void extractionTellsOfFailedFiles();
    void waitCursorIsGoneWhenTheBoxComesUp_data();
    void waitCursorIsGoneWhenTheBoxComesUp();
    void waitCursorShowsWhileFilesAreWritten();

    // Splitting.
    void splittingWritesTheRangesBetweenThePoints();
    void splittingEveryPageWritesAFileForEach();
    void splittingIgnoresUselessPoints();
    void splittingWithoutAPointDoesNothing_data();
    void splittingWithoutAPointDoesNothing();
    void splittingAOnePageDocumentDoesNothing();
    void splittingIntoAFolderThatCannotBeMadeIsReported();
    void splittingTellsOfFailedFiles();
    void splittingWritesTheEditedDocument();

    void documentStaysAsItIs();

private:
    [[nodiscard]] QString out(const QString &name = {}) const
    {
        return m_shown->path(name.isEmpty() ? u"out"_s : u"out/"_s + name);
    }
    [[nodiscard]] QStringList written() const
    {
        return QDir(out()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    /// The box after everything went well.
    [[nodiscard]] QStringList doneBox(const QString &title, int count) const
    {
        return {title,
                u"已生成 %1 个 PDF 文件。\n%2"_s.arg(QString::number(count),
                                                     QDir::toNativeSeparators(out())),
                {}};
    }
    /// The engine's reason for pages of a file that another program has changed.
    [[nodiscard]] QString reasonOfTheEngine() const;

    std::unique_ptr<ShownViewer> m_shown;
};

void TestPageFilesWriter::init()
{
    m_shown = std::make_unique<ShownViewer>();
}

void TestPageFilesWriter::cleanup()
{
    m_shown.reset();
}

QString TestPageFilesWriter::reasonOfTheEngine() const
{
    QString message;
    PdfEditorBackend::saveDocument({m_shown->model().sourcePages().first()},
                                   m_shown->path(u"probe.pdf"_s), nullptr, &message);
    return message;
}

void TestPageFilesWriter::filesHoldTheirPlannedPages()
{
    QVERIFY(m_shown->openPages(4));
    QVERIFY(QDir().mkpath(out()));
    const PageFilesResult result =
        writePageFiles({{u"a.pdf"_s, {3}}, {u"b.pdf"_s, {0, 2}}, {u"c.pdf"_s, {1, 1}}},
                       m_shown->model().sourcePages(), out());
    QCOMPARE(result.written, (QStringList{out(u"a.pdf"_s), out(u"b.pdf"_s), out(u"c.pdf"_s)}));
    QVERIFY(result.failures.isEmpty());
    QCOMPARE(numbersIn(out(u"a.pdf"_s)), QList<int>{3});
    QCOMPARE(numbersIn(out(u"b.pdf"_s)), (QList<int>{0, 2}));
    QCOMPARE(numbersIn(out(u"c.pdf"_s)), (QList<int>{1, 1}));
}

void TestPageFilesWriter::failingFileDoesNotStopTheOthers()
{
    QVERIFY(m_shown->openPages(3));
    QVERIFY(QDir().mkpath(out()));
    QList<PdfSourcePage> pages = m_shown->model().sourcePages();
    pages[1].filePath = m_shown->path(u"missing.pdf"_s);
    pages[1].revision.reset();
    const PageFilesResult result =
        writePageFiles({{u"a.pdf"_s, {0}}, {u"b.pdf"_s, {1}}, {u"c.pdf"_s, {2}}}, pages, out());
    QCOMPARE(result.written, (QStringList{out(u"a.pdf"_s), out(u"c.pdf"_s)}));
    QString reason;
    QVERIFY(!PdfEditorBackend::saveDocument({pages.at(1)}, out(u"b.pdf"_s), nullptr, &reason));
    QVERIFY(!reason.isEmpty());
    QCOMPARE(result.failures, QStringList{reason});
    QCOMPARE(written(), (QStringList{u"a.pdf"_s, u"c.pdf"_s}));
}

void TestPageFilesWriter::failureWithoutAFolderNamesEveryFile()
{
    QVERIFY(m_shown->openPages(2));
    const PageFilesResult result = writePageFiles({{u"a.pdf"_s, {0}}, {u"b.pdf"_s, {1}}},
                                                  m_shown->model().sourcePages(), out());
    QVERIFY(result.written.isEmpty());
    QCOMPARE(result.failures.size(), 2);
    QVERIFY(!QFile::exists(out()));
}

void TestPageFilesWriter::failureWithoutAReasonNamesItsPath()
{
    QVERIFY(m_shown->openPages(3));
    QStringList tried;
    QList<qsizetype> pageCounts;
    const PageFilesResult result = writePageFiles(
        {{u"a.pdf"_s, {0}}, {u"b.pdf"_s, {2, 1}}, {u"c.pdf"_s, {2}}},
        m_shown->model().sourcePages(), out(), [&](const QList<PdfOutputFile> &files) {
            for (const PdfOutputFile &file : files) {
                tried.append(file.path);
                pageCounts.append(file.pages.size());
            }
            return QList<PdfSaveOutcome>{{},
                                         {PdfBackendError::WriteFailed, {}},
                                         {PdfBackendError::WriteFailed, u"the engine's words"_s}};
        });
    QCOMPARE(tried, (QStringList{out(u"a.pdf"_s), out(u"b.pdf"_s), out(u"c.pdf"_s)}));
    QCOMPARE(pageCounts, (QList<qsizetype>{1, 2, 1}));
    QCOMPARE(result.written, QStringList{out(u"a.pdf"_s)});
    QCOMPARE(result.failures, (QStringList{out(u"b.pdf"_s), u"the engine's words"_s}));
}

void TestPageFilesWriter::existingFilesAreReplaced()
{
    QVERIFY(m_shown->openPages(2));
    QVERIFY(QDir().mkpath(out()));
    m_shown->add(u"out/a.pdf"_s, "something else");
    const PageFilesResult result =
        writePageFiles({{u"a.pdf"_s, {1}}}, m_shown->model().sourcePages(), out());
    QCOMPARE(result.written, QStringList{out(u"a.pdf"_s)});
    QCOMPARE(numbersIn(out(u"a.pdf"_s)), QList<int>{1});
}

void TestPageFilesWriter::extractingSeveralPagesWritesAFileForEach()
{
    QVERIFY(m_shown->openPages(6));
    m_shown->select({4, 1});
    const DialogAnswers answers;
    m_shown->viewer->extractPages(false, out());
    QCOMPARE(written(), (QStringList{u"report-2.pdf"_s, u"report-5.pdf"_s}));
    QCOMPARE(numbersIn(out(u"report-2.pdf"_s)), QList<int>{1});
    QCOMPARE(numbersIn(out(u"report-5.pdf"_s)), QList<int>{4});
    QCOMPARE(answers.seen(), doneBox(u"提取完成"_s, 2));
    QCOMPARE(answers.kinds(), kOneInformation);
}

void TestPageFilesWriter::extractingCombinedWritesOneFile()
{
    QVERIFY(m_shown->openPages(6));
    m_shown->select({4, 1, 5});
    const DialogAnswers answers;
    m_shown->viewer->extractPages(true, out());
    QCOMPARE(written(), QStringList{u"report-extracted.pdf"_s});
    QCOMPARE(numbersIn(out(u"report-extracted.pdf"_s)), (QList<int>{1, 4, 5}));
    QCOMPARE(answers.seen(), doneBox(u"提取完成"_s, 1));
    QCOMPARE(answers.kinds(), kOneInformation);
}

void TestPageFilesWriter::extractingASinglePageIgnoresCombining()
{
    QVERIFY(m_shown->openPages(3));
    m_shown->select({2});
    const DialogAnswers answers;
    m_shown->viewer->extractPages(true, out());
    QCOMPARE(written(), QStringList{u"report-3.pdf"_s});
    QCOMPARE(numbersIn(out(u"report-3.pdf"_s)), QList<int>{2});
}

void TestPageFilesWriter::extractingKeepsRotations()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(1));
    m_shown->select({1});
    const DialogAnswers answers;
    m_shown->viewer->extractPages(false, out());
    PdfDocumentInfo info;
    QVERIFY(PdfEditorBackend::inspectDocument(out(u"report-2.pdf"_s), {}, &info, nullptr, nullptr));
    QCOMPARE(info.pageSizes, QList<QSizeF>{QSizeF(300, 200)});
}

void TestPageFilesWriter::extractingWithoutSelectionDoesNothing()
{
    QVERIFY(m_shown->openPages(3));
    const DialogAnswers answers;
    m_shown->viewer->extractPages(false, out());
    QTest::qWait(20);
    QVERIFY(answers.seen().isEmpty());
    QVERIFY(!QFile::exists(out()));
}

void TestPageFilesWriter::extractingWithoutAFolderDoesNothing()
{
    QVERIFY(m_shown->openPages(3));
    m_shown->select({0});
    const DialogAnswers answers;
    m_shown->viewer->extractPages(false, {});
    QTest::qWait(20);
    QVERIFY(answers.seen().isEmpty());
    QVERIFY(!QFile::exists(u"report-1.pdf"_s));
}

void TestPageFilesWriter::extractingTwiceOverwritesTheFiles()
{
    QVERIFY(m_shown->openPages(3));
    m_shown->select({0});
    const DialogAnswers answers;
    m_shown->viewer->extractPages(false, out());
    m_shown->movePage(0, 3);
    m_shown->select({0});
    m_shown->viewer->extractPages(false, out());
    QCOMPARE(written(), QStringList{u"report-1.pdf"_s});
    QCOMPARE(numbersIn(out(u"report-1.pdf"_s)), QList<int>{1});
}

void TestPageFilesWriter::extractingNamesFilesAfterTheWholeBaseName()
{
    QVERIFY(m_shown->viewer->openFile(
        m_shown->add(u"报告 v1.2 %1.pdf"_s, PdfFixture::pagesByNumber(2)), {}));
    m_shown->select({0, 1});
    const DialogAnswers answers;
    m_shown->viewer->extractPages(false, out());
    QCOMPARE(written(), (QStringList{u"报告 v1.2 %1-1.pdf"_s, u"报告 v1.2 %1-2.pdf"_s}));
    m_shown->viewer->extractPages(true, out());
    QVERIFY(written().contains(u"报告 v1.2 %1-extracted.pdf"_s));
}

void TestPageFilesWriter::extractingMakesTheFolderWithItsParents()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->select({1});
    const DialogAnswers answers;
    m_shown->viewer->extractPages(false, out(u"deep/deeper"_s));
    QCOMPARE(numbersIn(out(u"deep/deeper/report-2.pdf"_s)), QList<int>{1});
}

void TestPageFilesWriter::extractingIntoAFolderThatCannotBeMadeIsReported()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->select({1});
    m_shown->add(u"out"_s, "a file, no folder");
    const DialogAnswers answers;
    m_shown->viewer->extractPages(false, out(u"deep"_s));
    QCOMPARE(answers.seen(), (QStringList{u"提取失败"_s, u"无法创建目标文件夹。"_s, QString()}));
    QCOMPARE(answers.kinds(), kOneError);
}

void TestPageFilesWriter::extractionTellsOfFailedFiles()
{
    QVERIFY(m_shown->openPages(3));
    m_shown->viewer->insertPdfFiles({m_shown->add(u"more.pdf"_s, PageNumbers::documentOf({40}))},
                                    3);
    m_shown->add(u"report.pdf"_s, PdfFixture::pagesByNumber(7));
    const QString reason = reasonOfTheEngine();
    QVERIFY(!reason.isEmpty());
    m_shown->select({0, 2, 3});
    const DialogAnswers answers;
    m_shown->viewer->extractPages(false, out());
    QCOMPARE(answers.seen(),
             (QStringList{u"部分页面提取失败"_s,
                          u"已生成 1 个文件，2 个文件失败。\n\n%1\n%1"_s.arg(reason), QString()}));
    QCOMPARE(answers.kinds(), kOneError);
    QCOMPARE(written(), QStringList{u"report-4.pdf"_s});
}

void TestPageFilesWriter::waitCursorIsGoneWhenTheBoxComesUp_data()
{
    QTest::addColumn<bool>("fails");
    QTest::newRow("done") << false;
    QTest::newRow("failed") << true;
}

void TestPageFilesWriter::waitCursorIsGoneWhenTheBoxComesUp()
{
    QFETCH(bool, fails);
    QVERIFY(m_shown->openPages(2));
    if (fails) {
        m_shown->add(u"report.pdf"_s, PdfFixture::pagesByNumber(7));
    }
    m_shown->select({0, 1});
    int boxes = 0;
    bool isWaiting = false;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        auto *box = qobject_cast<ModernMessageBox *>(QApplication::activeModalWidget());
        if (box != nullptr && box->isVisible()) {
            ++boxes;
            isWaiting = isWaiting || QGuiApplication::overrideCursor() != nullptr;
            box->reject();
        }
    });
    timer.start(1);
    m_shown->viewer->extractPages(true, out());
    QCOMPARE(boxes, 1);
    QVERIFY(!isWaiting);
    QCOMPARE(written().isEmpty(), fails);
}

void TestPageFilesWriter::waitCursorShowsWhileFilesAreWritten()
{
#ifdef Q_OS_LINUX
    QVERIFY(m_shown->openPages(2));
    m_shown->select({0, 1});
    QList<Qt::CursorShape> shapes;
    whileWriting = [&shapes] {
        const QCursor *cursor = QGuiApplication::overrideCursor();
        shapes.append(cursor != nullptr ? cursor->shape() : Qt::ArrowCursor);
    };
    const auto end = qScopeGuard([] { whileWriting = {}; });
    const DialogAnswers answers;
    m_shown->viewer->extractPages(true, out());
    QCOMPARE(written().size(), 1);
    QCOMPARE(shapes, QList<Qt::CursorShape>{Qt::WaitCursor});
    shapes.clear();
    m_shown->viewer->splitDocument(true, {}, out());
    QCOMPARE(shapes, QList<Qt::CursorShape>{Qt::WaitCursor});
    QCOMPARE(QGuiApplication::overrideCursor(), nullptr);
#else
    QSKIP("Nothing tells when files are written.");
#endif
}

void TestPageFilesWriter::splittingWritesTheRangesBetweenThePoints()
{
    QVERIFY(m_shown->openPages(5));
    const DialogAnswers answers;
    m_shown->viewer->splitDocument(false, {3, 1}, out());
    QCOMPARE(written(), (QStringList{u"report-1.pdf"_s, u"report-2.pdf"_s, u"report-3.pdf"_s}));
    QCOMPARE(numbersIn(out(u"report-1.pdf"_s)), QList<int>{0});
    QCOMPARE(numbersIn(out(u"report-2.pdf"_s)), (QList<int>{1, 2}));
    QCOMPARE(numbersIn(out(u"report-3.pdf"_s)), (QList<int>{3, 4}));
    QCOMPARE(answers.seen(), doneBox(u"拆分完成"_s, 3));
    QCOMPARE(answers.kinds(), kOneInformation);
}

void TestPageFilesWriter::splittingEveryPageWritesAFileForEach()
{
    QVERIFY(m_shown->openPages(3));
    const DialogAnswers answers;
    m_shown->viewer->splitDocument(true, {2}, out());
    QCOMPARE(written().size(), 3);
    for (int page = 0; page < 3; ++page) {
        QCOMPARE(numbersIn(out(u"report-%1.pdf"_s.arg(page + 1))), QList<int>{page});
    }
    QCOMPARE(answers.seen(), doneBox(u"拆分完成"_s, 3));
    QCOMPARE(answers.kinds(), kOneInformation);
}

void TestPageFilesWriter::splittingIgnoresUselessPoints()
{
    QVERIFY(m_shown->openPages(4));
    const DialogAnswers answers;
    m_shown->viewer->splitDocument(false, {2, 0, 2, -1, 4, 9}, out());
    QCOMPARE(written(), (QStringList{u"report-1.pdf"_s, u"report-2.pdf"_s}));
    QCOMPARE(numbersIn(out(u"report-1.pdf"_s)), (QList<int>{0, 1}));
    QCOMPARE(numbersIn(out(u"report-2.pdf"_s)), (QList<int>{2, 3}));
}

void TestPageFilesWriter::splittingWithoutAPointDoesNothing_data()
{
    QTest::addColumn<QList<int>>("points");
    QTest::addColumn<bool>("withFolder");
    QTest::newRow("no points") << QList<int>{} << true;
    QTest::newRow("points out of range") << QList<int>{0, 4, -2} << true;
    QTest::newRow("no folder") << QList<int>{1} << false;
}

void TestPageFilesWriter::splittingWithoutAPointDoesNothing()
{
    QFETCH(QList<int>, points);
    QFETCH(bool, withFolder);
    QVERIFY(m_shown->openPages(4));
    const DialogAnswers answers;
    m_shown->viewer->splitDocument(false, points, withFolder ? out() : QString());
    QTest::qWait(20);
    QVERIFY(answers.seen().isEmpty());
    QVERIFY(!QFile::exists(out()));
}

void TestPageFilesWriter::splittingAOnePageDocumentDoesNothing()
{
    QVERIFY(m_shown->openPages(1));
    const DialogAnswers answers;
    m_shown->viewer->splitDocument(true, {}, out());
    m_shown->viewer->splitDocument(false, {1}, out());
    QTest::qWait(20);
    QVERIFY(answers.seen().isEmpty());
    QVERIFY(!QFile::exists(out()));
}

void TestPageFilesWriter::splittingIntoAFolderThatCannotBeMadeIsReported()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->add(u"out"_s, "a file, no folder");
    const DialogAnswers answers;
    m_shown->viewer->splitDocument(true, {}, out());
    QCOMPARE(answers.seen(), (QStringList{u"拆分失败"_s, u"无法创建目标文件夹。"_s, QString()}));
    QCOMPARE(answers.kinds(), kOneError);
}

void TestPageFilesWriter::splittingTellsOfFailedFiles()
{
    QVERIFY(m_shown->openPages(2));
    m_shown->viewer->insertPdfFiles(
        {m_shown->add(u"more.pdf"_s, PageNumbers::documentOf({40, 41}))}, 0);
    m_shown->add(u"report.pdf"_s, PdfFixture::pagesByNumber(7));
    PdfSourcePage gone = m_shown->model().sourcePages().last();
    QString reason;
    QVERIFY(
        !PdfEditorBackend::saveDocument({gone}, m_shown->path(u"probe.pdf"_s), nullptr, &reason));
    const DialogAnswers answers;
    m_shown->viewer->splitDocument(false, {1, 2}, out());
    QCOMPARE(answers.seen(),
             (QStringList{u"部分文件拆分失败"_s,
                          u"已生成 2 个文件，1 个文件失败。\n\n%1"_s.arg(reason), QString()}));
    QCOMPARE(answers.kinds(), kOneError);
    QCOMPARE(written(), (QStringList{u"report-1.pdf"_s, u"report-2.pdf"_s}));
}

void TestPageFilesWriter::splittingWritesTheEditedDocument()
{
    QVERIFY(m_shown->openPages(4));
    m_shown->movePage(0, 4);
    emit m_shown->grid().deletePageRequested(m_shown->idAt(1));
    const DialogAnswers answers;
    m_shown->viewer->splitDocument(false, {1}, out());
    QCOMPARE(numbersIn(out(u"report-1.pdf"_s)), QList<int>{1});
    QCOMPARE(numbersIn(out(u"report-2.pdf"_s)), (QList<int>{3, 0}));
}

void TestPageFilesWriter::documentStaysAsItIs()
{
    QVERIFY(m_shown->openPages(4));
    m_shown->select({0, 1});
    const QList<PdfPageRecord> before = m_shown->model().pages();
    const DialogAnswers answers;
    m_shown->viewer->extractPages(true, out());
    m_shown->viewer->splitDocument(true, {}, out());
    QCOMPARE(m_shown->model().pages(), before);
    QVERIFY(!m_shown->viewer->isModified());
    QCOMPARE(m_shown->history().count(), 0);
    QCOMPARE(m_shown->model().documentPath(), m_shown->path(u"report.pdf"_s));
}

QTEST_MAIN(TestPageFilesWriter)
#include "tst_page_files_writer.moc"
