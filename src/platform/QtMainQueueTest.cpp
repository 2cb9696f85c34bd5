#include "platform/QtMainQueue.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <thread>
#include <vector>

namespace trimora::platform {
namespace {

TEST(QtMainQueue, RunsTasksInOrderOnTheMainThreadAndNeverAtOnce) {
    QtMainQueue queue;
    std::vector<int> ran;
    const auto main = std::this_thread::get_id();
    for (int i = 0; i < 3; ++i) {
        queue.async([&ran, main, i] {
            EXPECT_EQ(std::this_thread::get_id(), main);
            ran.push_back(i);
        });
    }
    EXPECT_TRUE(ran.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(ran, (std::vector<int>{0, 1, 2}));
}

TEST(QtMainQueue, TakesTasksFromOtherThreads) {
    QtMainQueue queue;
    bool ran = false;
    bool foreign = true;
    std::thread([&] {
        foreign = queue.isCurrent();
        queue.async([&] { ran = true; });
    }).join();
    EXPECT_FALSE(foreign);
    EXPECT_TRUE(queue.isCurrent());
    QCoreApplication::processEvents();
    EXPECT_TRUE(ran);
}

TEST(QtMainQueue, SyncFromAnotherThreadWaitsForItsTurn) {
    QtMainQueue queue;
    std::vector<int> ran;
    std::atomic<bool> done = false;
    queue.async([&] { ran.push_back(1); });
    std::thread other([&] {
        queue.sync([&] { ran.push_back(2); });
        done = true;
    });
    while (!done)
        QCoreApplication::processEvents();
    other.join();
    EXPECT_EQ(ran, (std::vector<int>{1, 2}));
}

TEST(QtMainQueue, SyncOnTheMainThreadRunsAtOnce) {
    QtMainQueue queue;
    bool ran = false;
    queue.sync([&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST(QtMainQueue, FinishesWhatWasHandedOverWhenItGoes) {
    bool ran = false;
    {
        QtMainQueue queue;
        queue.async([&] { ran = true; });
    }
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace trimora::platform
