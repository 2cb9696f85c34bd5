#include "cutengine/kernels/ResultComposer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "cutengine/kernels/RandomMask.h"
#include "cutengine/kernels/RandomPicture.h"
#include "foundation/ThreadQueues.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::BitmapView;
using foundation::InlineWorkers;
using foundation::Pixel;
using foundation::samePixels;

/// Where pixel i of a line of `to` lies on a line of `from`.
double placeOf(int i, int from, int to) {
    return std::clamp((i + 0.5) * from / to - 0.5, 0.0, from - 1.0);
}

/// The place rounded to 4096ths, found from the whole numbers on both sides of it.
std::int64_t roundedPlaceOf(int i, int from, int to) {
    const std::int64_t numerator = ((2 * std::int64_t{i} + 1) * from - to) * 4096;
    const std::int64_t denominator = 2 * std::int64_t{to};
    std::int64_t place = 0;
    while ((2 * place + 1) * denominator <= 2 * numerator && place < std::int64_t{from - 1} * 4096)
        ++place;
    return place;
}

struct Places {
    std::vector<std::int64_t> x;
    std::vector<std::int64_t> y;
};

Places roundedPlaces(const MaskSnapshot& mask, BitmapView picture) {
    Places places;
    for (int x = 0; x < picture.width; ++x)
        places.x.push_back(roundedPlaceOf(x, mask.width(), picture.width));
    for (int y = 0; y < picture.height; ++y)
        places.y.push_back(roundedPlaceOf(y, mask.height(), picture.height));
    return places;
}

/// The mask at a place in 4096ths, in 65536ths of a level.
std::uint64_t plainCoverage(const MaskSnapshot& mask, std::int64_t x, std::int64_t y) {
    const MaskSnapshot::Level& level = mask.levels().front();
    std::uint64_t sum = 0;
    for (int dy = 0; dy < 2; ++dy) {
        for (int dx = 0; dx < 2; ++dx) {
            const auto column = std::min(static_cast<int>(x / 4096) + dx, level.width - 1);
            const auto row = std::min(static_cast<int>(y / 4096) + dy, level.height - 1);
            const std::int64_t weight =
                (dx == 1 ? x % 4096 : 4096 - x % 4096) * (dy == 1 ? y % 4096 : 4096 - y % 4096);
            sum += level.alphaAt(column, row) * static_cast<std::uint64_t>(weight);
        }
    }
    return (sum + 128) / 256;
}

struct Straight {
    double colour[3];
    double alpha;
};

/// The definition of composing, with the mask m in 0..1.
Straight plainComposed(Pixel p, double m, Pixel b) {
    const double through = 1 - p.alpha / 255.0 * m;
    const auto mix = [&](std::uint8_t top, std::uint8_t bottom) { return top * m + bottom * through; };
    const double alpha = mix(p.alpha, b.alpha);
    const auto straight = [&](std::uint8_t top, std::uint8_t bottom) {
        return alpha == 0 ? 0 : std::min(255.0, mix(top, bottom) * 255 / alpha);
    };
    return {{straight(p.blue, b.blue), straight(p.green, b.green), straight(p.red, b.red)}, alpha};
}

Pixel backgroundPixel(const Background& background, int x, int y) {
    if (background.kind == Background::Kind::hidden)
        return {};
    if (background.kind == Background::Kind::colour)
        return background.colour;
    Pixel pixel;
    std::memcpy(&pixel, background.picture.row(y) + 4 * x, sizeof pixel);
    return pixel;
}

/// The exact whole-number definition, from the widest numbers at hand and with nothing skipped.
Bitmap plainResult(const Bitmap& picture, const MaskSnapshot& mask, const Background& background) {
    Bitmap result = Bitmap::create(picture.width(), picture.height(), AlphaMode::straight).value();
    const Places places = roundedPlaces(mask, picture.view());
    constexpr std::uint64_t kFull = 255 * 65536;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const Pixel p = picture.pixel(x, y);
            const Pixel b = backgroundPixel(background, x, y);
            const std::uint64_t c = plainCoverage(mask, places.x[static_cast<std::size_t>(x)],
                                                  places.y[static_cast<std::size_t>(y)]);
            const auto mix = [&](std::uint64_t top, std::uint64_t bottom) {
                return top * 255 * c + bottom * (255 * kFull - p.alpha * c);
            };
            const std::uint64_t alpha = mix(p.alpha, b.alpha);
            const auto rounded = static_cast<std::uint8_t>((2 * alpha + 255 * kFull) / (2 * 255 * kFull));
            const auto straight = [&](std::uint8_t top, std::uint8_t bottom) {
                const std::uint64_t value =
                    rounded == 0 ? 0 : (2 * 255 * mix(top, bottom) + alpha) / (2 * alpha);
                return static_cast<std::uint8_t>(std::min<std::uint64_t>(value, 255));
            };
            result.setPixel(
                x, y,
                {straight(p.blue, b.blue), straight(p.green, b.green), straight(p.red, b.red), rounded});
        }
    }
    return result;
}

