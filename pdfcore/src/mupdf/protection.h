// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/mupdf/mupdf_context.h"

#include <QByteArray>

#include <mupdf/pdf.h>

namespace pdfcore {

/// The protection of an encrypted document as a document that has nothing else: the same passwords
/// open it, and it has the same key. Small enough to be opened where only the key is wanted, and
/// sound where the document itself is damaged. Empty when the document is not encrypted, or memory
/// runs out.
QByteArray protectionOf(MupdfContext &context, pdf_document *document);

} // namespace pdfcore
