#include "cutengine/MaskPainter.h"

#include <gtest/gtest.h>

namespace trimora::cutengine {
namespace {

using foundation::Bitmap;
using foundation::Pixel;
using foundation::Rect;

TEST(PlaneSize, WidePictureIsFittedByItsWidth) {
    const auto size = PlaneSize::forPicture({3000, 1000});
    EXPECT_EQ(size.width, 2000);
    EXPECT_EQ(size.height, 666);
    EXPECT_FLOAT_EQ(size.maskScale, 0.6666667F);
}

TEST(PlaneSize, TallPictureIsFittedByItsHeight) {
    const auto size = PlaneSize::forPicture({1000, 3000});
    EXPECT_EQ(size.width, 666);
    EXPECT_EQ(size.height, 2000);
    EXPECT_FLOAT_EQ(size.maskScale, 0.6666667F);
}

TEST(PlaneSize, PictureThatFitsIsTakenAsItIs) {
    const auto size = PlaneSize::forPicture({1500, 800});
    EXPECT_EQ(size.width, 1500);
    EXPECT_EQ(size.height, 800);
    EXPECT_EQ(size.maskScale, 1);
    EXPECT_EQ(PlaneSize::forPicture({2000, 2000}).maskScale, 1);
}

TEST(PlaneSize, NeverUnderOnePixelASide) {
    const auto size = PlaneSize::forPicture({5000, 1});
    EXPECT_EQ(size.width, 2000);
    EXPECT_EQ(size.height, 1);
}

TEST(PlaneSize, NoAreaNoPlane) {
    EXPECT_EQ(PlaneSize::forPicture({0, 10}).width, 0);
}

class MaskPainterTest : public ::testing::Test {
 protected:
    void pass() {
        shown = painter.paintPass([this] { ++recorded; });
    }
    MaskPainter painter;
    std::optional<MaskPainter::Shown> shown;
    int recorded = 0;
};

TEST_F(MaskPainterTest, PassWithoutPlanesLeavesTheBufferAlone) {
    const Rect stamp{0, 0, 5, 5};
    painter.append({&stamp, 1}, {});
    pass();
    EXPECT_FALSE(shown);
    EXPECT_EQ(painter.bufferedStamps(), 1U);
}

TEST_F(MaskPainterTest, PassStopsAtTheEndOfAStrokeAndTheNextTakesTheRest) {
    painter.beginDocument({20, 20});
    const Rect first{0, 0, 5, 5};
    const Rect second{10, 10, 5, 5};
    painter.append({&first, 1}, {});
    painter.appendEndOfStroke();
    painter.append({&second, 1}, {});
    pass();
    EXPECT_EQ(recorded, 1);
    EXPECT_EQ(painter.bufferedStamps(), 1U);
    EXPECT_EQ(painter.bitmapContext().pixel(12, 7).alpha, 255);
    pass();
    EXPECT_EQ(recorded, 1);
    EXPECT_EQ(painter.bitmapContext().pixel(12, 7).alpha, 0);
}

TEST_F(MaskPainterTest, StampBelowOnePixelIsPaintedAsOnePixel) {
    painter.beginDocument({20, 20});
    const Rect tiny{4, 4, 0.01, 0.01};
    painter.append({&tiny, 1}, {});
    pass();
    EXPECT_LT(painter.bitmapContext().pixel(4, 15).alpha, 100);
    EXPECT_EQ(painter.bitmapContext().pixel(5, 15).alpha, 255);
}

TEST_F(MaskPainterTest, PassShowsOnceHoweverManyStampsItPaintedAndOnlyIfAny) {
    painter.beginDocument({100, 100});
    pass();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->changed, (foundation::IntRect{0, 0, 100, 100}));
    pass();
    EXPECT_FALSE(shown);
    painter.appendEndOfStroke();
    pass();
    EXPECT_FALSE(shown);
    EXPECT_EQ(recorded, 1);
}

TEST_F(MaskPainterTest, LoadedMaskOfAnotherSizeIsStretchedOverThePlane) {
    painter.beginDocument({40, 40});
    painter.setNewContextImage({Bitmap::createFilled(10, 10, {0, 0, 0, 77}).value()});
    pass();
    EXPECT_EQ(painter.bitmapContext().pixel(20, 20), (Pixel{0, 0, 0, 77}));
    EXPECT_EQ(painter.bitmapContext().width(), 40);
}

TEST_F(MaskPainterTest, SoftStampGrowsWithTheReductionOfThePlane) {
    EXPECT_EQ(painter.brushMask(1).side(), 200);
    painter.beginDocument({4000, 4000});
    pass();
    EXPECT_EQ(painter.brushMask(1).side(), 400);
    EXPECT_EQ(painter.brushMask(0.25F).hardness(), 0.25F);
}

}  // namespace
}  // namespace trimora::cutengine
