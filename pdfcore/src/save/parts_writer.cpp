// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/parts_writer.h"

#include "pdfcore/src/base/platform_file.h"
#include "pdfcore/src/qpdf/qpdf_protection.h"
#include "pdfcore/src/qpdf/qpdf_source.h"
#include "pdfcore/src/save/document_extract.h"
#include "pdfcore/src/save/document_writer.h"
#include "pdfcore/src/session/engine.h"

#include <QStringList>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <exception>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <tuple>

namespace pdfcore {

namespace {

/// Files that are made of one document or extract without dividing it further, and extracts that
/// one is divided into. A fan-out between 4 and 16 costs about the same.
constexpr std::size_t kFanOut = 8;

constexpr int kMostThreads = 4;

using Files = std::vector<qsizetype>; ///< By their index.

/// The document that pages come from: its file, password and revision.
using SourceKey = std::tuple<QString, QString, const PdfFileRevision *>;

SourceKey keyOf(const PdfSourcePage &page)
{
    return {page.filePath, page.password, page.revision.get()};
}

/// The first page of the file that comes from a document, if that is so of all its pages but blank
/// ones; null otherwise.
const PdfSourcePage *onlySource(const PdfOutputFile &file)
{
    const PdfSourcePage *source = nullptr;
    for (const PdfSourcePage &page : file.pages) {
        if (isBlankPage(page)) {
            continue;
        }
        if (source != nullptr && keyOf(*source) != keyOf(page)) {
            return nullptr;
        }
        source = source != nullptr ? source : &page;
    }
    return source;
}

/// Divides the files into at most kFanOut groups of neighbours.
std::vector<Files> divided(const Files &files)
{
    const std::size_t size = std::max((files.size() + kFanOut - 1) / kFanOut, std::size_t{1});
    std::vector<Files> groups;
    for (std::size_t first = 0; first < files.size(); first += size) {
        const std::size_t end = std::min(first + size, files.size());
        groups.emplace_back(files.begin() + static_cast<std::ptrdiff_t>(first),
                            files.begin() + static_cast<std::ptrdiff_t>(end));
    }
    return groups;
}

class PartsWriter
{
public:
    explicit PartsWriter(const QList<PdfOutputFile> &files)
        : m_files(files)
        , m_outcomes(static_cast<std::size_t>(files.size()))
    {}

    std::vector<EngineError> run();

private:
    std::vector<Files> tasks() const;
    void runTasks(const std::vector<Files> &tasks);
    void runTask(const Files &files);
    void writeFrom(const DocumentExtract *extract, const Files &files, const WriteOptions &options);
    void writeEach(const Files &files, const WriteOptions &options);
    std::shared_ptr<const DocumentExtract> newExtract(const Files &files,
                                                      const DocumentExtract *from) const;

