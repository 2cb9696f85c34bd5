#include "sample/Face.h"

#include "sample/Noise.h"
#include "sample/Plumage.h"

namespace trimora::sample {
namespace {

using foundation::Point;

constexpr double kEyeRadius = 148;
constexpr double kPupilRadius = 84;
constexpr Point kBeak{kFace.x, 1392};
constexpr double kBeakHeight = 118;

float spot(Point place, Point centre, double halfWidth, double halfHeight, double softness) {
    const double out = std::hypot((place.x - centre.x) / halfWidth, (place.y - centre.y) / halfHeight);
    return smoothStep(1 + softness, 1 - softness, out);
}

Colour irisAt(double dx, double dy) {
    const double out = std::hypot(dx, dy) / kEyeRadius;
    const double turn = std::atan2(dy, dx);
    const float fibres = cloud(turn * 16, out * 2.2, 91, 3);
    const Colour amber = mixed({0.95F, 0.42F, 0.05F}, {0.42F, 0.11F, 0.010F}, smoothStep(0.55, 0.98, out));
    const float below =
        0.55F + 0.75F * smoothStep(-90, 110, dy);  // light falls in above and shines out below
    return amber * (below * (1 + 0.45F * fibres));
}

void paintEye(ScenePixel& pixel, Point place, Point centre, double side) {
    const double dx = place.x - centre.x;
    const double dy = place.y - centre.y;
    const double out = std::hypot(dx, dy);
    if (out > kEyeRadius + 16)
        return;
    pixel.cover({0.006F, 0.004F, 0.003F}, smoothStep(kEyeRadius + 14, kEyeRadius + 4, out));
    pixel.cover(irisAt(dx, dy), smoothStep(kEyeRadius - 6, kEyeRadius - 16, out));
    pixel.cover({0.002F, 0.002F, 0.003F}, smoothStep(kPupilRadius + 3 + side, kPupilRadius - 3 - side, out));
    const float lid = smoothStep(-40, -150, dy + 0.0012 * dx * dx);
    pixel.cover({0.004F, 0.003F, 0.002F}, 0.65F * lid * smoothStep(kEyeRadius, kEyeRadius - 10, out));
    const Point window{centre.x - 48, centre.y - 52};
    const Point lamps{centre.x + 58, centre.y + 44};
    pixel.cover({1.25F, 1.30F, 1.34F}, spot(place, window, 33, 38, 0.10));
    pixel.cover({0.9F, 0.55F, 0.25F}, 0.55F * spot(place, lamps, 17, 15, 0.5));
}

/// A short hooked beak: wide above, running to a point below, with a ridge that catches the light.
void paintBeak(ScenePixel& pixel, Point place, double side) {
    const double down = (place.y - kBeak.y) / kBeakHeight;
    if (down < -0.6 || down > 1.05)
        return;
    const double half = down < 0 ? 58 * std::sqrt(std::max(0.0, 1 - down * down / 0.36))
                                 : 58 * std::pow(std::max(0.0, 1 - down), 0.62);
    const double away = std::abs(place.x - kBeak.x);
    const float inside = smoothStep(half + side, half - side, away);
    const float ridge = std::exp(-static_cast<float>(std::abs(place.x - kBeak.x + 13) / 13));
    const float shade = 1 - 0.75F * smoothStep(kBeak.x - 20, kBeak.x + 56, place.x);
    const Colour horn = mixed({0.13F, 0.105F, 0.085F}, {0.030F, 0.024F, 0.020F}, smoothStep(0.1, 1, down));
    pixel.coverWithSubject(
        horn * (0.4F + shade) + Colour{0.55F, 0.53F, 0.50F} * (ridge * smoothStep(0.9, 0.1, down)), inside);
}

}  // namespace

void Face::paint(Band& band) const {
    const double side = band.pixelSide();
    for (const double sign : {-1.0, 1.0}) {
        const Point centre{kFace.x + sign * kEyeDistance, kEyeHeight};
        band.paint(Box::around(centre, kEyeRadius + 20, kEyeRadius + 20),
                   [&](ScenePixel& pixel, Point place) { paintEye(pixel, place, centre, side); });
    }
    band.paint(Box::around(kBeak, 70, kBeakHeight + 10),
               [side](ScenePixel& pixel, Point place) { paintBeak(pixel, place, side); });
}

}  // namespace trimora::sample
