// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_file_revision.h"
#include "pdfcore/src/base/atomic_file.h"
#include "pdfcore/src/session/engine.h"
#include "tests/pdfcore/engine_calls.h"
#include "tests/support/pdf_fixture.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

#include <cerrno>
#include <chrono>
#include <functional>
#include <future>

#include <sys/syscall.h>
#include <unistd.h>

using namespace EngineCalls;
using namespace Qt::StringLiterals;

namespace {

/// What happens in place of a call to the system; empty for the call itself.
std::function<int(const char *, const char *)> linkInstead;
std::function<void(int)> beforeFlush;

int linkAsUsual(const char *path, const char *name)
{
    return static_cast<int>(syscall(SYS_linkat, -100, path, -100, name, 0));
}

} // namespace

// The engine is a shared library and finds these before those of the system.
extern "C" {

int link(const char *path, const char *name) noexcept
{
    return linkInstead ? linkInstead(path, name) : linkAsUsual(path, name);
}

int fsync(int file)
{
    if (beforeFlush) {
        beforeFlush(file);
    }
    return static_cast<int>(syscall(SYS_fsync, file));
}

} // extern "C"

namespace {

/// How long another thread has to do what it must not do.
constexpr std::chrono::milliseconds kPatience{300};

QStringList keptFiles()
{
    QStringList files;
    for (const auto location : {QStandardPaths::CacheLocation, QStandardPaths::TempLocation}) {
        QDirIterator entries(QStandardPaths::writableLocation(location) + u"/quillora-sources"_s,
                             {u"*.pdf"_s}, QDir::Files, QDirIterator::Subdirectories);
        while (entries.hasNext()) {
            files.append(entries.next());
        }
    }
    return files;
}

/// What is done to a file with which name.
struct Flush
{
    QString name;
    QByteArray targetThen; ///< What the target held.
};

/// A document with one revision in use.
struct Fixture
{
    Fixture() { revision = use(); }

    [[nodiscard]] PdfFileRevisionPtr use() const
    {
        return pdfcore::Engine::instance().revisions().use(pdfcore::FileIdentity::of(path));
    }

    /// Puts `content` in the place of the document.
    bool replace(const QByteArray &content)
    {
        pdfcore::AtomicFile file(path);
        return file.open(&reason) && file.device().write(content) == content.size() &&
               file.finishWriting(&reason) &&
               pdfcore::Engine::instance().revisions().replaceTarget(file, &reason);
    }

    /// What is read for a page of the revision; empty when there is nothing.
    [[nodiscard]] QByteArray contentOfRevision(const PdfFileRevisionPtr &used) const
    {
        PdfSourcePage page = filePage(path);
        page.revision = used;
        pdfcore::EngineError outcome;
        const QString place = pdfcore::Engine::instance().revisions().locate(page, &outcome);
        return place.isEmpty() ? QByteArray() : contentOf(place);
    }

    Folder folder;
    QString path = folder.add(u"document.pdf"_s, "first");
    PdfFileRevisionPtr revision;
    QString reason;
};

} // namespace

/// What is between the calls to the system that replace a file.
class TestReplacedFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void fileThatChangesWhileItIsSetAsideIsNotReplaced();
    void fileThatIsReplacedWhileItIsSetAsideIsNotReplaced();
    void oneFileIsReplacedAfterTheOther();
    void failedCopiesLeaveNothingBehind();
    void contentIsOnTheDiskBeforeItTakesThePlace();
};

void TestReplacedFiles::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
}

void TestReplacedFiles::cleanup()
{
    linkInstead = {};
    beforeFlush = {};
    QCOMPARE(keptFiles(), QStringList());
}

void TestReplacedFiles::fileThatChangesWhileItIsSetAsideIsNotReplaced()
{
    Fixture document;
    linkInstead = [&document](const char *path, const char *name) {
        PdfFixture::write(document.path, "changed by another program");
        return linkAsUsual(path, name);
    };
    QVERIFY(!document.replace("second"));
    QVERIFY2(document.reason.contains(u"changed"_s), qPrintable(document.reason));
    QCOMPARE(contentOf(document.path), QByteArray("changed by another program"));
    QCOMPARE(keptFiles(), QStringList());
    QCOMPARE(document.folder.leftovers(), QStringList());
    QVERIFY(document.contentOfRevision(document.revision).isEmpty());
}

