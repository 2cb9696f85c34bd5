#include "batch/MaskImage.h"

#include <gtest/gtest.h>

namespace trimora::batch {
namespace {

using foundation::Bitmap;
using foundation::IntRect;
using foundation::Pixel;

Bitmap picture(int width, int height, Pixel pixel) {
    return Bitmap::createFilled(width, height, pixel).value();
}

int maskAt(const Bitmap& from, AlphaRoom room, int x = 0, int y = 0) {
    return maskFrom(from.view(), room)->pixel(x, y).alpha;
}

TEST(MaskImage, EveryGreyIsTakenExactlyAndWhiteKeeps) {
    Bitmap greys = picture(256, 1, {});
    for (int x = 0; x < 256; ++x) {
        const auto grey = static_cast<std::uint8_t>(x);
        greys.setPixel(x, 0, {grey, grey, grey, 255});
    }
    const Bitmap mask = maskFrom(greys.view(), AlphaRoom::none).value();
    for (int x = 0; x < 256; ++x)
        ASSERT_EQ(mask.pixel(x, 0), (Pixel{0, 0, 0, static_cast<std::uint8_t>(x)}));
}

TEST(MaskImage, ColoursCountByTheirBrightness) {
    EXPECT_EQ(maskAt(picture(1, 1, {0, 255, 0, 255}), AlphaRoom::none), 182);
    EXPECT_EQ(maskAt(picture(1, 1, {0, 0, 255, 255}), AlphaRoom::none), 53);
    EXPECT_EQ(maskAt(picture(1, 1, {255, 0, 0, 255}), AlphaRoom::none), 18);
}

TEST(MaskImage, WhereAnythingIsTransparentAlphaCountsAndColourDoesNot) {
    Bitmap white = picture(3, 1, {255, 255, 255, 255});
    white.setPixel(1, 0, {128, 128, 128, 128});
    white.setPixel(2, 0, {0, 0, 0, 255});
    for (const AlphaRoom room : {AlphaRoom::none, AlphaRoom::some}) {
        EXPECT_EQ(maskAt(white, room, 0), 255);
        EXPECT_EQ(maskAt(white, room, 1), 128);
        EXPECT_EQ(maskAt(white, room, 2), 255);
    }
}

TEST(MaskImage, BlackAllOverCutsUnlessItsAlphaSaysOtherwise) {
    const Bitmap black = picture(4, 4, {0, 0, 0, 255});
    EXPECT_EQ(maskAt(black, AlphaRoom::none), 0);
    EXPECT_EQ(maskAt(black, AlphaRoom::some), 255);
}

TEST(MaskImage, KeptMaskIsReadBackAsItWas) {
    for (const int kept : {0, 1, 128, 255}) {
        const Bitmap mask = picture(2, 2, {0, 0, 0, static_cast<std::uint8_t>(kept)});
        EXPECT_EQ(maskAt(keptMask(mask.view()).value(), AlphaRoom::some), kept);
    }
}

TEST(MaskImage, KeptMaskIsWhiteWhereItKeeps) {
    const Bitmap mask = picture(1, 1, {0, 0, 0, 200});
    EXPECT_EQ(keptMask(mask.view())->pixel(0, 0), (Pixel{200, 200, 200, 200}));
}

TEST(MaskImage, BoxHoldsThePixelsThatShowAndNoMore) {
    Bitmap bitmap = picture(9, 7, {});
    EXPECT_TRUE(visibleBox(bitmap.view()).isEmpty());
    bitmap.setPixel(3, 5, {0, 0, 0, 1});
    EXPECT_EQ(visibleBox(bitmap.view()), (IntRect{3, 5, 1, 1}));
    bitmap.setPixel(6, 2, {0, 0, 0, 255});
    EXPECT_EQ(visibleBox(bitmap.view()), (IntRect{3, 2, 4, 4}));
    bitmap.setPixel(0, 0, {9, 9, 9, 9});
    bitmap.setPixel(8, 6, {9, 9, 9, 9});
    EXPECT_EQ(visibleBox(bitmap.view()), (IntRect{0, 0, 9, 7}));
}

}  // namespace
}  // namespace trimora::batch
