// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>

namespace pdfcore {

/// The image of a page, made band after band from the top in memory that is used again for each.
///
/// A band begins with the last rows of the one before. Call next() for each band, paint newRows()
/// and use image().
class PageBands final
{
public:
    /// @param pageSize   Of the whole image in pixels; not empty.
    /// @param overlap    Rows that a band has in common with the one before; fewer where these
    /// would
    ///                   be more than the band has rows of its own.
    /// @param bandBytes  What the rows of a band may take, except those in common. There is always
    /// at
    ///                   least one.
    PageBands(QSize pageSize, int overlap, qsizetype bandBytes = kBandBytes);

    /// False when there is not enough memory.
    [[nodiscard]] bool isValid() const { return !m_memory.isNull(); }
    [[nodiscard]] QSize pageSize() const { return m_pageSize; }
    /// Of the largest band.
    [[nodiscard]] QSize bandSize() const;

    /// Goes on to the next band, at first to the first one; false when there is no other.
    bool next();

    /// The rows that the band before did not have, in the memory of the band.
    [[nodiscard]] QImage newRows();
    /// Where these are in the page.
    [[nodiscard]] int firstNewRow() const { return m_firstNewRow; }

    /// The whole band, valid until next() is called.
    [[nodiscard]] QImage image() const;
    /// Where it begins in the page.
    [[nodiscard]] int top() const { return m_firstNewRow - m_common; }

private:
    /// Small beside what a program takes, and large enough that going through a page for each band
    /// takes little of the time.
    static constexpr qsizetype kBandBytes = qsizetype{16} << 20;

    QSize m_pageSize;
    int m_bandRows;
    int m_overlap;
    QImage m_memory; ///< The rows in common, then the new ones.
    int m_firstNewRow = 0;
    int m_newRows = 0; ///< 0: before the first band.
    int m_common = 0;
};

} // namespace pdfcore
