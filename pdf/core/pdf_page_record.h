// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/paper_size.h"
#include "pdfcore/pdf_editor_backend.h"

#include <QMetaType>
#include <QSizeF>
#include <QString>
#include <QTypeInfo>

/// Identity of one page of an edited document; stable across moves, rotations, undo and redo.
///
/// Issued by PdfDocumentModel from 1 upwards and never reused within one model; 0 is never valid.
using PdfPageId = quint64;

/// How a page came into the edited document. The values are stable.
enum class PdfPageOrigin : qint32 {
    Original = 0,  ///< A page of the file that was opened.
    Inserted = 1,  ///< A page inserted from another PDF.
    Blank = 2,     ///< An empty page without a source file.
    Duplicate = 3, ///< A copy of another page of the document.
};

/// Size in points of a blank page when nothing else is asked for.
inline constexpr QSizeF kBlankPageSize = kA4PageSize;

/// What a page shows, whichever page of a document it is: two pages with equal appearances look the
/// same at the same size.
struct PdfPageAppearance
{
    /// Full path of the source file; empty for a blank page.
    QString sourcePath;
    /// Which revision of the source file is meant; see PdfFileRevision::generation().
    int generation = 0;
    /// Zero-based page index in the source file; -1 for a blank page.
    qint32 sourcePageIndex = -1;
    /// Clockwise rotation in degrees, 0 to 359.
    qint32 rotation = 0;
    bool blank = false;

    friend bool operator==(const PdfPageAppearance &, const PdfPageAppearance &) = default;
};

/// One page of the edited document: where it comes from, how it is turned, and its state.
struct PdfPageRecord
{
    PdfPageId id = 0;
    /// Full path of the source file; empty for a blank page.
    QString sourcePath;
    /// Password that opens the source file; empty if it needs none.
    QString password;
    /// Zero-based page index in the source file; -1 for a blank page.
    qint32 sourcePageIndex = -1;
    /// Clockwise rotation in degrees, 0 to 359.
    qint32 rotation = 0;
    /// Size in points before `rotation`.
    QSizeF pageSize;
    PdfPageOrigin origin = PdfPageOrigin::Original;
    /// The page is chosen for the operations that work on several pages.
    bool selected = false;
    /// The page was created or altered since the last save.
    bool changed = false;
    /// The revision of the source file that the page is of; null for a blank page.
    PdfFileRevisionPtr revision;

    /// Size in points as shown: width and height swapped for a page turned by 90 or 270 degrees.
    [[nodiscard]] QSizeF displaySize() const;

    /// What the page shows.
    [[nodiscard]] PdfPageAppearance appearance() const;

    /// The page as the engine takes it.
    [[nodiscard]] PdfSourcePage toSourcePage() const;

    friend bool operator==(const PdfPageRecord &, const PdfPageRecord &) = default;
};

Q_DECLARE_TYPEINFO(PdfPageRecord, Q_RELOCATABLE_TYPE);
Q_DECLARE_METATYPE(PdfPageOrigin)
