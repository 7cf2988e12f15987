// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/task_job.h"

#include "pdfcore/pdf_file_operations.h"
#include "taskcenter/result_names.h"

#include <QDir>
#include <QFileInfo>

#include <exception>

namespace {

constexpr int kReplaceSource = 0;
constexpr int kKeepSource = 1;

/// What "pdf_merge.pdf" is made of.
constexpr QLatin1String kMergedName{"pdf_merge"};

PdfOperationOutcome missingInput()
{
    return {PdfOperationError::FileNotFound, QStringLiteral("There is no source file."), {}, {}};
}

/// The only source file of a request: the one that it names as such, else the first of its list.
QString sourceOf(const TaskRequest &request)
{
    const QString source = request.inputFile.isEmpty() && !request.inputFiles.isEmpty()
                               ? request.inputFiles.constFirst()
                               : request.inputFile;
    return QDir::fromNativeSeparators(source);
}

QStringList sourcesOf(const TaskRequest &request)
{
    QStringList sources;
    for (const QString &source : request.inputFiles) {
        sources.append(QDir::fromNativeSeparators(source));
    }
    return sources;
}

bool replacesSource(const TaskRequest &request)
{
    return request.options.value(QStringLiteral("saveOption"), kKeepSource).toInt() ==
           kReplaceSource;
}

/// For a result in the folder that a request names, or in the place of its source.
PdfPlacement placeInFolder(const TaskRequest &request, const QString &source)
{
    return replacesSource(request)
               ? PdfPlacement::replacing(source)
               : ResultNames::newFileIn(request.outputPath, QFileInfo(source).completeBaseName());
}

QString passwordOf(const TaskRequest &request)
{
    return request.options.value(QStringLiteral("password")).toString();
}

PdfOperationOutcome merge(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    if (request.inputFiles.isEmpty()) {
        return missingInput();
    }
    return PdfFileOperations::join(sourcesOf(request),
                                   ResultNames::newFile(request.outputPath, kMergedName), cancel);
}

PdfOperationOutcome encrypt(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    const QString source = sourceOf(request);
    if (source.isEmpty()) {
        return missingInput();
    }
    return PdfFileOperations::protect(source, passwordOf(request), placeInFolder(request, source),
                                      cancel);
}

PdfOperationOutcome decrypt(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    const QString source = sourceOf(request);
    if (source.isEmpty()) {
        return missingInput();
    }
    return PdfFileOperations::unprotect(source, passwordOf(request), placeInFolder(request, source),
                                        cancel);
}

PdfOperationOutcome runByType(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    switch (static_cast<TaskType>(request.type)) {
    case TaskType::Merge:
        return merge(request, cancel);
    case TaskType::Encrypt:
        return encrypt(request, cancel);
    case TaskType::Decrypt:
        return decrypt(request, cancel);
    default:
        return {PdfOperationError::InvalidDocument,
                QStringLiteral("There is no task of type %1.").arg(request.type),
                {},
                {}};
    }
}

} // namespace

PdfOperationOutcome runTaskJob(const TaskRequest &request, const PdfCancelFlag &cancel)
{
    try {
        return runByType(request, cancel);
    } catch (const std::exception &exception) {
        return {PdfOperationError::WriteFailed, QString::fromUtf8(exception.what()), {}, {}};
    }
}
