#include "analytics/public/TXAnalyticsQueue.h"

#include <atomic>
#include <memory>

#include "analytics/Installation.h"
#include "analytics/ProcessWide.h"

namespace trimora::analytics {
namespace {

struct Queue {
    std::atomic<int> waiting = 0;  // handed over and not yet done
    std::unique_ptr<foundation::SerialQueue> serial = wiring().queues.makeSerialQueue("com.telemetrix.queue");
};

Queue& queue() {
    static ProcessWide<Queue> shared;
    return shared.get([] { return new Queue; });
}

}  // namespace

foundation::SerialQueue& TXAnalyticsQueue::analyticsSerialQueue() {
    return *queue().serial;
}

void TXAnalyticsQueue::addTask(foundation::Task block) {
    Queue& to = queue();
    ++to.waiting;
    to.serial->async([&to, task = whileInstalled(std::move(block))] {
        task();
        --to.waiting;
    });
}

void TXAnalyticsQueue::addTaskOnMainQueue(foundation::Task block) {
    wiring().queues.mainQueue().async(whileInstalled(std::move(block)));
}

void TXAnalyticsQueue::drain() {
    Queue& drained = queue();
    do
        drained.serial->sync([] {});
    while (drained.waiting > 0);
}

}  // namespace trimora::analytics
