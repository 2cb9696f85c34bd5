#pragma once

#include <deque>
#include <functional>
#include <mutex>

namespace trimora::util {

/// Operations that wait their turn: at most so many are under way at one time, the others follow in
/// the order in which they were added.
///
/// An operation is under way from its call until it calls the `finished` that it was given, so it may
/// hand its work on to other queues and return at once; no thread waits for it. Both count as queued.
/// Any thread. An operation is called on the thread that adds it or on the one that finishes another,
/// without a lock held.
class OperationQueue {
 public:
    using Finished = std::function<void()>;
    using Operation = std::function<void(Finished finished)>;

    explicit OperationQueue(int maxConcurrentOperationCount);
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    void addOperation(Operation operation);

    /// Waiting operations and those under way.
    [[nodiscard]] int operationCount() const;

    [[nodiscard]] int maxConcurrentOperationCount() const { return width_; }

    /// One less than the machine's processors, so that one is left for the person; at least 1.
    [[nodiscard]] static int widthOfThisMachine();

 private:
    void finishOne();
    void startWaiting();

    const int width_;
    mutable std::mutex mutex_;
    std::deque<Operation> waiting_;
    int underWay_ = 0;
};

}  // namespace trimora::util
