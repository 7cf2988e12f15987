// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "tests/pdfcore/fidelity/fidelity_document.h"

/// Real files for tests of what a save keeps.
namespace FidelityCorpus {

/// What a file carries besides its pages.
QStringList features(FidelityDocument &document);

/// The same file with the mark "PREFIX-number" in the content of each page, where it draws nothing.
/// Nothing else is mended. Empty when the file cannot be written again.
QByteArray marked(FidelityDocument &document, const QByteArray &prefix);

/// Whether the page has an annotation that stays upright when the page is turned.
bool hasUpright(FidelityDocument &document, qsizetype index);

/// Whether the form knows widgets of the page as parts of fields, but not they themselves, so that
/// readers that look at the page alone miss their values. Changes the document.
bool hasLooseParts(FidelityDocument &document, qsizetype index);

/// Whether a widget on the page is signed.
bool isSigned(FidelityDocument &document, qsizetype index);

} // namespace FidelityCorpus
