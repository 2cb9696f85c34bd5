#include "util/RandomElements.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

#include "testing/Seed.h"

namespace trimora::util {
namespace {

TEST(RandomElements, EveryElementHasTheSameChance) {
    auto generator = testing::seededGenerator();
    const std::vector<int> elements = {0, 1, 2, 3};
    std::array<int, 4> counts{};
    for (int i = 0; i < 40000; ++i)
        ++counts[static_cast<std::size_t>(*randomObject(elements, generator))];
    for (const int count : counts)
        EXPECT_NEAR(count, 10000, 800);  // more than nine standard deviations
}

TEST(RandomElements, AnEmptyListHasNone) {
    auto generator = testing::seededGenerator();
    EXPECT_EQ(randomObject(std::vector<int>{}, generator), std::nullopt);
    EXPECT_TRUE(randomizedArray(std::vector<int>{}, generator).empty());
}

TEST(RandomElements, EveryOrderOfThreeComesUpAndNothingIsLost) {
    auto generator = testing::seededGenerator();
    std::map<std::vector<int>, int> orders;
    for (int i = 0; i < 12000; ++i)
        ++orders[randomizedArray(std::vector{1, 2, 3}, generator)];
    EXPECT_EQ(orders.size(), 6U);
    for (const auto& [order, count] : orders) {
        EXPECT_TRUE(std::is_permutation(order.begin(), order.end(), std::vector{1, 2, 3}.begin()));
        EXPECT_NEAR(count, 2000, 400);
    }
}

}  // namespace
}  // namespace trimora::util
