#include "sample/Backdrop.h"

#include <array>
#include <numbers>

#include "sample/Noise.h"

namespace trimora::sample {
namespace {

using foundation::Point;

constexpr int kLeaves = 1300;
constexpr int kScatteredLights = 90;
constexpr double kLeafTurn = 1.1;  // radians either way from hanging straight down

constexpr std::array<Colour, 5> kLeafColours{{{0.030F, 0.085F, 0.035F},
                                              {0.060F, 0.140F, 0.040F},
                                              {0.020F, 0.070F, 0.060F},
                                              {0.130F, 0.170F, 0.045F},
                                              {0.012F, 0.040F, 0.030F}}};
constexpr std::array<Colour, 4> kLightColours{
    {{1.00F, 0.46F, 0.11F}, {1.00F, 0.60F, 0.22F}, {1.00F, 0.33F, 0.22F}, {0.45F, 0.78F, 0.72F}}};

template <typename Table>
Colour anyOf(const Table& table, Random& random) {
    return table[static_cast<std::size_t>(random.unit() * static_cast<float>(table.size()))];
}

Colour skyAt(Point place) {
    const float down = smoothStep(0, 2300, place.y);
    const float glow =
        std::exp(-static_cast<float>(std::hypot(place.x - 3300, (place.y - 900) * 1.2) / 1100));
    const Colour dusk = mixed({0.035F, 0.060F, 0.085F}, {0.020F, 0.045F, 0.030F}, down);
    return dusk * 0.5F + Colour{0.26F, 0.115F, 0.032F} * glow;
}

}  // namespace

Backdrop::Backdrop() {
    addLeaves();
    addString(180, 620, 420, 17);
    addString(760, 480, 80, 14);
    addScatteredLights();
}

void Backdrop::addLeaves() {
    Random random(11);
    for (int i = 0; i < kLeaves; ++i) {
        const double x = random.between(-100, 4100);
        const double y = random.between(-100, 2500);
        // Thick at the sides, thin where the glow is.
        const float thickness = 0.35F + 0.65F * smoothStep(500, 1700, std::abs(x - 2300));
        const double turn = std::numbers::pi / 2 + kLeafTurn * random.bell();
        const double length = random.between(70, 210);
        const Colour tint = anyOf(kLeafColours, random) * random.between(0.2F, 0.85F);
        leaves_.push_back({{x, y},
                           length,
                           length * random.between(0.3F, 0.55F),
                           std::cos(turn),
                           std::sin(turn),
                           tint,
                           thickness * random.between(0.25F, 0.8F)});
    }
}

void Backdrop::addString(double startY, double sag, double endY, int count) {
    Random random(static_cast<std::uint64_t>(startY));
    for (int i = 0; i < count; ++i) {
        const double t = (i + 0.5 + 0.15 * random.bell()) / count;
        const double y = startY + (endY - startY) * t + sag * 4 * t * (1 - t) * 0.5;
        const Colour tint = mixed(kLightColours[0], kLightColours[1], random.unit());
        lights_.push_back({{t * kCanvasWidth, y + 24 * random.bell()},
                           random.between(82, 118),
                           tint * random.between(0.5F, 0.95F)});
    }
}

void Backdrop::addScatteredLights() {
    Random random(29);
    for (int i = 0; i < kScatteredLights; ++i) {
        const Point centre{random.between(0, 4000), random.between(100, 2150)};
        const double radius = random.between(28, 96);
        lights_.push_back({centre, radius, anyOf(kLightColours, random) * random.between(0.05F, 0.30F)});
    }
}

void Backdrop::paintLeaf(Band& band, const Leaf& leaf) {
    const double reach = leaf.length * 1.4;
    band.paint(Box::around(leaf.centre, reach, reach), [&leaf](ScenePixel& pixel, Point place) {
        const double dx = place.x - leaf.centre.x;
        const double dy = place.y - leaf.centre.y;
        const double along = (dx * leaf.cosine + dy * leaf.sine) / leaf.length;
        const double across = (dy * leaf.cosine - dx * leaf.sine) / leaf.breadth;
        const double out = along * along + across * across * (1 + 0.7 * along);
        if (out < 1.8)
            pixel.cover(leaf.colour, leaf.alpha * smoothStep(1.8, 0.35, out));
    });
}

// A point out of focus is a disc, a little brighter at its rim.
void Backdrop::paintLight(Band& band, const Light& light) {
    const double reach = light.radius * 3;
    band.paint(Box::around(light.centre, reach, reach), [&light](ScenePixel& pixel, Point place) {
        const double out = std::hypot(place.x - light.centre.x, place.y - light.centre.y) / light.radius;
        const float disc = smoothStep(1.03, 0.94, out) * (0.62F + 0.38F * smoothStep(0.45, 0.97, out));
        const float halo = 0.05F * smoothStep(3.0, 0.6, out);
        pixel.colour = pixel.colour + light.colour * (disc + halo);
    });
}

void Backdrop::paint(Band& band) const {
    band.paint({0, 0, kCanvasWidth, kCanvasHeight},
               [](ScenePixel& pixel, Point place) { pixel.colour = skyAt(place); });
    for (const Leaf& leaf : leaves_)
        paintLeaf(band, leaf);
    for (const Light& light : lights_)
        paintLight(band, light);
}

}  // namespace trimora::sample
