#include "controls/ShapeLayer.h"

#include <QPainter>

#include "controls/PathDrawing.h"

namespace trimora::controls {

void ShapeLayer::paintContents(QPainter& painter, const LayerPresentation& /*shown*/) const {
    painter.setBrush(fillColor);
    painter.setPen(strokeColor.alpha() > 0 && lineWidth > 0 ? QPen(strokeColor, lineWidth) : QPen(Qt::NoPen));
    painter.drawPath(painterPath(path));
}

}  // namespace trimora::controls
