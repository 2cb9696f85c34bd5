#include "codecs/ColourProfile.h"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <utility>
#include <vector>

namespace trimora::codecs {
namespace {

struct CloseProfile {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;

struct DeleteTransform {
    void operator()(void* transform) const { cmsDeleteTransform(transform); }
};
using TransformHandle = std::unique_ptr<void, DeleteTransform>;

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
std::optional<ColourModel> modelFor(cmsHPROFILE profile, ColourModel picture) {
    const bool ofInks = picture == ColourModel::cmyk || picture == ColourModel::invertedCmyk;
    switch (cmsGetColorSpace(profile)) {
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

TransformHandle makeTransform(cmsHPROFILE from, cmsUInt32Number format) {
    const Profile srgb(cmsCreate_sRGBProfile());
    return TransformHandle(cmsCreateTransform(from, format, srgb.get(), TYPE_BGRA_8, INTENT_PERCEPTUAL, 0));
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
bool changesNothing(cmsHTRANSFORM transform, ColourModel model) {
    if (model != ColourModel::grey && model != ColourModel::rgb)
        return false;
    for (int blue = 0; blue < 256; blue += kLatticeStep) {
        const std::vector<std::uint8_t> colours = latticeOf(model, blue);
        std::vector<std::uint8_t> turned = colours;
        cmsDoTransform(transform, turned.data(), turned.data(),
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

Profile gammaProfile(double gamma, const Chromaticities& places, ColourModel model) {
    cmsToneCurve* const curve = cmsBuildGamma(nullptr, gamma);
    if (curve == nullptr)
        return nullptr;
    const cmsCIExyY white = placed(places.white);
    const cmsCIExyYTRIPLE primaries = {placed(places.red), placed(places.green), placed(places.blue)};
    const std::array<cmsToneCurve*, 3> curves = {curve, curve, curve};
    Profile profile(model == ColourModel::grey ? cmsCreateGrayProfile(cmsD50_xyY(), curve)
                                               : cmsCreateRGBProfile(&white, &primaries, curves.data()));
    cmsFreeToneCurve(curve);
    return profile;
}

/// The transform that the profile asks of such pixels; none where there is nothing to do or to be done.
TransformHandle neededTransform(const Profile& profile, ColourModel picture, SampleDepth depth) {
    if (!profile)
        return nullptr;
    const std::optional<ColourModel> model = modelFor(profile.get(), picture);
    const cmsUInt32Number format = model ? inputFormat(*model, depth) : 0;
    if (format == 0)
        return nullptr;
    // Making one takes milliseconds: that of 8 bits, on which it is seen what the profile does, is used as
    // well.
    TransformHandle eight = makeTransform(profile.get(), inputFormat(*model, SampleDepth::eight));
    if (!eight || changesNothing(eight.get(), *model))
        return nullptr;
    return depth == SampleDepth::eight ? std::move(eight) : makeTransform(profile.get(), format);
}

}  // namespace

std::string profileName(Bytes icc) {
    if (icc.empty() || icc.size() > kMostProfileBytes)
        return {};
    const Profile profile(cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())));
    if (!profile)
        return {};
    std::array<char, 256> text{};
    cmsGetProfileInfoASCII(profile.get(), cmsInfoDescription, "en", "US", text.data(), text.size());
    text.back() = 0;
    std::string name;
    // What a file says may be anything; a terminal gets none of its control characters.
    std::copy_if(text.begin(), std::find(text.begin(), text.end(), '\0'), std::back_inserter(name),
                 [](char letter) { return letter >= ' ' && letter <= '~'; });
    return name.empty() ? "unnamed" : name;
}

void ColourProfile::DeleteTransform::operator()(void* transform) const {
    cmsDeleteTransform(transform);
}

std::unique_ptr<ColourProfile> ColourProfile::fromIcc(Bytes icc, ColourModel model, SampleDepth depth) {
    if (icc.empty() || icc.size() > kMostProfileBytes)
        return nullptr;
    const Profile profile(cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())));
    void* const transform = neededTransform(profile, model, depth).release();
    return transform != nullptr ? std::unique_ptr<ColourProfile>(new ColourProfile(transform)) : nullptr;
}

std::unique_ptr<ColourProfile> ColourProfile::fromGamma(double gamma,
                                                        const std::optional<Chromaticities>& places,
                                                        ColourModel model, SampleDepth depth) {
    const Profile profile = gammaProfile(gamma, places.value_or(kSrgbPlaces), model);
    void* const transform = neededTransform(profile, model, depth).release();
    return transform != nullptr ? std::unique_ptr<ColourProfile>(new ColourProfile(transform)) : nullptr;
}

void ColourProfile::apply(const void* from, std::uint8_t* to, std::size_t count) const {
    cmsDoTransform(transform_.get(), from, to, static_cast<cmsUInt32Number>(count));
}

}  // namespace trimora::codecs
