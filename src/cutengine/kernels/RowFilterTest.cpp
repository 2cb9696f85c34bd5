#include "cutengine/kernels/RowFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "cutengine/kernels/EveryInstructionSet.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

constexpr std::size_t kPixel = 4;
constexpr std::array<RowFilter, kRowFilters> kAll = {RowFilter::none, RowFilter::sub, RowFilter::up,
                                                     RowFilter::average, RowFilter::paeth};

/// A row with the pixel of zeros that stands before it.
struct Row {
    std::vector<std::uint8_t> bytes;
    [[nodiscard]] const std::uint8_t* data() const { return bytes.data() + kPixel; }
    [[nodiscard]] int at(std::ptrdiff_t i) const { return data()[i]; }
};

Row randomRow(std::size_t size, std::mt19937_64& random) {
    Row row{std::vector<std::uint8_t>(kPixel, 0)};
    for (std::size_t i = 0; i < size; ++i)
        row.bytes.push_back(static_cast<std::uint8_t>(random()));
    return row;
}

int plainGuess(RowFilter filter, int left, int above, int aboveLeft) {
    switch (filter) {
        case RowFilter::none:
            return 0;
        case RowFilter::sub:
            return left;
        case RowFilter::up:
            return above;
        case RowFilter::average:
            return (left + above) / 2;
        case RowFilter::paeth:
            break;
    }
    const int estimate = left + above - aboveLeft;
    const int best =
        std::min({std::abs(estimate - left), std::abs(estimate - above), std::abs(estimate - aboveLeft)});
    if (std::abs(estimate - left) == best)
        return left;
    return std::abs(estimate - above) == best ? above : aboveLeft;
}

std::vector<std::uint8_t> plainlyFiltered(RowFilter filter, const Row& row, const Row& above,
                                          std::size_t size) {
    std::vector<std::uint8_t> differences;
    for (std::ptrdiff_t i = 0; i < static_cast<std::ptrdiff_t>(size); ++i)
        differences.push_back(static_cast<std::uint8_t>(
            row.at(i) - plainGuess(filter, row.at(i - 4), above.at(i), above.at(i - 4))));
    return differences;
}

}  // namespace

TEST(RowFilter, EveryFilterEqualsItsDefinitionAtEveryLength) {
    std::mt19937_64 random = testing::seededGenerator();
    onEveryInstructionSet([&] {
        for (std::size_t size = 4; size <= 400; size += 4) {
            const Row row = randomRow(size, random);
            const Row above = randomRow(size, random);
            for (const RowFilter filter : kAll) {
                std::vector<std::uint8_t> filtered(size);
                filterRow(filter, row.data(), above.data(), size, filtered.data());
                ASSERT_EQ(filtered, plainlyFiltered(filter, row, above, size))
                    << "filter " << static_cast<int>(filter) << ", " << size << " bytes";
            }
        }
    });
}

TEST(RowFilter, PaethEqualsItsDefinitionForEveryThreeNeighbours) {
    // All values of two neighbours and of the third every one that a border case could hang on.
    std::vector<std::uint8_t> lefts;
    for (int value = 0; value < 256; ++value)
        lefts.push_back(static_cast<std::uint8_t>(value));
    onEveryInstructionSet([&] {
        for (int above = 0; above < 256; above += 3) {
            Row row{std::vector<std::uint8_t>(kPixel, 0)};
            Row top = row;
            for (int left = 0; left < 256; ++left) {
                for (const int aboveLeft : {0, left / 2, left, above, (left + above) / 2, 255}) {
                    row.bytes.insert(row.bytes.end(), {static_cast<std::uint8_t>(left), 0, 0, 0, 7, 0, 0, 0});
                    top.bytes.insert(top.bytes.end(), {static_cast<std::uint8_t>(aboveLeft), 0, 0, 0,
                                                       static_cast<std::uint8_t>(above), 0, 0, 0});
                }
            }
            const std::size_t size = row.bytes.size() - kPixel;
            std::vector<std::uint8_t> filtered(size);
            filterRow(RowFilter::paeth, row.data(), top.data(), size, filtered.data());
            ASSERT_EQ(filtered, plainlyFiltered(RowFilter::paeth, row, top, size)) << "above " << above;
        }
    });
}

