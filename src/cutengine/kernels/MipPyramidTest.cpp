#include "cutengine/kernels/MipPyramid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "cutengine/kernels/EveryInstructionSet.h"
#include "cutengine/kernels/MipBands.h"
#include "cutengine/kernels/RandomPicture.h"
#include "foundation/ThreadQueues.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::BitmapView;
using foundation::InlineWorkers;

/// The rounded mean of the pixels of `from` that one pixel of the next level covers.
std::uint8_t plainMean(BitmapView from, int x, int y, int component) {
    int sum = 0;
    int count = 0;
    for (int dy = 2 * y; dy < std::min(2 * y + 2, from.height); ++dy) {
        for (int dx = 2 * x; dx < std::min(2 * x + 2, from.width); ++dx) {
            sum += from.row(dy)[4 * dx + component];
            ++count;
        }
    }
    return static_cast<std::uint8_t>((2 * sum + count) / (2 * count));
}

void expectPlainMeans(const MipPyramid& pyramid) {
    for (int index = 1; index < pyramid.levelCount(); ++index) {
        const BitmapView from = pyramid.level(index - 1);
        const BitmapView to = pyramid.level(index);
        ASSERT_EQ(to.width, (from.width + 1) / 2);
        ASSERT_EQ(to.height, (from.height + 1) / 2);
        for (int y = 0; y < to.height; ++y) {
            for (int x = 0; x < to.width; ++x) {
                for (int component = 0; component < 4; ++component)
                    ASSERT_EQ(to.row(y)[4 * x + component], plainMean(from, x, y, component))
                        << "level " << index << " at " << x << ", " << y;
            }
        }
    }
}

TEST(MipPyramid, EveryLevelIsTheRoundedMeanOfTheOneBeforeOnEveryInstructionSet) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 8; ++round) {
        const Bitmap picture =
            randomPicture(random, randomBetween(random, 1, 200), randomBetween(random, 1, 200));
        onEveryInstructionSet([&] {
            InlineWorkers workers;
            expectPlainMeans(MipPyramid::build(picture.view(), workers));
        });
    }
}

TEST(MipPyramid, LevelsGoDownToOnePixel) {
    auto random = testing::seededGenerator();
    InlineWorkers workers;
    for (const auto& [width, height] :
         {std::pair(1, 1), std::pair(1, 37), std::pair(64, 1), std::pair(65, 33)}) {
        const Bitmap picture = randomPicture(random, width, height);
        const MipPyramid pyramid = MipPyramid::build(picture.view(), workers);
        EXPECT_EQ(pyramid.level(pyramid.levelCount() - 1).width, 1);
        EXPECT_EQ(pyramid.level(pyramid.levelCount() - 1).height, 1);
        expectPlainMeans(pyramid);
    }
}

TEST(MipPyramid, AnyNumberOfWorkersGivesTheSameLevels) {
    auto random = testing::seededGenerator();
    const Bitmap picture = randomPicture(random, 90, 700);
    for (const int width : {2, 3}) {
        foundation::ThreadWorkers workers(width);
        expectPlainMeans(MipPyramid::build(picture.view(), workers));
    }
}

TEST(MipPyramid, IsTheSameFromBandsInAnyOrderOnEveryInstructionSet) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 8; ++round) {
        const Bitmap picture =
            randomPicture(random, randomBetween(random, 1, 90), randomBetween(random, 1, 200));
        std::vector<std::pair<int, int>> bands;
        for (int y = 0; y < picture.height();) {
            const int steps = randomBetween(random, 1, 5);
            bands.emplace_back(y, std::min(y + steps * MipBands::kStep, picture.height()));
            y = bands.back().second;
        }
        std::shuffle(bands.begin(), bands.end(), random);
        onEveryInstructionSet([&] {
            InlineWorkers workers;
            MipBands made(picture.view());
            for (const auto& [first, end] : bands)
                made.add(first, end);
            expectPlainMeans(std::move(made).finished(workers));
        });
    }
}

