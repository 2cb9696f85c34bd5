#include "cutengine/kernels/StrokePainter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <random>
#include <vector>

#include "cutengine/kernels/EveryInstructionSet.h"
#include "cutengine/kernels/PlainPainter.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::IntRect;
using foundation::Pixel;
using foundation::Rect;

constexpr Pixel kOpaque{0, 0, 0, 255};
constexpr Pixel kCut{0, 0, 0, 0};

Bitmap filledPlane(int width, int height, Pixel fill = kOpaque) {
    return std::move(Bitmap::createFilled(width, height, fill)).value();
}

// Random draws for one stroke.
class Draw {
 public:
    explicit Draw(std::uint64_t seed) : random_(seed) {}
    double between(double low, double high) { return std::uniform_real_distribution(low, high)(random_); }
    int upTo(int most) { return std::uniform_int_distribution(0, most)(random_); }

    // A premultiplied pixel: transparent, opaque black, or anything.
    Pixel pixel() {
        const int alpha = std::array{0, 255, upTo(255)}[static_cast<std::size_t>(upTo(2))];
        const bool black = upTo(1) == 0;
        const auto colour = [&] { return static_cast<std::uint8_t>(black ? 0 : upTo(alpha)); };
        return {colour(), colour(), colour(), static_cast<std::uint8_t>(alpha)};
    }

    // Stamps as a dragged brush leaves them, with a turn now and then.
    std::vector<Rect> stroke(int width, int height, double diameter) {
        std::vector<Rect> stamps;
        double x = between(-10, width + 10.0);
        double y = between(-10, height + 10.0);
        double heading = between(0, 6.28);
        const double step = diameter / 66 * between(0.5, 12);
        const double tall = upTo(5) == 0 ? diameter * between(0.3, 2) : diameter;
        for (int count = 1 + upTo(diameter < 60 ? 60 : 16); count > 0; --count) {
            stamps.push_back({x - diameter / 2, y - tall / 2, diameter, tall});
            heading += upTo(9) == 0 ? between(-3, 3) : between(-0.1, 0.1);
            x += step * std::cos(heading);
            y += step * std::sin(heading);
        }
        return stamps;
    }

 private:
    std::mt19937_64 random_;
};

// Paints in calls of random lengths and returns where the plane may have changed.
IntRect paintInPieces(Bitmap& plane, std::span<const Rect> stamps, const Brush& brush, Draw& draw) {
    IntRect changed;
    while (!stamps.empty()) {
        const auto count = static_cast<std::size_t>(draw.upTo(static_cast<int>(stamps.size())));
        changed = united(changed, paintStamps(plane.view(), stamps.first(count), brush));
        stamps = stamps.subspan(count);
    }
    return changed;
}

void expectNoChangeOutside(const IntRect& rect, const Bitmap& before, const Bitmap& after) {
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            const bool inside = x >= rect.x && y >= rect.y && x < rect.right() && y < rect.bottom();
            if (!inside) {
                ASSERT_EQ(before.pixel(x, y), after.pixel(x, y)) << x << ' ' << y;
            }
        }
    }
}

void compareOneStroke(std::uint64_t seed) {
    Draw draw(seed);
    const int width = 1 + draw.upTo(draw.upTo(3) == 0 ? 20 : 150);
    const int height = 1 + draw.upTo(draw.upTo(3) == 0 ? 20 : 150);
    const double diameter = std::pow(400.0, draw.between(0, 1)) * (draw.upTo(3) == 0 ? 0.6667F : 1.0F);
    const BrushStamp stamp(200, static_cast<float>(draw.between(0, 0.985)));
    const Brush brush{draw.pixel(), draw.upTo(1) == 0 ? &stamp : nullptr};
    const auto stamps = draw.stroke(width, height, diameter);

    const Bitmap before = filledPlane(width, height, draw.pixel());
    Bitmap expected = std::move(before.clone()).value();
    plain::paintStamps(expected.view(), stamps, brush);
    onEveryInstructionSet([&] {
        Bitmap painted = std::move(before.clone()).value();
        const IntRect changed = paintInPieces(painted, stamps, brush, draw);
        ASSERT_TRUE(samePixels(expected.view(), painted.view()));
        expectNoChangeOutside(changed, before, painted);
    });
}

