#include "platform/QtScheduler.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace trimora::platform {

using foundation::Task;
using foundation::TaskQueue;
using foundation::Timer;

namespace {

constexpr double kLongestWait = 3600;  // seconds; then it is looked at again

}  // namespace

QtScheduler::QtScheduler(QtMainQueue& mainQueue) : mainQueue_(mainQueue) {
    next_.setSingleShot(true);
    next_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&next_, &QTimer::timeout, &next_, [this] { handOver(); });
}

std::unique_ptr<Timer> QtScheduler::after(double seconds, TaskQueue& queue, Task task) {
    if (&queue != &mainQueue_)
        return others_.after(seconds, queue, std::move(task));
    return onMainQueue(seconds, 0, std::move(task));
}

std::unique_ptr<Timer> QtScheduler::every(double seconds, TaskQueue& queue, Task task) {
    if (&queue != &mainQueue_)
        return others_.every(seconds, queue, std::move(task));
    return onMainQueue(seconds, seconds, std::move(task));
}

std::unique_ptr<Timer> QtScheduler::onMainQueue(double seconds, double interval, Task task) {
    auto timer = timers_->add(clock_.seconds() + seconds, interval, mainQueue_, std::move(task));
    if (mainQueue_.isCurrent())
        waitForNext();
    else
        QMetaObject::invokeMethod(
            &next_, [this] { waitForNext(); }, Qt::QueuedConnection);
    return timer;
}

void QtScheduler::handOver() {
    while (timers_->handOverOne(clock_.seconds())) {
    }
    waitForNext();
}

void QtScheduler::waitForNext() {
    const std::optional<double> due = timers_->nextDue();
    if (!due) {
        next_.stop();
        return;
    }
    const double wait = std::clamp(*due - clock_.seconds(), 0.0, kLongestWait);
    next_.start(std::chrono::milliseconds(std::lround(std::ceil(wait * 1000))));
}

}  // namespace trimora::platform
