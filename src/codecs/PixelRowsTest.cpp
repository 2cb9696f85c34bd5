#include "codecs/PixelRows.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <vector>

namespace trimora::codecs {
namespace {

/// Every colour with every alpha, one pixel each.
std::vector<std::uint8_t> everyColourAndAlpha() {
    std::vector<std::uint8_t> row;
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int colour = 0; colour < 256; ++colour) {
            for (const int value : {colour, 255 - colour, colour / 2, alpha})
                row.push_back(static_cast<std::uint8_t>(value));
        }
    }
    return row;
}

TEST(PixelRows, PremultiplyingRoundsToTheNearest) {
    const std::vector<std::uint8_t> before = everyColourAndAlpha();
    std::vector<std::uint8_t> row = before;
    premultiply(row.data(), row.size() / 4);
    for (std::size_t i = 0; i < row.size(); ++i) {
        const int alpha = before[i / 4 * 4 + 3];
        const int expected = i % 4 == 3 ? alpha : static_cast<int>(std::lround(before[i] * alpha / 255.0));
        ASSERT_EQ(row[i], expected) << int{before[i]} << " under " << alpha;
    }
}

TEST(PixelRows, UnpremultiplyingRoundsToTheNearestAndStopsAt255) {
    const std::vector<std::uint8_t> before = everyColourAndAlpha();
    std::vector<std::uint8_t> row = before;
    unpremultiply(row.data(), row.size() / 4);
    for (std::size_t i = 0; i < row.size(); ++i) {
        const int alpha = before[i / 4 * 4 + 3];
        int expected = alpha;
        if (i % 4 != 3)
            expected = alpha == 0 ? 0 : std::min(255, (before[i] * 255 * 2 + alpha) / (alpha * 2));
        ASSERT_EQ(row[i], expected) << int{before[i]} << " under " << alpha;
    }
}

TEST(PixelRows, PremultiplyingAgainGivesBackWhatWasDivided) {
    std::vector<std::uint8_t> row = everyColourAndAlpha();
    premultiply(row.data(), row.size() / 4);
    const std::vector<std::uint8_t> before = row;
    unpremultiply(row.data(), row.size() / 4);
    premultiply(row.data(), row.size() / 4);
    EXPECT_EQ(row, before);
}

TEST(PixelRows, RedAndBlueChangePlaces) {
    std::array<std::uint8_t, 8> row = {1, 2, 3, 4, 5, 6, 7, 8};
    exchangeRedAndBlue(row.data(), 2);
    EXPECT_EQ(row, (std::array<std::uint8_t, 8>{3, 2, 1, 4, 7, 6, 5, 8}));
}

TEST(PixelRows, OneAlphaBelowFullIsFound) {
    std::vector<std::uint8_t> row(400, 255);
    EXPECT_TRUE(isOpaque(row.data(), 100));
    for (std::size_t pixel : {0, 41, 99}) {
        row[pixel * 4 + 3] = 254;
        EXPECT_FALSE(isOpaque(row.data(), 100));
        makeOpaque(row.data(), 100);
        EXPECT_TRUE(isOpaque(row.data(), 100));
    }
}

TEST(PixelRows, NoColourStaysUnderAlphaZero) {
    std::array<std::uint8_t, 8> row = {1, 2, 3, 0, 5, 6, 7, 1};
    clearUnderAlphaZero(row.data(), 2);
    EXPECT_EQ(row, (std::array<std::uint8_t, 8>{0, 0, 0, 0, 5, 6, 7, 1}));
}

TEST(PixelRows, SixteenBitsAreRoundedToEight) {
    for (int value = 0; value < 65536; ++value)
        ASSERT_EQ(narrowed(static_cast<std::uint16_t>(value)), std::lround(value * 255 / 65535.0)) << value;
}

TEST(PixelRows, WidePixelsChangeOrderAndDepth) {
    const std::array<std::uint16_t, 4> from = {65535, 257 * 7, 128, 129};
    std::array<std::uint8_t, 4> to{};
    narrowRgba(from.data(), to.data(), 1);
    EXPECT_EQ(to, (std::array<std::uint8_t, 4>{0, 7, 255, 1}));
}

TEST(PixelRows, InksBecomeColours) {
    std::array<std::uint8_t, 12> row = {0, 0, 0, 0, 255, 0, 0, 0, 0, 51, 255, 102};
    cmykToOpaque(row.data(), 3);
    EXPECT_EQ(row, (std::array<std::uint8_t, 12>{255, 255, 255, 255, 255, 255, 0, 255, 0, 122, 153, 255}));
}

}  // namespace
}  // namespace trimora::codecs
