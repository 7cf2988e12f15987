// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/pdf_undo_manager.h"
#include "tests/pdf/viewer/page_numbers.h"
#include "tests/pdf/viewer/shown_viewer.h"
#include "tests/support/dialog_answers.h"
#include "tests/support/pdf_fixture.h"
#include "widgets/modern_message_box.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <atomic>

using namespace Qt::StringLiterals;
using PageNumbers::numbersIn;

namespace {

const QStringList kBusyTexts{u"正在保存 PDF"_s, u"正在写入文件，大文件可能需要一些时间。"_s,
                             u"保存完成前请不要关闭程序。"_s};
const QString kSaveFailed = u"保存 PDF 失败"_s;
const QString kCannotWrite = u"无法写入目标文件，请检查权限和磁盘空间。"_s;
constexpr int kErrorKind = ModernMessageBox::Danger;

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A document whose one page takes more than `bytes` however it is compressed.
QByteArray bulkyDocument(int bytes)
{
    QRandomGenerator random(7);
    PdfFixture::Page page = PdfFixture::plain({200, 300}, PdfFixture::numberColour(3));
    page.content += '%';
    for (int i = 0; i < bytes; ++i) {
        page.content += static_cast<char>('!' + random.bounded(90));
    }
    page.content += '\n';
    return PdfFixture::document({page});
}

/// A save function that fails as told.
PdfSaveFunction failing(PdfBackendError error, const QString &message)
{
    return [error, message](const QList<PdfSourcePage> &, const QString &, PdfBackendError *reason,
                            QString *detail) {
        *reason = error;
        *detail = message;
        return false;
    };
}

/// A file system of its own, for the super-user of a Linux system only.
class MountedFolder final
{
public:
    MountedFolder(const QString &folder, const QString &options)
        : m_folder(folder)
        , m_mounted(QDir().mkpath(folder) &&
                    run(u"mount"_s, {u"-t"_s, u"tmpfs"_s, u"-o"_s, options, u"tmpfs"_s, folder}))
    {}
    ~MountedFolder()
    {
        if (m_mounted) {
            // Whatever file in it is still open.
            run(u"umount"_s, {u"--lazy"_s, m_folder});
        }
    }
    Q_DISABLE_COPY_MOVE(MountedFolder)

    [[nodiscard]] bool isMounted() const { return m_mounted; }
    [[nodiscard]] bool makeReadOnly() const
    {
        return run(u"mount"_s, {u"-o"_s, u"remount,ro"_s, m_folder});
    }

private:
    static bool run(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.start(program, arguments);
        return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
               process.exitCode() == 0;
    }

    QString m_folder;
    bool m_mounted;
};

} // namespace

class TestPdfViewerSaving final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Saving.
    void saveWritesTheFileAndMarksItSaved();
    void saveAsMakesTheTargetTheFile();
    void relativeTargetBecomesAbsolute();
    void emptyPathIsRefused();
    void emptyDocumentIsNotSaved();
    void namelessDocumentProposesUntitledInTheHomeFolder();
    void saveAsProposesTheOpenFile();
    void nameWithoutASuffixGetsOne();
    void cancelledPromptSavesNothing();
    void promptReplacesAnExistingFile();

    // While a save runs.
    void busyBoxSaysWhatIsDone();
    void editDuringASaveStaysUnsaved();
    void busyBoxCannotBeClosed();
    void interfaceStaysAliveWhileSaving();
    void writingRunsOnAThreadOfItsOwn();
    void secondSaveWhileSavingIsRefused();
    void theThreadWritesACopyOfThePages();
    void deletingTheViewerDuringASaveIsSafe();

    // Failures.
    void failuresAreReported_data();
    void failuresAreReported();
    void failedSaveKeepsTheDocumentModified();
    void anotherSaveAfterAFailureSucceeds();
    void fullDiskKeepsTheTarget();
    void realFullDiskIsReported();
    void readOnlyTargetIsReported();
    void readOnlyFileSystemIsReported();
    void vanishedFolderIsReported();
    void sourceChangedByAnotherProgramKeepsTheTarget();

private:
    std::unique_ptr<ShownViewer> m_shown;
};

void TestPdfViewerSaving::init()
{
    m_shown = std::make_unique<ShownViewer>();
}

void TestPdfViewerSaving::cleanup()
{
    m_shown.reset();
}

