// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pdfcore {

/// The samples of a picture, in rows from the top, each of 8 bits; the components of a pixel stand
/// together. What the components mean is not known here.
struct Raster
{
    int width = 0;
    int height = 0;
    int components = 0;
    std::vector<std::uint8_t> samples;

    [[nodiscard]] std::size_t stride() const
    {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(components);
    }
    [[nodiscard]] const std::uint8_t *row(int y) const
    {
        return samples.data() + static_cast<std::size_t>(y) * stride();
    }
};

} // namespace pdfcore
