#include "analytics/session/TXiOSBackgroundTask.h"

#include <atomic>
#include <list>
#include <mutex>
#include <utility>

#include "analytics/Installation.h"
#include "analytics/ProcessWide.h"

namespace trimora::analytics {
namespace {

std::atomic<int> openBrackets = 0;

/// Timers of tasks that wait. Each goes when its task has run, or with the installation.
class WaitingTasks {
 public:
    using Place = std::list<std::unique_ptr<foundation::Timer>>::iterator;

    static WaitingTasks& shared() {
        static ProcessWide<WaitingTasks> waiting;
        return waiting.get([] { return new WaitingTasks; });
    }

    void add(double seconds, foundation::Task task) {
        const std::scoped_lock lock(mutex_);
        const Place place = timers_.insert(timers_.end(), nullptr);
        *place = wiring().scheduler.after(seconds, wiring().queues.backgroundQueue(),
                                          whileInstalled([this, place, run = std::move(task)] {
                                              run();
                                              const std::scoped_lock done(mutex_);
                                              timers_.erase(place);
                                          }));
    }

 private:
    std::mutex mutex_;
    std::list<std::unique_ptr<foundation::Timer>> timers_;
};

}  // namespace

TXiOSBackgroundTask::TXiOSBackgroundTask() {
    ++openBrackets;
}

TXiOSBackgroundTask::~TXiOSBackgroundTask() {
    --openBrackets;
}

std::shared_ptr<TXiOSBackgroundTask> TXiOSBackgroundTask::begin() {
    return std::shared_ptr<TXiOSBackgroundTask>(new TXiOSBackgroundTask);
}

void TXiOSBackgroundTask::runAfter(double seconds,
                                   std::function<void(std::shared_ptr<TXiOSBackgroundTask>)> block) {
    WaitingTasks::shared().add(seconds, [task = begin(), run = std::move(block)] { run(task); });
}

int TXiOSBackgroundTask::openCount() {
    return openBrackets;
}

}  // namespace trimora::analytics
