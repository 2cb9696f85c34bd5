#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "foundation/Clock.h"
#include "foundation/Queues.h"
#include "util/OperationQueue.h"

namespace trimora::util {

/// A named runner of tasks that notices when a burst of them is over.
///
/// execute() has its work run on the main thread soon; `completion` runs on the main thread once, about
/// `delay` seconds after the last work of a burst: while calls keep coming less than `delay` apart, it
/// waits. So panels come back half a second after the last stroke, and changed data is saved once.
///
/// Life cycle: got from a ThreadFlowRegistry, which keeps it for good. When the registry goes, work and
/// completions that have not begun are dropped.
/// Threads: execute() on any. The bookkeeping is the business of a serial queue of the runner's own,
/// which never waits for the main thread. Works of one runner begin in the order of their calls.
class ThreadFlow : public std::enable_shared_from_this<ThreadFlow> {
 public:
    /// `delay` in seconds. The factory, scheduler and clock live longer than the runner.
    ThreadFlow(std::string name, float delay, foundation::Task completion, foundation::QueueFactory& queues,
               foundation::Scheduler& scheduler, const foundation::Clock& clock);
    ~ThreadFlow();
    ThreadFlow(const ThreadFlow&) = delete;
    ThreadFlow& operator=(const ThreadFlow&) = delete;

    /// Calls off a completion that is due, and has `work` (which may be empty) run on the main thread.
    void execute(foundation::Task work = {});

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] float delay() const { return delay_; }

 private:
    void settle();
    void watch();
    void completeIfQuiet();

    const std::string name_;
    const float delay_;
    const foundation::Task completion_;
    foundation::SerialQueue& main_;
    foundation::Scheduler& scheduler_;
    const foundation::Clock& clock_;
    OperationQueue operQueue_;

    // Touched on the serial queue alone.
    double lastDate_ = 0;
    bool closed_ = false;
    std::unique_ptr<foundation::Timer> timer_;

    std::unique_ptr<foundation::SerialQueue> serialQueue_;  // last: its tasks use the members above
};

/// The runners of a program by their names: one registry, made where the program is wired.
class ThreadFlowRegistry {
 public:
    /// The three live longer than the registry, which is destroyed on the main thread.
    ThreadFlowRegistry(foundation::QueueFactory& queues, foundation::Scheduler& scheduler,
                       const foundation::Clock& clock)
        : queues_(queues), scheduler_(scheduler), clock_(clock) {}

    /// The runner of this name, made on the first call. One that is there keeps the delay and the
    /// completion of that call, whatever is given now. Any thread.
    [[nodiscard]] ThreadFlow& flowNamed(std::string_view name, float delay, foundation::Task completion);

 private:
    foundation::QueueFactory& queues_;
    foundation::Scheduler& scheduler_;
    const foundation::Clock& clock_;
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<ThreadFlow>, std::less<>> flows_;
};

}  // namespace trimora::util
