// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_row_index.h"

int PageRowIndex::rowOf(PdfPageId id, const GapList<PdfPageRecord> &pages)
{
    if (!m_rowsValid) {
        if (m_scans < kScansBeforeHash) {
            ++m_scans;
            return scan(id, pages);
        }
        prepare(pages);
    }
    return m_rows.value(id, -1);
}

void PageRowIndex::prepare(const GapList<PdfPageRecord> &pages)
{
    if (m_rowsValid) {
        return;
    }
    m_rows.clear();
    m_rows.reserve(pages.size());
    // Backwards, so that of equal identifiers the first row stays.
    for (int row = static_cast<int>(pages.size()) - 1; row >= 0; --row) {
        m_rows.insert(pages.at(row).id, row);
    }
    m_recordsRead += pages.size();
    m_rowsValid = true;
}

void PageRowIndex::invalidate()
{
    m_rowsValid = false;
    m_scans = 0;
}

int PageRowIndex::scan(PdfPageId id, const GapList<PdfPageRecord> &pages)
{
    const int rows = static_cast<int>(pages.size());
    for (int row = 0; row < rows; ++row) {
        ++m_recordsRead;
        if (pages.at(row).id == id) {
            return row;
        }
    }
    return -1;
}
