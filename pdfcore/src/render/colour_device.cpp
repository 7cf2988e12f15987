// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/colour_device.h"

#include "pdfcore/src/mupdf/mupdf_context.h"
#include "pdfcore/src/mupdf/mupdf_internals.h"
#include "pdfcore/src/render/colour_spaces.h"
#include "pdfcore/src/render/glyph_colours.h"
#include "pdfcore/src/render/page_images.h"
#include "pdfcore/src/render/rgb_pixmap.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace pdfcore {

namespace {

/// Device calls between two looks at the clock.
constexpr unsigned kCallsPerClockCheck = 32;

/// Largest shading or letter, in device pixels, that is painted by itself to be converted.
constexpr double kMaxOwnPixels = 64.0 * 1024 * 1024;

/// Pixels that the tiles of one pattern may cover together, several seconds of work in one call.
constexpr double kMaxTilePixels = 5e9;

/// Pixels for which placing a tile counts, however small it is.
constexpr double kPixelsPerTile = 20;

/// Letters drawn with letters drawn with letters: so many of them get their colours converted. Each
/// of them takes several of the 256 places that MuPDF has for handlers of errors.
constexpr int kMaxGlyphDepth = 8;

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
    PageImages *images;
    GlyphColours *glyphColours; ///< `ownGlyphColours` or those of the device that it works for.
    GlyphColours ownGlyphColours;
    int glyphDepth;   ///< Letters within letters whose painting it serves.
    int tileDepth;    ///< Tiles of patterns that are being painted, which lie anywhere.
    fz_rect tileView; ///< What is seen of the outermost of them.
    fz_text *filled;  ///< The last text with letters in colours of their own that was filled.
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

/// How many pixels an area has.
double pixelsOf(fz_rect area)
{
    return (static_cast<double>(area.x1) - area.x0) * (static_cast<double>(area.y1) - area.y0);
}

/// Places an image of the size of `box` there.
fz_matrix matrixOf(fz_irect box)
{
    return fz_make_matrix(static_cast<float>(box.x1 - box.x0), 0, 0,
                          static_cast<float>(box.y1 - box.y0), static_cast<float>(box.x0),
                          static_cast<float>(box.y0));
}

/// The default space in the place of a device space, or null.
fz_colorspace *defaultFor(fz_context *ctx, const ColourDevice &device, const fz_colorspace *space)
{
    if (space == fz_device_gray(ctx)) {
        return fz_default_gray(ctx, device.defaults);
    }
    if (space == fz_device_rgb(ctx)) {
        return fz_default_rgb(ctx, device.defaults);
    }
    if (space == fz_device_cmyk(ctx)) {
        return fz_default_cmyk(ctx, device.defaults);
    }
    return nullptr;
}

/// The colour space that `space` stands for once the page's default spaces are applied.
fz_colorspace *resolved(fz_context *ctx, const ColourDevice &device, fz_colorspace *space)
{
    if (space == nullptr || device.defaults == nullptr) {
        return space;
    }
    fz_colorspace *standIn = defaultFor(ctx, device, space);
    return standIn != nullptr ? standIn : space;
}

/// The conversion that colours of `space` need where they are seen, or null.
const ColourTransform *transformOnPage(fz_context *ctx, const ColourDevice &device,
                                       fz_colorspace *space)
{
    fz_colorspace *base = resolved(ctx, device, baseOf(space));
    for (int depth = 0; depth < 2 && baseOf(base) != base; ++depth) {
        base = resolved(ctx, device, baseOf(base));
    }
    if (base == nullptr || !isLab(base)) {
        return device.spaces->transformOf(base);
    }
    // MuPDF has no pixels in L*a*b* that it could mix spot colours in, and these are to be the same
    // in pictures, shadings and elsewhere.
    const bool isPlain =
        isLab(space) || (fz_colorspace_is_indexed(ctx, space) != 0 && isLab(baseOf(space)));
    return isPlain ? ColourTransform::lab().get() : nullptr;
}

/// The conversion that colours of `space` need, or null.
const ColourTransform *transformFor(fz_context *ctx, const ColourDevice &device,
                                    fz_colorspace *space)
{
    const ColourTransform *transform = transformOnPage(ctx, device, space);
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
        float *own = first.data();
        if (baseOf(base) != base) {
            toBase(ctx, base, first.data(), second.data());
            own = second.data();
        }
        if (transform->isLab() && isLab(given)) {
            transform->normalise(own);
        } else if (transform->isLab()) {
            transform = device.spaces->labPixels();
        }
        transform->convertColour(own, rgb.data());
        space = fz_device_rgb(ctx);
        values = rgb.data();
    }
};

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

