#include <gmock/gmock.h>

#include <cmath>

#include "cutengine/CutViewForTests.h"
#include "cutengine/ViewPlacement.h"

namespace trimora::cutengine {
namespace {

using foundation::AffineTransform;
using foundation::Point;
using ::testing::Contains;
using ::testing::ElementsAre;

class PlacementTest : public CutViewTest {
 protected:
    [[nodiscard]] double zoom() const { return placement::zoomLevel(view.transform()); }
    [[nodiscard]] Point pictureAt(Point inView) const {
        return view.imageLayer()->toView(view.transform()).inverted()->apply(inView);
    }
    void scroll(double deltaY, Point at = kMiddle) { view.scrollWheel({at, deltaY}); }
};

TEST_F(PlacementTest, LoadedPictureIsFittedAndCentred) {
    load(800, 400);
    EXPECT_EQ(view.transform(), (AffineTransform{0.5, 0, 0, 0.5, 200, 150}));
    load(3, 3);
    EXPECT_EQ(view.transform(), (AffineTransform{20, 0, 0, 20, 200, 150})) << "fit stops at the largest zoom";
}

TEST_F(PlacementTest, OneScrollStepZoomsByThreeTenthsAtMost) {
    load(800, 600);
    scroll(100);
    EXPECT_FLOAT_EQ(static_cast<float>(zoom()), 0.5F * 1.3F);
    scroll(-1);
    scroll(1);
    const double before = zoom();
    for (int i = 0; i < 3; ++i)
        scroll(100);
    scroll(-100);
    EXPECT_NEAR(zoom(), before * 1.3 * 1.3 * 1.3 * 0.7, 1e-5);
}

TEST_F(PlacementTest, ScrollOfNothingKeepsTheZoomAndChecksThePosition) {
    load(800, 600);
    scroll(100);
    const double before = zoom();
    delegate.miniMaps.clear();
    scroll(0);
    EXPECT_EQ(zoom(), before);
    EXPECT_EQ(delegate.miniMaps.size(), 1U);
    EXPECT_FALSE(view.imageFit());
}

TEST_F(PlacementTest, ZoomStopsAtTwentyExactlyAndThePointUnderThePointerStays) {
    load(4000, 3000);
    const Point pointer{130, 170};
    const Point before = pictureAt(pointer);
    for (int i = 0; i < 60; ++i) {
        scroll(7, pointer);
        const Point now = pictureAt(pointer);
        ASSERT_NEAR(now.x, before.x, 1e-6);
        ASSERT_NEAR(now.y, before.y, 1e-6);
    }
    EXPECT_EQ(zoom(), 20);
}

TEST_F(PlacementTest, ZoomingOutSnapsToFitAndNeverBelow) {
    load(800, 600);
    for (int i = 0; i < 5; ++i)
        scroll(20);
    EXPECT_FALSE(view.imageFit());
    for (int i = 0; i < 40; ++i)
        scroll(-10);
    EXPECT_TRUE(view.imageFit());
    EXPECT_EQ(view.transform(), (AffineTransform{0.5, 0, 0, 0.5, 200, 150}));
}

TEST_F(PlacementTest, SmallPictureStaysEightyPointsFromEveryEdge) {
    load(100, 100);
    view.setScale(0.33F);
    view.setDragMode(DragMode::pan);
    stroke({kMiddle, {5000, 150}});
    const auto displayed = placement::displayedSize(view.transform(), {100, 100});
    EXPECT_DOUBLE_EQ(view.transform().tx + displayed.width / 2, 400 - 80);
    stroke({kMiddle, {-5000, 5000}});
    EXPECT_DOUBLE_EQ(view.transform().tx - displayed.width / 2, 80);
    EXPECT_DOUBLE_EQ(view.transform().ty + displayed.height / 2, 300 - 80);
}

TEST_F(PlacementTest, LargePictureLeavesNoGapWiderThanEightyPoints) {
    load(4000, 3000);
    for (int i = 0; i < 10; ++i)
        scroll(20);
    view.setDragMode(DragMode::pan);
    stroke({kMiddle, {9000, -9000}});
    const auto displayed = placement::displayedSize(view.transform(), {4000, 3000});
    EXPECT_NEAR(view.transform().tx - displayed.width / 2, 80, 1e-9);
    EXPECT_NEAR(view.transform().ty + displayed.height / 2, 300 - 80, 1e-9);
}

TEST_F(PlacementTest, PanFollowsThePointerAtOnce) {
    load(800, 600);
    view.setDragMode(DragMode::pan);
    press(kMiddle);
    drag({230, 170}, kMiddle);
    EXPECT_EQ(view.transform().tx, 230);
    EXPECT_EQ(view.transform().ty, 170);
    EXPECT_FALSE(view.isAnimating());
    EXPECT_FALSE(view.imageFit());
    view.mouseUp({});
    EXPECT_TRUE(view.isAnimating()) << "the release checks the position once more, animated";
    time.advance(0.2);
    EXPECT_FALSE(view.isAnimating());
}

TEST_F(PlacementTest, FittedPictureIsRefittedWhenTheViewChanges) {
    load(800, 400);
    view.setViewSize({800, 800});
    EXPECT_EQ(view.transform(), (AffineTransform{1, 0, 0, 1, 400, 400}));
    EXPECT_FALSE(view.isAnimating());
}

TEST_F(PlacementTest, ZoomedPictureSnapsToFitWhenAResizeMakesItFit) {
    load(800, 400);
    scroll(20);
    EXPECT_FALSE(view.imageFit());
    view.setViewSize({2000, 2000});
    EXPECT_TRUE(view.imageFit());
    EXPECT_EQ(view.transform().a, 2.5);
}

TEST_F(PlacementTest, SetScaleMovesThePictureAloneAndChecksNothing) {
    load(800, 400);
    const auto behind = view.bluredLayer()->transform();
    delegate.miniMaps.clear();
    view.setScale(100);
    EXPECT_EQ(zoom(), 20);
    EXPECT_EQ(view.transform().tx, 200);
    EXPECT_EQ(view.bluredLayer()->transform(), behind);
    EXPECT_TRUE(delegate.miniMaps.empty());
    EXPECT_TRUE(view.imageFit());
    EXPECT_EQ(view.scale(), 0);
}

TEST_F(PlacementTest, MiniMapHearsTheVisiblePartAfterEveryCorrection) {
    load(800, 400);
    delegate.miniMaps.clear();
    scroll(50);
    ASSERT_EQ(delegate.miniMaps.size(), 1U);
    const double width = 800 * view.transform().a;
    const double height = 400 * view.transform().d;
    EXPECT_THAT(delegate.miniMaps[0],
                ElementsAre(static_cast<float>(2 * view.transform().tx / width),
                            static_cast<float>(2 * view.transform().ty / height),
                            static_cast<float>(400 / width), static_cast<float>(300 / height)));
}

TEST_F(PlacementTest, ZoomAnimatesFromWhatIsShownAndEndsExactlyOnItsTarget) {
    load(800, 600);
    time.advance(1);
    const AffineTransform before = view.transform();
    scroll(20);
    const auto& layer = *view.imageLayer();
    EXPECT_EQ(layer.presentation(time.seconds()), before);
    time.advance(0.05);
    const double half = layer.presentation(time.seconds()).a;
    EXPECT_GT(half, before.a);
    EXPECT_LT(half, view.transform().a);
    time.advance(0.2);
    EXPECT_EQ(layer.presentation(time.seconds()), view.transform());
}

TEST_F(PlacementTest, ZoomWritesItsDebugLines) {
    load(800, 600);
    testing::CapturedLog log;
    scroll(0);
    EXPECT_THAT(log.texts(), Contains(::testing::StartsWith("newScale 0.5")));
    EXPECT_THAT(log.texts(), Contains("trans.tx 200.000000"));
    EXPECT_THAT(log.texts(), Contains(::testing::StartsWith("SootnX ")));
}

TEST_F(PlacementTest, NothingMovesWithoutAPicture) {
    scroll(20);
    view.setScale(2);
    view.limitDrag();
    view.correctImagePositionWithFiting(true);
    EXPECT_EQ(view.transform(), AffineTransform{});
    EXPECT_TRUE(delegate.miniMaps.empty());
    EXPECT_FALSE(view.isAnimating());
}

TEST(EaseOut, RisesFromZeroToOneFasterAtFirst) {
    EXPECT_EQ(easeOut(0), 0);
    EXPECT_EQ(easeOut(1), 1);
    EXPECT_EQ(easeOut(-1), 0);
    EXPECT_EQ(easeOut(2), 1);
    double last = 0;
    for (int i = 1; i < 100; ++i) {
        const double now = easeOut(i / 100.0);
        EXPECT_GT(now, last);
        EXPECT_GT(now, i / 100.0);
        last = now;
    }
}

}  // namespace
}  // namespace trimora::cutengine