void TestPdfViewerSaving::saveWritesTheFileAndMarksItSaved()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(0));
    const QSignalSpy saved(m_shown->viewer.get(), &PdfViewerWidget::documentSaved);
    const QSignalSpy modified(m_shown->viewer.get(), &PdfViewerWidget::modifiedChanged);
    const DialogAnswers answers;
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{1, 2}));
    QVERIFY(!m_shown->viewer->isModified());
    QVERIFY(m_shown->history().isClean());
    QCOMPARE(m_shown->history().count(), 2);
    for (const PdfPageRecord &page : m_shown->model().pages()) {
        QVERIFY(!page.changed);
    }
    QCOMPARE(modified.size(), 1);
    QCOMPARE(modified.first().first().toBool(), false);
    QCOMPARE(saved.size(), 1);
    QCOMPARE(saved.first().first().toString(), m_shown->path(u"report.pdf"_s));
}

void TestPdfViewerSaving::saveAsMakesTheTargetTheFile()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    const QString target = m_shown->path(u"副本 copy.pdf"_s);
    const QList<PdfPageRecord> before = m_shown->model().pages();
    QSignalSpy reset(&m_shown->model(), &PdfDocumentModel::modelReset);
    QVERIFY(m_shown->viewer->saveAs(target));
    QCOMPARE(m_shown->model().documentPath(), target);
    QCOMPARE(numbersIn(target), (QList<int>{1, 2}));
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{0, 1, 2}));
    // Nothing is loaded anew.
    QCOMPARE(reset.size(), 0);
    QCOMPARE(m_shown->model().pages(), before);
}

void TestPdfViewerSaving::relativeTargetBecomesAbsolute()
{
    QVERIFY(m_shown->openPages(2));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_shown->path({})));
    const QString folder = QDir::currentPath();
    const bool saved = m_shown->viewer->saveAs(u"relative.pdf"_s);
    QDir::setCurrent(before);
    QVERIFY(saved);
    QCOMPARE(m_shown->model().documentPath(), QString(folder % u"/relative.pdf"));
    QCOMPARE(numbersIn(m_shown->path(u"relative.pdf"_s)), (QList<int>{0, 1}));
}

void TestPdfViewerSaving::emptyPathIsRefused()
{
    QVERIFY(m_shown->openPages(2));
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->saveAs({}));
    QTest::qWait(20);
    QVERIFY(answers.seen().isEmpty());
}

void TestPdfViewerSaving::emptyDocumentIsNotSaved()
{
    const QString target = m_shown->path(u"empty.pdf"_s);
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->save());
    QVERIFY(!m_shown->viewer->saveAs(target));
    QTest::qWait(20);
    QVERIFY(answers.seen().isEmpty());
    QVERIFY(answers.fileDialogs().isEmpty());
    QVERIFY(!QFile::exists(target));
}

void TestPdfViewerSaving::namelessDocumentProposesUntitledInTheHomeFolder()
{
    PdfPageRecord blank;
    blank.id = 1;
    blank.pageSize = kBlankPageSize;
    blank.origin = PdfPageOrigin::Blank;
    m_shown->model().setPages({blank}, true);
    const QString target = m_shown->path(u"first.pdf"_s);
    DialogAnswers answers;
    answers.addFiles({target});
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(answers.fileDialogs().size(), 1);
    const DialogAnswers::FileDialog dialog = answers.fileDialogs().first();
    QCOMPARE(dialog.title, u"将 PDF 保存为"_s);
    QCOMPARE(dialog.filters, QStringList{u"PDF 文件 (*.pdf)"_s});
    QCOMPARE(dialog.proposals, QStringList{QDir::homePath() % u"/未命名.pdf"});
    QCOMPARE(m_shown->model().documentPath(), target);
    QCOMPARE(numbersIn(target), QList<int>{PageNumbers::kWhite});
    QVERIFY(!m_shown->viewer->isModified());
}

void TestPdfViewerSaving::saveAsProposesTheOpenFile()
{
    QVERIFY(m_shown->openPages(2));
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->promptSaveAs());
    QCOMPARE(answers.fileDialogs().size(), 1);
    QCOMPARE(answers.fileDialogs().first().proposals, QStringList{m_shown->path(u"report.pdf"_s)});
}

