// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/packed_pixels.h"

#include <algorithm>
#include <cstring>

namespace pdfcore {

namespace {

constexpr int kFull = 255;

/// The product of two values of which 255 stands for 1.
constexpr int product(int a, int b)
{
    return (a * b + kFull / 2) / kFull;
}

bool isSeeThrough(const RawPixels &raw)
{
    return raw.hasAlpha || raw.mask != nullptr;
}

/// Packs a row of which pixels may be transparent.
void packRow(const RawPixels &raw, const unsigned char *row, const unsigned char *mask,
             bool onWhite, unsigned char *to)
{
    const int colours = std::max(raw.colorants, 1);
    for (int x = 0; x < raw.width; ++x) {
        const int alpha = raw.hasAlpha ? row[raw.colorants] : kFull;
        const int opacity = mask != nullptr ? product(alpha, mask[x]) : alpha;
        for (int i = 0; i < colours; ++i) {
            const int premultiplied = raw.colorants > 0 ? row[i] : 0;
            const int colour = alpha == 0 || alpha == kFull
                                   ? premultiplied
                                   : std::min(premultiplied * kFull / alpha, kFull);
            *to++ = static_cast<unsigned char>(onWhite ? product(colour, opacity) + kFull - opacity
                                                       : colour);
        }
        if (!onWhite) {
            *to++ = static_cast<unsigned char>(opacity);
        }
        row += raw.colorants + (raw.hasAlpha ? 1 : 0);
    }
}

} // namespace

PixelKind kindOf(const RawPixels &raw, bool onWhite)
{
    const bool hasOpacity = isSeeThrough(raw) && !onWhite;
    if (raw.colorants == 3) {
        return hasOpacity ? PixelKind::Rgba : PixelKind::Rgb;
    }
    return hasOpacity ? PixelKind::GrayAlpha : PixelKind::Gray;
}

std::unique_ptr<unsigned char[]> packedPixels(const RawPixels &raw, bool onWhite)
{
    const std::size_t rowBytes = static_cast<std::size_t>(raw.width) *
                                 static_cast<std::size_t>(bytesOf(kindOf(raw, onWhite)));
    std::unique_ptr<unsigned char[]> packed(
        new unsigned char[rowBytes * static_cast<std::size_t>(raw.height)]);
    for (int y = 0; y < raw.height; ++y) {
        const unsigned char *row = raw.samples + y * raw.stride;
        unsigned char *to = packed.get() + rowBytes * static_cast<std::size_t>(y);
        if (isSeeThrough(raw)) {
            packRow(raw, row, raw.mask != nullptr ? raw.mask + y * raw.maskStride : nullptr,
                    onWhite, to);
        } else {
            std::memcpy(to, row, rowBytes);
        }
    }
    return packed;
}

} // namespace pdfcore