TEST(MipPyramid, IsTheSameFromRowsThatAreTakenFromElsewhereOnEveryInstructionSet) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 8; ++round) {
        const Bitmap picture =
            randomPicture(random, randomBetween(random, 1, 200), randomBetween(random, 1, 90));
        const int width = picture.width();
        onEveryInstructionSet([&] {
            InlineWorkers workers;
            Bitmap base = Bitmap::create(width, picture.height()).value();
            MipBands made(base.view());
            for (int y = 0; y < picture.height(); y += 16)
                made.take(subview(picture.view(), {0, y, width, 16}), y, base.view());
            EXPECT_TRUE(samePixels(base.view(), picture.view()));
            expectPlainMeans(std::move(made).finished(workers));
        });
    }
}

TEST(MipPyramid, BandIsMadeAnewWithItsRows) {
    auto random = testing::seededGenerator();
    InlineWorkers workers;
    Bitmap picture = randomPicture(random, 40, 50);
    MipBands bands(picture.view());
    bands.add(0, 50);
    picture.fill({9, 8, 7, 255});
    bands.add(24, 50);
    bands.add(0, 24);
    expectPlainMeans(std::move(bands).finished(workers));
}

TEST(MipPyramid, FirstLevelIsThePictureItselfAndOpacityIsKept) {
    auto random = testing::seededGenerator();
    InlineWorkers workers;
    const Bitmap picture = randomPicture(random, 9, 9, AlphaMode::opaque);
    const MipPyramid pyramid = MipPyramid::build(picture.view(), workers);
    EXPECT_EQ(pyramid.level(0).pixels, picture.view().pixels);
    for (int index = 0; index < pyramid.levelCount(); ++index)
        EXPECT_EQ(pyramid.level(index).alphaMode, AlphaMode::opaque);
}

TEST(MipPyramid, NoPictureHasNoLevels) {
    InlineWorkers workers;
    EXPECT_EQ(MipPyramid().levelCount(), 0);
    EXPECT_EQ(MipPyramid::build({}, workers).levelCount(), 0);
}

TEST(MipPyramid, CopiesOfAPictureThatIsNowhereWholeAreTheSame) {
    auto random = testing::seededGenerator();
    InlineWorkers workers;
    // The last is made in more than one go.
    for (const auto& [width, height] :
         {std::pair(1, 1), std::pair(7, 4), std::pair(64, 33), std::pair(9000, 941)}) {
        Bitmap picture = Bitmap::create(width, height).value();
        const Bitmap patch = randomPicture(random, width, 20);
        for (int y = 0; y < height; ++y)
            copyPixels(subview(patch.view(), {0, y % 20, width, 1}),
                       subview(picture.view(), {0, y, width, 1}));
        int due = 0;
        const MipPyramid pyramid = MipPyramid::buildWithoutBase(
            width, height, AlphaMode::premultiplied,
            [&](int firstRow, foundation::MutableBitmapView rows) {
                EXPECT_EQ(firstRow, due);
                due += rows.height;
                copyPixels(subview(picture.view(), {0, firstRow, rows.width, rows.height}), rows);
            },
            workers);
        EXPECT_EQ(due, height);
        const MipPyramid whole = MipPyramid::build(picture.view(), workers);
        EXPECT_EQ(pyramid.finestLevel(), 1);
        EXPECT_EQ(whole.finestLevel(), 0);
        EXPECT_EQ(pyramid.level(0).width, width);
        EXPECT_EQ(pyramid.level(0).height, height);
        for (int index = 1; index < whole.levelCount(); ++index)
            EXPECT_TRUE(samePixels(pyramid.level(index), whole.level(index))) << index;
        EXPECT_EQ(pyramid.levelCount(), std::max(whole.levelCount(), 2));
    }
}

}  // namespace
}  // namespace trimora::cutengine::kernels
