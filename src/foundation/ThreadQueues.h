#pragma once

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "foundation/Queues.h"

/// Queues on real threads, for the running program.
namespace trimora::foundation {

/// A serial queue on one thread of its own, which bears the label (shortened to the 15 characters
/// that Linux allows). Not to be destroyed by one of its own tasks.
class ThreadQueue final : public SerialQueue {
 public:
    explicit ThreadQueue(std::string label);
    ~ThreadQueue() override;

    void async(Task task) override;
    void sync(const Task& task) override;
    [[nodiscard]] bool isCurrent() const override;
    [[nodiscard]] const std::string& label() const override { return label_; }

 private:
    void work();

    const std::string label_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Task> tasks_;
    bool closing_ = false;
    std::thread thread_;  // last: it uses the members above
};

/// A queue served by several threads at once. The destructor finishes what was handed over.
class ThreadPoolQueue final : public TaskQueue {
 public:
    ThreadPoolQueue(std::string label, int threads);
    ~ThreadPoolQueue() override;

    void async(Task task) override;

 private:
    void work();

    const std::string label_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Task> tasks_;
    bool closing_ = false;
    std::vector<std::thread> threads_;  // last: they use the members above
};

/// Splits work over a pool; the calling thread takes parts too, so a busy pool never stops it.
class ThreadWorkers final : public Workers {
 public:
    /// `width` threads in all, the caller's included; 0 means one a core.
    explicit ThreadWorkers(int width = 0);

    [[nodiscard]] int width() const override { return width_; }
    void run(int count, const std::function<void(int)>& part) override;

 private:
    int width_;
    ThreadPoolQueue pool_;
};

/// Real serial queues and workers; the main queue is the host's.
class ThreadQueueFactory final : public QueueFactory {
 public:
    /// `mainQueue` must live longer than this factory and everything that it makes.
    explicit ThreadQueueFactory(SerialQueue& mainQueue);

    [[nodiscard]] std::unique_ptr<SerialQueue> makeSerialQueue(std::string label) override;
    [[nodiscard]] SerialQueue& mainQueue() override { return mainQueue_; }
    [[nodiscard]] TaskQueue& backgroundQueue() override { return background_; }
    [[nodiscard]] Workers& workers() override { return workers_; }

 private:
    SerialQueue& mainQueue_;
    ThreadWorkers workers_;  // before background_, whose last tasks may still split their work
    ThreadPoolQueue background_;
};

}  // namespace trimora::foundation
