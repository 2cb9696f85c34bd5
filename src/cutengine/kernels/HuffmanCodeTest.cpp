#include "cutengine/kernels/HuffmanCode.h"

#include <gtest/gtest.h>

#include <functional>
#include <queue>
#include <random>

#include "cutengine/kernels/RandomPicture.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using Frequencies = std::vector<std::uint32_t>;

std::uint64_t costOf(const Frequencies& frequencies, const HuffmanCode& code) {
    std::uint64_t bits = 0;
    for (std::size_t symbol = 0; symbol < frequencies.size(); ++symbol)
        bits += std::uint64_t{frequencies[symbol]} * code.lengths[symbol];
    return bits;
}

// By the definition: the two lightest become one, again and again.
std::uint64_t leastCost(const Frequencies& frequencies) {
    std::priority_queue<std::uint64_t, std::vector<std::uint64_t>, std::greater<>> open;
    for (const std::uint32_t frequency : frequencies) {
        if (frequency > 0)
            open.push(frequency);
    }
    std::uint64_t cost = 0;
    while (open.size() > 1) {
        std::uint64_t joined = open.top();
        open.pop();
        joined += open.top();
        open.pop();
        cost += joined;
        open.push(joined);
    }
    return cost;
}

// Of all codes of `longest` bits, how many begin with one of the code's.
std::uint64_t roomTaken(const HuffmanCode& code, int longest) {
    std::uint64_t taken = 0;
    for (const std::uint8_t length : code.lengths) {
        EXPECT_LE(length, longest);
        taken += length > 0 ? std::uint64_t{1} << (longest - length) : 0;
    }
    return taken;
}

TEST(HuffmanCode, takesTheFewestBitsWhereTheLimitAllowsIt) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 300; ++round) {
        Frequencies frequencies(static_cast<std::size_t>(randomBetween(random, 2, 286)), 0);
        frequencies[0] = frequencies[1] = 1;
        for (std::uint32_t& frequency : frequencies)
            frequency += static_cast<std::uint32_t>(randomBetween(random, 0, 1 + round % 60));
        const HuffmanCode code = HuffmanCode::forFrequencies(frequencies, 15);
        ASSERT_EQ(costOf(frequencies, code), leastCost(frequencies));
        ASSERT_EQ(roomTaken(code, 15), std::uint64_t{1} << 15);
    }
}

TEST(HuffmanCode, keepsToTheLimitAndLeavesNoRoom) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 300; ++round) {
        Frequencies frequencies(static_cast<std::size_t>(randomBetween(random, 2, 120)), 0);
        for (std::uint32_t& frequency : frequencies)
            frequency = 1U << randomBetween(random, 0, 24);
        const int longest = randomBetween(random, 7, 12);
        const HuffmanCode code = HuffmanCode::forFrequencies(frequencies, longest);
        ASSERT_EQ(roomTaken(code, longest), std::uint64_t{1} << longest);
        ASSERT_GE(costOf(frequencies, code), leastCost(frequencies));
    }
}

TEST(HuffmanCode, givesASingleSymbolOneBit) {
    EXPECT_EQ(HuffmanCode::forFrequencies(Frequencies{0, 7, 0}, 15).lengths,
              (std::vector<std::uint8_t>{0, 1, 0}));
}

}  // namespace
}  // namespace trimora::cutengine::kernels
