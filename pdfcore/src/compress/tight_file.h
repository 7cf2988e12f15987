// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"

#include <QString>

#include <qpdf/Pipeline.hh>

namespace pdfcore {

/// Writes a file that QPDF has written with object streams, and not encrypted, in fewer bytes: the
/// same objects, but the streams that other objects are packed in, and the cross-reference stream
/// (ISO 32000-2, 7.5.7 and 7.5.8), are compressed as far as it goes. QPDF compresses them quickly,
/// by a level that is one for all writers of a process.
///
/// Throws std::runtime_error, and what QPDF throws, when the file cannot be read, and soon after
/// `cancel` is set.
void writeTightly(const QString &path, Pipeline &to, const PdfCancelFlag &cancel);

} // namespace pdfcore
