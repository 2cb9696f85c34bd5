#include "platform/QtScheduler.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "foundation/ThreadQueues.h"

namespace trimora::platform {
namespace {

constexpr double kSoon = 0.002;
constexpr double kNever = 1e9;

class QtSchedulerTest : public ::testing::Test {
 protected:
    static void turnUntil(const std::function<bool()>& done) {
        while (!done())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    QtMainQueue mainQueue_;
    QtScheduler scheduler_{mainQueue_};
};

TEST_F(QtSchedulerTest, RunsTasksOfTheMainQueueOnItsThreadInOrderOfTime) {
    std::vector<int> ran;
    const auto main = std::this_thread::get_id();
    const auto add = [&](int number, double seconds) {
        return scheduler_.after(seconds, mainQueue_, [&ran, main, number] {
            EXPECT_EQ(std::this_thread::get_id(), main);
            ran.push_back(number);
        });
    };
    const auto far = add(4, kNever);
    const auto third = add(3, 3 * kSoon);
    const auto first = add(1, 0);
    const auto second = add(2, kSoon);
    EXPECT_TRUE(ran.empty());
    turnUntil([&] { return ran.size() == 3; });
    EXPECT_EQ(ran, (std::vector<int>{1, 2, 3}));
}

TEST_F(QtSchedulerTest, ACancelledTimerNeverStarts) {
    bool ran = false;
    bool later = false;
    auto gone = scheduler_.after(0, mainQueue_, [&] { ran = true; });
    gone->cancel();
    const auto kept = scheduler_.after(kSoon, mainQueue_, [&] { later = true; });
    turnUntil([&] { return later; });
    EXPECT_FALSE(ran);
}

TEST_F(QtSchedulerTest, RepeatsUntilTheTimerIsDropped) {
    int ran = 0;
    auto again = scheduler_.every(kSoon, mainQueue_, [&] { ++ran; });
    turnUntil([&] { return ran >= 3; });
    again.reset();
    const int atTheEnd = ran;
    bool later = false;
    const auto end = scheduler_.after(5 * kSoon, mainQueue_, [&] { later = true; });
    turnUntil([&] { return later; });
    EXPECT_EQ(ran, atTheEnd);
}

TEST_F(QtSchedulerTest, TakesTasksForTheMainQueueFromOtherThreads) {
    bool ran = false;
    std::unique_ptr<foundation::Timer> timer;
    std::thread([&] { timer = scheduler_.after(0, mainQueue_, [&] { ran = true; }); }).join();
    turnUntil([&] { return ran; });
    EXPECT_TRUE(ran);
}

TEST_F(QtSchedulerTest, TasksOfOtherQueuesDoNotWaitForTheEventLoop) {
    foundation::ThreadQueueFactory queues(mainQueue_);
    const auto queue = queues.makeSerialQueue("other");
    std::atomic<bool> ran = false;
    const auto timer = scheduler_.after(0, *queue, [&] {
        ran = true;
        ran.notify_all();
    });
    ran.wait(false);
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace trimora::platform
