#include "cutengine/kernels/ViewRenderer.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>

#include "cutengine/kernels/EveryInstructionSet.h"
#include "cutengine/kernels/RandomMask.h"
#include "cutengine/kernels/RandomPicture.h"
#include "foundation/ThreadQueues.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::AffineTransform;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::BitmapView;
using foundation::InlineWorkers;
using foundation::IntRect;
using foundation::Pixel;
using foundation::samePixels;

using Colour = std::array<double, 4>;

/// The frame as it is told, one pixel at a time in real numbers.
class PlainView {
 public:
    PlainView(const ViewScene& scene, int viewHeight) : scene_(scene), viewHeight_(viewHeight) {}

    [[nodiscard]] Colour at(int x, int y) const {
        Colour shown = tileAt(x, y);
        if (scene_.picture == nullptr)
            return shown;
        if (!scene_.backgroundHidden)
            put(scene_.backgroundToView, scene_.background, nullptr, x, y, shown);
        put(scene_.pictureToView, scene_.picture, scene_.mask, x, y, shown);
        return shown;
    }

 private:
    [[nodiscard]] Colour tileAt(int x, int y) const {
        Colour colour{0, 0, 0, 255};
        for (std::size_t i = 0; i < 3 && !scene_.tile.isEmpty(); ++i)
            colour[i] = scene_.tile.row(
                y % scene_.tile.height)[4 * static_cast<std::size_t>(x % scene_.tile.width) + i];
        return colour;
    }

    void put(const AffineTransform& toView, const MipPyramid* pyramid, const MaskSnapshot* mask, int x, int y,
             Colour& shown) const {
        const double s = scene_.scaleFactor;
        const double left = toView.tx * s;
        const double right = (toView.tx + toView.a * scene_.pictureSize.width) * s;
        const double top = viewHeight_ - (toView.ty + toView.d * scene_.pictureSize.height) * s;
        const double bottom = viewHeight_ - toView.ty * s;
        const auto overlap = [](double from, double to, int pixel) {
            return std::clamp(std::min(to, pixel + 1.0) - std::max(from, double(pixel)), 0.0, 1.0);
        };
        const double coverage = overlap(left, right, x) * overlap(top, bottom, y);
        if (coverage == 0)
            return;
        // Shares of the rectangle, from its top left corner.
        const double u = (x + 0.5 - left) / (right - left);
        const double v = (y + 0.5 - top) / (bottom - top);

        Colour colour{double(scene_.backgroundColour.blue), double(scene_.backgroundColour.green),
                      double(scene_.backgroundColour.red), double(scene_.backgroundColour.alpha)};
        if (pyramid != nullptr) {
            const BitmapView whole = pyramid->level(0);
            const int index = levelOf(toView, whole.width, whole.height, pyramid->levelCount());
            const BitmapView level = pyramid->level(index);
            for (std::size_t i = 0; i < 4; ++i)
                colour[i] =
                    bilinear(u * std::ldexp(whole.width, -index), v * std::ldexp(whole.height, -index),
                             level.width, level.height,
                             [&](int c, int r) { return level.row(r)[4 * static_cast<std::size_t>(c) + i]; });
        }
        double share = coverage;
        if (mask != nullptr) {
            const int index = levelOf(toView, mask->width(), mask->height(), int(mask->levels().size()));
            const MaskSnapshot::Level& level = mask->levels()[static_cast<std::size_t>(index)];
            share *= bilinear(u * std::ldexp(mask->width(), -index), v * std::ldexp(mask->height(), -index),
                              level.width, level.height, [&](int c, int r) { return level.alphaAt(c, r); }) /
                     255;
        }
        const double hidden = colour[3] / 255 * share;
        for (std::size_t i = 0; i < 4; ++i)
            shown[i] = colour[i] * share + shown[i] * (1 - hidden);
    }

    /// Level k for a zoom in (2^-(k+1), 2^-k].
    [[nodiscard]] int levelOf(const AffineTransform& toView, int width, int height, int levels) const {
        const double zoom = std::max(toView.a * scene_.scaleFactor * scene_.pictureSize.width / width,
                                     toView.d * scene_.scaleFactor * scene_.pictureSize.height / height);
        int level = 0;
        while (level + 1 < levels && zoom <= std::ldexp(1.0, -(level + 1)))
            ++level;
        return level;
    }

