// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/mupdf/mupdf_context.h"

#include <QDeadlineTimer>
#include <QString>

#include <mupdf/pdf.h>
#include <qpdf/QPDF.hh>

namespace pdfcore {

/// How the objects that two libraries find in one damaged file compare.
enum class FoundObjects {
    Same,         ///< The same ones, in the same places.
    MoreWithQpdf, ///< QPDF finds what MuPDF finds, in the same places, and more.
    Different,
};

/// Compares what MuPDF found with what QPDF found in the same file.
FoundObjects compareObjects(MupdfContext &context, pdf_document *document, QPDF &other);

/// Whether MuPDF's repair of a document lost objects that QPDF finds: what MuPDF takes for a stream
/// without an end goes on to the end of the next one, over all objects between, or to the end of
/// the file. Among what is lost may be that the document is encrypted.
///
/// Costs next to nothing when neither an object nor the trailer is missing.
///
/// @param path  The file that the document was read from.
bool hasLostObjects(MupdfContext &context, pdf_document *document, const QString &path,
                    const QString &password, QDeadlineTimer deadline);

} // namespace pdfcore
