// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/pdf_jobs.h"

#include "pdfcore/pdf_compression.h"
#include "pdfcore/pdf_file_operations.h"
#include "taskcenter/request_values.h"
#include "taskcenter/result_names.h"

#include <QFileInfo>

namespace {

/// What "pdf_merge.pdf" is made of.
constexpr QLatin1String kMergedName{"pdf_merge"};

QString baseNameOf(const QString &source)
{
    return QFileInfo(source).completeBaseName();
}

/// For a result in the folder that a request names, or in the place of its source.
PdfPlacement placeInFolder(const TaskRequest &request, const QString &source)
{
    return RequestValues::replacesSource(request)
               ? PdfPlacement::replacing(source)
               : ResultNames::newFileIn(request.outputPath, baseNameOf(source));
}

} // namespace

PdfOperationOutcome PdfJobs::merge(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    const QStringList sources = RequestValues::sources(request);
    if (sources.isEmpty()) {
        return RequestValues::noSource();
    }
    return PdfFileOperations::join(sources, ResultNames::newFile(request.outputPath, kMergedName),
                                   cancel);
}

PdfOperationOutcome PdfJobs::encrypt(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    const QString source = RequestValues::source(request);
    if (source.isEmpty()) {
        return RequestValues::noSource();
    }
    return PdfFileOperations::protect(source, RequestValues::password(request),
                                      placeInFolder(request, source), cancel);
}

PdfOperationOutcome PdfJobs::decrypt(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    const QString source = RequestValues::source(request);
    if (source.isEmpty()) {
        return RequestValues::noSource();
    }
    return PdfFileOperations::unprotect(source, RequestValues::password(request),
                                        placeInFolder(request, source), cancel);
}

PdfOperationOutcome PdfJobs::compress(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    constexpr int kBasic = 0;
    const QString source = RequestValues::source(request);
    if (source.isEmpty()) {
        return RequestValues::noSource();
    }
    const int level = RequestValues::number(request, QStringLiteral("compressLevel"), kBasic);
    return PdfCompression::compress(
        source, level == kBasic ? PdfCompressionLevel::Basic : PdfCompressionLevel::Strong,
        RequestValues::replacesSource(request)
            ? PdfPlacement::replacing(source)
            : ResultNames::newFile(request.outputPath, baseNameOf(source)),
        cancel);
}
