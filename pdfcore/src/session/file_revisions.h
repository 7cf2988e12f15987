// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"
#include "pdfcore/pdf_file_revision.h"
#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/base/file_identity.h"

#include <QString>

#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace pdfcore {

class AtomicFile;
class SessionPool;
class SupersededFolder;

/// The revisions of files that are in use; see PdfFileRevision. Any thread.
class FileRevisions final
{
public:
    /// @param sessions    Closed before their files are replaced or removed. The revisions keep no
    ///                    hold of them, as they may outlive all else.
    /// @param superseded  Where content is kept; outlives this object.
    FileRevisions(std::shared_ptr<SessionPool> sessions, SupersededFolder &superseded);

    /// The revision that `file` identifies; the same object as long as it is in use.
    PdfFileRevisionPtr use(const FileIdentity &file);

    /// Where the revision that the page names is to be read from; empty with an error when it is
    /// neither in its file nor among superseded content. A page that names none is read from its
    /// file.
    QString locate(const PdfSourcePage &page, EngineError *outcome);

    /// Puts a finished file in the place of its target. The content of the target is kept before
    /// for each of its revisions in use. On failure everything is as it was and the reason is in
    /// `reason`.
    ///
    /// With `expected` it also fails unless the target still holds that revision, so that nothing
    /// that was put there meanwhile is lost.
    bool replaceTarget(AtomicFile &file, QString *reason, const PdfFileRevisionPtr &expected = {});

private:
    using Revisions = std::vector<PdfFileRevisionPtr>;

    /// Keeps the content of the target for its revisions in use, which get into `superseded`. On
    /// failure nothing has changed.
    bool keepSuperseded(const QString &target, Revisions *superseded, QString *reason);
    /// Takes these revisions as being in their file again.
    void takeBack(const Revisions &revisions);
    Revisions revisionsInUse(const QString &path);

    std::shared_ptr<SessionPool> m_sessions;
    SupersededFolder &m_superseded;
    std::mutex m_replacing; ///< Files are replaced one after another.
    std::mutex m_mutex;     ///< Guards what follows.
    /// By the comparable path. Those no longer in use are dropped when their file is used again.
    std::multimap<QString, std::weak_ptr<const PdfFileRevision>> m_revisions;
    /// One count for all files: a file may be reached by several spellings, which share revisions.
    int m_nextGeneration = 0;
};

} // namespace pdfcore
