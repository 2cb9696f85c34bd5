#pragma once

#include <QColor>
#include <QPainterPath>

#include "cutengine/imageutil/BezierPath.h"

class QPainter;

/// Paths of the house drawn with the toolkit's painter, in the painter's own space.
namespace trimora::controls {

/// The same outline for the toolkit.
[[nodiscard]] QPainterPath painterPath(const cutengine::BezierPath& path);

/// Draws the path's line, `lineWidth` wide, wholly within its shape: twice as wide, and cut to the
/// inside. The painter's state comes back as it was.
void strokeInside(QPainter& painter, const cutengine::BezierPath& path, const QColor& color);

/// The same, cut to the rectangle too where that has a positive width and height.
void strokeInsideWithinRect(QPainter& painter, const cutengine::BezierPath& path, const QColor& color,
                            const foundation::Rect& rect);

}  // namespace trimora::controls
