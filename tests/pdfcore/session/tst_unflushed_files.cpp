// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <functional>

#include <sys/syscall.h>
#include <unistd.h>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// Whether the system fails to bring a file, or everything on the file system of a folder, to the
/// disk; empty for what it does.
std::function<bool(const QString &)> fileFails;
std::function<bool(const QString &)> folderFails;

QStringList flushedFolders;

/// The path that an open file was reached by.
QString pathOf(int file)
{
    return QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(file));
}

int failed()
{
    errno = EIO;
    return -1;
}

} // namespace

// The engine is a shared library and finds these before those of the system.
extern "C" {

int fsync(int file)
{
    return fileFails && fileFails(pathOf(file)) ? failed()
                                                : static_cast<int>(syscall(SYS_fsync, file));
}

int syncfs(int folder) noexcept
{
    flushedFolders.append(pathOf(folder));
    return folderFails && folderFails(pathOf(folder)) ? failed() : 0;
}

} // extern "C"

/// Several files written together to a disk that fails.
class TestUnflushedFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void newFilesAreFlushedTogether();
    void filesAreFlushedOneByOneInstead();
    void filesThatAreNotOnTheDiskFail();
    void filesOfAnotherFolderDoNot();
    void replacedFilesAreFlushedBefore();
    void fileThatFailedForAnotherReasonKeepsIt();

private:
    [[nodiscard]] QString pathOf(const QString &name) const { return m_folder->path(name); }
    [[nodiscard]] QList<PdfBackendError> errors();

    std::unique_ptr<Folder> m_folder;
    QList<PdfOutputFile> m_files;
};

void TestUnflushedFiles::init()
{
    m_folder = std::make_unique<Folder>();
    const QString source = m_folder->add(u"in.pdf"_s, PdfFixture::pagesByNumber(3));
    for (const QString &name : {u"a"_s, u"b"_s}) {
        QVERIFY(QDir(m_folder->path()).mkdir(name));
    }
    int index = 0;
    for (const QString &name : {u"a/0.pdf"_s, u"a/1.pdf"_s, u"b/2.pdf"_s}) {
        m_files.append({{filePage(source, index++)}, pathOf(name)});
    }
    flushedFolders.clear();
}

void TestUnflushedFiles::cleanup()
{
    fileFails = nullptr;
    folderFails = nullptr;
    m_files.clear();
}

QList<PdfBackendError> TestUnflushedFiles::errors()
{
    QList<PdfBackendError> errors;
    for (const PdfSaveOutcome &outcome : PdfEditorBackend::saveDocuments(m_files)) {
        errors.append(outcome.error);
    }
    return errors;
}

constexpr PdfBackendError kNone = PdfBackendError::None;
constexpr PdfBackendError kFailed = PdfBackendError::WriteFailed;

void TestUnflushedFiles::newFilesAreFlushedTogether()
{
    // One by one they would not reach the disk.
    fileFails = [](const QString &path) { return path.endsWith(u".pdf"_s); };
    QCOMPARE(errors(), (QList<PdfBackendError>{kNone, kNone, kNone}));
    QCOMPARE(flushedFolders, (QStringList{pathOf(u"a"_s), pathOf(u"b"_s)}));
}

void TestUnflushedFiles::filesAreFlushedOneByOneInstead()
{
    folderFails = [](const QString & /*path*/) { return true; };
    QCOMPARE(errors(), (QList<PdfBackendError>{kNone, kNone, kNone}));
}

void TestUnflushedFiles::filesThatAreNotOnTheDiskFail()
{
    folderFails = [](const QString & /*path*/) { return true; };
    fileFails = [](const QString &path) { return path.endsWith(u"a/1.pdf"_s); };
    QCOMPARE(errors(), (QList<PdfBackendError>{kNone, kFailed, kNone}));
}

void TestUnflushedFiles::filesOfAnotherFolderDoNot()
{
    folderFails = [](const QString &path) { return path.endsWith(u"/a"_s); };
    fileFails = [](const QString &path) { return path.endsWith(u".pdf"_s); };
    QCOMPARE(errors(), (QList<PdfBackendError>{kFailed, kFailed, kNone}));
}

void TestUnflushedFiles::replacedFilesAreFlushedBefore()
{
    m_folder->add(u"a/1.pdf"_s, "old");
    folderFails = [](const QString & /*path*/) { return true; };
    // Once it has its name, nothing more is asked of the disk.
    fileFails = [](const QString &path) { return path.endsWith(u".pdf"_s); };
    QCOMPARE(errors(), (QList<PdfBackendError>{kFailed, kNone, kFailed}));
}

void TestUnflushedFiles::fileThatFailedForAnotherReasonKeepsIt()
{
    m_files[1].pages.first().pageIndex = 9;
    folderFails = [](const QString & /*path*/) { return true; };
    fileFails = [](const QString &path) { return path.endsWith(u".pdf"_s); };
    QCOMPARE(errors(),
             (QList<PdfBackendError>{kFailed, PdfBackendError::InvalidDocument, kFailed}));
}

QTEST_GUILESS_MAIN(TestUnflushedFiles)
#include "tst_unflushed_files.moc"