Bitmap composed(const Bitmap& picture, const MaskSnapshot* mask, const Background& background,
                int workerCount = 1) {
    foundation::ThreadWorkers workers(workerCount);
    Bitmap result =
        Bitmap::createFilled(picture.width(), picture.height(), {9, 9, 9, 9}, AlphaMode::straight).value();
    composeResult(picture.view(), mask, background, result.view(), workers);
    return result;
}

/// Hidden, two colours, an opaque and a translucent picture.
std::vector<Background> backgrounds(const Bitmap& opaque, const Bitmap& translucent) {
    return {{},
            {Background::Kind::colour, {10, 200, 90, 255}, {}},
            {Background::Kind::colour, {10, 50, 40, 77}, {}},
            {Background::Kind::picture, {}, opaque.view()},
            {Background::Kind::picture, {}, translucent.view()}};
}

TEST(ResultComposer, RandomPicturesAndMasksEqualTheWholeNumberDefinition) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 20; ++round) {
        const int width = randomBetween(random, 1, 150);
        const int height = randomBetween(random, 1, 150);
        const int divisor = randomBetween(random, 1, 4);
        const auto mode = round % 3 == 0 ? AlphaMode::premultiplied : AlphaMode::opaque;
        const Bitmap picture = randomPicture(random, width, height, mode);
        const auto mask = snapshotOf(
            randomMaskPlane(random, (width + divisor - 1) / divisor, (height + divisor - 1) / divisor));
        const Bitmap opaque = randomPicture(random, width, height, AlphaMode::opaque);
        const Bitmap translucent = randomPicture(random, width, height);
        for (const Background& background : backgrounds(opaque, translucent)) {
            const Bitmap expected = plainResult(picture, *mask, background);
            for (const int workers : {1, 3})
                EXPECT_TRUE(
                    samePixels(composed(picture, mask.get(), background, workers).view(), expected.view()))
                    << width << " x " << height << " / " << divisor;
        }
    }
}

TEST(ResultComposer, OpaqueResultsAreWithinOneLevelOfTheRealNumbers) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 300, 200, AlphaMode::opaque);
    const Bitmap behind = randomPicture(random, 300, 200, AlphaMode::opaque);
    const auto mask = snapshotOf(randomMaskPlane(random, 101, 67));
    const MaskSnapshot::Level& level = mask->levels().front();
    const Background background{Background::Kind::picture, {}, behind.view()};
    const Bitmap result = composed(picture, mask.get(), background);
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 300; ++x) {
            const double atX = placeOf(x, 101, 300);
            const double atY = placeOf(y, 67, 200);
            const int column = static_cast<int>(atX);
            const int row = static_cast<int>(atY);
            const auto across = [&](int line) {
                return std::lerp(level.alphaAt(column, line), level.alphaAt(std::min(column + 1, 100), line),
                                 atX - column);
            };
            const double m = std::lerp(across(row), across(std::min(row + 1, 66)), atY - row) / 255;
            const Straight exact = plainComposed(picture.pixel(x, y), m, behind.pixel(x, y));
            ASSERT_LT(std::abs(exact.colour[0] - result.pixel(x, y).blue), 1);
            ASSERT_LT(std::abs(exact.colour[1] - result.pixel(x, y).green), 1);
            ASSERT_LT(std::abs(exact.colour[2] - result.pixel(x, y).red), 1);
            ASSERT_EQ(result.pixel(x, y).alpha, 255);
        }
    }
}

TEST(ResultComposer, SoftEdgesOfAnOpaquePictureKeepItsColourOverNothing) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 256, 4, AlphaMode::opaque);
    Bitmap plane = Bitmap::create(256, 4).value();
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 256; ++x)
            plane.setPixel(x, y, {0, 0, 0, static_cast<std::uint8_t>(x)});
    }
    const Bitmap result = composed(picture, snapshotOf(plane).get(), {});
    for (int x = 0; x < 256; ++x) {
        Pixel expected = picture.pixel(x, 2);
        expected.alpha = static_cast<std::uint8_t>(x);
        EXPECT_EQ(result.pixel(x, 2), x == 0 ? Pixel{} : expected) << x;
    }
}

TEST(ResultComposer, NoColourUnderAlphaZero) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 120, 80);
    const auto mask = snapshotOf(randomMaskPlane(random, 40, 30));
    const Bitmap result = composed(picture, mask.get(), {});
    for (int y = 0; y < 80; ++y) {
        for (int x = 0; x < 120; ++x) {
            if (result.pixel(x, y).alpha == 0) {
                EXPECT_EQ(result.pixel(x, y), Pixel{});
            }
        }
    }
}

TEST(ResultComposer, CutAwayAreasAreClearOverAHiddenBackground) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 90, 60, AlphaMode::opaque);
    const auto mask = snapshotOf(Bitmap::createFilled(90, 60, {}).value());
    EXPECT_TRUE(samePixels(composed(picture, mask.get(), {}).view(),
                           Bitmap::createFilled(90, 60, {}).value().view()));
}