TEST(RowFilter, FilterThatIsOneOffEverywhereCostsOneForEveryFourthByte) {
    constexpr std::size_t kSize = 1024;
    std::mt19937_64 random = testing::seededGenerator();
    onEveryInstructionSet([&] {
        const Row above = randomRow(kSize, random);
        for (const RowFilter filter : {RowFilter::sub, RowFilter::up, RowFilter::average, RowFilter::paeth}) {
            Row row{std::vector<std::uint8_t>(kPixel, 0)};
            for (std::ptrdiff_t i = 0; i < static_cast<std::ptrdiff_t>(kSize); ++i) {
                const int left = row.bytes[static_cast<std::size_t>(i)];
                row.bytes.push_back(
                    static_cast<std::uint8_t>(1 + plainGuess(filter, left, above.at(i), above.at(i - 4))));
            }
            const auto costs = filterCosts(row.data(), above.data(), kSize);
            EXPECT_EQ(costs[static_cast<std::size_t>(filter)], kSize / 4);
        }
    });
}

TEST(RowFilter, CostsOfRowsTooShortForVectorsAreTheirSums) {
    const Row row{{0, 0, 0, 0, 1, 2, 255, 0}};
    const Row above{{0, 0, 0, 0, 1, 2, 255, 10}};
    const auto costs = filterCosts(row.data(), above.data(), 4);
    EXPECT_EQ(costs[static_cast<std::size_t>(RowFilter::none)], 4U);
    EXPECT_EQ(costs[static_cast<std::size_t>(RowFilter::up)], 10U);
}

TEST(RowFilter, UnfilteringGivesBackThePixelsOfEveryFilterInTheOrderOfABitmap) {
    constexpr std::size_t kPixels = 53;
    std::mt19937_64 random = testing::seededGenerator();
    onEveryInstructionSet([&] {
        const Row row = randomRow(kPixels * kPixel, random);
        const Row above = randomRow(kPixels * kPixel, random);
        const auto exchanged = [&](const Row& from) {
            std::vector<std::uint8_t> bytes(from.data(), from.data() + kPixels * kPixel);
            for (std::size_t i = 0; i < bytes.size(); i += kPixel)
                std::swap(bytes[i], bytes[i + 2]);
            return bytes;
        };
        for (const RowFilter filter : kAll) {
            std::vector<std::uint8_t> differences(kPixels * kPixel + 1);
            filterRow(filter, row.data(), above.data(), kPixels * kPixel, differences.data());
            std::vector<std::uint8_t> made(kPixels * kPixel);
            unfilterRow(filter, differences.data(), FilePixel::rgba, exchanged(above).data(), kPixels,
                        made.data());
            EXPECT_EQ(made, exchanged(row)) << "filter " << static_cast<int>(filter);
        }
    });
}

TEST(RowFilter, UnfilteringPixelsWithoutAlphaMakesThemOpaque) {
    constexpr std::size_t kPixels = 41;
    std::mt19937_64 random = testing::seededGenerator();
    onEveryInstructionSet([&] {
        // Of each pixel's four bytes the last is taken out: bytes are guessed from their own kind alone.
        const Row row = randomRow(kPixels * kPixel, random);
        const Row above = randomRow(kPixels * kPixel, random);
        for (const RowFilter filter : kAll) {
            std::vector<std::uint8_t> four(kPixels * kPixel);
            filterRow(filter, row.data(), above.data(), four.size(), four.data());
            std::vector<std::uint8_t> three;
            std::vector<std::uint8_t> over;
            std::vector<std::uint8_t> expected;
            for (std::size_t i = 0; i < kPixels * kPixel; i += kPixel) {
                three.insert(three.end(), {four[i], four[i + 1], four[i + 2]});
                over.insert(over.end(), {above.data()[i + 2], above.data()[i + 1], above.data()[i], 255});
                expected.insert(expected.end(), {row.data()[i + 2], row.data()[i + 1], row.data()[i], 255});
            }
            three.push_back(0);
            std::vector<std::uint8_t> made(kPixels * kPixel);
            unfilterRow(filter, three.data(), FilePixel::rgb, over.data(), kPixels, made.data());
            EXPECT_EQ(made, expected) << "filter " << static_cast<int>(filter);
        }
    });
}

}  // namespace trimora::cutengine::kernels
