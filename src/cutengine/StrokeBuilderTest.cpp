#include "cutengine/StrokeBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace trimora::cutengine {
namespace {

using foundation::Rect;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// With a width of 66 and hardness 1 the spacing is 66 / 6 / 11 = 1 picture point.
Rect stampAt(double x) {
    return {x, 0, 66, 66};
}

TEST(StrokeBuilder, FirstSampleIsAStamp) {
    StrokeBuilder stroke;
    EXPECT_THAT(stroke.addSample(stampAt(5), 1), ElementsAre(stampAt(5)));
    EXPECT_EQ(stroke.prevEventRect(), stampAt(5));
}

TEST(StrokeBuilder, SampleCloserThanTheSpacingIsIgnoredAndDoesNotMoveTheLast) {
    StrokeBuilder stroke;
    (void)stroke.addSample(stampAt(0), 1);
    EXPECT_THAT(stroke.addSample(stampAt(0.9), 1), IsEmpty());
    EXPECT_EQ(stroke.prevEventRect(), stampAt(0));
    EXPECT_THAT(stroke.addSample(stampAt(1), 1), ElementsAre(stampAt(1))) << "exactly one spacing counts";
}

TEST(StrokeBuilder, SamplesTwoAndAHalfSpacingsApartGetOneStampAtTheMidpoint) {
    StrokeBuilder stroke;
    (void)stroke.addSample(stampAt(0), 1);
    EXPECT_THAT(stroke.addSample(stampAt(2.5), 1), ElementsAre(stampAt(1.25), stampAt(2.5)));
}

TEST(StrokeBuilder, SamplesExactlyTwoSpacingsApartGetNoneBetween) {
    StrokeBuilder stroke;
    (void)stroke.addSample(stampAt(0), 1);
    EXPECT_THAT(stroke.addSample(stampAt(2), 1), ElementsAre(stampAt(2)));
}

TEST(StrokeBuilder, SofterBrushesAreSpacedWider) {
    StrokeBuilder stroke;
    (void)stroke.addSample(stampAt(0), 0);
    EXPECT_THAT(stroke.addSample(stampAt(1.05), 0), IsEmpty()) << "66 / 6 / 10 = 1.1";
}

TEST(StrokeBuilder, GapsAreFilledWithTheSizeOfTheNewSample) {
    StrokeBuilder stroke;
    (void)stroke.addSample({0, 0, 132, 132}, 1);
    const auto stamps = stroke.addSample({10, 20, 66, 66}, 1);
    ASSERT_GT(stamps.size(), 2U);
    for (const Rect& stamp : stamps)
        EXPECT_EQ(stamp.width, 66);
    EXPECT_EQ(stamps.back(), (Rect{10, 20, 66, 66}));
}

TEST(StrokeBuilder, NextStrokeBeginsAnew) {
    StrokeBuilder stroke;
    (void)stroke.addSample(stampAt(0), 1);
    stroke.end();
    EXPECT_TRUE(stroke.prevEventRect().isZero());
    EXPECT_THAT(stroke.addSample(stampAt(1000), 1), ElementsAre(stampAt(1000)));
}

}  // namespace
}  // namespace trimora::cutengine
