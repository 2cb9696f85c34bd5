#include "analytics/public/Telemetrix.h"

#include <mutex>
#include <utility>

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/OutOfMemory.h"
#include "analytics/ProcessWide.h"
#include "analytics/info/ApplicationBundle.h"
#include "analytics/info/TXAnalyticsLocation.h"
#include "analytics/public/TXAnalyticsCollector.h"
#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/public/TelemetrixNotifications.h"
#include "analytics/session/TXSessionManager.h"
#include "foundation/Log.h"

namespace trimora::analytics {
namespace {

struct State {
    std::mutex mutex;
    std::optional<std::string> innerId;
    bool backgroundSessionEnabled = false;
    bool hasStarted = false;

    static State& shared() {
        static ProcessWide<State> state;
        return state.get([] { return new State; });
    }
};

/// The gate of the logging calls.
bool mayLog(const std::optional<std::string>& name) {
    if (!Telemetrix::innerId()) {
        foundation::log::warning("Telemetrix : must start a session before logging an event!");
        return false;
    }
    return name.has_value();
}

void post(const char* notification) {
    wiring().notifications.post(notification);
}

}  // namespace

void Telemetrix::startSession(const std::optional<std::string>& applicationId) {
    if (!applicationId || applicationId->empty())
        debugWarning("Analytics application id must be provided");
    if (!isInstalled())
        return;
    asFarAsMemoryGoes([&] {
        bool isFirst = false;
        {
            State& state = State::shared();
            const std::scoped_lock lock(state.mutex);
            state.innerId = applicationId;
            isFirst = !std::exchange(state.hasStarted, true);
        }
        TXAnalyticsQueue::addTaskOnMainQueue(
            [] { TXAnalyticsLocation::location().startMonitoringIfHavePermission(); });
        if (isFirst)
            post(kTXTelemetrixDidStartNotification);
    });
}

void Telemetrix::startSession() {
    asFarAsMemoryGoes([] {
        if (isInstalled())
            startSession(wiring().bundle.infoValue("TelemetrixInnerId"));
    });
}

void Telemetrix::setBackgroundSessionEnabled(bool enabled) {
    if (!isInstalled())
        return;
    {
        State& state = State::shared();
        const std::scoped_lock lock(state.mutex);
        state.backgroundSessionEnabled = enabled;
    }
    post(enabled ? kTLAnalyticsNeedEnableBackgroundSessionNotification
                 : kTLAnalyticsNeedDisableBackgroundSessionNotification);
}

bool Telemetrix::backgroundSessionEnabled() {
    if (!isInstalled())
        return false;
    State& state = State::shared();
    const std::scoped_lock lock(state.mutex);
    return state.backgroundSessionEnabled;
}

void Telemetrix::stopSession() {
    if (!isInstalled())
        return;
    const TXSessionManager& manager = TXSessionManager::sharedManager();
    if (!manager.isInBackground() || !backgroundSessionEnabled())
        return;
    if (manager.isForceStopSessionInBackground()) {
        logLine(
            "stopSession was called already, to use it again you must start new session by moving an app to "
            "active state!");
        return;
    }
    post(kTXApplicationDidEndSessionManualNotification);
    post(kTLAnalyticsNeedPauseBackgroundSessionNotification);
}

std::optional<std::string> Telemetrix::innerId() {
    if (!isInstalled())
        return std::nullopt;
    State& state = State::shared();
    const std::scoped_lock lock(state.mutex);
    return state.innerId;
}

void Telemetrix::resetInnerId() {
    if (!isInstalled())
        return;
    State& state = State::shared();
    const std::scoped_lock lock(state.mutex);
    state.innerId.reset();
}

void Telemetrix::logEvent(const std::optional<std::string>& name) {
    asFarAsMemoryGoes([&] {
        if (mayLog(name))
            TXAnalyticsCollector::logEvent(name);
    });
}

void Telemetrix::logEvent(const std::optional<std::string>& name, const Dictionary& parameters) {
    asFarAsMemoryGoes([&] {
        if (mayLog(name))
            TXAnalyticsCollector::logEvent(name, parameters);
    });
}

void Telemetrix::logTimedEvent(const std::optional<std::string>& name) {
    asFarAsMemoryGoes([&] {
        if (mayLog(name))
            TXAnalyticsCollector::logTimedEvent(name);
    });
}

void Telemetrix::logTimedEvent(const std::optional<std::string>& name, const Dictionary& parameters) {
    asFarAsMemoryGoes([&] {
        if (mayLog(name))
            TXAnalyticsCollector::logTimedEvent(name, parameters);
    });
}

void Telemetrix::endTimedEvent(const std::optional<std::string>& name) {
    asFarAsMemoryGoes([&] {
        if (mayLog(name))
            TXAnalyticsCollector::endTimedEvent(name);
    });
}

}  // namespace trimora::analytics
