#include "cutengine/imageutil/BezierPath.h"

#include <gtest/gtest.h>

#include <numbers>

namespace trimora::cutengine {
namespace {

using foundation::Point;
using foundation::Rect;
using Kind = BezierPath::Kind;
constexpr double kPi = std::numbers::pi;

void expectNear(const Rect& actual, const Rect& expected, double within) {
    EXPECT_NEAR(actual.x, expected.x, within);
    EXPECT_NEAR(actual.y, expected.y, within);
    EXPECT_NEAR(actual.width, expected.width, within);
    EXPECT_NEAR(actual.height, expected.height, within);
}

TEST(BezierPath, AnEmptyPathHasNoBoundsAndStaysEmpty) {
    EXPECT_TRUE(BezierPath().bounds().isZero());
    EXPECT_TRUE(quartzPath(BezierPath()).isEmpty());
}

TEST(BezierPath, QuartzPathKeepsEveryElementInOrderAndClosesAnOpenEnd) {
    BezierPath open;
    open.moveTo({1, 2});
    open.lineTo({3, 4});
    open.curveTo({5, 6}, {7, 8}, {9, 10});
    const BezierPath closed = quartzPath(open);
    ASSERT_EQ(closed.elements().size(), 4U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(closed.elements()[i], open.elements()[i]);
    EXPECT_EQ(closed.elements()[3].kind, Kind::close);
}

TEST(BezierPath, QuartzPathAddsNoCloseWhereOneWasMet) {
    BezierPath path = BezierPath::rectangle({0, 0, 4, 4});
    path.moveTo({10, 10});
    path.lineTo({12, 10});
    EXPECT_EQ(quartzPath(path), path);
}

TEST(BezierPath, QuartzPathWithSizeScalesTheOutlineToThatSize) {
    const BezierPath scaled = quartzPathWithSize(BezierPath::oval({0, 0, 10, 20}), {30, 10});
    expectNear(scaled.bounds(), {0, 0, 30, 10}, 1e-9);
}

TEST(BezierPath, ALineWithoutHeightKeepsItWhenScaled) {
    BezierPath line;
    line.moveTo({0, 5});
    line.lineTo({10, 5});
    expectNear(quartzPathWithSize(line, {20, 8}).bounds(), {0, 5, 20, 0}, 1e-12);
}

TEST(BezierPath, ALineWithoutWidthKeepsItWhenScaled) {
    BezierPath line;
    line.moveTo({5, 0});
    line.lineTo({5, 10});
    expectNear(quartzPathWithSize(line, {20, 8}).bounds(), {5, 0, 0, 8}, 1e-12);
}

TEST(BezierPath, BoundsFollowTheCurveAndNotItsControlPoints) {
    BezierPath curve;
    curve.moveTo({0, 0});
    curve.curveTo({0, 4}, {10, 4}, {10, 0});
    expectNear(curve.bounds(), {0, 0, 10, 3}, 1e-12);
}

TEST(BezierPath, BoundsOfACurveThatNeverTurnsAreThoseOfItsEnds) {
    BezierPath straight;
    straight.moveTo({0, 0});
    straight.curveTo({1, 2}, {2, 4}, {3, 6});
    expectNear(straight.bounds(), {0, 0, 3, 6}, 1e-12);
    BezierPath bent;
    bent.moveTo({0, 0});
    bent.curveTo({2, 0}, {1, 4}, {3, 4});
    expectNear(bent.bounds(), {0, 0, 3, 4}, 1e-12);
}

TEST(BezierPath, AnOvalTouchesAllFourSides) {
    expectNear(BezierPath::oval({2, 3, 40, 20}).bounds(), {2, 3, 40, 20}, 1e-9);
}

TEST(BezierPath, RoundedCornersNeverExceedHalfASide) {
    expectNear(BezierPath::roundedRectangle({0, 0, 8, 20}, 100).bounds(), {0, 0, 8, 20}, 1e-9);
    EXPECT_EQ(BezierPath::roundedRectangle({0, 0, 8, 20}, 100),
              BezierPath::roundedRectangle({0, 0, 8, 20}, 4));
}

TEST(BezierPath, CornersOfLessThanNothingAreSquare) {
    EXPECT_EQ(BezierPath::roundedRectangle({1, 2, 8, 20}, -5),
              BezierPath::roundedRectangle({1, 2, 8, 20}, 0));
}

TEST(BezierPath, AnArcRunsCounterClockwise) {
    const BezierPath lower = BezierPath::bezierPathWithArcInCenter({5, 5}, 5, kPi, 0);
    expectNear(lower.bounds(), {0, 0, 10, 5}, 1e-3);
    const BezierPath upper = BezierPath::bezierPathWithArcInCenter({5, 5}, 5, 0, kPi);
    expectNear(upper.bounds(), {0, 5, 10, 5}, 1e-3);
}

TEST(BezierPath, AnArcStaysOnItsCircleWithinAThousandth) {
    const BezierPath arc = BezierPath::bezierPathWithArcInCenter({}, 1, 0.3, 5.9);
    Point last = arc.elements().front().points[0];
    for (const BezierPath::Element& e : arc.elements()) {
        if (e.kind != Kind::curve)
            continue;
        const double x = (last.x + 3 * e.points[0].x + 3 * e.points[1].x + e.points[2].x) / 8;
        const double y = (last.y + 3 * e.points[0].y + 3 * e.points[1].y + e.points[2].y) / 8;
        EXPECT_NEAR(std::hypot(x, y), 1, 1e-3);
        last = e.points[2];
    }
    EXPECT_NEAR(last.x, std::cos(5.9), 1e-12);
    EXPECT_NEAR(last.y, std::sin(5.9), 1e-12);
}

}  // namespace
}  // namespace trimora::cutengine
