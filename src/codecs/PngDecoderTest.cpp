#include "codecs/PngDecoder.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include "codecs/PixelRows.h"
#include "codecs/SampleFilesForTests.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Pixel;
using foundation::Result;

Bitmap premultiplied(const Bitmap& straight) {
    Bitmap made = straight.clone().value();
    for (int y = 0; y < made.height(); ++y)
        premultiply(made.row(y), static_cast<std::size_t>(made.width()));
    return made;
}

Bitmap greyOf(const Bitmap& picture) {
    Bitmap made = picture.clone().value();
    for (int y = 0; y < made.height(); ++y) {
        for (int x = 0; x < made.width(); ++x) {
            const Pixel p = made.pixel(x, y);
            const auto grey = static_cast<std::uint8_t>((p.red * 30 + p.green * 59 + p.blue * 11 + 50) / 100);
            made.setPixel(x, y, {grey, grey, grey, p.alpha});
        }
    }
    return made;
}

class PngDecoderTest : public ::testing::Test {
 protected:
    Bitmap read(const samples::Buffer& file) {
        Result<DecodedPicture> picture = decoder_.decode(file);
        EXPECT_TRUE(picture) << picture.error().message;
        if (!picture)
            return {};
        EXPECT_EQ(picture->notice, "");
        return std::move(picture->representations[0]);
    }

    foundation::InlineWorkers workers_;
    PngDecoder decoder_{PixelBudget(10'000'000), workers_};
    Bitmap opaque_ = samples::quarters(67, 45);
    Bitmap fading_ = samples::fading(61, 37);
};

TEST_F(PngDecoderTest, ReadsEveryColourTypeAndDepthInterlacedOrNot) {
    for (const bool interlaced : {false, true}) {
        for (const int depth : {8, 16}) {
            const Bitmap rgb = read(samples::png(opaque_.view(), {depth, 2, interlaced, {}, false}));
            EXPECT_TRUE(samePixels(rgb.view(), opaque_.view())) << depth << interlaced;
            EXPECT_EQ(rgb.alphaMode(), AlphaMode::opaque);
            const Bitmap rgba = read(samples::png(fading_.view(), {depth, 6, interlaced, {}, false}));
            EXPECT_TRUE(samePixels(rgba.view(), premultiplied(fading_).view())) << depth << interlaced;
            EXPECT_EQ(rgba.alphaMode(), AlphaMode::premultiplied);
            const Bitmap grey = read(samples::png(opaque_.view(), {depth, 0, interlaced, {}, false}));
            EXPECT_TRUE(samePixels(grey.view(), greyOf(opaque_).view())) << depth << interlaced;
            const Bitmap greyAlpha = read(samples::png(fading_.view(), {depth, 4, interlaced, {}, false}));
            EXPECT_TRUE(samePixels(greyAlpha.view(), premultiplied(greyOf(fading_)).view()))
                << depth << interlaced;
        }
    }
}

TEST_F(PngDecoderTest, ReadsRowsThatFillTheirMemoryAndRowsThatDoNot) {
    for (const int width : {1, 2, 3, 15, 16, 17, 31, 32, 33, 64, 65, 112}) {
        for (const int height : {1, 2, 31}) {
            const Bitmap opaque = samples::quarters(width, height);
            const Bitmap rgb = read(samples::png(opaque.view(), {8, 2, false, {}, false}));
            EXPECT_TRUE(samePixels(rgb.view(), opaque.view())) << width << " x " << height;
            const Bitmap fading = samples::fading(width, height);
            const Bitmap rgba = read(samples::png(fading.view(), {8, 6, false, {}, false}));
            EXPECT_TRUE(samePixels(rgba.view(), premultiplied(fading).view())) << width << " x " << height;
        }
    }
}

TEST_F(PngDecoderTest, ReadsGreyOfFewBits) {
    for (const int depth : {1, 2, 4}) {
        const Bitmap grey = read(samples::png(opaque_.view(), {depth, 0, false, {}, false}));
        const int steps = (1 << depth) - 1;
        const Pixel expected = greyOf(opaque_).pixel(3, 3);
        EXPECT_EQ(grey.pixel(3, 3).red, (expected.red >> (8 - depth)) * 255 / steps) << depth;
    }
}

TEST_F(PngDecoderTest, ReadsPalettesWithTransparency) {
    Bitmap few = Bitmap::createFilled(33, 9, {10, 20, 200, 255}, AlphaMode::straight).value();
    few.setPixel(1, 1, {0, 255, 0, 128});
    few.setPixel(2, 2, {0, 0, 0, 0});
    for (const int depth : {2, 4, 8}) {
        for (const bool interlaced : {false, true}) {
            const Bitmap bitmap = read(samples::png(few.view(), {depth, 3, interlaced, {}, false}));
            EXPECT_TRUE(samePixels(bitmap.view(), premultiplied(few).view())) << depth << interlaced;
        }
    }
}

