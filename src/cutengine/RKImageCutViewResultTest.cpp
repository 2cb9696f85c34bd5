#include <gmock/gmock.h>

#include "cutengine/CutViewForTests.h"
#include "cutengine/imageutil/FilterImage.h"

namespace trimora::cutengine {
namespace {

using foundation::Bitmap;
using foundation::Pixel;
using foundation::Point;

constexpr Pixel kGrey{128, 128, 128, 255};

class ResultTest : public CutViewTest {
 protected:
    [[nodiscard]] Pixel resultAt(int x, int y) {
        const PicturePtr result = view.getResult();
        return result->bestRepresentation()->pixel(x, y);
    }
};

TEST_F(ResultTest, CutPartsAreTransparentWhileTheBackgroundIsHidden) {
    load(400, 300);
    stroke({kMiddle});
    EXPECT_EQ(resultAt(200, 150), Pixel{});
    EXPECT_EQ(resultAt(10, 10), kGrey);
}

TEST_F(ResultTest, SolidColourFillsTheCutParts) {
    load(400, 300);
    stroke({kMiddle});
    view.setBrushColor(Colour{1, 0, 0, 1});
    view.setBlurOn(false);
    EXPECT_EQ(resultAt(200, 150), (Pixel{0, 0, 255, 255}));
    EXPECT_EQ(resultAt(10, 10), kGrey);
}

TEST_F(ResultTest, BackgroundOfNoChosenColourIsTransparent) {
    load(400, 300);
    stroke({kMiddle});
    view.setBlurOn(false);
    EXPECT_EQ(resultAt(200, 150), Pixel{});
}

TEST_F(ResultTest, HalfTransparentColourKeepsItsOwnValue) {
    load(400, 300);
    stroke({kMiddle});
    view.setBrushColor(Colour{1, 1, 1, 0.5});
    view.setBlurOn(false);
    EXPECT_EQ(resultAt(200, 150), (Pixel{255, 255, 255, 128}));
}

TEST_F(ResultTest, ColorOnHidesTheBackgroundAndSwitchingItOffChangesNothing) {
    load(400, 300);
    stroke({kMiddle});
    view.setBrushColor(Colour{1, 0, 0, 1});
    view.setBlurOn(false);
    view.setColorOn(true);
    EXPECT_TRUE(view.bluredLayer()->isHidden());
    EXPECT_EQ(resultAt(200, 150), Pixel{});
    view.setColorOn(false);
    EXPECT_TRUE(view.bluredLayer()->isHidden());
    EXPECT_FALSE(view.isColorOn());
}

TEST_F(ResultTest, BlurShowsABlurredCopyOfThePicture) {
    load(400, 300);
    stroke({kMiddle});
    view.setBlurOn(true);
    EXPECT_TRUE(view.isBlurOn());
    EXPECT_FALSE(view.bluredLayer()->isHidden());
    queues.settle();
    EXPECT_EQ(resultAt(200, 150), kGrey);
}

TEST_F(ResultTest, ResultAskedForDuringTheBlurWaitsForIt) {
    load(400, 300);
    stroke({kMiddle});
    view.setBlurOn(true);
    EXPECT_EQ(resultAt(200, 150), kGrey);
    queues.settle();
    EXPECT_EQ(resultAt(200, 150), kGrey);
}

TEST_F(ResultTest, BlurOfAnEarlierPictureIsDropped) {
    load(400, 300);
    view.setBlurOn(true);
    Bitmap red = Bitmap::createFilled(400, 300, {0, 0, 200, 255}, foundation::AlphaMode::opaque).value();
    view.setImage(Picture::create(std::move(red)));
    queues.settle();
    view.setBlurOn(true);
    queues.settle();
    stroke({kMiddle});
    EXPECT_EQ(resultAt(200, 150), (Pixel{0, 0, 200, 255}));
}

TEST_F(ResultTest, ColourChosenWhileTheBlurIsMadeIsNotReplacedByIt) {
    load(400, 300);
    stroke({kMiddle});
    view.setBlurOn(true);
    view.setBrushColor(Colour{0, 1, 0, 1});
    view.setBlurOn(false);
    queues.settle();
    EXPECT_EQ(resultAt(200, 150), (Pixel{0, 255, 0, 255}));
}

TEST_F(ResultTest, ResultHasThePictureSizeEvenWhenThePlaneIsReduced) {
    load(3000, 1000);
    EXPECT_FLOAT_EQ(view.maskScale(), 2000.0F / 3000);
    stroke({kMiddle});
    const PicturePtr result = view.getResult();
    EXPECT_EQ(result->size(), (foundation::Size{3000, 1000}));
    const auto bitmap = result->bestRepresentation();
    EXPECT_EQ(bitmap->pixel(1500, 500), Pixel{});
    EXPECT_EQ(bitmap->pixel(10, 10), kGrey);
}

TEST_F(ResultTest, SoftEdgesKeepThePicturesOwnColour) {
    load(400, 300);
    view.setBrushDiameterSilent(150);
    view.setBrushHardness(0);
    stroke({kMiddle});
    const auto bitmap = view.getResult()->bestRepresentation();
    for (int x = 120; x < 200; ++x) {
        const Pixel pixel = bitmap->pixel(x, 150);
        if (pixel.alpha == 0)
            EXPECT_EQ(pixel, Pixel{});
        else
            EXPECT_EQ(pixel, (Pixel{128, 128, 128, pixel.alpha}));
    }
}

TEST_F(ResultTest, ZoomAndPositionPlayNoPart) {
    load(400, 300);
    stroke({kMiddle});
    const PicturePtr before = view.getResult();
    view.scrollWheel({{10, 10}, 100});
    const PicturePtr after = view.getResult();
    EXPECT_TRUE(samePixels(before->bestRepresentation()->view(), after->bestRepresentation()->view()));
}

/// So large that its blur is not kept whole: 15,900 x 100, every column another shade.
PicturePtr longPicture() {
    Bitmap bitmap = Bitmap::create(15'900, 100, foundation::AlphaMode::opaque).value();
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 15'900; ++x) {
            const auto shade = static_cast<std::uint8_t>(x * 7 + y * y);
            bitmap.setPixel(x, y, {shade, static_cast<std::uint8_t>(x / 50), 90, 255});
        }
    }
    return Picture::create(std::move(bitmap));
}

TEST_F(ResultTest, BlurThatIsNotKeptWholeIsExactInTheResultWhetherItIsDoneOrNot) {
    const PicturePtr picture = longPicture();
    view.setImage(picture);
    view.loadMask(Bitmap::createFilled(4, 4, {}).value());
    queues.settle();
    view.setBlurOn(true);
    const BitmapPtr early = view.getResult()->bestRepresentation();
    queues.settle();
    const BitmapPtr late = view.getResult()->bestRepresentation();
    const BitmapPtr blurred = blurredCopy(picture, queues.workers())->bestRepresentation();
    EXPECT_TRUE(samePixels(early->view(), blurred->view()));
    EXPECT_TRUE(samePixels(late->view(), blurred->view()));
}

TEST_F(ResultTest, RowsStayAsTheResultWasWhenTheyWereTaken) {
    load(400, 300);
    view.setBlurOn(true);
    queues.settle();
    const BitmapPtr before = view.getResult()->bestRepresentation();
    const auto rows = view.resultRows();
    stroke({kMiddle});
    view.setBrushColor(Colour{1, 0, 0, 1});
    view.setBlurOn(false);
    ASSERT_FALSE(samePixels(view.getResult()->bestRepresentation()->view(), before->view()));
    view.setImage(nullptr);
    EXPECT_TRUE(samePixels(rows->whole()->bestRepresentation()->view(), before->view()));
}

TEST_F(ResultTest, FrameShowsThePictureTheCutAndTheCheckerboard) {
    load(400, 300);
    stroke({kMiddle});
    time.advance(1);
    Bitmap frame = Bitmap::create(400, 300, foundation::AlphaMode::opaque).value();
    view.drawRect(frame.view(), frame.view().bounds());
    EXPECT_EQ(frame.pixel(10, 10), kGrey);
    const Pixel through = frame.pixel(200, 150);
    EXPECT_TRUE(through == (Pixel{76, 76, 76, 255}) || through == (Pixel{60, 60, 60, 255}));
}

TEST_F(ResultTest, EmptyViewDrawsBlack) {
    Bitmap frame = Bitmap::createFilled(400, 300, {9, 9, 9, 9}, foundation::AlphaMode::opaque).value();
    view.drawRect(frame.view(), frame.view().bounds());
    EXPECT_EQ(frame.pixel(200, 150), (Pixel{0, 0, 0, 255}));
}

}  // namespace
}  // namespace trimora::cutengine
