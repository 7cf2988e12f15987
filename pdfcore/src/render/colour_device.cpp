// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/colour_device.h"

#include "pdfcore/src/mupdf/mupdf_context.h"
#include "pdfcore/src/mupdf/mupdf_internals.h"
#include "pdfcore/src/render/colour_spaces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>

namespace pdfcore {

namespace {

/// Device calls between two looks at the clock.
constexpr unsigned kCallsPerClockCheck = 32;

/// Largest shading, in device pixels, that is painted in its own colours and then converted.
constexpr double kMaxShadePixels = 64.0 * 1024 * 1024;

/// Pixels that the tiles of one pattern may cover together, several seconds of work in one call.
constexpr double kMaxTilePixels = 5e9;

/// Pixels for which placing a tile counts, however small it is.
constexpr double kPixelsPerTile = 20;

/// Images whose converted form is kept while a page is painted.
constexpr std::size_t kKeptImages = 16;

struct ConvertedImage
{
    DerivedImage super;
    const ColourTransform *transform;
};

struct KeptImage
{
    fz_image *original;
    const ColourTransform *transform;
    fz_image *converted;
};

struct ColourDevice
{
    fz_device super;
    fz_device *target;
    const ColourSpaces *spaces;
    MupdfContext *context;
    fz_cookie *cookie;
    fz_default_colorspaces *defaults;
    fz_rect area;
    unsigned callsUntilClock;
    unsigned maskDepth; ///< Masks that are being made, from the first by luminosity on.
    std::array<KeptImage, kKeptImages> images;
    std::size_t nextImage;
};

ColourDevice &self(fz_device *device)
{
    return *reinterpret_cast<ColourDevice *>(device);
}

fz_device *target(fz_device *device)
{
    ColourDevice &own = self(device);
    if (own.callsUntilClock == 0) {
        own.callsUntilClock = kCallsPerClockCheck;
        if (own.context->isOutOfTime()) {
            own.cookie->abort = 1;
        }
    }
    --own.callsUntilClock;
    return own.target;
}

/// The colour space that `space` stands for once the page's default spaces are applied.
fz_colorspace *resolved(fz_context *ctx, const ColourDevice &device, fz_colorspace *space)
{
    if (space == nullptr || device.defaults == nullptr) {
        return space;
    }
    if (space == fz_device_gray(ctx)) {
        return fz_default_gray(ctx, device.defaults);
    }
    if (space == fz_device_rgb(ctx)) {
        return fz_default_rgb(ctx, device.defaults);
    }
    if (space == fz_device_cmyk(ctx)) {
        return fz_default_cmyk(ctx, device.defaults);
    }
    return space;
}

/// The conversion that colours of `space` need, or null.
const ColourTransform *transformFor(fz_context *ctx, const ColourDevice &device,
                                    fz_colorspace *space)
{
    fz_colorspace *base = resolved(ctx, device, baseOf(space));
    for (int depth = 0; depth < 2 && baseOf(base) != base; ++depth) {
        base = resolved(ctx, device, baseOf(base));
    }
    const ColourTransform *transform = device.spaces->transformOf(base);
    // A mask is no picture: its luminosity follows the plain formula, by which full black is none.
    if (device.maskDepth > 0 && transform == ColourTransform::pressCmyk().get()) {
        return nullptr;
    }
    return transform;
}

/// A colour on its way to the target: replaced by RGB where a conversion is needed.
struct PaintColour
{
    fz_colorspace *space;
    const float *values;
    std::array<float, 3> rgb;