void TestPdfViewerSaving::nameWithoutASuffixGetsOne()
{
    QVERIFY(m_shown->openPages(2));
    DialogAnswers answers;
    answers.addFiles({m_shown->path(u"copy"_s)});
    QVERIFY(m_shown->viewer->promptSaveAs());
    QCOMPARE(m_shown->model().documentPath(), m_shown->path(u"copy.pdf"_s));
    QVERIFY(QFile::exists(m_shown->path(u"copy.pdf"_s)));
    QVERIFY(!QFile::exists(m_shown->path(u"copy"_s)));
}

void TestPdfViewerSaving::cancelledPromptSavesNothing()
{
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    const QByteArray before = contentOf(m_shown->path(u"report.pdf"_s));
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->promptSaveAs());
    QVERIFY(answers.seen().isEmpty());
    QVERIFY(m_shown->viewer->isModified());
    QCOMPARE(contentOf(m_shown->path(u"report.pdf"_s)), before);
}

void TestPdfViewerSaving::promptReplacesAnExistingFile()
{
    QVERIFY(m_shown->openPages(2));
    const QString target = m_shown->add(u"old.pdf"_s, "old");
    DialogAnswers answers;
    answers.addFiles({target});
    QVERIFY(m_shown->viewer->promptSaveAs());
    QCOMPARE(numbersIn(target), (QList<int>{0, 1}));
}

void TestPdfViewerSaving::editDuringASaveStaysUnsaved()
{
    QVERIFY(m_shown->openPages(2));
    auto &edits = m_shown->part<PdfUndoManager>();
    edits.rotatePages({m_shown->idAt(0)}, 90);
    const DialogAnswers answers;
    QSemaphore edited;
    m_shown->viewer->setSaveFunction(
        [&edited](const auto &, const QString &, PdfBackendError *, QString *) {
            edited.acquire();
            return true;
        });
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (QApplication::activeModalWidget() != nullptr) {
            timer.stop();
            edits.insertBlankPage(0, {200, 300});
            edited.release();
        }
    });
    timer.start(1);
    const QString target = m_shown->path(u"target.pdf"_s);
    QVERIFY(m_shown->viewer->saveAs(target));
    QVERIFY(m_shown->viewer->isModified());
    QVERIFY(!m_shown->history().isClean());
    QCOMPARE(m_shown->model().documentPath(), target);
    // A save without an edit on the way has everything.
    m_shown->viewer->setSaveFunction(
        [](const auto &, const QString &, PdfBackendError *, QString *) { return true; });
    QVERIFY(m_shown->viewer->save());
    QVERIFY(!m_shown->viewer->isModified());
    QVERIFY(m_shown->history().isClean());
}

void TestPdfViewerSaving::busyBoxSaysWhatIsDone()
{
    QVERIFY(m_shown->openPages(2));
    const DialogAnswers answers;
    QSemaphore seen;
    m_shown->viewer->setSaveFunction(
        [&seen](const auto &, const QString &, PdfBackendError *, QString *) {
            seen.acquire();
            return true;
        });
    QTimer timer;
    bool hasButtons = true;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (answers.seen().size() >= 3) {
            const QWidget *box = QApplication::activeModalWidget();
            hasButtons = !box || !box->findChildren<QPushButton *>().isEmpty();
            timer.stop();
            seen.release();
        }
    });
    timer.start(1);
    QVERIFY(m_shown->viewer->saveAs(m_shown->path(u"copy.pdf"_s)));
    QCOMPARE(answers.seen(), kBusyTexts);
    QCOMPARE(answers.kinds(), QList<int>{ModernMessageBox::Information});
    QVERIFY(!hasButtons);
    QVERIFY(!QApplication::activeModalWidget());
}

void TestPdfViewerSaving::busyBoxCannotBeClosed()
{
    QVERIFY(m_shown->openPages(2));
    QSemaphore tried;
    m_shown->viewer->setSaveFunction(
        [&tried](const auto &, const QString &, PdfBackendError *, QString *) {
            tried.acquire();
            return true;
        });
    QTimer timer;
    bool stayed = false;
    connect(&timer, &QTimer::timeout, this, [&] {
        auto *box = qobject_cast<ModernMessageBox *>(QApplication::activeModalWidget());
        if (!box || !box->isVisible()) {
            return;
        }
        QTest::keyClick(box, Qt::Key_Escape);
        QTest::keyClick(box, Qt::Key_Return);
        box->close();
        stayed = box->isVisible();
        timer.stop();
        tried.release();
    });
    timer.start(1);
    QVERIFY(m_shown->viewer->saveAs(m_shown->path(u"copy.pdf"_s)));
    QVERIFY(stayed);
}

