#include "batch/PictureCutter.h"

#include <gtest/gtest.h>

#include "cutengine/imageutil/FilterImage.h"
#include "foundation/ThreadQueues.h"

namespace trimora::batch {
namespace {

using cutengine::Picture;
using cutengine::PicturePtr;
using foundation::Bitmap;
using foundation::IntRect;
using foundation::Pixel;

constexpr Pixel kClear{};

class PictureCutterTest : public ::testing::Test {
 protected:
    static PicturePtr grey(int width, int height) {
        return Picture::create(
            Bitmap::createFilled(width, height, {100, 110, 120, 255}, foundation::AlphaMode::opaque).value());
    }
    /// Keeps the columns from..to - 1.
    static std::shared_ptr<const Bitmap> columns(int width, int height, int from, int to) {
        Bitmap mask = Bitmap::createFilled(width, height, {}).value();
        for (int y = 0; y < height; ++y) {
            for (int x = from; x < to; ++x)
                mask.setPixel(x, y, {0, 0, 0, 255});
        }
        return std::make_shared<const Bitmap>(std::move(mask));
    }
    CutPicture cut(const PicturePtr& picture, const CutRecipe& recipe) {
        auto made = cutPicture(picture, recipe, workers_);
        EXPECT_TRUE(made) << made.error().message;
        return made ? std::move(*made) : CutPicture{};
    }
    static Pixel at(const CutPicture& cut, int x, int y) {
        return cut.result->bestRepresentation()->pixel(x, y);
    }

    foundation::ThreadWorkers workers_{2};
};

TEST_F(PictureCutterTest, WithoutAMaskAllOfThePictureStays) {
    const CutPicture made = cut(grey(30, 20), {});
    EXPECT_EQ(made.box, (IntRect{0, 0, 30, 20}));
    EXPECT_EQ(at(made, 0, 0), (Pixel{100, 110, 120, 255}));
    EXPECT_EQ(at(made, 29, 19), (Pixel{100, 110, 120, 255}));
}

TEST_F(PictureCutterTest, MaskOfThePicturesSizeCutsToThePixel) {
    const CutPicture made = cut(grey(30, 20), {columns(30, 20, 10, 17), {}, std::nullopt, false});
    for (int x = 0; x < 30; ++x)
        EXPECT_EQ(at(made, x, 7), x >= 10 && x < 17 ? (Pixel{100, 110, 120, 255}) : kClear) << x;
    EXPECT_EQ(made.mask.width(), 30);
    EXPECT_EQ(made.mask.pixel(10, 0).alpha, 255);
    EXPECT_EQ(made.mask.pixel(9, 0).alpha, 0);
}

TEST_F(PictureCutterTest, MaskOfAnyOtherSizeIsScaled) {
    for (const int width : {3, 15, 61, 300}) {
        const CutPicture made = cut(grey(60, 20), {columns(width, 7, 0, width / 3), {}, std::nullopt, false});
        EXPECT_EQ(at(made, 0, 10).alpha, 255) << width;
        EXPECT_EQ(at(made, 59, 10).alpha, 0) << width;
    }
}

TEST_F(PictureCutterTest, LargePictureIsCutAtItsOwnSize) {
    const CutPicture made = cut(grey(4000, 100), {columns(4000, 100, 0, 1000), {}, std::nullopt, false});
    EXPECT_EQ(made.result->pixelWidth(), 4000);
    EXPECT_EQ(made.mask.width(), 2000);
    EXPECT_EQ(at(made, 990, 50).alpha, 255);
    EXPECT_EQ(at(made, 1010, 50).alpha, 0);
}

TEST_F(PictureCutterTest, ColourStandsBehindWhatIsCutAway) {
    BackgroundChoice colour{BackgroundChoice::Kind::colour, {1, 0.5, 0, 1}};
    const CutPicture made = cut(grey(30, 20), {columns(30, 20, 0, 10), {}, colour, false});
    EXPECT_EQ(at(made, 5, 5), (Pixel{100, 110, 120, 255}));
    EXPECT_EQ(at(made, 20, 5), (Pixel{0, 128, 255, 255}));
}

TEST_F(PictureCutterTest, BlurBehindIsThatOfTheEngine) {
    Bitmap bitmap = Bitmap::createFilled(200, 100, {0, 0, 0, 255}, foundation::AlphaMode::opaque).value();
    for (int y = 0; y < 100; ++y) {
        for (int x = 100; x < 200; ++x)
            bitmap.setPixel(x, y, {255, 255, 255, 255});
    }
    const PicturePtr picture = Picture::create(std::move(bitmap));
    const PicturePtr blurred = cutengine::blurredCopy(picture, workers_);
    const BackgroundChoice blur{BackgroundChoice::Kind::blur, {}};
    const CutPicture made = cut(picture, {columns(200, 100, 0, 0), {}, blur, false});
    EXPECT_TRUE(samePixels(made.result->bestRepresentation()->view(), blurred->bestRepresentation()->view()));
    EXPECT_NE(at(made, 100, 50), (Pixel{255, 255, 255, 255}));
}

TEST_F(PictureCutterTest, CropFindsTheSubjectBehindAnyBackground) {
    for (const auto kind :
         {BackgroundChoice::Kind::none, BackgroundChoice::Kind::blur, BackgroundChoice::Kind::colour}) {
        const CutPicture made =
            cut(grey(30, 20), {columns(30, 20, 10, 17), {}, BackgroundChoice{kind, {0, 1, 0, 1}}, true});
        EXPECT_EQ(made.box, (IntRect{10, 0, 7, 20}));
        EXPECT_EQ(at(made, 0, 0).alpha, kind == BackgroundChoice::Kind::none ? 0 : 255);
    }
}

TEST_F(PictureCutterTest, NothingToCropToIsAnError) {
    const auto made = cutPicture(grey(30, 20), {columns(30, 20, 0, 0), {}, std::nullopt, true}, workers_);
    ASSERT_FALSE(made);
    EXPECT_EQ(made.error().message, "nothing is left of the picture to crop to");
}

}  // namespace
}  // namespace trimora::batch
