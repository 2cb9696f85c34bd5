#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

#include "foundation/Queues.h"

namespace trimora::foundation {

/// The time, and the only way to wait. A test owns a VirtualTime instead of the real ones.
class Clock {
 public:
    using WallTime = std::chrono::system_clock::time_point;

    virtual ~Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;

    /// Seconds since some fixed moment; never goes back, whatever happens to the date.
    [[nodiscard]] virtual double seconds() const = 0;

    /// The date and time of day; may jump both ways.
    [[nodiscard]] virtual WallTime wallTime() const = 0;

    /// Blocks the calling thread (a virtual clock moves on instead).
    virtual void sleep(double seconds) = 0;

 protected:
    Clock() = default;
};

/// The wall time in whole milliseconds since 1970-01-01 UTC.
[[nodiscard]] inline std::int64_t milliseconds(Clock::WallTime time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

/// Keeps one scheduled call alive: destroying or cancelling it calls the call off, even where it was
/// already handed to its queue. Cancelled on that queue, the task does not start any more; cancelled on
/// another thread, it does not start unless it is just starting. After cancel() returns the queue is not
/// used again, so it may be destroyed.
class Timer {
 public:
    virtual ~Timer() = default;
    virtual void cancel() = 0;
};

/// Runs tasks at a later time, each on the queue that is named. Any thread.
class Scheduler {
 public:
    virtual ~Scheduler() = default;
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;

    /// Once, `seconds` from now. Dropping the timer calls it off. `queue` outlives the timer.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(double seconds, TaskQueue& queue, Task task) = 0;

    /// Again and again, first after `seconds` (more than 0). A late run is not made up for.
    [[nodiscard]] virtual std::unique_ptr<Timer> every(double seconds, TaskQueue& queue, Task task) = 0;

 protected:
    Scheduler() = default;
};

}  // namespace trimora::foundation
