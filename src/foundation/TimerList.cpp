#include "foundation/TimerList.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <utility>

namespace trimora::foundation {

struct TimerList::Entry {
    double due = 0;
    double interval = 0;
    TaskQueue* queue = nullptr;
    Task task;
    std::atomic<bool> cancelled = false;
};

class TimerList::Handle final : public Timer {
 public:
    Handle(std::weak_ptr<TimerList> list, std::shared_ptr<Entry> entry)
        : list_(std::move(list)), entry_(std::move(entry)) {}
    ~Handle() override { cancel(); }

    void cancel() override {
        entry_->cancelled = true;
        if (const auto list = list_.lock())
            list->remove(entry_.get());
    }

 private:
    std::weak_ptr<TimerList> list_;
    std::shared_ptr<Entry> entry_;
};

std::unique_ptr<Timer> TimerList::add(double due, double interval, TaskQueue& queue, Task task) {
    auto entry = std::make_shared<Entry>();
    entry->due = due;
    entry->interval = interval;
    entry->queue = &queue;
    entry->task = std::move(task);
    auto handle = std::make_unique<Handle>(weak_from_this(), entry);
    const std::scoped_lock lock(mutex_);
    insert(std::move(entry));
    return handle;
}

void TimerList::insert(std::shared_ptr<Entry> entry) {
    const auto later = [](double due, const std::shared_ptr<Entry>& other) { return due < other->due; };
    const auto place = std::upper_bound(entries_.begin(), entries_.end(), entry->due, later);
    entries_.insert(place, std::move(entry));
}

std::optional<double> TimerList::nextDue() const {
    const std::scoped_lock lock(mutex_);
    if (entries_.empty())
        return std::nullopt;
    return entries_.front()->due;
}

bool TimerList::handOverOne(double now) {
    // Held until the queue has the task: a timer that is cancelled meanwhile waits in remove(), so its
    // owner may destroy the queue right after.
    const std::scoped_lock lock(mutex_);
    if (entries_.empty() || entries_.front()->due > now)
        return false;
    const std::shared_ptr<Entry> entry = entries_.front();
    entries_.erase(entries_.begin());
    if (entry->interval > 0) {
        const double missed = std::floor((now - entry->due) / entry->interval);
        entry->due += (missed + 1) * entry->interval;
        insert(entry);
    }
    entry->queue->async([entry] {
        if (!entry->cancelled)
            entry->task();
    });
    return true;
}

int TimerList::size() const {
    const std::scoped_lock lock(mutex_);
    return static_cast<int>(entries_.size());
}

void TimerList::remove(const Entry* entry) {
    const std::scoped_lock lock(mutex_);
    std::erase_if(entries_, [entry](const auto& held) { return held.get() == entry; });
}

}  // namespace trimora::foundation
