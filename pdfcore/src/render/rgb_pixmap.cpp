// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/rgb_pixmap.h"

#include "pdfcore/src/render/colour_transform.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace pdfcore {

namespace {

/// Where component `component` of pixel `pixel` stands in packed pixels of `components` each.
constexpr std::size_t indexOf(int pixel, int components, int component)
{
    return static_cast<std::size_t>(pixel) * static_cast<std::size_t>(components) +
           static_cast<std::size_t>(component);
}

} // namespace

fz_pixmap *newRgbPixmap(fz_context *ctx, const fz_pixmap *source, const ColourTransform &transform)
{
    auto *mutableSource = const_cast<fz_pixmap *>(source);
    const fz_irect box = fz_pixmap_bbox(ctx, source);
    const int alpha = fz_pixmap_alpha(ctx, source);
    fz_pixmap *rgb = fz_new_pixmap_with_bbox(ctx, fz_device_rgb(ctx), box, nullptr, alpha);

    const int width = fz_pixmap_width(ctx, mutableSource);
    const int height = fz_pixmap_height(ctx, mutableSource);
    const int sourceComponents = fz_pixmap_components(ctx, mutableSource);
    const unsigned char *from = fz_pixmap_samples(ctx, mutableSource);
    const std::ptrdiff_t fromStride = fz_pixmap_stride(ctx, mutableSource);
    unsigned char *to = fz_pixmap_samples(ctx, rgb);
    const std::ptrdiff_t toStride = fz_pixmap_stride(ctx, rgb);

    if (alpha == 0) {
        for (int y = 0; y < height; ++y) {
            transform.convertPixels(from + y * fromStride, to + y * toStride,
                                    static_cast<std::size_t>(width));
        }
        return rgb;
    }
    // Colours are premultiplied: undo that, convert and multiply again.
    constexpr int kStrip = 256;
    const int colorants = sourceComponents - 1;
    std::array<unsigned char, std::size_t{kStrip} * 4> plain{};
    std::array<unsigned char, std::size_t{kStrip} * 3> converted{};
    for (int y = 0; y < height; ++y) {
        const unsigned char *row = from + y * fromStride;
        unsigned char *out = to + y * toStride;
        for (int x = 0; x < width; x += kStrip) {
            const int count = std::min(kStrip, width - x);
            for (int i = 0; i < count; ++i) {
                const unsigned char *pixel =
                    row + static_cast<std::ptrdiff_t>(x + i) * sourceComponents;
                const int a = pixel[colorants];
                for (int c = 0; c < colorants; ++c) {
                    plain[indexOf(i, colorants, c)] =
                        static_cast<unsigned char>(a == 0 ? 0 : std::min(255, pixel[c] * 255 / a));
                }
            }
            transform.convertPixels(plain.data(), converted.data(),
                                    static_cast<std::size_t>(count));
            for (int i = 0; i < count; ++i) {
                const int a =
                    row[static_cast<std::ptrdiff_t>(x + i) * sourceComponents + colorants];
                unsigned char *pixel = out + static_cast<std::ptrdiff_t>(x + i) * 4;
                for (int c = 0; c < 3; ++c) {
                    pixel[c] = static_cast<unsigned char>(converted[indexOf(i, 3, c)] * a / 255);
                }
                pixel[3] = static_cast<unsigned char>(a);
            }
        }
    }
    return rgb;
}

} // namespace pdfcore
