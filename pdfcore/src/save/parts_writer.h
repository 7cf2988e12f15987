// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/base/engine_error.h"

#include <QList>

#include <vector>

namespace pdfcore {

/// Writes each of the files; see PdfEditorBackend::saveDocuments(). Element i is the outcome of
/// file i. Does not throw.
///
/// Files whose pages come from one document are not made of that document each, since opening and
/// pruning it costs what it costs with all its pages. The document is divided into extracts, these
/// are divided again, and so on until each is for a handful of files.
std::vector<EngineError> writeDocuments(const QList<PdfOutputFile> &files);

} // namespace pdfcore
