#pragma once

#include <vector>

#include "foundation/Geometry.h"

namespace trimora {

/// One stroke of the brush: its diameter and the places that its centre passes, top row first.
struct DemoStroke {
    double diameter = 0;
    std::vector<foundation::Point> places;
};

/// The strokes that cut the two figures of the sample picture out of their background, for a picture that
/// is shown `shown` points large: broad ones over the open background, fine ones into the corners, and
/// one round each figure. On another picture they clear all but two figures of the same shape.
///
/// Places are points from the shown picture's top left corner, y-down.
[[nodiscard]] std::vector<DemoStroke> demoStrokes(foundation::Size shown);

/// Whether the place (as above) belongs to one of the two figures.
[[nodiscard]] bool isInDemoFigure(foundation::Point place, foundation::Size shown);

}  // namespace trimora
