// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/task_job.h"

#include "taskcenter/pdf_jobs.h"
#include "taskcenter/picture_jobs.h"

#include <exception>

namespace {

PdfOperationOutcome runByType(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    switch (static_cast<TaskType>(request.type)) {
    case TaskType::Merge:
        return PdfJobs::merge(request, cancel);
    case TaskType::Encrypt:
        return PdfJobs::encrypt(request, cancel);
    case TaskType::Decrypt:
        return PdfJobs::decrypt(request, cancel);
    case TaskType::PdfToImages:
        return PictureJobs::pdfToImages(request, cancel);
    case TaskType::ImagesToPdf:
        return PictureJobs::imagesToPdf(request, cancel);
    case TaskType::Compress:
        return PdfJobs::compress(request, cancel);
    }
    return {PdfOperationError::InvalidDocument,
            QStringLiteral("There is no task of type %1.").arg(request.type),
            {},
            {}};
}

} // namespace

PdfOperationOutcome runTaskJob(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    try {
        return runByType(request, cancel);
    } catch (const std::exception &exception) {
        return {PdfOperationError::WriteFailed, QString::fromUtf8(exception.what()), {}, {}};
    } catch (...) {
        return {PdfOperationError::WriteFailed, QStringLiteral("It ended unexpectedly."), {}, {}};
    }
}

void discardTaskJob(const TaskRequest &request)
{
    if (static_cast<TaskType>(request.type) == TaskType::PdfToImages) {
        PictureJobs::removeUnused(request);
    }
}
