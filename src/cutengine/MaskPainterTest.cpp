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

TEST_F(MaskPainterTest, RebuildingPassLeavesStampsToTheNext) {
    painter.beginDocument({20, 20});
    const Rect stamp{10, 10, 5, 5};
    painter.append({&stamp, 1}, {});
    painter.appendEndOfStroke();
    shown = painter.rebuildPass();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->changed, (foundation::IntRect{0, 0, 20, 20}));
    EXPECT_EQ(shown->mask->levels()[0].alphaAt(12, 7), 255);
    EXPECT_EQ(painter.bitmapContext().pixel(12, 7).alpha, 255);
    EXPECT_EQ(painter.bufferedStamps(), 2U);
    EXPECT_FALSE(painter.rebuildPass()) << "nothing is due";
    pass();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->mask->levels()[0].alphaAt(12, 7), 0);
    EXPECT_EQ(shown->mask->levels()[0].alphaAt(1, 1), 255);
    EXPECT_EQ(recorded, 1);
}

TEST_F(MaskPainterTest, LoadedMaskOfAnotherSizeIsStretchedOverThePlane) {
    painter.beginDocument({40, 40});
    painter.setNewContextImage({Bitmap::createFilled(10, 10, {0, 0, 0, 77}).value()});
    pass();
    EXPECT_EQ(painter.bitmapContext().pixel(20, 20), (Pixel{0, 0, 0, 77}));
    EXPECT_EQ(painter.bitmapContext().width(), 40);
}

/// Rows of one alpha, of the width of a plane of 40 x 40.
kernels::MaskRows rowsOf(int top, int height, std::uint8_t alpha) {
    return {Bitmap::createFilled(40, height, {0, 0, 0, alpha}).value(), top, false};
}

TEST_F(MaskPainterTest, RowsOfAStateAreAllThatARebuildChangesAndShows) {
    painter.beginDocument({40, 40});
    pass();
    painter.setStateShown();
    const Rect stamp{30, 18, 4, 4};
    painter.append({&stamp, 1}, {.colorMode = true, .fill = {9, 9, 9, 255}});
    painter.append({&stamp, 1}, {});
    pass();
    EXPECT_EQ(painter.changedSinceState(), (foundation::IntRect{30, 18, 4, 4}));
    auto rows = rowsOf(15, 10, 255);
    rows.pixels.setPixel(3, 4, {0, 0, 0, 50});
    painter.setNewContextImage(std::move(rows));
    painter.setNeedsContectUpdate();
    pass();
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->changed, (foundation::IntRect{3, 18, 31, 4}));
    EXPECT_EQ(painter.bitmapContext().pixel(3, 19).alpha, 50);
    EXPECT_EQ(painter.bitmapContext().pixel(31, 20).alpha, 255);
    EXPECT_EQ(painter.colorContext().pixel(31, 20), Pixel{}) << "the colour plane begins anew";
    EXPECT_TRUE(painter.changedSinceState().isEmpty());
}

TEST_F(MaskPainterTest, RowsThatAreStillToComeCountAsChanged) {
    painter.beginDocument({40, 40});
    pass();
    painter.setStateShown();
    painter.setNewContextImage(rowsOf(10, 3, 0));
    EXPECT_EQ(painter.changedSinceState(), (foundation::IntRect{0, 10, 40, 3}));
    painter.setStateShown();  // of the plane as it is now
    EXPECT_EQ(painter.changedSinceState(), (foundation::IntRect{0, 10, 40, 3}));
    painter.setNeedsContectUpdate();
    pass();
    EXPECT_EQ(painter.changedSinceState(), (foundation::IntRect{0, 10, 40, 3}))
        << "the plane is no longer what was taken for the state";
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
