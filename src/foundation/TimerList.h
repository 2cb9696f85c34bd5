#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "foundation/Clock.h"

namespace trimora::foundation {

/// What a Scheduler has promised to run, in order of time. Shared by a scheduler and the timers that
/// it handed out, so a timer may outlive its scheduler. Any thread.
class TimerList : public std::enable_shared_from_this<TimerList> {
 public:
    /// Adds a task due at `due` on the scheduler's clock, again every `interval` seconds if that is
    /// above 0. The timer returned calls it off.
    [[nodiscard]] std::unique_ptr<Timer> add(double due, double interval, TaskQueue& queue, Task task);

    /// When the next task is due.
    [[nodiscard]] std::optional<double> nextDue() const;

    /// Hands the first task that is due by `now` to its queue; false where none is. A repeating task
    /// is set to its next time after `now`.
    bool handOverOne(double now);

    [[nodiscard]] int size() const;

 private:
    struct Entry;
    class Handle;
    void remove(const Entry* entry);
    void insert(std::shared_ptr<Entry> entry);

    mutable std::mutex mutex_;
    std::vector<std::shared_ptr<Entry>> entries_;  // by due time, then by age
};

}  // namespace trimora::foundation
