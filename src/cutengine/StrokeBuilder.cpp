#include "cutengine/StrokeBuilder.h"

#include <cmath>

namespace trimora::cutengine {

using foundation::Point;
using foundation::Rect;

namespace {

float distance(Point a, Point b) {
    const double dx = a.x - b.x;
    const double dy = a.y - b.y;
    return static_cast<float>(std::sqrt(dx * dx + dy * dy));
}

/// The stamps between two samples, neither end among them, spread evenly over `parts` steps.
void appendBetween(std::vector<Rect>& stamps, const Rect& from, const Rect& to, int parts) {
    for (int i = 1; i < parts; ++i) {
        const double x = ((parts - i) * from.x + i * to.x) / parts;
        const double y = ((parts - i) * from.y + i * to.y) / parts;
        stamps.push_back({x, y, to.width, to.height});
    }
}

}  // namespace

std::vector<Rect> StrokeBuilder::addSample(const Rect& stamp, float hardness) {
    std::vector<Rect> stamps;
    if (!previous_.isZero()) {
        const float dist = distance(stamp.centre(), previous_.centre());
        const auto spacing = static_cast<float>((stamp.width / 6) / (static_cast<double>(hardness) + 10));
        if (spacing > dist)
            return stamps;
        if (dist > 2 * spacing)
            appendBetween(stamps, previous_, stamp, static_cast<int>(dist / spacing));
    }
    previous_ = stamp;
    stamps.push_back(stamp);
    return stamps;
}

}  // namespace trimora::cutengine
