// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_file_operations.h"

#include "pdfcore/src/operations/file_copy.h"
#include "pdfcore/src/operations/operation_outcome.h"
#include "pdfcore/src/operations/source_pages.h"
#include "pdfcore/src/save/document_writer.h"
#include "pdfcore/src/session/engine.h"

#include <QFileInfo>

#include <utility>

using pdfcore::addPages;
using pdfcore::EngineError;
using pdfcore::guarded;
using pdfcore::NewProtection;
using pdfcore::outcomeOf;
using pdfcore::WriteOptions;

namespace {

EngineError noPagesError()
{
    return {PdfBackendError::InvalidDocument, QStringLiteral("There are no pages.")};
}

PdfOperationOutcome write(const QList<PdfSourcePage> &pages, const PdfPlacement &placement,
                          WriteOptions options, const PdfCancelFlag &cancel,
                          const QString &file = {})
{
    QString placed;
    options.cancel = cancel;
    options.placed = &placed;
    PdfOperationOutcome outcome =
        outcomeOf(pdfcore::writeDocument(pages, placement, options), cancel, file);
    outcome.result = placed;
    return outcome;
}

bool isEncrypted(const QString &source, const QString &password, EngineError *error)
{
    const pdfcore::SessionPool::Lease session =
        pdfcore::Engine::instance().sessions().acquire(source, password, error);
    return session && session->openProtection(error) != nullptr;
}

/// Writes a file anew with all of its pages.
PdfOperationOutcome rewrite(const QString &source, const QString &password, WriteOptions options,
                            const PdfPlacement &placement, const PdfCancelFlag &cancel)
{
    QList<PdfSourcePage> pages;
    if (const EngineError error = addPages(source, password, &pages); error.isError()) {
        return outcomeOf(error, cancel, source);
    }
    if (pages.isEmpty()) {
        return outcomeOf(noPagesError(), cancel, source);
    }
    options.replaced = pdfcore::replacedRevision(pages, placement);
    return write(pages, placement, options, cancel, source);
}

} // namespace

PdfOperationOutcome PdfFileOperations::join(const QStringList &sources,
                                            const PdfPlacement &placement,
                                            const PdfCancelFlag &cancel)
{
    return guarded([&]() -> PdfOperationOutcome {
        QList<PdfSourcePage> pages;
        WriteOptions options;
        for (const QString &source : sources) {
            options.headings.push_back(
                {static_cast<std::size_t>(pages.size()), QFileInfo(source).completeBaseName()});
            EngineError error = addPages(source, {}, &pages);
            if (cancel.isSet()) {
                error = pdfcore::cancelledError(PdfBackendError::WriteFailed);
            }
            if (error.isError()) {
                return outcomeOf(error, cancel, source);
            }
        }
        if (pages.isEmpty()) {
            return outcomeOf(noPagesError(), cancel, sources.value(0));
        }
        return write(pages, placement, std::move(options), cancel);
    });
}

PdfOperationOutcome PdfFileOperations::protect(const QString &source, const QString &password,
                                               const PdfPlacement &placement,
                                               const PdfCancelFlag &cancel)
{
    return guarded([&]() -> PdfOperationOutcome {
        if (password.isEmpty()) {
            return {PdfOperationError::PasswordRequired,
                    QStringLiteral("There is no password to encrypt with."),
                    source,
                    {}};
        }
        WriteOptions options;
        options.newProtection = NewProtection::Password;
        options.newPassword = password;
        return rewrite(source, {}, options, placement, cancel);
    });
}

PdfOperationOutcome PdfFileOperations::unprotect(const QString &source, const QString &password,
                                                 const PdfPlacement &placement,
                                                 const PdfCancelFlag &cancel)
{
    return guarded([&]() -> PdfOperationOutcome {
        EngineError error;
        const bool isProtected = isEncrypted(source, password, &error);
        if (error.isError()) {
            return outcomeOf(error, cancel, source);
        }
        if (!isProtected) {
            return pdfcore::copyFile(source, placement, cancel);
        }
        WriteOptions options;
        options.newProtection = NewProtection::None;
        return rewrite(source, password, options, placement, cancel);
    });
}
