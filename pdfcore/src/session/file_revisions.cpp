// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/session/file_revisions.h"

#include "pdfcore/src/base/atomic_file.h"
#include "pdfcore/src/session/session_pool.h"
#include "pdfcore/src/session/superseded_folder.h"

#include <QFile>

#include <utility>

namespace pdfcore {

/// What a revision of a file is, and where its content is.
struct RevisionContent
{
    FileIdentity file;
    int generation = 0;
    std::weak_ptr<SessionPool> sessions; ///< That may have the content open.

    mutable std::mutex mutex; ///< Guards what follows.
    FileIdentity superseded;  ///< Without a path while the content is in the file itself.

    [[nodiscard]] FileIdentity place() const
    {
        const std::lock_guard lock(mutex);
        return superseded.path.isEmpty() ? file : superseded;
    }
    [[nodiscard]] bool isInFile(const FileIdentity &now) const
    {
        const std::lock_guard lock(mutex);
        return superseded.path.isEmpty() && file.isSameRevision(now);
    }
};

FileRevisions::FileRevisions(std::shared_ptr<SessionPool> sessions, SupersededFolder &superseded)
    : m_sessions(std::move(sessions))
    , m_superseded(superseded)
{}

PdfFileRevisionPtr FileRevisions::use(const FileIdentity &file)
{
    const QString key = comparablePath(file.path);
    Revisions looked; // Whichever goes with this list goes after the lock.
    const std::lock_guard lock(m_mutex);
    auto [entry, end] = m_revisions.equal_range(key);
    while (entry != end) {
        PdfFileRevisionPtr revision = looked.emplace_back(entry->second.lock());
        if (!revision) {
            entry = m_revisions.erase(entry);
            continue;
        }
        if (revision->m_content->isInFile(file)) {
            return revision;
        }
        ++entry;
    }
    auto content = std::make_unique<RevisionContent>();
    content->file = file;
    content->generation = m_nextGeneration++;
    content->sessions = m_sessions;
    PdfFileRevisionPtr revision(new PdfFileRevision(std::move(content)));
    m_revisions.emplace(key, revision);
    return revision;
}

QString FileRevisions::locate(const PdfSourcePage &page, EngineError *outcome)
{
    *outcome = {};
    if (!page.revision) {
        return page.filePath;
    }
    FileIdentity place = page.revision->m_content->place();
    FileIdentity now = FileIdentity::of(place.path);
    while (!now.isSameRevision(place)) {
        // The revision may have been superseded since its place was asked for.
        const FileIdentity later = page.revision->m_content->place();
        if (later.path == place.path) {
            break;
        }
        place = later;
        now = FileIdentity::of(place.path);
    }
    if (now.isSameRevision(place)) {
        return place.path;
    }
    *outcome = {PdfBackendError::FileNotFound,
                now.exists() ? QStringLiteral("The file was changed by another program.")
                             : QStringLiteral("There is no such file.")};
    return {};
}

bool FileRevisions::replaceTarget(AtomicFile &file, QString *reason,
                                  const PdfFileRevisionPtr &expected)
{
    const std::lock_guard lock(m_replacing);
    if (expected && !expected->m_content->isInFile(FileIdentity::of(file.target()))) {
        *reason = QStringLiteral("The file was changed meanwhile.");
        return false;
    }
    const SessionPool::FileClosure closure(*m_sessions, file.target());
    Revisions superseded;
    if (!keepSuperseded(file.target(), &superseded, reason)) {
        return false;
    }
    if (file.commit(reason)) {
        return true;
    }
    takeBack(superseded);
    return false;
}

bool FileRevisions::keepSuperseded(const QString &target, Revisions *superseded, QString *reason)
{
    const FileIdentity now = FileIdentity::of(target);
    if (!now.exists()) {
        return true;
    }
    for (const PdfFileRevisionPtr &revision : revisionsInUse(target)) {
        RevisionContent &content = *revision->m_content;
        if (!content.isInFile(now)) {
            continue;
        }
        const QString kept = m_superseded.keep(target, reason);
        const FileIdentity place = FileIdentity::of(kept);
        const bool isWhole =
            place.size == now.size && FileIdentity::of(target).isSameRevision(content.file);
        if (kept.isEmpty() || !isWhole) {
            if (!kept.isEmpty()) {
                QFile::remove(kept);
                *reason = QStringLiteral("The file was changed by another program.");
            }
            takeBack(*superseded);
            return false;
        }
        superseded->push_back(revision);
        const std::lock_guard lock(content.mutex);
        content.superseded = place;
    }
    return true;
}

void FileRevisions::takeBack(const Revisions &revisions)
{
    for (const PdfFileRevisionPtr &revision : revisions) {
        RevisionContent &content = *revision->m_content;
        FileIdentity superseded;
        {
            const std::lock_guard lock(content.mutex);
            superseded = std::exchange(content.superseded, {});
        }
        m_sessions->closeIdle(superseded.path);
        QFile::remove(superseded.path);
    }
}

FileRevisions::Revisions FileRevisions::revisionsInUse(const QString &path)
{
    Revisions revisions;
    const std::lock_guard lock(m_mutex);
    const auto [first, end] = m_revisions.equal_range(comparablePath(path));
    for (auto entry = first; entry != end; ++entry) {
        if (PdfFileRevisionPtr revision = entry->second.lock()) {
            revisions.push_back(std::move(revision));
        }
    }
    return revisions;
}

} // namespace pdfcore

PdfFileRevision::PdfFileRevision(std::unique_ptr<pdfcore::RevisionContent> content)
    : m_content(std::move(content))
{}

PdfFileRevision::~PdfFileRevision()
{
    const QString &superseded = m_content->superseded.path;
    if (superseded.isEmpty()) {
        return;
    }
    // A session that is in use keeps the file open, which some systems do not let go of; the folder
    // goes in the end.
    if (const auto sessions = m_content->sessions.lock()) {
        sessions->closeIdle(superseded);
    }
    QFile::remove(superseded);
}

QString PdfFileRevision::path() const
{
    return m_content->file.path;
}

int PdfFileRevision::generation() const
{
    return m_content->generation;
}

void PdfFileRevision::removeLeftOvers()
{
    pdfcore::SupersededFolder::removeLeftOvers();
}
