// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/glyph_colours.h"

#include "pdfcore/src/mupdf/mupdf_internals.h"

namespace pdfcore {

namespace {

/// Letters drawn with letters drawn with letters: so many of them are looked into.
constexpr int kMaxDepth = 3;

/// Device calls that are looked at to judge one letter.
constexpr unsigned kMaxCalls = 200000;

enum Answer : unsigned char { kUnknown, kPlain, kApart };

/// A device that paints nothing and takes note of colours that have to be converted.
struct Probe
{
    fz_device super;
    GlyphColours *known;
    const SpaceJudge *judge;
    int depth;
    unsigned *callsLeft;
    bool found;
};

Probe &self(fz_device *device)
{
    return *reinterpret_cast<Probe *>(device);
}

void note(fz_context *ctx, fz_device *dev, fz_colorspace *space)
{
    Probe &probe = self(dev);
    if (probe.found) {
        return;
    }
    if (*probe.callsLeft == 0) {
        probe.found = true; // Which does no harm where nothing has to be converted.
        return;
    }
    --*probe.callsLeft;
    probe.found = probe.judge->isConverted(ctx, probe.judge->user, space);
}

bool judged(fz_context *ctx, GlyphColours &known, fz_font *font, int glyph, const SpaceJudge &judge,
            int depth, unsigned &callsLeft);

void noteText(fz_context *ctx, fz_device *dev, const fz_text *text, fz_colorspace *space)
{
    note(ctx, dev, space);
    Probe &probe = self(dev);
    for (const fz_text_span *span = text->head; span != nullptr; span = span->next) {
        if (fz_font_t3_procs(ctx, span->font) == nullptr) {
            continue;
        }
        for (int i = 0; i < span->len && !probe.found; ++i) {
            probe.found = judged(ctx, *probe.known, span->font, span->items[i].gid, *probe.judge,
                                 probe.depth + 1, *probe.callsLeft);
        }
    }
}

void fillPath(fz_context *ctx, fz_device *dev, const fz_path * /*path*/, int /*evenOdd*/,
              fz_matrix /*ctm*/, fz_colorspace *space, const float * /*colour*/, float /*alpha*/,
              fz_color_params /*params*/)
{
    note(ctx, dev, space);
}

void strokePath(fz_context *ctx, fz_device *dev, const fz_path * /*path*/,
                const fz_stroke_state * /*stroke*/, fz_matrix /*ctm*/, fz_colorspace *space,
                const float * /*colour*/, float /*alpha*/, fz_color_params /*params*/)
{
    note(ctx, dev, space);
}

void fillText(fz_context *ctx, fz_device *dev, const fz_text *text, fz_matrix /*ctm*/,
              fz_colorspace *space, const float * /*colour*/, float /*alpha*/,
              fz_color_params /*params*/)
{
    noteText(ctx, dev, text, space);
}

void strokeText(fz_context *ctx, fz_device *dev, const fz_text *text,
                const fz_stroke_state * /*stroke*/, fz_matrix /*ctm*/, fz_colorspace *space,
                const float * /*colour*/, float /*alpha*/, fz_color_params /*params*/)
{
    noteText(ctx, dev, text, space);
}

void fillShade(fz_context *ctx, fz_device *dev, fz_shade *shade, fz_matrix /*ctm*/, float /*alpha*/,
               fz_color_params /*params*/)
{
    note(ctx, dev, colourSpaceOf(shade));
}

void fillImage(fz_context *ctx, fz_device *dev, fz_image *image, fz_matrix /*ctm*/, float /*alpha*/,
               fz_color_params /*params*/)
{
    note(ctx, dev, colourSpaceOf(image));
}

void fillImageMask(fz_context *ctx, fz_device *dev, fz_image * /*image*/, fz_matrix /*ctm*/,
                   fz_colorspace *space, const float * /*colour*/, float /*alpha*/,
                   fz_color_params /*params*/)
{
    note(ctx, dev, space);
}

void beginMask(fz_context *ctx, fz_device *dev, fz_rect /*area*/, int /*luminosity*/,
               fz_colorspace *space, const float * /*backdrop*/, fz_color_params /*params*/)
{
    note(ctx, dev, space);
}

void beginGroup(fz_context *ctx, fz_device *dev, fz_rect /*area*/, fz_colorspace *space,
                int /*isolated*/, int /*knockout*/, int /*blendMode*/, float /*alpha*/)
{
    note(ctx, dev, space);
}

/// A form within the letter has default spaces of its own, which are not followed.
void setDefaultColourSpaces(fz_context * /*ctx*/, fz_device *dev,
                            fz_default_colorspaces * /*defaults*/)
{
    self(dev).found = true;
}

/// Draws a letter for a probe only.
bool probed(fz_context *ctx, GlyphColours &known, fz_font *font, int glyph, const SpaceJudge &judge,
            int depth, unsigned &callsLeft)
{
    Probe *probe = fz_new_derived_device(ctx, Probe);
    probe->known = &known;
    probe->judge = &judge;
    probe->depth = depth;
    probe->callsLeft = &callsLeft;
    fz_device &calls = probe->super;
    calls.fill_path = &fillPath;
    calls.stroke_path = &strokePath;
    calls.fill_text = &fillText;
    calls.stroke_text = &strokeText;
    calls.fill_shade = &fillShade;
    calls.fill_image = &fillImage;
    calls.fill_image_mask = &fillImageMask;
    calls.begin_mask = &beginMask;
    calls.begin_group = &beginGroup;
    calls.set_default_colorspaces = &setDefaultColourSpaces;
    bool found = false;
    fz_var(found);
    fz_try(ctx)
    {
        fz_run_t3_glyph(ctx, font, glyph, fz_identity, &calls);
        fz_close_device(ctx, &calls);
        found = probe->found;
    }
    fz_always(ctx)
    {
        fz_drop_device(ctx, &calls);
    }
    fz_catch(ctx)
    {
        fz_rethrow(ctx);
    }
    return found;
}

/// Where the answers for a font stand, in place of older ones when it has none yet.
GlyphColours::Font &entryOf(fz_context *ctx, GlyphColours &known, fz_font *font)
{
    for (GlyphColours::Font &entry : known.fonts) {
        if (entry.font == font) {
            return entry;
        }
    }
    GlyphColours::Font &entry = known.fonts[known.next];
    known.next = (known.next + 1) % known.fonts.size();
    fz_drop_font(ctx, entry.font);
    entry.font = fz_keep_font(ctx, font);
    entry.answers.fill(kUnknown);
    return entry;
}

bool judged(fz_context *ctx, GlyphColours &known, fz_font *font, int glyph, const SpaceJudge &judge,
            int depth, unsigned &callsLeft)
{
    if (!hasOwnColours(font, glyph)) {
        return false;
    }
    if (depth > kMaxDepth) {
        return true;
    }
    const auto index = static_cast<std::size_t>(glyph);
    const unsigned char answer = entryOf(ctx, known, font).answers[index];
    if (answer != kUnknown) {
        return answer == kApart;
    }
    // A letter that draws itself has no further colours there.
    entryOf(ctx, known, font).answers[index] = kPlain;
    const bool found = fz_is_infinite_rect(fz_bound_glyph(ctx, font, glyph, fz_identity)) != 0 ||
                       probed(ctx, known, font, glyph, judge, depth, callsLeft);
    entryOf(ctx, known, font).answers[index] = found ? kApart : kPlain;
    return found;
}

} // namespace

bool isPaintedApart(fz_context *ctx, GlyphColours &known, fz_font *font, int glyph,
                    const SpaceJudge &judge)
{
    unsigned callsLeft = kMaxCalls;
    return judged(ctx, known, font, glyph, judge, 0, callsLeft);
}

void forgetGlyphColours(fz_context *ctx, GlyphColours &known)
{
    for (GlyphColours::Font &entry : known.fonts) {
        fz_drop_font(ctx, entry.font);
        entry.font = nullptr;
    }
}

} // namespace pdfcore