    PaintColour(fz_context *ctx, const ColourDevice &device, fz_colorspace *given,
                const float *colour)
        : space(given)
        , values(colour)
        , rgb{}
    {
        if (colour == nullptr) {
            return;
        }
        const ColourTransform *transform = transformFor(ctx, device, given);
        if (transform == nullptr) {
            return;
        }
        std::array<float, FZ_MAX_COLORS> first{};
        std::array<float, FZ_MAX_COLORS> second{};
        toBase(ctx, given, colour, first.data());
        fz_colorspace *base = baseOf(given);
        if (baseOf(base) != base) {
            toBase(ctx, base, first.data(), second.data());
            transform->convertColour(second.data(), rgb.data());
        } else {
            transform->convertColour(first.data(), rgb.data());
        }
        space = fz_device_rgb(ctx);
        values = rgb.data();
    }
};

/// Where component `component` of pixel `pixel` stands in packed pixels of `components` each.
constexpr std::size_t indexOf(int pixel, int components, int component)
{
    return static_cast<std::size_t>(pixel) * static_cast<std::size_t>(components) +
           static_cast<std::size_t>(component);
}

/// Converts `source`, whose colorants are those of `transform`, to a new RGB pixmap.
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

fz_pixmap *getConvertedPixmap(fz_context *ctx, fz_image *image, fz_irect *subarea, int width,
                              int height, int *l2factor)
{
    auto &own = *reinterpret_cast<ConvertedImage *>(image);
    fz_pixmap *decoded = originalPixels(ctx, &own.super, subarea, width, height, l2factor);
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
        if (own.transform->components() == fz_pixmap_colorants(ctx, source)) {
            rgb = newRgbPixmap(ctx, source, *own.transform);
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

fz_image *newConvertedImage(fz_context *ctx, fz_image *original, const ColourTransform *transform)
{
    DerivedImage *created =
        newDerivedImage(ctx, original, sizeof(ConvertedImage), &getConvertedPixmap);
    reinterpret_cast<ConvertedImage *>(created)->transform = transform;
    return &created->super;
}

/// The image to hand on for `image`: borrowed, itself where no conversion is needed.
fz_image *imageFor(fz_context *ctx, ColourDevice &device, fz_image *image)
{
    const ColourTransform *transform = transformFor(ctx, device, colourSpaceOf(image));
    if (transform == nullptr) {
        return image;
    }
    for (const KeptImage &kept : device.images) {
        if (kept.original == image && kept.transform == transform) {
            return kept.converted;
        }
    }
    fz_image *converted = newConvertedImage(ctx, image, transform);
    KeptImage &slot = device.images[device.nextImage];
    fz_drop_image(ctx, slot.original);
    fz_drop_image(ctx, slot.converted);
    slot = {fz_keep_image(ctx, image), transform, converted};
    device.nextImage = (device.nextImage + 1) % kKeptImages;
    return converted;
}

void fillPath(fz_context *ctx, fz_device *dev, const fz_path *path, int evenOdd, fz_matrix ctm,
              fz_colorspace *space, const float *colour, float alpha, fz_color_params params)
{
    const PaintColour paint(ctx, self(dev), space, colour);
    fz_fill_path(ctx, target(dev), path, evenOdd, ctm, paint.space, paint.values, alpha, params);
}

void strokePath(fz_context *ctx, fz_device *dev, const fz_path *path, const fz_stroke_state *stroke,
                fz_matrix ctm, fz_colorspace *space, const float *colour, float alpha,
                fz_color_params params)
{
    const PaintColour paint(ctx, self(dev), space, colour);
    fz_stroke_path(ctx, target(dev), path, stroke, ctm, paint.space, paint.values, alpha, params);
}

void clipPath(fz_context *ctx, fz_device *dev, const fz_path *path, int evenOdd, fz_matrix ctm,
              fz_rect scissor)
{
    fz_clip_path(ctx, target(dev), path, evenOdd, ctm, scissor);
}

void clipStrokePath(fz_context *ctx, fz_device *dev, const fz_path *path,
                    const fz_stroke_state *stroke, fz_matrix ctm, fz_rect scissor)
{
    fz_clip_stroke_path(ctx, target(dev), path, stroke, ctm, scissor);
}

void fillText(fz_context *ctx, fz_device *dev, const fz_text *text, fz_matrix ctm,
              fz_colorspace *space, const float *colour, float alpha, fz_color_params params)
{
    const PaintColour paint(ctx, self(dev), space, colour);
    fz_fill_text(ctx, target(dev), text, ctm, paint.space, paint.values, alpha, params);
}

void strokeText(fz_context *ctx, fz_device *dev, const fz_text *text, const fz_stroke_state *stroke,
                fz_matrix ctm, fz_colorspace *space, const float *colour, float alpha,
                fz_color_params params)
{
    const PaintColour paint(ctx, self(dev), space, colour);
    fz_stroke_text(ctx, target(dev), text, stroke, ctm, paint.space, paint.values, alpha, params);
}

void clipText(fz_context *ctx, fz_device *dev, const fz_text *text, fz_matrix ctm, fz_rect scissor)
{
    fz_clip_text(ctx, target(dev), text, ctm, scissor);
}

void clipStrokeText(fz_context *ctx, fz_device *dev, const fz_text *text,
                    const fz_stroke_state *stroke, fz_matrix ctm, fz_rect scissor)
{
    fz_clip_stroke_text(ctx, target(dev), text, stroke, ctm, scissor);
}

void ignoreText(fz_context *ctx, fz_device *dev, const fz_text *text, fz_matrix ctm)
{
    fz_ignore_text(ctx, target(dev), text, ctm);
}

/// Paints a shading in the colours it is defined in, converts the pixels and draws them.
void fillConvertedShade(fz_context *ctx, ColourDevice &device, fz_shade *shade, const fz_irect &box,
                        fz_matrix ctm, float alpha, fz_color_params params,
                        const ColourTransform &transform)
{
    fz_colorspace *base = baseOf(colourSpaceOf(shade));
    fz_pixmap *own = nullptr;
    fz_pixmap *rgb = nullptr;
    fz_image *image = nullptr;
    fz_var(own);
    fz_var(rgb);
    fz_var(image);
    fz_try(ctx)
    {
        own = fz_new_pixmap_with_bbox(ctx, base, box, nullptr, 1);
        fz_clear_pixmap(ctx, own);
        if (const float *background = backgroundOf(shade); background != nullptr) {
            std::array<float, FZ_MAX_COLORS> colour{};
            toBase(ctx, colourSpaceOf(shade), background, colour.data());
            fz_fill_pixmap_with_color(ctx, own, base, colour.data(), params);
        }
        fz_paint_shade(ctx, shade, nullptr, ctm, own, params, box, nullptr, nullptr);
        rgb = newRgbPixmap(ctx, own, transform);
        image = fz_new_image_from_pixmap(ctx, rgb, nullptr);
        const fz_matrix place = fz_make_matrix(
            static_cast<float>(box.x1 - box.x0), 0, 0, static_cast<float>(box.y1 - box.y0),
            static_cast<float>(box.x0), static_cast<float>(box.y0));
        fz_fill_image(ctx, device.target, image, place, alpha, params);
    }
    fz_always(ctx)
    {
        fz_drop_image(ctx, image);
        fz_drop_pixmap(ctx, rgb);
        fz_drop_pixmap(ctx, own);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

void fillShade(fz_context *ctx, fz_device *dev, fz_shade *shade, fz_matrix ctm, float alpha,
               fz_color_params params)
{
    fz_device *next = target(dev);
    const ColourTransform *transform = transformFor(ctx, self(dev), colourSpaceOf(shade));
    if (transform != nullptr) {
        fz_rect bounds =
            fz_intersect_rect(fz_bound_shade(ctx, shade, ctm), fz_device_current_scissor(ctx, dev));
        if (fz_is_infinite_rect(bounds) != 0) {
            bounds = self(dev).area;
        }
        const double area = (static_cast<double>(bounds.x1) - bounds.x0) *
                            (static_cast<double>(bounds.y1) - bounds.y0);
        if (fz_is_empty_rect(bounds) != 0) {
            return;
        }
        if (area <= kMaxShadePixels) {
            fillConvertedShade(ctx, self(dev), shade, fz_irect_from_rect(bounds), ctm, alpha,
                               params, *transform);
            return;
        }
    }
    fz_fill_shade(ctx, next, shade, ctm, alpha, params);
}

/// Paints by `paint`, which hands `image` to the target. An image that cannot be decoded is left
/// out.
template <typename Paint>
void paintDecodable(fz_context *ctx, fz_image *image, Paint &&paint)
{
    ImageWatch watch;
    beginWatch(ctx, watch, image);
    fz_try(ctx)
    {
        paint();
    }
    fz_always(ctx)
    {
        endWatch(ctx, watch);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

void fillImage(fz_context *ctx, fz_device *dev, fz_image *image, fz_matrix ctm, float alpha,
               fz_color_params params)
{
    fz_device *next = target(dev);
    paintDecodable(ctx, image, [&] {
        fz_fill_image(ctx, next, imageFor(ctx, self(dev), image), ctm, alpha, params);
    });
}

void fillImageMask(fz_context *ctx, fz_device *dev, fz_image *image, fz_matrix ctm,
                   fz_colorspace *space, const float *colour, float alpha, fz_color_params params)
{
    const PaintColour paint(ctx, self(dev), space, colour);
    fz_device *next = target(dev);
    paintDecodable(ctx, image, [&] {
        fz_fill_image_mask(ctx, next, image, ctm, paint.space, paint.values, alpha, params);
    });
}

void clipImageMask(fz_context *ctx, fz_device *dev, fz_image *image, fz_matrix ctm, fz_rect scissor)
{
    fz_clip_image_mask(ctx, target(dev), image, ctm, scissor);
}

void popClip(fz_context *ctx, fz_device *dev)
{
    fz_pop_clip(ctx, target(dev));
}

void beginMask(fz_context *ctx, fz_device *dev, fz_rect area, int luminosity, fz_colorspace *space,
               const float *backdrop, fz_color_params params)
{
    ColourDevice &own = self(dev);
    if (luminosity != 0 || own.maskDepth > 0) {
        ++own.maskDepth;
    }
    const PaintColour paint(ctx, own, space, backdrop);
    fz_begin_mask(ctx, target(dev), area, luminosity, paint.space, paint.values, params);
}

fz_device *maskEnded(fz_device *dev)
{
    ColourDevice &own = self(dev);
    if (own.maskDepth > 0) {
        --own.maskDepth;
    }
    return target(dev);
}

// Since MuPDF 1.25 a mask comes with the function that its values go through.
#if QUILLORA_MUPDF_SINCE(25)
void endMask(fz_context *ctx, fz_device *dev, fz_function *transfer)
{
    fz_end_mask_tr(ctx, maskEnded(dev), transfer);
}
#else
void endMask(fz_context *ctx, fz_device *dev)
{
    fz_end_mask(ctx, maskEnded(dev));
}
#endif

void beginGroup(fz_context *ctx, fz_device *dev, fz_rect area, fz_colorspace *space, int isolated,
                int knockout, int blendMode, float alpha)
{
    // Everything inside arrives as RGB already, so a group that blends in ink values would only
    // turn it back and forth through the plain formula.
    fz_colorspace *blending =
        transformFor(ctx, self(dev), space) != nullptr ? fz_device_rgb(ctx) : space;
    fz_begin_group(ctx, target(dev), area, blending, isolated, knockout, blendMode, alpha);
}

void endGroup(fz_context *ctx, fz_device *dev)
{
    fz_end_group(ctx, target(dev));
}

/// How many pixels painting `area` with tiles that show `view` touches.
double tilePixels(const ColourDevice &device, fz_rect area, fz_rect view, float xStep, float yStep,
                  fz_matrix ctm)
{
    const auto count = [](float from, float to, float step) {
        return std::abs((static_cast<double>(to) - from) / step) + 1;
    };
    const fz_rect tile = fz_transform_rect(view, ctm);
    const double width = std::min(tile.x1 - tile.x0, device.area.x1 - device.area.x0);
    const double height = std::min(tile.y1 - tile.y0, device.area.y1 - device.area.y0);
    return count(area.x0, area.x1, xStep) * count(area.y0, area.y1, yStep) *
           (width * height + kPixelsPerTile);
}

/// Ends the painting of a page that a pattern would keep busy for too long.
void checkTiles(fz_context *ctx, ColourDevice &device, fz_rect area, fz_rect view, float xStep,
                float yStep, fz_matrix ctm)
{
    if (tilePixels(device, area, view, xStep, yStep, ctm) > kMaxTilePixels) {
        device.cookie->abort = 1;
        fz_throw(ctx, FZ_ERROR_GENERIC, "the tiles of a pattern lie too close together");
    }
}

// Since MuPDF 1.28 a tile comes with the number of its document.
#if QUILLORA_MUPDF_SINCE(28)
int beginTile(fz_context *ctx, fz_device *dev, fz_rect area, fz_rect view, float xStep, float yStep,
              fz_matrix ctm, int id, int documentId)
{
    checkTiles(ctx, self(dev), area, view, xStep, yStep, ctm);
    return fz_begin_tile_tid(ctx, target(dev), area, view, xStep, yStep, ctm, id, documentId);
}
#else
int beginTile(fz_context *ctx, fz_device *dev, fz_rect area, fz_rect view, float xStep, float yStep,
              fz_matrix ctm, int id)
{
    checkTiles(ctx, self(dev), area, view, xStep, yStep, ctm);
    return fz_begin_tile_id(ctx, target(dev), area, view, xStep, yStep, ctm, id);
}
#endif

void endTile(fz_context *ctx, fz_device *dev)
{
    fz_end_tile(ctx, target(dev));
}

void renderFlags(fz_context *ctx, fz_device *dev, int set, int clear)
{
    fz_render_flags(ctx, target(dev), set, clear);
}

void setDefaultColourSpaces(fz_context *ctx, fz_device *dev, fz_default_colorspaces *defaults)
{
    ColourDevice &own = self(dev);
    fz_drop_default_colorspaces(ctx, own.defaults);
    own.defaults = fz_keep_default_colorspaces(ctx, defaults);
    fz_set_default_colorspaces(ctx, target(dev), defaults);
}

void beginLayer(fz_context *ctx, fz_device *dev, const char *name)
{
    fz_begin_layer(ctx, target(dev), name);
}

void endLayer(fz_context *ctx, fz_device *dev)
{
    fz_end_layer(ctx, target(dev));
}

void closeDevice(fz_context *ctx, fz_device *dev)
{
    fz_close_device(ctx, self(dev).target);
}

void dropDevice(fz_context *ctx, fz_device *dev)
{
    ColourDevice &own = self(dev);
    for (const KeptImage &kept : own.images) {
        fz_drop_image(ctx, kept.original);
        fz_drop_image(ctx, kept.converted);
    }
    fz_drop_default_colorspaces(ctx, own.defaults);
    fz_drop_device(ctx, own.target);
}

} // namespace

fz_device *newColourDevice(fz_context *ctx, fz_device *target, fz_irect area,
                           const ColourSpaces &spaces, MupdfContext &context, fz_cookie &cookie)
{
    auto *device = fz_new_derived_device(ctx, ColourDevice);
    device->target = fz_keep_device(ctx, target);
    device->area = fz_rect_from_irect(area);
    device->spaces = &spaces;
    device->context = &context;
    device->cookie = &cookie;

    fz_device &calls = device->super;
    copyHints(&calls, target);
    calls.close_device = &closeDevice;
    calls.drop_device = &dropDevice;
    calls.fill_path = &fillPath;
    calls.stroke_path = &strokePath;
    calls.clip_path = &clipPath;
    calls.clip_stroke_path = &clipStrokePath;
    calls.fill_text = &fillText;
    calls.stroke_text = &strokeText;
    calls.clip_text = &clipText;
    calls.clip_stroke_text = &clipStrokeText;
    calls.ignore_text = &ignoreText;
    calls.fill_shade = &fillShade;
    calls.fill_image = &fillImage;
    calls.fill_image_mask = &fillImageMask;
    calls.clip_image_mask = &clipImageMask;
    calls.pop_clip = &popClip;
    calls.begin_mask = &beginMask;
    calls.end_mask = &endMask;
    calls.begin_group = &beginGroup;
    calls.end_group = &endGroup;
    calls.begin_tile = &beginTile;
    calls.end_tile = &endTile;
    calls.render_flags = &renderFlags;
    calls.set_default_colorspaces = &setDefaultColourSpaces;
    calls.begin_layer = &beginLayer;
    calls.end_layer = &endLayer;
    return &calls;
}

} // namespace pdfcore
