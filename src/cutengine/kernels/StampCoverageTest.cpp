#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "cutengine/kernels/BrushStamp.h"
#include "cutengine/kernels/PlainPainter.h"
#include "cutengine/kernels/StampCoverage.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

// The profile at the middles of samples x samples little squares of the pixel, averaged, in 255ths.
double sampledCoverage(const StampEllipse& e, const BrushStamp& profile, int x, int y, int samples) {
    double sum = 0;
    for (int j = 0; j < samples; ++j) {
        const double v = (y + (j + 0.5) / samples - e.cy) / e.ry;
        for (int i = 0; i < samples; ++i) {
            const double u = (x + (i + 0.5) / samples - e.cx) / e.rx;
            sum += profile.alphaAt(std::sqrt(u * u + v * v));
        }
    }
    return sum * 255 / samples / samples;
}

int coverageAt(const StampEllipse& e, double solid, int x, int y) {
    std::uint8_t coverage = 0;
    stampCoverage(e, solid, x, y, 1, &coverage);
    return coverage;
}

// A pixel that the ellipse's fading part crosses or nearly crosses.
std::pair<int, int> pixelNearRing(const StampEllipse& e, double solid, std::mt19937_64& random) {
    std::uniform_real_distribution<double> unit(0, 1);
    const double angle = unit(random) * 6.283185307179586;
    const double part = std::max(0.0, solid + (1 - solid) * unit(random) + (unit(random) - 0.5) / e.rx);
    return {static_cast<int>(std::floor(e.cx + e.rx * part * std::cos(angle))),
            static_cast<int>(std::floor(e.cy + e.ry * part * std::sin(angle)))};
}

double worstError(double smallest, double largest, double hardness, int pixels, bool round,
                  std::mt19937_64& random) {
    std::uniform_real_distribution<double> unit(0, 1);
    const BrushStamp profile(200, static_cast<float>(hardness));
    const double solid = hardness >= 1 ? 1 : static_cast<double>(profile.hardness());
    double worst = 0;
    for (int k = 0; k < pixels; ++k) {
        const double rx = smallest * std::pow(largest / smallest, unit(random)) / 2;
        const double ry = round ? rx : rx * (0.3 + 2 * unit(random));
        const StampEllipse e{unit(random) * 40 - 20, unit(random) * 40 - 20, rx, ry};
        const auto [x, y] = pixelNearRing(e, solid, random);
        worst =
            std::max(worst, std::abs(coverageAt(e, solid, x, y) - sampledCoverage(e, profile, x, y, 256)));
    }
    return worst;
}

TEST(HardCoverage, isTheTrueAreaToWithinA255th) {
    auto random = testing::seededGenerator();
    EXPECT_LT(worstError(0.3, 400, 1, 300, true, random), 1);
    EXPECT_LT(worstError(0.3, 400, 1, 300, false, random), 1);
}

TEST(HardCoverage, isThe255thNearestToTheExactArea) {
    auto random = testing::seededGenerator();
    std::uniform_real_distribution<double> unit(0, 1);
    for (int k = 0; k < 200'000; ++k) {
        const double rx = 0.05 * std::pow(20'000.0, unit(random));
        const double ry = rx * (k % 2 == 0 ? 1 : 0.3 + 2 * unit(random));
        const StampEllipse e{unit(random) * 40 - 20, unit(random) * 40 - 20, rx, ry};
        const auto [x, y] = pixelNearRing(e, 1, random);
        ASSERT_NEAR(coverageAt(e, 1, x, y), plain::ellipseShare(e, x, y) * 255, 0.5 + 1e-6)
            << e.cx << ' ' << e.cy << ' ' << rx << ' ' << ry << " at " << x << ' ' << y;
    }
}

TEST(HardCoverage, addsUpToTheAreaOfTheEllipse) {
    const StampEllipse e{20.3, 17.8, 12.1, 9.4};
    double sum = 0;
    std::vector<std::uint8_t> row(50);
    for (int y = 0; y < 40; ++y) {
        stampCoverage(e, 1, 0, y, 50, row.data());
        for (const std::uint8_t c : row)
            sum += c;
    }
    EXPECT_NEAR(sum / 255, 3.14159265358979 * e.rx * e.ry, 0.2);
}

TEST(HardCoverage, ofAStampOfOnePixelIsTheDiscInIt) {
    EXPECT_EQ(coverageAt({3.5, 2.5, 0.5, 0.5}, 1, 3, 2), 200);  // 255 pi / 4 = 200.3
    EXPECT_EQ(coverageAt({4, 3, 0.5, 0.5}, 1, 3, 2), 50);       // a quarter of it in each of four
}

class SoftCoverage : public ::testing::TestWithParam<double> {};

TEST_P(SoftCoverage, isTheMeanOfTheProfileToWithinA255th) {
    auto random = testing::seededGenerator();
    EXPECT_LT(worstError(1, 8, GetParam(), 250, true, random), 1);
    EXPECT_LT(worstError(8, 60, GetParam(), 250, true, random), 1);
    EXPECT_LT(worstError(60, 2000, GetParam(), 150, true, random), 1);
}

TEST_P(SoftCoverage, ofStretchedStampsIsTheMeanOfTheProfileToWithinA255th) {
    auto random = testing::seededGenerator();
    EXPECT_LT(worstError(1, 60, GetParam(), 150, false, random), 1);
}

INSTANTIATE_TEST_SUITE_P(EveryHardness, SoftCoverage,
                         ::testing::Values(0.0, 0.03, 0.2, 0.5, 0.7, 0.9, 0.97, 0.98, 0.9849),
                         [](const auto& hardness) {
                             return std::to_string(std::lround(hardness.param * 10000));
                         });

TEST(SoftCoverage, isRightAtTheTipOfTheProfile) {
    auto random = testing::seededGenerator();
    std::uniform_real_distribution<double> unit(0, 1);
    const BrushStamp profile(200, 0);
    for (const double radius : {0.5, 1.0, 1.3, 2.6, 5.1, 6.0, 9.0, 20.0, 100.0}) {
        const StampEllipse e{10 + unit(random), 10 + unit(random), radius, radius};
        for (int k = 0; k < 9; ++k) {
            const int x = 9 + k % 3;
            const int y = 9 + k / 3;
            EXPECT_LT(std::abs(coverageAt(e, 0, x, y) - sampledCoverage(e, profile, x, y, 256)), 1) << radius;
        }
    }
}

TEST(StampCoverage, doesNotDependOnWhereTheRowIsBegun) {
    auto random = testing::seededGenerator();
    std::uniform_real_distribution<double> unit(0, 1);
    for (const double solid : {0.0, 0.5, 0.9, 0.98, 1.0}) {
        const StampEllipse e{60 + unit(random), 40 + unit(random), 37.3, 37.3};
        std::vector<std::uint8_t> whole(130);
        for (int y = 0; y < 80; ++y) {
            stampCoverage(e, solid, 0, y, 130, whole.data());
            for (int x = 0; x < 130; ++x)
                ASSERT_EQ(coverageAt(e, solid, x, y), whole[static_cast<std::size_t>(x)])
                    << solid << ' ' << x << ' ' << y;
        }
    }
}

}  // namespace
}  // namespace trimora::cutengine::kernels
