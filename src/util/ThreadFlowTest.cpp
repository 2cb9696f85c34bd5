#include "util/ThreadFlow.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

#include "foundation/ManualQueues.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "foundation/VirtualTime.h"

namespace trimora::util {
namespace {

class ThreadFlowTest : public ::testing::Test {
 protected:
    ThreadFlow& flow(float delay = 1) {
        return flows_.flowNamed("panels", delay, [this] { completedAt_.push_back(time_.seconds()); });
    }
    void execute(ThreadFlow& flow) {
        flow.execute([this] { ++works_; });
    }
    void advance(double seconds) {
        time_.advance(seconds, [this] { queues_.settle(); });
    }

    foundation::VirtualTime time_;
    foundation::ManualQueueFactory queues_;
    ThreadFlowRegistry flows_{queues_, time_, time_};
    int works_ = 0;
    std::vector<double> completedAt_;
};

TEST_F(ThreadFlowTest, TenCallsOfABurstRunTenWorksAndOneCompletionOneDelayAfterTheLast) {
    ThreadFlow& runner = flow();
    for (int call = 0; call < 10; ++call) {
        execute(runner);
        advance(call < 9 ? 0.1 : 0);
    }
    const double last = time_.seconds();
    advance(10);
    EXPECT_EQ(works_, 10);
    ASSERT_EQ(completedAt_.size(), 1U);
    EXPECT_GE(completedAt_[0], last + 1.0);
    EXPECT_LE(completedAt_[0], last + 1.0 + 0.011);
    EXPECT_EQ(time_.scheduled(), 0);
}

TEST_F(ThreadFlowTest, TheCompletionWaitsForTheDelayOfTheRunner) {
    execute(flow(0.5F));
    advance(0.499);
    EXPECT_TRUE(completedAt_.empty());
    advance(0.012);
    EXPECT_EQ(completedAt_.size(), 1U);
}

TEST_F(ThreadFlowTest, EachBurstHasItsOwnCompletion) {
    for (int burst = 0; burst < 3; ++burst) {
        execute(flow());
        advance(2);
    }
    EXPECT_EQ(completedAt_.size(), 3U);
}

TEST_F(ThreadFlowTest, ACallShortlyBeforeTheEndPutsTheCompletionOff) {
    execute(flow());
    advance(0.98);
    execute(flow());
    advance(0.98);
    EXPECT_TRUE(completedAt_.empty());
    advance(0.1);
    EXPECT_EQ(completedAt_.size(), 1U);
}

TEST_F(ThreadFlowTest, WorkRunsInTheMainQueueAndNotInTheCall) {
    execute(flow());
    EXPECT_EQ(works_, 0);
    queues_.manualMain().runAll();
    EXPECT_EQ(works_, 1);
}

TEST_F(ThreadFlowTest, AWorkThatIsStillQueuedHoldsTheCompletionBack) {
    ThreadFlow& runner = flow();
    const int width = OperationQueue::widthOfThisMachine();
    for (int call = 0; call < width + 1; ++call)
        execute(runner);
    queues_.manualMain().runOne();  // one work done, the others wait for the main queue
    time_.advance(5);
    EXPECT_TRUE(completedAt_.empty());
    advance(5);
    EXPECT_EQ(works_, width + 1);
    EXPECT_EQ(completedAt_.size(), 1U);
}

TEST_F(ThreadFlowTest, ExecutedWithNoWorkItOnlyCompletes) {
    flow().execute();
    advance(2);
    EXPECT_EQ(completedAt_.size(), 1U);
}

TEST_F(ThreadFlowTest, ARunnerWithoutDelayCompletesOnce) {
    execute(flow(0));
    advance(1);
    EXPECT_EQ(completedAt_.size(), 1U);
}

TEST_F(ThreadFlowTest, AKnownNameIgnoresItsNewDelayAndCompletion) {
    ThreadFlow& first = flow(1);
    bool replaced = false;
    ThreadFlow& second = flows_.flowNamed("panels", 0.1F, [&replaced] { replaced = true; });
    EXPECT_EQ(&first, &second);
    EXPECT_EQ(second.delay(), 1.0F);
    second.execute();
    advance(2);
    EXPECT_FALSE(replaced);
    EXPECT_EQ(completedAt_.size(), 1U);
}

TEST_F(ThreadFlowTest, RunnersOfDifferentNamesDoNotDisturbEachOther) {
    int others = 0;
    ThreadFlow& other = flows_.flowNamed("saving", 0.2F, [&others] { ++others; });
    execute(flow(0.5F));
    advance(0.3);
    other.execute();
    advance(1);
    EXPECT_EQ(completedAt_.size(), 1U);
    EXPECT_EQ(others, 1);
    EXPECT_EQ(other.name(), "saving");
}

TEST(ThreadFlowRegistry, WhatHasNotBegunIsDroppedWithIt) {
    foundation::VirtualTime time;
    foundation::ManualQueueFactory queues;
    int runs = 0;
    {
        ThreadFlowRegistry flows(queues, time, time);
        flows.flowNamed("a", 1, [&runs] { ++runs; }).execute([&runs] { ++runs; });
    }
    time.advance(5, [&queues] { queues.settle(); });
    EXPECT_EQ(runs, 0);
}

TEST(ThreadFlowOnThreads, CallsFromManyThreadsAllRunOnTheMainQueueAndThenItCompletes) {
    foundation::ThreadQueue main("main");
    foundation::ThreadQueueFactory queues(main);
    foundation::RealClock clock;
    foundation::RealScheduler scheduler;
    ThreadFlowRegistry flows(queues, scheduler, clock);
    constexpr int kThreads = 4;
    constexpr int kCalls = 100;
    int works = 0;  // touched on the main queue alone
    std::promise<void> complete;
    const auto completeWhenAllRan = [&] {
        EXPECT_TRUE(main.isCurrent());
        if (works == kThreads * kCalls)
            complete.set_value();
    };
    std::vector<std::jthread> callers;
    for (int caller = 0; caller < kThreads; ++caller) {
        callers.emplace_back([&] {
            ThreadFlow& flow = flows.flowNamed("shared", 0.01F, completeWhenAllRan);
            for (int call = 0; call < kCalls; ++call)
                flow.execute([&works] { ++works; });
        });
    }
    EXPECT_EQ(complete.get_future().wait_for(std::chrono::seconds(60)), std::future_status::ready);
    main.sync([] {});
    EXPECT_EQ(works, kThreads * kCalls);
}

}  // namespace
}  // namespace trimora::util
