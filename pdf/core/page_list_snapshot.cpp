// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdf/core/page_list_snapshot.h"

#include <QHash>

#include <algorithm>
#include <iterator>

namespace {

/// Shorter stretches are copied: a run of its own would cost about as much.
constexpr qsizetype kShortestSharedRun = 4;
/// A snapshot in more pieces than this is taken anew in one piece.
constexpr std::size_t kMostRuns = 512;

/// How many records `pages` has, from `row` on, in common with `others` from `otherRow` on.
qsizetype commonLength(const QList<PdfPageRecord> &pages, qsizetype row,
                       const QList<PdfPageRecord> &others, qsizetype otherRow)
{
    const auto begin = pages.cbegin() + row;
    return std::mismatch(begin, pages.cend(), others.cbegin() + otherRow, others.cend()).first -
           begin;
}

} // namespace

PageListSnapshot::PageListSnapshot(const QList<PdfPageRecord> &pages,
                                   const PageListSnapshot &similar)
{
    if (similar.m_runs.empty()) {
        append(pages);
        return;
    }
    const QList<PdfPageRecord> others = similar.pages();
    QHash<PdfPageId, qsizetype> otherRows;
    otherRows.reserve(others.size());
    for (qsizetype row = 0; row < others.size(); ++row) {
        otherRows.insert(others.at(row).id, row);
    }

    QList<PdfPageRecord> ownRecords;
    for (qsizetype row = 0; row < pages.size();) {
        const auto other = otherRows.constFind(pages.at(row).id);
        const qsizetype common =
            other == otherRows.cend() ? 0 : commonLength(pages, row, others, *other);
        if (common >= kShortestSharedRun) {
            append(ownRecords);
            ownRecords.clear();
            appendPart(similar, *other, common);
            row += common;
        } else {
            ownRecords.append(pages.at(row));
            ++row;
        }
    }
    append(ownRecords);
    if (m_runs.size() > kMostRuns) {
        m_runs.clear();
        append(pages);
    }
}

QList<PdfPageRecord> PageListSnapshot::pages() const
{
    if (m_runs.size() == 1 && m_runs.front().count == m_runs.front().records.size()) {
        return m_runs.front().records;
    }
    qsizetype size = 0;
    for (const Run &run : m_runs) {
        size += run.count;
    }
    QList<PdfPageRecord> pages;
    pages.reserve(size);
    for (const Run &run : m_runs) {
        std::copy_n(run.records.cbegin() + run.first, run.count, std::back_inserter(pages));
    }
    return pages;
}

void PageListSnapshot::append(const QList<PdfPageRecord> &records)
{
    if (!records.isEmpty()) {
        m_runs.push_back({records, 0, records.size()});
    }
}

void PageListSnapshot::appendPart(const PageListSnapshot &other, qsizetype first, qsizetype count)
{
    for (const Run &run : other.m_runs) {
        const qsizetype taken = std::min(run.count - first, count);
        if (taken > 0) {
            m_runs.push_back({run.records, run.first + first, taken});
            count -= taken;
        }
        first = std::max<qsizetype>(first - run.count, 0);
    }
}
