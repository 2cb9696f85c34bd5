#include "cutengine/kernels/PixelDeflate.h"

#include <gtest/gtest.h>
#include <libdeflate.h>

#include <bit>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "cutengine/kernels/EveryInstructionSet.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// What the packed blocks unpack to once a last, empty one has been put behind them.
Bytes unpacked(Bytes packed, std::size_t size) {
    packed.insert(packed.end(), {0x03, 0x00});
    Bytes bytes(size);
    libdeflate_decompressor* const inflater = libdeflate_alloc_decompressor();
    const libdeflate_result outcome = libdeflate_deflate_decompress(inflater, packed.data(), packed.size(),
                                                                    bytes.data(), bytes.size(), nullptr);
    libdeflate_free_decompressor(inflater);
    return outcome == LIBDEFLATE_SUCCESS ? bytes : Bytes{};
}

Bytes packed(const Bytes& rows, std::size_t pixelsPerRow) {
    const PackedBytes made = packPixels({rows, pixelsPerRow});
    return {made.bytes().begin(), made.bytes().end()};
}

/// Rows of any bytes; `next` gives one after the other.
Bytes rowsOf(std::size_t pixelsPerRow, std::size_t count, const std::function<std::uint8_t()>& next) {
    Bytes rows(count * (1 + 4 * pixelsPerRow));
    for (std::uint8_t& byte : rows)
        byte = next();
    return rows;
}

void expectUnpacksToItself(const Bytes& rows, std::size_t pixelsPerRow) {
    onEveryInstructionSet([&] { EXPECT_EQ(unpacked(packed(rows, pixelsPerRow), rows.size()), rows); });
}

}  // namespace

TEST(PixelDeflate, NoiseUnpacksToItself) {
    std::mt19937_64 random = testing::seededGenerator();
    expectUnpacksToItself(rowsOf(311, 40, [&] { return static_cast<std::uint8_t>(random()); }), 311);
}

TEST(PixelDeflate, FlatRowsUnpackToThemselvesAndAreTiny) {
    const Bytes rows = rowsOf(1000, 100, [] { return std::uint8_t{0}; });
    expectUnpacksToItself(rows, 1000);
    EXPECT_LT(packed(rows, 1000).size(), rows.size() / 100);
}

TEST(PixelDeflate, RowsOfEveryWidthUnpackToThemselves) {
    std::mt19937_64 random = testing::seededGenerator();
    for (std::size_t width = 1; width < 80; ++width) {
        SCOPED_TRACE("width " + std::to_string(width));
        expectUnpacksToItself(rowsOf(width, 5, [&] { return static_cast<std::uint8_t>(random() % 3); }),
                              width);
    }
}

TEST(PixelDeflate, MatchesReachAsFarBackAsTheFormatAllowsAndNoFarther) {
    // The same noisy row again and again: it lies as far back as one row is long.
    std::mt19937_64 random = testing::seededGenerator();
    for (const std::size_t width : {std::size_t{8191}, std::size_t{8192}, std::size_t{9000}}) {
        SCOPED_TRACE("width " + std::to_string(width));
        const Bytes row = rowsOf(width, 1, [&] { return static_cast<std::uint8_t>(random()); });
        Bytes rows;
        for (int i = 0; i < 4; ++i)
            rows.insert(rows.end(), row.begin(), row.end());
        EXPECT_EQ(unpacked(packed(rows, width), rows.size()), rows);
    }
}

TEST(PixelDeflate, RepeatedRowsAreWrittenAsMatches) {
    std::mt19937_64 random = testing::seededGenerator();
    const Bytes row = rowsOf(400, 1, [&] { return static_cast<std::uint8_t>(random()); });
    Bytes rows;
    for (int i = 0; i < 50; ++i)
        rows.insert(rows.end(), row.begin(), row.end());
    EXPECT_LT(packed(rows, 400).size(), rows.size() / 10);
}

TEST(PixelDeflate, PacksStandOneAfterAnother) {
    std::mt19937_64 random = testing::seededGenerator();
    const auto few = [&] { return static_cast<std::uint8_t>(random() % 7); };
    Bytes all;
    Bytes joined;
    for (int i = 0; i < 20; ++i) {
        const Bytes rows = rowsOf(1 + random() % 50, 3, few);
        const Bytes part = packed(rows, rows.size() / 3 / 4);
        all.insert(all.end(), rows.begin(), rows.end());
        joined.insert(joined.end(), part.begin(), part.end());
    }
    EXPECT_EQ(unpacked(joined, all.size()), all);
}

TEST(PixelDeflate, OneByteThatIsRareAmongMillionsIsWritten) {
    // Its code would be longer than the longest one.
    std::mt19937_64 random = testing::seededGenerator();
    int left = 2'000'000;
    Bytes rows = rowsOf(5000, 100, [&] {
        const int bits = std::countr_zero(random() | 0x40000000U);
        return static_cast<std::uint8_t>(--left > 0 ? bits : 0);
    });
    rows[rows.size() / 2] = 200;
    EXPECT_EQ(unpacked(packed(rows, 5000), rows.size()), rows);
}

}  // namespace trimora::cutengine::kernels