    /// `x` and `y` from the top left corner of the first sample.
    template <typename SampleAt>
    static double bilinear(double x, double y, int width, int height, const SampleAt& sampleAt) {
        const double column = std::clamp(x - 0.5, 0.0, width - 1.0);
        const double row = std::clamp(y - 0.5, 0.0, height - 1.0);
        const int c = int(column);
        const int r = int(row);
        const auto across = [&](int line) {
            return std::lerp(double(sampleAt(c, line)), double(sampleAt(std::min(c + 1, width - 1), line)),
                             column - c);
        };
        return std::lerp(across(r), across(std::min(r + 1, height - 1)), row - r);
    }

    const ViewScene& scene_;
    int viewHeight_;
};

/// A scene and what it borrows.
struct Stage {
    Bitmap picture;
    Bitmap background;
    Bitmap tile;
    MipPyramid pictureLevels;
    MipPyramid backgroundLevels;
    MaskSnapshotPtr mask;
    ViewScene scene;
};

/// Translations and sizes of which every bit matters, and often whole ones.
AffineTransform randomPlacement(std::mt19937_64& random, double zoom, foundation::Size size, int viewWidth,
                                int viewHeight) {
    const auto centre = [&](double extent, int view) {
        const double place = std::uniform_real_distribution<>(0, view)(random) - extent / 2;
        return randomBetween(random, 0, 3) == 0 ? std::round(place) : place;
    };
    return {zoom, 0, 0, zoom, centre(size.width * zoom, viewWidth), centre(size.height * zoom, viewHeight)};
}

Stage randomStage(std::mt19937_64& random, double zoom, int viewWidth, int viewHeight) {
    InlineWorkers workers;
    Stage stage;
    const int most = zoom < 0.1 ? 900 : 160;
    const int width = randomBetween(random, 1, most);
    const int height = randomBetween(random, 1, most);
    const auto anyMode = [&] {
        return randomBetween(random, 0, 2) == 0 ? AlphaMode::premultiplied : AlphaMode::opaque;
    };
    stage.picture = randomPicture(random, width, height, anyMode());
    stage.pictureLevels = MipPyramid::build(stage.picture.view(), workers);
    stage.scene.picture = &stage.pictureLevels;
    stage.scene.pictureSize = {double(width), double(height)};
    stage.scene.scaleFactor =
        std::array{1.0, 1.5, 2.0}[static_cast<std::size_t>(randomBetween(random, 0, 2))];
    stage.scene.pictureToView = randomPlacement(random, zoom, stage.scene.pictureSize, viewWidth, viewHeight);
    stage.scene.backgroundToView =
        randomBetween(random, 0, 3) == 0
            ? randomPlacement(random, zoom * 1.3, stage.scene.pictureSize, viewWidth, viewHeight)
            : stage.scene.pictureToView;
    if (randomBetween(random, 0, 4) != 0) {
        const int divisor = randomBetween(random, 1, 3);
        stage.mask = snapshotOf(
            randomMaskPlane(random, (width + divisor - 1) / divisor, (height + divisor - 1) / divisor));
        stage.scene.mask = stage.mask.get();
    }
    const int kind = randomBetween(random, 0, 3);
    stage.scene.backgroundHidden = kind == 0;
    stage.scene.backgroundColour = kind == 1 ? Pixel{250, 20, 130, 255} : Pixel{50, 20, 90, 130};
    if (kind == 3) {
        stage.background = randomPicture(random, randomBetween(random, 1, width), height, anyMode());
        stage.backgroundLevels = MipPyramid::build(stage.background.view(), workers);
        stage.scene.background = &stage.backgroundLevels;
    }
    if (randomBetween(random, 0, 3) != 0)
        stage.tile = randomPicture(random, randomBetween(random, 1, 40), randomBetween(random, 1, 40),
                                   AlphaMode::opaque);
    stage.scene.tile = stage.tile.view();
    return stage;
}

