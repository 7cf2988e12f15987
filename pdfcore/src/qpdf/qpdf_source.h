// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/base/damage.h"
#include "pdfcore/src/base/engine_error.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>

#include <exception>
#include <memory>
#include <vector>

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Opens the file at `path` for copying from. Null on failure, with the error in `outcome`.
///
/// The user or the owner password opens it; a file that opens with the empty user password does so
/// whatever password is given, and so does one of which only the attachments are encrypted, though
/// without its key (see hasKey()). The object belongs to the calling thread and prints nothing.
/// After `deadline` the file cannot be read any more.
std::shared_ptr<QPDF> openQpdf(const QString &path, const QString &password, EngineError *outcome,
                               Damage damage = Damage::Repair,
                               QDeadlineTimer deadline = QDeadlineTimer(QDeadlineTimer::Forever));

/// Opens a document that is in memory, in the same way.
std::shared_ptr<QPDF> openQpdf(const QByteArray &content, const QString &password,
                               EngineError *outcome);

/// The pages of `document` in order, by the rules that DocumentSession finds them by: what has kids
/// is a node and counts once, anything else that is a dictionary is a page. QPDF's own
/// getAllPages() has other rules for damaged page trees, and the pages of an output are those that
/// were shown.
///
/// What a page inherits (ISO 32000-2, 7.7.3.4) is written into it, and the page tree is made a flat
/// one of these pages, so that they can be copied. Only in memory.
std::vector<QPDFObjectHandle> pagesOf(QPDF &document);

/// The error value and message for an exception that QPDF threw while reading.
EngineError qpdfReadError(const std::exception &exception);

} // namespace pdfcore
