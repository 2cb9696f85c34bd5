#include "codecs/RowShares.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <vector>

#include "testing/Seed.h"

namespace trimora::codecs {
namespace {

constexpr int kStep = 16;

TEST(RowShares, FirstPartReadsAllWhereNoOtherBegins) {
    RowShares shares(100, 3, kStep);
    EXPECT_EQ(shares.claim(0, 64), 64);
    EXPECT_EQ(shares.claim(0, 64), 36);
    EXPECT_EQ(shares.claim(0, 64), 0);
    EXPECT_EQ(shares.place(1, 32), std::nullopt);
    EXPECT_EQ(shares.claim(1, 64), 0);
}

TEST(RowShares, SecondPartBeginsWhereBothHaveEquallyFarToGo) {
    RowShares shares(1600, 2, kStep);
    EXPECT_EQ(shares.place(1, 32), 800);
    EXPECT_EQ(shares.claim(0, 320), 320);
    EXPECT_EQ(shares.place(1, 800), 960);
    EXPECT_EQ(shares.place(1, 992), 992);
    EXPECT_TRUE(shares.begin(1, 992));
    EXPECT_EQ(shares.claim(0, 1600), 672);
    EXPECT_EQ(shares.claim(0, 1600), 0);
    EXPECT_EQ(shares.claim(1, 1600), 608);
}

TEST(RowShares, PlaceThatWasReadMeanwhileIsLost) {
    RowShares shares(320, 2, kStep);
    EXPECT_EQ(shares.place(1, 32), 160);
    EXPECT_EQ(shares.claim(0, 176), 176);
    EXPECT_FALSE(shares.begin(1, 160));
    EXPECT_EQ(shares.place(1, 160), 256);
    EXPECT_TRUE(shares.begin(1, 256));
}

TEST(RowShares, PartThatComesBetweenTwoTakesTheLowerRowsOfTheUpper) {
    RowShares shares(320, 3, kStep);
    EXPECT_TRUE(shares.begin(2, 160));
    EXPECT_EQ(shares.place(1, 32), 80);
    EXPECT_FALSE(shares.begin(1, 160));
    EXPECT_TRUE(shares.begin(1, 80));
    EXPECT_EQ(shares.claim(0, 320), 80);
    EXPECT_EQ(shares.claim(1, 320), 80);
    EXPECT_EQ(shares.claim(2, 320), 160);
}

TEST(RowShares, NothingIsLeftOnceStopped) {
    RowShares shares(320, 2, kStep);
    shares.stop();
    EXPECT_TRUE(shares.isStopped());
    EXPECT_EQ(shares.claim(0, 64), 0);
    EXPECT_EQ(shares.place(1, 32), std::nullopt);
}

/// Lets parts take steps in a random order; counts how often each row was claimed.
std::vector<int> claimsInRandomOrder(int rows, int parts, std::mt19937_64& random) {
    RowShares shares(rows, parts, kStep);
    std::vector<int> claims(static_cast<std::size_t>(rows), 0);
    std::vector<int> reached(static_cast<std::size_t>(parts), 0);
    std::vector<bool> reads(static_cast<std::size_t>(parts), false);
    std::vector<int> unfinished;
    for (int part = 0; part < parts; ++part)
        unfinished.push_back(part);
    reads[0] = true;
    while (!unfinished.empty()) {
        const std::size_t chosen = random() % unfinished.size();
        const int part = unfinished[chosen];
        int& row = reached[static_cast<std::size_t>(part)];
        bool isDone = false;
        if (reads[static_cast<std::size_t>(part)]) {
            const int count = shares.claim(part, 1 + static_cast<int>(random() % 100));
            for (int i = 0; i < count; ++i)
                ++claims[static_cast<std::size_t>(row++)];
            isDone = count == 0;
        } else if (const auto place = shares.place(part, row)) {
            row = *place;
            reads[static_cast<std::size_t>(part)] = random() % 2 == 0 && shares.begin(part, row);
        } else {
            isDone = true;
        }
        if (isDone)
            unfinished.erase(unfinished.begin() + static_cast<std::ptrdiff_t>(chosen));
    }
    return claims;
}

TEST(RowShares, EveryRowIsClaimedOnceInWhateverOrderThePartsGetOn) {
    std::mt19937_64 random = testing::seededGenerator();
    for (int round = 0; round < 500; ++round) {
        const int rows = 1 + static_cast<int>(random() % 700);
        const int parts = 2 + static_cast<int>(random() % 3);
        EXPECT_EQ(claimsInRandomOrder(rows, parts, random),
                  std::vector<int>(static_cast<std::size_t>(rows), 1))
            << rows << " rows, " << parts << " parts";
    }
}

}  // namespace
}  // namespace trimora::codecs
