// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"
#include "taskcenter/task_request.h"

/// Jobs that make a PDF file of PDF files.
namespace PdfJobs {

PdfOperationOutcome merge(const TaskRequest &request, const PdfCancelFlag &cancel);
PdfOperationOutcome encrypt(const TaskRequest &request, const PdfCancelFlag &cancel);
PdfOperationOutcome decrypt(const TaskRequest &request, const PdfCancelFlag &cancel);
PdfOperationOutcome compress(const TaskRequest &request, const PdfCancelFlag &cancel);

} // namespace PdfJobs
