#include "util/OperationQueue.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace trimora::util {

OperationQueue::OperationQueue(int maxConcurrentOperationCount)
    : width_(std::max(1, maxConcurrentOperationCount)) {}

int OperationQueue::widthOfThisMachine() {
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()) - 1);
}

void OperationQueue::addOperation(Operation operation) {
    {
        const std::scoped_lock lock(mutex_);
        waiting_.push_back(std::move(operation));
    }
    startWaiting();
}

int OperationQueue::operationCount() const {
    const std::scoped_lock lock(mutex_);
    return underWay_ + static_cast<int>(waiting_.size());
}

void OperationQueue::finishOne() {
    {
        const std::scoped_lock lock(mutex_);
        --underWay_;
    }
    startWaiting();
}

void OperationQueue::startWaiting() {
    for (;;) {
        Operation next;
        {
            const std::scoped_lock lock(mutex_);
            if (waiting_.empty() || underWay_ == width_)
                return;
            next = std::move(waiting_.front());
            waiting_.pop_front();
            ++underWay_;
        }
        next([this] { finishOne(); });
    }
}

}  // namespace trimora::util