TEST_F(PngDecoderTest, KeyColourIsTransparent) {
    for (const int depth : {8, 16}) {
        Bitmap keyed = Bitmap::createFilled(8, 8, {1, 2, 3, 255}, AlphaMode::opaque).value();
        keyed.setPixel(4, 4, {9, 9, 9, 255});
        const Bitmap bitmap = read(samples::png(keyed.view(), {depth, 2, false, {}, true}));
        EXPECT_EQ(bitmap.pixel(0, 0), Pixel{});
        EXPECT_EQ(bitmap.pixel(4, 4), (Pixel{9, 9, 9, 255}));
        EXPECT_EQ(bitmap.alphaMode(), AlphaMode::premultiplied);
        for (const bool interlaced : {false, true}) {
            const Bitmap grey = read(samples::png(keyed.view(), {depth, 0, interlaced, {}, true}));
            EXPECT_EQ(grey.pixel(0, 0), Pixel{});
            EXPECT_EQ(grey.pixel(4, 4), (Pixel{9, 9, 9, 255}));
        }
    }
}

TEST_F(PngDecoderTest, AlphaThatIsFullEverywhereMakesAnOpaquePicture) {
    EXPECT_EQ(read(samples::png(opaque_.view(), {8, 6, false, {}, false})).alphaMode(), AlphaMode::opaque);
    EXPECT_EQ(read(samples::png(opaque_.view(), {16, 6, true, {}, false})).alphaMode(), AlphaMode::opaque);
}

TEST_F(PngDecoderTest, AppliesProfilesAtBothDepths) {
    const Bitmap green = Bitmap::createFilled(8, 8, {90, 160, 120, 255}, AlphaMode::opaque).value();
    const Pixel narrow =
        read(samples::png(green.view(), {8, 2, false, samples::wideProfile(), false})).pixel(4, 4);
    const Pixel wide =
        read(samples::png(green.view(), {16, 2, false, samples::wideProfile(), false})).pixel(4, 4);
    EXPECT_LT(narrow.red, 100);
    EXPECT_NEAR(narrow.red, wide.red, 1);
    EXPECT_NEAR(narrow.green, wide.green, 1);
    EXPECT_EQ(wide.alpha, 255);
    const Bitmap dark = Bitmap::createFilled(8, 8, {55, 55, 55, 255}, AlphaMode::opaque).value();
    for (const int depth : {8, 16})
        EXPECT_NEAR(read(samples::png(dark.view(), {depth, 0, false, samples::greyProfile(1.0), false}))
                        .pixel(0, 0)
                        .red,
                    128, 2);
}

TEST_F(PngDecoderTest, ColourIsConvertedBeforeItIsMultipliedByAlpha) {
    const Bitmap green = Bitmap::createFilled(8, 8, {90, 160, 120, 255}, AlphaMode::straight).value();
    const Bitmap faint = Bitmap::createFilled(8, 8, {90, 160, 120, 51}, AlphaMode::straight).value();
    const Pixel full =
        read(samples::png(green.view(), {8, 6, false, samples::wideProfile(), false})).pixel(4, 4);
    const Pixel fifth =
        read(samples::png(faint.view(), {8, 6, false, samples::wideProfile(), false})).pixel(4, 4);
    EXPECT_NEAR(fifth.green, full.green / 5.0, 0.51);
    EXPECT_EQ(fifth.alpha, 51);
}

