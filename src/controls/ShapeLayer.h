#pragma once

#include "controls/ControlLayer.h"

namespace trimora::controls {

/// A layer that draws one outline: filled, and then stroked along its line.
class ShapeLayer final : public ControlLayer {
 public:
    cutengine::BezierPath path;  ///< in the layer's own space
    QColor fillColor = Qt::transparent;
    QColor strokeColor = Qt::transparent;
    double lineWidth = 1;  ///< points, half of it on either side of the outline

 protected:
    void paintContents(QPainter& painter, const LayerPresentation& shown) const override;
};

}  // namespace trimora::controls