void TestPdfViewerSaving::interfaceStaysAliveWhileSaving()
{
    QVERIFY(m_shown->openPages(30));
    m_shown->viewer->goToPage(0);
    std::atomic<bool> rendered{false};
    m_shown->viewer->setSaveFunction(
        [&rendered](const auto &, const QString &, PdfBackendError *, QString *) {
            while (!rendered) {
                QThread::msleep(1);
            }
            return true;
        });
    // A page far away is rendered and painted while the file is being written.
    QTimer::singleShot(5, this, [this] { m_shown->viewer->goToPage(21); });
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [this, &rendered] {
        QWidget *viewport = m_shown->view().viewport();
        const QColor middle = viewport->grab().toImage().pixelColor(viewport->rect().center());
        rendered = PageNumbers::numberOf(middle) == 21;
    });
    timer.start(5);
    QVERIFY(m_shown->viewer->saveAs(m_shown->path(u"copy.pdf"_s)));
    QVERIFY(rendered);
}

void TestPdfViewerSaving::writingRunsOnAThreadOfItsOwn()
{
    QVERIFY(m_shown->openPages(2));
    std::atomic<QThread *> writer{nullptr};
    m_shown->viewer->setSaveFunction(
        [&writer](const auto &, const QString &, PdfBackendError *, QString *) {
            writer = QThread::currentThread();
            return true;
        });
    QVERIFY(m_shown->viewer->saveAs(m_shown->path(u"copy.pdf"_s)));
    QVERIFY(writer);
    QVERIFY(writer != QThread::currentThread());
}

void TestPdfViewerSaving::secondSaveWhileSavingIsRefused()
{
    QVERIFY(m_shown->openPages(2));
    std::atomic<int> writes{0};
    QSemaphore tried;
    m_shown->viewer->setSaveFunction(
        [&](const auto &, const QString &, PdfBackendError *, QString *) {
            ++writes;
            tried.acquire();
            return true;
        });
    bool secondSave = true;
    bool secondSaveAs = true;
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (writes == 0) {
            return;
        }
        timer.stop();
        secondSave = m_shown->viewer->save();
        secondSaveAs = m_shown->viewer->saveAs(m_shown->path(u"second.pdf"_s));
        tried.release();
    });
    timer.start(1);
    QVERIFY(m_shown->viewer->saveAs(m_shown->path(u"first.pdf"_s)));
    QVERIFY(!secondSave);
    QVERIFY(!secondSaveAs);
    QCOMPARE(writes.load(), 1);
    QCOMPARE(m_shown->model().documentPath(), m_shown->path(u"first.pdf"_s));
    // Afterwards saving works again.
    tried.release();
    QVERIFY(m_shown->viewer->save());
    QCOMPARE(writes.load(), 2);
}

void TestPdfViewerSaving::theThreadWritesACopyOfThePages()
{
    QVERIFY(m_shown->openPages(3));
    QSemaphore edited;
    QList<PdfSourcePage> written;
    m_shown->viewer->setSaveFunction(
        [&](const QList<PdfSourcePage> &pages, const QString &, PdfBackendError *, QString *) {
            edited.acquire();
            written = pages;
            return true;
        });
    QTimer::singleShot(5, this, [this, &edited] {
        m_shown->model().removePages({m_shown->idAt(0)});
        edited.release();
    });
    QVERIFY(m_shown->viewer->saveAs(m_shown->path(u"copy.pdf"_s)));
    QCOMPARE(PageNumbers::numbersOf(written), (QList<int>{0, 1, 2}));
}

void TestPdfViewerSaving::deletingTheViewerDuringASaveIsSafe()
{
    QVERIFY(m_shown->openPages(2));
    std::atomic<bool> writing{false};
    std::atomic<bool> written{false};
    QSemaphore deleted;
    m_shown->viewer->setSaveFunction(
        [&](const auto &, const QString &, PdfBackendError *, QString *) {
            writing = true;
            deleted.acquire();
            written = true;
            return true;
        });
    QTimer timer;
    connect(&timer, &QTimer::timeout, this, [&] {
        if (writing) {
            timer.stop();
            m_shown->viewer.reset();
            deleted.release();
        }
    });
    timer.start(1);
    PdfViewerWidget *viewer = m_shown->viewer.get();
    QVERIFY(viewer->saveAs(m_shown->path(u"copy.pdf"_s)));
    QVERIFY(!m_shown->viewer);
    // The save is not abandoned halfway.
    QVERIFY(written);
}

