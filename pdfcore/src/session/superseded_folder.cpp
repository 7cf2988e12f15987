// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/superseded_folder.h"

#include "pdfcore/src/base/platform_file.h"
#include "pdfcore/src/session/session_pool.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUuid>

namespace pdfcore {

namespace {

constexpr QFileDevice::Permissions kOwnerOnly =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;

/// For so long, a folder without a proper lock may belong to a process that is just making it.
constexpr qint64 kStartingSeconds = 3600;

const QString kLockName = QStringLiteral("in-use.lock");

/// Folders that hold the folders of the processes, the preferred one first: the one for cached data
/// is most likely on the disk that the user's documents are on.
QStringList parents()
{
    QStringList found;
    for (const auto location : {QStandardPaths::CacheLocation, QStandardPaths::TempLocation}) {
        const QString base = QStandardPaths::writableLocation(location);
        if (!base.isEmpty()) {
            found.append(base + QStringLiteral("/quillora-sources"));
        }
    }
    return found;
}

std::unique_ptr<QLockFile> lockOf(const QString &folder)
{
    auto lock = std::make_unique<QLockFile>(folder + QLatin1Char('/') + kLockName);
    lock->setStaleLockTime(0);
    return lock;
}

} // namespace

SupersededFolder::SupersededFolder(SessionPool &sessions)
    : m_sessions(sessions)
    , m_places(static_cast<std::size_t>(parents().size()))
{}

SupersededFolder::~SupersededFolder()
{
    m_sessions.closeIdle();
    for (Place &place : m_places) {
        if (place.path.isEmpty()) {
            continue;
        }
        // The lock goes last, so that what cannot be removed now is still known as left over.
        QDir folder(place.path);
        const QStringList files = folder.entryList({QStringLiteral("*.pdf")}, QDir::Files);
        for (const QString &file : files) {
            folder.remove(file);
        }
        if (!folder.entryList({QStringLiteral("*.pdf")}, QDir::Files).isEmpty()) {
            continue;
        }
        place.lock->unlock();
        folder.removeRecursively();
    }
}

QString SupersededFolder::keep(const QString &path, QString *reason)
{
    const QStringList names = newNames();
    for (const QString &name : names) {
        if (linkFile(path, name)) {
            return name;
        }
    }
    *reason = QStringLiteral("There is no place to keep the old content of the file.");
    for (const QString &name : names) {
        QFile original(path);
        if (original.copy(name)) {
            QFile::setPermissions(name, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
            return name;
        }
        *reason = original.errorString();
        QFile::remove(name);
    }
    return {};
}

QStringList SupersededFolder::newNames()
{
    const QStringList folders = parents();
    const std::lock_guard lock(m_mutex);
    QStringList names;
    ++m_files;
    for (std::size_t i = 0; i < m_places.size(); ++i) {
        if (prepare(m_places[i], folders.value(static_cast<qsizetype>(i)))) {
            names.append(QStringLiteral("%1/%2.pdf").arg(m_places[i].path).arg(m_files));
        }
    }
    return names;
}

bool SupersededFolder::prepare(Place &place, const QString &parent)
{
    // Cached data may be cleared away at any time.
    if (!place.path.isEmpty() && QFileInfo(place.path).isDir()) {
        return true;
    }
    place = {};
    if (parent.isEmpty() || !QDir().mkpath(parent)) {
        return false;
    }
    const QString path =
        parent + QLatin1Char('/') + QUuid::createUuid().toString(QUuid::WithoutBraces);
    if (!QDir().mkdir(path, kOwnerOnly)) {
        return false;
    }
    auto lock = lockOf(path);
    if (!lock->tryLock()) {
        QDir(path).removeRecursively();
        return false;
    }
    place.path = path;
    place.lock = std::move(lock);
    return true;
}

void SupersededFolder::removeLeftOvers()
{
    for (const QString &parent : parents()) {
        const QFileInfoList folders =
            QDir(parent).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
        for (const QFileInfo &folder : folders) {
            const QString path = folder.absoluteFilePath();
            const auto lock = lockOf(path);
            qint64 process = 0;
            QString host;
            QString program;
            if (lock->getLockInfo(&process, &host, &program)) {
                // A process that lives holds its lock.
                if (!lock->tryLock()) {
                    continue;
                }
                lock->unlock();
            } else if (folder.lastModified().secsTo(QDateTime::currentDateTime()) <
                       kStartingSeconds) {
                continue;
            }
            QDir(path).removeRecursively();
        }
    }
}

} // namespace pdfcore
