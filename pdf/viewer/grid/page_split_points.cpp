// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/viewer/grid/page_split_points.h"

#include "pdf/core/pdf_document_model.h"

#include <algorithm>
#include <numeric>

void PageSplitPoints::toggle(PdfPageId id)
{
    if (!m_ids.remove(id)) {
        m_ids.insert(id);
    }
}

QList<int> PageSplitPoints::rows(const PdfDocumentModel &model) const
{
    if (m_everyPage) {
        QList<int> all(std::max(model.rowCount() - 1, 0));
        std::iota(all.begin(), all.end(), 1);
        return all;
    }
    QList<int> rows;
    for (const PdfPageId id : m_ids) {
        const int row = model.rowForPageId(id);
        if (row >= 1) {
            rows.append(row);
        }
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}
