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

bool replaceFile(const QString &from, const QString &to, QString *reason)
{
#ifdef Q_OS_WIN
    const auto native = [](const QString &path) {
        return extendedWindowsPath(QDir(path).absolutePath()).toStdWString();
    };
    if (MoveFileExW(native(from).c_str(), native(to).c_str(),
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
