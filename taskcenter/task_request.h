// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

/// What a task does: the values of TaskRequest::type.
enum class TaskType : qint32 {
    Merge = 0,
    Encrypt = 2,
    Decrypt = 3,
    PdfToImages = 4,
    ImagesToPdf = 5,
    Compress = 6,
};

/// Where a task is: the values of TaskCenter::taskStatus().
enum class TaskStatus : int {
    Queued = 0,
    Running = 1,
    Paused = 2, ///< Not in use.
    Completed = 3,
    Failed = 4,
    Cancelled = 5,
};

/// A job for the task service.
struct TaskRequest
{
    /// Left empty; the service gives a task its identifier.
    QString id;
    /// A TaskType.
    qint32 type = 0;
    /// The source files of tasks that take several; for some types the only one.
    QStringList inputFiles;
    /// The file to write, or the folder to write to; which one depends on the type.
    QString outputPath;
    /// The only source file of compressing, encrypting and decrypting.
    QString inputFile;
    /// Whether the result was asked for beside its source; `outputPath` says where that is.
    bool useSourceFolder = false;
    /// What else was chosen, by these names:
    ///
    /// - "compressLevel", int, to compress: 0 is basic, anything else strong.
    /// - "saveOption", int, to compress, encrypt and decrypt: 0 replaces the source.
    /// - "password", text, to encrypt and decrypt.
    /// - "pageSize", int, of images to PDF: 0 is A4, 1 Letter.
    /// - "pageMargin", int, of images to PDF: 0 is none, 1 narrow, 2 wide.
    /// - "pageOrientation", int, of images to PDF: 0 is portrait, 1 landscape.
    /// - "singlePdf", bool, of images to PDF: which the page of the tool has heeded already.
    /// - "format", int, of PDF to images: 2 is JPEG, 3 PNG.
    /// - "saveAsSeparateFiles", bool, of PDF to images: the embedded images in place of pages.
    QVariantMap options;
};
