#pragma once

#include <functional>
#include <memory>

#include "foundation/Queues.h"

namespace trimora::analytics {

/// Brackets work that should be finished even while the application goes to the background. On a
/// desktop a process is never put to sleep for that, so the bracket only says how much of such work is
/// under way; whoever ends the program may look at it.
///
/// The bracket ends when the last copy of the task that begin() returned goes. Any thread.
class TXiOSBackgroundTask {
 public:
    /// Opens the bracket.
    [[nodiscard]] static std::shared_ptr<TXiOSBackgroundTask> begin();

    /// Opens a bracket, waits `seconds` without holding a thread, runs the block on the shared
    /// background queue and hands it the bracket, which it keeps for as long as it needs.
    static void runAfter(double seconds, std::function<void(std::shared_ptr<TXiOSBackgroundTask>)> block);

    /// How many brackets are open.
    [[nodiscard]] static int openCount();

    ~TXiOSBackgroundTask();
    TXiOSBackgroundTask(const TXiOSBackgroundTask&) = delete;
    TXiOSBackgroundTask& operator=(const TXiOSBackgroundTask&) = delete;

 private:
    TXiOSBackgroundTask();
};

}  // namespace trimora::analytics
