#pragma once

#include <memory>

#include "foundation/Clock.h"

namespace trimora::foundation {

class TimerList;

/// A clock and scheduler that stand still until they are moved: a day of timers runs in
/// milliseconds, always in the same order. One thread moves it; any thread may read and schedule.
class VirtualTime final : public Clock, public Scheduler {
 public:
    VirtualTime();
    explicit VirtualTime(WallTime start);
    ~VirtualTime() override;

    [[nodiscard]] double seconds() const override;
    [[nodiscard]] WallTime wallTime() const override;

    /// Moves on without running what becomes due: the sleeper holds its thread.
    void sleep(double seconds) override;

    [[nodiscard]] std::unique_ptr<Timer> after(double seconds, TaskQueue& queue, Task task) override;
    [[nodiscard]] std::unique_ptr<Timer> every(double seconds, TaskQueue& queue, Task task) override;

    /// Moves on by `seconds`, stopping at each due task on the way, in order of their times (those of
    /// one moment in the order in which they were scheduled), to hand it to its queue and call `settle`
    /// (which may be empty), so that what the task schedules in turn is met too.
    void advance(double seconds, const Task& settle = {});

    /// Moves to the next due task and hands it over; false where nothing is scheduled.
    bool advanceToNext(const Task& settle = {});

    /// Sets the date without moving the seconds: a clock that was put right or wrong.
    void setWallTime(WallTime time);

    /// How many tasks wait for their time.
    [[nodiscard]] int scheduled() const;

 private:
    void moveTo(double seconds);

    std::shared_ptr<TimerList> timers_;
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace trimora::foundation
