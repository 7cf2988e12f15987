// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

class FidelityDocument;

/// What must be right in every file that is written, whatever it was made from.
namespace FidelitySoundness {

/// Everything that is wrong with a file; each line says one thing.
QStringList problems(const QString &path);

/// The same for a file that is open already.
QStringList problems(const QString &path, FidelityDocument &document);

/// What the checker of the QPDF library finds.
QStringList syntaxProblems(const QString &path);

/// What the QPDF library finds when it reads all objects and streams. Unlike its checker it asks
/// nothing of what they mean, which some releases never come to an end of where a tree of names
/// names itself.
QStringList readingProblems(const QString &path);

/// Page objects outside the page tree, wrong counts, annotations shared by pages.
QStringList pageProblems(FidelityDocument &document);

/// Pop-ups and replies apart from their annotations, annotations that name another page.
QStringList annotationProblems(FidelityDocument &document);

/// Links, outline entries and named destinations that lead to no page; names out of order.
QStringList destinationProblems(FidelityDocument &document);

/// Elements and entries of the structure that belong to no page or to no parent.
QStringList structureProblems(FidelityDocument &document);

} // namespace FidelitySoundness