    const QList<PdfOutputFile> &m_files;
    std::vector<EngineError> m_outcomes;
    std::mutex m_mutex; ///< Guards what follows.
    std::multimap<QString, qsizetype> m_unflushed;
};

/// What threads do independently of each other: files of one document that are divided further, or
/// a single file.
std::vector<Files> PartsWriter::tasks() const
{
    std::map<SourceKey, Files> bySource;
    std::vector<Files> tasks;
    for (qsizetype i = 0; i < m_files.size(); ++i) {
        if (const PdfSourcePage *source = onlySource(m_files.at(i))) {
            bySource[keyOf(*source)].push_back(i);
        } else {
            tasks.push_back({i});
        }
    }
    for (const auto &[key, files] : bySource) {
        const std::vector<Files> groups = divided(files);
        tasks.insert(tasks.end(), groups.begin(), groups.end());
    }
    return tasks;
}

std::vector<EngineError> PartsWriter::run()
{
    runTasks(tasks());
    QStringList paths;
    for (const auto &[path, index] : m_unflushed) {
        paths.append(path);
    }
    for (const QString &path : syncFiles(paths)) {
        const auto [first, last] = m_unflushed.equal_range(path);
        for (auto file = first; file != last; ++file) {
            m_outcomes[static_cast<std::size_t>(file->second)] = {
                PdfBackendError::WriteFailed,
                QStringLiteral("It is not certain that the file is on the disk.")};
        }
    }
    return m_outcomes;
}

void PartsWriter::runTasks(const std::vector<Files> &tasks)
{
    std::atomic<std::size_t> next = 0;
    const auto work = [&] {
        for (std::size_t i = next++; i < tasks.size(); i = next++) {
            runTask(tasks[i]);
        }
    };
    const std::size_t count = std::min(
        tasks.size(),
        static_cast<std::size_t>(std::clamp(QThread::idealThreadCount(), 1, kMostThreads)));
    std::vector<std::thread> threads;
    try {
        while (threads.size() + 1 < count) {
            threads.emplace_back(work);
        }
    } catch (const std::system_error &) {
        // Those that there are do the work.
    }
    work();
    for (std::thread &thread : threads) {
        thread.join();
    }
}

void PartsWriter::runTask(const Files &files)
{
    WriteOptions options;
    options.flush = AtomicFile::Flush::Caller;
    if (files.size() == 1) {
        writeEach(files, options);
        return;
    }
    const auto extract = newExtract(files, nullptr);
    std::shared_ptr<QPDF> protection;
    if (extract && extract->isProtected()) {
        const PdfSourcePage &page = *onlySource(m_files.at(files.front()));
        EngineError outcome;
        const QString path = Engine::instance().revisions().locate(page, &outcome);
        protection = outcome.isError() ? nullptr : openQpdf(path, page.password, &outcome);
    }
    // QPDF may take a damaged file for unprotected.
    const bool hasProtection = protection && hasKey(*protection);
    if (!extract || (extract->isProtected() && !hasProtection)) {
        writeEach(files, options);
        return;
    }
    options.protection = protection.get();
    writeFrom(extract.get(), files, options);
}

/// Writes files all of whose pages are in the extract.
void PartsWriter::writeFrom(const DocumentExtract *extract, const Files &files,
                            const WriteOptions &options)
{
    WriteOptions own = options;
    own.extract = extract;
    if (files.size() <= 2 * kFanOut) {
        writeEach(files, own);
        return;
    }
    for (const Files &group : divided(files)) {
        // One that is hardly smaller would be of no use.
        const auto smaller = newExtract(group, extract);
        if (smaller && smaller->pageCount() <= extract->pageCount() / 2) {
            writeFrom(smaller.get(), group, options);
        } else {
            writeEach(group, own);
        }
    }
}

void PartsWriter::writeEach(const Files &files, const WriteOptions &options)
{
    for (const qsizetype i : files) {
        EngineError &outcome = m_outcomes[static_cast<std::size_t>(i)];
        const PdfOutputFile &file = m_files.at(i);
        QStringList unflushed;
        WriteOptions own = options;
        own.unflushed = &unflushed;
        try {
            outcome = writeDocument(file.pages, PdfPlacement::replacing(file.path), own);
        } catch (const std::exception &exception) {
            outcome = {PdfBackendError::WriteFailed, QString::fromUtf8(exception.what())};
        }
        const std::lock_guard lock(m_mutex);
        for (const QString &path : unflushed) {
            m_unflushed.emplace(path, i);
        }
    }
}

/// Null when it cannot be made; what is wrong with which page shows when the files are written.
std::shared_ptr<const DocumentExtract> PartsWriter::newExtract(const Files &files,
                                                               const DocumentExtract *from) const
{
    QList<PdfSourcePage> pages;
    for (const qsizetype i : files) {
        for (const PdfSourcePage &page : m_files.at(i).pages) {
            if (!isBlankPage(page)) {
                pages.append(page);
            }
        }
    }
    try {
        EngineError outcome;
        return DocumentExtract::of(pages, from, &outcome);
    } catch (const std::exception &) {
        return nullptr;
    }
}

} // namespace

std::vector<EngineError> writeDocuments(const QList<PdfOutputFile> &files)
{
    return PartsWriter(files).run();
}

} // namespace pdfcore
