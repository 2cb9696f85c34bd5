#include "cutengine/kernels/StampCores.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>
#include <vector>

#include "cutengine/kernels/EveryInstructionSet.h"
#include "cutengine/kernels/PlainPainter.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::Pixel;
using foundation::Rect;

constexpr int kSide = 40;
constexpr Pixel kFill{0, 255, 128, 255};
constexpr Pixel kOther{255, 0, 3, 0};  // as far from it as can be, and in between

Bitmap filledPlane(Pixel pixel) {
    return std::move(Bitmap::createFilled(kSide, kSide, pixel)).value();
}

// Stamps as close together as those of a stroke, with bends and now and then a corner.
std::vector<Rect> randomStroke(std::mt19937_64& random) {
    std::uniform_real_distribution<double> unit(0, 1);
    const double d = 2 * std::pow(40.0, unit(random));
    const double tall = unit(random) < 0.8 ? d : d * (0.5 + unit(random));
    const double step = d / 66 * (0.5 + 3 * unit(random));
    double x = kSide * unit(random);
    double y = kSide * unit(random);
    double heading = 6.28 * unit(random);
    std::vector<Rect> stamps;
    for (int k = 0; k < 24; ++k) {
        stamps.push_back({x - d / 2, y - tall / 2, d, tall});
        heading += unit(random) < 0.05 ? 3 * unit(random) : 0.2 * (unit(random) - 0.5);
        x += step * std::cos(heading);
        y += step * std::sin(heading);
    }
    return stamps;
}

Bitmap coresOf(const std::vector<Rect>& stamps, double solid) {
    Bitmap plane = filledPlane(kOther);
    StampCores cores(solid);
    std::vector<StampEllipse> ellipses;
    for (const Rect& stamp : stamps)
        ellipses.push_back(plain::ellipseIn(stamp, kSide));
    cores.find(ellipses);
    std::uint32_t fill = 0;
    std::memcpy(&fill, &kFill, sizeof fill);
    cores.fill(plane.view(), fill);
    return plane;
}

int countOf(const Bitmap& plane, Pixel pixel) {
    int count = 0;
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x)
            count += plane.pixel(x, y) == pixel ? 1 : 0;
    }
    return count;
}

void expectNothingButFill(const Bitmap& cores, const Bitmap& painted) {
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            if (cores.pixel(x, y) == kFill) {
                ASSERT_EQ(painted.pixel(x, y), kFill) << x << ' ' << y;
            }
        }
    }
}

TEST(StampCores, holdOnlyWhatPaintingBringsToFillFromAnyPixel) {
    auto random = testing::seededGenerator();
    for (int k = 0; k < 42 && !::testing::Test::HasFailure(); ++k) {
        SCOPED_TRACE(k);
        const BrushStamp soft(200, static_cast<float>(k % 7) * 0.16F);
        const bool hard = k % 2 == 0;
        const auto stamps = randomStroke(random);
        Bitmap painted = filledPlane(kOther);
        plain::paintStamps(painted.view(), stamps, {kFill, hard ? nullptr : &soft});
        const double solid = hard ? 1 : static_cast<double>(soft.hardness());
        onEveryInstructionSet([&] { expectNothingButFill(coresOf(stamps, solid), painted); });
    }
}

TEST(StampCores, holdNearlyAllThatPaintingBringsToFill) {
    std::vector<Rect> stamps;
    for (int k = 0; k < 90; ++k)
        stamps.push_back({2 + k * 0.2, 3 + k * 0.17, 14, 14});
    Bitmap painted = filledPlane(kOther);
    plain::paintStamps(painted.view(), stamps, {kFill, nullptr});
    EXPECT_GT(countOf(coresOf(stamps, 1), kFill), 0.95 * countOf(painted, kFill));
}

}  // namespace
}  // namespace trimora::cutengine::kernels
