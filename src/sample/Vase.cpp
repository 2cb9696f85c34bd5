#include "sample/Vase.h"

#include <array>

#include "sample/Noise.h"

namespace trimora::sample {
namespace {

using foundation::Point;

constexpr double kAxis = 3010;
constexpr double kLip = 1240;
constexpr double kFoot = 2600;
constexpr double kMouthFlatness =
    0.17;  // height of the mouth's ellipse by its width: the eye is a little above
constexpr double kFootFlatness = 0.22;  // seen from a little higher than the mouth

/// Radius at heights evenly spaced from lip to foot; cubic between.
constexpr std::array<double, 9> kProfile{176, 150, 168, 268, 372, 410, 388, 318, 236};

double radiusAt(double y) {
    const double place = std::clamp((y - kLip) / (kFoot - kLip), 0.0, 1.0) * (kProfile.size() - 1);
    const auto i = std::min(static_cast<std::size_t>(place), kProfile.size() - 2);
    const double t = place - static_cast<double>(i);
    const double p0 = kProfile[i == 0 ? 0 : i - 1];
    const double p1 = kProfile[i];
    const double p2 = kProfile[i + 1];
    const double p3 = kProfile[std::min(i + 2, kProfile.size() - 1)];
    return p1 + 0.5 * t * (p2 - p0 + t * (2 * p0 - 5 * p1 + 4 * p2 - p3 + t * (3 * (p1 - p2) + p3 - p0)));
}

/// Direction of the surface, x to the right, y down, z towards the eye.
struct Normal {
    double x;
    double y;
    double z;
};

Normal normalAt(double across, double y) {
    const double slope =
        (radiusAt(y + 2) - radiusAt(y - 2)) / 4 + 0.012 * std::sin(y / 7.5);  // throwing rings
    const double front = std::sqrt(std::max(0.0, 1 - across * across));
    const double length = std::hypot(1, slope);
    return {across / length, -slope / length, front / length};
}

/// Glaze above, bare clay below, the border run down in drips.
Colour claySurface(double around, double y, float& gloss) {
    const double drip = 2190 + 130 * noise(around * 3.1, 0, 41) + 60 * noise(around * 9, 0, 42);
    const float bare = smoothStep(drip - 4, drip + 4, y);
    const float pooled = smoothStep(drip - 140, drip, y);
    const float mottle = cloud(around * 5, y / 130, 43, 4);
    const float speck =
        smoothStep(0.66, 0.74, noise(around * 52 + 3 * noise(around * 8, y / 90, 45), y / 8, 44));
    const Colour glaze = mixed({0.018F, 0.150F, 0.175F}, {0.050F, 0.290F, 0.270F}, 0.5F + 0.8F * mottle);
    const Colour wet = mixed(glaze, {0.008F, 0.060F, 0.095F}, 0.8F * pooled);
    const Colour clay = Colour{0.56F, 0.43F, 0.31F} * (1 + 0.12F * mottle);
    gloss = 1 - 0.92F * bare;
    return mixed(wet, clay, bare) * (1 - 0.45F * speck);
}

/// What the glaze mirrors: a tall window at the left with one bar, lamps behind at the right.
Colour reflectedLight(const Normal& n) {
    const double x = 2 * n.z * n.x;  // the eye looks along -z
    const double y = 2 * n.z * n.y;
    const float width = smoothStep(-0.93, -0.88, x) * smoothStep(-0.40, -0.46, x);
    const float bar = 1 - smoothStep(-0.705, -0.69, x) * smoothStep(-0.645, -0.66, x);
    const float height = smoothStep(-0.80, -0.74, y) * smoothStep(0.52, 0.44, y);
    const float lamp = std::exp(-static_cast<float>(std::hypot(x - 0.80, y + 0.30) * 6));
    return Colour{0.95F, 1.00F, 1.05F} * (1.1F * width * height * bar) + Colour{1.2F, 0.66F, 0.28F} * lamp;
}

Colour shaded(double across, double y, double glazeY) {
    const Normal n = normalAt(across, y);
    float gloss = 0;
    const Colour own = claySurface(std::asin(std::clamp(across, -1.0, 1.0)), glazeY, gloss);
    const auto key = static_cast<float>(std::max(0.0, -0.62 * n.x - 0.45 * n.y + 0.64 * n.z));
    const float rim =
        std::pow(static_cast<float>(1 - n.z), 4.0F) * static_cast<float>(std::max(0.0, n.x + 0.2));
    const float fresnel = 0.35F + 0.65F * std::pow(static_cast<float>(1 - n.z), 3.0F);
    const float grounded = 0.45F + 0.55F * smoothStep(kFoot + 40, kFoot - 330, glazeY);
    const Colour diffuse = own * (0.12F + 1.05F * key) * grounded;
    return diffuse + reflectedLight(n) * (gloss * fresnel) + Colour{0.95F, 0.48F, 0.18F} * (0.55F * rim);
}

/// How far `place` is inside an ellipse of the given half-axes, in canvas units (negative outside).
double insideEllipse(Point place, Point centre, double a, double b) {
    const double u = (place.x - centre.x) / a;
    const double v = (place.y - centre.y) / b;
    const double out = std::hypot(u, v);
    return out == 0 ? b : (1 - out) * out / std::hypot(u / a, v / b);
}

double insideBody(Point place) {
    const double atFoot =
        insideEllipse(place, {kAxis, kFoot}, radiusAt(kFoot), radiusAt(kFoot) * kFootFlatness);
    const double wall = radiusAt(place.y) - std::abs(place.x - kAxis);
    const double slope = (radiusAt(place.y + 2) - radiusAt(place.y - 2)) / 4;
    if (place.y > kFoot)
        return atFoot;
    return place.y < kLip ? -1e6 : wall / std::hypot(1, slope);
}

void paintMouth(ScenePixel& pixel, Point place, double side) {
    const Point centre{kAxis, kLip};
    const double outer = radiusAt(kLip);
    const double inner = outer - 24;
    const double lip = insideEllipse(place, centre, outer, outer * kMouthFlatness);
    const double hole = insideEllipse(place, {kAxis, kLip + 2}, inner, inner * kMouthFlatness);
    const float lit = 0.55F + 0.45F * smoothStep(kAxis + 160, kAxis - 160, place.x);
    pixel.coverWithSubject(Colour{0.16F, 0.44F, 0.42F} * lit, smoothStep(-side / 2, side / 2, lip));
    const float depth = smoothStep(kLip + 30, kLip - 30, place.y);
    pixel.cover(mixed({0.030F, 0.050F, 0.048F}, {0.004F, 0.008F, 0.008F}, depth),
                smoothStep(-side, side, hole));
}

}  // namespace

void Vase::paint(Band& band) const {
    const double side = band.pixelSide();
    band.paint({kAxis - 460, kLip - 60, kAxis + 460, kFoot + 60}, [side](ScenePixel& pixel, Point place) {
        const double inside = insideBody(place);
        if (inside > -side) {
            const double y = std::min(place.y, kFoot);
            const double across = std::clamp((place.x - kAxis) / radiusAt(y), -0.999, 0.999);
            pixel.coverWithSubject(shaded(across, y, place.y), smoothStep(-side / 2, side / 2, inside));
        }
        if (std::abs(place.y - kLip) < 60)
            paintMouth(pixel, place, side);
    });
}

}  // namespace trimora::sample
