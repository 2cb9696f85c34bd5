#include "codecs/JpegDecoder.h"

#include <gtest/gtest.h>

#include "codecs/Orientation.h"
#include "codecs/SampleFilesForTests.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using cutengine::kernels::MipPyramid;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Result;

/// Changes the size that the header of the frame tells.
void setSize(samples::Buffer& file, int width, int height) {
    for (std::size_t i = 0; i + 9 < file.size(); ++i) {
        if (file[i] != 0xFF || (file[i + 1] != 0xC0 && file[i + 1] != 0xC2))
            continue;
        file[i + 5] = static_cast<std::uint8_t>(height >> 8);
        file[i + 6] = static_cast<std::uint8_t>(height);
        file[i + 7] = static_cast<std::uint8_t>(width >> 8);
        file[i + 8] = static_cast<std::uint8_t>(width);
        return;
    }
}

class JpegDecoderTest : public ::testing::Test {
 protected:
    foundation::InlineWorkers workers_;
    JpegDecoder decoder_{PixelBudget(10'000'000), workers_};
    Bitmap picture_ = samples::quarters(67, 45);
};

TEST_F(JpegDecoderTest, ReadsThePictureOpaque) {
    const Result<DecodedPicture> read = decoder_.decode(samples::jpeg(picture_.view()));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->representations.size(), 1U);
    EXPECT_EQ(read->representations[0].alphaMode(), AlphaMode::opaque);
    EXPECT_LE(samples::largestDifference(read->representations[0].view(), picture_.view()), 6);
    EXPECT_EQ(read->notice, "");
}

TEST_F(JpegDecoderTest, ReadsProgressiveAndSubsampledFiles) {
    samples::JpegOptions options;
    options.progressive = true;
    EXPECT_LE(samples::largestDifference(
                  decoder_.decode(samples::jpeg(picture_.view(), options))->representations[0].view(),
                  picture_.view()),
              6);
    const Bitmap even = Bitmap::createFilled(50, 30, {30, 90, 200, 255}, AlphaMode::opaque).value();
    options.across = options.down = 2;
    EXPECT_LE(
        samples::largestDifference(
            decoder_.decode(samples::jpeg(even.view(), options))->representations[0].view(), even.view()),
        3);
}

TEST_F(JpegDecoderTest, ReadsGreyFiles) {
    const Bitmap grey = Bitmap::createFilled(20, 20, {77, 77, 77, 255}, AlphaMode::opaque).value();
    samples::JpegOptions options;
    options.grey = true;
    const Result<DecodedPicture> read = decoder_.decode(samples::jpeg(grey.view(), options));
    EXPECT_LE(samples::largestDifference(read->representations[0].view(), grey.view()), 1);
}

TEST_F(JpegDecoderTest, ReadsInksWithoutAProfileAndWithOne) {
    samples::JpegOptions options;
    options.cmyk = true;
    Result<DecodedPicture> read = decoder_.decode(samples::jpeg(picture_.view(), options));
    ASSERT_TRUE(read);
    EXPECT_LE(samples::largestDifference(read->representations[0].view(), picture_.view()), 6);
    EXPECT_EQ(read->representations[0].alphaMode(), AlphaMode::opaque);

    options.icc = samples::inkProfile();
    read = decoder_.decode(samples::jpeg(picture_.view(), options));
    EXPECT_LE(samples::largestDifference(read->representations[0].view(), picture_.view()), 12);
}

TEST_F(JpegDecoderTest, AppliesTheProfileOfAWideSpace) {
    const Bitmap green = Bitmap::createFilled(16, 16, {90, 160, 120, 255}, AlphaMode::opaque).value();
    samples::JpegOptions options;
    options.icc = samples::wideProfile();
    const foundation::Pixel wide =
        decoder_.decode(samples::jpeg(green.view(), options))->representations[0].pixel(8, 8);
    EXPECT_LT(wide.red, 100);
    EXPECT_EQ(wide.alpha, 255);
    options.icc = samples::srgbProfile();
    const foundation::Pixel same =
        decoder_.decode(samples::jpeg(green.view(), options))->representations[0].pixel(8, 8);
    EXPECT_NEAR(same.red, 120, 3);
}

