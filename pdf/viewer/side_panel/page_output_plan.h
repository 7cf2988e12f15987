// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

/// One PDF file to be made of pages of the document.
struct PageOutputFile
{
    /// The name of the file, without a folder.
    QString fileName;
    /// The rows of its pages in the model, in the order in which they are written.
    QList<int> rows;

    friend bool operator==(const PageOutputFile &, const PageOutputFile &) = default;
};

/// The files that an extraction of the pages at `rows` (ascending) makes: one file for each page,
/// named after its page number, or a single one if `combine` is set and there are at least two
/// pages. `baseName` is the document's file name without its suffix.
[[nodiscard]] QList<PageOutputFile> planExtract(const QString &baseName, const QList<int> &rows,
                                                bool combine);

/// The files that splitting a document of `pageCount` pages makes, numbered from 1: cut before
/// every page if `everyPage` is set, otherwise before each of `beforeRows`, which may come in any
/// order; rows that no cut can be made before, and repeated ones, do not count. Empty if there is
/// nothing to cut.
[[nodiscard]] QList<PageOutputFile> planSplit(const QString &baseName, int pageCount,
                                              bool everyPage, const QList<int> &beforeRows);
