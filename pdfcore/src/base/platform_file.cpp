// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/base/platform_file.h"

#include <QDir>
#include <QFile>
#include <QFileDevice>
#include <QFileInfo>
#include <QMap>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace pdfcore {

bool syncToDisk(QFileDevice &file)
{
    if (!file.flush()) {
        return false;
    }
    const int handle = file.handle();
    if (handle < 0) {
        return true;
    }
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
    if (handle < 0) {
        return;
    }
    fsync(handle);
    close(handle);
#endif
}

namespace {

bool syncFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && syncToDisk(file);
}

/// Makes sure that everything on the file system of a folder has reached the disk. False where
/// there is no such call.
bool syncFileSystem(const QString &folder)
{
#ifdef Q_OS_LINUX
    const int handle =
        open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) {
        return false;
    }
    const bool isSynced = syncfs(handle) == 0;
    close(handle);
    return isSynced;
#else
    Q_UNUSED(folder)
    return false;
#endif
}

} // namespace

QStringList syncFiles(const QStringList &paths)
{
    QMap<QString, QStringList> byFolder;
    for (const QString &path : paths) {
        byFolder[QFileInfo(path).absolutePath()].append(path);
    }
    QStringList unsynced;
    for (auto folder = byFolder.cbegin(); folder != byFolder.cend(); ++folder) {
        if (syncFileSystem(folder.key())) {
            continue;
        }
        std::copy_if(folder->begin(), folder->end(), std::back_inserter(unsynced),
                     [](const QString &path) { return !syncFile(path); });
        syncFolder(folder.key());
    }
    return unsynced;
}

QString extendedWindowsPath(const QString &path)
{
    QString native = path;
    native.replace(u'/', u'\\');
    if (native.startsWith(QLatin1String("\\\\?\\"))) {
        return native;
    }
    if (native.startsWith(QLatin1String("\\\\"))) {
        return QStringLiteral("\\\\?\\UNC\\") + native.mid(2);
    }
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
    const HANDLE file = CreateFileW(nativePath(path).c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return 0;
    }
    BY_HANDLE_FILE_INFORMATION information = {};
    const bool known = GetFileInformationByHandle(file, &information) != 0;
    CloseHandle(file);
    return known ? quint64{information.nFileIndexHigh} << 32 | information.nFileIndexLow : 0;
#else
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? quint64{status.st_ino} : 0;
#endif
}

namespace {

#ifdef Q_OS_WIN
/// Moves a file; returns what Windows says.
DWORD moveFile(const QString &from, const QString &to, DWORD flags)
{
    // Virus scanners and indexers have files open for moments.
    constexpr int kTries = 10;
    constexpr DWORD kPauseMs = 50;
    DWORD code = ERROR_SUCCESS;
    for (int i = 0; i < kTries; ++i) {
        if (MoveFileExW(nativePath(from).c_str(), nativePath(to).c_str(),
                        flags | MOVEFILE_WRITE_THROUGH) != 0) {
            return ERROR_SUCCESS;
        }
        code = GetLastError();
        if (code != ERROR_SHARING_VIOLATION && code != ERROR_ACCESS_DENIED &&
            code != ERROR_LOCK_VIOLATION) {
            break;
        }
        Sleep(kPauseMs);
    }
    return code;
}

std::error_code systemError(DWORD code)
{
    return {static_cast<int>(code), std::system_category()};
}
#else
std::error_code systemError()
{
    return {errno, std::generic_category()};
}

/// Moves a file to where there is nothing. std::errc::function_not_supported where the system or
/// the file system cannot.
std::error_code moveToFreePlace(const QByteArray &from, const QByteArray &to)
{
#ifdef RENAME_NOREPLACE
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    const std::error_code error = systemError();
    return error == std::errc::invalid_argument
               ? std::make_error_code(std::errc::function_not_supported)
               : error;
#else
    Q_UNUSED(from)
    Q_UNUSED(to)
    return std::make_error_code(std::errc::function_not_supported);
#endif
}

/// The same by a second name.
std::error_code linkToFreePlace(const QByteArray &from, const QByteArray &to)
{
    if (link(from.constData(), to.constData()) == 0) {
        unlink(from.constData());
        return {};
    }
    const std::error_code error = systemError();
    return error == std::errc::file_exists
               ? error
               : std::make_error_code(std::errc::function_not_supported);
}

/// The same over an empty file.
std::error_code moveOverHeldPlace(const QByteArray &from, const QByteArray &to)
{
    const int place = open(to.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (place < 0) {
        return systemError();
    }
    close(place);
    if (rename(from.constData(), to.constData()) == 0) {
        return {};
    }
    const std::error_code error = systemError();
    unlink(to.constData());
    return error;
}
#endif

QString describe(const std::error_code &error)
{
    return QString::fromLocal8Bit(error.message().c_str());
}

} // namespace

bool replaceFile(const QString &from, const QString &to, QString *reason)
{
#ifdef Q_OS_WIN
    const DWORD code = moveFile(from, to, MOVEFILE_REPLACE_EXISTING);
    if (code == ERROR_SUCCESS) {
        return true;
    }
    const std::error_code error = systemError(code);
#else
    std::error_code error;
    std::filesystem::rename(std::filesystem::path(QFile::encodeName(from).constData()),
                            std::filesystem::path(QFile::encodeName(to).constData()), error);
    if (!error) {
        return true;
    }
#endif
    *reason = describe(error);
    return false;
}

bool placeFile(const QString &from, const QString &to, bool *isTaken, QString *reason)
{
#ifdef Q_OS_WIN
    const DWORD code = moveFile(from, to, 0);
    const std::error_code error = systemError(code);
    // Of a folder it is only said that access is denied.
    *isTaken = code != ERROR_SUCCESS && QFileInfo::exists(to);
#else
    const QByteArray source = QFile::encodeName(from);
    const QByteArray place = QFile::encodeName(to);
    std::error_code error;
    for (const auto &move : {moveToFreePlace, linkToFreePlace, moveOverHeldPlace}) {
        error = move(source, place);
        if (error != std::errc::function_not_supported) {
            break;
        }
    }
    *isTaken = error == std::errc::file_exists;
#endif
    if (!error) {
        return true;
    }
    *reason = describe(error);
    return false;
}

} // namespace pdfcore
