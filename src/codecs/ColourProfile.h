#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "codecs/Bytes.h"

namespace trimora::codecs {

struct LcmsLibrary;

/// Profiles above this are not read: real ones have at most a few megabytes.
inline constexpr std::size_t kMostProfileBytes = std::size_t{8} << 20;

/// What the numbers of a decoded pixel mean, before any profile is applied.
enum class ColourModel : std::uint8_t {
    grey,          ///< one lightness, repeated in all three colour components
    rgb,           ///< three colours
    cmyk,          ///< four inks, 255 (or 65535) is full ink
    invertedCmyk,  ///< four inks, 0 is full ink
};

[[nodiscard]] constexpr bool holdsInks(ColourModel model) {
    return model == ColourModel::cmyk || model == ColourModel::invertedCmyk;
}

/// The layout of the pixels that a ColourProfile reads.
enum class SampleDepth : std::uint8_t {
    eight,    ///< 4 bytes a pixel: B,G,R,A, or C,M,Y,K
    sixteen,  ///< 4 numbers of 16 bits a pixel: R,G,B,A
};

/// Where red, green, blue and white of a picture lie: x and y of CIE 1931.
struct Chromaticities {
    struct Place {
        double x;
        double y;
    };
    Place white;
    Place red;
    Place green;
    Place blue;
};

/// The name that an ICC profile bears, in English where it has that and in ASCII; "unnamed" where it has
/// none, empty where the bytes are no profile.
[[nodiscard]] std::string profileName(Bytes icc);

/// Ends a transform of the colour library; only ColourProfile and its own source know more of it.
struct DeleteLcmsTransform {
    const LcmsLibrary* lcms;
    void operator()(void* transform) const;
};
using LcmsTransform = std::unique_ptr<void, DeleteLcmsTransform>;

/// Turns the colours of a picture into sRGB, as its embedded profile says (perceptual intent).
///
/// Made once a picture; apply() may then be called on several threads at once.
class ColourProfile {
 public:
    /// The conversion that an ICC profile asks for. None where nothing is to be done (the profile is
    /// sRGB to within one level of 255, under whatever name) or can be (it is damaged, too large, or of
    /// another colour model than the picture).
    [[nodiscard]] static std::unique_ptr<ColourProfile> fromIcc(Bytes icc, ColourModel model,
                                                                SampleDepth depth);

    /// The conversion of a picture whose light is its numbers to the power of `gamma` (2.2 and the like),
    /// with these primaries (sRGB's where none are given; grey pictures need none). None as above.
    [[nodiscard]] static std::unique_ptr<ColourProfile> fromGamma(double gamma,
                                                                  const std::optional<Chromaticities>& places,
                                                                  ColourModel model, SampleDepth depth);

    /// Writes the colours of `count` pixels as sRGB in B,G,R,A of 8 bits, straight. The alpha bytes of
    /// `to` are left as they are. `from` may be `to` where the depth is eight.
    void apply(const void* from, std::uint8_t* to, std::size_t count) const;

 private:
    [[nodiscard]] static std::unique_ptr<ColourProfile> of(LcmsTransform transform);
    explicit ColourProfile(LcmsTransform transform) : transform_(std::move(transform)) {}

    LcmsTransform transform_;
};

}  // namespace trimora::codecs
