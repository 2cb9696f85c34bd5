#include "cutengine/Cursor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

namespace trimora::cutengine {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Pixel;
using foundation::Rect;
using foundation::Result;

namespace {

constexpr int kSmallestWithCross = 42;
constexpr double kLineWidth = 1;
/// View points: a glow of blur radius 2 falls off like a Gaussian of half that deviation.
constexpr double kGlowDeviation = 1;
/// A thin line's glow is faint; it is strengthened until it shows on black.
constexpr double kGlowStrength = 2.5;

/// One number a pixel, top row first: how much of the pixel is inked, 0..1.
struct Ink {
    explicit Ink(int pixels)
        : side(pixels), cover(static_cast<std::size_t>(pixels) * static_cast<std::size_t>(pixels)) {}
    float& at(int x, int y) {
        return cover[static_cast<std::size_t>(y) * static_cast<std::size_t>(side) +
                     static_cast<std::size_t>(x)];
    }

    int side;
    std::vector<float> cover;
};

/// The outline of the circle: a ring one line width wide, smoothed over one device pixel.
void inkRing(Ink& ink, const BrushCursorShape& shape, double scale) {
    const double centre = shape.hotSpot.x * scale;
    const double radius = shape.circle.width / 2 * scale;
    const double half = kLineWidth / 2 * scale;
    for (int y = 0; y < ink.side; ++y) {
        for (int x = 0; x < ink.side; ++x) {
            const double distance = std::hypot(x + 0.5 - centre, y + 0.5 - (ink.side - centre));
            const double cover = half + 0.5 - std::abs(distance - radius);
            ink.at(x, y) = static_cast<float>(std::clamp(cover, 0.0, std::min(1.0, 2 * half)));
        }
    }
}

double overlap(double from, double to, int pixel) {
    return std::clamp(std::min(to, pixel + 1.0) - std::max(from, static_cast<double>(pixel)), 0.0, 1.0);
}

void inkBar(Ink& ink, const Rect& bar, double scale) {
    const double top = ink.side - bar.maxY() * scale;
    const double bottom = ink.side - bar.y * scale;
    for (int y = 0; y < ink.side; ++y) {
        for (int x = 0; x < ink.side; ++x) {
            const double cover = overlap(bar.x * scale, bar.maxX() * scale, x) * overlap(top, bottom, y);
            ink.at(x, y) = std::max(ink.at(x, y), static_cast<float>(cover));
        }
    }
}

std::vector<float> gaussianWeights(double deviation) {
    const int reach = static_cast<int>(std::ceil(3 * deviation));
    std::vector<float> weights;
    double sum = 0;
    for (int i = -reach; i <= reach; ++i) {
        weights.push_back(static_cast<float>(std::exp(-i * i / (2 * deviation * deviation))));
        sum += static_cast<double>(weights.back());
    }
    for (float& weight : weights)
        weight = static_cast<float>(static_cast<double>(weight) / sum);
    return weights;
}

/// Blurs along rows and hands the result over transposed, so that two calls blur both ways.
Ink blurredRowsTransposed(Ink ink, const std::vector<float>& weights) {
    const int reach = static_cast<int>(weights.size()) / 2;
    Ink result(ink.side);
    for (int y = 0; y < ink.side; ++y) {
        for (int x = 0; x < ink.side; ++x) {
            float sum = 0;
            for (int i = std::max(-reach, -x); i <= std::min(reach, ink.side - 1 - x); ++i)
                sum += weights[static_cast<std::size_t>(i + reach)] * ink.at(x + i, y);
            result.at(y, x) = sum;
        }
    }
    return result;
}

/// Black ink over a white glow.
Pixel composed(float ink, float glow) {
    const double lit =
        std::min(1.0, static_cast<double>(glow) * kGlowStrength) * (1 - static_cast<double>(ink));
    const auto white = static_cast<std::uint8_t>(std::lround(lit * 255));
    const auto alpha = static_cast<std::uint8_t>(std::lround((lit + static_cast<double>(ink)) * 255));
    return {white, white, white, std::max(alpha, white)};
}

}  // namespace

BrushCursorShape BrushCursorShape::forDiameter(float diameter) {
    const int rounded = static_cast<int>(std::lround(diameter));
    const double even = rounded & ~1;
    BrushCursorShape shape;
    shape.side = 2 * kMargin + even;
    const double c = kMargin + even / 2;
    shape.hotSpot = {c, c};
    shape.circle = {kMargin, kMargin, even, even};
    shape.hasCross = rounded >= kSmallestWithCross;
    if (shape.hasCross) {
        shape.armLength = std::min((diameter - 40) / 15 + 1, 5.3F);
        const double arm = static_cast<double>(shape.armLength);
        shape.horizontal = {c - arm, std::round(c - 1), 2 * arm - 1, 1};
        shape.vertical = {std::round(c - 1), c - arm, 1, 2 * arm - 1};
    }
    return shape;
}

Result<Bitmap> drawBrushCursor(const BrushCursorShape& shape, double scaleFactor) {
    const int pixels = std::max(1, static_cast<int>(std::lround(shape.side * scaleFactor)));
    Result<Bitmap> picture = Bitmap::create(pixels, pixels, AlphaMode::premultiplied);
    if (!picture)
        return picture;
    Ink ink(pixels);
    inkRing(ink, shape, scaleFactor);
    if (shape.hasCross) {
        inkBar(ink, shape.horizontal, scaleFactor);
        inkBar(ink, shape.vertical, scaleFactor);
    }
    const std::vector<float> weights = gaussianWeights(kGlowDeviation * scaleFactor);
    Ink glow = blurredRowsTransposed(blurredRowsTransposed(ink, weights), weights);
    for (int y = 0; y < pixels; ++y) {
        for (int x = 0; x < pixels; ++x)
            picture->setPixel(x, y, composed(ink.at(x, y), glow.at(x, y)));
    }
    return picture;
}

}  // namespace trimora::cutengine
