// SPDX-License-Identifier: AGPL-3.0-or-later
#include "taskcenter/request_values.h"

#include <QDir>

QString RequestValues::source(const TaskRequest &request)
{
    return QDir::fromNativeSeparators(request.inputFile.isEmpty() ? request.inputFiles.value(0)
                                                                  : request.inputFile);
}

QStringList RequestValues::sources(const TaskRequest &request)
{
    QStringList sources;
    for (const QString &source : request.inputFiles) {
        sources.append(QDir::fromNativeSeparators(source));
    }
    return sources;
}

bool RequestValues::replacesSource(const TaskRequest &request)
{
    constexpr int kReplace = 0;
    constexpr int kKeep = 1;
    return number(request, QStringLiteral("saveOption"), kKeep) == kReplace;
}

QString RequestValues::password(const TaskRequest &request)
{
    return request.options.value(QStringLiteral("password")).toString();
}

int RequestValues::number(const TaskRequest &request, const QString &name, int missing)
{
    bool isNumber = false;
    const int value = request.options.value(name).toInt(&isNumber);
    return isNumber ? value : missing;
}

PdfOperationOutcome RequestValues::noSource()
{
    return {PdfOperationError::FileNotFound, QStringLiteral("There is no source file."), {}, {}};
}
