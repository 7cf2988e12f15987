// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <qpdf/QPDF.hh>

namespace pdfcore {

/// Whether QPDF could not read a name of the document: one with an escaped zero, which it takes for
/// nothing at all. Call it once the objects have been read; forgets the document's warnings.
bool lacksNames(QPDF &document);

/// Gives the names of a document for PDF 1.0 or 1.1, in which "#" is a character as any other, the
/// form that they need in later versions (ISO 32000-2, 7.3.5). Names in content streams follow, as
/// they are to be those of the resources. Does nothing to documents for later versions, where each
/// reader has its own idea of what a stray "#" means.
void settleStrayNames(QPDF &document);

/// Gets the names of a document ready for being written. Some releases of QPDF write a "#" in a
/// name as it is, which makes another name of it: /A#2342 comes out as /A#42, which is /AB.
/// Afterwards the names in memory are not those that they stand for any more.
void escapeNames(QPDF &document);

} // namespace pdfcore
