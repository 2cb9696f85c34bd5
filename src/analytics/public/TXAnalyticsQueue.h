#pragma once

#include "foundation/Queues.h"

namespace trimora::analytics {

/// The one queue on which everything that touches the store runs, in the order of the calls.
class TXAnalyticsQueue {
 public:
    /// The serial queue "com.telemetrix.queue", made on first use.
    [[nodiscard]] static foundation::SerialQueue& analyticsSerialQueue();

    /// Runs the block later on that queue.
    static void addTask(foundation::Task block);

    /// Runs the block later on the main queue.
    static void addTaskOnMainQueue(foundation::Task block);

    /// Waits until the queue has done what was handed to it, and what that handed to it in turn.
    static void drain();
};

}  // namespace trimora::analytics
