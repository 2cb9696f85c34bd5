#include "cutengine/kernels/BrushStamp.h"

#include <gtest/gtest.h>

namespace trimora::cutengine::kernels {
namespace {

TEST(BrushStamp, isSolidOutToItsHardnessAndFadesEvenlyToItsRadius) {
    const BrushStamp stamp(200, 0.5F);
    EXPECT_DOUBLE_EQ(stamp.alphaAt(0), 1);
    EXPECT_DOUBLE_EQ(stamp.alphaAt(0.5), 1);
    EXPECT_DOUBLE_EQ(stamp.alphaAt(0.75), 0.5);
    EXPECT_DOUBLE_EQ(stamp.alphaAt(1), 0);
    EXPECT_DOUBLE_EQ(stamp.alphaAt(2), 0);
}

TEST(BrushStamp, ofFullHardnessEndsAtItsRadius) {
    const BrushStamp stamp(200, 1);
    EXPECT_DOUBLE_EQ(stamp.alphaAt(1), 1);
    EXPECT_DOUBLE_EQ(stamp.alphaAt(1.001), 0);
}

TEST(BrushStamp, keepsItsHardnessWithinZeroToOne) {
    EXPECT_FLOAT_EQ(BrushStamp(200, -1).hardness(), 0);
    EXPECT_FLOAT_EQ(BrushStamp(200, 3).hardness(), 1);
}

TEST(BrushStamp, isABlackBitmapOfItsTruncatedSide) {
    const BrushStamp stamp(200 / 0.6667F, 0.5F);
    const auto image = stamp.image();
    ASSERT_TRUE(image.ok());
    EXPECT_EQ(image->width(), 299);
    EXPECT_EQ(image->height(), 299);
    EXPECT_EQ(image->pixel(150, 149), (foundation::Pixel{0, 0, 0, 255}));
    EXPECT_EQ(image->pixel(0, 0), (foundation::Pixel{0, 0, 0, 0}));
}

TEST(BrushStamp, measuresItsCentreFromTheBottomLeftOfItsBitmap) {
    const auto image = BrushStamp(9.5F, 0).image();
    ASSERT_TRUE(image.ok());
    EXPECT_EQ(image->width(), 9);
    EXPECT_GT(image->pixel(0, 4).alpha, image->pixel(0, 5).alpha);  // centre 4.75 above the bottom
    EXPECT_EQ(image->pixel(4, 4).alpha, 236);                       // 0.25 from the centre in both directions
}

TEST(BrushStamp, smallerThanAPixelHasNoImage) {
    EXPECT_FALSE(BrushStamp(0.5F, 1).image().ok());
}

}  // namespace
}  // namespace trimora::cutengine::kernels
