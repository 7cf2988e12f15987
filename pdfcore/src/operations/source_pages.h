// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"
#include "pdfcore/pdf_file_revision.h"
#include "pdfcore/pdf_operation.h"
#include "pdfcore/src/base/engine_error.h"

#include <QList>
#include <QString>

namespace pdfcore {

/// Adds all pages of the file that the password opens, in their order. On failure none is added.
EngineError addPages(const QString &source, const QString &password, QList<PdfSourcePage> *pages);

/// The revision that a result of these pages, which are those of one file, may replace only: theirs
/// if it takes the place of that file, else none.
[[nodiscard]] PdfFileRevisionPtr replacedRevision(const QList<PdfSourcePage> &pages,
                                                  const PdfPlacement &placement);

} // namespace pdfcore
