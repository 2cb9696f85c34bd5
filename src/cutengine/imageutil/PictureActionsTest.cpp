#include "cutengine/imageutil/PictureActions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cutengine/imageutil/FilterImage.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"

namespace trimora::cutengine {
namespace {

using foundation::Bitmap;
using foundation::Rect;
using foundation::Size;
using ::testing::Contains;

/// Fails a number of times before it hands out bitmaps of the given sizes.
class ScriptedDecoder final : public PictureDecoder {
 public:
    foundation::Result<DecodedPicture> decode(const std::filesystem::path& /*file*/) override {
        if (++calls <= failures)
            return foundation::Error{"not a picture"};
        DecodedPicture decoded;
        for (const auto& [width, height] : sizes)
            decoded.representations.push_back(Bitmap::createFilled(width, height, {1, 2, 3, 255}).value());
        foundation::InlineWorkers here;
        if (withCopies)
            decoded.copies = kernels::MipPyramid::build(decoded.representations[0].view(), here);
        return decoded;
    }
    int calls = 0;
    int failures = 0;
    bool withCopies = false;
    std::vector<std::pair<int, int>> sizes{{4, 3}};
};

class PictureActionsTest : public ::testing::Test {
 protected:
    ScriptedDecoder decoder;
    foundation::VirtualTime time;
    int random = 0;
    Patience patience{time, [this] { return random; }};
    foundation::InlineWorkers workers;
};

TEST_F(PictureActionsTest, SizeIsTheLargestWidthAndTheLargestHeightEachByItself) {
    decoder.sizes = {{40, 10}, {20, 30}};
    const LoadedPicture loaded = imageFromURL("x", decoder);
    EXPECT_EQ(loaded.picture->size(), (Size{40, 30}));
    EXPECT_EQ(loaded.picture->representations().size(), 2U);
}

TEST_F(PictureActionsTest, TwoResolutionsOfOnePictureLoadAtTheLargerPixelSize) {
    decoder.sizes = {{100, 80}, {200, 160}};
    EXPECT_EQ(imageFromURL("x", decoder).picture->size(), (Size{200, 160}));
}

TEST_F(PictureActionsTest, BestRepresentationIsTheSmallestThatIsLargeEnough) {
    decoder.sizes = {{400, 320}, {100, 80}, {200, 160}};
    const PicturePtr picture = imageFromURL("x", decoder).picture;
    EXPECT_EQ(picture->bestRepresentation(90, 70)->width(), 100);
    EXPECT_EQ(picture->bestRepresentation(101, 70)->width(), 200);
    EXPECT_EQ(picture->bestRepresentation(900, 70)->width(), 400);
    EXPECT_EQ(picture->bestRepresentation()->width(), 400);
}

TEST_F(PictureActionsTest, UnreadableFileYieldsNoneAndTheReason) {
    decoder.failures = 1;
    const LoadedPicture loaded = imageFromURL("x", decoder);
    EXPECT_EQ(loaded.picture, nullptr);
    EXPECT_EQ(loaded.notice, "not a picture");
}

TEST_F(PictureActionsTest, FileThatNeverBecomesReadableIsTriedElevenTimesInAll) {
    decoder.failures = 1000;
    EXPECT_EQ(imageFromURL_async("x", true, decoder, patience).picture, nullptr);
    EXPECT_EQ(decoder.calls, 11);
    EXPECT_NEAR(time.seconds(), 0.5, 1e-9);
    random = 99'999;
    (void)imageFromURL_async("x", true, decoder, patience);
    EXPECT_NEAR(time.seconds(), 0.5 + 1.49999, 1e-9);
}

TEST_F(PictureActionsTest, WaitingStopsAtTheFirstSuccess) {
    decoder.failures = 3;
    EXPECT_NE(imageFromURL_async("x", true, decoder, patience).picture, nullptr);
    EXPECT_EQ(decoder.calls, 4);
}

TEST_F(PictureActionsTest, FileThatIsThereAlreadyIsTriedOnce) {
    decoder.failures = 1000;
    (void)imageFromURL_async("x", false, decoder, patience);
    EXPECT_EQ(decoder.calls, 1);
    EXPECT_EQ(time.seconds(), 0);
}

TEST_F(PictureActionsTest, ResizeMakesOneBitmapOfTheGivenSize) {
    decoder.sizes = {{40, 10}, {20, 30}};
    const PicturePtr whole = resize(imageFromURL("x", decoder).picture, 40, 30, workers);
    ASSERT_EQ(whole->representations().size(), 1U);
    EXPECT_EQ(whole->size(), (Size{40, 30}));
}

TEST_F(PictureActionsTest, ResizeToItsOwnSizeKeepsThePicture) {
    const PicturePtr picture = imageFromURL("x", decoder).picture;
    EXPECT_EQ(resize(picture, 4, 3, workers), picture);
}

TEST_F(PictureActionsTest, ResizeToAnotherHeightAloneMakesAnotherPicture) {
    const PicturePtr picture = imageFromURL("x", decoder).picture;
    const PicturePtr higher = resize(picture, 4, 9, workers);
    ASSERT_NE(higher, nullptr);
    EXPECT_EQ(higher->size(), (Size{4, 9}));
    EXPECT_EQ(higher->bestRepresentation()->pixel(1, 8), picture->bestRepresentation()->pixel(1, 2));
}

TEST_F(PictureActionsTest, ResizedPictureIsOpaqueWhereItsSourceIs) {
    const auto opaque =
        Picture::create(Bitmap::createFilled(4, 3, {1, 2, 3, 255}, foundation::AlphaMode::opaque).value());
    EXPECT_EQ(resize(opaque, 8, 6, workers)->bestRepresentation()->alphaMode(),
              foundation::AlphaMode::opaque);
}

TEST_F(PictureActionsTest, PictureIsGivenItsSmallerCopiesOnce) {
    decoder.sizes = {{40, 30}};
    const PicturePtr loaded = imageFromURL("x", decoder).picture;
    EXPECT_EQ(loaded->copies(), nullptr);
    const PicturePtr ready = Picture::withCopies(loaded, workers);
    EXPECT_EQ(ready->size(), loaded->size());
    EXPECT_EQ(ready->bestRepresentation(), loaded->bestRepresentation());
    EXPECT_EQ(ready->copies()->level(0).pixels, loaded->bestRepresentation()->view().pixels);
    EXPECT_EQ(Picture::withCopies(ready, workers), ready);
    EXPECT_EQ(makeDrawable(ready, workers)->pyramid, ready->copies());
    EXPECT_EQ(Picture::withCopies(nullptr, workers), nullptr);
}

TEST_F(PictureActionsTest, CopiesThatComeWithAPictureAreKept) {
    decoder.sizes = {{40, 30}};
    decoder.withCopies = true;
    const PicturePtr loaded = imageFromURL("x", decoder).picture;
    ASSERT_NE(loaded->copies(), nullptr);
    EXPECT_EQ(loaded->copies()->level(0).pixels, loaded->bestRepresentation()->view().pixels);
    EXPECT_EQ(Picture::withCopies(loaded, workers), loaded);
}

TEST_F(PictureActionsTest, SmallPictureIsScaledFromACopyThatIsStillTwiceAsLarge) {
    const Bitmap stripes = [] {
        Bitmap made = Bitmap::createFilled(64, 64, {0, 0, 0, 255}).value();
        for (int y = 0; y < 64; y += 2)
            copyPixels(Bitmap::createFilled(64, 1, {255, 255, 255, 255})->view(),
                       subview(made.view(), {0, y, 64, 1}));
        return made;
    }();
    const PicturePtr plain = Picture::create(stripes.clone().value());
    const PicturePtr ready = Picture::withCopies(plain, workers);
    const auto grey = [&](int side) {
        return resize(ready, side, side, workers)->bestRepresentation()->pixel(side / 2, side / 2).red;
    };
    EXPECT_EQ(grey(32), resize(plain, 32, 32, workers)->bestRepresentation()->pixel(16, 16).red);
    EXPECT_EQ(grey(16), 128) << "the mean of a white and a black row";
    EXPECT_EQ(grey(1), 128);
}

TEST_F(PictureActionsTest, NothingIsMadeOfAPictureWithoutPixels) {
    EXPECT_EQ(Picture::create(BitmapPtr()), nullptr);
    EXPECT_EQ(Picture::create(std::make_shared<const Bitmap>()), nullptr);
    std::vector<Bitmap> without;
    without.emplace_back();
    const PicturePtr hollow = Picture::createSized({4, 3}, std::move(without));
    EXPECT_FALSE(hollow->isValid());
    EXPECT_EQ(hollow->bestRepresentation(), nullptr);
    EXPECT_EQ(makeDrawable(hollow, workers), nullptr);
    EXPECT_EQ(makeDrawable(nullptr, workers), nullptr);
    EXPECT_TRUE(FilterImage::fromPicture(hollow).isEmpty());
    EXPECT_TRUE(FilterImage().view().isEmpty());
}

TEST_F(PictureActionsTest, ResizeOfNothingLogsInvalidImage) {
    testing::CapturedLog log;
    EXPECT_EQ(resize(nullptr, 4, 3, workers), nullptr);
    EXPECT_EQ(resize(Picture::createSized({0, 0}, {}), 4, 3, workers), nullptr);
    EXPECT_THAT(log.texts(), Contains("Invalid Image").Times(2));
}

TEST_F(PictureActionsTest, CropMovesTheResultToTheOrigin) {
    decoder.sizes = {{300, 200}};
    const FilterImage image = FilterImage::fromPicture(imageFromURL("x", decoder).picture);
    const FilterImage cropped = image.crop({10, 20, 100, 50});
    EXPECT_EQ(cropped.extent(), (Rect{0, 0, 100, 50}));
    EXPECT_EQ(cropped.picture()->size(), (Size{100, 50}));
}

TEST_F(PictureActionsTest, CropTakesThePixelsOfItsArea) {
    Bitmap bitmap = Bitmap::createFilled(10, 10, {0, 0, 0, 255}).value();
    bitmap.setPixel(3, 10 - 1 - 4, {9, 9, 9, 255});
    const FilterImage image = FilterImage::fromPicture(Picture::create(std::move(bitmap)));
    const PicturePtr part = image.crop({2, 3, 4, 4}).crop({1, 1, 2, 2}).picture();
    EXPECT_EQ(part->bestRepresentation()->pixel(0, 1), (foundation::Pixel{9, 9, 9, 255}));
}

TEST_F(PictureActionsTest, FilterImageOfNothingIsEmpty) {
    const FilterImage image = FilterImage::fromPicture(nullptr);
    EXPECT_TRUE(image.isEmpty());
    EXPECT_TRUE(image.extent().isZero());
    EXPECT_EQ(image.picture(), nullptr);
    EXPECT_EQ(blurredCopy(nullptr, workers), nullptr);
}

TEST_F(PictureActionsTest, BlurredCopyHasThePicturesSizeAndARadiusOfItsSidesByTwoHundred) {
    Bitmap bitmap = Bitmap::createFilled(1000, 800, {0, 0, 0, 255}).value();
    bitmap.setPixel(500, 400, {255, 255, 255, 255});
    const PicturePtr blurred = blurredCopy(Picture::create(std::move(bitmap)), workers);
    EXPECT_EQ(blurred->size(), (Size{1000, 800}));
    const auto pixels = blurred->bestRepresentation();
    EXPECT_GT(pixels->pixel(500 + 9, 400).red, 0);
    EXPECT_EQ(pixels->pixel(500 + 10, 400).red, 0);
}

}  // namespace
}  // namespace trimora::cutengine
