// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"

#include <QList>

#include <vector>

/// A page list at one moment, kept in little memory.
///
/// Stretches of records that a snapshot has in common with a similar one are shared between the
/// two, wherever they stand, so that the snapshots of a long history of small edits take little
/// more memory than one page list. A value; copies share everything.
class PageListSnapshot final
{
public:
    PageListSnapshot() = default;
    /// Takes the list down; `similar` is a snapshot that `pages` has much in common with.
    PageListSnapshot(const QList<PdfPageRecord> &pages, const PageListSnapshot &similar);

    /// The list exactly as it was.
    [[nodiscard]] QList<PdfPageRecord> pages() const;

private:
    /// `count` records of a shared list, from `first` on.
    struct Run
    {
        QList<PdfPageRecord> records;
        qsizetype first = 0;
        qsizetype count = 0;
    };

    void append(const QList<PdfPageRecord> &records);
    void appendPart(const PageListSnapshot &other, qsizetype first, qsizetype count);

    std::vector<Run> m_runs;
};