void TestReplacedFiles::fileThatIsReplacedWhileItIsSetAsideIsNotReplaced()
{
    // What is set aside is as large as the file was, but not that file.
    Fixture document;
    linkInstead = [&document](const char *path, const char *name) {
        const QString other = document.folder.add(u"other.pdf"_s, "other");
        QFile::remove(document.path);
        QFile::rename(other, document.path);
        return linkAsUsual(path, name);
    };
    QVERIFY(!document.replace("second"));
    QVERIFY2(document.reason.contains(u"changed"_s), qPrintable(document.reason));
    QCOMPARE(contentOf(document.path), QByteArray("other"));
    QCOMPARE(keptFiles(), QStringList());
    QVERIFY(document.contentOfRevision(document.revision).isEmpty());
}

void TestReplacedFiles::oneFileIsReplacedAfterTheOther()
{
    Fixture document;
    std::future<bool> other;
    QString reasonOfOther;
    std::future_status statusWithin = std::future_status::ready;
    linkInstead = [&](const char *path, const char *name) {
        if (!other.valid()) {
            other = std::async(std::launch::async, [&] {
                pdfcore::AtomicFile file(document.path);
                return file.open(&reasonOfOther) && file.device().write("third") == 5 &&
                       file.finishWriting(&reasonOfOther) &&
                       pdfcore::Engine::instance().revisions().replaceTarget(file, &reasonOfOther);
            });
            statusWithin = other.wait_for(kPatience);
        }
        return linkAsUsual(path, name);
    };
    QVERIFY2(document.replace("second"), qPrintable(document.reason));
    QCOMPARE(statusWithin, std::future_status::timeout);
    QVERIFY2(other.get(), qPrintable(reasonOfOther));
    QCOMPARE(contentOf(document.path), QByteArray("third"));
    QCOMPARE(document.contentOfRevision(document.revision), QByteArray("first"));
}

void TestReplacedFiles::failedCopiesLeaveNothingBehind()
{
    Fixture document;
    QStringList tried;
    linkInstead = [&tried](const char * /*path*/, const char *name) {
        // A name that is taken cannot be copied to either.
        tried.append(QFile::decodeName(name));
        PdfFixture::write(tried.constLast(), "half");
        errno = EXDEV;
        return -1;
    };
    QVERIFY(!document.replace("second"));
    QVERIFY(!tried.isEmpty());
    QVERIFY(!document.reason.isEmpty());
    QCOMPARE(keptFiles(), QStringList());
    QCOMPARE(contentOf(document.path), QByteArray("first"));
    QCOMPARE(document.contentOfRevision(document.revision), QByteArray("first"));
    QCOMPARE(document.folder.leftovers(), QStringList());
}

void TestReplacedFiles::contentIsOnTheDiskBeforeItTakesThePlace()
{
    Fixture document;
    QList<Flush> flushes;
    beforeFlush = [&](int file) {
        const QString name = QFile::symLinkTarget(u"/proc/self/fd/%1"_s.arg(file));
        flushes.append({name, contentOf(document.path)});
    };
    pdfcore::AtomicFile file(document.path);
    QString reason;
    QVERIFY(file.open(&reason));
    QCOMPARE(file.device().write("second"), 6);
    QVERIFY(file.finishWriting(&reason));
    const QString temporary = file.temporaryPath();
    QVERIFY(file.commit(&reason));
    const QString folder = QFileInfo(document.path).absolutePath();
    QCOMPARE(flushes.size(), 2);
    QCOMPARE(flushes.at(0).name, temporary);
    QCOMPARE(flushes.at(0).targetThen, QByteArray("first"));
    QCOMPARE(flushes.at(1).name, folder);
    QCOMPARE(flushes.at(1).targetThen, QByteArray("second"));
}

QTEST_GUILESS_MAIN(TestReplacedFiles)
#include "tst_replaced_files.moc"
