#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <atomic>
#include <latch>
#include <memory>
#include <thread>
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

TEST(ThreadQueue, ThreadBearsAsMuchOfTheLabelAsTheSystemTakes) {
    ThreadQueue queue("com.telemetrix.queue");
    std::array<char, 32> name{};
    queue.sync([&] { pthread_getname_np(pthread_self(), name.data(), name.size()); });
    EXPECT_STREQ(name.data(), "com.telemetrix.");
    EXPECT_EQ(queue.label(), "com.telemetrix.queue");
}

TEST(ThreadQueue, ReleasesATaskBeforeTheNextOne) {
    ThreadQueue queue("q");
    auto captured = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = captured;
    queue.async([held = std::move(captured)] {});
    bool goneByThen = false;
    queue.sync([&] { goneByThen = watched.expired(); });
    EXPECT_TRUE(goneByThen);
}

TEST(ThreadWorkers, NothingToDoIsDoneAtOnce) {
    ThreadWorkers workers(2);
    workers.run(0, [](int) { FAIL() << "there is no part"; });
    EXPECT_EQ(workers.width(), 2);
    EXPECT_GE(ThreadWorkers().width(), 1);
}

TEST(ThreadWorkers, SeveralThreadsMayShareThem) {
    ThreadWorkers workers(3);
    std::atomic<int> ran = 0;
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 3; ++i) {
            threads.emplace_back([&] {
                for (int round = 0; round < 50; ++round)
                    workers.run(10, [&](int) { ++ran; });
            });
        }
    }
    EXPECT_EQ(ran, 1500);
}

TEST(ThreadPoolQueue, RunsTasksAtTheSameTime) {
    std::latch bothRunning(2);
    ThreadPoolQueue pool("pool", 2);
    for (int i = 0; i < 2; ++i)
        pool.async([&] { bothRunning.arrive_and_wait(); });  // one after the other would wait for ever
    bothRunning.wait();
}

TEST(ThreadQueueFactory, HandsOutQueuesOfTheirOwnAndTheHostsMainQueue) {
    ManualQueue main("main");
    ThreadQueueFactory factory(main);
    EXPECT_EQ(&factory.mainQueue(), &main);
    const auto first = factory.makeSerialQueue("first");
    const auto second = factory.makeSerialQueue("second");
    first->sync([&] { second->sync([&] { EXPECT_FALSE(first->isCurrent()); }); });
    EXPECT_EQ(second->label(), "second");
    std::latch done(1);
    factory.backgroundQueue().async([&] { done.count_down(); });
    done.wait();
    EXPECT_GE(factory.workers().width(), 1);
}

TEST(InlineWorkers, RunsPartsInOrderOnTheCallersThread) {
    InlineWorkers workers;
    std::vector<int> seen;
    workers.run(3, [&](int i) { seen.push_back(i); });
    EXPECT_THAT(seen, ElementsAre(0, 1, 2));
    EXPECT_EQ(workers.width(), 1);
}

TEST(ManualQueue, IsCurrentOnlyForTheThreadThatPumps) {
    ManualQueue queue("q");
    bool elsewhere = true;
    queue.async([&] {
        EXPECT_TRUE(queue.isCurrent());
        std::jthread([&] { elsewhere = queue.isCurrent(); });
    });
    queue.runAll();
    EXPECT_FALSE(elsewhere);
    EXPECT_FALSE(queue.isCurrent());
}

TEST(ManualQueue, SyncFromItselfRunsAtOnceAndBeforeWhatWaits) {
    ManualQueue queue("q");
    std::vector<int> seen;
    queue.async([&] { queue.sync([&] { seen.push_back(1); }); });
    queue.async([&] { seen.push_back(2); });
    EXPECT_EQ(queue.pending(), 2);
    queue.runAll();
    EXPECT_THAT(seen, ElementsAre(1, 2));
}

TEST(ManualQueue, DestructorFinishesWhatWasHandedOver) {
    bool ran = false;
    {
        ManualQueue queue("q");
        queue.async([&] { ran = true; });
    }
    EXPECT_TRUE(ran);
}

TEST(ManualQueueFactory, SingleQueuesMayBePumpedByThemselves) {
    ManualQueueFactory factory;
    std::vector<int> seen;
    const auto serial = factory.makeSerialQueue("serial que");
    serial->sync([&] { EXPECT_TRUE(serial->isCurrent()); });
    EXPECT_EQ(serial->label(), "serial que");
    factory.mainQueue().async([&] { seen.push_back(1); });
    factory.backgroundQueue().async([&] { seen.push_back(2); });
    factory.manualBackground().runAll();
    EXPECT_THAT(seen, ElementsAre(2));
    EXPECT_EQ(factory.manualMain().runAll(), 1);
    EXPECT_EQ(factory.workers().width(), 1);
}

TEST(ManualQueueFactory, WorkLeftBehindMayStillBeSplitAndHandedOn) {
    std::vector<int> seen;
    {
        ManualQueueFactory factory;
        factory.backgroundQueue().async([&factory, &seen] {
            factory.workers().run(2, [&seen](int part) { seen.push_back(part); });
            factory.mainQueue().async([&seen] { seen.push_back(7); });
        });
    }
    EXPECT_THAT(seen, ElementsAre(0, 1, 7));
}

TEST(ManualQueueFactory, QueueMayBeDroppedWhileTheOthersSettle) {
    ManualQueueFactory factory;
    auto dropped = factory.makeSerialQueue("dropped");
    const auto kept = factory.makeSerialQueue("kept");
    int ran = 0;
    dropped->async([&] { ++ran; });
    kept->async([&] {
        dropped.reset();
        ++ran;
    });
    factory.settle();
    EXPECT_EQ(ran, 2);
}

}  // namespace
}  // namespace trimora::foundation