void TestPdfViewerSaving::failuresAreReported_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("missing source") << 1 << u"文件不存在或已被移动。"_s;
    QTest::newRow("password") << 2 << u"PDF 需要密码。"_s;
    QTest::newRow("wrong password") << 3 << u"PDF 密码错误。"_s;
    QTest::newRow("damaged") << 4 << u"PDF 已损坏或格式不受支持。"_s;
    QTest::newRow("rendering") << 5 << u"页面渲染失败。"_s;
    QTest::newRow("writing") << 6 << kCannotWrite;
    QTest::newRow("none") << 0 << u"操作未完成。"_s;
    QTest::newRow("unknown") << 99 << u"操作未完成。"_s;
}

void TestPdfViewerSaving::failuresAreReported()
{
    QFETCH(int, error);
    QFETCH(QString, sentence);
    QVERIFY(m_shown->openPages(2));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(0));
    m_shown->viewer->setSaveFunction(
        failing(static_cast<PdfBackendError>(error), u" \n the engine's words \n"_s));
    const QSignalSpy saved(m_shown->viewer.get(), &PdfViewerWidget::documentSaved);
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->save());
    QCOMPARE(answers.seen().last(3), (QStringList{kSaveFailed, sentence, u"the engine's words"_s}));
    QCOMPARE(answers.kinds().last(), kErrorKind);
    QVERIFY(m_shown->viewer->isModified());
    QVERIFY(!m_shown->history().isClean());
    QCOMPARE(saved.size(), 0);
}

void TestPdfViewerSaving::failedSaveKeepsTheDocumentModified()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().rotatePageRequested(m_shown->idAt(1));
    m_shown->viewer->setSaveFunction(failing(PdfBackendError::WriteFailed, {}));
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->saveAs(m_shown->path(u"copy.pdf"_s)));
    QVERIFY(m_shown->viewer->isModified());
    QVERIFY(m_shown->model().pageAt(1)->changed);
    QCOMPARE(m_shown->model().documentPath(), m_shown->path(u"report.pdf"_s));
    QCOMPARE(m_shown->rotations(), (QList<int>{0, 90, 0}));
    m_shown->history().undo();
    QVERIFY(!m_shown->viewer->isModified());
}

void TestPdfViewerSaving::anotherSaveAfterAFailureSucceeds()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(1));
    m_shown->viewer->setSaveFunction(failing(PdfBackendError::WriteFailed, {}));
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->save());
    m_shown->viewer->setSaveFunction(&PdfEditorBackend::saveDocument);
    QVERIFY(m_shown->viewer->save());
    QVERIFY(!m_shown->viewer->isModified());
    QCOMPARE(numbersIn(m_shown->path(u"report.pdf"_s)), (QList<int>{0, 2}));
}

void TestPdfViewerSaving::fullDiskKeepsTheTarget()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(1));
    const QString path = m_shown->path(u"report.pdf"_s);
    const QByteArray before = contentOf(path);
    m_shown->viewer->setSaveFunction(
        failing(PdfBackendError::WriteFailed, u"No space left on device"_s));
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->save());
    QCOMPARE(answers.seen().last(3),
             (QStringList{kSaveFailed, kCannotWrite, u"No space left on device"_s}));
    QCOMPARE(answers.kinds().last(), kErrorKind);
    QCOMPARE(contentOf(path), before);
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 2}));
}

void TestPdfViewerSaving::realFullDiskIsReported()
{
    const MountedFolder disk(m_shown->path(u"disk"_s), u"size=64k"_s);
    if (!disk.isMounted()) {
        QSKIP("no file system can be mounted here");
    }
    const QString target = m_shown->add(u"disk/target.pdf"_s, PageNumbers::documentOf({7}));
    const QByteArray before = contentOf(target);
    QVERIFY(m_shown->viewer->openFile(m_shown->add(u"bulky.pdf"_s, bulkyDocument(200000)), {}));
    emit m_shown->grid().duplicatePageRequested(m_shown->idAt(0));
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->saveAs(target));
    QCOMPARE(answers.seen().last(3).first(2), (QStringList{kSaveFailed, kCannotWrite}));
    QCOMPARE(answers.kinds().last(), kErrorKind);
    QVERIFY(!answers.seen().last().isEmpty());
    QVERIFY(m_shown->viewer->isModified());
    QCOMPARE(contentOf(target), before);
    QCOMPARE(QDir(m_shown->path(u"disk"_s)).entryList(QDir::Files | QDir::Hidden),
             QStringList{u"target.pdf"_s});
}

