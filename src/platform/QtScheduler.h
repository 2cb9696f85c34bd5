#pragma once

#include <QTimer>
#include <memory>

#include "foundation/RealTime.h"
#include "foundation/TimerList.h"
#include "platform/QtMainQueue.h"

namespace trimora::platform {

/// The scheduler of a Qt program. What is for the main queue waits in the event loop, so that the main thread
/// alone wakes for it: a thread that waits for everybody would wake, and then wake the main thread, for every
/// frame of what moves. All else waits on a RealScheduler.
///
/// Made and destroyed on the main thread, after the main queue and before it goes, and before the other
/// queues that tasks go to.
class QtScheduler final : public foundation::Scheduler {
 public:
    explicit QtScheduler(QtMainQueue& mainQueue);

    [[nodiscard]] std::unique_ptr<foundation::Timer> after(double seconds, foundation::TaskQueue& queue,
                                                           foundation::Task task) override;
    [[nodiscard]] std::unique_ptr<foundation::Timer> every(double seconds, foundation::TaskQueue& queue,
                                                           foundation::Task task) override;

 private:
    [[nodiscard]] std::unique_ptr<foundation::Timer> onMainQueue(double seconds, double interval,
                                                                 foundation::Task task);
    void handOver();
    void waitForNext();

    QtMainQueue& mainQueue_;
    foundation::RealClock clock_;
    foundation::RealScheduler others_;
    std::shared_ptr<foundation::TimerList> timers_ = std::make_shared<foundation::TimerList>();
    QTimer next_;
};

}  // namespace trimora::platform
