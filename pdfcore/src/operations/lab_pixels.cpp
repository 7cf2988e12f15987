// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/lab_pixels.h"

#include <algorithm>
#include <cmath>

#include <lcms2.h>

namespace pdfcore {

namespace {

constexpr std::size_t kStrip = 1024;

/// The byte by which Little CMS names a value of a component.
unsigned char encoded(std::size_t component, float value)
{
    const float byte = component == 0 ? value / 100 * 255 : value + 128;
    return static_cast<unsigned char>(std::lround(std::clamp(byte, 0.0F, 255.0F)));
}

using ByteTable = std::array<std::array<unsigned char, 256>, 3>;

ByteTable bytesIn(const LabRanges &ranges)
{
    ByteTable table{};
    for (std::size_t component = 0; component < table.size(); ++component) {
        const float from = ranges[2 * component];
        const float to = ranges[2 * component + 1];
        for (std::size_t byte = 0; byte < 256; ++byte) {
            table[component][byte] =
                encoded(component, from + static_cast<float>(byte) / 255 * (to - from));
        }
    }
    return table;
}

void *newTransform()
{
    cmsHPROFILE lab = cmsCreateLab4Profile(nullptr);
    cmsHPROFILE rgb = cmsCreate_sRGBProfile();
    void *transform = lab != nullptr && rgb != nullptr
                          ? cmsCreateTransform(lab, TYPE_Lab_8, rgb, TYPE_RGB_8,
                                               INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOCACHE)
                          : nullptr;
    if (lab != nullptr) {
        cmsCloseProfile(lab);
    }
    if (rgb != nullptr) {
        cmsCloseProfile(rgb);
    }
    return transform;
}

} // namespace

LabRanges labRangesOf(fz_context *ctx, pdf_obj *image)
{
    LabRanges ranges{0, 100, -100, 100, -100, 100};
    pdf_obj *decode = pdf_dict_get(ctx, image, PDF_NAME(Decode));
    if (pdf_array_len(ctx, decode) == static_cast<int>(ranges.size())) {
        for (std::size_t i = 0; i < ranges.size(); ++i) {
            ranges[i] = pdf_array_get_real(ctx, decode, static_cast<int>(i));
        }
        return ranges;
    }
    pdf_obj *space = pdf_dict_get(ctx, image, PDF_NAME(ColorSpace));
    pdf_obj *given = pdf_dict_get(ctx, pdf_array_get(ctx, space, 1), PDF_NAME(Range));
    if (pdf_array_len(ctx, given) == 4) {
        for (int i = 0; i < 4; ++i) {
            ranges[static_cast<std::size_t>(i) + 2] = pdf_array_get_real(ctx, given, i);
        }
    }
    return ranges;
}

bool labToRgb(const LabRanges &ranges, const unsigned char *lab, unsigned char *rgb,
              std::size_t count)
{
    void *transform = newTransform();
    if (transform == nullptr) {
        return false;
    }
    const ByteTable table = bytesIn(ranges);
    std::array<unsigned char, kStrip * 3> strip{};
    for (std::size_t done = 0; done < count; done += kStrip) {
        const std::size_t pixels = std::min(kStrip, count - done);
        for (std::size_t i = 0; i < pixels * 3; ++i) {
            strip[i] = table[i % 3][lab[done * 3 + i]];
        }
        cmsDoTransform(transform, strip.data(), rgb + done * 3,
                       static_cast<cmsUInt32Number>(pixels));
    }
    cmsDeleteTransform(transform);
    return true;
}

} // namespace pdfcore
