#include "cutengine/imageutil/BezierPath.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace trimora::cutengine {

using foundation::AffineTransform;
using foundation::Point;
using foundation::Rect;
using foundation::Size;

namespace {

constexpr double kQuarterTurn = std::numbers::pi / 2;

/// How far the control points of a quarter circle lie from its ends, as a share of the radius.
const double kQuarterArm = 4.0 / 3.0 * std::tan(kQuarterTurn / 4);

int pointCount(BezierPath::Kind kind) {
    switch (kind) {
        case BezierPath::Kind::close:
            return 0;
        case BezierPath::Kind::curve:
            return 3;
        default:
            return 1;
    }
}

/// Grows round the points that it is shown.
class Extent {
 public:
    void add(Point p) {
        low_ = {std::min(low_.x, p.x), std::min(low_.y, p.y)};
        high_ = {std::max(high_.x, p.x), std::max(high_.y, p.y)};
    }
    [[nodiscard]] Rect rect() const { return {low_.x, low_.y, high_.x - low_.x, high_.y - low_.y}; }

 private:
    static constexpr double kFar = std::numeric_limits<double>::infinity();
    Point low_{kFar, kFar};
    Point high_{-kFar, -kFar};
};

double cubic(double p0, double p1, double p2, double p3, double t) {
    const double u = 1 - t;
    return u * u * u * p0 + 3 * u * u * t * p1 + 3 * u * t * t * p2 + t * t * t * p3;
}

/// Adds what the curve reaches where one coordinate turns: the zeros of its derivative in 0..1.
void addTurns(Extent& extent, const std::array<Point, 4>& p, double Point::*axis) {
    const double a = p[3].*axis - 3 * p[2].*axis + 3 * p[1].*axis - p[0].*axis;
    const double b = 2 * (p[2].*axis - 2 * p[1].*axis + p[0].*axis);
    const double c = p[1].*axis - p[0].*axis;
    const auto addAt = [&](double t) {
        if (t > 0 && t < 1)
            extent.add({cubic(p[0].x, p[1].x, p[2].x, p[3].x, t), cubic(p[0].y, p[1].y, p[2].y, p[3].y, t)});
    };
    if (a == 0) {
        if (b != 0)
            addAt(-c / b);
        return;
    }
    const double discriminant = b * b - 4 * a * c;
    if (discriminant < 0)
        return;
    addAt((-b + std::sqrt(discriminant)) / (2 * a));
    addAt((-b - std::sqrt(discriminant)) / (2 * a));
}

}  // namespace

BezierPath BezierPath::rectangle(const Rect& rect) {
    BezierPath path;
    path.moveTo({rect.x, rect.y});
    path.lineTo({rect.maxX(), rect.y});
    path.lineTo({rect.maxX(), rect.maxY()});
    path.lineTo({rect.x, rect.maxY()});
    path.close();
    return path;
}

BezierPath BezierPath::oval(const Rect& rect) {
    const Point centre = rect.centre();
    BezierPath circle = bezierPathWithArcInCenter({}, 1, 0, 2 * std::numbers::pi);
    circle.close();
    return circle.transformed(AffineTransform::scale(rect.width / 2, rect.height / 2)
                                  .then(AffineTransform::translation(centre.x, centre.y)));
}

BezierPath BezierPath::roundedRectangle(const Rect& rect, double radius) {
    const double r = std::clamp(radius, 0.0, std::min(rect.width, rect.height) / 2);
    const double arm = r * (1 - kQuarterArm);  // from a corner to the control points next to it
    const double left = rect.x;
    const double right = rect.maxX();
    const double low = rect.y;
    const double high = rect.maxY();
    BezierPath path;
    path.moveTo({left + r, low});
    path.lineTo({right - r, low});
    path.curveTo({right - arm, low}, {right, low + arm}, {right, low + r});
    path.lineTo({right, high - r});
    path.curveTo({right, high - arm}, {right - arm, high}, {right - r, high});
    path.lineTo({left + r, high});
    path.curveTo({left + arm, high}, {left, high - arm}, {left, high - r});
    path.lineTo({left, low + r});
    path.curveTo({left, low + arm}, {left + arm, low}, {left + r, low});
    path.close();
    return path;
}

BezierPath BezierPath::bezierPathWithArcInCenter(Point centre, double radius, double fromAngle,
                                                 double toAngle) {
    double sweep = std::fmod(toAngle - fromAngle, 2 * std::numbers::pi);
    if (sweep <= 0)
        sweep += 2 * std::numbers::pi;
    const int parts = static_cast<int>(std::ceil(sweep / kQuarterTurn - 1e-9));
    const double step = sweep / parts;
    const double arm = 4.0 / 3.0 * std::tan(step / 4) * radius;
    const auto at = [&](double angle) {
        return Point{centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
    };

    BezierPath path;
    path.moveTo(at(fromAngle));
    for (int i = 0; i < parts; ++i) {
        const double begin = fromAngle + i * step;
        const double end = begin + step;
        const Point p = at(begin);
        const Point q = at(end);
        path.curveTo({p.x - arm * std::sin(begin), p.y + arm * std::cos(begin)},
                     {q.x + arm * std::sin(end), q.y - arm * std::cos(end)}, q);
    }
    return path;
}

void BezierPath::moveTo(Point point) {
    elements_.push_back({Kind::move, {point}});
}

void BezierPath::lineTo(Point point) {
    elements_.push_back({Kind::line, {point}});
}

void BezierPath::curveTo(Point control1, Point control2, Point end) {
    elements_.push_back({Kind::curve, {control1, control2, end}});
}

void BezierPath::close() {
    elements_.push_back({Kind::close, {}});
}

Rect BezierPath::bounds() const {
    if (isEmpty())
        return {};
    Extent extent;
    Point last;
    for (const Element& element : elements_) {
        const int count = pointCount(element.kind);
        if (count == 0)
            continue;
        const Point end = element.points[static_cast<std::size_t>(count - 1)];
        extent.add(end);
        if (element.kind == Kind::curve) {
            const std::array<Point, 4> curve{last, element.points[0], element.points[1], end};
            addTurns(extent, curve, &Point::x);
            addTurns(extent, curve, &Point::y);
        }
        last = end;
    }
    return extent.rect();
}

BezierPath BezierPath::transformed(const AffineTransform& transform) const {
    BezierPath moved = *this;
    for (Element& element : moved.elements_) {
        for (int i = 0; i < pointCount(element.kind); ++i) {
            Point& point = element.points[static_cast<std::size_t>(i)];
            point = transform.apply(point);
        }
    }
    return moved;
}

BezierPath quartzPath(const BezierPath& path) {
    BezierPath closed = path;
    const auto isClose = [](const BezierPath::Element& e) { return e.kind == BezierPath::Kind::close; };
    if (!closed.isEmpty() && std::none_of(closed.elements().begin(), closed.elements().end(), isClose))
        closed.close();
    return closed;
}

BezierPath quartzPathWithSize(const BezierPath& path, Size size) {
    const Rect bounds = path.bounds();
    const double sx = bounds.width > 0 ? size.width / bounds.width : 1;
    const double sy = bounds.height > 0 ? size.height / bounds.height : 1;
    return quartzPath(path).transformed(AffineTransform::scale(sx, sy));
}

}  // namespace trimora::cutengine
