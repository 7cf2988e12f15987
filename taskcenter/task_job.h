// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/pdf_operation.h"
#include "taskcenter/task_request.h"

/// Checks a request and does what it asks for, on the calling thread. Does not throw.
PdfOperationOutcome runTaskJob(const TaskRequest &request, const PdfCancelFlag &cancel);

/// Removes what was prepared for a request that is not run.
void discardTaskJob(const TaskRequest &request);
