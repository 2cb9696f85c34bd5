#include "cutengine/kernels/DiscBlur.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "cutengine/kernels/DiscRows.h"
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
using foundation::samePixels;

/// The blur as it is told, pixel by pixel.
Bitmap plainDiscBlur(BitmapView from, double radius) {
    Bitmap to = Bitmap::create(from.width, from.height, from.alphaMode).value();
    const int reach = static_cast<int>(radius);
    for (int y = 0; y < from.height; ++y) {
        for (int x = 0; x < from.width; ++x) {
            std::array<std::int64_t, 4> sums{};
            std::int64_t count = 0;
            for (int dy = -reach; dy <= reach; ++dy) {
                for (int dx = -reach; dx <= reach; ++dx) {
                    if (static_cast<double>(dx) * dx + static_cast<double>(dy) * dy > radius * radius)
                        continue;
                    const std::uint8_t* const pixel = from.row(std::clamp(y + dy, 0, from.height - 1)) +
                                                      4 * std::clamp(x + dx, 0, from.width - 1);
                    for (std::size_t i = 0; i < 4; ++i)
                        sums[i] += pixel[i];
                    ++count;
                }
            }
            for (std::size_t i = 0; i < 4; ++i)
                to.row(y)[4 * static_cast<std::size_t>(x) + i] =
                    static_cast<std::uint8_t>((2 * sums[i] + count) / (2 * count));
        }
    }
    return to;
}

Bitmap blurred(BitmapView from, double radius, foundation::Workers& workers) {
    Bitmap to = Bitmap::createFilled(from.width, from.height, {1, 2, 3, 4}, from.alphaMode).value();
    discBlur(from, to.view(), radius, workers);
    return to;
}

Bitmap blurred(BitmapView from, double radius) {
    InlineWorkers workers;
    return blurred(from, radius, workers);
}

TEST(DiscBlur, RandomPicturesEqualThePlainDefinitionOnEveryInstructionSet) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 12; ++round) {
        const int width = randomBetween(random, 1, 70);
        const int height = randomBetween(random, 1, 70);
        const double radius = std::uniform_real_distribution<>(1, 12)(random);
        const auto mode = round % 2 == 0 ? AlphaMode::premultiplied : AlphaMode::opaque;
        const Bitmap picture = randomPicture(random, width, height, mode);
        const Bitmap expected = plainDiscBlur(picture.view(), radius);
        onEveryInstructionSet([&] {
            EXPECT_TRUE(samePixels(blurred(picture.view(), radius).view(), expected.view()))
                << width << " x " << height << " radius " << radius;
        });
    }
}

TEST(DiscBlur, PicturesWiderThanOneStripEqualThePlainDefinition) {
    auto random = testing::seededGenerator();
    for (const int width : {255, 256, 257, 521}) {
        const Bitmap picture = randomPicture(random, width, 9, AlphaMode::opaque);
        EXPECT_TRUE(
            samePixels(blurred(picture.view(), 5.5).view(), plainDiscBlur(picture.view(), 5.5).view()));
    }
}

TEST(DiscBlur, AnyNumberOfWorkersGivesTheSameBytes) {
    auto random = testing::seededGenerator();
    const Bitmap tall = randomPicture(random, 40, 331);
    const Bitmap wide = randomPicture(random, 611, 23);
    for (const Bitmap* const picture : {&tall, &wide}) {
        const Bitmap expected = plainDiscBlur(picture->view(), 4.2);
        for (const int width : {1, 2, 3}) {
            foundation::ThreadWorkers workers(width);
            EXPECT_TRUE(samePixels(blurred(picture->view(), 4.2, workers).view(), expected.view())) << width;
        }
    }
}

TEST(DiscBlur, DiscLargerThanThePictureEqualsThePlainDefinition) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 7, 5);
    for (const double radius : {8.0, 63.9, 64.0, 130.25, 300.0})
        EXPECT_TRUE(
            samePixels(blurred(picture.view(), radius).view(), plainDiscBlur(picture.view(), radius).view()))
            << radius;
}

TEST(DiscBlur, SumsBeyondThirtyTwoBitsEqualThePlainDefinition) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 2, 1, AlphaMode::opaque);
    for (const int radius : {2300, 2400}) {
        const Bitmap disc = blurred(picture.view(), radius);
        for (int x = 0; x < 2; ++x) {
            // How many places of the disc show the left pixel, and how many the right one.
            std::int64_t left = 0;
            std::int64_t right = 0;
            for (int dy = -radius; dy <= radius; ++dy) {
                for (int dx = -radius; dx <= radius; ++dx) {
                    const std::int64_t in = dx * dx + dy * dy <= radius * radius ? 1 : 0;
                    (x + dx <= 0 ? left : right) += in;
                }
            }
            for (std::size_t i = 0; i < 4; ++i) {
                const std::int64_t sum =
                    left * picture.view().row(0)[i] + right * picture.view().row(0)[4 + i];
                EXPECT_EQ(disc.view().row(0)[4 * static_cast<std::size_t>(x) + i],
                          (2 * sum + left + right) / (2 * (left + right)))
                    << radius;
            }
        }
    }
}

