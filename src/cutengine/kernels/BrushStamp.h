#pragma once

#include <memory>

#include "foundation/Bitmap.h"

namespace trimora::cutengine::kernels {

/// The largest soft brush stamp, from which every soft stamp is stretched: black, solid out to
/// hardness x radius, fading linearly to nothing at the radius.
///
/// Immutable; any thread.
class BrushStamp {
 public:
    /// `side` is the stamp's width and height in mask pixels, not truncated (the bitmap's side is);
    /// `hardness` is 0..1.
    BrushStamp(float side, float hardness);

    [[nodiscard]] float side() const { return side_; }
    [[nodiscard]] float hardness() const { return hardness_; }

    /// The stamp's alpha, 0..1, at a distance from its centre given as a share of its radius.
    [[nodiscard]] double alphaAt(double distance) const;

    /// The stamp as a bitmap of trunc(side) pixels a side.
    [[nodiscard]] foundation::Result<foundation::Bitmap> image() const;

 private:
    float side_;
    float hardness_;
};

}  // namespace trimora::cutengine::kernels
