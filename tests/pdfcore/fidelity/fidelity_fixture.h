// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tests/pdfcore/fidelity/fidelity_assembly.h"

#include <QByteArray>
#include <QString>

/// Documents for tests of what a save keeps.
///
/// Every page shows its mark, such as "MAIN-3" for page 3 of the document MAIN, so that a page is
/// told from its content. Titles of outline entries and texts of links that lead to a page end in
/// "@" and the mark of that page. All names (of fields, destinations, attachments, resources,
/// content groups) are the same in every document.
namespace FidelityFixture {

/// Pages of everything().
constexpr int kPages = 8;

/// "MAIN-3" for page number 3.
QByteArray mark(const QByteArray &prefix, int number);

/// A content stream that shows the mark of page `number`, in a font called /F1.
QByteArray markedContent(const QByteArray &prefix, int number);

/// A document of `count` pages, called page1, page2, ..., without anything else; other objects are
/// called catalogue, pages and font.
FidelityAssembly plain(const QByteArray &prefix, int count);

/// A document of kPages pages with everything that a document can carry: outline, named
/// destinations, links, other annotations, form, structure, labels, attachments, content groups,
/// metadata.
FidelityAssembly everything(const QByteArray &prefix);

/// The same without the signature and the hybrid form, which a save removes.
FidelityAssembly unsignedEverything(const QByteArray &prefix);

/// The mark after the "@" in a text; empty when there is none.
QString markInText(const QString &text);

} // namespace FidelityFixture
