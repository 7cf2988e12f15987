// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"

#include <QString>

namespace pdfcore {

/// Copies a file byte for byte, for an operation that has nothing to change about it. A file that
/// would replace itself is left alone.
PdfOperationOutcome copyFile(const QString &source, const PdfPlacement &placement,
                             const PdfCancelFlag &cancel);

} // namespace pdfcore
