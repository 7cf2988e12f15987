// SPDX-License-Identifier: AGPL-3.0-or-later
#include "pdfcore/src/operations/picture_profile.h"

#include <limits>
#include <memory>

#include <lcms2.h>

namespace pdfcore {

namespace {

struct ProfileCloser
{
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, ProfileCloser>;

bool hasFittingSpace(cmsHPROFILE profile, int components)
{
    const cmsColorSpaceSignature space = cmsGetColorSpace(profile);
    return (components == 1 && space == cmsSigGrayData) ||
           (components == 3 && space == cmsSigRgbData) ||
           (components == 4 && space == cmsSigCmykData);
}

bool hasFittingClass(cmsHPROFILE profile)
{
    const cmsProfileClassSignature kind = cmsGetDeviceClass(profile);
    return kind == cmsSigInputClass || kind == cmsSigDisplayClass || kind == cmsSigOutputClass ||
           kind == cmsSigColorSpaceClass;
}

cmsUInt32Number bytesOf(int components)
{
    return COLORSPACE_SH(PT_ANY) | CHANNELS_SH(static_cast<cmsUInt32Number>(components)) |
           BYTES_SH(1);
}

} // namespace

bool isProfileFor(const QByteArray &profile, int components)
{
    if (profile.isEmpty() || profile.size() > std::numeric_limits<int>::max()) {
        return false;
    }
    const Profile own(
        cmsOpenProfileFromMem(profile.constData(), static_cast<cmsUInt32Number>(profile.size())));
    if (!own || !hasFittingSpace(own.get(), components) || !hasFittingClass(own.get())) {
        return false;
    }
    // Its tables are read only when a conversion is made of them.
    const Profile standard(cmsCreate_sRGBProfile());
    void *transform = cmsCreateTransform(own.get(), bytesOf(components), standard.get(), TYPE_RGB_8,
                                         INTENT_RELATIVE_COLORIMETRIC, 0);
    if (transform == nullptr) {
        return false;
    }
    cmsDeleteTransform(transform);
    return true;
}

} // namespace pdfcore
