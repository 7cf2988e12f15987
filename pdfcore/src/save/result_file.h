// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_file_revision.h"
#include "pdfcore/pdf_operation.h"
#include "pdfcore/src/base/atomic_file.h"
#include "pdfcore/src/base/engine_error.h"

#include <QString>

class QPDFWriter;

namespace pdfcore {

/// Lets the writer encrypt with AES-256 so that `password`, which is not empty, opens the file, and
/// whoever has opened it may do anything; the owner password is random.
void encryptFor(QPDFWriter &writer, const QString &password);

/// The file that a result is written to before it gets its place.
[[nodiscard]] AtomicFile fileFor(const PdfPlacement &placement,
                                 AtomicFile::Flush flush = AtomicFile::Flush::First);

/// Reopens a PDF file that was written, which must not need a repair, and counts the pages that
/// those who open it will see.
EngineError checkResult(const QString &path, const QString &password, qsizetype pageCount);

/// Gives a file that is complete its place. Revisions in use of a file that is replaced are kept.
/// With `replaced` no other revision is replaced.
EngineError placeResult(AtomicFile &file, const PdfPlacement &placement,
                        const PdfFileRevisionPtr &replaced = {});

} // namespace pdfcore