Bitmap rendered(const ViewScene& scene, int width, int height, int workerCount = 1) {
    foundation::ThreadWorkers workers(workerCount);
    Bitmap target = Bitmap::createFilled(width, height, {7, 7, 7, 7}).value();
    renderView(scene, target.view(), {0, 0, width, height}, workers);
    return target;
}

/// Half a level is the rounding to bytes; what is left is all that the fast arithmetic may add.
constexpr double kTolerance = 0.6;

void expectNear(const Bitmap& target, const ViewScene& scene) {
    const PlainView plain(scene, target.height());
    double worst = 0;
    for (int y = 0; y < target.height(); ++y) {
        for (int x = 0; x < target.width(); ++x) {
            const Colour exact = plain.at(x, y);
            for (std::size_t i = 0; i < 4; ++i)
                worst =
                    std::max(worst, std::abs(exact[i] - target.row(y)[4 * static_cast<std::size_t>(x) + i]));
            ASSERT_LE(worst, kTolerance) << "at " << x << ", " << y;
            ASSERT_EQ(target.pixel(x, y).alpha, 255);
        }
    }
}

TEST(ViewRenderer, RandomScenesAreNearTheRealNumbersAtEveryZoomOnEveryInstructionSet) {
    auto random = testing::seededGenerator();
    for (const double zoom :
         {0.01, 0.07, 0.125, 0.2, 0.25, 0.3, 0.5, 0.77, 1.0, 1.0, 1.4, 2.0, 3.7, 8.0, 20.0}) {
        for (int round = 0; round < 3; ++round) {
            const int width = randomBetween(random, 1, 120);
            const int height = randomBetween(random, 1, 90);
            const Stage stage = randomStage(random, zoom, width, height);
            onEveryInstructionSet([&] {
                SCOPED_TRACE(zoom);
                expectNear(rendered(stage.scene, width, height), stage.scene);
            });
        }
    }
}

TEST(ViewRenderer, EveryInstructionSetGivesTheSameBytes) {
    auto random = testing::seededGenerator();
    for (const double zoom : {0.2, 0.51, 0.77, 1.0, 3.7}) {
        const Stage stage = randomStage(random, zoom, 150, 60);
        const Bitmap expected = rendered(stage.scene, 150, 60);
        onEveryInstructionSet(
            [&] { EXPECT_TRUE(samePixels(rendered(stage.scene, 150, 60).view(), expected.view())) << zoom; });
    }
}

TEST(ViewRenderer, PicturesScaledUnlikeAcrossAndDownAreNearTheRealNumbers) {
    auto random = testing::seededGenerator();
    for (const double across : {0.11, 0.35, 0.6, 2.5}) {
        Stage stage = randomStage(random, 1, 150, 60);
        stage.scene.pictureToView = {across, 0, 0, 1, 3.3, -2.7};
        stage.scene.backgroundToView = stage.scene.pictureToView;
        onEveryInstructionSet([&] {
            SCOPED_TRACE(across);
            expectNear(rendered(stage.scene, 150, 60), stage.scene);
        });
    }
}

TEST(ViewRenderer, ViewsWiderThanOneStripAreNearTheRealNumbers) {
    auto random = testing::seededGenerator();
    for (const double zoom : {1.0, 3.7, 9.1}) {
        const Stage stage = randomStage(random, zoom, 2300, 20);
        expectNear(rendered(stage.scene, 2300, 20), stage.scene);
    }
}

TEST(ViewRenderer, MasksOfManyTilesAreNearTheRealNumbers) {
    auto random = testing::seededGenerator();
    for (const double zoom : {0.51, 0.77, 1.0, 1.7, 3.7}) {
        Stage stage = randomStage(random, 1, 900, 40);
        stage.mask = snapshotOf(randomMaskPlane(random, randomBetween(random, 400, 900), 300));
        stage.scene.mask = stage.mask.get();
        const foundation::Size size = stage.scene.pictureSize;
        stage.scene.scaleFactor = 1;
        stage.scene.pictureToView = {zoom * 900 / size.width, 0, 0, zoom * 300 / size.height, -40.3, -170.2};
        stage.scene.backgroundToView = stage.scene.pictureToView;
        SCOPED_TRACE(zoom);
        expectNear(rendered(stage.scene, 900, 40), stage.scene);
    }
}

