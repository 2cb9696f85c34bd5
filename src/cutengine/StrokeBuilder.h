#pragma once

#include <vector>

#include "foundation/Geometry.h"

namespace trimora::cutengine {

/// Turns the pointer's samples of one stroke into brush stamps: fills the gaps that a fast pointer
/// leaves and drops samples too close to the last.
///
/// Stamps are rectangles in picture points. They lie one spacing apart or more, where the spacing is a
/// sixth of the stamp's width divided by (hardness + 10): dense enough for a soft brush to look smooth.
/// Main thread only.
class StrokeBuilder {
 public:
    /// The stamps that this sample adds, oldest first; none where it lies closer to the last one kept
    /// than the spacing. `stamp` is the brush's rectangle at the pointer, `hardness` is 0..1.
    [[nodiscard]] std::vector<foundation::Rect> addSample(const foundation::Rect& stamp, float hardness);

    /// The stroke is over: the next sample begins a new one.
    void end() { previous_ = {}; }

    /// The stamp of the last sample kept; the zero rectangle between strokes.
    [[nodiscard]] const foundation::Rect& prevEventRect() const { return previous_; }

 private:
    foundation::Rect previous_;
};

}  // namespace trimora::cutengine
