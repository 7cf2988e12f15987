#include "pdfcore/src/source_files.h"

#include "pdfcore/src/aside_folder.h"
#include "pdfcore/src/atomic_file.h"
#include "pdfcore/src/session_pool.h"

#include <QFile>

#include <utility>

namespace pdfcore {

/// What a state of a file is and where it is.
struct SourceContent
{
    FileIdentity file;
    int generation = 0;

    mutable std::mutex mutex; ///< Guards what follows.
    FileIdentity aside;       ///< Without a path while the content is in the file itself.

    [[nodiscard]] FileIdentity place() const
    {
        const std::lock_guard lock(mutex);
        return aside.path.isEmpty() ? file : aside;
    }
    [[nodiscard]] bool isInFile(const FileIdentity &now) const
    {
        const std::lock_guard lock(mutex);
        return aside.path.isEmpty() && file.isSameState(now);
    }
};

SourceFiles &SourceFiles::instance()
{
    static SourceFiles files;
    return files;
}

PdfSourceFilePtr SourceFiles::use(const FileIdentity &file)
{
    const QString key = comparablePath(file.path);
    States looked; // Whichever goes with this list goes after the lock.
    const std::lock_guard lock(m_mutex);
    auto [entry, end] = m_states.equal_range(key);
    while (entry != end) {
        PdfSourceFilePtr state = looked.emplace_back(entry->second.lock());
        if (!state) {
            entry = m_states.erase(entry);
            continue;
        }
        if (state->m_content->isInFile(file))
            return state;
        ++entry;
    }
    auto content = std::make_unique<SourceContent>();
    content->file = file;
    content->generation = m_generations[file.path]++;
    PdfSourceFilePtr state(new PdfSourceFile(std::move(content)));
    m_states.emplace(key, state);
    return state;
}

QString SourceFiles::locate(const PdfSourcePage &page, EngineError *outcome)
{
    *outcome = {};
    if (!page.source)
        return page.filePath;
    FileIdentity place = page.source->m_content->place();
    FileIdentity now = FileIdentity::of(place.path);
    while (!now.isSameState(place)) {
        // The content may have been set aside, and its file replaced, since its place was asked
        // for.
        const FileIdentity later = page.source->m_content->place();
        if (later.path == place.path)
            break;
        place = later;
        now = FileIdentity::of(place.path);
    }
    if (now.isSameState(place))
        return place.path;
    *outcome = {PdfBackendError::FileNotFound,
                now.exists() ? QStringLiteral("The file was changed by another program.")
                             : QStringLiteral("There is no such file.")};
    return {};
}

bool SourceFiles::replaceTarget(AtomicFile &file, QString *reason)
{
    const std::lock_guard lock(m_replacing);
    const SessionPool::FileClosure closure(SessionPool::instance(), file.target());
    States changed;
    if (!setAside(file.target(), &changed, reason))
        return false;
    if (file.commit(reason))
        return true;
    takeBack(changed);
    return false;
}

bool SourceFiles::setAside(const QString &target, States *changed, QString *reason)
{
    const FileIdentity now = FileIdentity::of(target);
    if (!now.exists())
        return true;
    for (const PdfSourceFilePtr &state : statesInUse(target)) {
        SourceContent &content = *state->m_content;
        if (!content.isInFile(now))
            continue;
        const QString kept = AsideFolder::instance().keep(target, reason);
        const FileIdentity aside = FileIdentity::of(kept);
        const bool isWhole =
            aside.size == now.size && FileIdentity::of(target).isSameState(content.file);
        if (kept.isEmpty() || !isWhole) {
            if (!kept.isEmpty()) {
                QFile::remove(kept);
                *reason = QStringLiteral("The file was changed by another program.");
            }
            takeBack(*changed);
            return false;
        }
        changed->push_back(state);
        const std::lock_guard lock(content.mutex);
        content.aside = aside;
    }
    return true;
}

void SourceFiles::takeBack(const States &states)
{
    for (const PdfSourceFilePtr &state : states) {
        SourceContent &content = *state->m_content;
        FileIdentity aside;
        {
            const std::lock_guard lock(content.mutex);
            aside = std::exchange(content.aside, {});
        }
        SessionPool::instance().closeIdle(aside.path);
        QFile::remove(aside.path);
    }
}

SourceFiles::States SourceFiles::statesInUse(const QString &path)
{
    States states;
    const std::lock_guard lock(m_mutex);
    const auto [first, end] = m_states.equal_range(comparablePath(path));
    for (auto entry = first; entry != end; ++entry) {
        if (PdfSourceFilePtr state = entry->second.lock())
            states.push_back(std::move(state));
    }
    return states;
}

} // namespace pdfcore

PdfSourceFile::PdfSourceFile(std::unique_ptr<pdfcore::SourceContent> content)
    : m_content(std::move(content))
{}

PdfSourceFile::~PdfSourceFile()
{
    const QString &aside = m_content->aside.path;
    if (aside.isEmpty())
        return;
    // A session that is in use keeps the file open, which some systems do not let go of; the folder
    // goes in the end.
    pdfcore::SessionPool::instance().closeIdle(aside);
    QFile::remove(aside);
}

QString PdfSourceFile::path() const
{
    return m_content->file.path;
}

int PdfSourceFile::generation() const
{
    return m_content->generation;
}

void PdfSourceFile::removeLeftOvers()
{
    pdfcore::AsideFolder::removeLeftOvers();
}
