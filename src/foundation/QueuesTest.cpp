#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <vector>

#include "foundation/ManualQueues.h"
#include "foundation/ThreadQueues.h"

namespace trimora::foundation {
namespace {

using ::testing::ElementsAre;

TEST(ThreadQueue, RunsTasksInTheOrderInWhichTheyCame) {
    ThreadQueue queue("serial que");
    std::vector<int> seen;
    for (int i = 0; i < 1000; ++i)
        queue.async([&seen, i] { seen.push_back(i); });
    queue.sync([] {});
    ASSERT_EQ(seen.size(), 1000U);
    for (int i = 0; i < 1000; ++i)
        EXPECT_EQ(seen[static_cast<std::size_t>(i)], i);
}

TEST(ThreadQueue, SyncFromItselfRunsAtOnce) {
    ThreadQueue queue("q");
    bool inner = false;
    queue.sync([&] {
        EXPECT_TRUE(queue.isCurrent());
        queue.sync([&] { inner = true; });
        EXPECT_TRUE(inner);
    });
    EXPECT_FALSE(queue.isCurrent());
    EXPECT_TRUE(inner);
}

TEST(ThreadQueue, DestructorFinishesWhatWasHandedOver) {
    std::atomic<int> ran = 0;
    {
        ThreadQueue queue("q");
        for (int i = 0; i < 100; ++i)
            queue.async([&] { ++ran; });
    }
    EXPECT_EQ(ran, 100);
}

TEST(ThreadWorkers, EveryPartRunsOnce) {
    ThreadWorkers workers(4);
    std::vector<std::atomic<int>> hits(1000);
    workers.run(1000, [&](int i) { ++hits[static_cast<std::size_t>(i)]; });
    for (const auto& hit : hits)
        EXPECT_EQ(hit, 1);
}

TEST(ThreadWorkers, PartsMaySplitTheirOwnWork) {
    ThreadWorkers workers(3);
    std::atomic<int> ran = 0;
    workers.run(8, [&](int) { workers.run(8, [&](int) { ++ran; }); });
    EXPECT_EQ(ran, 64);
}

TEST(ManualQueue, RunsNothingUntilItIsPumped) {
    ManualQueue queue("q");
    std::vector<int> seen;
    queue.async([&] { seen.push_back(1); });
    queue.async([&] {
        seen.push_back(2);
        queue.async([&] { seen.push_back(3); });
    });
    EXPECT_TRUE(seen.empty());
    EXPECT_TRUE(queue.runOne());
    EXPECT_THAT(seen, ElementsAre(1));
    EXPECT_EQ(queue.runAll(), 2);
    EXPECT_THAT(seen, ElementsAre(1, 2, 3));
    EXPECT_FALSE(queue.runOne());
}

TEST(ManualQueue, SyncRunsWhatCameBefore) {
    ManualQueue queue("q");
    std::vector<int> seen;
    queue.async([&] { seen.push_back(1); });
    queue.sync([&] {
        EXPECT_TRUE(queue.isCurrent());
        seen.push_back(2);
    });
    EXPECT_THAT(seen, ElementsAre(1, 2));
}

TEST(ManualQueueFactory, SettleFollowsWorkFromQueueToQueue) {
    ManualQueueFactory factory;
    const auto serial = factory.makeSerialQueue("serial que");
    bool arrived = false;
    factory.backgroundQueue().async(
        [&] { serial->async([&] { factory.mainQueue().async([&] { arrived = true; }); }); });
    factory.settle();
    EXPECT_TRUE(arrived);
}

}  // namespace
}  // namespace trimora::foundation
