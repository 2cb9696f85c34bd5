#include "cutengine/kernels/Resample.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <numbers>

#include "cutengine/kernels/EveryInstructionSet.h"
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

double sinc(double x) {
    return x == 0 ? 1 : std::sin(std::numbers::pi * x) / (std::numbers::pi * x);
}

double filterAt(Filter filter, double x) {
    if (filter == Filter::triangle)
        return std::abs(x) < 1 ? 1 - std::abs(x) : 0;
    return std::abs(x) < 3 ? sinc(x) * sinc(x / 3) : 0;
}

/// The filter as it is told: every sample near enough, both ways at once, in real numbers.
std::array<double, 4> plainSample(BitmapView from, int width, int height, int x, int y, Filter filter) {
    const double ratioX = static_cast<double>(from.width) / width;
    const double ratioY = static_cast<double>(from.height) / height;
    const double centreX = (x + 0.5) * ratioX;
    const double centreY = (y + 0.5) * ratioY;
    const double wideX = std::max(ratioX, 1.0);
    const double wideY = std::max(ratioY, 1.0);
    std::array<double, 4> sums{};
    double whole = 0;
    for (int row = static_cast<int>(centreY - 3 * wideY) - 2; row < centreY + 3 * wideY + 2; ++row) {
        for (int column = static_cast<int>(centreX - 3 * wideX) - 2; column < centreX + 3 * wideX + 2;
             ++column) {
            const double weight = filterAt(filter, (column + 0.5 - centreX) / wideX) *
                                  filterAt(filter, (row + 0.5 - centreY) / wideY);
            const std::uint8_t* const pixel =
                from.row(std::clamp(row, 0, from.height - 1)) + 4 * std::clamp(column, 0, from.width - 1);
            for (std::size_t i = 0; i < 4; ++i)
                sums[i] += pixel[i] * weight;
            whole += weight;
        }
    }
    for (double& sum : sums)
        sum /= whole;
    sums[3] = std::clamp(sums[3], 0.0, 255.0);
    for (std::size_t i = 0; i < 3; ++i)
        sums[i] = std::clamp(sums[i], 0.0, sums[3]);
    return sums;
}

Bitmap resampled(const Bitmap& from, int width, int height, int workerCount = 1,
                 Filter filter = Filter::lanczos) {
    foundation::ThreadWorkers workers(workerCount);
    Bitmap to = Bitmap::createFilled(width, height, {1, 2, 3, 4}, from.alphaMode()).value();
    resample(from.view(), to.view(), workers, filter);
    return to;
}

TEST(Resample, RandomPicturesAreWithinOneLevelOfTheRealNumbersOnEveryInstructionSet) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 20; ++round) {
        const Filter filter = round % 2 == 0 ? Filter::lanczos : Filter::triangle;
        const Bitmap picture =
            randomPicture(random, randomBetween(random, 1, 60), randomBetween(random, 1, 60));
        const int width = randomBetween(random, 1, 90);
        const int height = randomBetween(random, 1, 90);
        onEveryInstructionSet([&] {
            const Bitmap scaled = resampled(picture, width, height, 1, filter);
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    const std::array<double, 4> exact =
                        plainSample(picture.view(), width, height, x, y, filter);
                    for (std::size_t i = 0; i < 4; ++i)
                        ASSERT_LE(std::abs(exact[i] - scaled.row(y)[4 * static_cast<std::size_t>(x) + i]), 1)
                            << picture.width() << " x " << picture.height() << " to " << width << " x "
                            << height;
                }
            }
        });
    }
}

TEST(Resample, SameSizeIsCopied) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 31, 17);
    EXPECT_TRUE(samePixels(resampled(picture, 31, 17).view(), picture.view()));
}

TEST(Resample, OneColourStaysThatColour) {
    const Pixel colour{10, 128, 200, 201};
    const Bitmap picture = Bitmap::createFilled(40, 30, colour).value();
    for (const auto& [width, height] :
         {std::pair(13, 7), std::pair(97, 61), std::pair(1, 1), std::pair(40, 3)})
        EXPECT_TRUE(samePixels(resampled(picture, width, height).view(),
                               Bitmap::createFilled(width, height, colour).value().view()));
}

TEST(Resample, OvershootNeverExceedsAlpha) {
    Bitmap picture = Bitmap::createFilled(16, 4, {}).value();
    for (int y = 0; y < 4; ++y) {
        for (int x = 8; x < 16; ++x)
            picture.setPixel(x, y, {255, 255, 255, 255});
    }
    const Bitmap scaled = resampled(picture, 61, 9);
    for (int y = 0; y < 9; ++y) {
        for (int x = 0; x < 61; ++x) {
            const Pixel pixel = scaled.pixel(x, y);
            ASSERT_LE(std::max({pixel.red, pixel.green, pixel.blue}), pixel.alpha);
        }
    }
    EXPECT_EQ(scaled.pixel(0, 4), Pixel{});
    EXPECT_EQ(scaled.pixel(60, 4), (Pixel{255, 255, 255, 255}));
}

TEST(Resample, TriangleLeavesNoHaloRoundAnEdge) {
    Bitmap picture = Bitmap::createFilled(16, 4, {}).value();
    for (int y = 0; y < 4; ++y) {
        for (int x = 8; x < 16; ++x)
            picture.setPixel(x, y, {0, 0, 0, 255});
    }
    for (const int width : {61, 7}) {
        const Bitmap scaled = resampled(picture, width, 9, 1, Filter::triangle);
        for (int x = 1; x < width; ++x)
            ASSERT_GE(scaled.pixel(x, 4).alpha, scaled.pixel(x - 1, 4).alpha);
        EXPECT_EQ(scaled.pixel(0, 4).alpha, 0);
        EXPECT_EQ(scaled.pixel(width - 1, 4).alpha, 255);
    }
}

TEST(Resample, OpaquePicturesStayOpaque) {
    auto random = testing::seededGenerator();
    const Bitmap scaled = resampled(randomPicture(random, 50, 50, AlphaMode::opaque), 33, 71);
    for (int y = 0; y < 71; ++y) {
        for (int x = 0; x < 33; ++x)
            ASSERT_EQ(scaled.pixel(x, y).alpha, 255);
    }
}

TEST(Resample, AnyNumberOfWorkersGivesTheSameBytes) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 70, 90);
    const Bitmap expected = resampled(picture, 45, 140);
    for (const int workers : {2, 3})
        EXPECT_TRUE(samePixels(resampled(picture, 45, 140, workers).view(), expected.view()));
}

}  // namespace
}  // namespace trimora::cutengine::kernels
