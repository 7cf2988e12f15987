// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/page_images.h"

#include "pdfcore/src/mupdf/mupdf_context.h"
#include "pdfcore/src/mupdf/mupdf_internals.h"
#include "pdfcore/src/render/colour_transform.h"
#include "pdfcore/src/render/rgb_pixmap.h"

#include <algorithm>

namespace pdfcore {

/// An image in RGB (with a transform), or one whose pixels are kept (with a keeper), or both.
struct PageImage
{
    DerivedImage super;
    const ColourTransform *transform;
    PageImages *keeper; ///< Null: it keeps nothing.
    fz_irect keptArea;  ///< Which of the image's pixels are kept, ...
    int keptFactor;     ///< ... and by which power of two they are smaller.
    fz_irect lastArea;  ///< What was asked for before.
};

namespace {

/// New pixels in RGB, made of those of an image's original.
fz_pixmap *convertedPixels(fz_context *ctx, PageImage &image, fz_irect *subarea, int width,
                           int height, int *l2factor)
{
    fz_pixmap *decoded = originalPixels(ctx, &image.super, subarea, width, height, l2factor);
    fz_pixmap *base = nullptr;
    fz_pixmap *rgb = nullptr;
    fz_var(base);
    fz_var(rgb);
    fz_try(ctx)
    {
        fz_colorspace *space = fz_pixmap_colorspace(ctx, decoded);
        fz_pixmap *source = decoded;
        if (baseOf(space) != space) {
            base = fz_convert_pixmap(ctx, decoded, baseOf(space), nullptr, nullptr,
                                     fz_default_color_params, 1);
            source = base;
        }
        if (image.transform->components() == fz_pixmap_colorants(ctx, source)) {
            rgb = newRgbPixmap(ctx, source, *image.transform);
        } else {
            rgb = fz_convert_pixmap(ctx, source, fz_device_rgb(ctx), nullptr, nullptr,
                                    fz_default_color_params, 1);
        }
    }
    fz_always(ctx)
    {
        fz_drop_pixmap(ctx, base);
        fz_drop_pixmap(ctx, decoded);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
    return rgb;
}

fz_pixmap *newPixels(fz_context *ctx, PageImage &image, fz_irect *subarea, int width, int height,
                     int *l2factor)
{
    return image.transform != nullptr
               ? convertedPixels(ctx, image, subarea, width, height, l2factor)
               : originalPixels(ctx, &image.super, subarea, width, height, l2factor);
}

/// Bytes of a pixel of the image once it is decoded, at most.
std::size_t bytesPerPixel(fz_context *ctx, const PageImage &image)
{
    constexpr std::size_t kAlpha = 1;
    int components = 3;
    if (image.transform == nullptr) {
        fz_colorspace *space = colourSpaceOf(image.super.original);
        components = space == nullptr ? 1
                                      : std::max(fz_colorspace_n(ctx, space),
                                                 fz_colorspace_n(ctx, baseOf(space)));
    }
    return static_cast<std::size_t>(components) + kAlpha;
}

/// Bytes of an area of the image, smaller by a power of two.
std::size_t decodedBytes(fz_context *ctx, const PageImage &image, fz_irect area, int l2factor)
{
    const auto smaller = [&](int length) {
        return (static_cast<std::size_t>(std::max(length, 0)) >> l2factor) + 1;
    };
    return smaller(area.x1 - area.x0) * smaller(area.y1 - area.y0) * bytesPerPixel(ctx, image);
}

bool contains(fz_irect outer, fz_irect inner)
{
    return outer.x0 <= inner.x0 && outer.y0 <= inner.y0 && outer.x1 >= inner.x1 &&
           outer.y1 >= inner.y1;
}

/// Makes a range of a line from 0 to `whole` as many times as long as `factor` says, away from
/// where it was before.
void growRange(int &from, int &to, int lastFrom, int whole, std::size_t factor)
{
    const auto length = static_cast<int>(
        std::min(static_cast<std::size_t>(to - from) * factor, static_cast<std::size_t>(whole)));
    if (from >= lastFrom) {
        to = std::min(from + length, whole);
    } else {
        from = std::max(to - length, 0);
    }
}

/// The pixels to decode when those of `asked` are asked for: all of them, or as many more as may be
/// kept in the direction in which the parts of the page go.
fz_irect areaToKeep(fz_context *ctx, const PageImage &image, fz_irect asked, int l2factor)
{
    const fz_irect whole = wholeOf(image.super.original);
    const std::size_t most = image.keeper->mostBytes();
    if (decodedBytes(ctx, image, whole, l2factor) <= most) {
        return whole;
    }
    fz_irect area = asked;
    const std::size_t factor = most / decodedBytes(ctx, image, asked, l2factor);
    if (factor > 1 && asked.y0 == whole.y0 && asked.y1 == whole.y1) {
        growRange(area.x0, area.x1, image.lastArea.x0, whole.x1, factor);
    } else if (factor > 1) {
        growRange(area.y0, area.y1, image.lastArea.y0, whole.y1, factor);
    }
    return area;
}

/// More of the image than the part that was asked for, from what is kept if that is enough.
///
/// An image of which each pass gets another part would be decoded anew for every one of them, and
/// MuPDF fits each part to the pixels of the page by itself, which shows where they meet.
fz_pixmap *keptPixels(fz_context *ctx, PageImage &image, fz_irect &subarea, int width, int height,
                      int &l2factor)
{
    const int wanted = l2factor;
    if (image.super.kept == nullptr || image.keptFactor != wanted ||
        !contains(image.keptArea, subarea)) {
        fz_drop_pixmap(ctx, image.super.kept);
        image.super.kept = nullptr;
        fz_irect area = areaToKeep(ctx, image, subarea, wanted);
        image.lastArea = subarea;
        image.keeper->makeRoom(ctx, decodedBytes(ctx, image, area, wanted));
        fz_pixmap *pixels = newPixels(ctx, image, &area, width, height, &l2factor);
        subarea = area;
        if (l2factor > 0) {
            // MuPDF makes them smaller in their own memory.
            return pixels;
        }
        image.super.kept = pixels;
        image.keptArea = area;
        image.keptFactor = wanted;
    }
    l2factor = 0;
    subarea = image.keptArea;
    return fz_keep_pixmap(ctx, image.super.kept);
}

fz_pixmap *getPagePixmap(fz_context *ctx, fz_image *given, fz_irect *subarea, int width, int height,
                         int *l2factor)
{
    auto &image = *reinterpret_cast<PageImage *>(given);
    if (image.keeper == nullptr || subarea == nullptr || l2factor == nullptr) {
        return newPixels(ctx, image, subarea, width, height, l2factor);
    }
    return keptPixels(ctx, image, *subarea, width, height, *l2factor);
}

std::size_t bytesOf(fz_context *ctx, fz_pixmap *pixmap)
{
    return static_cast<std::size_t>(fz_pixmap_stride(ctx, pixmap)) *
           static_cast<std::size_t>(fz_pixmap_height(ctx, pixmap));
}

PageImage *newPageImage(fz_context *ctx, fz_image *original, const ColourTransform *transform,
                        PageImages *keeper)
{
    DerivedImage *created =
        newDerivedImage(ctx, original, transform != nullptr, sizeof(PageImage), &getPagePixmap);
    auto *image = reinterpret_cast<PageImage *>(created);
    image->transform = transform;
    image->keeper = keeper;
    return image;
}

void dropImage(fz_context *ctx, fz_image *original, PageImage *derived)
{
    fz_drop_image(ctx, original);
    if (derived != nullptr) {
        // Others may hold it for longer than its keeper lives.
        derived->keeper = nullptr;
        fz_drop_image(ctx, &derived->super.super);
    }
}

} // namespace

PageImages::PageImages(MupdfContext &context, std::size_t mostBytes)
    : m_context(context)
    , m_mostBytes(mostBytes)
{}

PageImages::~PageImages()
{
    for (const Entry &entry : m_entries) {
        dropImage(m_context.get(), entry.original, entry.derived);
    }
}

fz_image *PageImages::imageFor(fz_context *ctx, fz_image *image, const ColourTransform *transform)
{
    if (transform == nullptr && (!comeAgain() || isDecoded(image))) {
        return image;
    }
    for (const Entry &entry : m_entries) {
        if (entry.original == image && entry.transform == transform) {
            return &entry.derived->super.super;
        }
    }
    PageImage *derived = newPageImage(ctx, image, transform, comeAgain() ? this : nullptr);
    Entry &slot = m_entries[m_next];
    dropImage(ctx, slot.original, slot.derived);
    slot = {fz_keep_image(ctx, image), transform, derived};
    m_next = (m_next + 1) % m_entries.size();
    return &derived->super.super;
}

void PageImages::makeRoom(fz_context *ctx, std::size_t more)
{
    std::size_t bytes = more;
    for (const Entry &entry : m_entries) {
        if (entry.derived != nullptr && entry.derived->super.kept != nullptr) {
            bytes += bytesOf(ctx, entry.derived->super.kept);
        }
    }
    if (bytes <= m_mostBytes) {
        return;
    }
    for (const Entry &entry : m_entries) {
        if (entry.derived != nullptr) {
            fz_drop_pixmap(ctx, entry.derived->super.kept);
            entry.derived->super.kept = nullptr;
        }
    }
}

} // namespace pdfcore
