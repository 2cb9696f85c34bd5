#include "cli/RunTime.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <memory>

namespace trimora {
namespace {

QString localTime(const foundation::Clock& clock) {
    return QDateTime::fromMSecsSinceEpoch(foundation::milliseconds(clock.wallTime()))
        .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

TEST(RunTime, BeginsAtNoonOfNewYearsDayAndMovesOnlyWhenItIsMoved) {
    RunTime time(RunTime::Pace::virtually);
    EXPECT_EQ(localTime(time.clock()), "2026-01-01 12:00:00");
    time.advance(90);
    EXPECT_EQ(localTime(time.clock()), "2026-01-01 12:01:30");
    time.catchUp();
    EXPECT_EQ(time.clock().seconds(), 90);
}

TEST(RunTime, TheDateIsSetInLocalTimeAndGoesOnFromThere) {
    RunTime time(RunTime::Pace::virtually);
    time.setLocalTime({2026, 11, 15, 18, 6, 28});
    time.advance(2);
    EXPECT_EQ(localTime(time.clock()), "2026-11-15 18:06:30");
}

TEST(RunTime, AdvancingRunsWhatBecomesDueOnTheWayAndNothingElse) {
    RunTime time(RunTime::Pace::virtually);
    int ran = 0;
    const auto early = time.clock().after(1, time.queues().mainQueue(), [&] { ran += 1; });
    const auto late = time.clock().after(3, time.queues().mainQueue(), [&] { ran += 10; });
    time.turn();
    EXPECT_EQ(ran, 0);
    time.advance(2);
    EXPECT_EQ(ran, 1);
}

TEST(RunTime, WorkOfEveryQueueIsDoneInOneTurn) {
    RunTime time(RunTime::Pace::virtually);
    const auto serial = time.queues().makeSerialQueue("one");
    bool done = false;
    serial->async([&] {
        time.queues().backgroundQueue().async([&] { time.queues().mainQueue().async([&] { done = true; }); });
    });
    time.turn();
    EXPECT_TRUE(done);
}

TEST(RunTime, AtTheMachinesPaceTheClockNeverGoesBehindIt) {
    RunTime time(RunTime::Pace::really);
    time.advance(0.05);
    const double before = time.clock().seconds();
    EXPECT_GE(before, 0.05);
    time.catchUp();
    EXPECT_GE(time.clock().seconds(), before);
}

}  // namespace
}  // namespace trimora
