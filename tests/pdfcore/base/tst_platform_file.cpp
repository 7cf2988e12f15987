// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/base/platform_file.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_LINUX
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

#if defined(__GLIBC__) && defined(RENAME_NOREPLACE)
#define QUILLORA_TEST_PLACES_WITHOUT_HELP 1

namespace {

/// What the file system says to those who rename without replacing, and to those who link; 0 where
/// it does it.
int renameError = 0;
int linkError = 0;

} // namespace

// In this program they stand before those of the C library, for file systems that cannot.
extern "C" int renameat2(int fromFolder, const char *from, int toFolder, const char *to,
                         unsigned int flags) noexcept
{
    if (renameError != 0) {
        errno = renameError;
        return -1;
    }
    return static_cast<int>(syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

extern "C" int link(const char *from, const char *to) noexcept
{
    if (linkError != 0) {
        errno = linkError;
        return -1;
    }
    return linkat(AT_FDCWD, from, AT_FDCWD, to, 0);
}
#endif

namespace {

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

/// What the engine asks of the system beyond Qt.
class TestPlatformFile : public QObject
{
    Q_OBJECT

private slots:
    void extendedWindowsPath_data();
    void extendedWindowsPath();
    void replacingTakesThePlaceOfTheOther();
    void replacingWhatIsNotThereFails();
    void replacingAFolderLeavesBothAlone();
    void placedFileHasItsNameOnly_data() { addWays(); }
    void placedFileHasItsNameOnly();
    void takenPlaceStaysAsItIs_data() { addWays(); }
    void takenPlaceStaysAsItIs();
    void placingWhatIsNotThereLeavesNothing_data() { addWays(); }
    void placingWhatIsNotThereLeavesNothing();
    void placingInAFolderThatIsNotThereFails_data() { addWays(); }
    void placingInAFolderThatIsNotThereFails();
    void cleanup() { useWay(0, 0); }

private:
    static void addWays();
    static void useWay(int noRename, int noLink);
    /// Takes the way of the row, and a folder of its own.
    [[nodiscard]] QString folderOfRow();

    QTemporaryDir m_folder;
    int m_folders = 0;
};

void TestPlatformFile::extendedWindowsPath_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("extended");
    QTest::newRow("drive") << u"C:/Users/李/文件.pdf"_s << uR"(\\?\C:\Users\李\文件.pdf)"_s;
    QTest::newRow("native drive") << uR"(C:\a b.pdf)"_s << uR"(\\?\C:\a b.pdf)"_s;
    QTest::newRow("share") << u"//server/share/a.pdf"_s << uR"(\\?\UNC\server\share\a.pdf)"_s;
    QTest::newRow("native share") << uR"(\\server\share\a.pdf)"_s
                                  << uR"(\\?\UNC\server\share\a.pdf)"_s;
    QTest::newRow("extended") << u"//?/C:/a.pdf"_s << uR"(\\?\C:\a.pdf)"_s;
    QTest::newRow("extended share")
        << uR"(\\?\UNC\server\share\a.pdf)"_s << uR"(\\?\UNC\server\share\a.pdf)"_s;
}

void TestPlatformFile::extendedWindowsPath()
{
    QFETCH(const QString, path);
    QFETCH(const QString, extended);
    QCOMPARE(pdfcore::extendedWindowsPath(path), extended);
}

void TestPlatformFile::replacingTakesThePlaceOfTheOther()
{
    const QString from = m_folder.filePath(u"from.tmp"_s);
    const QString to = m_folder.filePath(u"到 ü.pdf"_s);
    QString reason;
    for (const char *content : {"first", "second"}) {
        QVERIFY(write(from, content));
        QVERIFY2(pdfcore::replaceFile(from, to, &reason), qPrintable(reason));
        QCOMPARE(contentOf(to), content);
        QVERIFY(!QFile::exists(from));
    }
}

void TestPlatformFile::replacingWhatIsNotThereFails()
{
    const QString to = m_folder.filePath(u"kept.pdf"_s);
    QVERIFY(write(to, "kept"));
    QString reason;
    QVERIFY(!pdfcore::replaceFile(m_folder.filePath(u"absent.tmp"_s), to, &reason));
    QVERIFY(!reason.isEmpty());
    QCOMPARE(contentOf(to), "kept");
}

void TestPlatformFile::replacingAFolderLeavesBothAlone()
{
    const QString from = m_folder.filePath(u"file.tmp"_s);
    const QString to = m_folder.filePath(u"folder"_s);
    QVERIFY(write(from, "new"));
    QVERIFY(QDir().mkpath(to + u"/inside"_s));
    QString reason;
    QVERIFY(!pdfcore::replaceFile(from, to, &reason));
    QVERIFY(!reason.isEmpty());
    QCOMPARE(contentOf(from), "new");
    QVERIFY(QDir(to + u"/inside"_s).exists());
}

void TestPlatformFile::addWays()
{
    QTest::addColumn<int>("noRename");
    QTest::addColumn<int>("noLink");
    QTest::newRow("all that the system has") << 0 << 0;
#ifdef QUILLORA_TEST_PLACES_WITHOUT_HELP
    QTest::newRow("file system without such a rename") << EINVAL << 0;
    QTest::newRow("system without such a rename") << ENOSYS << 0;
    QTest::newRow("file system without links") << EINVAL << EPERM;
    QTest::newRow("file system that knows no links") << EINVAL << EOPNOTSUPP;
#endif
}

void TestPlatformFile::useWay(int noRename, int noLink)
{
#ifdef QUILLORA_TEST_PLACES_WITHOUT_HELP
    renameError = noRename;
    linkError = noLink;
#else
    Q_UNUSED(noRename)
    Q_UNUSED(noLink)
#endif
}

QString TestPlatformFile::folderOfRow()
{
    const QString folder = m_folder.filePath(QString::number(++m_folders));
    if (!QDir().mkpath(folder)) {
        return {};
    }
    QFETCH(const int, noRename);
    QFETCH(const int, noLink);
    useWay(noRename, noLink);
    return folder;
}

void TestPlatformFile::placedFileHasItsNameOnly()
{
    const QDir folder(folderOfRow());
    QVERIFY(write(folder.filePath(u"from.tmp"_s), "content"));
    bool isTaken = true;
    QString reason;
    QVERIFY2(pdfcore::placeFile(folder.filePath(u"from.tmp"_s), folder.filePath(u"到 ü.pdf"_s),
                                &isTaken, &reason),
             qPrintable(reason));
    QVERIFY(!isTaken);
    QCOMPARE(folder.entryList(QDir::Files), QStringList{u"到 ü.pdf"_s});
    QCOMPARE(contentOf(folder.filePath(u"到 ü.pdf"_s)), "content");
}

void TestPlatformFile::takenPlaceStaysAsItIs()
{
    const QDir folder(folderOfRow());
    QVERIFY(write(folder.filePath(u"from.tmp"_s), "new"));
    QVERIFY(write(folder.filePath(u"taken.pdf"_s), "old"));
    QVERIFY(folder.mkpath(u"folder/inside"_s));
    for (const QString &name : {u"taken.pdf"_s, u"folder"_s}) {
        bool isTaken = false;
        QString reason;
        QVERIFY(!pdfcore::placeFile(folder.filePath(u"from.tmp"_s), folder.filePath(name), &isTaken,
                                    &reason));
        QVERIFY(isTaken);
        QVERIFY(!reason.isEmpty());
    }
    QCOMPARE(contentOf(folder.filePath(u"from.tmp"_s)), "new");
    QCOMPARE(contentOf(folder.filePath(u"taken.pdf"_s)), "old");
    QVERIFY(folder.exists(u"folder/inside"_s));
    QCOMPARE(folder.entryList(QDir::Files), QStringList({u"from.tmp"_s, u"taken.pdf"_s}));
}

void TestPlatformFile::placingWhatIsNotThereLeavesNothing()
{
    const QDir folder(folderOfRow());
    bool isTaken = true;
    QString reason;
    QVERIFY(!pdfcore::placeFile(folder.filePath(u"absent.tmp"_s), folder.filePath(u"new.pdf"_s),
                                &isTaken, &reason));
    QVERIFY(!isTaken);
    QVERIFY(!reason.isEmpty());
    QVERIFY(folder.isEmpty());
}

void TestPlatformFile::placingInAFolderThatIsNotThereFails()
{
    const QDir folder(folderOfRow());
    QVERIFY(write(folder.filePath(u"from.tmp"_s), "kept"));
    bool isTaken = true;
    QString reason;
    QVERIFY(!pdfcore::placeFile(folder.filePath(u"from.tmp"_s),
                                folder.filePath(u"absent/new.pdf"_s), &isTaken, &reason));
    QVERIFY(!isTaken);
    QVERIFY(!reason.isEmpty());
    QCOMPARE(contentOf(folder.filePath(u"from.tmp"_s)), "kept");
}

QTEST_GUILESS_MAIN(TestPlatformFile)
#include "tst_platform_file.moc"
