// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>

#include <mupdf/fitz.h>

namespace pdfcore {

/// Tells whether colours of a space, which may be null, have to be converted. Does not throw.
struct SpaceJudge
{
    bool (*isConverted)(fz_context *ctx, const void *user, fz_colorspace *space);
    const void *user;
};

/// What is known of the letters of some fonts that draw their letters (Type 3). Plain data, all
/// zero at first; holds references to the fonts until forgetGlyphColours().
struct GlyphColours
{
    static constexpr std::size_t kGlyphs = 256;

    struct Font
    {
        fz_font *font;
        std::array<unsigned char, kGlyphs> answers;
    };
    std::array<Font, 8> fonts;
    std::size_t next; ///< The entry that goes first.
};

/// Whether a letter is drawn by its font in colours of its own, and MuPDF would not do it well:
/// some of them have to be converted, or the letter has no bounds, for which MuPDF makes no pixels.
/// Looks at what the letter draws when it comes for the first time. Throws MuPDF errors.
bool isPaintedApart(fz_context *ctx, GlyphColours &known, fz_font *font, int glyph,
                    const SpaceJudge &judge);

/// Forgets all letters, as when the judgement changes. Does not throw.
void forgetGlyphColours(fz_context *ctx, GlyphColours &known);

} // namespace pdfcore
