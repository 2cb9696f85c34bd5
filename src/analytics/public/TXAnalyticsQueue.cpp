#include "analytics/public/TXAnalyticsQueue.h"

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "analytics/Installation.h"
#include "analytics/OutOfMemory.h"
#include "analytics/ProcessWide.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"
#include "analytics/store/TXAnalyticsDBManager.h"

namespace trimora::analytics {
namespace {

constexpr std::size_t kMostTogether = 256;  // events that one transaction saves

struct Queue {
    void saveBuilt() {
        if (built.empty())
            return;
        // Taken out first: what a save that ran out of memory did not store is lost, and never stored twice.
        std::vector<TXEvent> events = std::exchange(built, {});
        TXAnalyticsDBManager::sharedManager().eventDataAccess().saveEvents(
            events, TXAnalyticsCoreDataManager::sharedManager().managedObjectContext());
    }
    void handOver(foundation::Task block) {
        foundation::Task work = [this, task = whileInstalled(std::move(block))] {
            task();
            --waiting;
        };
        ++waiting;
        if (!asFarAsMemoryGoes([&] { serial->async(std::move(work)); }))
            --waiting;
    }

    std::atomic<int> waiting = 0;  // handed over and not yet done
    std::vector<TXEvent> built;    // and not yet saved; touched on the queue alone
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
    asFarAsMemoryGoes([&] {
        Queue& to = queue();
        to.handOver([&to, task = std::move(block)] {
            asFarAsMemoryGoes([&] { to.saveBuilt(); });
            task();
        });
    });
}

void TXAnalyticsQueue::addEvent(std::function<TXEvent()> build) {
    asFarAsMemoryGoes([&] {
        Queue& to = queue();
        to.handOver([&to, event = std::move(build)] {
            asFarAsMemoryGoes([&] { to.built.push_back(event()); });
            const bool isLast = to.waiting == 1;
            if (isLast || to.built.size() >= kMostTogether)
                to.saveBuilt();
        });
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
