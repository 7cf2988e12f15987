// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/base/atomic_file.h"

#include "pdfcore/src/base/platform_file.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

namespace pdfcore {

namespace {

/// The write bits of the file itself. What they mean for the user who asks is not among them: an
/// administrator may write to every file, but a read-only one is not meant to be replaced.
constexpr QFileDevice::Permissions kAnyWrite =
    QFileDevice::WriteOwner | QFileDevice::WriteGroup | QFileDevice::WriteOther;

/// Names that are tried for the temporary file.
constexpr int kMaxNames = 100;

/// The file that a write to `path` means: a chain of links is followed, also to a missing end.
QString resolvedTarget(const QString &path)
{
    constexpr int kMaxLinks = 40;
    QString target = QFileInfo(path).absoluteFilePath();
    for (int i = 0; i < kMaxLinks; ++i) {
        const QFileInfo info(target);
        if (!info.isSymbolicLink()) {
            break;
        }
        target = info.symLinkTarget();
    }
    return target;
}

} // namespace

AtomicFile::AtomicFile(const QString &target, Flush flush, Existing existing)
    : m_target(existing == Existing::Replace ? resolvedTarget(target)
                                             : QFileInfo(target).absoluteFilePath())
    , m_flush(flush)
    , m_existing(existing)
{}

AtomicFile::~AtomicFile()
{
    if (m_pending) {
        // QFile::remove() leaves a file that cannot be closed in order, as on a full disk.
        const QString path = m_file.fileName();
        m_file.close();
        QFile::remove(path);
    }
}

bool AtomicFile::open(QString *reason)
{
    const QFileInfo info(m_target);
    if (m_existing == Existing::Keep) {
        return createBeside(info.absolutePath(), reason);
    }
    if (info.isSymbolicLink()) {
        *reason = QStringLiteral("The target is a link that leads back to itself.");
        return false;
    }
    if (!info.exists()) {
        return createBeside(info.absolutePath(), reason);
    }
    if (!info.isFile()) {
        *reason = QStringLiteral("The target is not a file.");
        return false;
    }
    m_flush = Flush::First;
    const QFileDevice::Permissions permissions = info.permissions();
    if (!(permissions & kAnyWrite) || !info.isWritable()) {
        *reason = QStringLiteral("The target is read-only.");
        return false;
    }
    if (!createBeside(info.absolutePath(), reason)) {
        return false;
    }
    if (!m_file.setPermissions(permissions)) {
        *reason = m_file.errorString();
        return false;
    }
    return true;
}

bool AtomicFile::createBeside(const QString &folder, QString *reason)
{
    // The name does not grow with the target's, which may be as long as the system allows.
    for (int i = 0; i < kMaxNames; ++i) {
        const QString name =
            QStringLiteral(".quillora-%1.tmp")
                .arg(QRandomGenerator::global()->generate64(), 16, 36, QLatin1Char('0'));
        m_file.setFileName(QDir(folder).filePath(name));
        if (m_file.exists()) {
            continue;
        }
        if (m_file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            m_pending = true;
            return true;
        }
        break;
    }
    *reason = m_file.errorString();
    return false;
}

bool AtomicFile::finishWriting(QString *reason)
{
    const bool isWritten = isForCallerToFlush() ? m_file.flush() : syncToDisk(m_file);
    if (!isWritten || m_file.error() != QFileDevice::NoError) {
        *reason = m_file.errorString();
        return false;
    }
    m_file.close();
    return true;
}

bool AtomicFile::commit(QString *reason)
{
    m_isTaken = false;
    const bool isMoved = m_existing == Existing::Replace
                             ? replaceFile(m_file.fileName(), m_target, reason)
                             : placeFile(m_file.fileName(), m_target, &m_isTaken, reason);
    if (!isMoved) {
        return false;
    }
    m_pending = false;
    if (!isForCallerToFlush()) {
        syncFolder(QFileInfo(m_target).absolutePath());
    }
    return true;
}

} // namespace pdfcore
