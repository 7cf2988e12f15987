// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/base/engine_error.h"

#include <QList>
#include <QString>

namespace pdfcore {

/// Writes the pages to a new file at `path`; see PdfEditorBackend::saveDocument().
EngineError writeDocument(const QList<PdfSourcePage> &pages, const QString &path);

} // namespace pdfcore
