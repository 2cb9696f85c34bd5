#pragma once

#include <atomic>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "foundation/Queues.h"

/// Queues without threads: whoever owns them says when a task runs. Tests use them, and so does a
/// scripted run, to make every order of events repeatable.
namespace trimora::foundation {

/// Keeps its tasks until it is pumped. Any thread may hand over; one thread pumps.
class ManualQueue final : public SerialQueue {
 public:
    explicit ManualQueue(std::string label) : label_(std::move(label)) {}
    ~ManualQueue() override;

    void async(Task task) override;

    /// Runs everything that was handed over before, then the task; for the thread that pumps.
    void sync(const Task& task) override;

    [[nodiscard]] bool isCurrent() const override { return runner_ == std::this_thread::get_id(); }
    [[nodiscard]] const std::string& label() const override { return label_; }

    /// Runs the oldest task; false where there was none.
    bool runOne();

    /// Runs tasks until none is left, those that they add included; returns how many ran.
    int runAll();

    [[nodiscard]] int pending() const;

 private:
    void run(const Task& task);

    const std::string label_;
    mutable std::mutex mutex_;
    std::deque<Task> tasks_;
    std::atomic<std::thread::id> runner_;  // the thread that runs a task just now, or none
};

/// Hands out manual queues and pumps them all. The queues that it made may be destroyed before it.
class ManualQueueFactory final : public QueueFactory {
 public:
    ManualQueueFactory() : workers_(here_) {}
    /// With the workers of another, which outlive it: for who needs a fixed order of tasks, and all cores
    /// within one.
    explicit ManualQueueFactory(Workers& workers) : workers_(workers) {}

    [[nodiscard]] std::unique_ptr<SerialQueue> makeSerialQueue(std::string label) override;
    [[nodiscard]] SerialQueue& mainQueue() override { return main_; }
    [[nodiscard]] TaskQueue& backgroundQueue() override { return background_; }
    [[nodiscard]] Workers& workers() override { return workers_; }

    /// The same queues as they are, to run single tasks of.
    [[nodiscard]] ManualQueue& manualMain() { return main_; }
    [[nodiscard]] ManualQueue& manualBackground() { return background_; }

    /// Runs every queue, serial ones first, main last, until nothing is left anywhere.
    void settle();

 private:
    class Tracked;
    friend class Tracked;

    InlineWorkers here_;  // before the queues, whose last tasks may still split their work
    Workers& workers_;
    ManualQueue main_{"main"};
    ManualQueue background_{"background"};
    std::vector<Tracked*> serial_;
};

}  // namespace trimora::foundation
