#include "codecs/RowRepeats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "testing/Seed.h"

namespace trimora::codecs {
namespace {

/// One row, filtered: clear pixels, then `count` that `byteAt` tells, then clear ones again.
std::vector<std::uint8_t> rowOf(std::size_t before, std::size_t count, std::size_t after, auto byteAt) {
    std::vector<std::uint8_t> row(1 + 4 * (before + count + after), 0);
    for (std::size_t i = 0; i < 4 * count; ++i)
        row[1 + 4 * before + i] = byteAt(i);
    return row;
}

/// A row of a photograph: small differences that follow no rule.
auto grain() {
    return [random = testing::seededGenerator()](std::size_t /*i*/) mutable {
        return static_cast<std::uint8_t>(random() % 23 - 11);
    };
}

bool rowRepeats(const std::vector<std::uint8_t>& row) {
    return repeats({row, (row.size() - 1) / 4});
}

TEST(RowRepeats, ClearMarginsOfWideCutOutsDoNotHideThePhotographBetween) {
    EXPECT_FALSE(rowRepeats(rowOf(0, 24'000, 0, grain())));
    EXPECT_FALSE(rowRepeats(rowOf(9'600, 14'400, 0, grain())));
    EXPECT_FALSE(rowRepeats(rowOf(0, 14'400, 9'600, grain())));
    EXPECT_FALSE(rowRepeats(rowOf(6'000, 12'000, 6'000, grain())));
}

TEST(RowRepeats, PatternsAreWorthASearchInNarrowAndInWideRows) {
    const auto pattern = [](std::size_t i) { return static_cast<std::uint8_t>(i % 92 * i % 92); };
    EXPECT_TRUE(rowRepeats(rowOf(0, 1'000, 0, pattern)));
    EXPECT_TRUE(rowRepeats(rowOf(0, 24'000, 0, pattern)));
}

}  // namespace
}  // namespace trimora::codecs
