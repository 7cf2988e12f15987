// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <qpdf/QPDF.hh>

namespace pdfcore {

/// Whether the document is encrypted, and was opened with a password that fits, be it an empty one.
bool hasKey(QPDF &document);

/// Whether a document is encrypted in such a way that a password is needed for its attachments only
/// (ISO 32000-2, 7.6.6): strings and streams stay as they are unless a stream says otherwise, and
/// what is named there waits for an attachment to be opened.
bool protectsAttachmentsOnly(QPDF &document);

/// Whether streams of a document are encrypted by filters of their own. Looks at all objects.
bool hasLockedStreams(QPDF &document);

} // namespace pdfcore
