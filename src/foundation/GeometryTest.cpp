#include "foundation/Geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace trimora::foundation {
namespace {

TEST(Geometry, UnionOfRectanglesIgnoresEmptyOnes) {
    EXPECT_EQ(united(Rect{1, 2, 3, 4}, Rect{}), (Rect{1, 2, 3, 4}));
    EXPECT_EQ(united(Rect{0, 0, 1, 1}, Rect{5, -2, 1, 1}), (Rect{0, -2, 6, 3}));
    EXPECT_EQ(united(IntRect{0, 0, 2, 2}, IntRect{4, 4, 1, 1}), (IntRect{0, 0, 5, 5}));
}

TEST(Geometry, RectanglesThatDoNotMeetHaveNothingInCommon) {
    EXPECT_TRUE(intersected(Rect{0, 0, 1, 1}, Rect{1, 0, 1, 1}).isZero());
    EXPECT_EQ(intersected(IntRect{0, 0, 4, 4}, IntRect{2, 3, 9, 9}), (IntRect{2, 3, 2, 1}));
}

TEST(Geometry, InverseUndoesATransform) {
    const AffineTransform map{2, 0.5, -1, 3, 10, -20};
    const auto inverse = map.inverted();
    ASSERT_TRUE(inverse);
    const Point there = map.apply({3, 7});
    const Point back = inverse->apply(there);
    EXPECT_NEAR(back.x, 3, 1e-12);
    EXPECT_NEAR(back.y, 7, 1e-12);
}

TEST(Geometry, FlatTransformHasNoInverse) {
    EXPECT_FALSE(AffineTransform::scale(0, 1).inverted());
}

TEST(Geometry, ThenAppliesTheFirstMapFirst) {
    const AffineTransform both = AffineTransform::scale(2, 2).then(AffineTransform::translation(5, 0));
    EXPECT_EQ(both.apply({1, 1}), (Point{7, 2}));
}

TEST(Geometry, RectangleHoldsItsLowEdgesAndNotItsHighOnes) {
    const Rect rect{1, 2, 3, 4};
    EXPECT_TRUE(rect.contains({1, 2}));
    EXPECT_FALSE(rect.contains({4, 2}));
    EXPECT_FALSE(rect.contains({1, 6}));
    EXPECT_EQ(rect.centre(), (Point{2.5, 4}));
}

TEST(Geometry, NegativeSizeIsKeptAndEmpty) {
    const Rect mark{0, 0, -1, -1};
    EXPECT_TRUE(mark.isEmpty());
    EXPECT_FALSE(mark.isZero());
    EXPECT_EQ(mark.width, -1);
    EXPECT_TRUE((Size{std::nan(""), 1}.isEmpty()));
}

TEST(Geometry, UnionWithAnEmptyRectangleIsTheOther) {
    EXPECT_EQ(united(Rect{}, Rect{1, 2, 3, 4}), (Rect{1, 2, 3, 4}));
    EXPECT_EQ(united(IntRect{}, IntRect{1, 2, 3, 4}), (IntRect{1, 2, 3, 4}));
    EXPECT_EQ(united(IntRect{1, 2, 3, 4}, IntRect{9, 9, 0, 5}), (IntRect{1, 2, 3, 4}));
}

TEST(Geometry, TransformThatIsNotFiniteHasNoInverse) {
    EXPECT_FALSE(AffineTransform::scale(std::numeric_limits<double>::infinity(), 1).inverted());
    EXPECT_FALSE(AffineTransform::scale(std::nan(""), 1).inverted());
}

TEST(Geometry, InterpolationEndsExactlyOnBothSides) {
    const AffineTransform from{1, 0, 0, 1, 0.5, 0};
    const AffineTransform to{3, 0, 0, 2, 8, -4};
    EXPECT_EQ(interpolated(from, to, 0), from);
    EXPECT_EQ(interpolated(from, to, 1), to);
    EXPECT_EQ(interpolated(from, to, 0.5), (AffineTransform{2, 0, 0, 1.5, 4.25, -2}));
}

// u + (v - u) t misses v by a rounding at t = 1 where u and v are far apart.
TEST(Geometry, InterpolationEndsExactlyOnTheTargetWhateverTheDistance) {
    const AffineTransform from{1e17, 0, 0, 1, 0, 0};
    const AffineTransform to{0.3, 0, 0, 1, 0, 0};
    EXPECT_EQ(interpolated(from, to, 1), to);
}

}  // namespace
}  // namespace trimora::foundation
