#include "cutengine/Layer.h"

#include <algorithm>

namespace trimora::cutengine {

using foundation::AffineTransform;

LayerContents Layer::contents() const {
    const std::scoped_lock lock(contentsMutex_);
    return contents_;
}

void Layer::setContents(LayerContents contents) {
    {
        const std::scoped_lock lock(contentsMutex_);
        std::swap(contents_, contents);
    }
    // What was shown before is released here, outside the lock.
}

void Layer::animateTransform(const AffineTransform& transform, double now, double duration) {
    animation_ = Animation{presentation(now), transform, now, duration};
    transform_ = transform;
}

AffineTransform Layer::presentation(double now) const {
    if (!isAnimating(now))
        return transform_;
    const double share = std::max(0.0, (now - animation_->start) / animation_->duration);
    return interpolated(animation_->from, animation_->to, easeOut(share));
}

bool Layer::isAnimating(double now) const {
    return animation_ && now < animation_->start + animation_->duration;
}

AffineTransform Layer::toView(const AffineTransform& transform) const {
    return AffineTransform::translation(-size_.width / 2, -size_.height / 2).then(transform);
}

double easeOut(double t) {
    if (t <= 0)
        return 0;
    if (t >= 1)
        return 1;
    // The curve is x(s) = 3 s^2 (1-s) 0.58 + s^3, y(s) = 3 s^2 (1-s) + s^3; x is inverted by bisection.
    constexpr double kX2 = 0.58;
    double low = 0;
    double high = 1;
    for (int i = 0; i < 40; ++i) {
        const double s = (low + high) / 2;
        const double x = 3 * s * s * (1 - s) * kX2 + s * s * s;
        (x < t ? low : high) = s;
    }
    const double s = (low + high) / 2;
    return 3 * s * s * (1 - s) + s * s * s;
}

}  // namespace trimora::cutengine
