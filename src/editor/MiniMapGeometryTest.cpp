#include "editor/MiniMapGeometry.h"

#include <gtest/gtest.h>

namespace trimora::editor {
namespace {

using foundation::Point;
using foundation::Rect;
using foundation::Size;

constexpr Size kFrame{200, 150};

TEST(MiniMapFit, ALandscapePictureTakesTheWidthAndAPortraitOneTheHeight) {
    const MiniMapFit landscape = MiniMapFit::of({3000, 1000}, kFrame);
    EXPECT_FLOAT_EQ(landscape.sizeWidthMiniMap, 200);
    EXPECT_FLOAT_EQ(landscape.sizeHeightMiniMap, 200.0F / 3);
    const MiniMapFit portrait = MiniMapFit::of({1000, 3000}, kFrame);
    EXPECT_FLOAT_EQ(portrait.sizeWidthMiniMap, 50);
    EXPECT_FLOAT_EQ(portrait.sizeHeightMiniMap, 150);
}

TEST(MiniMapFit, ASquarePictureTakesTheWidth) {
    EXPECT_EQ(MiniMapFit::of({500, 500}, {128, 128}), (MiniMapFit{128, 128}));
}

TEST(MiniMapFit, NoPictureTakesNoRoom) {
    EXPECT_EQ(MiniMapFit::of({}, kFrame), MiniMapFit{});
}

TEST(MiniMapFit, RatiosOfOneCoverTheWholeFittedPicture) {
    const MiniMapFit fit = MiniMapFit::of({1000, 3000}, kFrame);
    EXPECT_EQ(fit.border(kFrame, 1, 1, 1, 1), (Rect{75, 0, 50, 150}));
    EXPECT_EQ(fit.border(kFrame, 1, 1, 1, 1), fit.picture(kFrame));
}

TEST(MiniMapFit, TheBorderFollowsThePan) {
    const MiniMapFit fit{200, 100};
    // Twice as large as the view and centred: the offset is half of the displayed size.
    EXPECT_EQ(fit.border(kFrame, 0.5F, 0.5F, 0.5F, 0.5F), (Rect{50, 50, 100, 50}));
    // The picture's left bottom corner in the view's, and its right top corner in the view's.
    EXPECT_EQ(fit.border(kFrame, 1, 1, 0.5F, 0.5F), (Rect{0, 25, 100, 50}));
    EXPECT_EQ(fit.border(kFrame, 0, 0, 0.5F, 0.5F), (Rect{100, 75, 100, 50}));
}

TEST(MiniMapFit, APlaceIsAShareOfThePictureAndStaysOnIt) {
    const MiniMapFit fit{200, 100};
    EXPECT_EQ(fit.share(kFrame, {100, 75}), (Point{0.5, 0.5}));
    EXPECT_EQ(fit.share(kFrame, {50, 50}), (Point{0.25, 0.25}));
    EXPECT_EQ(fit.share(kFrame, {-40, 500}), (Point{0, 1}));
    EXPECT_EQ(MiniMapFit{}.share(kFrame, {3, 3}), (Point{0.5, 0.5}));
}

}  // namespace
}  // namespace trimora::editor
