#include "foundation/RealTime.h"

#include <pthread.h>

#include <algorithm>
#include <utility>

#include "foundation/SignalStack.h"
#include "foundation/TimerList.h"

namespace trimora::foundation {
namespace {

// A wait is cut here so that no due time, however far, overflows the clock of the condition variable.
constexpr double kLongestWait = 3600;

}  // namespace

double RealClock::seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Clock::WallTime RealClock::wallTime() const {
    return std::chrono::system_clock::now();
}

void RealClock::sleep(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

RealScheduler::RealScheduler() : timers_(std::make_shared<TimerList>()), thread_([this] { work(); }) {}

RealScheduler::~RealScheduler() {
    {
        const std::scoped_lock lock(mutex_);
        closing_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

std::unique_ptr<Timer> RealScheduler::after(double seconds, TaskQueue& queue, Task task) {
    return add(seconds, 0, queue, std::move(task));
}

std::unique_ptr<Timer> RealScheduler::every(double seconds, TaskQueue& queue, Task task) {
    return add(seconds, seconds, queue, std::move(task));
}

std::unique_ptr<Timer> RealScheduler::add(double seconds, double interval, TaskQueue& queue, Task task) {
    auto timer = timers_->add(clock_.seconds() + seconds, interval, queue, std::move(task));
    {
        const std::scoped_lock lock(mutex_);
        changed_ = true;
    }
    wake_.notify_all();
    return timer;
}

void RealScheduler::work() {
    const SignalStack stack;
    pthread_setname_np(pthread_self(), "timers");
    std::unique_lock lock(mutex_);
    while (!closing_) {
        lock.unlock();
        while (timers_->handOverOne(clock_.seconds())) {
        }
        const std::optional<double> next = timers_->nextDue();
        lock.lock();
        const auto mustLook = [this] { return closing_ || changed_; };
        if (next) {
            const double wait = std::clamp(*next - clock_.seconds(), 0.0, kLongestWait);
            wake_.wait_for(lock, std::chrono::duration<double>(wait), mustLook);
        } else {
            wake_.wait(lock, mustLook);
        }
        changed_ = false;
    }
}

}  // namespace trimora::foundation
