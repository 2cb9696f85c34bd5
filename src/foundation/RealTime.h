#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "foundation/Clock.h"

namespace trimora::foundation {

class TimerList;

/// The machine's own clocks.
class RealClock final : public Clock {
 public:
    [[nodiscard]] double seconds() const override;
    [[nodiscard]] WallTime wallTime() const override;
    void sleep(double seconds) override;
};

/// Waits on one thread of its own, which sleeps until the next task is due. Destroy it before the queues that
/// its tasks go to.
class RealScheduler final : public Scheduler {
 public:
    RealScheduler();
    ~RealScheduler() override;

    [[nodiscard]] std::unique_ptr<Timer> after(double seconds, TaskQueue& queue, Task task) override;
    [[nodiscard]] std::unique_ptr<Timer> every(double seconds, TaskQueue& queue, Task task) override;

 private:
    void work();
    std::unique_ptr<Timer> add(double seconds, double interval, TaskQueue& queue, Task task);

    RealClock clock_;
    std::shared_ptr<TimerList> timers_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool closing_ = false;
    bool changed_ = false;
    std::thread thread_;  // last: it uses the members above
};

}  // namespace trimora::foundation
