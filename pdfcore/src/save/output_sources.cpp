// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/output_sources.h"

#include "pdfcore/src/base/file_identity.h"
#include "pdfcore/src/qpdf/names.h"
#include "pdfcore/src/qpdf/qpdf_protection.h"
#include "pdfcore/src/qpdf/qpdf_source.h"
#include "pdfcore/src/session/document_session.h"
#include "pdfcore/src/session/engine.h"

#include <QTemporaryFile>
#include <QVersionNumber>

#include <exception>
#include <optional>

namespace pdfcore {

namespace {

/// What MuPDF makes of a damaged file, decrypted, and what the file is encrypted by, if anything.
struct RepairedFile
{
    std::unique_ptr<QTemporaryFile> content;
    std::shared_ptr<QPDF> protection;
};

/// Nothing when the file cannot be repaired, or not without losing its protection, or when QPDF
/// found the same objects in it, in `other`.
std::optional<RepairedFile> newRepairedFile(const QString &path, const QString &password,
                                            QPDF *other)
{
    RepairedFile file{std::make_unique<QTemporaryFile>(), nullptr};
    if (!file.content->open()) {
        return std::nullopt;
    }
    // A session of its own: those of the pool have pages that were changed in memory.
    EngineError outcome;
    const auto session = DocumentSession::open(FileIdentity::of(path), password, {}, &outcome);
    if (!session || (other != nullptr && !session->readsOtherwise(*other))) {
        return std::nullopt;
    }
    file.protection = session->openProtection(&outcome);
    // Without the key of the attachments they would be lost.
    const bool isKept = !outcome.isError() && (!file.protection || hasKey(*file.protection));
    if (!isKept || !session->writeRepaired(*file.content) || !file.content->flush()) {
        return std::nullopt;
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

/// Whether the document has, or can be made to have, the pages that are shown.
bool agrees(SourceDocument &document, const PageTree &shown)
{
    // The pages of a copy have other numbers, but QPDF has found them before.
    return shown.copy ? static_cast<std::size_t>(document.pageCount()) == shown.pageNumbers.size()
                      : document.agreeOn(shown.pageNumbers);
}

/// Whether QPDF overlooked the protection of a damaged file, as some releases do without a trailer:
/// it would take encrypted content for plain.
bool overlooksProtection(const QPDF &document, const PageTree &shown, const QString &path,
                         const QString &password)
{
    if (!shown.isRepaired || document.isEncrypted()) {
        return false;
    }
    EngineError outcome;
    const SessionPool::Lease session =
        Engine::instance().sessions().acquire(path, password, &outcome);
    return session && (session->openProtection(&outcome) || outcome.isError());
}

/// Whether both libraries had to look for the objects of a damaged file, and may have found others.
bool areBothRepaired(SourceDocument &document, const PageTree &shown)
{
    return shown.isRepaired && document.document().anyWarnings();
}

/// Whether QPDF found nothing amiss with the objects of a damaged file once it had found them,
/// which took `warnings`.
bool readsThroughout(QPDF &document, std::size_t warnings)
{
    document.getAllObjects();
    return document.numWarnings() == warnings;
}

/// Whether attachments of the document would be lost. Its pages can be read without a password
/// where only the attachments are encrypted. These cannot, and QPDF writes no stream that stays
/// encrypted by another key than the rest, or under the number that its key may depend on. Rather
/// than a file without them there is none until the password is given.
bool losesAttachments(QPDF &document)
{
    return document.isEncrypted() && !hasKey(document) && hasLockedStreams(document);
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
    if (document->hasPage(page.pageIndex)) {
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
    const std::shared_ptr<QPDF> opened = openQpdf(path, password, &outcome);
    const std::size_t warnings = opened ? opened->numWarnings() : 0;
    file->document = newSource(opened, &outcome);
    if (outcome.code == PdfBackendError::FileNotFound) {
        return outcome;
    }
    const std::shared_ptr<const PageTree> shown = shownPages(path, password);
    if (file->document && losesAttachments(file->document->document())) {
        return {PdfBackendError::PasswordRequired,
                QStringLiteral("The attachments of the file are encrypted.")};
    }
    const bool areAgreed =
        file->document && (!shown || (agrees(*file->document, *shown) &&
                                      !overlooksProtection(*opened, *shown, path, password)));
    const bool mayDiffer = areAgreed && shown && areBothRepaired(*file->document, *shown);
    const bool isSound = areAgreed && (!mayDiffer || readsThroughout(*opened, warnings)) &&
                         !(shown && lacksNames(*opened));
    if (isSound && !mayDiffer) {
        settleStrayNames(*opened);
        return {};
    }
    if (file->document) {
        outcome = {PdfBackendError::InvalidDocument,
                   QStringLiteral("It is not certain which pages the damaged file has.")};
    }
    std::optional<RepairedFile> repaired;
    if (shown) {
        repaired = newRepairedFile(path, password, isSound ? opened.get() : nullptr);
    }
    if (repaired) {
        EngineError ignored;
        auto document = newSource(openQpdf(repaired->content->fileName(), {}, &ignored), &ignored);
        if (document && document->agreeOn(shown->pageNumbers)) {
            document->setProtection(repaired->protection);
            file->document = std::move(document);
            file->repairedFile = std::move(repaired->content);
            return {};
        }
    }
    if (areAgreed) {
        settleStrayNames(*opened);
        return {};
    }
    return outcome;
}

PDFVersion OutputSources::version() const
{
    PDFVersion highest(1, 3);
    if (m_only) {
        highest.updateIfGreater(versionOf(m_only->document->document()));
    }
    for (const auto &[key, file] : m_files) {
        highest.updateIfGreater(versionOf(file.document->document()));
    }
    return highest;
}

} // namespace pdfcore