TEST_F(JpegDecoderTest, AppliesAGreyProfile) {
    const Bitmap grey = Bitmap::createFilled(16, 16, {55, 55, 55, 255}, AlphaMode::opaque).value();
    samples::JpegOptions options;
    options.grey = true;
    options.icc = samples::greyProfile(1.0);
    const foundation::Pixel read =
        decoder_.decode(samples::jpeg(grey.view(), options))->representations[0].pixel(8, 8);
    EXPECT_NEAR(read.green, 128, 3);
    EXPECT_EQ(read.green, read.red);
}

TEST_F(JpegDecoderTest, EveryOrientationGivesTheSameUprightPicture) {
    foundation::InlineWorkers workers;
    // Turning back what a number turns: all undo themselves but the two quarter turns.
    const auto undone = [](int number) { return number == 6 ? 8 : number == 8 ? 6 : number; };
    for (int number = 1; number <= 8; ++number) {
        const Bitmap stored = upright(picture_.clone().value(),
                                      orientationOf(static_cast<std::uint32_t>(undone(number))), workers)
                                  .value();
        samples::JpegOptions options;
        options.orientation = number;
        const Result<DecodedPicture> read = decoder_.decode(samples::jpeg(stored.view(), options));
        ASSERT_TRUE(read);
        EXPECT_LE(samples::largestDifference(read->representations[0].view(), picture_.view()), 8) << number;
    }
}

TEST_F(JpegDecoderTest, SmallerCopiesComeWithAPictureThatIsShownAsItWasRead) {
    samples::JpegOptions options;
    for (const bool progressive : {false, true}) {
        options.progressive = progressive;
        const Result<DecodedPicture> read = decoder_.decode(samples::jpeg(picture_.view(), options));
        ASSERT_TRUE(read);
        const auto plain = MipPyramid::build(read->representations[0].view(), workers_);
        ASSERT_EQ(read->copies.levelCount(), plain.levelCount());
        EXPECT_EQ(read->copies.level(0).pixels, read->representations[0].view().pixels);
        for (int level = 0; level < plain.levelCount(); ++level)
            EXPECT_TRUE(samePixels(read->copies.level(level), plain.level(level))) << level;
    }
}

TEST_F(JpegDecoderTest, NoCopiesComeWithAPictureThatIsTurnedOrRecolouredOrNotWhole) {
    samples::JpegOptions turned;
    turned.orientation = 6;
    samples::JpegOptions wide;
    wide.icc = samples::wideProfile();
    samples::JpegOptions inks;
    inks.cmyk = true;
    for (const samples::JpegOptions& options : {turned, wide, inks})
        EXPECT_EQ(decoder_.decode(samples::jpeg(picture_.view(), options))->copies.levelCount(), 0);
    samples::Buffer cut = samples::jpeg(samples::quarters(120, 400).view());
    cut.resize(cut.size() / 2);
    EXPECT_EQ(decoder_.decode(cut)->copies.levelCount(), 0);
}

TEST_F(JpegDecoderTest, FileCutAnywhereShowsWhatIsThereOrTellsWhy) {
    for (const bool progressive : {false, true}) {
        samples::JpegOptions options;
        options.progressive = progressive;
        const samples::Buffer whole = samples::jpeg(samples::quarters(120, 400).view(), options);
        int shown = 0;
        for (std::size_t size = 0; size + 2 < whole.size(); size += 13) {
            const samples::Buffer cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            const Result<DecodedPicture> read = decoder_.decode(cut);
            if (read) {
                EXPECT_EQ(read->notice, "the file is cut short; what could be read is shown") << size;
                EXPECT_EQ(read->representations[0].height(), 400);
                ++shown;
            } else {
                EXPECT_FALSE(read.error().message.empty());
            }
        }
        EXPECT_GT(shown, 10);
    }
}

