// A large picture's blur is kept at half its size: what that changes on the screen.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>

#include "cutengine/imageutil/FilterImage.h"
#include "cutengine/imageutil/PictureActions.h"
#include "cutengine/kernels/ViewRenderer.h"
#include "foundation/ThreadQueues.h"
#include "sample/SamplePicture.h"
#include "testing/Seed.h"

namespace trimora::cutengine {
namespace {

using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Pixel;

// Just large enough to be kept so.
constexpr int kWidth = 15'600;
constexpr int kHeight = 400;

constexpr int kFrameWidth = 900;
constexpr int kFrameHeight = 400;

PicturePtr pictureOf(const std::function<Pixel(int x, int y)>& pixelAt) {
    Bitmap picture = Bitmap::create(kWidth, kHeight, AlphaMode::opaque).value();
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x)
            picture.setPixel(x, y, pixelAt(x, y));
    }
    return Picture::create(std::move(picture));
}

Bitmap frameOf(const DrawablePicture& background, double zoom, double left, foundation::Workers& workers) {
    kernels::ViewScene scene;
    scene.pictureSize = {kWidth, kHeight};
    scene.pictureToView = {zoom, 0, 0, zoom, 0.3 - left, 0.4};
    scene.picture = background.pyramid.get();
    Bitmap frame = Bitmap::create(kFrameWidth, kFrameHeight, AlphaMode::opaque).value();
    renderView(scene, frame.view(), frame.view().bounds(), workers);
    return frame;
}

int largestDifference(const Bitmap& a, const Bitmap& b) {
    int most = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int i = 0; i < 4 * a.width(); ++i)
            most = std::max(most, std::abs(a.row(y)[i] - b.row(y)[i]));
    }
    return most;
}

class BlurOnScreenTest : public ::testing::Test {
 protected:
    /// Frames all along the picture, at zooms from a third to eight times.
    void expectFramesWithinOneLevel(const PicturePtr& picture) {
        const auto kept = blurredDrawable(picture, workers_);
        const auto whole = makeDrawable(blurredCopy(picture, workers_), workers_);
        ASSERT_EQ(kept->pyramid->finestLevel(), 1);
        ASSERT_EQ(whole->pyramid->finestLevel(), 0);
        for (const double zoom : {0.33, 0.5, 0.53, 0.7, 0.97, 1.0, 1.4, 2.0, 3.7, 8.0}) {
            for (int place = 0; place < 6; ++place) {
                const double left = place * (kWidth * zoom - kFrameWidth) / 5;
                const int difference = largestDifference(frameOf(*kept, zoom, left, workers_),
                                                         frameOf(*whole, zoom, left, workers_));
                EXPECT_LE(difference, zoom <= 0.5 ? 0 : 1) << "zoom " << zoom << ", place " << place;
            }
        }
    }

    foundation::ThreadWorkers workers_{2};
};

TEST_F(BlurOnScreenTest, ScenesStayWithinOneLevelAndAreTheSameUpToHalfTheirSize) {
    const auto scene = sample::drawSamplePicture(1550, workers_);
    ASSERT_TRUE(scene);
    expectFramesWithinOneLevel(
        pictureOf([&](int x, int y) { return scene->picture.pixel(x % 1550, y + 400 + x / 1550 * 32); }));
}

TEST_F(BlurOnScreenTest, HardEdgesStayWithinOneLevel) {
    expectFramesWithinOneLevel(pictureOf([](int x, int y) {
        const int edgesPassed = x / 700 + (y > 180 ? 1 : 0) + (x + 3 * y > 6000 ? 1 : 0);
        const bool light = edgesPassed % 2 == 0;
        return light ? Pixel{255, 0, 255, 255} : Pixel{0, 255, 0, 255};
    }));
}

TEST_F(BlurOnScreenTest, NoiseStaysWithinOneLevel) {
    std::mt19937_64 random = testing::seededGenerator();
    expectFramesWithinOneLevel(pictureOf([&](int, int) {
        const std::uint64_t bits = random();
        return Pixel{static_cast<std::uint8_t>(bits), static_cast<std::uint8_t>(bits >> 8),
                     static_cast<std::uint8_t>(bits >> 16), 255};
    }));
}

}  // namespace
}  // namespace trimora::cutengine