TEST(ResultComposer, ColourFillsTheWholeRectangleWhereTheMaskIsCut) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 90, 60, AlphaMode::opaque);
    const auto mask = snapshotOf(Bitmap::createFilled(30, 20, {}).value());
    const Background half{Background::Kind::colour, {20, 40, 60, 120}, {}};
    EXPECT_TRUE(samePixels(composed(picture, mask.get(), half).view(),
                           Bitmap::createFilled(90, 60, {43, 85, 128, 120}).value().view()));
}

TEST(ResultComposer, WithoutAMaskAllOfThePictureShows) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 33, 21, AlphaMode::opaque);
    EXPECT_TRUE(samePixels(composed(picture, nullptr, {}).view(), picture.view()));
}

TEST(ResultComposer, BackgroundOfAnotherSizeIsStretchedOverThePicture) {
    Bitmap behind = Bitmap::createFilled(2, 1, {0, 0, 0, 255}, AlphaMode::opaque).value();
    behind.setPixel(1, 0, {200, 200, 200, 255});
    const Bitmap picture = Bitmap::createFilled(8, 2, {1, 1, 1, 255}, AlphaMode::opaque).value();
    const auto mask = snapshotOf(Bitmap::createFilled(8, 2, {}).value());
    const Bitmap result = composed(picture, mask.get(), {Background::Kind::picture, {}, behind.view()});
    const int expected[] = {0, 0, 25, 75, 125, 175, 200, 200};
    for (int x = 0; x < 8; ++x)
        EXPECT_EQ(result.pixel(x, 1).green, expected[x]) << x;
}

/// Rows `first` to `end` composed by themselves, over a background of Kind::rows in their own memory where
/// `behind` has one.
Bitmap composedRows(const Bitmap& picture, const MaskSnapshot* mask, Background background,
                    const Bitmap* behind, int first, int end) {
    foundation::ThreadWorkers workers(2);
    Bitmap rows = Bitmap::create(picture.width(), end - first, AlphaMode::straight).value();
    if (behind != nullptr) {
        copyPixels(subview(behind->view(), {0, first, rows.width(), rows.height()}), rows.view());
        background = {Background::Kind::rows, {}, rows.view()};
        background.picture.alphaMode = behind->alphaMode();
    }
    composeRows(picture.view(), mask, background, first, rows.view(), workers);
    return rows;
}

TEST(ResultComposer, SomeRowsAreThoseOfTheWholeResult) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 20; ++round) {
        const int width = randomBetween(random, 1, 150);
        const int height = randomBetween(random, 1, 400);
        const auto mode = round % 3 == 0 ? AlphaMode::premultiplied : AlphaMode::opaque;
        const Bitmap picture = randomPicture(random, width, height, mode);
        const auto mask = snapshotOf(randomMaskPlane(random, (width + 1) / 2, (height + 1) / 2));
        const Bitmap opaque = randomPicture(random, width, height, AlphaMode::opaque);
        const Bitmap translucent = randomPicture(random, width, height);
        const int first = randomBetween(random, 0, height - 1);
        const int end = randomBetween(random, first + 1, height);
        const foundation::IntRect part{0, first, width, end - first};
        for (const Background& background : backgrounds(opaque, translucent)) {
            const Bitmap whole = composed(picture, mask.get(), background);
            EXPECT_TRUE(samePixels(composedRows(picture, mask.get(), background, nullptr, first, end).view(),
                                   subview(whole.view(), part)));
        }
        for (const Bitmap* const behind : {&opaque, &translucent}) {
            const Bitmap whole =
                composed(picture, mask.get(), {Background::Kind::picture, {}, behind->view()});
            EXPECT_TRUE(samePixels(composedRows(picture, mask.get(), {}, behind, first, end).view(),
                                   subview(whole.view(), part)));
        }
    }
}

TEST(ResultComposer, ResultsTooLargeForTheCachesAreMadeOfTheSameRows) {
    constexpr int kWidth = 2003;
    constexpr int kHeight = 1100;
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, kWidth, kHeight, AlphaMode::opaque);
    const Bitmap behind = randomPicture(random, kWidth, kHeight, AlphaMode::opaque);
    const auto mask = snapshotOf(randomMaskPlane(random, 700, 400));
    const Background kinds[] = {{}, {Background::Kind::picture, {}, behind.view()}};
    for (const Background& background : kinds) {
        const Bitmap whole = composed(picture, mask.get(), background);
        for (int y = 0; y < kHeight; y += 100) {
            const Bitmap rows = composedRows(picture, mask.get(), background, nullptr, y, y + 100);
            EXPECT_TRUE(samePixels(rows.view(), subview(whole.view(), {0, y, kWidth, 100}))) << y;
        }
    }
}

}  // namespace
}  // namespace trimora::cutengine::kernels