// Some stamps of one size whose rims all cross a small plane, often where an axis of theirs does.
std::vector<Rect> rimsAcross(const Bitmap& plane, Draw& draw) {
    const double radius = std::pow(10.0, draw.between(0.3, 3.8));
    const double angle = draw.between(0, 6.2832);
    const double around = draw.upTo(2) == 0 ? std::round(angle / 1.5708) * 1.5708 + 0.5 / radius : angle;
    std::vector<Rect> stamps;
    for (int k = 0; k < 12; ++k) {
        const double x = draw.between(2, plane.width() - 2) + radius * std::cos(around);
        const double y = draw.between(2, plane.height() - 2) + radius * std::sin(around);
        stamps.push_back({x - radius, y - radius, 2 * radius, 2 * radius});
    }
    return stamps;
}

TEST(StrokePainter, givesTheBytesOfThePlainPainterForRandomStrokes) {
    auto seeds = testing::seededGenerator();
    for (int k = 0; k < 150 && !HasFailure(); ++k) {
        SCOPED_TRACE(k);
        compareOneStroke(seeds());
    }
}

// Cuts hard stamps, one after another, by their coverage as it is defined.
void cutByCoverage(Bitmap& plane, std::span<const Rect> stamps) {
    std::vector<std::uint8_t> covers(static_cast<std::size_t>(plane.width()));
    for (const Rect& stamp : stamps) {
        for (int y = 0; y < plane.height(); ++y) {
            stampCoverage(plain::ellipseIn(stamp, plane.height()), 1, 0, y, plane.width(), covers.data());
            for (int x = 0; x < plane.width(); ++x) {
                std::uint8_t& alpha = plane.view().row(y)[4 * x + 3];
                const int rest = 255 - covers[static_cast<std::size_t>(x)];
                alpha = static_cast<std::uint8_t>((alpha * rest + 127) / 255);
            }
        }
    }
}

TEST(StrokePainter, paintsTheRimsOfStampsOfAnySizeByTheirCoverageToTheLast255th) {
    Draw draw(testing::announcedSeed());
    for (int k = testing::byDepth(500, 50'000, 500'000); k > 0 && !HasFailure(); --k) {
        Bitmap expected = filledPlane(17, 13);
        const auto stamps = rimsAcross(expected, draw);
        cutByCoverage(expected, stamps);
        onEveryInstructionSet([&] {
            Bitmap painted = filledPlane(17, 13);
            paintStamps(painted.view(), stamps, {kCut, nullptr});
            EXPECT_TRUE(samePixels(expected.view(), painted.view())) << stamps.front().width;
        });
    }
}

TEST(StrokePainter, givesTheBytesOfThePlainPainterForALongStrokeInOneCall) {
    std::vector<Rect> stamps;
    for (int i = 0; i < 1400; ++i)
        stamps.push_back({5 + i * 0.1, 20 + 12 * std::sin(i * 0.004), 10, 10});
    Bitmap expected = filledPlane(160, 60);
    Bitmap painted = filledPlane(160, 60);
    plain::paintStamps(expected.view(), stamps, {kCut, nullptr});
    paintStamps(painted.view(), stamps, {kCut, nullptr});
    EXPECT_TRUE(samePixels(expected.view(), painted.view()));
}

TEST(StrokePainter, changesOnlyTheViewWithinALargerBitmap) {
    Bitmap whole = filledPlane(80, 50);
    const Bitmap before = std::move(whole.clone()).value();
    const IntRect area{11, 7, 37, 23};
    const std::vector<Rect> stamps{{-5, -5, 60, 60}, {20, 3, 9, 9}};
    paintStamps(subview(whole.view(), area), stamps, {kCut, nullptr});
    expectNoChangeOutside(area, before, whole);
    EXPECT_EQ(whole.pixel(30, 15), kCut);
}

TEST(StrokePainter, cutsWithAlphaZeroAndRestoresWithAlphaOne) {
    Bitmap plane = filledPlane(40, 40);
    const std::vector<Rect> stamp{{10, 10, 20, 20}};
    paintStamps(plane.view(), stamp, {kCut, nullptr});
    EXPECT_EQ(plane.pixel(20, 20), kCut);
    EXPECT_EQ(plane.pixel(2, 2), kOpaque);
    paintStamps(plane.view(), stamp, {kOpaque, nullptr});
    EXPECT_EQ(plane.pixel(20, 20), kOpaque);
}

TEST(StrokePainter, replacesByHalfWithHalfAlphaInsteadOfBlendingOver) {
    Bitmap plane = filledPlane(40, 40);
    const std::vector<Rect> stamps(5, Rect{0, 0, 40, 40});
    paintStamps(plane.view(), stamps, {Pixel{0, 0, 0, 128}, nullptr});
    EXPECT_EQ(plane.pixel(20, 20), (Pixel{0, 0, 0, 128}));
}

