#include "codecs/PictureFacts.h"

#include <gtest/gtest.h>

#include "codecs/ColourProfile.h"
#include "codecs/PictureFileDecoder.h"
#include "codecs/SampleFilesForTests.h"

namespace trimora::codecs {
namespace {

using foundation::Bitmap;

class PictureFactsTest : public ::testing::Test {
 protected:
    [[nodiscard]] PictureFacts facts(const samples::Buffer& file) const {
        const auto found = decoder_.facts(file);
        EXPECT_TRUE(found) << found.error().message;
        return found ? *found : PictureFacts();
    }

    foundation::InlineWorkers workers_;
    PictureFileDecoder decoder_{workers_, PixelBudget(100)};  // facts cost no pixels
    Bitmap picture_ = samples::quarters(40, 30);
};

TEST_F(PictureFactsTest, JpegTellsItsStoredSizeOrientationAndProfile) {
    samples::JpegOptions options;
    options.orientation = 6;
    options.icc = samples::wideProfile();
    const PictureFacts found = facts(samples::jpeg(picture_.view(), options));
    EXPECT_STREQ(nameOf(found.format), "JPEG");
    EXPECT_EQ(found.width, 40U);
    EXPECT_EQ(found.height, 30U);
    EXPECT_EQ(found.pixels, 1200U);
    EXPECT_EQ(found.orientation, Orientation::rightTop);
    EXPECT_EQ(found.bitsPerSample, 8);
    EXPECT_FALSE(found.hasAlpha);
    EXPECT_EQ(found.profile, "RGB built-in");
}

TEST_F(PictureFactsTest, PngTellsItsDepthAndItsRoomForTransparency) {
    samples::PngOptions wide;
    wide.bitDepth = 16;
    PictureFacts found = facts(samples::png(picture_.view(), wide));
    EXPECT_STREQ(nameOf(found.format), "PNG");
    EXPECT_EQ(found.bitsPerSample, 16);
    EXPECT_TRUE(found.hasAlpha);
    EXPECT_EQ(found.profile, "");

    samples::PngOptions opaque;
    opaque.colourType = 2;
    samples::Buffer file = samples::png(picture_.view(), opaque);
    EXPECT_FALSE(facts(file).hasAlpha);
    samples::insertChunk(file, "sRGB", samples::Buffer{0});
    EXPECT_EQ(facts(file).profile, "sRGB");
}

TEST_F(PictureFactsTest, TiffCountsThePixelsOfAllItsPages) {
    const Bitmap larger = samples::quarters(80, 60);
    samples::TiffOptions plain;
    plain.alpha = -1;
    plain.orientation = 8;
    const PictureFacts found = facts(samples::tiff({{picture_.view(), plain}, {larger.view(), {}}}));
    EXPECT_STREQ(nameOf(found.format), "TIFF");
    EXPECT_EQ(found.width, 40U);
    EXPECT_EQ(found.height, 30U);
    EXPECT_EQ(found.pixels, 1200U + 4800U);
    EXPECT_EQ(found.orientation, Orientation::leftBottom);
    EXPECT_FALSE(found.hasAlpha);
    EXPECT_TRUE(facts(samples::tiff({{picture_.view(), {}}})).hasAlpha);
}

TEST_F(PictureFactsTest, GifTellsTheSizeOfItsScreen) {
    samples::GifOptions options;
    options.screenWidth = 64;
    options.screenHeight = 48;
    const Bitmap few = Bitmap::createFilled(40, 30, {1, 2, 3, 255}).value();
    const PictureFacts found = facts(samples::gif(few.view(), options));
    EXPECT_STREQ(nameOf(found.format), "GIF");
    EXPECT_EQ(found.width, 64U);
    EXPECT_EQ(found.height, 48U);
}

TEST_F(PictureFactsTest, DamagedProfileHasNoNameAndOddOnesLoseTheirControlCharacters) {
    EXPECT_EQ(profileName(samples::Buffer(200, 7)), "");
    EXPECT_EQ(profileName({}), "");
    samples::Buffer profile = samples::wideProfile();
    const std::string_view text(reinterpret_cast<const char*>(profile.data()), profile.size());
    // The text is stored with two bytes a letter.
    const std::size_t at = text.find(std::string_view("\0R\0G\0B", 6));
    ASSERT_NE(at, std::string_view::npos);
    profile[at + 1] = 0x1B;
    EXPECT_EQ(profileName(profile), "GB built-in");
}

TEST_F(PictureFactsTest, WhatIsNoPictureHasNone) {
    EXPECT_EQ(decoder_.facts(samples::Buffer{'B', 'M', 0, 0, 0, 0, 0, 0}).error().message,
              "it is not a JPEG, PNG, TIFF or GIF picture");
}

TEST_F(PictureFactsTest, FilesCutShortAnywhereGiveFactsOrAReason) {
    const Bitmap few = Bitmap::createFilled(9, 7, {1, 2, 3, 255}).value();
    for (const samples::Buffer& file : {samples::jpeg(few.view()), samples::png(few.view()),
                                        samples::tiff({{few.view(), {}}}), samples::gif(few.view())}) {
        for (std::size_t size = 0; size < file.size(); ++size) {
            const auto found = decoder_.facts(Bytes(file).first(size));
            EXPECT_TRUE(found || !found.error().message.empty());
        }
    }
}

}  // namespace
}  // namespace trimora::codecs
