#include "editor/DragViewLayout.h"

#include <gtest/gtest.h>

namespace trimora::editor {
namespace {

using foundation::Point;
using foundation::Rect;
using foundation::Size;

TEST(DragViewLayout, TextGrowsWithTheViewUpToItsLargestSize) {
    EXPECT_DOUBLE_EQ(DragViewLayout::titleFont({400, 300}), 10.5);
    EXPECT_DOUBLE_EQ(DragViewLayout::descriptionFont({400, 300}), 12);
    EXPECT_DOUBLE_EQ(DragViewLayout::titleFont({1000, 800}), 17.5);
    EXPECT_DOUBLE_EQ(DragViewLayout::descriptionFont({1000, 800}), 20);
    EXPECT_DOUBLE_EQ(DragViewLayout::titleFont({250, 2000}), 7) << "the narrow side decides";
}

TEST(DragViewLayout, TheFrameLiesThirtyPointsInside) {
    EXPECT_EQ(DragViewLayout::of({400, 300}, {}).frame, (Rect{30, 30, 340, 240}));
}

TEST(DragViewLayout, ASmallPictureKeepsItsSizeAboveTheTexts) {
    const auto places =
        DragViewLayout::of({400, 300}, {.titleHeight = 14, .descriptionHeight = 16, .image = {96, 96}});
    // The text's height counts 14 + 16 / 2 = 22; the picture alone would begin at 150 - 48 = 102.
    EXPECT_EQ(places.image, (Rect{152, 102 + 22 + 35, 96, 96}));
    EXPECT_EQ(places.title, (Rect{0, 15, 400, 102 + 11}));
    EXPECT_EQ(places.description, (Rect{0, 0, 400, 102 - 11}));
    EXPECT_EQ(places.gaugeCentre, (Point{200, 124}));
    EXPECT_EQ(places.gaugeRadius, 48);
}

TEST(DragViewLayout, ALargePictureIsFittedIntoItsBoxInProportion) {
    const auto wide = DragViewLayout::of({400, 300}, {.image = {2000, 500}}).image;
    EXPECT_DOUBLE_EQ(wide.width, 400 * 0.6 - 30);
    EXPECT_DOUBLE_EQ(wide.height, wide.width / 4);
    const auto high = DragViewLayout::of({400, 300}, {.image = {500, 2000}}).image;
    EXPECT_DOUBLE_EQ(high.height, 300 * 0.6 - 30);
    EXPECT_DOUBLE_EQ(high.width, high.height / 4);
}

TEST(DragViewLayout, TheThirdLineBeginsAtTheTopLeft) {
    EXPECT_EQ(DragViewLayout::of({400, 300}, {}).info, (Rect{47, 0, 400, 260}));
}

TEST(DragViewLayout, AViewWithoutRoomShowsNoPicture) {
    EXPECT_TRUE(DragViewLayout::of({40, 40}, {.image = {96, 96}}).image.isEmpty());
}

}  // namespace
}  // namespace trimora::editor
