#include "pictures/colour_profile.h"

#include <lcms2.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <type_traits>

#include "pictures/colour_convert.h"

namespace vkr::tool {

namespace {

using Profile = std::unique_ptr<void, cmsBool (*)(cmsHPROFILE)>;
using Transform = std::unique_ptr<void, void (*)(cmsHTRANSFORM)>;
using Curve = std::unique_ptr<cmsToneCurve, void (*)(cmsToneCurve*)>;

// Null when it can not be used.
Profile Open(const Bytes& vProfile)
{
    Profile profile(vProfile.empty()
                        ? cmsCreate_sRGBProfile()
                        : cmsOpenProfileFromMem(vProfile.data(), static_cast<cmsUInt32Number>(vProfile.size())),
                    &cmsCloseProfile);
    if (profile && cmsGetColorSpace(profile.get()) != cmsSigRgbData) profile.reset();
    return profile;
}

// 8-bit R, G, B into the same.
Transform MakeTransform(const Bytes& vFrom, const Bytes& vTo)
{
    const Profile from = Open(vFrom), to = Open(vTo);
    cmsHTRANSFORM hTransform = nullptr;
    if (from && to) {
        hTransform = cmsCreateTransform(from.get(), TYPE_RGB_8, to.get(), TYPE_RGB_8, INTENT_RELATIVE_COLORIMETRIC,
                                        cmsFLAGS_BLACKPOINTCOMPENSATION);
    }
    return Transform(hTransform, &cmsDeleteTransform);
}

Bytes BytesOf(cmsHPROFILE hProfile)
{
    cmsUInt32Number nSize = 0;
    if (!cmsSaveProfileToMem(hProfile, nullptr, &nSize)) return {};
    Bytes vBytes(nSize);
    if (!cmsSaveProfileToMem(hProfile, vBytes.data(), &nSize)) vBytes.clear();
    return vBytes;
}

}  // namespace

bool MeanTheSame(const Bytes& vProfile, const Bytes& vOther)
{
    if (vProfile == vOther) return true;
    const Transform transform = MakeTransform(vProfile, vOther);
    if (!transform) return false;
    Bytes vSamples;
    for (int i = 0; i < 9 * 9 * 9; ++i) {
        for (const int n : {i / 81, i / 9 % 9, i % 9}) vSamples.push_back(static_cast<uint8_t>(std::min(32 * n, 255)));
    }
    Bytes vConverted(vSamples.size());
    cmsDoTransform(transform.get(), vSamples.data(), vConverted.data(), 9 * 9 * 9);
    return std::equal(vSamples.begin(), vSamples.end(), vConverted.begin(),
                      [](int a, int b) { return std::abs(a - b) <= 1; });
}

bool ConvertColours(const Bytes& vFrom, const Bytes& vTo, Frame& frame)
{
    const Transform transform = MakeTransform(vFrom, vTo);
    if (!transform) return false;
    Raster rgb = RgbFromFrame(frame);
    cmsDoTransform(transform.get(), rgb.vSamples.data(), rgb.vSamples.data(),
                   static_cast<cmsUInt32Number>(rgb.nWidth) * static_cast<cmsUInt32Number>(rgb.nHeight));
    frame = FrameFromRgb(rgb, "");
    return true;
}

std::string ProfileName(const Bytes& vProfile)
{
    if (vProfile.empty()) return "sRGB";
    const Profile profile = Open(vProfile);
    char szName[80] = "";
    if (profile) cmsGetProfileInfoASCII(profile.get(), cmsInfoDescription, "en", "US", szName, sizeof(szName));
    return szName[0] != 0 ? szName : "its colour profile";
}

Bytes ProfileOfPrimaries(const double (&vPlaces)[8])
{
    constexpr double kSrgb[8] = {0.3127, 0.3290, 0.64, 0.33, 0.30, 0.60, 0.15, 0.06};
    if (std::equal(vPlaces, vPlaces + 8, kSrgb, [](double a, double b) { return std::abs(a - b) < 0.005; })) return {};
    const cmsCIExyY white{vPlaces[0], vPlaces[1], 1};
    const cmsCIExyYTRIPLE primaries{
        {vPlaces[2], vPlaces[3], 1}, {vPlaces[4], vPlaces[5], 1}, {vPlaces[6], vPlaces[7], 1}};
    constexpr cmsFloat64Number kSrgbCurve[5] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    const Curve curve(cmsBuildParametricToneCurve(nullptr, 4, kSrgbCurve), &cmsFreeToneCurve);
    cmsToneCurve* const vCurves[3] = {curve.get(), curve.get(), curve.get()};
    const Profile profile(cmsCreateRGBProfile(&white, &primaries, vCurves), &cmsCloseProfile);
    return profile ? BytesOf(profile.get()) : Bytes();
}

}  // namespace vkr::tool
