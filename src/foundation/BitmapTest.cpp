#include "foundation/Bitmap.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <utility>

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

TEST(Bitmap, MovingLeavesAnEmptyOneBehind) {
    Bitmap first = Bitmap::createFilled(3, 2, {1, 2, 3, 4}).value();
    Bitmap second(std::move(first));
    EXPECT_TRUE(first.isEmpty());  // NOLINT(bugprone-use-after-move): the state left behind is promised
    Bitmap third = Bitmap::create(9, 9).value();
    third = std::move(second);
    EXPECT_EQ(third.width(), 3);
    EXPECT_EQ(third.pixel(2, 1), (Pixel{1, 2, 3, 4}));
}

TEST(Bitmap, PixelsLieInMemoryAsBlueGreenRedAlpha) {
    Bitmap bitmap = Bitmap::create(2, 1, AlphaMode::straight).value();
    bitmap.setPixel(1, 0, {10, 20, 30, 40});
    EXPECT_EQ(bitmap.row(0)[4], 10);
    EXPECT_EQ(bitmap.row(0)[5], 20);
    EXPECT_EQ(bitmap.row(0)[6], 30);
    EXPECT_EQ(bitmap.row(0)[7], 40);
    EXPECT_EQ(bitmap.alphaMode(), AlphaMode::straight);
    EXPECT_EQ(bitmap.view().alphaMode, AlphaMode::straight);
}

TEST(Bitmap, CloneOfAnEmptyOneIsEmpty) {
    const Result<Bitmap> copy = Bitmap().clone();
    ASSERT_TRUE(copy);
    EXPECT_TRUE(copy->isEmpty());
}

TEST(Bitmap, SubviewOutsideIsEmpty) {
    const Bitmap bitmap = Bitmap::createFilled(4, 4, {}).value();
    EXPECT_TRUE(subview(bitmap.view(), {4, 0, 2, 2}).isEmpty());
    EXPECT_TRUE(subview(bitmap.view(), {-3, -3, 3, 9}).isEmpty());
}

TEST(Bitmap, ViewsOfOtherSizesDoNotHoldTheSamePixels) {
    const Bitmap wide = Bitmap::createFilled(4, 2, {}).value();
    const Bitmap high = Bitmap::createFilled(2, 4, {}).value();
    EXPECT_FALSE(samePixels(wide.view(), high.view()));
}

TEST(Bitmap, PaddingDoesNotCountAsPixels) {
    Bitmap first = Bitmap::createFilled(3, 2, {5, 5, 5, 5}).value();
    const Bitmap second = Bitmap::createFilled(3, 2, {5, 5, 5, 5}).value();
    first.row(0)[12] = static_cast<std::uint8_t>(~second.row(0)[12]);
    EXPECT_TRUE(samePixels(first.view(), second.view()));
}

TEST(PixelBuffer, FullStockGivesUpWhatLayLongest) {
    PixelBuffer::trimStock();
    constexpr std::size_t kLarge = PixelBuffer::kStockLimit / 4 * 3;
    auto older = std::make_optional(PixelBuffer::allocate(kLarge));
    auto newer = std::make_optional(PixelBuffer::allocate(kLarge));
    const std::uint8_t* const kept = newer->data();
    ASSERT_TRUE(*older);
    ASSERT_TRUE(*newer);
    older.reset();
    newer.reset();
    EXPECT_EQ(PixelBuffer::allocate(kLarge).data(), kept);
    PixelBuffer::trimStock();
}

TEST(PixelBuffer, ImpossibleSizeIsRefused) {
    EXPECT_FALSE(PixelBuffer::allocate(std::numeric_limits<std::size_t>::max()));
    EXPECT_FALSE(PixelBuffer());
}

}  // namespace
}  // namespace trimora::foundation
