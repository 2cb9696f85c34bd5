#pragma once

#include <vector>

#include "sample/Band.h"
#include "sample/Noise.h"

namespace trimora::sample {

/// One strand of down: a bent, tapering line that is darker at its root.
struct Strand {
    foundation::Point root;
    foundation::Point bend;  ///< pulls the line towards itself half-way (quadratic curve)
    foundation::Point tip;
    double width = 0;  ///< at the root; runs out to nothing at the tip
    Colour rootColour;
    Colour tipColour;
    float alpha = 1;
};

/// The down of an owl chick: the soft outline of the scene. Some ten thousand strands grow away from
/// the face, over head and body, lit from the upper left and from the lamps behind.
class Plumage final : public SceneElement {
 public:
    Plumage();
    void paint(Band& band) const override;

 private:
    void growOver(foundation::Point centre, double halfWidth, double halfHeight, int count, Random& random);
    void growWisps(foundation::Point centre, double halfWidth, double halfHeight, int count, Random& random);
    void growEarTufts(Random& random);
    void paintUndercoat(Band& band) const;

    std::vector<Strand> strands_;
};

/// Where the face is: between the eyes.
inline constexpr foundation::Point kFace{1790, 1265};
inline constexpr double kEyeDistance = 232;  ///< of each eye from the middle of the face
inline constexpr double kEyeHeight = 1250;

}  // namespace trimora::sample
