#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "foundation/Queues.h"

namespace trimora::reliability {

/// Queues of another factory that all run on one thread, which tell how long that thread was at what a
/// program leaves to threads beside its main one: the tasks of serial queues and of the background queue.
///
/// What is run while somebody waits for it in sync() is not told: a program's main thread waits for that too.
/// One thread.
class QueuesBeside final : public foundation::QueueFactory {
 public:
    /// Time of a thread, on a processor and by the clock.
    struct Spent {
        std::chrono::nanoseconds worked{0};
        std::chrono::nanoseconds passed{0};
    };

    /// The other outlives it, and it the queues that it makes.
    explicit QueuesBeside(foundation::QueueFactory& real) : real_(real) {}

    [[nodiscard]] std::unique_ptr<foundation::SerialQueue> makeSerialQueue(std::string label) override;
    [[nodiscard]] foundation::SerialQueue& mainQueue() override { return real_.mainQueue(); }
    [[nodiscard]] foundation::TaskQueue& backgroundQueue() override { return background_; }
    [[nodiscard]] foundation::Workers& workers() override { return real_.workers(); }

    /// What the calling thread has spent beside a main thread's work since it began, for all such queues.
    [[nodiscard]] static Spent spentBeside();

 private:
    class Serial;
    class Background final : public foundation::TaskQueue {
     public:
        explicit Background(QueuesBeside& queues) : queues_(queues) {}
        void async(foundation::Task task) override;

     private:
        QueuesBeside& queues_;
    };

    [[nodiscard]] foundation::Task counted(foundation::Task task);

    foundation::QueueFactory& real_;
    Background background_{*this};
    int depth_ = 0;  // of tasks in tasks, which are counted once, and of waiting
};

}  // namespace trimora::reliability
