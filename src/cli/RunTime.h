#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include "foundation/ManualQueues.h"
#include "foundation/ThreadQueues.h"
#include "foundation/VirtualTime.h"
#include "script/Steps.h"

namespace trimora {

/// Queues that run when they are told to, on the main thread alone, whose work is split over the
/// processor's cores all the same: every order of events is the same at each run.
class RunQueues final : public foundation::QueueFactory {
 public:
    [[nodiscard]] std::unique_ptr<foundation::SerialQueue> makeSerialQueue(std::string label) override {
        return queues_.makeSerialQueue(std::move(label));
    }
    [[nodiscard]] foundation::SerialQueue& mainQueue() override { return queues_.mainQueue(); }
    [[nodiscard]] foundation::TaskQueue& backgroundQueue() override { return queues_.backgroundQueue(); }
    [[nodiscard]] foundation::Workers& workers() override { return workers_; }

    /// Runs everything until nothing is left.
    void settle() { queues_.settle(); }

 private:
    foundation::ThreadWorkers workers_;  // before the queues, whose last tasks may still split their work
    foundation::ManualQueueFactory queues_;
};

/// Time and queues of a scripted run.
///
/// At the pace Virtual the clock begins at noon of New Year's Day 2026, local time, and moves only when it is
/// moved, which takes no time. At the pace Real it begins now and never falls behind the machine's clock:
/// moving it waits. Main thread only.
class RunTime {
 public:
    enum class Pace : std::uint8_t { virtually, really };

    explicit RunTime(Pace pace);

    [[nodiscard]] RunQueues& queues() { return queues_; }
    [[nodiscard]] foundation::VirtualTime& clock() { return clock_; }

    /// Called whenever the screen may have something to show meanwhile; may be empty.
    void onFrame(std::function<void()> frame) { frame_ = std::move(frame); }

    /// Moves the clock, and runs what becomes due on the way and what that leads to.
    void advance(double seconds);

    /// Runs everything that is queued; the toolkit's posted events too. Takes no time.
    void turn();

    /// At the pace Real brings the clock up to the machine's.
    void catchUp();

    /// Sets the date and the time of day, local.
    void setLocalTime(const script::ClockStep& at);

 private:
    [[nodiscard]] double machineSeconds() const;

    const Pace pace_;
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    RunQueues queues_;
    foundation::VirtualTime clock_;
    std::function<void()> frame_;
};

}  // namespace trimora
