// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/save/document_writer.h"

#include "pdfcore/src/base/file_identity.h"
#include "pdfcore/src/qpdf/names.h"
#include "pdfcore/src/qpdf/qpdf_copy.h"
#include "pdfcore/src/qpdf/qpdf_io.h"
#include "pdfcore/src/qpdf/qpdf_source.h"
#include "pdfcore/src/save/document_extract.h"
#include "pdfcore/src/save/result_file.h"
#include "pdfcore/src/session/document_session.h"
#include "pdfcore/src/session/engine.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include <future>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace pdfcore {

namespace {

/// Pages from which letting go of the objects of an output takes so long that it is worth a thread.
constexpr qsizetype kManyPages = 1000;

void noteUseless(const WriteOptions &options)
{
    if (options.isUseless != nullptr) {
        *options.isUseless = true;
    }
}

/// Writes to a temporary file first, which is then rewritten as the options say.
void writeTwice(QPDFWriter &writer, const WriteOptions &options, QDeviceOutput &to)
{
    const auto throwIfFailed = [&to] {
        if (to.hasToStop()) {
            throw std::runtime_error(to.reason().toStdString());
        }
    };
    QTemporaryFile draft;
    if (!draft.open()) {
        to.fail(draft.errorString());
    }
    throwIfFailed();
    QDeviceOutput pipeline(draft, &options.cancel.value());
    try {
        writeQpdf(writer, pipeline);
    } catch (const std::exception &) {
        // No room for the draft is as bad as none for the file.
        if (pipeline.hasFailed()) {
            to.fail(pipeline.reason());
        }
        throw;
    }
    if (!draft.flush()) {
        to.fail(draft.errorString());
    }
    throwIfFailed();
    draft.close();
    options.rewrite(draft.fileName(), to);
    throwIfFailed();
}

/// Assembles and writes the output to `file`, and tells the password that opens it. The source
/// files are open until `assembled` goes.
EngineError writeTo(const QList<PdfSourcePage> &pages, const WriteOptions &options,
                    AtomicFile &file, std::unique_ptr<OutputDocument> *assembled, QString *password)
{
    const DocumentExtract *extract = options.extract;
    QDeviceOutput pipeline(file.device(), &options.cancel.value());
    try {
        *assembled =
            std::make_unique<OutputDocument>(extract != nullptr ? extract->open() : nullptr);
        OutputDocument &output = **assembled;
        if (EngineError error =
                output.assemble(extract != nullptr ? extract->located(pages) : pages,
                                Unlabelled::NumberByPlace, options.headings);
            error.isError()) {
            return error;
        }
        QPDF *protection = nullptr;
        if (options.newProtection == NewProtection::OfMainDocument) {
            protection = options.protection != nullptr ? options.protection : output.protection();
            *password = protection != nullptr ? output.password() : QString();
        }
        const bool packs = extract != nullptr ? extract->packsObjects()
                                              : output.packsObjects(options.packsManyPages);
        const bool isProtected =
            protection != nullptr || options.newProtection == NewProtection::Password;
        if (options.edit) {
            options.edit(output.document(), isProtected || !packs);
        }
        prepareTrailer(output.document(), protection);
        escapeNames(output.document());
        QPDFWriter writer(output.document());
        writer.setObjectStreamMode(packs ? qpdf_o_generate : qpdf_o_disable);
        writer.setPreserveEncryption(false);
        if (protection != nullptr) {
            writer.copyEncryptionParameters(*protection);
        } else if (options.newProtection == NewProtection::Password) {
            *password = options.newPassword;
            encryptFor(writer, options.newPassword);
        }
        writer.setMinimumPDFVersion(output.version());
        if (options.rewrite && packs && !isProtected) {
            writeTwice(writer, options, pipeline);
        } else {
            writeQpdf(writer, pipeline);
        }
    } catch (const WriteError &error) {
        return {PdfBackendError::WriteFailed, QString::fromUtf8(error.what())};
    } catch (const std::exception &exception) {
        if (pipeline.hasFailed()) {
            return {PdfBackendError::WriteFailed, QString::fromUtf8(exception.what())};
        }
        return qpdfReadError(exception);
    }
    QString reason;
    if (!file.finishWriting(&reason)) {
        return {PdfBackendError::WriteFailed, reason};
    }
    if (options.sizeLimit > 0 && QFileInfo(file.temporaryPath()).size() >= options.sizeLimit) {
        noteUseless(options);
        return {PdfBackendError::WriteFailed, QStringLiteral("The file gets too large.")};
    }
    return {};
}

/// Lets go of an output, which closes its source files: on another thread, for which to wait, where
/// it has many pages.
std::future<void> release(std::unique_ptr<OutputDocument> output, qsizetype pageCount)
{
    if (pageCount < kManyPages) {
        return {};
    }
    try {
        return std::async(std::launch::async,
                          [output = std::move(output)]() mutable { output.reset(); });
    } catch (const std::system_error &) {
        // Without another thread it has gone here.
        return {};
    }
}

/// Whether the source files still hold the revisions that were read.
EngineError checkSources(const QList<PdfSourcePage> &pages)
{
    const PdfFileRevision *checked = nullptr;
    for (const PdfSourcePage &page : pages) {
        if (page.revision.get() == checked) {
            continue;
        }
        checked = page.revision.get();
        EngineError outcome;
        Engine::instance().revisions().locate(page, &outcome);
        if (outcome.isError()) {
            return outcome;
        }
    }
    return {};
}

} // namespace

EngineError writeDocument(const QList<PdfSourcePage> &pages, const PdfPlacement &placement,
                          const WriteOptions &options)
{
    if (placement.path().isEmpty()) {
        return {PdfBackendError::WriteFailed, QStringLiteral("There is no file name.")};
    }
    if (pages.isEmpty()) {
        return {PdfBackendError::WriteFailed, QStringLiteral("There are no pages to write.")};
    }

    AtomicFile file = fileFor(placement, options.flush);
    QString reason;
    if (!file.open(&reason)) {
        return {PdfBackendError::WriteFailed, reason};
    }
    QString password;
    std::unique_ptr<OutputDocument> output;
    if (EngineError error = writeTo(pages, options, file, &output, &password); error.isError()) {
        return error;
    }
    // Meanwhile the file is checked; its target may be one of the sources, which are closed then.
    std::future<void> released = release(std::move(output), pages.size());
    EngineError checked = checkResult(file.temporaryPath(), password, pages.size());
    if (released.valid()) {
        released.wait();
    }
    if (checked.isError()) {
        noteUseless(options);
        return checked;
    }
    if (EngineError error = checkSources(pages); error.isError()) {
        return error;
    }
    if (options.cancel.isSet()) {
        return cancelledError(PdfBackendError::WriteFailed);
    }
    if (EngineError error = placeResult(file, placement, options.replaced); error.isError()) {
        return error;
    }
    if (options.placed != nullptr) {
        *options.placed = file.target();
    }
    if (file.isForCallerToFlush() && options.unflushed != nullptr) {
        options.unflushed->append(file.target());
    }
    return {};
}

} // namespace pdfcore