TEST(ViewRenderer, ZoomsBesideOneThatBeginOnAWholePixelAreNearTheRealNumbers) {
    auto random = testing::seededGenerator();
    for (const double zoom : {0.9996, 1.0004, 1.002}) {
        Stage stage = randomStage(random, zoom, 700, 12);
        const Bitmap picture = randomPicture(random, 800, 20, AlphaMode::opaque);
        InlineWorkers workers;
        const MipPyramid levels = MipPyramid::build(picture.view(), workers);
        stage.scene.scaleFactor = 1;
        stage.scene.picture = &levels;
        stage.scene.pictureSize = {800, 20};
        stage.scene.mask = nullptr;
        // The view's rows fall on rows of the picture, and its first pixel on one, but its last do not.
        stage.scene.pictureToView = {zoom, 0, 0, 1, (1 - zoom) / 2, 12 - 20};
        expectNear(rendered(stage.scene, 700, 12), stage.scene);
    }
}

TEST(ViewRenderer, PartsDrawnByThemselvesEqualTheWholeAndTouchNothingElse) {
    auto random = testing::seededGenerator();
    InlineWorkers workers;
    for (const double zoom : {0.25, 0.6, 1.0, 3.7}) {
        constexpr int kWidth = 1300;
        constexpr int kHeight = 60;
        const Stage stage = randomStage(random, zoom * 3, kWidth, kHeight);
        const Bitmap whole = rendered(stage.scene, kWidth, kHeight);
        for (int round = 0; round < 15; ++round) {
            const int x = randomBetween(random, -5, kWidth - 1);
            const int y = randomBetween(random, -5, kHeight - 1);
            const IntRect area{x, y, randomBetween(random, 1, kWidth), randomBetween(random, 1, kHeight)};
            Bitmap target = Bitmap::createFilled(kWidth, kHeight, {1, 2, 3, 4}).value();
            Bitmap expected = target.clone().value();
            foundation::copyPixels(subview(whole.view(), area), subview(expected.view(), area));
            renderView(stage.scene, target.view(), area, workers);
            ASSERT_TRUE(samePixels(target.view(), expected.view()))
                << area.x << ", " << area.y << " " << area.width << " x " << area.height << " zoom " << zoom;
        }
    }
}

TEST(ViewRenderer, AnyNumberOfWorkersGivesTheSameBytes) {
    auto random = testing::seededGenerator();
    const Stage stage = randomStage(random, 2.3, 600, 400);
    const Bitmap expected = rendered(stage.scene, 600, 400);
    for (const int workers : {2, 3})
        EXPECT_TRUE(samePixels(rendered(stage.scene, 600, 400, workers).view(), expected.view()));
}

/// An opaque picture of the size of a view, in the middle of it.
struct PlainStage {
    explicit PlainStage(Bitmap shown) : picture(std::move(shown)) {
        InlineWorkers workers;
        levels = MipPyramid::build(picture.view(), workers);
        scene.picture = &levels;
        scene.pictureSize = {double(picture.width()), double(picture.height())};
    }
    Bitmap picture;
    MipPyramid levels;
    ViewScene scene;
};

TEST(ViewRenderer, PictureAtItsOwnSizeOnWholePixelsIsCopied) {
    auto random = testing::seededGenerator();
    PlainStage stage(randomPicture(random, 90, 50, AlphaMode::opaque));
    stage.scene.pictureToView = AffineTransform::translation(20, 10);
    const Bitmap target = rendered(stage.scene, 130, 70);
    EXPECT_TRUE(samePixels(subview(target.view(), {20, 10, 90, 50}), stage.picture.view()));
    EXPECT_EQ(target.pixel(19, 20), (Pixel{0, 0, 0, 255}));
    EXPECT_EQ(target.pixel(110, 20), (Pixel{0, 0, 0, 255}));
}

