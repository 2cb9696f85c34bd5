#pragma once

#include <string>

#include "analytics/event/Dictionary.h"

namespace trimora::analytics {

/// Receives a copy of every call to the collector, for an application that wants to know or to pass it
/// on: set with TLAnalyticsCollector::setAnalyticsCollectorDelegate(), and kept by whoever set it.
///
/// Every operation is optional; left alone it does nothing. Calls come on the thread of the caller, right
/// after the event was queued and before it is stored, so a delegate must not wait for the store. What was
/// dropped (nothing started, in the background) is not told. Names are those that are stored, with the
/// full stop; parameters are copies, an empty object where none were given. An exception goes to the
/// caller, whose event is queued all the same.
class TLAnalyticsCollectorDelegate {
 public:
    virtual ~TLAnalyticsCollectorDelegate() = default;

    // Events of the application; a timed event's parameters hold "end_timed_event".
    virtual void logEvent(const std::string& /*name*/) {}
    virtual void logEvent_withParameters(const std::string& /*name*/, const Dictionary& /*parameters*/) {}
    virtual void logTimedEvent(const std::string& /*name*/) {}
    virtual void logTimedEvent_withParameters(const std::string& /*name*/, const Dictionary& /*parameters*/) {
    }
    virtual void endTimedEvent(const std::string& /*name*/) {}
    /// The data with the event's name under "custom_event_name".
    virtual void custom(const Dictionary& /*data*/) {}

    // What the library records by itself. From its own queue at the start and at each return.
    virtual void appInstall() {}
    virtual void appStart() {}
    virtual void appInfo() {}
    virtual void geoInfo() {}
    virtual void deviceInfo() {}

    // Events of games, with the arguments as they were given.
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