/// For all uses of a letter, also those outside of masks.
bool needsConversion(fz_context *ctx, const void *device, fz_colorspace *space)
{
    return transformOnPage(ctx, *static_cast<const ColourDevice *>(device), space) != nullptr;
}

/// Which letters do not go to the target with those around them.
enum class Apart {
    Converted, ///< Those with colours of their own that MuPDF would convert in its own way.
    Coloured,  ///< All with colours of their own.
    LeftOut,   ///< The same, which are not painted at all.
};

bool isApart(fz_context *ctx, ColourDevice &device, fz_font *font, int glyph, Apart which)
{
    return hasOwnColours(font, glyph) && device.glyphDepth < kMaxGlyphDepth &&
           (which != Apart::Converted ||
            isPaintedApart(ctx, *device.glyphColours, font, glyph, {&needsConversion, &device}));
}

bool hasLettersApart(fz_context *ctx, ColourDevice &device, const fz_text *text, Apart which)
{
    for (const fz_text_span *span = text->head; span != nullptr; span = span->next) {
        if (fz_font_t3_procs(ctx, span->font) == nullptr) {
            continue;
        }
        for (int i = 0; i < span->len; ++i) {
            if (isApart(ctx, device, span->font, span->items[i].gid, which)) {
                return true;
            }
        }
    }
    return false;
}

/// What may be seen of what is painted now, in device pixels.
fz_rect seenBy(const ColourDevice &device)
{
    if (device.tileDepth == 0) {
        return fz_expand_rect(device.area, kPartReach);
    }
    return device.tileDepth == 1 ? device.tileView : fz_infinite_rect;
}

