#include "controls/GradientLayer.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>

#include "controls/PathDrawing.h"

namespace trimora::controls {

using cutengine::BezierPath;

void GradientLayer::paintContents(QPainter& painter, const LayerPresentation& shown) const {
    const std::vector<QColor>& stops = shown.colors.empty() ? colors : shown.colors;
    if (stops.empty())
        return;
    const auto [width, height] = frame().size();
    QLinearGradient gradient(startPoint.x * width, startPoint.y * height, endPoint.x * width,
                             endPoint.y * height);
    const double last = static_cast<double>(std::max<std::size_t>(stops.size() - 1, 1));
    for (std::size_t i = 0; i < stops.size(); ++i)
        gradient.setColorAt(static_cast<double>(i) / last, stops[i]);
    painter.fillPath(painterPath(BezierPath::roundedRectangle(bounds(), cornerRadius)), gradient);
}

}  // namespace trimora::controls
