#include "cutengine/ViewPlacement.h"

#include <algorithm>
#include <cmath>

namespace trimora::cutengine::placement {

using foundation::AffineTransform;
using foundation::Point;
using foundation::Size;

namespace {

AffineTransform multiplied(AffineTransform t, double factor) {
    t.a *= factor;
    t.b *= factor;
    t.c *= factor;
    t.d *= factor;
    return t;
}

double limitedCentre(double centre, double displayed, double view) {
    const double a = displayed / 2 + kPanMargin;
    const double b = view - kPanMargin - displayed / 2;
    const bool fitsInside = view - 2 * kPanMargin > displayed;
    const double lower = fitsInside ? a : b;
    const double upper = fitsInside ? b : a;
    if (centre > upper)
        return upper;
    return centre < lower ? lower : centre;
}

}  // namespace

double zoomLevel(const AffineTransform& t) {
    return std::sqrt(t.b * t.b + t.d * t.d);
}

AffineTransform zoomed(const AffineTransform& t, float factor) {
    AffineTransform result = multiplied(t, factor);
    const double zoom = zoomLevel(result);
    if (zoom <= kLargestZoom)
        return result;
    result = multiplied(result, kLargestZoom / zoom);
    // The division above may miss the limit by a rounding; a plain zoom stops at it exactly.
    const bool plain = result.b == 0 && result.c == 0 && result.a == result.d;
    if (plain && result.d > 0)
        result.a = result.d = kLargestZoom;
    return result;
}

float scrollFactor(double deltaY) {
    return static_cast<float>(std::clamp(deltaY / 50 + 1, 0.7, 1.3));
}

Size displayedSize(const AffineTransform& t, Size picture) {
    return {t.a * picture.width + t.c * picture.height, t.b * picture.width + t.d * picture.height};
}

AffineTransform fitted(Size picture, Size view) {
    const auto scale = static_cast<float>(
        std::min({view.width / picture.width, view.height / picture.height, kLargestZoom}));
    return {scale, 0, 0, scale, view.width / 2, view.height / 2};
}

AffineTransform limited(const AffineTransform& t, Size picture, Size view) {
    const Size displayed = displayedSize(t, picture);
    AffineTransform result = t;
    result.tx = limitedCentre(t.tx, displayed.width, view.width);
    result.ty = limitedCentre(t.ty, displayed.height, view.height);
    return result;
}

AffineTransform anchored(const AffineTransform& t, const AffineTransform& before, Point anchor) {
    const auto inverse = before.inverted();
    if (!inverse)
        return t;
    const Point moved = t.apply(inverse->apply(anchor));
    AffineTransform result = t;
    result.tx -= moved.x - anchor.x;
    result.ty -= moved.y - anchor.y;
    return result;
}

}  // namespace trimora::cutengine::placement
