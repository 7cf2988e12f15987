// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdf/core/pdf_page_record.h"

#include <QList>
#include <QSet>

class PdfDocumentModel;

/// Where a document is to be split: the pages that begin a new part.
///
/// The pages are named by their identifiers, so that a split point follows its page wherever it is
/// moved. A page that is not in the document does not count, but counts again once it is back.
class PageSplitPoints final
{
public:
    /// Splits before every page, whatever was chosen; the choice is kept.
    void setEveryPage(bool everyPage) { m_everyPage = everyPage; }
    [[nodiscard]] bool isEveryPage() const { return m_everyPage; }

    /// Adds a page, or removes it if it was there.
    void toggle(PdfPageId id);
    void clear() { m_ids.clear(); }

    /// Whether a part begins with the page, which is not the first one of the document.
    [[nodiscard]] bool contains(PdfPageId id) const { return m_everyPage || m_ids.contains(id); }
    /// The rows before which the document is split, ascending; never row 0.
    [[nodiscard]] QList<int> rows(const PdfDocumentModel &model) const;

private:
    QSet<PdfPageId> m_ids;
    bool m_everyPage = false;
};
