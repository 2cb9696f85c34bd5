#include "controls/PathDrawing.h"

#include <QPainter>
#include <QPen>

namespace trimora::controls {

using cutengine::BezierPath;
using foundation::Point;
using foundation::Rect;

namespace {

QPointF toolkitPoint(Point p) {
    return {p.x, p.y};
}

}  // namespace

QPainterPath painterPath(const BezierPath& path) {
    QPainterPath made;
    for (const BezierPath::Element& element : path.elements()) {
        const auto& p = element.points;
        switch (element.kind) {
            case BezierPath::Kind::move:
                made.moveTo(toolkitPoint(p[0]));
                break;
            case BezierPath::Kind::line:
                made.lineTo(toolkitPoint(p[0]));
                break;
            case BezierPath::Kind::curve:
                made.cubicTo(toolkitPoint(p[0]), toolkitPoint(p[1]), toolkitPoint(p[2]));
                break;
            case BezierPath::Kind::close:
                made.closeSubpath();
                break;
        }
    }
    return made;
}

void strokeInside(QPainter& painter, const BezierPath& path, const QColor& color) {
    strokeInsideWithinRect(painter, path, color, {});
}

void strokeInsideWithinRect(QPainter& painter, const BezierPath& path, const QColor& color,
                            const Rect& rect) {
    const QPainterPath outline = painterPath(path);
    painter.save();
    painter.setClipPath(outline, Qt::IntersectClip);
    if (!rect.isEmpty())
        painter.setClipRect(QRectF(rect.x, rect.y, rect.width, rect.height), Qt::IntersectClip);
    painter.strokePath(outline, QPen(color, path.lineWidth * 2));
    painter.restore();
}

}  // namespace trimora::controls