TEST_F(PngDecoderTest, GammaIsAppliedUnlessItIsTheUsualOneOrSrgbIsNamed) {
    const Bitmap dark = Bitmap::createFilled(8, 8, {55, 55, 55, 255}, AlphaMode::opaque).value();
    const auto withGamma = [&](std::uint32_t gamma, bool srgb) {
        samples::Buffer file = samples::png(dark.view(), {8, 2, false, {}, false});
        const samples::Buffer contents = {
            static_cast<std::uint8_t>(gamma >> 24), static_cast<std::uint8_t>(gamma >> 16),
            static_cast<std::uint8_t>(gamma >> 8), static_cast<std::uint8_t>(gamma)};
        samples::insertChunk(file, "gAMA", contents);
        if (srgb)
            samples::insertChunk(file, "sRGB", samples::Buffer{0});
        return read(file).pixel(0, 0).red;
    };
    EXPECT_NEAR(withGamma(100'000, false), 128, 2);
    EXPECT_EQ(withGamma(45'455, false), 55);
    EXPECT_EQ(withGamma(100'000, true), 55);
}

TEST_F(PngDecoderTest, OrientationIsApplied) {
    samples::Buffer file = samples::png(opaque_.view(), {8, 2, false, {}, false});
    samples::insertChunk(file, "eXIf", samples::exif(6, false));
    const Bitmap turned = read(file);
    EXPECT_EQ(turned.width(), opaque_.height());
    EXPECT_EQ(turned.pixel(turned.width() - 1, 0), opaque_.pixel(0, 0));
}

TEST_F(PngDecoderTest, CompressedTextsAreNeverUnpacked) {
    const std::vector<std::uint8_t> zeros(20'000'000);
    uLongf size = compressBound(zeros.size());
    samples::Buffer packed(size);
    ASSERT_EQ(compress2(packed.data(), &size, zeros.data(), zeros.size(), 9), Z_OK);
    samples::Buffer text = {'k', 0, 0};
    text.insert(text.end(), packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(size));
    samples::Buffer file = samples::png(opaque_.view(), {8, 2, false, {}, false});
    for (int i = 0; i < 10'000; ++i)
        samples::insertChunk(file, "tEXt", samples::Buffer{'k', 0, 'v'});
    for (int i = 0; i < 50; ++i)
        samples::insertChunk(file, "zTXt", text);
    EXPECT_TRUE(samePixels(read(file).view(), opaque_.view()));
}

TEST_F(PngDecoderTest, ProfileThatUnpacksWithoutEndIsPassedOver) {
    const std::vector<std::uint8_t> zeros(40'000'000);
    uLongf size = compressBound(zeros.size());
    samples::Buffer packed(size);
    ASSERT_EQ(compress2(packed.data(), &size, zeros.data(), zeros.size(), 9), Z_OK);
    samples::Buffer profile = {'k', 0, 0};
    profile.insert(profile.end(), packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(size));
    samples::Buffer file = samples::png(opaque_.view(), {8, 2, false, {}, false});
    samples::insertChunk(file, "iCCP", profile);
    EXPECT_TRUE(samePixels(read(file).view(), opaque_.view()));
}

TEST_F(PngDecoderTest, FileCutAnywhereShowsWhatIsThereOrTellsWhy) {
    const Bitmap tall = samples::fading(40, 300);
    const Bitmap expected = premultiplied(tall);
    for (const bool interlaced : {false, true}) {
        const samples::Buffer whole = samples::png(tall.view(), {8, 6, interlaced, {}, false});
        int shown = 0;
        for (std::size_t size = 8; size + 12 + 30 < whole.size(); size += 11) {
            const samples::Buffer cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            const Result<DecodedPicture> read = decoder_.decode(cut);
            if (!read) {
                EXPECT_FALSE(read.error().message.empty());
                continue;
            }
            ++shown;
            EXPECT_EQ(read->representations[0].height(), 300);
            if (interlaced)
                continue;
            EXPECT_TRUE(samePixels(subview(read->representations[0].view(), {0, 0, 40, 1}),
                                   subview(expected.view(), {0, 0, 40, 1})));
        }
        EXPECT_GT(shown, 10);
    }
}

TEST_F(PngDecoderTest, HalfAFileShowsTheUpperRowsAndNothingBelow) {
    const Bitmap tall = samples::fading(40, 300);
    const samples::Buffer whole = samples::png(tall.view(), {8, 6, false, {}, false});
    const Result<DecodedPicture> read = decoder_.decode(Bytes(whole).first(whole.size() / 2));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->notice, "the file is cut short; what could be read is shown");
    const Bitmap expected = premultiplied(tall);
    EXPECT_TRUE(samePixels(subview(read->representations[0].view(), {0, 0, 40, 50}),
                           subview(expected.view(), {0, 0, 40, 50})));
    EXPECT_EQ(read->representations[0].pixel(39, 299), Pixel{});
}

TEST_F(PngDecoderTest, DamagedDataIsTold) {
    samples::Buffer file = samples::png(samples::fading(200, 200).view());
    file[file.size() - 40] ^= 0x55;
    const Result<DecodedPicture> read = decoder_.decode(file);
    if (read)
        EXPECT_EQ(read->notice, "the file is damaged; what could be read is shown");
    else
        EXPECT_TRUE(read.error().message.starts_with("the PNG file cannot be read: "))
            << read.error().message;
}

TEST_F(PngDecoderTest, PictureAboveTheBudgetIsRefusedFromItsHeader) {
    samples::Buffer file = samples::png(opaque_.view());
    file[16] = file[20] = 0x7F;  // width and height above two thousand million
    EXPECT_FALSE(decoder_.decode(file));
    file[16] = file[20] = 0;
    file[18] = file[22] = 0xFF;  // 65 thousand each
    EXPECT_TRUE(
        decoder_.decode(file).error().message.ends_with("megapixels, and the free memory is enough for 10"));
}

TEST_F(PngDecoderTest, FileWithoutHeaderIsRefused) {
    const samples::Buffer file = samples::png(opaque_.view());
    for (std::size_t size = 8; size < 33; ++size)
        EXPECT_FALSE(decoder_.decode(Bytes(file).first(size)));
}

}  // namespace
}  // namespace trimora::codecs
