// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/operation_outcome.h"

#include <exception>

namespace pdfcore {

PdfOperationOutcome outcomeOf(const EngineError &error, const PdfCancelFlag &cancel,
                              const QString &file)
{
    if (error.isError() && cancel.isSet()) {
        return {PdfOperationError::Cancelled, QStringLiteral("It was cancelled."), {}, {}};
    }
    return {static_cast<PdfOperationError>(error.code),
            error.message,
            error.isError() ? file : QString(),
            {}};
}

PdfOperationOutcome guarded(const std::function<PdfOperationOutcome()> &operation)
{
    try {
        return operation();
    } catch (const std::exception &exception) {
        return {PdfOperationError::WriteFailed, QString::fromUtf8(exception.what()), {}, {}};
    }
}

} // namespace pdfcore
