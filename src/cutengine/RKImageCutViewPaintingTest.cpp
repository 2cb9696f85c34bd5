#include <gmock/gmock.h>

#include "cutengine/CutViewForTests.h"

namespace trimora::cutengine {
namespace {

using foundation::Bitmap;
using foundation::Pixel;
using foundation::Point;
using foundation::Rect;

TEST_F(CutViewTest, ClickWithoutMovementPaintsOneStampAndRecordsOneState) {
    load(400, 300);
    stroke({kMiddle});
    EXPECT_EQ(maskAt(kMiddle), 0);
    EXPECT_EQ(maskAt({208, 150}), 0);
    EXPECT_EQ(maskAt({212, 150}), 255);
    EXPECT_EQ(view.historyLength(), 2);
    EXPECT_EQ(view.historyCurrentState(), 1);
}

TEST_F(CutViewTest, RestoringBringsBackWhatWasCut) {
    load(400, 300);
    stroke({{100, 150}, {300, 150}});
    EXPECT_EQ(maskAt(kMiddle), 0);
    view.setBrushAlphaValue(1);
    stroke({kMiddle});
    EXPECT_EQ(maskAt(kMiddle), 255);
    EXPECT_EQ(maskAt({250, 150}), 0);
}

TEST_F(CutViewTest, BrushKeepsItsSizeOnScreenWhateverTheZoom) {
    load(1600, 1200);
    stroke({kMiddle});
    EXPECT_EQ(maskAt({208, 150}), 0);
    EXPECT_EQ(maskAt({213, 150}), 255);
}

TEST_F(CutViewTest, HardnessFromTheHardEdgeOnPaintsHardEllipses) {
    load(400, 300);
    view.setBrushDiameterSilent(190);
    view.setBrushHardness(0.98F);
    stroke({{100, 150}});
    view.setBrushHardness(0.985F);
    stroke({{300, 150}});
    const Bitmap plane = view.copyMaskPlane();
    const auto partial = [&](int from, int to) {
        int count = 0;
        for (int y = 0; y < plane.height(); ++y) {
            for (int x = from; x < to; ++x)
                count += plane.pixel(x, y).alpha % 255 != 0 ? 1 : 0;
        }
        return count;
    };
    EXPECT_GT(partial(0, 200), 2 * partial(200, 400)) << "a soft rim two mask pixels wide against none";
}

TEST_F(CutViewTest, SoftBrushFallsOffLinearlyFromItsHardness) {
    load(400, 300);
    view.setBrushDiameterSilent(100);
    view.setBrushHardness(0.5F);
    stroke({kMiddle});
    EXPECT_EQ(maskAt({220, 150}), 0);
    EXPECT_NEAR(maskAt({237, 150}), 255 * 12.5 / 25, 8);
    EXPECT_GT(maskAt({248, 150}), 230);
}

TEST_F(CutViewTest, MaskDoesNotDependOnHowManyPassesPaintedIt) {
    load(400, 300);
    view.setBrushDiameterSilent(37);
    view.setBrushHardness(0.6F);
    const std::vector<Point> points{{50, 50}, {120, 90}, {180, 40}, {260, 210}, {330, 250}};
    stroke(points);
    const Bitmap atOnce = view.copyMaskPlane();
    load(400, 300);
    press(points.front());
    queues.settle();
    for (std::size_t i = 1; i < points.size(); ++i) {
        drag(points[i], points[i - 1]);
        queues.settle();
    }
    view.mouseUp({});
    queues.settle();
    EXPECT_TRUE(samePixels(atOnce.view(), view.copyMaskPlane().view()));
}

TEST_F(CutViewTest, BrushChangedAfterTheStampsWereLaidDoesNotChangeThem) {
    load(400, 300);
    press(kMiddle);
    view.mouseUp({});
    view.setBrushAlphaValue(1);
    queues.settle();
    EXPECT_EQ(maskAt(kMiddle), 0);
}

TEST_F(CutViewTest, ColourModePaintsTheColourPlaneAndLeavesTheMask) {
    load(400, 300);
    view.setColorMode(true);
    view.setBrushColor(Colour{1, 0.5, 0, 0.5});
    stroke({kMiddle});
    EXPECT_EQ(maskAt(kMiddle), 255);
    EXPECT_EQ(view.copyColorPlane().pixel(200, 150), (Pixel{0, 64, 128, 128}));
    view.prevHistoryState();
    queues.settle();
    EXPECT_EQ(view.copyColorPlane().pixel(200, 150), Pixel{}) << "the colour plane has no history";
}

TEST_F(CutViewTest, ColourModeWithoutAColourPaintsTransparency) {
    load(400, 300);
    view.setColorMode(true);
    stroke({kMiddle});
    EXPECT_EQ(view.copyColorPlane().pixel(200, 150), Pixel{});
}

TEST_F(CutViewTest, ResetShowsTheWholePictureAndCanBeUndone) {
    load(400, 300);
    stroke({kMiddle});
    view.resetMask();
    queues.settle();
    EXPECT_EQ(maskAt(kMiddle), 255);
    EXPECT_EQ(view.historyLength(), 3);
    view.prevHistoryState();
    queues.settle();
    EXPECT_EQ(maskAt(kMiddle), 0);
}

TEST_F(CutViewTest, StrokeAsksToRedrawOnlyWhatItTouched) {
    load(400, 300);
    time.advance(1);
    host.displayed.clear();
    stroke({kMiddle});
    Rect all;
    for (const Rect& area : host.displayed)
        all = united(all, area);
    EXPECT_TRUE(all.contains({190, 140}) && all.contains({210, 160}));
    EXPECT_LT(all.width, 40);
    EXPECT_LT(all.height, 40);
}

TEST_F(CutViewTest, ShownMaskIsThePaintedPlane) {
    load(3000, 1000);
    stroke({{100, 150}, {300, 170}});
    const Bitmap plane = view.copyMaskPlane();
    const auto shown = view.mask();
    ASSERT_NE(shown, nullptr);
    ASSERT_EQ(shown->width(), plane.width());
    int differences = 0;
    for (int y = 0; y < plane.height(); ++y) {
        for (int x = 0; x < plane.width(); ++x)
            differences += shown->levels()[0].alphaAt(x, y) != plane.pixel(x, y).alpha ? 1 : 0;
    }
    EXPECT_EQ(differences, 0);
}

}  // namespace
}  // namespace trimora::cutengine