TEST_F(JpegDecoderTest, HalfABaselineFileShowsTheUpperPartAndNothingBelow) {
    const Bitmap tall = samples::quarters(120, 400);
    const samples::Buffer whole = samples::jpeg(tall.view());
    const samples::Buffer half(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(whole.size() / 2));
    const Result<DecodedPicture> read = decoder_.decode(half);
    ASSERT_TRUE(read);
    const Bitmap& bitmap = read->representations[0];
    EXPECT_EQ(bitmap.alphaMode(), AlphaMode::premultiplied);
    EXPECT_LE(samples::largestDifference(subview(bitmap.view(), {0, 0, 120, 100}),
                                         subview(tall.view(), {0, 0, 120, 100})),
              6);
    EXPECT_EQ(bitmap.pixel(60, 399), foundation::Pixel{});
}

TEST_F(JpegDecoderTest, FileThatEndsBeforeThePictureIsAnError) {
    const samples::Buffer whole = samples::jpeg(picture_.view());
    const Result<DecodedPicture> read = decoder_.decode(Bytes(whole).first(100));
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().message, "the file ends before its picture begins");
}

TEST_F(JpegDecoderTest, PictureAboveTheBudgetIsRefusedFromItsHeader) {
    samples::Buffer file = samples::jpeg(picture_.view());
    setSize(file, 65'500, 65'500);
    const Result<DecodedPicture> read = decoder_.decode(file);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().message, "the picture has 4291 megapixels, and the free memory is enough for 10");
}

TEST_F(JpegDecoderTest, DataThatEndsBeforeThePictureLeavesTheRestTransparent) {
    samples::Buffer file = samples::jpeg(picture_.view());
    setSize(file, 2000, 3000);  // the end marker comes after a tenth of a row of it
    const Result<DecodedPicture> read = decoder_.decode(file);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->notice, "the file is damaged; what could be read is shown");
    EXPECT_EQ(read->representations[0].pixel(0, 0).alpha, 255);
    EXPECT_EQ(read->representations[0].pixel(1000, 2000), foundation::Pixel{});
}

TEST_F(JpegDecoderTest, LargePictureInScansThatTheFileCannotHoldIsRefused) {
    samples::JpegOptions options;
    options.progressive = true;
    samples::Buffer file = samples::jpeg(picture_.view(), options);
    setSize(file, 20'000, 20'000);
    const JpegDecoder roomy(PixelBudget(1'000'000'000), workers_);
    const Result<DecodedPicture> read = roomy.decode(file);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().message, "the file is far too short for a picture of its size");
}

TEST_F(JpegDecoderTest, ThousandScansAreRefused) {
    samples::JpegOptions options;
    options.grey = true;
    options.emptyScans = 60;
    EXPECT_TRUE(decoder_.decode(samples::jpeg(picture_.view(), options)));
    // The last scan over and over, which the library's writer would not do.
    const samples::Buffer file = samples::jpeg(picture_.view(), options);
    std::size_t last = file.size();
    for (std::size_t i = 0; i + 1 < file.size(); ++i) {
        if (file[i] == 0xFF && file[i + 1] == 0xDA)
            last = i;
    }
    samples::Buffer bomb(file.begin(), file.end() - 2);
    for (int i = 0; i < 1000; ++i)
        bomb.insert(bomb.end(), file.begin() + static_cast<std::ptrdiff_t>(last), file.end() - 2);
    bomb.insert(bomb.end(), {0xFF, 0xD9});
    const Result<DecodedPicture> read = decoder_.decode(bomb);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().message,
              "the JPEG file cannot be read: the file has more scans than any picture needs");
}

TEST_F(JpegDecoderTest, ThousandMarkersOfMetadataCostNothing) {
    const samples::Buffer plain = samples::jpeg(picture_.view());
    samples::Buffer file(plain.begin(), plain.begin() + 2);
    for (int i = 0; i < 1000; ++i) {
        file.insert(file.end(), {0xFF, 0xE1, 0xFF, 0xFF});
        file.resize(file.size() + 65533, 'x');
    }
    file.insert(file.end(), plain.begin() + 2, plain.end());
    EXPECT_TRUE(decoder_.decode(file));
}

}  // namespace
}  // namespace trimora::codecs
