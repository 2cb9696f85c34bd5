#include "sample/Table.h"

#include "sample/Noise.h"

namespace trimora::sample {
namespace {

using foundation::Point;

constexpr double kBack = 2190;        // where the board ends behind the subject
constexpr double kFrontEdge = 2850;   // where its front face begins
constexpr double kVanishingX = 2000;  // grain lines run towards this point ...
constexpr double kVanishingY = 1100;  // ... so far above
constexpr double kPlankWidth = 430;

Colour wood(double across, double along) {
    const double plank = std::floor(across / kPlankWidth);
    const auto board = static_cast<std::uint32_t>(static_cast<int>(plank) + 64);
    const double bend = 26 * cloud(across / 260, along / 900, board, 3);
    const float grain = cloud((across + bend) / 9, along / 420, 7 + board, 4);
    const float rings = std::sin(static_cast<float>((across + 2.4 * bend) / 17));
    const float tone = 0.62F + 0.42F * grain + 0.10F * rings + 0.10F * noise(plank, 0, 5);
    const double seam = std::abs(across - (plank + 0.5) * kPlankWidth);
    const float gap = smoothStep(kPlankWidth / 2 - 5, kPlankWidth / 2 - 1, seam);
    return mixed({0.105F, 0.047F, 0.021F}, {0.40F, 0.205F, 0.098F}, tone) * (1 - 0.85F * gap);
}

float shadowUnder(Point place, Point foot, double halfWidth, double halfHeight) {
    const double out = std::hypot((place.x - foot.x) / halfWidth, (place.y - foot.y) / halfHeight);
    return smoothStep(1.25, 0.35, out);
}

float lightOnBoard(Point place) {
    const float owl = shadowUnder(place, {1780, 2590}, 860, 150);
    const float vase = shadowUnder(place, {3010, 2600}, 460, 100);
    const float key = 0.50F + 0.75F * std::exp(-static_cast<float>(std::abs(place.x - 900) / 1500));
    return key * (1 - 0.86F * owl) * (1 - 0.86F * vase);
}

Colour board(Point place) {
    const double depth = (kFrontEdge - kVanishingY) / (place.y - kVanishingY);  // 1 at the front, more behind
    const Colour own = wood((place.x - kVanishingX) * depth + 8000, depth * 2600);
    const float sheen = 0.16F * smoothStep(kFrontEdge, kBack, place.y);
    const float warm = std::exp(-static_cast<float>(std::abs(place.x - 3300) / 900));
    return own * lightOnBoard(place) + mixed({0.30F, 0.36F, 0.40F}, {1.1F, 0.60F, 0.25F}, warm) * sheen;
}

Colour frontFace(Point place) {
    const Colour own = wood((place.x - kVanishingX) + 8000, 2600 + (place.y - kFrontEdge) * 0.3);
    return own * (0.30F * smoothStep(3080, kFrontEdge, place.y) + 0.05F);
}

}  // namespace

void Table::paint(Band& band) const {
    band.paint({0, kBack - 40, kCanvasWidth, kCanvasHeight}, [&band](ScenePixel& pixel, Point place) {
        pixel.cover(board(place), smoothStep(kBack - 38, kBack + 38, place.y));
        const double side = band.pixelSide();
        const float bevel = smoothStep(kFrontEdge - 16, kFrontEdge - 8, place.y) *
                            smoothStep(kFrontEdge + 2, kFrontEdge - 4, place.y);
        pixel.colour = pixel.colour + Colour{0.30F, 0.20F, 0.12F} * (bevel * lightOnBoard(place));
        pixel.cover(frontFace(place), smoothStep(kFrontEdge - side, kFrontEdge + side, place.y));
    });
}

}  // namespace trimora::sample
