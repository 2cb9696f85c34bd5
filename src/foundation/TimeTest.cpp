#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <memory>
#include <vector>

#include "foundation/ManualQueues.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "foundation/VirtualTime.h"

namespace trimora::foundation {
namespace {

using ::testing::ElementsAre;

class VirtualTimeTest : public ::testing::Test {
 protected:
    void advance(double seconds) {
        time.advance(seconds, [this] { queue.runAll(); });
    }

    VirtualTime time;
    ManualQueue queue{"q"};
};

TEST_F(VirtualTimeTest, RunsDueTasksInOrderOfTheirTimes) {
    std::vector<int> seen;
    const auto late = time.after(2, queue, [&] { seen.push_back(2); });
    const auto early = time.after(1, queue, [&] { seen.push_back(1); });
    const auto sameMoment = time.after(1, queue, [&] { seen.push_back(11); });
    advance(1.5);
    EXPECT_THAT(seen, ElementsAre(1, 11));
    advance(1);
    EXPECT_THAT(seen, ElementsAre(1, 11, 2));
    EXPECT_DOUBLE_EQ(time.seconds(), 2.5);
}

TEST_F(VirtualTimeTest, TaskThatSchedulesAnotherIsMetOnTheWay) {
    std::vector<double> times;
    std::unique_ptr<Timer> second;
    const auto first = time.after(1, queue, [&] {
        times.push_back(time.seconds());
        second = time.after(1, queue, [&] { times.push_back(time.seconds()); });
    });
    advance(10);
    EXPECT_THAT(times, ElementsAre(1, 2));
}

TEST_F(VirtualTimeTest, RepeatingTaskKeepsItsBeat) {
    int ran = 0;
    const auto timer = time.every(60, queue, [&] { ++ran; });
    advance(3600 * 24);
    EXPECT_EQ(ran, 24 * 60);
}

TEST_F(VirtualTimeTest, CancelledTimerDoesNotRunEvenOnceHandedOver) {
    int ran = 0;
    auto timer = time.after(1, queue, [&] { ++ran; });
    time.advance(2);
    EXPECT_EQ(queue.pending(), 1);
    timer->cancel();
    queue.runAll();
    EXPECT_EQ(ran, 0);
    auto dropped = time.after(1, queue, [&] { ++ran; });
    dropped.reset();
    advance(2);
    EXPECT_EQ(ran, 0);
    EXPECT_EQ(time.scheduled(), 0);
}

TEST_F(VirtualTimeTest, WallTimeMovesWithTheSecondsAndCanJump) {
    const auto before = milliseconds(time.wallTime());
    advance(1.25);
    EXPECT_EQ(milliseconds(time.wallTime()) - before, 1250);
    time.setWallTime(Clock::WallTime{});
    EXPECT_EQ(milliseconds(time.wallTime()), 0);
    EXPECT_DOUBLE_EQ(time.seconds(), 1.25);
}

TEST_F(VirtualTimeTest, SleepingMovesTheClock) {
    time.sleep(0.5);
    EXPECT_DOUBLE_EQ(time.seconds(), 0.5);
}

TEST(RealScheduler, RunsTasksOnTheirQueueInOrder) {
    ThreadQueue queue("q");
    std::vector<int> seen;
    std::atomic<bool> done = false;
    {
        RealScheduler scheduler;
        const auto later = scheduler.after(0.02, queue, [&] {
            seen.push_back(2);
            done = true;
            done.notify_all();
        });
        const auto sooner = scheduler.after(0.01, queue, [&] { seen.push_back(1); });
        done.wait(false);
    }
    EXPECT_THAT(seen, ElementsAre(1, 2));
}

TEST(RealScheduler, CancelledTimerNeverStarts) {
    ThreadQueue queue("q");
    std::atomic<int> ran = 0;
    std::atomic<bool> done = false;
    RealScheduler scheduler;
    auto cancelled = scheduler.after(0.005, queue, [&] { ++ran; });
    cancelled->cancel();
    const auto marker = scheduler.after(0.01, queue, [&] {
        done = true;
        done.notify_all();
    });
    done.wait(false);
    EXPECT_EQ(ran, 0);
}

TEST_F(VirtualTimeTest, MayMoveFromTaskToTask) {
    std::vector<double> times;
    const auto first = time.after(5, queue, [&] { times.push_back(time.seconds()); });
    const auto second = time.after(90, queue, [&] { times.push_back(time.seconds()); });
    EXPECT_EQ(time.scheduled(), 2);
    const auto settle = [this] { queue.runAll(); };
    EXPECT_TRUE(time.advanceToNext(settle));
    EXPECT_TRUE(time.advanceToNext(settle));
    EXPECT_FALSE(time.advanceToNext(settle));
    EXPECT_THAT(times, ElementsAre(5, 90));
}

TEST_F(VirtualTimeTest, TaskMissedWhileTheThreadSleptRunsOnceAndKeepsItsBeat) {
    std::vector<double> times;
    const auto timer = time.every(10, queue, [&] { times.push_back(time.seconds()); });
    time.sleep(35);
    advance(10);
    EXPECT_THAT(times, ElementsAre(35, 40));
}

TEST_F(VirtualTimeTest, RepeatingTaskMayCancelItself) {
    int ran = 0;
    std::unique_ptr<Timer> timer;
    timer = time.every(1, queue, [&] {
        if (++ran == 3)
            timer->cancel();
    });
    advance(100);
    EXPECT_EQ(ran, 3);
    EXPECT_EQ(time.scheduled(), 0);
}

TEST(Timer, MayOutliveItsScheduler) {
    ManualQueue queue("q");
    std::unique_ptr<Timer> timer;
    {
        VirtualTime time;
        timer = time.after(1, queue, [] {});
    }
    timer->cancel();
}

TEST(RealClock, GoesOnAndSleepsAtLeastAsLongAsTold) {
    RealClock clock;
    const double before = clock.seconds();
    clock.sleep(0.001);
    EXPECT_GE(clock.seconds() - before, 0.001);
    EXPECT_GT(milliseconds(clock.wallTime()), std::int64_t{1'700'000'000'000});
}

TEST(RealScheduler, RepeatsUntilTheTimerIsDropped) {
    ThreadQueue queue("q");
    RealScheduler scheduler;
    std::latch thrice(3);
    std::atomic<int> ran = 0;
    auto timer = scheduler.every(0.001, queue, [&] {
        if (++ran <= 3)
            thrice.count_down();
    });
    thrice.wait();
    timer.reset();
    queue.sync([] {});
    const int soFar = ran;
    std::latch later(1);
    const auto marker = scheduler.after(0.005, queue, [&] { later.count_down(); });
    later.wait();
    EXPECT_EQ(ran, soFar);
}

TEST(RealScheduler, TaskInTheFarFutureDoesNotHoldUpNearOnes) {
    ThreadQueue queue("q");
    RealScheduler scheduler;
    const auto never = scheduler.after(1e300, queue, [] { FAIL(); });
    std::latch done(1);
    const auto soon = scheduler.after(0.001, queue, [&] { done.count_down(); });
    done.wait();
}

TEST(RealScheduler, QueueMayBeDestroyedRightAfterItsTimerIsCancelled) {
    RealScheduler scheduler;
    for (int round = 0; round < 200; ++round) {
        ThreadQueue queue("q");
        const auto timer = scheduler.every(0.00001, queue, [] {});
        timer->cancel();
    }
}

}  // namespace
}  // namespace trimora::foundation
