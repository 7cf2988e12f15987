// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/file_copy.h"

#include "pdfcore/src/base/atomic_file.h"
#include "pdfcore/src/base/engine_error.h"
#include "pdfcore/src/operations/operation_outcome.h"
#include "pdfcore/src/save/result_file.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

namespace pdfcore {

namespace {

constexpr qint64 kChunk = qint64{1} << 20;

EngineError readError(const QFile &file)
{
    return {PdfBackendError::FileNotFound, file.errorString()};
}

EngineError copyContent(QFile &from, AtomicFile &to, const PdfCancelFlag &cancel)
{
    while (!from.atEnd()) {
        const QByteArray chunk = from.read(kChunk);
        if (from.error() != QFileDevice::NoError) {
            return readError(from);
        }
        if (cancel.isSet()) {
            return cancelledError(PdfBackendError::WriteFailed);
        }
        if (to.device().write(chunk) != chunk.size()) {
            return {PdfBackendError::WriteFailed, to.device().errorString()};
        }
    }
    QString reason;
    if (!to.finishWriting(&reason)) {
        return {PdfBackendError::WriteFailed, reason};
    }
    return {};
}

/// Whether the copy reads like the file, which may have changed meanwhile.
EngineError compare(QFile &file, const QString &copy, const PdfCancelFlag &cancel)
{
    QFile written(copy);
    if (!file.seek(0) || !written.open(QIODevice::ReadOnly)) {
        return readError(file);
    }
    while (!file.atEnd() || !written.atEnd()) {
        if (cancel.isSet()) {
            return cancelledError(PdfBackendError::WriteFailed);
        }
        if (file.read(kChunk) != written.read(kChunk)) {
            return {PdfBackendError::WriteFailed,
                    QStringLiteral("The copy reads otherwise than the file.")};
        }
    }
    return {};
}

} // namespace

PdfOperationOutcome copyFile(const QString &source, const PdfPlacement &placement,
                             const PdfCancelFlag &cancel)
{
    if (placement.isReplacing() && QFileInfo(placement.path()) == QFileInfo(source)) {
        return {PdfOperationError::None, {}, {}, placement.path()};
    }
    QFile from(source);
    if (!from.open(QIODevice::ReadOnly)) {
        return outcomeOf(readError(from), cancel, source);
    }
    AtomicFile to = pdfcore::fileFor(placement);
    QString reason;
    if (!to.open(&reason)) {
        return outcomeOf({PdfBackendError::WriteFailed, reason}, cancel, source);
    }
    EngineError error = copyContent(from, to, cancel);
    if (!error.isError()) {
        error = compare(from, to.temporaryPath(), cancel);
    }
    if (!error.isError()) {
        error = placeResult(to, placement);
    }
    PdfOperationOutcome outcome = outcomeOf(error, cancel, source);
    outcome.result = outcome.isError() ? QString() : to.target();
    return outcome;
}

} // namespace pdfcore
