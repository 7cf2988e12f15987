// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/page_bands.h"

#include "pdfcore/src/render/page_painter.h"

#include <algorithm>
#include <cstring>

namespace pdfcore {

namespace {

constexpr qsizetype kBytesPerPixel = 3;

int rowsOfBand(QSize pageSize, qsizetype bandBytes)
{
    const qsizetype rowBytes = kBytesPerPixel * pageSize.width();
    return static_cast<int>(
        std::clamp<qsizetype>(bandBytes / rowBytes, 1, qsizetype{pageSize.height()}));
}

} // namespace

PageBands::PageBands(QSize pageSize, int overlap, qsizetype bandBytes)
    : m_pageSize(pageSize)
    , m_bandRows(rowsOfBand(pageSize, bandBytes))
    , m_overlap(m_bandRows < pageSize.height() ? std::clamp(overlap, 0, m_bandRows) : 0)
    , m_memory(bandSize(), kPageImageFormat)
{}

QSize PageBands::bandSize() const
{
    return {m_pageSize.width(), m_overlap + m_bandRows};
}

bool PageBands::next()
{
    m_firstNewRow += m_newRows;
    if (m_firstNewRow >= m_pageSize.height()) {
        return false;
    }
    if (m_firstNewRow > 0) {
        const auto bytes =
            static_cast<std::size_t>(m_overlap) * static_cast<std::size_t>(m_memory.bytesPerLine());
        // The band before was a full one.
        std::memmove(m_memory.bits(), m_memory.constScanLine(m_bandRows), bytes);
        m_common = m_overlap;
    }
    m_newRows = std::min(m_bandRows, m_pageSize.height() - m_firstNewRow);
    return true;
}

QImage PageBands::newRows()
{
    return QImage(m_memory.scanLine(m_overlap), m_pageSize.width(), m_newRows,
                  m_memory.bytesPerLine(), kPageImageFormat);
}

QImage PageBands::image() const
{
    return QImage(m_memory.constScanLine(m_overlap - m_common), m_pageSize.width(),
                  m_common + m_newRows, m_memory.bytesPerLine(), kPageImageFormat);
}

} // namespace pdfcore
