// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include "pdfcore/pdf_cancel_flag.h"
#include "pdfcore/src/compress/raster.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <set>
#include <vector>

#include <qpdf/QPDFObjectHandle.hh>

namespace pdfcore {

/// Counts the colours of a picture, as far as they are few.
class ColourCount
{
public:
    /// @param enough  More are not counted.
    ColourCount(int components, std::size_t enough)
        : m_components(static_cast<std::size_t>(components))
        , m_enough(enough)
    {}

    void addRow(const std::uint8_t *row, int width);
    [[nodiscard]] bool areMany() const { return m_colours.size() > m_enough; }

private:
    std::size_t m_components;
    std::size_t m_enough;
    std::set<std::uint32_t> m_colours;
    std::uint32_t m_last = 0;
};

/// Undoes the filters of an image of 8 bits and hands out its rows, `stride` bytes each. False when
/// there are fewer than `rows` of them, or any damage, or the work was cancelled.
bool readSamples(QPDFObjectHandle image, std::size_t stride, int rows, const PdfCancelFlag &cancel,
                 const std::function<void(const std::uint8_t *)> &sink);

} // namespace pdfcore
