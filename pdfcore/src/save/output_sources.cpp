// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/output_sources.h"

#include "pdfcore/src/base/file_identity.h"
#include "pdfcore/src/qpdf/qpdf_source.h"
#include "pdfcore/src/session/document_session.h"
#include "pdfcore/src/session/engine.h"

#include <QTemporaryFile>
#include <QVersionNumber>

#include <exception>

namespace pdfcore {

namespace {

/// Writes what MuPDF makes of a damaged file to a temporary file; null when it cannot.
std::unique_ptr<QTemporaryFile> newRepairedFile(const QString &path, const QString &password)
{
    auto file = std::make_unique<QTemporaryFile>();
    if (!file->open()) {
        return nullptr;
    }
    // A session of its own: those of the pool have pages that were changed in memory.
    EngineError outcome;
    const auto session = DocumentSession::open(FileIdentity::of(path), password, {}, &outcome);
    if (!session || !session->writeRepaired(*file) || !file->flush()) {
        return nullptr;
    }
    return file;
}

/// The PDF version that a document says it has: in its first line or, when a later change needed a
/// higher one, in its catalogue (ISO 32000-2, 7.5.2 and 7.7.2).
PDFVersion versionOf(QPDF &document)
{
    PDFVersion version = document.getVersionAsPDFVersion();
    QPDFObjectHandle later = document.getRoot().getKey("/Version");
    if (!later.isName()) {
        return version;
    }
    const auto number =
        QVersionNumber::fromString(QString::fromStdString(later.getName().substr(1)));
    if (number.segmentCount() == 2 && (number.majorVersion() == 1 || number.majorVersion() == 2)) {
        version.updateIfGreater(PDFVersion(number.majorVersion(), number.minorVersion()));
    }
    return version;
}

/// Finds the pages of an open document; null with an error when it has no catalogue.
std::unique_ptr<SourceDocument> newSource(const std::shared_ptr<QPDF> &document,
                                          EngineError *outcome)
{
    if (!document) {
        return nullptr;
    }
    try {
        return std::make_unique<SourceDocument>(document);
    } catch (const std::exception &exception) {
        *outcome = qpdfReadError(exception);
        return nullptr;
    }
}

/// The pages that the document has to those who look at it; null when it cannot be looked at.
std::shared_ptr<const PageTree> shownPages(const QString &path, const QString &password)
{
    EngineError outcome;
    const SessionPool::Lease session =
        Engine::instance().sessions().acquire(path, password, &outcome);
    return session ? session->pages() : nullptr;
}

} // namespace

OutputSources::OutputSources(const std::shared_ptr<QPDF> &only)
{
    if (only) {
        m_only = std::make_unique<OpenFile>();
        m_only->document = std::make_unique<SourceDocument>(only);
    }
}

OutputSources::~OutputSources() = default;

SourceDocument *OutputSources::get(const PdfSourcePage &page, EngineError *outcome)
{
    const OpenFile *open = file(page, outcome);
    if (open == nullptr) {
        return nullptr;
    }
    SourceDocument *document = open->document.get();
    if (page.pageIndex >= 0 && page.pageIndex < document->pageCount()) {
        return document;
    }
    *outcome = {PdfBackendError::InvalidDocument,
                QStringLiteral("The source has no page %1.").arg(qint64{page.pageIndex} + 1)};
    return nullptr;
}

OutputSources::OpenFile *OutputSources::file(const PdfSourcePage &page, EngineError *outcome)
{
    if (m_only) {
        return m_only.get();
    }
    const QString path = Engine::instance().revisions().locate(page, outcome);
    if (outcome->isError()) {
        return nullptr;
    }
    const std::pair<QString, QString> key(path, page.password);
    auto found = m_files.find(key);
    if (found == m_files.end()) {
        OpenFile opening;
        const EngineError opened = open(path, page.password, &opening);
        // The revision may have been superseded before it was open; what is open stays what it is.
        EngineError moved;
        if (Engine::instance().revisions().locate(page, &moved) != path) {
            *outcome = moved;
            return moved.isError() ? nullptr : file(page, outcome);
        }
        if (opened.isError()) {
            *outcome = opened;
            return nullptr;
        }
        found = m_files.emplace(key, std::move(opening)).first;
    }
    return &found->second;
}

EngineError OutputSources::open(const QString &path, const QString &password, OpenFile *file)
{
    EngineError outcome;
    file->document = newSource(openQpdf(path, password, &outcome), &outcome);
    if (!file->document && outcome.code != PdfBackendError::InvalidDocument) {
        return outcome;
    }
    const std::shared_ptr<const PageTree> shown = shownPages(path, password);
    if (file->document) {
        if (!shown || file->document->agreeOn(shown->pageNumbers)) {
            return {};
        }
        outcome = {PdfBackendError::InvalidDocument,
                   QStringLiteral("It is not certain which pages the damaged file has.")};
    }
    std::unique_ptr<QTemporaryFile> repaired = newRepairedFile(path, password);
    if (!shown || !repaired) {
        return outcome;
    }
    EngineError ignored;
    file->document = newSource(openQpdf(repaired->fileName(), QString(), &ignored), &ignored);
    file->repairedFile = std::move(repaired);
    return file->document && file->document->agreeOn(shown->pageNumbers) ? EngineError{} : outcome;
}

PDFVersion OutputSources::version() const
{
    PDFVersion highest(1, 5);
    if (m_only) {
        highest.updateIfGreater(versionOf(m_only->document->document()));
    }
    for (const auto &[key, file] : m_files) {
        highest.updateIfGreater(versionOf(file.document->document()));
    }
    return highest;
}

} // namespace pdfcore
