#include "pdfcore/src/platform_file.h"

#include <QDir>
#include <QFile>
#include <QFileDevice>

#include <filesystem>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace pdfcore {

bool syncToDisk(QFileDevice &file)
{
    if (!file.flush())
        return false;
    const int handle = file.handle();
    if (handle < 0)
        return true;
#ifdef Q_OS_WIN
    return _commit(handle) == 0;
#else
    return fsync(handle) == 0;
#endif
}

void syncFolder(const QString &path)
{
#ifdef Q_OS_WIN
    Q_UNUSED(path)
#else
    const int handle =
        open(QFile::encodeName(path).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0)
        return;
    fsync(handle);
    close(handle);
#endif
}

QString extendedWindowsPath(const QString &path)
{
    QString native = path;
    native.replace(u'/', u'\\');
    if (native.startsWith(QLatin1String("\\\\?\\")))
        return native;
    if (native.startsWith(QLatin1String("\\\\")))
        return QStringLiteral("\\\\?\\UNC\\") + native.mid(2);
    return QStringLiteral("\\\\?\\") + native;
}

#ifdef Q_OS_WIN
namespace {

std::wstring nativePath(const QString &path)
{
    return extendedWindowsPath(QDir(path).absolutePath()).toStdWString();
}

} // namespace
#endif

bool linkFile(const QString &path, const QString &name)
{
#ifdef Q_OS_WIN
    return CreateHardLinkW(nativePath(name).c_str(), nativePath(path).c_str(), nullptr) != 0;
#else
    return link(QFile::encodeName(path).constData(), QFile::encodeName(name).constData()) == 0;
#endif
}

quint64 fileNumber(const QString &path)
{
#ifdef Q_OS_WIN
    Q_UNUSED(path)
    return 0;
#else
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? quint64{status.st_ino} : 0;
#endif
}

bool replaceFile(const QString &from, const QString &to, QString *reason)
{
#ifdef Q_OS_WIN
    if (MoveFileExW(nativePath(from).c_str(), nativePath(to).c_str(),
                    MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0)
        return true;
    const std::error_code error(static_cast<int>(GetLastError()), std::system_category());
#else
    std::error_code error;
    std::filesystem::rename(std::filesystem::path(QFile::encodeName(from).constData()),
                            std::filesystem::path(QFile::encodeName(to).constData()), error);
    if (!error)
        return true;
#endif
    *reason = QString::fromLocal8Bit(error.message().c_str());
    return false;
}

} // namespace pdfcore
