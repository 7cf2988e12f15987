// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/gap_list.h"
#include "pdf/core/pdf_page_record.h"

#include <QHash>

/// Finds the row of a page by its identifier.
///
/// The first few look-ups after a change of the list scan it, because a lone question does not pay
/// for more; from then on a hash answers, until invalidate() reports the next change.
class PageRowIndex final
{
public:
    /// Look-ups by scanning before the hash is built.
    static constexpr int kScansBeforeHash = 4;

    /// The first row of `pages` with the identifier, or -1.
    [[nodiscard]] int rowOf(PdfPageId id, const GapList<PdfPageRecord> &pages);

    /// Builds the hash now, ahead of many look-ups.
    void prepare(const GapList<PdfPageRecord> &pages);

    /// Must be called after rows were added, removed, moved or replaced.
    void invalidate();

    /// Records read so far by scans and by building the hash: the work done, for tests.
    [[nodiscard]] qint64 recordsRead() const { return m_recordsRead; }

private:
    [[nodiscard]] int scan(PdfPageId id, const GapList<PdfPageRecord> &pages);

    QHash<PdfPageId, int> m_rows;
    bool m_rowsValid = false;
    int m_scans = 0;
    qint64 m_recordsRead = 0;
};
