#include "pdfcore/src/aside_folder.h"

#include "pdfcore/src/platform_file.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QUuid>

namespace pdfcore {

namespace {

constexpr QFileDevice::Permissions kOwnerOnly =
    QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner;

const QString kLockName = QStringLiteral("in-use.lock");

/// Folders that hold the folders of the processes, the preferred one first: the one for cached data
/// is most likely on the disk that the user's documents are on.
QStringList parents()
{
    QStringList found;
    for (const auto location : {QStandardPaths::CacheLocation, QStandardPaths::TempLocation}) {
        const QString base = QStandardPaths::writableLocation(location);
        if (!base.isEmpty())
            found.append(base + QStringLiteral("/quillora-sources"));
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

AsideFolder &AsideFolder::instance()
{
    static AsideFolder folder;
    return folder;
}

AsideFolder::~AsideFolder()
{
    if (m_path.isEmpty())
        return;
    m_lock->unlock();
    QDir(m_path).removeRecursively();
}

QString AsideFolder::keep(const QString &path, QString *reason)
{
    QString kept;
    {
        const std::lock_guard lock(m_mutex);
        if (!prepare(reason))
            return {};
        kept = QStringLiteral("%1/%2.pdf").arg(m_path).arg(++m_files);
    }
    if (linkFile(path, kept))
        return kept;
    QFile source(path);
    if (source.copy(kept)) {
        QFile::setPermissions(kept, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        return kept;
    }
    *reason = source.errorString();
    QFile::remove(kept);
    return {};
}

bool AsideFolder::prepare(QString *reason)
{
    if (!m_path.isEmpty())
        return true;
    for (const QString &parent : parents()) {
        const QString path =
            parent + QLatin1Char('/') + QUuid::createUuid().toString(QUuid::WithoutBraces);
        if (!QDir().mkpath(path))
            continue;
        QFile::setPermissions(path, kOwnerOnly);
        auto lock = lockOf(path);
        if (lock->tryLock()) {
            m_path = path;
            m_lock = std::move(lock);
            return true;
        }
        QDir(path).removeRecursively();
    }
    *reason = QStringLiteral("There is no place to keep the old content of the file.");
    return false;
}

void AsideFolder::removeLeftOvers()
{
    for (const QString &parent : parents()) {
        const QStringList names = QDir(parent).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        for (const QString &name : names) {
            const QString path = parent + QLatin1Char('/') + name;
            // A process that lives holds the lock; one without a lock file is just starting.
            if (!QFile::exists(path + QLatin1Char('/') + kLockName))
                continue;
            const auto lock = lockOf(path);
            if (!lock->tryLock())
                continue;
            lock->unlock();
            QDir(path).removeRecursively();
        }
    }
}

} // namespace pdfcore
