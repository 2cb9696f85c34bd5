#include "foundation/ManualQueues.h"

#include <algorithm>
#include <utility>

namespace trimora::foundation {

ManualQueue::~ManualQueue() {
    runAll();
}

void ManualQueue::async(Task task) {
    const std::scoped_lock lock(mutex_);
    tasks_.push_back(std::move(task));
}

void ManualQueue::sync(const Task& task) {
    if (!isCurrent())
        runAll();
    run(task);
}

void ManualQueue::run(const Task& task) {
    const std::thread::id outer = runner_.exchange(std::this_thread::get_id());
    task();
    runner_ = outer;
}

bool ManualQueue::runOne() {
    Task task;
    {
        const std::scoped_lock lock(mutex_);
        if (tasks_.empty())
            return false;
        task = std::move(tasks_.front());
        tasks_.pop_front();
    }
    run(task);
    return true;
}

int ManualQueue::runAll() {
    int count = 0;
    while (runOne())
        ++count;
    return count;
}

int ManualQueue::pending() const {
    const std::scoped_lock lock(mutex_);
    return static_cast<int>(tasks_.size());
}

/// A queue that the factory can find as long as its owner keeps it.
class ManualQueueFactory::Tracked final : public SerialQueue {
 public:
    Tracked(ManualQueueFactory& factory, std::string label) : factory_(factory), queue_(std::move(label)) {
        factory_.serial_.push_back(this);
    }
    ~Tracked() override { std::erase(factory_.serial_, this); }

    void async(Task task) override { queue_.async(std::move(task)); }
    void sync(const Task& task) override { queue_.sync(task); }
    [[nodiscard]] bool isCurrent() const override { return queue_.isCurrent(); }
    [[nodiscard]] const std::string& label() const override { return queue_.label(); }
    int runAll() { return queue_.runAll(); }

 private:
    ManualQueueFactory& factory_;
    ManualQueue queue_;
};

std::unique_ptr<SerialQueue> ManualQueueFactory::makeSerialQueue(std::string label) {
    return std::make_unique<Tracked>(*this, std::move(label));
}

void ManualQueueFactory::settle() {
    for (int ran = 1; ran != 0;) {
        ran = 0;
        // By index: a task may make or drop a queue.
        for (std::size_t i = 0; i < serial_.size(); ++i)
            ran += serial_[i]->runAll();
        ran += background_.runAll();
        ran += main_.runAll();
    }
}

}  // namespace trimora::foundation
