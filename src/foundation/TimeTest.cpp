#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
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

}  // namespace
}  // namespace trimora::foundation
