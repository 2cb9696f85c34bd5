#include "codecs/GifDecoder.h"

#include <gtest/gtest.h>

#include "codecs/SampleFiles.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Pixel;
using foundation::Result;

class GifDecoderTest : public ::testing::Test {
 protected:
    GifDecoderTest() {
        for (int y = 0; y < picture_.height(); ++y) {
            for (int x = 0; x < picture_.width(); ++x)
                picture_.setPixel(x, y, coloured(x, y));
        }
    }

    /// One of 238 colours.
    static Pixel coloured(int x, int y) {
        return {static_cast<std::uint8_t>(x % 14 * 18), static_cast<std::uint8_t>(y % 17 * 15), 90, 255};
    }

    foundation::InlineWorkers workers_;
    GifDecoder decoder_{PixelBudget(1'000'000), workers_};
    Bitmap picture_ = Bitmap::create(60, 51, AlphaMode::straight).value();
};

TEST_F(GifDecoderTest, ReadsTheColoursInterlacedOrNot) {
    for (const bool interlaced : {false, true}) {
        samples::GifOptions options;
        options.interlaced = interlaced;
        const Result<DecodedPicture> read = decoder_.decode(samples::gif(picture_.view(), options));
        ASSERT_TRUE(read);
        EXPECT_TRUE(samePixels(read->representations[0].view(), picture_.view())) << interlaced;
        EXPECT_EQ(read->representations[0].alphaMode(), AlphaMode::opaque);
        EXPECT_EQ(read->notice, "");
    }
}

TEST_F(GifDecoderTest, TransparentIndexIsTransparent) {
    picture_.setPixel(4, 4, {});
    const Result<DecodedPicture> read = decoder_.decode(samples::gif(picture_.view()));
    EXPECT_TRUE(samePixels(read->representations[0].view(), picture_.view()));
    EXPECT_EQ(read->representations[0].alphaMode(), AlphaMode::premultiplied);
}

TEST_F(GifDecoderTest, FrameStandsOnItsScreenAndIsClippedByIt) {
    samples::GifOptions options;
    options.left = 3;
    options.top = 2;
    options.screenWidth = 50;
    options.screenHeight = 60;
    const Result<DecodedPicture> read = decoder_.decode(samples::gif(picture_.view(), options));
    ASSERT_TRUE(read);
    const Bitmap& screen = read->representations[0];
    EXPECT_EQ(screen.width(), 50);
    EXPECT_EQ(screen.height(), 60);
    EXPECT_EQ(screen.pixel(2, 2), Pixel{});
    EXPECT_EQ(screen.pixel(3, 2), picture_.pixel(0, 0));
    EXPECT_EQ(screen.pixel(49, 52), picture_.pixel(46, 50));
    EXPECT_EQ(screen.pixel(5, 53), Pixel{});
}

TEST_F(GifDecoderTest, OnlyTheFirstOfManyFramesIsRead) {
    samples::GifOptions options;
    options.frames = 2'000;
    const Result<DecodedPicture> read = decoder_.decode(samples::gif(picture_.view(), options));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->representations.size(), 1U);
}

TEST_F(GifDecoderTest, LongCommentIsPassedOver) {
    samples::GifOptions options;
    options.commentBytes = 5'000'000;
    EXPECT_TRUE(decoder_.decode(samples::gif(picture_.view(), options)));
}

TEST_F(GifDecoderTest, FileCutAnywhereShowsWhatIsThereOrTellsWhy) {
    const samples::Buffer whole = samples::gif(picture_.view());
    int shown = 0;
    for (std::size_t size = 6; size + 3 < whole.size(); ++size) {
        const samples::Buffer cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        const Result<DecodedPicture> read = decoder_.decode(cut);
        if (!read) {
            EXPECT_EQ(read.error().message, "the file ends before its picture begins") << size;
            continue;
        }
        ++shown;
        EXPECT_EQ(read->notice, "the file is cut short; what could be read is shown") << size;
        EXPECT_EQ(read->representations[0].pixel(0, 0), picture_.pixel(0, 0));
        EXPECT_EQ(read->representations[0].pixel(59, 50), Pixel{});
    }
    EXPECT_GT(shown, 5);
}

TEST_F(GifDecoderTest, ScreenOrFrameAboveTheBudgetIsRefused) {
    samples::GifOptions options;
    options.screenWidth = options.screenHeight = 65535;
    EXPECT_EQ(decoder_.decode(samples::gif(picture_.view(), options)).error().message,
              "the picture has 4295 megapixels, and the free memory is enough for 1");
    samples::Buffer file = samples::gif(picture_.view());
    const std::size_t frame = 13 + 256 * 3 + 8;  // screen, colours, the frame's control
    ASSERT_EQ(file[frame], ',');
    file[frame + 5] = file[frame + 6] = file[frame + 7] = file[frame + 8] = 0xFF;
    EXPECT_FALSE(decoder_.decode(file));
}

TEST_F(GifDecoderTest, FileWithoutAFrameIsAnError) {
    const samples::Buffer whole = samples::gif(picture_.view());
    samples::Buffer empty(whole.begin(), whole.begin() + 13 + 256 * 3);
    empty.push_back(';');
    const Result<DecodedPicture> read = decoder_.decode(empty);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().message, "the GIF file cannot be read: it holds no picture");
}

}  // namespace
}  // namespace trimora::codecs