TEST(DiscBlur, PicturesOnePixelWideOrHighEqualThePlainDefinition) {
    auto random = testing::seededGenerator();
    for (const Bitmap& picture :
         {randomPicture(random, 1, 90), randomPicture(random, 90, 1), randomPicture(random, 1, 1)})
        EXPECT_TRUE(samePixels(blurred(picture.view(), 6).view(), plainDiscBlur(picture.view(), 6).view()));
}

TEST(DiscBlur, OnePointGrowsIntoAFlatDisc) {
    Bitmap picture = Bitmap::createFilled(11, 11, {0, 0, 0, 255}, AlphaMode::opaque).value();
    picture.setPixel(5, 5, {255, 255, 255, 255});
    const Bitmap disc = blurred(picture.view(), 2);
    const std::uint8_t share = 20;  // 255 over the 13 pixels of a disc of radius 2, rounded
    for (int y = 0; y < 11; ++y) {
        for (int x = 0; x < 11; ++x) {
            const bool inside = (x - 5) * (x - 5) + (y - 5) * (y - 5) <= 4;
            EXPECT_EQ(disc.pixel(x, y).red, inside ? share : 0) << x << ", " << y;
        }
    }
}

TEST(DiscBlur, RadiusBelowOneCopies) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 13, 8);
    EXPECT_TRUE(samePixels(blurred(picture.view(), 0.99).view(), picture.view()));
    EXPECT_TRUE(samePixels(blurred(picture.view(), 0).view(), picture.view()));
}

TEST(DiscBlur, OneColourStaysThatColour) {
    const Bitmap picture = Bitmap::createFilled(300, 20, {1, 128, 200, 254}).value();
    EXPECT_TRUE(samePixels(blurred(picture.view(), 9.7).view(), picture.view()));
}

TEST(DiscBlur, EveryMeanNearAHalfIsRoundedExactly) {
    // Sums on both sides of every half, where a quotient that is a little off would round wrongly.
    onEveryInstructionSet([] {
        for (const std::int32_t count : {5, 13, 7845, 125'629, 1'000'001, 16'777'215}) {
            for (int value = -128; value < 128; value += kDiscRowGranule / 4) {
                std::array<std::int32_t, kDiscRowGranule> sums{};
                std::array<std::uint8_t, kDiscRowGranule> means{};
                for (int i = 0; i < kDiscRowGranule; ++i) {
                    const int whole = std::min(value + i / 4, 127);
                    const int half = i % 2 == 0 ? count / 2 : -(count / 2);
                    const std::int64_t sum = std::int64_t{whole} * count + half;
                    sums[static_cast<std::size_t>(i)] = static_cast<std::int32_t>(
                        std::clamp<std::int64_t>(sum, std::int64_t{-128} * count, std::int64_t{127} * count));
                }
                meansOfSums(sums.data(), count, means.data(), kDiscRowGranule);
                for (std::size_t i = 0; i < sums.size(); ++i) {
                    const std::int64_t lifted = sums[i] + std::int64_t{128} * count;
                    ASSERT_EQ(means[i], (2 * lifted + count) / (2 * std::int64_t{count}))
                        << sums[i] << " / " << count;
                }
            }
        }
    });
}

TEST(DiscBlur, SomeRowsAreThoseOfTheWholeBlur) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 20; ++round) {
        const int width = randomBetween(random, 1, 300);
        const int height = randomBetween(random, 1, 90);
        const double radius = std::uniform_real_distribution<>(0.5, 20)(random);
        const Bitmap picture = randomPicture(random, width, height);
        const Bitmap whole = blurred(picture.view(), radius);
        const int first = randomBetween(random, 0, height - 1);
        const int count = randomBetween(random, 1, height - first);
        Bitmap rows = Bitmap::create(width, count).value();
        foundation::ThreadWorkers workers(randomBetween(random, 1, 3));
        discBlurRows(picture.view(), first, rows.view(), radius, workers);
        EXPECT_TRUE(samePixels(rows.view(), foundation::subview(whole.view(), {0, first, width, count})))
            << width << " x " << height << ", " << count << " from " << first << ", radius " << radius;
    }
}

}  // namespace
}  // namespace trimora::cutengine::kernels