TEST(StrokePainter, measuresStampsFromTheBottomLeft) {
    Bitmap plane = filledPlane(20, 30);
    const std::vector<Rect> stamp{{0, 0, 10, 10}};
    EXPECT_EQ(paintStamps(plane.view(), stamp, {kCut, nullptr}), (IntRect{0, 20, 10, 10}));
    EXPECT_EQ(plane.pixel(5, 25), kCut);
    EXPECT_EQ(plane.pixel(5, 5), kOpaque);
}

TEST(StrokePainter, paintsAStampOfOnePixel) {
    Bitmap plane = filledPlane(5, 5);
    const std::vector<Rect> stamp{{2, 2, 1, 1}};
    EXPECT_EQ(paintStamps(plane.view(), stamp, {kCut, nullptr}), (IntRect{2, 2, 1, 1}));
    EXPECT_EQ(plane.pixel(2, 2).alpha, 55);  // pi / 4 of it is gone
}

TEST(StrokePainter, paintsASoftStampWithItsProfile) {
    Bitmap plane = filledPlane(101, 101);
    const BrushStamp soft(200, 0.5F);
    paintStamps(plane.view(), std::vector<Rect>{{0.5, 0.5, 100, 100}}, {kCut, &soft});
    EXPECT_EQ(plane.pixel(50, 50), kCut);
    EXPECT_EQ(plane.pixel(74, 50), kCut);
    EXPECT_NEAR(plane.pixel(87, 50).alpha, 255 * (87 - 50 - 25) / 25.0, 1);
    EXPECT_EQ(plane.pixel(100, 0), kOpaque);
}

TEST(StrokePainter, leavesThePlaneAloneWhereNoStampReaches) {
    Bitmap plane = filledPlane(30, 30);
    const double far = 1e12;
    const std::vector<Rect> stamps{{-50, 0, 40, 40}, {31, 3, 5, 5},  {0, far, 9, 9},     {-far, -far, 9, 9},
                                   {5, 5, 0, 10},    {5, 5, -1, -1}, {0, 0, -1e300, 2e9}};
    EXPECT_TRUE(paintStamps(plane.view(), stamps, {kCut, nullptr}).isEmpty());
    EXPECT_TRUE(samePixels(plane.view(), filledPlane(30, 30).view()));
}

TEST(StrokePainter, ignoresStampsThatAreNoNumbers) {
    Bitmap plane = filledPlane(30, 30);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    const double most = std::numeric_limits<double>::max();
    const std::vector<Rect> stamps{{nan, 0, 9, 9},     {0, nan, 9, 9},     {0, 0, nan, 9}, {0, 0, 9, nan},
                                   {inf, 0, 9, 9},     {0, -inf, 9, 9},    {0, 0, inf, 9}, {0, 0, inf, inf},
                                   {most, 0, most, 9}, {0, -most, 9, most}};
    const BrushStamp soft(9, 0);
    paintStamps(plane.view(), stamps, {kCut, nullptr});
    paintStamps(plane.view(), stamps, {kCut, &soft});
    EXPECT_TRUE(samePixels(plane.view(), filledPlane(30, 30).view()));
}

TEST(StrokePainter, fillsThePlaneUnderAStampThousandsOfPixelsWide) {
    for (const double size : {5e3, 1e5, 1e8, 1e15}) {
        Bitmap plane = filledPlane(33, 21);
        paintStamps(plane.view(), std::vector<Rect>{{16 - size / 2, 10 - size / 2, size, size}},
                    {kCut, nullptr});
        EXPECT_TRUE(samePixels(plane.view(), filledPlane(33, 21, kCut).view())) << size;
    }
}

TEST(StrokePainter, paintsTheRimOfAHugeStamp) {
    for (const double size : {1e3, 1e4, 1e5}) {
        Bitmap painted = filledPlane(40, 30);
        Bitmap expected = filledPlane(40, 30);
        const std::vector<Rect> stamp{{20.3, 15 - size / 2, size, size}};
        paintStamps(painted.view(), stamp, {kCut, nullptr});
        plain::paintStamps(expected.view(), stamp, {kCut, nullptr});
        EXPECT_TRUE(samePixels(expected.view(), painted.view())) << size;
        EXPECT_EQ(painted.pixel(10, 15), kOpaque);
        EXPECT_EQ(painted.pixel(39, 15), kCut);
    }
}

TEST(StrokePainter, doesNothingForNoStampsAndForAnEmptyPlane) {
    Bitmap plane = filledPlane(3, 3);
    EXPECT_TRUE(paintStamps(plane.view(), {}, {kCut, nullptr}).isEmpty());
    EXPECT_TRUE(paintStamps({}, std::vector<Rect>{{0, 0, 9, 9}}, {kCut, nullptr}).isEmpty());
}

}  // namespace
}  // namespace trimora::cutengine::kernels
