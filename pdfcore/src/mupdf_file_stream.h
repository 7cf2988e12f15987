#pragma once

#include <QString>

#include <mupdf/fitz.h>

namespace pdfcore {

/// Opens `path` as a MuPDF stream over QFile, so that any path that Qt can open works.
///
/// Returns null, without throwing, when the file cannot be opened; the reason is then in `reason`.
/// The stream owns the file and closes it when dropped. Must not be called inside fz_try.
fz_stream *openFileStream(fz_context *ctx, const QString &path, QString *reason);

} // namespace pdfcore
