// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>

#include <mupdf/fitz.h>

namespace pdfcore {

class MupdfContext;

/// Opens `path` as a MuPDF stream over QFile, so that any path that Qt can open works.
///
/// Returns null, without throwing, when the file cannot be opened; the reason is then in `reason`.
/// The stream owns the file and closes it when dropped. It ends early when the work of `context`,
/// which must outlive it, is out of time: much can be read and skipped without anything else that
/// looks at the clock. Must not be called inside fz_try.
fz_stream *openFileStream(MupdfContext &context, const QString &path, QString *reason);

} // namespace pdfcore
