#include "codecs/PngEncoder.h"

#include <gtest/gtest.h>

#include <string>

#include "codecs/PixelRows.h"
#include "codecs/PngDecoder.h"
#include "codecs/SampleFilesForTests.h"
#include "foundation/ThreadQueues.h"
#include "testing/Seed.h"

namespace trimora::codecs {
namespace {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::BitmapView;
using foundation::Error;
using foundation::Pixel;
using foundation::Result;

class PngEncoderTest : public ::testing::Test {
 protected:
    samples::Buffer encoded(BitmapView picture) {
        samples::Buffer file;
        const Result<void> outcome = encoder_.encodePng(picture, [&](std::span<const std::uint8_t> bytes) {
            file.insert(file.end(), bytes.begin(), bytes.end());
            return Result<void>();
        });
        EXPECT_TRUE(outcome);
        return file;
    }

    foundation::ThreadWorkers workers_{2};
    PngEncoder encoder_{workers_};
};

Bitmap noise(int width, int height, AlphaMode mode) {
    std::mt19937_64 random = testing::seededGenerator();
    Bitmap bitmap = Bitmap::create(width, height, mode).value();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint64_t bits = random();
            Pixel pixel{static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8),
                        static_cast<std::uint8_t>(bits >> 16), static_cast<std::uint8_t>(bits >> 24)};
            if (mode == AlphaMode::opaque)
                pixel.alpha = 255;
            else if (pixel.alpha == 0)
                pixel = {};
            bitmap.setPixel(x, y, pixel);
        }
    }
    return bitmap;
}

TEST_F(PngEncoderTest, StraightPixelsComeBackAsTheyAre) {
    for (const auto& [width, height] : {std::pair(1, 1), std::pair(1, 3000), std::pair(3000, 1),
                                        std::pair(255, 255), std::pair(700, 1500)}) {
        const Bitmap picture = noise(width, height, AlphaMode::straight);
        EXPECT_TRUE(samePixels(samples::readByLibpng(encoded(picture.view())).view(), picture.view()))
            << width << " x " << height;
    }
}

/// Squares of a few colours in a pattern that comes again and again, as a drawing has them.
Bitmap pattern(int width, int height) {
    Bitmap bitmap = Bitmap::create(width, height, AlphaMode::straight).value();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto shade = static_cast<std::uint8_t>((x % 23 * 37 + y % 19 * 11) % 256);
            bitmap.setPixel(x, y, {shade, static_cast<std::uint8_t>(shade / 2), 40, 255});
        }
    }
    return bitmap;
}

TEST_F(PngEncoderTest, PatternsComeBackAndAreSmall) {
    const Bitmap picture = pattern(1200, 1200);
    const samples::Buffer file = encoded(picture.view());
    EXPECT_TRUE(samePixels(samples::readByLibpng(file).view(), picture.view()));
    EXPECT_LT(file.size(), std::size_t{1200} * 1200 * 4 / 50);
}

TEST_F(PngEncoderTest, PartsOfAPictureThatArePackedInDifferentWaysComeBack) {
    Bitmap picture = noise(1000, 4000, AlphaMode::opaque);
    picture.setAlphaMode(AlphaMode::straight);
    const Bitmap drawn = pattern(1000, 1200);
    foundation::copyPixels(drawn.view(), foundation::subview(picture.view(), {0, 1500, 1000, 1200}));
    foundation::copyPixels(Bitmap::createFilled(1000, 700, {}, AlphaMode::straight)->view(),
                           foundation::subview(picture.view(), {0, 3000, 1000, 700}));
    EXPECT_TRUE(samePixels(samples::readByLibpng(encoded(picture.view())).view(), picture.view()));
}

TEST_F(PngEncoderTest, SmoothPicturesComeBackThroughEveryFilter) {
    const Bitmap picture = samples::fading(900, 700);
    EXPECT_TRUE(samePixels(samples::readByLibpng(encoded(picture.view())).view(), picture.view()));
}

TEST_F(PngEncoderTest, OpaquePicturesAreWrittenWithAlphaToo) {
    const Bitmap picture = noise(50, 40, AlphaMode::opaque);
    const samples::Buffer file = encoded(picture.view());
    EXPECT_EQ(file[24], 8);  // bits a sample
    EXPECT_EQ(file[25], 6);  // RGB with alpha
    EXPECT_TRUE(samePixels(samples::readByLibpng(file).view(), picture.view()));
}

TEST_F(PngEncoderTest, PremultipliedColoursAreDividedExactly) {
    Bitmap picture = Bitmap::create(256, 256, AlphaMode::premultiplied).value();
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int colour = 0; colour < 256; ++colour) {
            const auto c = static_cast<std::uint8_t>(std::min(colour, alpha));
            picture.setPixel(colour, alpha, {c, c, c, static_cast<std::uint8_t>(alpha)});
        }
    }
    const Bitmap read = samples::readByLibpng(encoded(picture.view()));
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int colour = 0; colour < 256; ++colour) {
            const int c = std::min(colour, alpha);
            const int expected = alpha == 0 ? 0 : (c * 255 * 2 + alpha) / (alpha * 2);
            ASSERT_EQ(read.pixel(colour, alpha).red, expected) << c << " under " << alpha;
        }
    }
}

