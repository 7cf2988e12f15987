// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/pdf_editor_backend.h"

#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/save/document_writer.h"
#include "pdfcore/src/save/parts_writer.h"
#include "pdfcore/src/session/band_renderer.h"
#include "pdfcore/src/session/batch_renderer.h"
#include "pdfcore/src/session/engine.h"

#include <exception>

namespace {

using pdfcore::Engine;
using pdfcore::EngineError;
using pdfcore::SessionPool;

/// Runs a step of the engine; nothing that it throws gets out.
template <typename Step>
EngineError guarded(PdfBackendError code, Step &&step)
{
    try {
        return step();
    } catch (const std::exception &exception) {
        return {code, QString::fromUtf8(exception.what())};
    }
}

} // namespace

bool PdfEditorBackend::inspectDocument(const QString &path, const QString &password,
                                       PdfDocumentInfo *info, PdfBackendError *error,
                                       QString *message)
{
    const EngineError outcome = guarded(PdfBackendError::InvalidDocument, [&] {
        EngineError step;
        const SessionPool::Lease session =
            Engine::instance().sessions().acquire(path, password, &step);
        if (!session) {
            return step;
        }
        if (info != nullptr) {
            *info = {session->pages()->pageSizes,
                     Engine::instance().revisions().use(session->file())};
        }
        return step;
    });
    pdfcore::report(outcome, error, message);
    return !outcome.isError();
}

QImage PdfEditorBackend::renderPage(const PdfSourcePage &page, QSize targetSize,
                                    PdfBackendError *error, QString *message)
{
    QImage image;
    const EngineError outcome = guarded(PdfBackendError::RenderFailed, [&] {
        EngineError step;
        image = pdfcore::renderOne(page, targetSize, &step);
        return step;
    });
    pdfcore::report(outcome, error, message);
    return outcome.isError() ? QImage() : image;
}

bool PdfEditorBackend::renderPageInBands(const PdfSourcePage &page, QSize targetSize, int overlap,
                                         const PdfPageBandSink &sink, PdfBackendError *error,
                                         QString *message)
{
    bool complete = false;
    const EngineError outcome = guarded(PdfBackendError::RenderFailed, [&] {
        EngineError step;
        complete = pdfcore::renderBands(page, targetSize, overlap, sink, &step);
        return step;
    });
    pdfcore::report(outcome, error, message);
    return complete && !outcome.isError();
}

QList<QImage> PdfEditorBackend::renderPages(const QList<PdfSourcePage> &pages,
                                            const QList<QSize> &targetSizes, QStringList *errors)
{
    return renderPagesUnless(PdfCancelFlag(), pages, targetSizes, errors);
}

QList<QImage> PdfEditorBackend::renderPagesUnless(const PdfCancelFlag &cancel,
                                                  const QList<PdfSourcePage> &pages,
                                                  const QList<QSize> &targetSizes,
                                                  QStringList *errors)
{
    QList<QImage> images(pages.size());
    QStringList messages(pages.size());
    pdfcore::renderBatch(cancel, pages, targetSizes, images, messages);
    if (errors != nullptr) {
        *errors = messages;
    }
    return images;
}

bool PdfEditorBackend::saveDocument(const QList<PdfSourcePage> &pages, const QString &path,
                                    PdfBackendError *error, QString *message)
{
    const EngineError outcome = guarded(PdfBackendError::WriteFailed, [&] {
        return pdfcore::writeDocument(pages, PdfPlacement::replacing(path));
    });
    pdfcore::report(outcome, error, message);
    return !outcome.isError();
}

QList<PdfSaveOutcome> PdfEditorBackend::saveDocuments(const QList<PdfOutputFile> &files)
{
    QList<PdfSaveOutcome> outcomes;
    for (const EngineError &outcome : pdfcore::writeDocuments(files)) {
        outcomes.append({outcome.code, outcome.message});
    }
    return outcomes;
}
