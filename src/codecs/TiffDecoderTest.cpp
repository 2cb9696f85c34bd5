#include "codecs/TiffDecoder.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include "codecs/PixelRows.h"
#include "codecs/SampleFilesForTests.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Pixel;
using foundation::Result;
using samples::TiffOptions;

class TiffDecoderTest : public ::testing::Test {
 protected:
    Bitmap read(const Bitmap& picture, const TiffOptions& options) {
        Result<DecodedPicture> read = decoder_.decode(samples::tiff({{picture.view(), options}}));
        EXPECT_TRUE(read) << read.error().message;
        if (!read)
            return {};
        EXPECT_EQ(read->notice, "");
        return std::move(read->representations[0]);
    }

    static TiffOptions opaqueOptions() {
        TiffOptions options;
        options.alpha = -1;
        return options;
    }

    foundation::InlineWorkers workers_;
    TiffDecoder decoder_{PixelBudget(10'000'000), workers_};
    Bitmap opaque_ = samples::quarters(67, 45);
    Bitmap fading_ = samples::fading(61, 37);
};

TEST_F(TiffDecoderTest, ReadsRgbOfEightAndSixteenBitsInStripsAndTilesOfBothByteOrders) {
    for (const int bits : {8, 16}) {
        for (const int tile : {0, 32}) {
            for (const bool bigEndian : {false, true}) {
                TiffOptions options = opaqueOptions();
                options.bits = bits;
                options.tile = tile;
                options.bigEndian = bigEndian;
                const Bitmap bitmap = read(opaque_, options);
                EXPECT_TRUE(samePixels(bitmap.view(), opaque_.view())) << bits << ' ' << tile;
                EXPECT_EQ(bitmap.alphaMode(), AlphaMode::opaque);
            }
        }
    }
}

TEST_F(TiffDecoderTest, ReadsEveryPacking) {
    for (const int packing : {COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE,
                              COMPRESSION_DEFLATE, COMPRESSION_PACKBITS, COMPRESSION_ZSTD}) {
        TiffOptions options = opaqueOptions();
        options.packing = packing;
        EXPECT_TRUE(samePixels(read(opaque_, options).view(), opaque_.view())) << packing;
    }
}

TEST_F(TiffDecoderTest, ReadsBothKindsOfAlphaAtBothDepths) {
    Bitmap expected = fading_.clone().value();
    for (int y = 0; y < expected.height(); ++y)
        premultiply(expected.row(y), 61);
    for (const int bits : {8, 16}) {
        for (const int kind : {EXTRASAMPLE_UNASSALPHA, EXTRASAMPLE_ASSOCALPHA}) {
            TiffOptions options;
            options.bits = bits;
            options.alpha = kind;
            const Bitmap bitmap = read(fading_, options);
            EXPECT_TRUE(samePixels(bitmap.view(), expected.view())) << bits << ' ' << kind;
            EXPECT_EQ(bitmap.alphaMode(), AlphaMode::premultiplied);
        }
    }
}

TEST_F(TiffDecoderTest, ExtraSampleOfUnstatedMeaningIsNoTransparency) {
    TiffOptions options;
    options.alpha = EXTRASAMPLE_UNSPECIFIED;
    EXPECT_EQ(read(fading_, options).alphaMode(), AlphaMode::opaque);
}

TEST_F(TiffDecoderTest, ReadsGreyOfBothSenses) {
    for (const int bits : {8, 16}) {
        TiffOptions options = opaqueOptions();
        options.bits = bits;
        options.photometric = PHOTOMETRIC_MINISBLACK;
        const Bitmap black = read(opaque_, options);
        options.photometric = PHOTOMETRIC_MINISWHITE;
        const Bitmap white = read(opaque_, options);
        const Pixel p = opaque_.pixel(3, 3);
        const int grey = (p.red * 30 + p.green * 59 + p.blue * 11 + 50) / 100;
        EXPECT_EQ(black.pixel(3, 3).blue, grey) << bits;
        EXPECT_TRUE(samePixels(black.view(), white.view())) << bits;
    }
}

TEST_F(TiffDecoderTest, ReadsInksWithoutAProfileAndWithOne) {
    for (const int bits : {8, 16}) {
        TiffOptions options = opaqueOptions();
        options.bits = bits;
        options.photometric = PHOTOMETRIC_SEPARATED;
        EXPECT_LE(samples::largestDifference(read(opaque_, options).view(), opaque_.view()), 1) << bits;
        options.icc = samples::inkProfile();
        const Bitmap bitmap = read(opaque_, options);
        EXPECT_LE(samples::largestDifference(bitmap.view(), opaque_.view()), 12) << bits;
        EXPECT_EQ(bitmap.alphaMode(), AlphaMode::opaque);
    }
}

TEST_F(TiffDecoderTest, ReadsSeparatePlanes) {
    TiffOptions options = opaqueOptions();
    options.separatePlanes = true;
    EXPECT_TRUE(samePixels(read(opaque_, options).view(), opaque_.view()));
}

TEST_F(TiffDecoderTest, AppliesAProfileAtBothDepths) {
    const Bitmap green = Bitmap::createFilled(8, 8, {90, 160, 120, 255}, AlphaMode::opaque).value();
    TiffOptions options = opaqueOptions();
    options.icc = samples::wideProfile();
    const Pixel narrow = read(green, options).pixel(4, 4);
    options.bits = 16;
    const Pixel wide = read(green, options).pixel(4, 4);
    EXPECT_LT(narrow.red, 100);
    EXPECT_NEAR(narrow.red, wide.red, 1);
    EXPECT_EQ(wide.alpha, 255);
}

