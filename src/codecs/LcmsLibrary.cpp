#include "codecs/LcmsLibrary.h"

#include "files/LateLibrary.h"

namespace trimora::codecs {

using foundation::Result;

namespace {

Result<LcmsLibrary> load() {
    return files::loadFunctions<LcmsLibrary>("liblcms2.so.2",
                                             [](files::LateFunctions& find, LcmsLibrary& made) {
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
                                             });
}

}  // namespace

Result<const LcmsLibrary*> LcmsLibrary::get() {
    static files::LoadedOnce<LcmsLibrary> library;
    return library.get(load);
}

}  // namespace trimora::codecs
