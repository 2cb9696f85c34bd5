#include "foundation/Geometry.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace trimora::foundation
