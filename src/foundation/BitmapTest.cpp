#include "foundation/Bitmap.h"

#include <gtest/gtest.h>

namespace trimora::foundation {
namespace {

TEST(Bitmap, RowsArePaddedToSixtyFourBytes) {
    const Result<Bitmap> bitmap = Bitmap::create(17, 3);
    ASSERT_TRUE(bitmap);
    EXPECT_EQ(bitmap->stride(), 128U);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(bitmap->row(1)) % 64, 0U);
}

TEST(Bitmap, ImpossibleSizesAreRefusedBeforeAnythingIsAllocated) {
    EXPECT_FALSE(Bitmap::create(0, 5));
    EXPECT_FALSE(Bitmap::create(5, -1));
    EXPECT_FALSE(Bitmap::create(Bitmap::kMaxSide + 1, 1));
    EXPECT_FALSE(Bitmap::create(Bitmap::kMaxSide, Bitmap::kMaxSide));
}

TEST(Bitmap, EmptyBitmapOwnsNothing) {
    const Bitmap bitmap;
    EXPECT_TRUE(bitmap.isEmpty());
    EXPECT_TRUE(bitmap.view().isEmpty());
}

TEST(Bitmap, CloneHoldsTheSamePixelsElsewhere) {
    Bitmap original = Bitmap::createFilled(5, 4, {1, 2, 3, 4}).value();
    const Bitmap copy = original.clone().value();
    EXPECT_TRUE(samePixels(original.view(), copy.view()));
    original.setPixel(2, 2, {9, 9, 9, 9});
    EXPECT_FALSE(samePixels(original.view(), copy.view()));
    EXPECT_EQ(copy.pixel(2, 2), (Pixel{1, 2, 3, 4}));
}

TEST(Bitmap, SubviewIsClippedAndSharesMemory) {
    Bitmap bitmap = Bitmap::createFilled(8, 8, {}).value();
    const MutableBitmapView part = subview(bitmap.view(), {6, 7, 10, 10});
    EXPECT_EQ(part.width, 2);
    EXPECT_EQ(part.height, 1);
    part.row(0)[0] = 77;
    EXPECT_EQ(bitmap.pixel(6, 7).blue, 77);
}

TEST(PixelBuffer, LargeBlockIsServedAgainAfterRelease) {
    PixelBuffer::trimStock();
    const std::uint8_t* first = nullptr;
    {
        PixelBuffer buffer = PixelBuffer::allocate(5'000'000);
        first = buffer.data();
    }
    const PixelBuffer again = PixelBuffer::allocate(4'900'000);
    EXPECT_EQ(again.data(), first);
    const PixelBuffer other = PixelBuffer::allocate(4'900'000);
    EXPECT_NE(other.data(), first);
}

TEST(PixelBuffer, LargeBlockIsNotWastedOnASmallRequest) {
    PixelBuffer::trimStock();
    const std::uint8_t* first = nullptr;
    {
        PixelBuffer buffer = PixelBuffer::allocate(50'000'000);
        first = buffer.data();
    }
    const PixelBuffer small = PixelBuffer::allocate(2'000'000);
    EXPECT_NE(small.data(), first);
    PixelBuffer::trimStock();
}

}  // namespace
}  // namespace trimora::foundation
