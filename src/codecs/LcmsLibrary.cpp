#include "codecs/LcmsLibrary.h"

#include <lcms2_plugin.h>

#include <cstdlib>

#include "codecs/ColourProfile.h"
#include "files/LateLibrary.h"

namespace trimora::codecs {

using foundation::Error;
using foundation::Result;

namespace {

// The library makes room for what a table says of its size before it reads any of it. Of a byte that is there
// it makes two at most.
constexpr std::size_t kMostAtOnce = 2 * kMostProfileBytes;

void* allocate(cmsContext /*context*/, cmsUInt32Number size) {
    return size <= kMostAtOnce ? std::malloc(size) : nullptr;
}

void* reallocate(cmsContext /*context*/, void* memory, cmsUInt32Number size) {
    return size <= kMostAtOnce ? std::realloc(memory, size) : nullptr;
}

void release(cmsContext /*context*/, void* memory) {
    std::free(memory);
}

/// Has the library take its memory from here.
bool boundMemory(decltype(&::cmsPlugin) install) {
    constexpr cmsUInt32Number kOldestLibrary = 2'000;  // it had this from its version 2.0 on
    static cmsPluginMemHandler memory = {
        {cmsPluginMagicNumber, kOldestLibrary, cmsPluginMemHandlerSig, nullptr},
        allocate,
        release,
        reallocate,
        nullptr,
        nullptr,
        nullptr};
    return install(&memory) != FALSE;
}

Result<LcmsLibrary> load() {
    auto library =
        files::loadFunctions<LcmsLibrary>("liblcms2.so.2", [](files::LateFunctions& find, LcmsLibrary& made) {
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
            find("cmsPlugin", made.Plugin);
        });
    if (library && !boundMemory(library->Plugin))
        return Error{"the colour library takes its memory from nobody"};
    return library;
}

}  // namespace

Result<const LcmsLibrary*> LcmsLibrary::get() {
    static files::LoadedOnce<LcmsLibrary> library;
    return library.get(load);
}

}  // namespace trimora::codecs
