#include "sample/SamplePicture.h"

#include <gtest/gtest.h>

#include "foundation/ThreadQueues.h"

namespace trimora::sample {
namespace {

using foundation::Bitmap;
using foundation::Point;

constexpr int kWidth = 640;  // the scene in small: 4000 would be most of this program's test time

SamplePicture drawn() {
    foundation::InlineWorkers workers;
    auto made = drawSamplePicture(kWidth, workers);
    EXPECT_TRUE(made);
    return std::move(*made);
}

class SamplePictureTest : public ::testing::Test {
 protected:
    int alphaAt(Point canvas) const {
        const double scale = kWidth / 4000.0;
        return sample.subject.pixel(static_cast<int>(canvas.x * scale), static_cast<int>(canvas.y * scale))
            .alpha;
    }

    const SamplePicture sample = drawn();
};

TEST_F(SamplePictureTest, HasTheSizeThatWasAskedForAndIsOpaque) {
    EXPECT_EQ(sample.picture.width(), kWidth);
    EXPECT_EQ(sample.picture.height(), kWidth * 3 / 4);
    for (int y = 0; y < sample.picture.height(); ++y) {
        for (int x = 0; x < kWidth; ++x)
            ASSERT_EQ(sample.picture.pixel(x, y).alpha, 255);
    }
}

TEST_F(SamplePictureTest, IsTheSameInEveryRunAndForAnyNumberOfThreads) {
    foundation::ThreadWorkers workers(3);
    const auto again = drawSamplePicture(kWidth, workers);
    ASSERT_TRUE(again);
    EXPECT_TRUE(foundation::samePixels(sample.picture.view(), again->picture.view()));
    EXPECT_TRUE(foundation::samePixels(sample.subject.view(), again->subject.view()));
}

TEST_F(SamplePictureTest, SubjectIsWhereOwlAndVaseAre) {
    EXPECT_EQ(alphaAt({1790, 1265}), 255);  // between the eyes
    EXPECT_EQ(alphaAt({1780, 2100}), 255);  // breast
    EXPECT_EQ(alphaAt({3010, 1900}), 255);  // belly of the vase
    EXPECT_EQ(alphaAt({200, 300}), 0);      // leaves
    EXPECT_EQ(alphaAt({3700, 2500}), 0);    // table
    EXPECT_EQ(alphaAt({2000, 2950}), 0);    // front of the table
}

/// Pixels of a row of the canvas that the subject covers in part, between two places.
int partlyCovered(const Bitmap& subject, double fromX, double toX, double y) {
    const double scale = kWidth / 4000.0;
    int count = 0;
    for (int x = static_cast<int>(fromX * scale); x < static_cast<int>(toX * scale); ++x) {
        const int alpha = subject.pixel(x, static_cast<int>(y * scale)).alpha;
        count += alpha > 8 && alpha < 247 ? 1 : 0;
    }
    return count;
}

TEST_F(SamplePictureTest, OwlHasASoftOutlineAndTheVaseAHardOne) {
    EXPECT_GE(partlyCovered(sample.subject, 900, 1400, 1950), 6);
    EXPECT_LE(partlyCovered(sample.subject, 3300, 3600, 1900), 2);
}

TEST(SamplePicture, TooNarrowIsRefused) {
    foundation::InlineWorkers workers;
    EXPECT_FALSE(drawSamplePicture(3, workers));
}

}  // namespace
}  // namespace trimora::sample
