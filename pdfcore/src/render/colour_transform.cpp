// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/render/colour_transform.h"

#include <QCache>
#include <QCryptographicHash>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <mutex>

#include <lcms2.h>

namespace pdfcore {

namespace {

/// sRGB colours of the solid overprints; bit 0 of the index is cyan, then magenta, yellow, black.
constexpr std::array<std::array<double, 3>, 16> kOverprints = {{
    {255, 255, 255},
    {0, 174, 239},
    {236, 0, 140},
    {46, 49, 146},
    {255, 242, 0},
    {0, 166, 80},
    {237, 28, 36},
    {54, 54, 57},
    {35, 31, 32},
    {0, 15, 36},
    {36, 0, 0},
    {0, 0, 2},
    {28, 26, 0},
    {0, 19, 0},
    {34, 0, 0},
    {0, 0, 0},
}};

/// Points per ink of the table that Little CMS interpolates in.
constexpr unsigned kPressGridPoints = 9;

/// Largest difference per 8-bit component that counts as the same colour.
constexpr int kInvisibleDifference = 4;

/// Transforms that are kept, whatever document they came from.
constexpr qsizetype kKeptTransforms = 32;

/// No cache inside the transform: it is shared between threads.
constexpr cmsUInt32Number kFlags = cmsFLAGS_NOCACHE | cmsFLAGS_BLACKPOINTCOMPENSATION;

struct ProfileCloser
{
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, ProfileCloser>;

cmsInt32Number samplePress(const cmsUInt16Number in[], cmsUInt16Number out[], void * /*cargo*/)
{
    std::array<double, 3> colour{};
    for (std::size_t overprint = 0; overprint < kOverprints.size(); ++overprint) {
        double area = 1;
        for (std::size_t ink = 0; ink < 4; ++ink) {
            const double coverage = in[ink] / 65535.0;
            area *= ((overprint >> ink) & 1U) != 0 ? coverage : 1 - coverage;
        }
        for (std::size_t channel = 0; channel < 3; ++channel) {
            colour[channel] += area * kOverprints[overprint][channel];
        }
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
        out[channel] = static_cast<cmsUInt16Number>(std::lround(colour[channel] * 257));
    }
    return TRUE;
}

/// `profile` with a table of `points` for each of its `components` that `sample` fills; null when
/// there is no memory for it.
Profile withTable(Profile profile, cmsUInt32Number components, cmsUInt32Number points,
                  cmsSAMPLER16 sample, void *cargo)
{
    cmsPipeline *pipeline = cmsPipelineAlloc(nullptr, components, 3);
    cmsStage *table = cmsStageAllocCLut16bit(nullptr, points, components, 3, nullptr);
    bool ok = pipeline != nullptr && table != nullptr &&
              cmsStageSampleCLut16bit(table, sample, cargo, 0) != 0 &&
              cmsPipelineInsertStage(pipeline, cmsAT_BEGIN, table) != 0;
    if (ok) {
        ok = cmsWriteTag(profile.get(), cmsSigAToB0Tag, pipeline) != 0;
    } else if (table != nullptr) {
        cmsStageFree(table);
    }
    if (pipeline != nullptr) {
        cmsPipelineFree(pipeline);
    }
    return ok ? std::move(profile) : nullptr;
}

Profile pressLinkProfile()
{
    Profile profile(cmsCreateProfilePlaceholder(nullptr));
    if (!profile) {
        return nullptr;
    }
    cmsSetProfileVersion(profile.get(), 4.3);
    cmsSetDeviceClass(profile.get(), cmsSigLinkClass);
    cmsSetColorSpace(profile.get(), cmsSigCmykData);
    cmsSetPCS(profile.get(), cmsSigRgbData);
    return withTable(std::move(profile), 4, kPressGridPoints, &samplePress, nullptr);
}

cmsInt32Number sampleLab(const cmsUInt16Number in[], cmsUInt16Number out[], void *cargo)
{
    const auto &limits = *static_cast<const std::array<float, 4> *>(cargo);
    const auto encoded = [](double value, double low, double high) {
        return static_cast<cmsUInt16Number>(
            std::lround((low + value / 65535.0 * (high - low) + 128) * 257));
    };
    out[0] = in[0];
    out[1] = encoded(in[1], limits[0], limits[1]);
    out[2] = encoded(in[2], limits[2], limits[3]);
    return TRUE;
}

/// A profile of a device whose values from 0 to 1 are those of L*a*b* between their limits. Two
/// points for each of them are enough for that.
Profile labProfile(std::array<float, 4> limits)
{
    Profile profile(cmsCreateProfilePlaceholder(nullptr));
    if (!profile) {
        return nullptr;
    }
    cmsSetProfileVersion(profile.get(), 4.3);
    cmsSetDeviceClass(profile.get(), cmsSigInputClass);
    cmsSetColorSpace(profile.get(), cmsSigRgbData);
    cmsSetPCS(profile.get(), cmsSigLabData);
    return withTable(std::move(profile), 3, 2, &sampleLab, &limits);
}

cmsUInt32Number pixelFormat(int components, int bytes)
{
    const cmsUInt32Number size = static_cast<cmsUInt32Number>(bytes);
    switch (components) {
    case 1:
        return COLORSPACE_SH(PT_GRAY) | CHANNELS_SH(1) | BYTES_SH(size);
    case 3:
        return COLORSPACE_SH(PT_RGB) | CHANNELS_SH(3) | BYTES_SH(size);
    default:
        return COLORSPACE_SH(PT_CMYK) | CHANNELS_SH(4) | BYTES_SH(size);
    }
}

bool profileFits(cmsHPROFILE profile, int components)
{
    switch (cmsGetColorSpace(profile)) {
    case cmsSigGrayData:
        return components == 1;
    case cmsSigRgbData:
        return components == 3;
    case cmsSigCmykData:
        return components == 4;
    default:
        return false;
    }
}

/// Whether taking the device colours for sRGB shows the same colours as the transform does.
bool looksLikeDeviceColour(const ColourTransform &transform)
{
    if (transform.components() == 4) {
        return false;
    }
    constexpr int kStep = 51;
    const auto differs = [&transform](const std::array<unsigned char, 3> &source) {
        std::array<unsigned char, 3> rgb{};
        transform.convertPixels(source.data(), rgb.data(), 1);
        for (std::size_t i = 0; i < 3; ++i) {
            const int plain = transform.components() == 1 ? source[0] : source[i];
            if (std::abs(plain - rgb[i]) > kInvisibleDifference) {
                return true;
            }
        }
        return false;
    };
    for (int r = 0; r <= 255; r += kStep) {
        if (transform.components() == 1) {
            if (differs({static_cast<unsigned char>(r), 0, 0})) {
                return false;
            }
            continue;
        }
        for (int g = 0; g <= 255; g += kStep) {
            for (int b = 0; b <= 255; b += kStep) {
                if (differs({static_cast<unsigned char>(r), static_cast<unsigned char>(g),
                             static_cast<unsigned char>(b)})) {
                    return false;
                }
            }
        }
    }
    return true;
}

struct KeptTransform
{
    std::shared_ptr<const ColourTransform> transform;
};

} // namespace

ColourTransform::ColourTransform(void *bytes, void *words, int components)
    : m_bytes(bytes)
    , m_words(words)
    , m_components(components)
{}

ColourTransform::~ColourTransform()
{
    cmsDeleteTransform(m_bytes);
    cmsDeleteTransform(m_words);
}

std::shared_ptr<ColourTransform> ColourTransform::adopt(void *bytes, void *words, int components)
{
    if (bytes != nullptr && words != nullptr) {
        return std::shared_ptr<ColourTransform>(new ColourTransform(bytes, words, components));
    }
    if (bytes != nullptr) {
        cmsDeleteTransform(bytes);
    }
    if (words != nullptr) {
        cmsDeleteTransform(words);
    }
    return nullptr;
}

const std::shared_ptr<const ColourTransform> &ColourTransform::pressCmyk()
{
    static const std::shared_ptr<const ColourTransform> transform = createPressCmyk();
    return transform;
}

std::shared_ptr<const ColourTransform> ColourTransform::createPressCmyk()
{
    const Profile link = pressLinkProfile();
    if (!link) {
        return nullptr;
    }
    // Little CMS would make a finer table of the one there is, which costs tens of milliseconds.
    const cmsUInt32Number flags = cmsFLAGS_NOCACHE | cmsFLAGS_GRIDPOINTS(kPressGridPoints);
    void *bytes = cmsCreateTransform(link.get(), pixelFormat(4, 1), nullptr, TYPE_RGB_8,
                                     INTENT_PERCEPTUAL, flags);
    void *words = cmsCreateTransform(link.get(), pixelFormat(4, 2), nullptr, TYPE_RGB_16,
                                     INTENT_PERCEPTUAL, flags);
    return adopt(bytes, words, 4);
}

std::shared_ptr<const ColourTransform> ColourTransform::fromProfile(const QByteArray &profile,
                                                                    int components)
{
    static std::mutex mutex;
    static QCache<QByteArray, KeptTransform> kept(kKeptTransforms);

    const QByteArray key = QCryptographicHash::hash(profile, QCryptographicHash::Sha256) +
                           static_cast<char>(components);
    {
        const std::lock_guard lock(mutex);
        if (const KeptTransform *entry = kept.object(key)) {
            return entry->transform;
        }
    }
    std::shared_ptr<const ColourTransform> transform = create(profile, components);
    const std::lock_guard lock(mutex);
    kept.insert(key, new KeptTransform{transform});
    return transform;
}

std::shared_ptr<const ColourTransform> ColourTransform::create(const QByteArray &profile,
                                                               int components)
{
    const Profile input(
        cmsOpenProfileFromMem(profile.constData(), static_cast<cmsUInt32Number>(profile.size())));
    if (!input || !profileFits(input.get(), components)) {
        return nullptr;
    }
    const Profile output(cmsCreate_sRGBProfile());
    if (!output) {
        return nullptr;
    }
    void *bytes = cmsCreateTransform(input.get(), pixelFormat(components, 1), output.get(),
                                     TYPE_RGB_8, INTENT_RELATIVE_COLORIMETRIC, kFlags);
    void *words = cmsCreateTransform(input.get(), pixelFormat(components, 2), output.get(),
                                     TYPE_RGB_16, INTENT_RELATIVE_COLORIMETRIC, kFlags);
    const std::shared_ptr<const ColourTransform> transform = adopt(bytes, words, components);
    return transform && looksLikeDeviceColour(*transform) ? nullptr : transform;
}

std::shared_ptr<const ColourTransform> ColourTransform::fromLab(const std::array<float, 4> &limits)
{
    const Profile input = labProfile(limits);
    const Profile output(cmsCreate_sRGBProfile());
    if (!input || !output) {
        return nullptr;
    }
    constexpr cmsUInt32Number kExact = cmsFLAGS_NOCACHE | cmsFLAGS_NOOPTIMIZE;
    constexpr cmsUInt32Number kFine = cmsFLAGS_NOCACHE | cmsFLAGS_HIGHRESPRECALC;
    void *bytes = cmsCreateTransform(input.get(), pixelFormat(3, 1), output.get(), TYPE_RGB_8,
                                     INTENT_RELATIVE_COLORIMETRIC, kFine);
    void *words = cmsCreateTransform(input.get(), pixelFormat(3, 2), output.get(), TYPE_RGB_16,
                                     INTENT_RELATIVE_COLORIMETRIC, kExact);
    const std::shared_ptr<ColourTransform> transform = adopt(bytes, words, 3);
    if (transform) {
        transform->m_isLab = true;
        transform->m_limits = limits;
    }
    return transform;
}

const std::shared_ptr<const ColourTransform> &ColourTransform::lab()
{
    static const std::shared_ptr<const ColourTransform> transform = fromLab({-128, 127, -128, 127});
    return transform;
}

void ColourTransform::normalise(float *colour) const
{
    if (m_isLab) {
        colour[0] /= 100;
        colour[1] = (colour[1] - m_limits[0]) / (m_limits[1] - m_limits[0]);
        colour[2] = (colour[2] - m_limits[2]) / (m_limits[3] - m_limits[2]);
    }
}

void ColourTransform::convertPixels(const unsigned char *source, unsigned char *rgb,
                                    std::size_t count) const
{
    cmsDoTransform(m_bytes, source, rgb, static_cast<cmsUInt32Number>(count));
}

void ColourTransform::convertColour(const float *source, float rgb[3]) const
{
    std::array<cmsUInt16Number, 4> in{};
    std::array<cmsUInt16Number, 3> out{};
    for (std::size_t i = 0; i < static_cast<std::size_t>(m_components); ++i) {
        const float clamped = std::clamp(source[i], 0.0F, 1.0F);
        in[i] = static_cast<cmsUInt16Number>(std::lround(clamped * 65535.0F));
    }
    cmsDoTransform(m_words, in.data(), out.data(), 1);
    for (std::size_t i = 0; i < out.size(); ++i) {
        rgb[i] = static_cast<float>(out[i]) / 65535.0F;
    }
}

} // namespace pdfcore
