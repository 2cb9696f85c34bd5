#include "foundation/Geometry.h"

#include <algorithm>

namespace trimora::foundation {

Rect united(const Rect& a, const Rect& b) {
    if (a.isEmpty())
        return b;
    if (b.isEmpty())
        return a;
    const double x = std::min(a.x, b.x);
    const double y = std::min(a.y, b.y);
    return {x, y, std::max(a.maxX(), b.maxX()) - x, std::max(a.maxY(), b.maxY()) - y};
}

Rect intersected(const Rect& a, const Rect& b) {
    const double x = std::max(a.x, b.x);
    const double y = std::max(a.y, b.y);
    const Rect common{x, y, std::min(a.maxX(), b.maxX()) - x, std::min(a.maxY(), b.maxY()) - y};
    return common.isEmpty() ? Rect{} : common;
}

IntRect united(const IntRect& a, const IntRect& b) {
    if (a.isEmpty())
        return b;
    if (b.isEmpty())
        return a;
    const int x = std::min(a.x, b.x);
    const int y = std::min(a.y, b.y);
    return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}

IntRect intersected(const IntRect& a, const IntRect& b) {
    const int x = std::max(a.x, b.x);
    const int y = std::max(a.y, b.y);
    const IntRect common{x, y, std::min(a.right(), b.right()) - x, std::min(a.bottom(), b.bottom()) - y};
    return common.isEmpty() ? IntRect{} : common;
}

AffineTransform AffineTransform::then(const AffineTransform& next) const {
    return {next.a * a + next.c * b,
            next.b * a + next.d * b,
            next.a * c + next.c * d,
            next.b * c + next.d * d,
            next.a * tx + next.c * ty + next.tx,
            next.b * tx + next.d * ty + next.ty};
}

std::optional<AffineTransform> AffineTransform::inverted() const {
    const double determinant = a * d - b * c;
    if (determinant == 0 || !std::isfinite(determinant))
        return std::nullopt;
    return AffineTransform{d / determinant,
                           -b / determinant,
                           -c / determinant,
                           a / determinant,
                           (c * ty - d * tx) / determinant,
                           (b * tx - a * ty) / determinant};
}

AffineTransform interpolated(const AffineTransform& from, const AffineTransform& to, double t) {
    const auto mix = [t](double u, double v) { return std::lerp(u, v, t); };  // exact at both ends
    return {mix(from.a, to.a), mix(from.b, to.b),   mix(from.c, to.c),
            mix(from.d, to.d), mix(from.tx, to.tx), mix(from.ty, to.ty)};
}

}  // namespace trimora::foundation
