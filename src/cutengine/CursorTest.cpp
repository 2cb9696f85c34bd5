#include "cutengine/Cursor.h"

#include <gmock/gmock.h>

#include "cutengine/CutViewForTests.h"

namespace trimora::cutengine {
namespace {

using foundation::Bitmap;
using foundation::Point;

TEST(BrushCursorShape, SmallestBrushGivesSixteenPointsWithoutACross) {
    const auto shape = BrushCursorShape::forDiameter(10);
    EXPECT_EQ(shape.side, 16);
    EXPECT_EQ(shape.hotSpot, (Point{8, 8}));
    EXPECT_FALSE(shape.hasCross);
}

TEST(BrushCursorShape, OddDiameterIsRoundedDownToEven) {
    EXPECT_EQ(BrushCursorShape::forDiameter(21).side, 26);
    EXPECT_EQ(BrushCursorShape::forDiameter(21).circle.width, 20);
}

TEST(BrushCursorShape, CrossBeginsAtFortyTwo) {
    EXPECT_FALSE(BrushCursorShape::forDiameter(41).hasCross);
    const auto shape = BrushCursorShape::forDiameter(42);
    ASSERT_TRUE(shape.hasCross);
    EXPECT_NEAR(shape.armLength, 1.1333, 1e-4);
    EXPECT_TRUE(BrushCursorShape::forDiameter(41.6F).hasCross);
}

TEST(BrushCursorShape, CrossArmsStopGrowingAtFivePointThree) {
    EXPECT_FLOAT_EQ(BrushCursorShape::forDiameter(200).armLength, 5.3F);
    EXPECT_LT(BrushCursorShape::forDiameter(104).armLength, 5.3F);
    const auto shape = BrushCursorShape::forDiameter(200);
    EXPECT_NEAR(shape.horizontal.x, 103 - 5.3, 1e-6);
    EXPECT_EQ(shape.horizontal.y, 102);
    EXPECT_NEAR(shape.horizontal.width, 9.6, 1e-6);
    EXPECT_EQ(shape.horizontal.height, 1);
}

TEST(BrushCursorPicture, IsDrawnInDevicePixelsAtEveryScaleFactor) {
    const auto shape = BrushCursorShape::forDiameter(50);
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        const Bitmap picture = drawBrushCursor(shape, scale).value();
        EXPECT_EQ(picture.width(), static_cast<int>(56 * scale));
        const int middle = picture.height() / 2;
        const int rim = static_cast<int>(3 * scale);
        int darkest = 0;
        for (int x = rim - 1; x <= rim + 1; ++x) {
            const auto p = picture.pixel(x, middle);
            darkest = std::max(darkest, p.alpha - p.red);
        }
        EXPECT_GT(darkest, 120) << "the outline is black at scale " << scale;
        EXPECT_EQ(picture.pixel(0, 0).alpha, 0);
        const auto glow = picture.pixel(rim + static_cast<int>(2 * scale), middle);
        EXPECT_GT(glow.red, 10) << "the glow is white beside it";
    }
}

class CursorChoiceTest : public CutViewTest {};

TEST_F(CursorChoiceTest, ArrowOutsideAndWithoutAPicture) {
    view.mouseEntered();
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::arrow);
    load(400, 300);
    view.updateCursor();
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::brush);
    view.mouseExited();
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::arrow);
}

TEST_F(CursorChoiceTest, CommandShowsTheOpenHandAtOnce) {
    load(400, 300);
    view.mouseEntered();
    view.flagsChanged({.command = true});
    EXPECT_EQ(host.cursors.back().kind, Cursor::Kind::openHand);
    view.flagsChanged({});
    EXPECT_EQ(host.cursors.back().kind, Cursor::Kind::brush);
    view.setDragMode(DragMode::pan);
    view.flagsChanged({.command = true});
    EXPECT_EQ(host.cursors.back().kind, Cursor::Kind::brush);
}

TEST_F(CursorChoiceTest, PanShowsTheClosedHandUntilItEnds) {
    load(400, 300);
    view.mouseEntered();
    view.setDragMode(DragMode::pan);
    press({100, 100});
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::closedHand);
    view.mouseUp({});
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::openHand);
}

TEST_F(CursorChoiceTest, NotificationChoosesAgain) {
    load(400, 300);
    const std::size_t before = host.cursors.size();
    notifications.post("rk.cutView.needsCursorUpdate", this);
    EXPECT_EQ(host.cursors.size(), before + 1);
}

TEST_F(CursorChoiceTest, BrushCursorBearsItsPictureAtTheScreensScale) {
    load(400, 300);
    host.scale = 2;
    view.mouseEntered();
    view.setBrushDiameter(60);
    ASSERT_TRUE(host.cursors.back().picture);
    EXPECT_EQ(host.cursors.back().picture->width(), 132);
    EXPECT_EQ(host.cursors.back().shape.hotSpot, (Point{33, 33}));
}

}  // namespace
}  // namespace trimora::cutengine
