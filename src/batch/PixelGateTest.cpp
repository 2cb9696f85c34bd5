#include "batch/PixelGate.h"

#include <gtest/gtest.h>

#include <atomic>
#include <optional>

#include "foundation/ThreadQueues.h"

namespace trimora::batch {
namespace {

TEST(PixelGate, WhatFitsTogetherIsInsideTogether) {
    PixelGate gate(100);
    const PixelGate::Place first = gate.enter(60);
    const PixelGate::Place second = gate.enter(40);
    EXPECT_EQ(gate.inside(), 100U);
}

TEST(PixelGate, PlacesAreGivenBack) {
    PixelGate gate(100);
    for (int i = 0; i < 10; ++i) {
        const PixelGate::Place place = gate.enter(70);
        EXPECT_EQ(gate.inside(), 70U);
    }
    EXPECT_EQ(gate.inside(), 0U);
}

TEST(PixelGate, OneThatIsTooLargePassesAlone) {
    PixelGate gate(100);
    const PixelGate::Place place = gate.enter(std::uint64_t{1} << 62);
    EXPECT_EQ(gate.inside(), std::uint64_t{1} << 62);
}

TEST(PixelGate, ManyThreadsNeverExceedTheLimitTogether) {
    PixelGate gate(100);
    std::atomic<int> most = 0;
    foundation::ThreadWorkers threads(4);
    threads.run(400, [&](int i) {
        const PixelGate::Place place = gate.enter(static_cast<std::uint64_t>(10 + i * 7 % 60));
        const int inside = static_cast<int>(gate.inside());
        int seen = most;
        while (inside > seen && !most.compare_exchange_weak(seen, inside)) {
        }
    });
    EXPECT_LE(most, 100);
    EXPECT_GT(most, 0);
    EXPECT_EQ(gate.inside(), 0U);
}

}  // namespace
}  // namespace trimora::batch
