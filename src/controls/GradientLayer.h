#pragma once

#include "controls/ControlLayer.h"

namespace trimora::controls {

/// A layer filled with a run of colours, evenly spread along a line; before its start and after its end
/// the first and the last colour go on. Two colours are mixed by what they let through (premultiplied),
/// so white fading to clear stays white. An animation of `colors` takes the place of `colors`.
class GradientLayer final : public ControlLayer {
 public:
    std::vector<QColor> colors;
    /// Ends of the line, as shares of the layer's width and height.
    foundation::Point startPoint{0.5, 0};
    foundation::Point endPoint{0.5, 1};

 protected:
    void paintContents(QPainter& painter, const LayerPresentation& shown) const override;
};

}  // namespace trimora::controls
