// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/src/compress/raster.h"

#include <vector>

namespace pdfcore {

/// Makes a picture smaller while its rows come in: each new sample is the mean of the area that it
/// covers, with fractions. Of the large picture there is never more than a row in memory.
class AreaScaler
{
public:
    /// The new size is not larger than the old one in either direction; both are at least 1.
    AreaScaler(int components, int fromWidth, int fromHeight, int toWidth, int toHeight);

    /// Takes the next row of the large picture.
    void addRow(const std::uint8_t *row);
    /// Whether all rows have come in.
    [[nodiscard]] bool isComplete() const { return m_rows == m_fromHeight; }
    /// What came out; the scaler is of no use afterwards.
    [[nodiscard]] Raster takeResult() { return std::move(m_result); }

private:
    struct Share
    {
        int target = 0;     ///< The first new sample that an old one is part of.
        float first = 0.0F; ///< How much it counts there,
        float next = 0.0F;  ///< and in the next one.
    };

    static std::vector<Share> shares(int from, int to);
    void squeeze(const std::uint8_t *row);
    void finishRow();

    int m_fromWidth;
    int m_fromHeight;
    int m_rows = 0;
    int m_finished = 0;
    std::vector<Share> m_columns;
    std::vector<Share> m_lines;
    std::vector<float> m_line;  ///< A row in the new width.
    std::vector<float> m_sum;   ///< The new row that is being made,
    std::vector<float> m_ahead; ///< and what belongs to the one after it.
    Raster m_result;
};

} // namespace pdfcore
