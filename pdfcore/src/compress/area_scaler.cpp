// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/compress/area_scaler.h"

#include <algorithm>
#include <cstring>

namespace pdfcore {

AreaScaler::AreaScaler(int components, int fromWidth, int fromHeight, int toWidth, int toHeight)
    : m_fromWidth(fromWidth)
    , m_fromHeight(fromHeight)
    , m_columns(shares(fromWidth, toWidth))
    , m_lines(shares(fromHeight, toHeight))
{
    m_result.width = toWidth;
    m_result.height = toHeight;
    m_result.components = components;
    m_result.samples.resize(m_result.stride() * static_cast<std::size_t>(toHeight));
    // One pixel more than there is takes the share of nothing that rounding may leave.
    m_line.resize(m_result.stride() + static_cast<std::size_t>(components));
    m_sum.resize(m_result.stride());
    m_ahead.resize(m_result.stride());
}

std::vector<AreaScaler::Share> AreaScaler::shares(int from, int to)
{
    // In units of which an old sample is `to` wide and a new one `from`, all is whole numbers.
    std::vector<Share> found(static_cast<std::size_t>(from));
    const auto whole = static_cast<float>(from);
    for (int i = 0; i < from; ++i) {
        const long long begin = static_cast<long long>(i) * to;
        const long long target = begin / from;
        const long long boundary = (target + 1) * from;
        const long long first = std::min<long long>(boundary - begin, to);
        Share &share = found[static_cast<std::size_t>(i)];
        share.target = static_cast<int>(target);
        share.first = static_cast<float>(first) / whole;
        share.next = static_cast<float>(to - first) / whole;
    }
    return found;
}

void AreaScaler::squeeze(const std::uint8_t *row)
{
    std::fill(m_line.begin(), m_line.end(), 0.0F);
    const int n = m_result.components;
    for (const Share &share : m_columns) {
        float *target =
            m_line.data() + static_cast<std::size_t>(share.target) * static_cast<std::size_t>(n);
        for (int k = 0; k < n; ++k) {
            const auto value = static_cast<float>(row[k]);
            target[k] += share.first * value;
            target[n + k] += share.next * value;
        }
        row += n;
    }
}

void AreaScaler::addRow(const std::uint8_t *row)
{
    const bool isSameSize = m_result.width == m_fromWidth && m_result.height == m_fromHeight;
    if (isSameSize) {
        std::memcpy(m_result.samples.data() + static_cast<std::size_t>(m_rows) * m_result.stride(),
                    row, m_result.stride());
        ++m_rows;
        return;
    }
    squeeze(row);
    const Share &share = m_lines[static_cast<std::size_t>(m_rows)];
    for (std::size_t i = 0; i < m_sum.size(); ++i) {
        m_sum[i] += share.first * m_line[i];
    }
    if (share.next > 0.0F) {
        for (std::size_t i = 0; i < m_ahead.size(); ++i) {
            m_ahead[i] += share.next * m_line[i];
        }
    }
    ++m_rows;
    const bool isLast = m_rows == m_fromHeight;
    if (isLast || m_lines[static_cast<std::size_t>(m_rows)].target > share.target) {
        finishRow();
    }
}

void AreaScaler::finishRow()
{
    std::uint8_t *target =
        m_result.samples.data() + static_cast<std::size_t>(m_finished) * m_result.stride();
    for (std::size_t i = 0; i < m_sum.size(); ++i) {
        target[i] = static_cast<std::uint8_t>(std::clamp(m_sum[i] + 0.5F, 0.0F, 255.0F));
    }
    ++m_finished;
    m_sum.swap(m_ahead);
    std::fill(m_ahead.begin(), m_ahead.end(), 0.0F);
}

} // namespace pdfcore
