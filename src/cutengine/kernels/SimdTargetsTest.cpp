#include <gtest/gtest.h>
#include <hwy/highway.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <iostream>
#include <random>
#include <vector>

#include "cutengine/kernels/MaskCodec.h"
#include "cutengine/kernels/StrokePainter.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::Pixel;
using foundation::Rect;

// Runs `job` once for every kind of SIMD unit that this processor has and the program was built for.
class EveryTarget {
 public:
    ~EveryTarget() { choose(0); }

    int run(const std::function<void(const char*)>& job) {
        int count = 0;
        for (std::int64_t left = hwy::SupportedTargets() & HWY_TARGETS; left != 0;
             left &= left - 1, ++count) {
            choose(left & -left);
            job(hwy::TargetName(left & -left));
        }
        return count;
    }

 private:
    static void choose(std::int64_t targets) {
        hwy::SetSupportedTargetsForTest(targets);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
};

struct Stroke {
    std::vector<Rect> stamps;
    Pixel fill;
    const BrushStamp* soft = nullptr;
};

Bitmap painted(const std::vector<Stroke>& strokes) {
    Bitmap plane = std::move(Bitmap::createFilled(203, 151, Pixel{0, 0, 0, 255})).value();
    for (const Stroke& stroke : strokes)
        paintStamps(plane.view(), stroke.stamps, {stroke.fill, stroke.soft});
    return plane;
}

TEST(SimdTargets, paintAndEncodeTheSameBytes) {
    auto random = testing::seededGenerator();
    std::uniform_real_distribution<double> unit(0, 1);
    const std::vector<BrushStamp> softs{{200, 0}, {200, 0.5F}, {200, 0.9F}, {200, 0.98F}};
    std::vector<Stroke> strokes;
    for (std::size_t k = 0; k < 24; ++k) {
        const double d = 1 + 60 * unit(random);
        const Rect first{unit(random) * 200 - d / 2, unit(random) * 150 - d / 2, d, k % 5 == 0 ? d / 2 : d};
        Stroke stroke{
            {}, {0, 0, 0, static_cast<std::uint8_t>(random())}, k % 2 == 0 ? nullptr : &softs[k / 2 % 4]};
        for (int i = 0; i < 30; ++i)
            stroke.stamps.push_back({first.x + i * d / 50, first.y + i * d / 90, first.width, first.height});
        strokes.push_back(stroke);
    }
    const Bitmap expected = painted(strokes);
    const auto file = encodeMask(expected.view());
    const int targets = EveryTarget().run([&](const char* name) {
        EXPECT_TRUE(samePixels(painted(strokes).view(), expected.view())) << name;
        EXPECT_EQ(encodeMask(expected.view()).value(), file.value()) << name;
    });
    EXPECT_EQ(targets, std::popcount(static_cast<std::uint64_t>(hwy::SupportedTargets() & HWY_TARGETS)));
    std::cout << targets << " kinds of SIMD unit compared\n";
}

}  // namespace
}  // namespace trimora::cutengine::kernels