void TestPdfViewerSaving::readOnlyTargetIsReported()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(1));
    const QString folder = m_shown->path(u"locked"_s);
    QVERIFY(QDir().mkpath(folder));
    const QString target = m_shown->add(u"locked/target.pdf"_s, PageNumbers::documentOf({7}));
    QVERIFY(QFile::setPermissions(target, QFile::ReadOwner));
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
    const bool mayWrite = QFile(target).open(QIODevice::ReadWrite);
    const DialogAnswers answers;
    const bool saved = !mayWrite && m_shown->viewer->saveAs(target);
    QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    if (mayWrite) {
        QSKIP("this user may write any file");
    }
    QVERIFY(!saved);
    QCOMPARE(answers.seen().last(3).first(2), (QStringList{kSaveFailed, kCannotWrite}));
    QCOMPARE(answers.kinds().last(), kErrorKind);
    QVERIFY(m_shown->viewer->isModified());
    QCOMPARE(numbersIn(target), QList<int>{7});
}

void TestPdfViewerSaving::readOnlyFileSystemIsReported()
{
    const MountedFolder disk(m_shown->path(u"disk"_s), u"size=256k"_s);
    if (!disk.isMounted()) {
        QSKIP("no file system can be mounted here");
    }
    const QString path = m_shown->add(u"disk/report.pdf"_s, PdfFixture::pagesByNumber(3));
    const QByteArray before = contentOf(path);
    QVERIFY(m_shown->viewer->openFile(path, {}));
    QVERIFY(disk.makeReadOnly());
    emit m_shown->grid().deletePageRequested(m_shown->idAt(1));
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->save());
    QCOMPARE(answers.seen().last(3).first(2), (QStringList{kSaveFailed, kCannotWrite}));
    QCOMPARE(answers.kinds().last(), kErrorKind);
    QVERIFY(m_shown->viewer->isModified());
    QCOMPARE(contentOf(path), before);
    QCOMPARE(m_shown->numbers(), (QList<int>{0, 2}));
    // Another place takes it.
    QVERIFY(m_shown->viewer->saveAs(m_shown->path(u"elsewhere.pdf"_s)));
    QCOMPARE(numbersIn(m_shown->path(u"elsewhere.pdf"_s)), (QList<int>{0, 2}));
}

void TestPdfViewerSaving::vanishedFolderIsReported()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(1));
    const DialogAnswers answers;
    QVERIFY(!m_shown->viewer->saveAs(m_shown->path(u"gone/target.pdf"_s)));
    QCOMPARE(answers.seen().last(3).first(2), (QStringList{kSaveFailed, kCannotWrite}));
    QCOMPARE(answers.kinds().last(), kErrorKind);
    QVERIFY(m_shown->viewer->isModified());
    QVERIFY(!QFile::exists(m_shown->path(u"gone"_s)));
}

void TestPdfViewerSaving::sourceChangedByAnotherProgramKeepsTheTarget()
{
    QVERIFY(m_shown->openPages(3));
    emit m_shown->grid().deletePageRequested(m_shown->idAt(1));
    const QString path = m_shown->add(u"report.pdf"_s, PageNumbers::documentOf({50, 51, 52, 53}));
    const QString target = m_shown->add(u"target.pdf"_s, PageNumbers::documentOf({7}));
    for (const QString &where : {path, target}) {
        const QByteArray before = contentOf(where);
        const DialogAnswers answers;
        QVERIFY(!m_shown->viewer->saveAs(where));
        QCOMPARE(answers.seen().last(3).first(2),
                 (QStringList{kSaveFailed, u"文件不存在或已被移动。"_s}));
        QCOMPARE(answers.kinds().last(), kErrorKind);
        QVERIFY(answers.seen().last().contains(u"changed"_s));
        QCOMPARE(contentOf(where), before);
        QVERIFY(m_shown->viewer->isModified());
    }
}

QTEST_MAIN(TestPdfViewerSaving)
#include "tst_pdf_viewer_saving.moc"
