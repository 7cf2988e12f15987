// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"
#include "taskcenter/task_request.h"

/// Jobs that make picture files of a PDF file, and a PDF file of picture files.
namespace PictureJobs {

PdfOperationOutcome pdfToImages(const TaskRequest &request, const PdfCancelFlag &cancel);
/// Removes the folder for the pictures of a request, which was made for them, unless there is
/// anything in it.
void removeUnused(const TaskRequest &request);
PdfOperationOutcome imagesToPdf(const TaskRequest &request, const PdfCancelFlag &cancel);

} // namespace PictureJobs
