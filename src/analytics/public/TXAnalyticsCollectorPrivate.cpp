#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/event/StandardEvents.h"
#include "analytics/event/TXEventBuilder.h"
#include "analytics/info/TXStaticAnalyticsInfo.h"
#include "analytics/info/UserDefaults.h"
#include "analytics/public/CollectorRecording.h"
#include "analytics/public/CrashCapture.h"
#include "analytics/public/TXAnalyticsCollector.h"
#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/public/TelemetrixNotifications.h"
#include "analytics/session/TXSessionManager.h"
#include "analytics/store/StoreFailure.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"
#include "analytics/store/TXAnalyticsDBManager.h"

// What the library records by itself.
namespace trimora::analytics {
namespace {

foundation::NotificationCenter::Observation& startObservation() {
    static foundation::NotificationCenter::Observation observation;
    return observation;
}

std::mutex& sessionEndLock() {
    static std::mutex lock;
    return lock;
}

/// Tells the delegate if there is one.
void tell(void (TLAnalyticsCollectorDelegate::*operation)()) {
    if (auto* const listener = TXAnalyticsCollector::analyticsCollectorDelegate())
        (listener->*operation)();
}

/// Whole seconds since the session became active; 0 for one whose row is missing.
std::int64_t timeOn(const std::string& session, ManagedObjectContext& context) {
    const auto active = TXAnalyticsDBManager::sharedManager().ssidDataAccess().allSSIDWithStatus(
        SessionStatus::active, PropertyValues::fetched, context);
    const TXSSID* first = nullptr;
    int count = 0;
    for (const TXSSID& candidate : active) {
        if (candidate.name != session)
            continue;
        first = count++ == 0 ? &candidate : first;
    }
    if (count != 1)
        debugWarning(
            formatted("Session inconsistency! Application must have one active session with current "
                      "session id only but has %i",
                      count));
    if (first == nullptr)
        return 0;
    return static_cast<std::int64_t>(TXAnalyticsSSIDDataAccessDefault::creationTime() -
                                     first->changeStatusTime);
}

/// Whether the text is that of an event of this name; nothing where it is no event's.
std::optional<bool> isOfEvent(std::string_view name, const std::string& text) {
    const auto body = Dictionary::parse(text);
    if (!body || !body->isObject())
        return std::nullopt;
    const Dictionary* const stored = body->find("event");
    return stored != nullptr && *stored == Dictionary(name);
}

bool isSessionEnd(const TXEvent& event) {
    if (!event.ssid || !event.body)
        return false;
    const auto is = isOfEvent(events::kSessionEnd, *event.body);
    if (!is)
        debugWarning("event body isn't a valid json format " + *event.body);
    return is.value_or(false);
}

/// The session's "session_end" events among all of its events.
std::vector<TXEvent> sessionEnds(const std::vector<TXEvent>& all, const std::string& session) {
    std::vector<TXEvent> found;
    for (const TXEvent& event : all) {
        if (isSessionEnd(event))
            found.push_back(event);
    }
    if (found.size() >= 2)
        debugWarning(formatted("amount of end_session events for session %s is %i, but must be 0 or 1 only!",
                               session.c_str(), static_cast<int>(found.size())));
    return found;
}

bool saveCrash(const std::string& text, const std::string& session) {
    return saveEventOfSession(std::string(events::kAppCrash), {{"stacktrace", text}}, session);
}

bool isCrash(const TXEvent& event) {
    return isOfEvent(events::kAppCrash, event.body.value_or("")).value_or(false);
}

/// Brings a crash that waited into its session, unless it is there already: a process may end between storing
/// it and forgetting that it waits. False where the store cannot take it now.
bool saveWaitingCrash(const std::string& text, const std::string& session) {
    const auto stored = TXAnalyticsCoreDataManager::sharedManager().managedObjectContext().eventsOfSession(
        session, PropertyValues::fetched);
    return stored && (std::any_of(stored->begin(), stored->end(), isCrash) || saveCrash(text, session));
}

/// Those that cannot be stored wait for the next start.
void saveWaitingCrashes() {
    CrashCapture::Crashes left;
    if (Telemetrix::innerId()) {
        for (const auto& [session, text] : CrashCapture::pendingCrashes()) {
            if (!saveWaitingCrash(text, session))
                left.emplace(session, text);
        }
    }
    CrashCapture::setPendingCrashes(left);
}

}  // namespace

void TXAnalyticsCollector::appInstall() {
    if (!Telemetrix::innerId())
        return;
    recordEvent(std::string(events::kAppInstall), nullptr);
    tell(&TLAnalyticsCollectorDelegate::appInstall);
}

void TXAnalyticsCollector::appOpen() {
    if (!Telemetrix::innerId())
        return;
    recordEvent(std::string(events::kAppOpen), nullptr);
    tell(&TLAnalyticsCollectorDelegate::appStart);
}

void TXAnalyticsCollector::appInfo() {
    if (!Telemetrix::innerId())
        return;
    recordEventLater(std::string(events::kAppInfo), TXStaticAnalyticsInfo::appInfo);
    tell(&TLAnalyticsCollectorDelegate::appInfo);
}

void TXAnalyticsCollector::geoInfo() {
    if (!Telemetrix::innerId())
        return;
    recordEventLater(std::string(events::kGeoInfo), TXStaticAnalyticsInfo::geoInfo);
    tell(&TLAnalyticsCollectorDelegate::geoInfo);
}

void TXAnalyticsCollector::deviceInfo() {
    if (!Telemetrix::innerId())
        return;
    recordEventLater(std::string(events::kDeviceInfo), TXStaticAnalyticsInfo::deviceInfo);
    tell(&TLAnalyticsCollectorDelegate::deviceInfo);
}

void TXAnalyticsCollector::sessionEnd() {
    const std::scoped_lock lock(sessionEndLock());
    if (!Telemetrix::innerId())
        return;
    const TXSessionManager& manager = TXSessionManager::sharedManager();
    const std::string session = TXSessionManager::sharedManager().currentSession();
    auto& context = TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
    const std::int64_t seconds = timeOn(session, context);
    const auto all = context.eventsOfSession(session, PropertyValues::fetched);
    if (!all) {  // taking this for "none" would store a second one
        logFailure(all.error());
        return;
    }
    const auto ends = sessionEnds(*all, session);
    const bool isBackgroundSession = manager.isInBackground() && Telemetrix::backgroundSessionEnabled();
    const std::string name(events::kSessionEnd);
    const Dictionary data = {{"time_on", seconds}, {"type", isBackgroundSession ? 1 : 0}};
    TXEvent event = ends.empty()
                        ? TXEventBuilder::createEventWithName_forSession(name, data, session, context)
                        : ends.front();
    if (!ends.empty())
        event.body = TXEventBuilder::createEventBodyWithName(name, data);
    TXAnalyticsDBManager::sharedManager().eventDataAccess().saveEvent(event, context);
}

void TXAnalyticsCollector::appCrash(const std::string& text, const std::string& session) {
    if (Telemetrix::innerId())
        TXAnalyticsQueue::addTask([text, session] { saveCrash(text, session); });
}

void TXAnalyticsCollector::load() {
    startObservation() = wiring().notifications.observe(kTXTelemetrixDidStartNotification,
                                                        [](const auto&) { subscribeToCrash(); });
}

void TXAnalyticsCollector::unload() {
    startObservation().end();
    setAnalyticsCollectorDelegate(nullptr);
}

void TXAnalyticsCollector::subscribeToCrash() {
    startObservation().end();
    CrashCapture::install();
    atUninstallation(CrashCapture::uninstall);
    // One task, queued before those of the session manager: the crash is in its session before that
    // session is posted.
    TXAnalyticsQueue::addTask([] {
        CrashCapture::prepareRecord(TXAnalyticsCoreDataManager::sharedManager().dbFileURL().parent_path());
        saveWaitingCrashes();
    });
}

}  // namespace trimora::analytics
