// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pdfcore {

/// Converts device colours to sRGB with Little CMS.
///
/// Objects are immutable and shared between threads. Colour values are 0 to 255 per component;
/// for ink components 255 is full ink.
class ColourTransform final
{
public:
    ~ColourTransform();
    ColourTransform(const ColourTransform &) = delete;
    ColourTransform &operator=(const ColourTransform &) = delete;

    /// What a coated web-offset press makes of DeviceCMYK, for files that carry no profile.
    ///
    /// The colours of the sixteen solid overprints are those of the SWOP characterisation, seen
    /// in sRGB with black point compensation; in between, the area model of Neugebauer mixes them.
    static const std::shared_ptr<const ColourTransform> &pressCmyk();

    /// The transform for an embedded ICC profile with `components` device components (1, 3 or 4).
    ///
    /// Null when the profile is damaged, is of another kind, or makes no difference that the eye
    /// could see to taking its colours for sRGB. Results are kept, so asking again is cheap.
    static std::shared_ptr<const ColourTransform> fromProfile(const QByteArray &profile,
                                                              int components);

    [[nodiscard]] int components() const { return m_components; }

    /// Converts `count` packed 8-bit pixels to packed 8-bit RGB.
    void convertPixels(const unsigned char *source, unsigned char *rgb, std::size_t count) const;

    /// Converts one colour given as 0 to 1 per component.
    void convertColour(const float *source, float rgb[3]) const;

private:
    ColourTransform(void *bytes, void *words, int components);
    static std::shared_ptr<const ColourTransform> adopt(void *bytes, void *words, int components);
    static std::shared_ptr<const ColourTransform> create(const QByteArray &profile, int components);
    static std::shared_ptr<const ColourTransform> createPressCmyk();

    void *m_bytes; ///< 8 bits per component.
    void *m_words; ///< 16 bits per component.
    int m_components;
};

} // namespace pdfcore
