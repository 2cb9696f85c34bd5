#pragma once

#include <string>

#include "analytics/event/Dictionary.h"

namespace trimora::analytics {

/// Receives a copy of every call to the collector, for an application that wants to know or to pass it
/// on. Every operation is optional. Calls come on the thread of the caller, right after the event was
/// queued and before it is stored; names are those that are stored.
class TLAnalyticsCollectorDelegate {
 public:
    virtual ~TLAnalyticsCollectorDelegate() = default;

    virtual void logEvent(const std::string& /*name*/) {}
    virtual void logEvent_withParameters(const std::string& /*name*/, const Dictionary& /*parameters*/) {}
    virtual void logTimedEvent(const std::string& /*name*/) {}
    virtual void logTimedEvent_withParameters(const std::string& /*name*/, const Dictionary& /*parameters*/) {
    }
    virtual void endTimedEvent(const std::string& /*name*/) {}
    /// The data with the event's name under "custom_event_name".
    virtual void custom(const Dictionary& /*data*/) {}

    virtual void appInstall() {}
    virtual void appStart() {}
    virtual void appInfo() {}
    virtual void geoInfo() {}
    virtual void deviceInfo() {}

    virtual void sceneStart(const std::string& /*sceneId*/, const std::string& /*name*/) {}
    virtual void buttonClick(const std::string& /*name*/) {}
    virtual void levelStart(const std::string& /*name*/, const std::string& /*mode*/) {}
    virtual void levelWin(const std::string& /*name*/, const std::string& /*mode*/) {}
    virtual void levelLose(const std::string& /*name*/, const std::string& /*mode*/) {}
    virtual void lootAppend(const std::string& /*name*/, const std::string& /*volume*/) {}
    virtual void lootConsume(const std::string& /*name*/, const std::string& /*volume*/,
                             const std::string& /*target*/) {}
    virtual void gameOver(const std::string& /*mode*/) {}

 protected:
    TLAnalyticsCollectorDelegate() = default;
    TLAnalyticsCollectorDelegate(const TLAnalyticsCollectorDelegate&) = default;
    TLAnalyticsCollectorDelegate& operator=(const TLAnalyticsCollectorDelegate&) = default;
};

}  // namespace trimora::analytics
