#include "foundation/VirtualTime.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "foundation/TimerList.h"

namespace trimora::foundation {
namespace {

using Offset = Clock::WallTime::duration;

Offset offsetOf(double seconds) {
    return std::chrono::duration_cast<Offset>(std::chrono::duration<double>(seconds));
}

}  // namespace

struct VirtualTime::State {
    mutable std::mutex mutex;
    double seconds = 0;
    WallTime wallAtZero;  // the date when `seconds` is 0
};

VirtualTime::VirtualTime()
    : VirtualTime(WallTime(std::chrono::sys_days(std::chrono::year{2026} / 1 / 1)) + std::chrono::hours(12)) {
}

VirtualTime::VirtualTime(WallTime start)
    : timers_(std::make_shared<TimerList>()), state_(std::make_unique<State>()) {
    state_->wallAtZero = start;
}

VirtualTime::~VirtualTime() = default;

double VirtualTime::seconds() const {
    const std::scoped_lock lock(state_->mutex);
    return state_->seconds;
}

Clock::WallTime VirtualTime::wallTime() const {
    const std::scoped_lock lock(state_->mutex);
    return state_->wallAtZero + offsetOf(state_->seconds);
}

void VirtualTime::sleep(double seconds) {
    moveTo(this->seconds() + seconds);
}

std::unique_ptr<Timer> VirtualTime::after(double seconds, TaskQueue& queue, Task task) {
    return timers_->add(this->seconds() + seconds, 0, queue, std::move(task));
}

std::unique_ptr<Timer> VirtualTime::every(double seconds, TaskQueue& queue, Task task) {
    return timers_->add(this->seconds() + seconds, seconds, queue, std::move(task));
}

void VirtualTime::advance(double seconds, const Task& settle) {
    const double end = this->seconds() + seconds;
    if (settle)
        settle();
    for (auto due = timers_->nextDue(); due && *due <= end; due = timers_->nextDue()) {
        moveTo(std::max(*due, this->seconds()));
        timers_->handOverOne(this->seconds());
        if (settle)
            settle();
    }
    moveTo(end);
}

bool VirtualTime::advanceToNext(const Task& settle) {
    const std::optional<double> due = timers_->nextDue();
    if (!due)
        return false;
    moveTo(std::max(*due, seconds()));
    timers_->handOverOne(seconds());
    if (settle)
        settle();
    return true;
}

void VirtualTime::setWallTime(WallTime time) {
    const std::scoped_lock lock(state_->mutex);
    state_->wallAtZero = time - offsetOf(state_->seconds);
}

int VirtualTime::scheduled() const {
    return timers_->size();
}

void VirtualTime::moveTo(double seconds) {
    const std::scoped_lock lock(state_->mutex);
    state_->seconds = std::max(state_->seconds, seconds);
}

}  // namespace trimora::foundation
