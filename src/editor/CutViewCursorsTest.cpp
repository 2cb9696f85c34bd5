#include "editor/CutViewCursors.h"

#include <gtest/gtest.h>

#include <QPixmap>

#include "util/BitmapImage.h"

namespace trimora::editor {
namespace {

using cutengine::BrushCursorShape;
using cutengine::Cursor;

Cursor brush(float diameter, double scaleFactor) {
    const auto shape = BrushCursorShape::forDiameter(diameter);
    auto picture = cutengine::drawBrushCursor(shape, scaleFactor);
    return {Cursor::Kind::brush, shape, std::make_shared<const foundation::Bitmap>(std::move(*picture))};
}

TEST(CutViewCursors, HandsAndArrowAreTheDesktopsOwn) {
    EXPECT_EQ(toolkitCursor({Cursor::Kind::arrow, {}, nullptr}, 1).shape(), Qt::ArrowCursor);
    EXPECT_EQ(toolkitCursor({Cursor::Kind::openHand, {}, nullptr}, 1).shape(), Qt::OpenHandCursor);
    EXPECT_EQ(toolkitCursor({Cursor::Kind::closedHand, {}, nullptr}, 1).shape(), Qt::ClosedHandCursor);
}

TEST(CutViewCursors, ABrushKeepsItsPixelsAndItsHotSpotAtEveryScale) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        const Cursor cursor = brush(20, scale);
        const QCursor shown = toolkitCursor(cursor, scale);
        EXPECT_EQ(shown.shape(), Qt::BitmapCursor);
        EXPECT_EQ(shown.hotSpot(), QPoint(13, 13));
        EXPECT_EQ(shown.pixmap().devicePixelRatio(), scale);
        EXPECT_EQ(shown.pixmap().size(), QSize(26, 26) * scale);
        EXPECT_EQ(shown.pixmap().toImage(), util::sharedImage(cursor.picture->view()));
    }
}

TEST(CutViewCursors, ABrushWithoutAPictureIsTheArrow) {
    EXPECT_EQ(toolkitCursor({Cursor::Kind::brush, {}, nullptr}, 1).shape(), Qt::ArrowCursor);
}

}  // namespace
}  // namespace trimora::editor
