// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace pdfcore {

/// The spellings under which a typed password may have been stored, most likely first, in UTF-8.
///
/// Programs disagree about the encoding of passwords (ISO 32000-2, 7.6.4.3): files exist whose
/// password was normalised to another Unicode form, or whose bytes are UTF-8 or a Windows code page
/// although the security handler asks for PDFDocEncoding. MuPDF takes UTF-8 and encodes it as the
/// handler asks, so an odd byte string is given as the text which encodes to it.
QList<QByteArray> mupdfPasswordCandidates(const QString &password);

/// The same for QPDF, which takes the bytes as they are to be tried.
QList<QByteArray> qpdfPasswordCandidates(const QString &password);

} // namespace pdfcore
