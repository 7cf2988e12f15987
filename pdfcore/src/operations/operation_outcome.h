// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"
#include "pdfcore/src/base/engine_error.h"

#include <QString>

#include <functional>

namespace pdfcore {

/// What an operation ends with when a step of it ended with `error`. Whatever that is, it is for
/// being cancelled if it was.
PdfOperationOutcome outcomeOf(const EngineError &error, const PdfCancelFlag &cancel,
                              const QString &file = {});

/// Runs an operation; an exception that comes out of it is a failure.
PdfOperationOutcome guarded(const std::function<PdfOperationOutcome()> &operation);

} // namespace pdfcore
