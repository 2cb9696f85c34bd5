#include "codecs/ColourProfile.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <utility>
#include <vector>

#include "codecs/LcmsLibrary.h"

namespace trimora::codecs {
namespace {

struct CloseProfile {
    const LcmsLibrary* lcms;
    void operator()(void* profile) const { lcms->CloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;

/// None where it cannot be loaded: colours then stay as they are, as with a profile that is of no use.
const LcmsLibrary* loadedLcms() {
    const auto library = LcmsLibrary::get();
    return library ? *library : nullptr;
}

Profile openProfile(const LcmsLibrary* lcms, Bytes icc) {
    if (lcms == nullptr || icc.empty() || icc.size() > kMostProfileBytes)
        return Profile(nullptr, CloseProfile{lcms});
    return Profile(lcms->OpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())),
                   CloseProfile{lcms});
}

constexpr Chromaticities kSrgbPlaces = {{0.3127, 0.3290}, {0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}};

// Pixels whose last three samples repeat or do not concern the lightness in the first.
constexpr cmsUInt32Number kGreyIn8 = COLORSPACE_SH(PT_GRAY) | CHANNELS_SH(1) | EXTRA_SH(3) | BYTES_SH(1);
constexpr cmsUInt32Number kGreyIn16 = COLORSPACE_SH(PT_GRAY) | CHANNELS_SH(1) | EXTRA_SH(3) | BYTES_SH(2);

constexpr int kLatticeStep = 17;

/// How lcms shall read the pixels; 0 for what no decoder makes.
cmsUInt32Number inputFormat(ColourModel model, SampleDepth depth) {
    const bool wide = depth == SampleDepth::sixteen;
    switch (model) {
        case ColourModel::grey:
            return wide ? kGreyIn16 : kGreyIn8;
        case ColourModel::rgb:
            return wide ? TYPE_RGBA_16 : TYPE_BGRA_8;
        case ColourModel::cmyk:
            return wide ? 0 : TYPE_CMYK_8;
        case ColourModel::invertedCmyk:
            return wide ? 0 : TYPE_CMYK_8_REV;
    }
    return 0;
}

/// The model to read the pixels by, given the profile's: a grey picture has equal red, green and blue, so
/// a profile of colours fits it as well. None where the two do not go together.
std::optional<ColourModel> modelFor(const Profile& profile, ColourModel picture) {
    const bool ofInks = holdsInks(picture);
    switch (profile.get_deleter().lcms->GetColorSpace(profile.get())) {
        case cmsSigGrayData:
            return picture == ColourModel::grey ? std::optional(picture) : std::nullopt;
        case cmsSigRgbData:
            return ofInks ? std::nullopt : std::optional(ColourModel::rgb);
        case cmsSigCmykData:
            return ofInks ? std::optional(picture) : std::nullopt;
        default:
            return std::nullopt;
    }
}

LcmsTransform makeTransform(const Profile& from, cmsUInt32Number format) {
    const LcmsLibrary* const lcms = from.get_deleter().lcms;
    const Profile srgb(lcms->Create_sRGBProfile(), CloseProfile{lcms});
    return LcmsTransform(
        lcms->CreateTransform(from.get(), format, srgb.get(), TYPE_BGRA_8, INTENT_PERCEPTUAL, 0),
        DeleteLcmsTransform{lcms});
}

/// Colours spread evenly over all that have this much blue, as B,G,R,A: a grey, or 16 x 16 colours.
std::vector<std::uint8_t> latticeOf(ColourModel model, int blue) {
    std::vector<std::uint8_t> colours;
    const auto add = [&](int green, int red) {
        for (const int value : {blue, green, red, 255})
            colours.push_back(static_cast<std::uint8_t>(value));
    };
    if (model == ColourModel::grey) {
        add(blue, blue);
        return colours;
    }
    for (int green = 0; green < 256; green += kLatticeStep) {
        for (int red = 0; red < 256; red += kLatticeStep)
            add(green, red);
    }
    return colours;
}

/// Whether a transform of 8 bits leaves sRGB as it is, tried on colours rather than told by a name: there are
/// dozens of sRGB profiles.
bool changesNothing(const LcmsTransform& transform, ColourModel model) {
    if (model != ColourModel::grey && model != ColourModel::rgb)
        return false;
    for (int blue = 0; blue < 256; blue += kLatticeStep) {
        const std::vector<std::uint8_t> colours = latticeOf(model, blue);
        std::vector<std::uint8_t> turned = colours;
        transform.get_deleter().lcms->DoTransform(transform.get(), turned.data(), turned.data(),
                                                  static_cast<cmsUInt32Number>(turned.size() / 4));
        if (!std::equal(colours.begin(), colours.end(), turned.begin(),
                        [](int before, int after) { return std::abs(before - after) <= 1; }))
            return false;
    }
    return true;
}

cmsCIExyY placed(const Chromaticities::Place& place) {
    return {place.x, place.y, 1.0};
}

Profile gammaProfile(const LcmsLibrary* lcms, double gamma, const Chromaticities& places, ColourModel model) {
    cmsToneCurve* const curve = lcms != nullptr ? lcms->BuildGamma(nullptr, gamma) : nullptr;
    if (curve == nullptr)
        return Profile(nullptr, CloseProfile{lcms});
    const cmsCIExyY white = placed(places.white);
    const cmsCIExyYTRIPLE primaries = {placed(places.red), placed(places.green), placed(places.blue)};
    const std::array<cmsToneCurve*, 3> curves = {curve, curve, curve};
    Profile profile(model == ColourModel::grey ? lcms->CreateGrayProfile(lcms->D50_xyY(), curve)
                                               : lcms->CreateRGBProfile(&white, &primaries, curves.data()),
                    CloseProfile{lcms});
    lcms->FreeToneCurve(curve);
    return profile;
}

/// The transform that the profile asks of such pixels; none where there is nothing to do or to be done.
LcmsTransform neededTransform(const Profile& profile, ColourModel picture, SampleDepth depth) {
    LcmsTransform none(nullptr, DeleteLcmsTransform{profile.get_deleter().lcms});
    if (!profile)
        return none;
    const std::optional<ColourModel> model = modelFor(profile, picture);
    const cmsUInt32Number format = model ? inputFormat(*model, depth) : 0;
    if (format == 0)
        return none;
    // Making one takes milliseconds: that of 8 bits, on which it is seen what the profile does, is used as
    // well.
    LcmsTransform eight = makeTransform(profile, inputFormat(*model, SampleDepth::eight));
    if (!eight || changesNothing(eight, *model))
        return none;
    return depth == SampleDepth::eight ? std::move(eight) : makeTransform(profile, format);
}

}  // namespace

std::string profileName(Bytes icc) {
    const LcmsLibrary* const lcms = loadedLcms();
    const Profile profile = openProfile(lcms, icc);
    if (!profile)
        return {};
    std::array<char, 256> text{};
    lcms->GetProfileInfoASCII(profile.get(), cmsInfoDescription, "en", "US", text.data(), text.size());
    text.back() = 0;
    std::string name;
    // What a file says may be anything; a terminal gets none of its control characters.
    std::copy_if(text.begin(), std::find(text.begin(), text.end(), '\0'), std::back_inserter(name),
                 [](char letter) { return letter >= ' ' && letter <= '~'; });
    return name.empty() ? "unnamed" : name;
}

void DeleteLcmsTransform::operator()(void* transform) const {
    lcms->DeleteTransform(transform);
}

std::unique_ptr<ColourProfile> ColourProfile::fromIcc(Bytes icc, ColourModel model, SampleDepth depth) {
    return of(neededTransform(openProfile(loadedLcms(), icc), model, depth));
}

std::unique_ptr<ColourProfile> ColourProfile::fromGamma(double gamma,
                                                        const std::optional<Chromaticities>& places,
                                                        ColourModel model, SampleDepth depth) {
    return of(neededTransform(gammaProfile(loadedLcms(), gamma, places.value_or(kSrgbPlaces), model), model,
                              depth));
}

std::unique_ptr<ColourProfile> ColourProfile::of(LcmsTransform transform) {
    return transform != nullptr ? std::unique_ptr<ColourProfile>(new ColourProfile(std::move(transform)))
                                : nullptr;
}

void ColourProfile::apply(const void* from, std::uint8_t* to, std::size_t count) const {
    transform_.get_deleter().lcms->DoTransform(transform_.get(), from, to,
                                               static_cast<cmsUInt32Number>(count));
}

}  // namespace trimora::codecs
