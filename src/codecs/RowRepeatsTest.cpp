#include "codecs/RowRepeats.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "testing/Seed.h"

namespace trimora::codecs {
namespace {

constexpr std::size_t kPixels = 512;

/// Eight rows, filtered: some of them clear, the rest as `byteAt` tells.
bool eightRowsRepeat(std::size_t clear, auto byteAt) {
    std::vector<std::uint8_t> rows(8 * (1 + 4 * kPixels), 0);
    for (std::size_t i = clear * (1 + 4 * kPixels); i < rows.size(); ++i)
        rows[i] = i % (1 + 4 * kPixels) == 0 ? 0 : byteAt(i);
    return repeats({rows, kPixels});
}

/// A row of a photograph: small differences that follow no rule.
auto grain() {
    return [random = testing::seededGenerator()](std::size_t /*i*/) mutable {
        return static_cast<std::uint8_t>(random() % 23 - 11);
    };
}

TEST(RowRepeats, PhotographIsNotWorthASearchEvenWithAClearHalf) {
    EXPECT_FALSE(eightRowsRepeat(0, grain()));
    EXPECT_FALSE(eightRowsRepeat(2, grain()));
    EXPECT_FALSE(eightRowsRepeat(4, grain()));
}

TEST(RowRepeats, PatternsAndNothingAtAllAreWorthASearch) {
    EXPECT_TRUE(eightRowsRepeat(0, [](std::size_t i) { return static_cast<std::uint8_t>(i % 92 * i % 92); }));
    EXPECT_TRUE(eightRowsRepeat(8, grain()));
}

}  // namespace
}  // namespace trimora::codecs