/// Paints a letter into `pixels` through a device like `device`.
void runGlyph(fz_context *ctx, ColourDevice &device, fz_pixmap *pixels, fz_font *font, int glyph,
              fz_matrix place)
{
    fz_device *painter = nullptr;
    fz_device *colours = nullptr;
    fz_var(painter);
    fz_var(colours);
    fz_try(ctx)
    {
        painter = fz_new_draw_device_type3(ctx, fz_identity, pixels);
        colours = newColourDevice(ctx, painter, fz_pixmap_bbox(ctx, pixels), *device.spaces,
                                  *device.images, *device.context, *device.cookie);
        ColourDevice &inner = self(colours);
        inner.glyphColours = device.glyphColours;
        inner.glyphDepth = device.glyphDepth + 1;
        inner.maskDepth = device.maskDepth;
        inner.defaults = fz_keep_default_colorspaces(ctx, device.defaults);
        fz_run_t3_glyph(ctx, font, glyph, place, colours);
        fz_close_device(ctx, colours);
        if (inner.defaults != device.defaults) {
            forgetGlyphColours(ctx, *device.glyphColours);
        }
    }
    fz_always(ctx)
    {
        fz_drop_device(ctx, colours);
        fz_drop_device(ctx, painter);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

/// Paints a letter in its own colours, converted, into the pixels of `box` and draws these.
void fillGlyph(fz_context *ctx, ColourDevice &device, fz_font *font, int glyph, fz_matrix place,
               fz_irect box, float alpha, fz_color_params params)
{
    fz_pixmap *pixels = nullptr;
    fz_image *image = nullptr;
    fz_var(pixels);
    fz_var(image);
    fz_try(ctx)
    {
        pixels = fz_new_pixmap_with_bbox(ctx, fz_device_rgb(ctx), box, nullptr, 1);
        fz_clear_pixmap(ctx, pixels);
        runGlyph(ctx, device, pixels, font, glyph, place);
        image = fz_new_image_from_pixmap(ctx, pixels, nullptr);
        fz_fill_image(ctx, device.target, image, matrixOf(box), alpha, params);
    }
    fz_always(ctx)
    {
        fz_drop_image(ctx, image);
        fz_drop_pixmap(ctx, pixels);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

/// Paints a letter in its own colours, converted; false when it takes too many pixels for that.
bool paintGlyph(fz_context *ctx, ColourDevice &device, fz_font *font, int glyph, fz_matrix place,
                float alpha, fz_color_params params)
{
    const fz_rect bounds = fz_intersect_rect(
        fz_expand_rect(fz_bound_glyph(ctx, font, glyph, place), 1), seenBy(device));
    if (fz_is_empty_rect(bounds) != 0) {
        return true;
    }
    if (pixelsOf(bounds) > kMaxOwnPixels) {
        return false;
    }
    fillGlyph(ctx, device, font, glyph, place, fz_irect_from_rect(bounds), alpha, params);
    return true;
}

/// How a text is painted whose letters do not all go to the target at once.
struct TextPaint
{
    fz_matrix ctm;
    float alpha;
    fz_color_params params;
    fz_rect seen; ///< Letters that lie outside are left out.
    Apart apart;
};

/// Hands the letters in `part` on by `paint` and lets go of them.
template <typename Paint>
void flushPart(fz_context *ctx, fz_text *&part, const Paint &paint)
{
    if (part != nullptr && part->head != nullptr) {
        paint(part);
    }
    fz_drop_text(ctx, part);
    part = nullptr;
}

/// Goes through the letters of `text` in their order: those to paint apart are painted here, what
/// is between them is collected in `part` and handed on by `paint`.
template <typename Paint>
void paintLetters(fz_context *ctx, ColourDevice &device, const fz_text *text, fz_text *&part,
                  const TextPaint &how, const Paint &paint)
{
    for (const fz_text_span *span = text->head; span != nullptr; span = span->next) {
        const bool isDrawn = fz_font_t3_procs(ctx, span->font) != nullptr;
        fz_matrix place = span->trm;
        for (int i = 0; i < span->len; ++i) {
            const fz_text_item &item = span->items[i];
            place.e = item.x;
            place.f = item.y;
            if (item.gid < 0) {
                continue;
            }
            const fz_matrix onPage = fz_concat(place, how.ctm);
            const fz_rect bounds = fz_bound_glyph(ctx, span->font, item.gid, onPage);
            if (fz_is_empty_rect(fz_intersect_rect(bounds, how.seen)) != 0) {
                continue;
            }
            if (isDrawn && isApart(ctx, device, span->font, item.gid, how.apart)) {
                flushPart(ctx, part, paint);
                if (how.apart == Apart::LeftOut ||
                    paintGlyph(ctx, device, span->font, item.gid, onPage, how.alpha, how.params)) {
                    continue;
                }
            }
            if (part == nullptr) {
                part = fz_new_text(ctx);
            }
            fz_show_glyph(ctx, part, span->font, place, item.gid, item.ucs,
                          static_cast<int>(span->wmode), static_cast<int>(span->bidi_level),
                          static_cast<fz_bidi_direction>(span->markup_dir),
                          static_cast<fz_text_language>(span->language));
        }
    }
    flushPart(ctx, part, paint);
}

template <typename Paint>
void paintByLetters(fz_context *ctx, ColourDevice &device, const fz_text *text,
                    const TextPaint &how, const Paint &paint)
{
    fz_text *part = nullptr;
    fz_var(part);
    fz_try(ctx)
    {
        paintLetters(ctx, device, text, part, how, paint);
    }
    fz_always(ctx)
    {
        fz_drop_text(ctx, part);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
}

void fillText(fz_context *ctx, fz_device *dev, const fz_text *text, fz_matrix ctm,
              fz_colorspace *space, const float *colour, float alpha, fz_color_params params)
{
    ColourDevice &own = self(dev);
    const PaintColour paint(ctx, own, space, colour);
    fz_device *next = target(dev);
    const auto fill = [&](const fz_text *letters) {
        fz_fill_text(ctx, next, letters, ctm, paint.space, paint.values, alpha, params);
    };
    const bool isColoured = hasLettersApart(ctx, own, text, Apart::Coloured);
    if (isColoured) {
        fz_drop_text(ctx, own.filled);
        own.filled = fz_keep_text(ctx, text);
    }
    // Of a page in parts, the whole text may be a single one, and going through all large letters
    // takes longer than painting some of them.
    if (own.images->comeAgain() ||
        (isColoured && hasLettersApart(ctx, own, text, Apart::Converted))) {
        paintByLetters(ctx, own, text, {ctm, alpha, params, seenBy(own), Apart::Converted}, fill);
    } else {
        fill(text);
    }
}

void strokeText(fz_context *ctx, fz_device *dev, const fz_text *text, const fz_stroke_state *stroke,
                fz_matrix ctm, fz_colorspace *space, const float *colour, float alpha,
                fz_color_params params)
{
    ColourDevice &own = self(dev);
    const PaintColour paint(ctx, own, space, colour);
    fz_device *next = target(dev);
    const auto outline = [&](const fz_text *letters) {
        fz_stroke_text(ctx, next, letters, stroke, ctm, paint.space, paint.values, alpha, params);
    };
    // Letters in colours of their own have no outline: they look the same in every mode of text,
    // also in the one that fills a text and outlines it. MuPDF would take them for masks.
    if (hasLettersApart(ctx, own, text, Apart::Coloured)) {
        const Apart apart = own.filled == text ? Apart::LeftOut : Apart::Coloured;
        paintByLetters(ctx, own, text, {ctm, alpha, params, fz_infinite_rect, apart}, outline);
    } else {
        outline(text);
    }
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
        fz_fill_image(ctx, device.target, image, matrixOf(box), alpha, params);
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
    // MuPDF has no pixels in L*a*b*.
    if (transform != nullptr && !transform->isLab()) {
        fz_rect bounds =
            fz_intersect_rect(fz_bound_shade(ctx, shade, ctm), fz_device_current_scissor(ctx, dev));
        if (fz_is_infinite_rect(bounds) != 0) {
            bounds = self(dev).area;
        }
        if (fz_is_empty_rect(bounds) != 0) {
            return;
        }
        if (pixelsOf(bounds) <= kMaxOwnPixels) {
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

/// The conversion that the pixels of an image need, or null.
const ColourTransform *transformForImage(fz_context *ctx, const ColourDevice &device,
                                         fz_image *image)
{
    fz_colorspace *space = colourSpaceOf(image);
    const ColourTransform *transform = transformFor(ctx, device, space);
    if (transform == nullptr || !transform->isLab()) {
        return transform;
    }
    if (isLab(space)) {
        leaveUndecoded(image);
    }
    return device.spaces->labPixels();
}

void fillImage(fz_context *ctx, fz_device *dev, fz_image *image, fz_matrix ctm, float alpha,
               fz_color_params params)
{
    fz_device *next = target(dev);
    const ColourTransform *transform = transformForImage(ctx, self(dev), image);
    fz_image *shown = self(dev).images->imageFor(ctx, image, transform);
    paintDecodable(ctx, image, [&] { fz_fill_image(ctx, next, shown, ctm, alpha, params); });
}

void fillImageMask(fz_context *ctx, fz_device *dev, fz_image *image, fz_matrix ctm,
                   fz_colorspace *space, const float *colour, float alpha, fz_color_params params)
{
    const PaintColour paint(ctx, self(dev), space, colour);
    fz_device *next = target(dev);
    fz_image *shown = self(dev).images->imageFor(ctx, image, nullptr);
    paintDecodable(ctx, image, [&] {
        fz_fill_image_mask(ctx, next, shown, ctm, paint.space, paint.values, alpha, params);
    });
}

void clipImageMask(fz_context *ctx, fz_device *dev, fz_image *image, fz_matrix ctm, fz_rect scissor)
{
    fz_device *next = target(dev);
    fz_clip_image_mask(ctx, next, self(dev).images->imageFor(ctx, image, nullptr), ctm, scissor);
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

/// Takes note of a tile that is painted; one that MuPDF has painted before counts as well.
void noteTile(ColourDevice &device, fz_rect view, fz_matrix ctm)
{
    if (device.tileDepth == 0) {
        device.tileView = fz_expand_rect(fz_transform_rect(view, ctm), 1);
    }
    ++device.tileDepth;
}

// Since MuPDF 1.28 a tile comes with the number of its document.
#if QUILLORA_MUPDF_SINCE(28)
int beginTile(fz_context *ctx, fz_device *dev, fz_rect area, fz_rect view, float xStep, float yStep,
              fz_matrix ctm, int id, int documentId)
{
    checkTiles(ctx, self(dev), area, view, xStep, yStep, ctm);
    noteTile(self(dev), view, ctm);
    return fz_begin_tile_tid(ctx, target(dev), area, view, xStep, yStep, ctm, id, documentId);
}
#else
int beginTile(fz_context *ctx, fz_device *dev, fz_rect area, fz_rect view, float xStep, float yStep,
              fz_matrix ctm, int id)
{
    checkTiles(ctx, self(dev), area, view, xStep, yStep, ctm);
    noteTile(self(dev), view, ctm);
    return fz_begin_tile_id(ctx, target(dev), area, view, xStep, yStep, ctm, id);
}
#endif

void endTile(fz_context *ctx, fz_device *dev)
{
    ColourDevice &own = self(dev);
    if (own.tileDepth > 0) {
        --own.tileDepth;
    }
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
    forgetGlyphColours(ctx, *own.glyphColours);
    // Those of a form within a letter have nothing in the place of spaces that it does not name,
    // and MuPDF would paint nothing in them.
    if (own.glyphDepth == 0) {
        fz_set_default_colorspaces(ctx, target(dev), defaults);
    }
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
    fz_drop_default_colorspaces(ctx, own.defaults);
    forgetGlyphColours(ctx, own.ownGlyphColours);
    fz_drop_text(ctx, own.filled);
    fz_drop_device(ctx, own.target);
}

} // namespace

fz_device *newColourDevice(fz_context *ctx, fz_device *target, fz_irect area,
                           const ColourSpaces &spaces, PageImages &images, MupdfContext &context,
                           fz_cookie &cookie)
{
    auto *device = fz_new_derived_device(ctx, ColourDevice);
    device->target = fz_keep_device(ctx, target);
    device->area = fz_rect_from_irect(area);
    device->images = &images;
    device->glyphColours = &device->ownGlyphColours;
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