TEST_F(TiffDecoderTest, OrientationIsApplied) {
    for (const bool separate : {false, true}) {  // as it is, and through the library's conversion
        TiffOptions options = opaqueOptions();
        options.separatePlanes = separate;
        options.orientation = 8;
        const Bitmap turned = read(opaque_, options);
        EXPECT_EQ(turned.width(), opaque_.height());
        EXPECT_EQ(turned.pixel(0, turned.height() - 1), opaque_.pixel(0, 0)) << separate;
    }
}

TEST_F(TiffDecoderTest, EveryPageIsARepresentationAndTheSizeIsTheLargestOfEachSide) {
    const Bitmap wide = samples::quarters(90, 10);
    const Bitmap high = samples::quarters(20, 70);
    const Result<DecodedPicture> read =
        decoder_.decode(samples::tiff({{wide.view(), opaqueOptions()}, {high.view(), opaqueOptions()}}));
    ASSERT_TRUE(read);
    ASSERT_EQ(read->representations.size(), 2U);
    EXPECT_TRUE(samePixels(read->representations[0].view(), wide.view()));
    EXPECT_TRUE(samePixels(read->representations[1].view(), high.view()));
}

TEST_F(TiffDecoderTest, ScreenAndDoubleResolutionOfOnePictureAreBothHeld) {
    const Bitmap single = samples::quarters(60, 40);
    const Bitmap twice = samples::quarters(120, 80);
    TiffOptions fine = opaqueOptions();
    fine.dotsPerInch = 144;
    const Result<DecodedPicture> read =
        decoder_.decode(samples::tiff({{single.view(), opaqueOptions()}, {twice.view(), fine}}));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->representations[0].width(), 60);
    EXPECT_EQ(read->representations[1].width(), 120);
}

TEST_F(TiffDecoderTest, ProductOfTheLargestSidesIsWithinTheBudgetToo) {
    const TiffDecoder tight(PixelBudget(50'000), workers_);
    const Bitmap wide = samples::quarters(1000, 10);
    const Bitmap high = samples::quarters(10, 1000);
    EXPECT_TRUE(tight.decode(samples::tiff({{wide.view(), opaqueOptions()}})));
    const Result<DecodedPicture> both =
        tight.decode(samples::tiff({{wide.view(), opaqueOptions()}, {high.view(), opaqueOptions()}}));
    ASSERT_FALSE(both);
    EXPECT_NE(both.error().message.find("megapixels"), std::string::npos);
}

TEST_F(TiffDecoderTest, PixelsOfAllPagesTogetherAreWithinTheBudget) {
    const TiffDecoder tight(PixelBudget(5'000), workers_);
    const std::vector<samples::TiffPicture> pages(3, {opaque_.view(), opaqueOptions()});
    EXPECT_TRUE(tight.decode(samples::tiff({pages[0]})));
    EXPECT_FALSE(tight.decode(samples::tiff(pages)));
}

TEST_F(TiffDecoderTest, DirectoriesThatFormALoopEnd) {
    samples::Buffer file = samples::tiff({{opaque_.view(), opaqueOptions()}});
    const std::uint32_t directory = u32(file, 4, ByteOrder::little);
    const std::uint32_t entries = u16(file, directory, ByteOrder::little);
    const std::size_t next = directory + 2 + entries * 12;
    std::copy(file.begin() + 4, file.begin() + 8, file.begin() + static_cast<std::ptrdiff_t>(next));
    const Result<DecodedPicture> read = decoder_.decode(file);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->representations.size(), 1U);
}

TEST_F(TiffDecoderTest, PagesThatAreCutOffAreTold) {
    const samples::TiffPicture page{opaque_.view(), opaqueOptions()};
    samples::Buffer file = samples::tiff({page, page});
    file.resize(file.size() / 2 + 100);
    const Result<DecodedPicture> read = decoder_.decode(file);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->representations.size(), 1U);
    EXPECT_EQ(read->notice, kDamaged);
}

TEST_F(TiffDecoderTest, FileCutAnywhereShowsWhatIsThereOrTellsWhy) {
    // The directory is put before the pixels, as a camera does, by writing the pixels last.
    const samples::Buffer whole = samples::tiff({{opaque_.view(), opaqueOptions()}});
    for (std::size_t size = 4; size < whole.size(); size += 101) {
        const samples::Buffer cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        const Result<DecodedPicture> read = decoder_.decode(cut);
        if (read)
            EXPECT_NE(read->notice, "");
        else
            EXPECT_FALSE(read.error().message.empty());
    }
}

TEST_F(TiffDecoderTest, StripThatIsMissingLeavesItsRowsTransparentAndIsTold) {
    samples::Buffer file = samples::tiff({{opaque_.view(), opaqueOptions()}});
    const std::uint32_t directory = u32(file, 4, ByteOrder::little);
    for (std::uint32_t i = 0; i < u16(file, directory, ByteOrder::little); ++i) {
        const std::size_t entry = directory + 2 + i * 12;
        if (u16(file, entry, ByteOrder::little) != TIFFTAG_STRIPOFFSETS)
            continue;
        const std::uint32_t offsets = u32(file, entry + 8, ByteOrder::little);
        file[offsets + 5 * 4 + 3] = 0x7F;  // the sixth strip lies far beyond the end
    }
    const Result<DecodedPicture> read = decoder_.decode(file);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->notice, "the file is damaged; what could be read is shown");
    EXPECT_EQ(read->representations[0].pixel(5, 34), opaque_.pixel(5, 34));
    EXPECT_EQ(read->representations[0].pixel(5, 35), Pixel{});
    EXPECT_EQ(read->representations[0].alphaMode(), AlphaMode::premultiplied);
}

}  // namespace
}  // namespace trimora::codecs
