#include "codecs/LcmsLibrary.h"

#include "files/LateLibrary.h"

namespace trimora::codecs {

using foundation::Result;

namespace {

Result<LcmsLibrary> load() {
    const auto library = files::LateLibrary::open("liblcms2.so.2");
    if (!library)
        return library.error();
    LcmsLibrary made{};
    files::LateFunctions find(*library);
    find("cmsBuildGamma", made.BuildGamma);
    find("cmsCloseProfile", made.CloseProfile);
    find("cmsCreateGrayProfile", made.CreateGrayProfile);
    find("cmsCreateRGBProfile", made.CreateRGBProfile);
    find("cmsCreateTransform", made.CreateTransform);
    find("cmsCreate_sRGBProfile", made.Create_sRGBProfile);
    find("cmsD50_xyY", made.D50_xyY);
    find("cmsDeleteTransform", made.DeleteTransform);
    find("cmsDoTransform", made.DoTransform);
    find("cmsFreeToneCurve", made.FreeToneCurve);
    find("cmsGetColorSpace", made.GetColorSpace);
    find("cmsGetProfileInfoASCII", made.GetProfileInfoASCII);
    find("cmsOpenProfileFromMem", made.OpenProfileFromMem);
    if (!find.found())
        return find.found().error();
    return made;
}

}  // namespace

Result<const LcmsLibrary*> LcmsLibrary::get() {
    static files::LoadedOnce<LcmsLibrary> library;
    return library.get(load);
}

}  // namespace trimora::codecs
