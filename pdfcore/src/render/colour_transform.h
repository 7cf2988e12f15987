// SPDX-License-Identifier: AGPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <array>
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

    /// The transform for colours of CIE L*a*b* of which a* and b* lie within these limits; the
    /// white point becomes white. Null when Little CMS has no memory.
    static std::shared_ptr<const ColourTransform> fromLab(const std::array<float, 4> &limits);

    /// The same with the widest limits that colours of a page have.
    static const std::shared_ptr<const ColourTransform> &lab();

    [[nodiscard]] int components() const { return m_components; }

    /// Whether it is for CIE L*a*b*, whose colours in a page are given in its own units.
    [[nodiscard]] bool isLab() const { return m_isLab; }

    /// Turns a colour as a page gives it into values from 0 to 1.
    void normalise(float *colour) const;

    /// Converts `count` packed 8-bit pixels to packed 8-bit RGB.
    void convertPixels(const unsigned char *source, unsigned char *rgb, std::size_t count) const;

    /// Converts one colour given as 0 to 1 per component.
    void convertColour(const float *source, float rgb[3]) const;

private:
    ColourTransform(void *bytes, void *words, int components);
    static std::shared_ptr<ColourTransform> adopt(void *bytes, void *words, int components);
    static std::shared_ptr<const ColourTransform> create(const QByteArray &profile, int components);
    static std::shared_ptr<const ColourTransform> createPressCmyk();

    bool m_isLab = false;
    std::array<float, 4> m_limits{}; ///< Of a* and b*.
    void *m_bytes;                   ///< 8 bits per component.
    void *m_words;                   ///< 16 bits per component.
    int m_components;
};

} // namespace pdfcore
