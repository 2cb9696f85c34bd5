#include "QueuesBeside.h"

#include <utility>

#include "ThreadTime.h"

namespace trimora::reliability {

using foundation::Task;

namespace {

thread_local QueuesBeside::Spent spent;

}  // namespace

class QueuesBeside::Serial final : public foundation::SerialQueue {
 public:
    Serial(QueuesBeside& queues, std::unique_ptr<foundation::SerialQueue> real)
        : queues_(queues), real_(std::move(real)) {}
    // A queue ends with its tasks done, for which its owner waits.
    ~Serial() override {
        ++queues_.depth_;
        real_.reset();
        --queues_.depth_;
    }

    void async(Task task) override { real_->async(queues_.counted(std::move(task))); }
    void sync(const Task& task) override {
        ++queues_.depth_;
        real_->sync(task);
        --queues_.depth_;
    }
    [[nodiscard]] bool isCurrent() const override { return real_->isCurrent(); }
    [[nodiscard]] const std::string& label() const override { return real_->label(); }

 private:
    QueuesBeside& queues_;
    std::unique_ptr<foundation::SerialQueue> real_;
};

void QueuesBeside::Background::async(Task task) {
    queues_.real_.backgroundQueue().async(queues_.counted(std::move(task)));
}

std::unique_ptr<foundation::SerialQueue> QueuesBeside::makeSerialQueue(std::string label) {
    return std::make_unique<Serial>(*this, real_.makeSerialQueue(std::move(label)));
}

QueuesBeside::Spent QueuesBeside::spentBeside() {
    return spent;
}

Task QueuesBeside::counted(Task task) {
    return [this, task = std::move(task)] {
        if (depth_ > 0)
            return task();
        ++depth_;
        const auto workedBefore = processorTimeOfThisThread();
        const auto before = std::chrono::steady_clock::now();
        task();
        spent.passed += std::chrono::steady_clock::now() - before;
        spent.worked += processorTimeOfThisThread() - workedBefore;
        --depth_;
    };
}

}  // namespace trimora::reliability
