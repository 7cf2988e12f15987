// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_editor_backend.h"
#include "pdfcore/src/base/engine_error.h"

#include <QList>
#include <QString>

namespace pdfcore {

/// Adds all pages of the file that the password opens, in their order. On failure none is added.
EngineError addPages(const QString &source, const QString &password, QList<PdfSourcePage> *pages);

} // namespace pdfcore
