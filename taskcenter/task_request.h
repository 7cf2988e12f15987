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
    /// | name                  | type   | of                        | meaning |
    /// |-----------------------|--------|---------------------------|------------------------------|
    /// | "compressLevel"       | int    | compress                  | 0 basic, else strong | |
    /// "saveOption"          | int    | compress, encrypt,decrypt | 0 replaces the source        |
    /// | "password"            | text   | encrypt, decrypt          | | | "pageSize"            |
    /// int    | images to PDF             | 0 A4, 1 Letter               | | "pageMargin" | int |
    /// images to PDF             | 0 none, 1 narrow, 2 wide     | | "pageOrientation"     | int |
    /// images to PDF             | 0 portrait, 1 landscape      | | "singlePdf"           | bool |
    /// images to PDF             | for the page of the tool     | | "format"              | int |
    /// PDF to images             | 2 JPEG, 3 PNG                | | "saveAsSeparateFiles" | bool |
    /// PDF to images             | embedded images, not pages   |
    QVariantMap options;
};
