#pragma once

#include <functional>
#include <optional>
#include <string>

#include "analytics/session/StoreReport.h"

namespace trimora::app {

/// What can be done with the record of how the program is used. The program that puts the parts together
/// provides it. Main thread only; no call waits for the network.
class UsageRecording {
 public:
    virtual ~UsageRecording() = default;
    UsageRecording(const UsageRecording&) = delete;
    UsageRecording& operator=(const UsageRecording&) = delete;

    /// Where usage data would be sent: the whole address; nothing where there is none, and nothing can be.
    [[nodiscard]] virtual std::optional<std::string> destination() const = 0;

    /// Records on this machine. Nothing is sent before allowSending().
    virtual void record() = 0;

    /// What is recorded, and was recorded before, may be sent.
    virtual void allowSending() = 0;

    /// Ends recording and sending and empties the store; all is done when this returns.
    virtual void stopAndErase() = 0;

    /// Empties the store; recording goes on as it was.
    virtual void erase() = 0;

    /// Everything in the store as text, once, later, on the main thread; no text where nothing is recorded.
    virtual void describe(analytics::EventForm form, std::function<void(std::string)> tell) = 0;

 protected:
    UsageRecording() = default;
};

}  // namespace trimora::app
