// SPDX-License-Identifier: AGPL-3.0-or-later
#include "tests/pdfcore/icc_profiles.h"

#include <array>
#include <memory>

#include <lcms2.h>

namespace IccProfiles {

namespace {

constexpr cmsCIExyY kD65{0.3127, 0.3290, 1};
constexpr cmsCIExyY kRed{0.64, 0.33, 1};
constexpr cmsCIExyY kGreen{0.30, 0.60, 1};
constexpr cmsCIExyY kBlue{0.15, 0.06, 1};

struct ProfileCloser
{
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, ProfileCloser>;

struct CurveFree
{
    void operator()(cmsToneCurve *curve) const { cmsFreeToneCurve(curve); }
};
using Curve = std::unique_ptr<cmsToneCurve, CurveFree>;

QByteArray bytesOf(const Profile &profile)
{
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile.get(), nullptr, &size);
    QByteArray bytes(static_cast<qsizetype>(size), '\0');
    cmsSaveProfileToMem(profile.get(), bytes.data(), &size);
    return bytes;
}

Curve standardCurve()
{
    constexpr std::array kParameters{2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    return Curve(cmsBuildParametricToneCurve(nullptr, 4, kParameters.data()));
}

Curve linearCurve()
{
    return Curve(cmsBuildGamma(nullptr, 1));
}

QByteArray rgb(const cmsCIExyYTRIPLE &primaries, const Curve &curve)
{
    const std::array curves{curve.get(), curve.get(), curve.get()};
    return bytesOf(Profile(cmsCreateRGBProfile(&kD65, &primaries, curves.data())));
}

QByteArray gray(const Curve &curve)
{
    return bytesOf(Profile(cmsCreateGrayProfile(cmsD50_xyY(), curve.get())));
}

cmsInt32Number sampleSwapped(const cmsUInt16Number in[], cmsUInt16Number out[], void *toLab)
{
    const auto mixed = [&in](int ink) {
        const double light = (1 - in[ink] / 65535.0) * (1 - in[3] / 65535.0);
        return static_cast<cmsUInt16Number>(light * 65535);
    };
    const std::array<cmsUInt16Number, 3> colour{mixed(1), mixed(0), mixed(2)};
    cmsDoTransform(toLab, colour.data(), out, 1);
    return TRUE;
}

} // namespace

QByteArray standardRgb()
{
    return bytesOf(Profile(cmsCreate_sRGBProfile()));
}

QByteArray linearRgb()
{
    return rgb({kRed, kGreen, kBlue}, linearCurve());
}

QByteArray swappedRgb()
{
    return rgb({kGreen, kRed, kBlue}, standardCurve());
}

QByteArray standardGray()
{
    return gray(standardCurve());
}

QByteArray linearGray()
{
    return gray(linearCurve());
}

QByteArray swappedCmyk()
{
    const Profile standard(cmsCreate_sRGBProfile());
    const Profile lab(cmsCreateLab4Profile(nullptr));
    void *toLab = cmsCreateTransform(standard.get(), TYPE_RGB_16, lab.get(), TYPE_Lab_16,
                                     INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOCACHE);
    const Profile profile(cmsCreateProfilePlaceholder(nullptr));
    cmsSetProfileVersion(profile.get(), 4.3);
    cmsSetDeviceClass(profile.get(), cmsSigOutputClass);
    cmsSetColorSpace(profile.get(), cmsSigCmykData);
    cmsSetPCS(profile.get(), cmsSigLabData);
    cmsPipeline *pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage *table = cmsStageAllocCLut16bit(nullptr, 9, 4, 3, nullptr);
    cmsStageSampleCLut16bit(table, &sampleSwapped, toLab, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocToneCurves(nullptr, 4, nullptr));
    cmsPipelineInsertStage(pipeline, cmsAT_END, table);
    cmsPipelineInsertStage(pipeline, cmsAT_END, cmsStageAllocToneCurves(nullptr, 3, nullptr));
    cmsWriteTag(profile.get(), cmsSigAToB0Tag, pipeline);
    cmsWriteTag(profile.get(), cmsSigMediaWhitePointTag, cmsD50_XYZ());
    cmsPipelineFree(pipeline);
    cmsDeleteTransform(toLab);
    return bytesOf(profile);
}

} // namespace IccProfiles