TEST(ViewRenderer, PictureStandsUprightFromTheBottomOfTheView) {
    Bitmap picture = Bitmap::createFilled(2, 2, {0, 0, 0, 255}, AlphaMode::opaque).value();
    picture.setPixel(0, 0, {200, 0, 0, 255});
    PlainStage stage(std::move(picture));
    const Bitmap target = rendered(stage.scene, 4, 6);
    EXPECT_EQ(target.pixel(0, 4).blue, 200);
    EXPECT_EQ(target.pixel(0, 5).blue, 0);
    EXPECT_EQ(target.pixel(0, 3).blue, 0);
}

TEST(ViewRenderer, BorderBetweenPixelsIsSmoothedOverOnePixel) {
    PlainStage stage(Bitmap::createFilled(10, 10, {200, 200, 200, 255}, AlphaMode::opaque).value());
    stage.scene.pictureToView = {0.5, 0, 0, 0.5, 2.25, 3};
    const Bitmap target = rendered(stage.scene, 12, 12);
    const int expected[] = {0, 0, 150, 200, 200, 200, 200, 50, 0, 0};
    for (int x = 0; x < 10; ++x)
        EXPECT_EQ(target.pixel(x, 6).green, expected[x]) << x;
}

TEST(ViewRenderer, PatternBeginsAtTheTopLeftCornerAndShowsAroundThePicture) {
    Bitmap tile = Bitmap::createFilled(3, 2, {0, 0, 0, 255}).value();
    tile.setPixel(0, 0, {10, 20, 30, 255});
    PlainStage stage(Bitmap::createFilled(8, 8, {200, 200, 200, 255}, AlphaMode::opaque).value());
    stage.scene.tile = tile.view();
    stage.scene.pictureToView = AffineTransform::translation(6, 0);
    const Bitmap target = rendered(stage.scene, 40, 20);
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 40; ++x) {
            const bool inPicture = x >= 6 && x < 14 && y >= 12;
            const Pixel expected = inPicture ? Pixel{200, 200, 200, 255} : tile.pixel(x % 3, y % 2);
            ASSERT_EQ(target.pixel(x, y), expected) << x << ", " << y;
        }
    }
}

TEST(ViewRenderer, WithoutAPictureOnlyThePatternShows) {
    const Bitmap tile = Bitmap::createFilled(4, 4, {9, 8, 7, 255}).value();
    ViewScene scene;
    scene.tile = tile.view();
    scene.backgroundHidden = false;
    scene.backgroundColour = {255, 255, 255, 255};
    scene.pictureSize = {20, 20};
    EXPECT_TRUE(samePixels(rendered(scene, 20, 20).view(),
                           Bitmap::createFilled(20, 20, {9, 8, 7, 255}).value().view()));
}

TEST(ViewRenderer, NothingIsDrawnWithoutATileButBlack) {
    EXPECT_TRUE(
        samePixels(rendered({}, 9, 3).view(), Bitmap::createFilled(9, 3, {0, 0, 0, 255}).value().view()));
}

TEST(ViewRenderer, RectangleOfNoSizeIsNotDrawn) {
    PlainStage stage(Bitmap::createFilled(8, 8, {200, 200, 200, 255}, AlphaMode::opaque).value());
    for (const double zoom : {0.0, -1.0, std::nan(""), HUGE_VAL}) {
        stage.scene.pictureToView = AffineTransform::scale(zoom, zoom);
        EXPECT_EQ(rendered(stage.scene, 9, 9).pixel(4, 4), (Pixel{0, 0, 0, 255})) << zoom;
    }
}

TEST(ViewRenderer, AreaOutsideTheViewDrawsNothing) {
    InlineWorkers workers;
    Bitmap target = Bitmap::createFilled(5, 5, {1, 2, 3, 4}).value();
    renderView({}, target.view(), {5, 0, 10, 10}, workers);
    renderView({}, target.view(), {2, 2, 0, 3}, workers);
    EXPECT_TRUE(samePixels(target.view(), Bitmap::createFilled(5, 5, {1, 2, 3, 4}).value().view()));
}

}  // namespace
}  // namespace trimora::cutengine::kernels
