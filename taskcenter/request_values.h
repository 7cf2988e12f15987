// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_operation.h"
#include "taskcenter/task_request.h"

#include <QString>
#include <QStringList>

/// What the jobs read from a request.
namespace RequestValues {

/// The only source file: the one that the request names as such, else the first of its list; empty
/// when there is none.
[[nodiscard]] QString source(const TaskRequest &request);
/// The source files of the list.
[[nodiscard]] QStringList sources(const TaskRequest &request);
/// Whether the result takes the place of its source.
[[nodiscard]] bool replacesSource(const TaskRequest &request);
[[nodiscard]] QString password(const TaskRequest &request);
/// A whole number among the options; `missing` where there is none.
[[nodiscard]] int number(const TaskRequest &request, const QString &name, int missing);

/// What a request without a source file ends with.
[[nodiscard]] PdfOperationOutcome noSource();

} // namespace RequestValues
