#include "editor/CursorPreview.h"

#include <gtest/gtest.h>

#include <QImage>

namespace trimora::editor {
namespace {

using cutengine::BrushCursorShape;
using foundation::Rect;

TEST(CursorPreview, ADiameterIsRoundedBeforeTheCrossIsDecided) {
    const BrushCursorShape shape = CursorPreview::shapeFor(41.6F);
    EXPECT_TRUE(shape.hasCross);
    EXPECT_FLOAT_EQ(shape.armLength, 2.0F / 15 + 1);
    EXPECT_FLOAT_EQ(static_cast<float>(shape.side), 47.6F);
    EXPECT_EQ(shape.circle, (Rect{3, 3, 42, 42}));
}

TEST(CursorPreview, ASmallBrushHasNoCrossAndALargeOneTheLongest) {
    EXPECT_FALSE(CursorPreview::shapeFor(41).hasCross);
    EXPECT_FALSE(CursorPreview::shapeFor(41.4F).hasCross);
    EXPECT_FLOAT_EQ(CursorPreview::shapeFor(200).armLength, 5.3F);
}

TEST(CursorPreview, AnOddDiameterDrawsTheEvenOvalInItsOwnSquare) {
    const BrushCursorShape shape = CursorPreview::shapeFor(51);
    EXPECT_EQ(shape.circle, (Rect{3, 3, 50, 50}));
    EXPECT_EQ(shape.side, 57);
    EXPECT_EQ(shape.hotSpot, (foundation::Point{28, 28}));
}

TEST(CursorPreview, TheBarsCrossAtTheCentre) {
    const BrushCursorShape shape = CursorPreview::shapeFor(100);
    const double arm = static_cast<double>(shape.armLength);
    EXPECT_FLOAT_EQ(shape.armLength, 5);
    EXPECT_EQ(shape.horizontal, (Rect{53 - arm, 52, 2 * arm - 1, 1}));
    EXPECT_EQ(shape.vertical, (Rect{52, 53 - arm, 1, 2 * arm - 1}));
}

TEST(CursorPreview, ThePictureKeepsToTheScreensPixels) {
    CursorPreview preview;
    EXPECT_TRUE(preview.imageCursor().isNull());
    EXPECT_FALSE(preview.isVisibleTo(nullptr)) << "whoever owns it shows it";
    preview.showCursor(51);
    const QPixmap picture = preview.imageCursor();
    EXPECT_EQ(picture.devicePixelRatio(), preview.devicePixelRatioF());
    EXPECT_EQ(picture.width(), std::lround(57 * preview.devicePixelRatioF()));
}

TEST(CursorPreview, ItShowsTheOutlineInTheMiddle) {
    CursorPreview preview;
    const QImage empty = preview.grab().toImage();
    preview.showCursor(50);
    const QImage shown = preview.grab().toImage();
    ASSERT_NE(shown, empty);
    const double scale = preview.devicePixelRatioF();
    const auto at = [&](double x, double y) {
        return shown.pixelColor(static_cast<int>(x * scale), static_cast<int>(y * scale));
    };
    // 224 points a side: the oval's left edge runs through 112 - 25, its inside is as it was.
    EXPECT_LT(at(112 - 25, 112).lightness(), 128);
    EXPECT_GT(at(112 - 27, 112).lightness(), at(112 - 40, 112).lightness()) << "a light glow round it";
    EXPECT_EQ(at(112 + 14, 112), empty.pixelColor(QPointF(126 * scale, 112 * scale).toPoint()));
}

TEST(CursorPreview, TheLargestBrushFits) {
    const CursorPreview preview;
    EXPECT_GE(preview.sizeHint().width(), CursorPreview::shapeFor(200).side);
}

}  // namespace
}  // namespace trimora::editor
