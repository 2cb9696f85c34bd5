#pragma once

#include <lcms2.h>

#include "foundation/Result.h"

namespace trimora::codecs {

/// Those functions of Little CMS that are called here, under its names without their "cms". The library is
/// loaded with the first profile: every start would wait for it otherwise, as for each of the libraries. What
/// it takes of memory for one thing is bounded by what a profile of kMostProfileBytes can hold.
struct LcmsLibrary {
    decltype(&::cmsBuildGamma) BuildGamma;
    decltype(&::cmsCloseProfile) CloseProfile;
    decltype(&::cmsCreateGrayProfile) CreateGrayProfile;
    decltype(&::cmsCreateRGBProfile) CreateRGBProfile;
    decltype(&::cmsCreateTransform) CreateTransform;
    decltype(&::cmsCreate_sRGBProfile) Create_sRGBProfile;
    decltype(&::cmsD50_xyY) D50_xyY;
    decltype(&::cmsDeleteTransform) DeleteTransform;
    decltype(&::cmsDoTransform) DoTransform;
    decltype(&::cmsFreeToneCurve) FreeToneCurve;
    decltype(&::cmsGetColorSpace) GetColorSpace;
    decltype(&::cmsGetProfileInfoASCII) GetProfileInfoASCII;
    decltype(&::cmsOpenProfileFromMem) OpenProfileFromMem;
    decltype(&::cmsPlugin) Plugin;

    /// The one of this process, loaded with the first call. An error where it is not installed or memory is
    /// missing; the next call tries again. Any thread.
    [[nodiscard]] static foundation::Result<const LcmsLibrary*> get();
};

}  // namespace trimora::codecs
