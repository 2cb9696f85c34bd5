#pragma once

#include <functional>

#include "analytics/store/TXEvent.h"
#include "foundation/Queues.h"

namespace trimora::analytics {

/// The one queue on which everything that touches the store runs, in the order of the calls.
class TXAnalyticsQueue {
 public:
    /// The serial queue "com.telemetrix.queue", made on first use.
    [[nodiscard]] static foundation::SerialQueue& analyticsSerialQueue();

    /// Runs the block later on that queue.
    static void addTask(foundation::Task block);

    /// Builds an event later on that queue and saves it. Where more work waits behind it, the event may
    /// be saved in one transaction with the events whose turns come right after its own; whatever else
    /// comes after it finds it in the store.
    static void addEvent(std::function<TXEvent()> build);

    /// Runs the block later on the main queue.
    static void addTaskOnMainQueue(foundation::Task block);

    /// Waits until the queue has done what was handed to it, and what that handed to it in turn.
    static void drain();
};

}  // namespace trimora::analytics