TEST_F(PngEncoderTest, NoColourIsLeftUnderAlphaZero) {
    for (const AlphaMode mode : {AlphaMode::straight, AlphaMode::premultiplied}) {
        const Bitmap picture = Bitmap::createFilled(9, 9, {10, 20, 30, 0}, mode).value();
        EXPECT_EQ(samples::readByLibpng(encoded(picture.view())).pixel(4, 4), Pixel{});
    }
}

TEST_F(PngEncoderTest, OwnReaderReadsBackThePremultipliedPixels) {
    Bitmap picture = noise(333, 222, AlphaMode::straight);
    for (int y = 0; y < picture.height(); ++y)
        premultiply(picture.row(y), 333);
    picture.setAlphaMode(AlphaMode::premultiplied);
    const PngDecoder decoder(PixelBudget(1'000'000), workers_);
    const Result<cutengine::DecodedPicture> read = decoder.decode(encoded(picture.view()));
    ASSERT_TRUE(read);
    EXPECT_TRUE(samePixels(read->representations[0].view(), picture.view()));
}

TEST_F(PngEncoderTest, PartOfAPictureIsWrittenByItself) {
    const Bitmap picture = noise(100, 100, AlphaMode::straight);
    const BitmapView part = subview(picture.view(), {13, 17, 40, 50});
    EXPECT_TRUE(samePixels(samples::readByLibpng(encoded(part)).view(), part));
}

TEST_F(PngEncoderTest, FileHoldsThePictureAndItsColourSpaceAndNothingElse) {
    const samples::Buffer file = encoded(noise(20, 20, AlphaMode::straight).view());
    std::string types;
    for (std::size_t at = 8; at + 8 <= file.size(); at += 12 + u32(file, at))
        types += std::string(file.begin() + static_cast<std::ptrdiff_t>(at + 4),
                             file.begin() + static_cast<std::ptrdiff_t>(at + 8)) +
                 ' ';
    EXPECT_EQ(types, "IHDR sRGB IDAT IEND ");
}

TEST_F(PngEncoderTest, ErrorOfTheOutputEndsTheEncodingAtEveryPiece) {
    const Bitmap picture = noise(600, 1200, AlphaMode::straight);
    int pieces = 0;
    (void)encoder_.encodePng(picture.view(), [&](auto) {
        ++pieces;
        return Result<void>();
    });
    ASSERT_GT(pieces, 4);
    for (int failing = 0; failing < pieces; ++failing) {
        int seen = 0;
        const Result<void> outcome =
            encoder_.encodePng(picture.view(), [&](std::span<const std::uint8_t>) -> Result<void> {
                if (seen++ == failing)
                    return Error{"the disk is full"};
                return {};
            });
        EXPECT_EQ(outcome.error().message, "the disk is full");
        EXPECT_EQ(seen, failing + 1);
    }
}

TEST_F(PngEncoderTest, EmptyPictureIsAnError) {
    EXPECT_FALSE(encoder_.encodePng(foundation::BitmapView(), [](auto) { return Result<void>(); }));
}

/// A picture of which no more than the rows that were asked for is there at a time.
class RowsOnDemand final : public cutengine::PictureRows {
 public:
    RowsOnDemand(BitmapView source, int rowsThatFit) : source_(source), rowsThatFit_(rowsThatFit) {}

    [[nodiscard]] int width() const override { return source_.width; }
    [[nodiscard]] int height() const override { return source_.height; }
    [[nodiscard]] Result<BitmapView> rows(int first, int end, Bitmap& room) const override {
        if (end - first > rowsThatFit_)
            return Error{"too many rows at a time"};
        room = Bitmap::create(source_.width, end - first, source_.alphaMode).value();
        copyPixels(subview(source_, {0, first, source_.width, end - first}), room.view());
        return BitmapView(room.view());
    }

 private:
    BitmapView source_;
    int rowsThatFit_;
};

TEST_F(PngEncoderTest, PictureMadeByTheRowGivesTheSameFileInThirtyTwoMegabytes) {
    const Bitmap picture = pattern(4000, 2300);
    const int fitting = (32 << 20) / (4000 * 4) + 1;
    samples::Buffer file;
    const Result<void> outcome =
        encoder_.encodePng(RowsOnDemand(picture.view(), fitting), [&](std::span<const std::uint8_t> bytes) {
            file.insert(file.end(), bytes.begin(), bytes.end());
            return Result<void>();
        });
    ASSERT_TRUE(outcome) << outcome.error().message;
    EXPECT_EQ(file, encoded(picture.view()));
    EXPECT_TRUE(samePixels(samples::readByLibpng(file).view(), picture.view()));
}

TEST_F(PngEncoderTest, RowsThatCannotBeMadeEndTheEncoding) {
    const Bitmap picture = pattern(100, 100);
    const Result<void> outcome = encoder_.encodePng(
        RowsOnDemand(picture.view(), 10), [](std::span<const std::uint8_t>) { return Result<void>(); });
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().message, "too many rows at a time");
}

}  // namespace
}  // namespace trimora::codecs
