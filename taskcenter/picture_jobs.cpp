// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/picture_jobs.h"

#include "pdfcore/pdf_picture_export.h"
#include "pdfcore/pdf_picture_import.h"
#include "taskcenter/request_values.h"
#include "taskcenter/result_names.h"

#include <QDir>
#include <QFileInfo>

#include <iterator>

namespace {

/// Margins in points by their number: none, narrow, wide.
constexpr double kMargins[] = {0, 36, 72};

PdfPictureImportOptions importOptions(const TaskRequest &request)
{
    constexpr int kLetter = 1;
    constexpr int kPortrait = 0;
    const auto number = [&](const QString &name) {
        return RequestValues::number(request, name, 0);
    };
    PdfPictureImportOptions options;
    if (number(QStringLiteral("pageSize")) == kLetter) {
        options.pageSize = PdfPictureImportOptions::PageSize::Letter;
    }
    if (number(QStringLiteral("pageOrientation")) != kPortrait) {
        options.orientation = PdfPictureImportOptions::Orientation::Landscape;
    }
    const int margin = number(QStringLiteral("pageMargin"));
    options.margin = margin >= 0 && margin < int(std::size(kMargins)) ? kMargins[margin] : 0;
    return options;
}

} // namespace

PdfOperationOutcome PictureJobs::pdfToImages(const TaskRequest &request,
                                             const PdfCancelFlag &cancel)
{
    constexpr int kJpeg = 2;
    constexpr int kPng = 3;
    const QString source = RequestValues::source(request);
    if (source.isEmpty()) {
        return RequestValues::noSource();
    }
    PdfPictureTarget target;
    target.folder = QDir::fromNativeSeparators(request.outputPath);
    target.baseName = QFileInfo(source).completeBaseName();
    target.format = RequestValues::number(request, QStringLiteral("format"), kPng) == kJpeg
                        ? PdfPictureFormat::Jpeg
                        : PdfPictureFormat::Png;
    PdfOperationOutcome outcome =
        request.options.value(QStringLiteral("saveAsSeparateFiles")).toBool()
            ? PdfPictureExport::exportImages(source, target, cancel)
            : PdfPictureExport::exportPages(source, target, cancel);
    if (outcome.isError()) {
        removeUnused(request);
    }
    return outcome;
}

void PictureJobs::removeUnused(const TaskRequest &request)
{
    if (!request.outputPath.isEmpty()) {
        QDir().rmdir(QDir::fromNativeSeparators(request.outputPath));
    }
}

PdfOperationOutcome PictureJobs::imagesToPdf(const TaskRequest &request,
                                             const PdfCancelFlag &cancel)
{
    const QStringList sources = RequestValues::sources(request);
    if (sources.isEmpty()) {
        return RequestValues::noSource();
    }
    return PdfPictureImport::toDocument(
        sources, importOptions(request),
        ResultNames::newFile(request.outputPath,
                             QFileInfo(sources.constFirst()).completeBaseName()),
        cancel);
}
