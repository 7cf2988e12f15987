// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/base/engine_error.h"

#include <QDeadlineTimer>
#include <QString>

#include <memory>

#include <qpdf/QPDF.hh>

class QTemporaryFile;

namespace pdfcore {

/// Brings the trailer of a document (ISO 32000-2, 7.5.5) into the form that QPDF relies on when it
/// writes, and that of the document by whose parameters it is to be encrypted, if any. They may be
/// one document.
void prepareTrailer(QPDF &document, QPDF *protection);

/// Writes what QPDF makes of the file at `path` to a temporary file, which others can read where
/// they cannot read the file itself. Its pages are those of pagesOf(), in their order; objects may
/// have other numbers. What is protected stays so, with the same passwords.
///
/// Null with the reason in `outcome` when QPDF cannot read the file either, finds no pages, or
/// needs longer than `deadline`. The temporary file is closed, and goes with the object.
std::unique_ptr<QTemporaryFile> newReadableCopy(const QString &path, const QString &password,
                                                QDeadlineTimer deadline, EngineError *outcome);

} // namespace pdfcore
