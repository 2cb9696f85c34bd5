#pragma once

#include <optional>
#include <string>

#include "analytics/event/Dictionary.h"
#include "analytics/public/TLAnalyticsCollectorDelegate.h"

namespace trimora::analytics {

/// Turns calls into events: builds them and saves them, both on "com.telemetrix.queue", so that they
/// are stored in the order of the calls.
///
/// Every call of the first two groups is dropped silently without an application id, in the background
/// while background sessions are disabled, after the background session was stopped, and without a
/// name. What was not dropped is told to the delegate on the caller's thread.
///
/// Class functions only.
class TXAnalyticsCollector {
 public:
    /// Who receives a copy of every call; null for nobody. The delegate must outlive its service.
    static void setAnalyticsCollectorDelegate(TLAnalyticsCollectorDelegate* listener);
    [[nodiscard]] static TLAnalyticsCollectorDelegate* analyticsCollectorDelegate();

    // Events of the application: stored under the name given and a full stop.
    static void logEvent(const std::optional<std::string>& name);
    static void logEvent(const std::optional<std::string>& name, const Dictionary& eventData);
    static void logTimedEvent(const std::optional<std::string>& name);
    static void logTimedEvent(const std::optional<std::string>& name, const Dictionary& eventData);
    static void endTimedEvent(const std::optional<std::string>& name);
    static void customEvent(const std::optional<std::string>& name, const Dictionary& eventData);

    // Events of games: stored without data under a fixed word and the arguments, joined by full stops.
    static void sceneStartWithId(const std::string& sceneId, const std::string& name);
    static void buttonClickWithName(const std::string& name);
    static void levelStartWithName(const std::string& name, const std::string& mode);
    static void levelWinWithName(const std::string& name, const std::string& mode);
    static void levelLoseWithName(const std::string& name, const std::string& mode);
    static void lootAppendWithName(const std::string& name, const std::string& volume);
    static void lootConsumeWithName(const std::string& name, const std::string& volume,
                                    const std::string& target);
    static void gameOverWithMode(const std::string& mode);

    // What the library records by itself. Each needs an application id and nothing else.
    static void appInstall();
    static void appOpen();
    static void appInfo();
    static void geoInfo();
    static void deviceInfo();

    /// Makes the current session's one "session_end" event say how long the session has lasted: data
    /// "time_on" in whole seconds, and "type", 1 for a background session and 0 otherwise. Works on the
    /// disk before it returns, on whatever thread.
    static void sessionEnd();

    /// Records "app_crash" in the session in which the crash happened.
    static void appCrash(const std::string& text, const std::string& session);

    /// Catches crashes from here on (see CrashCapture) and records the one of the last run.
    static void subscribeToCrash();

    /// Waits for the start notification to subscribe to crashes; called by Installation.
    static void load();
    /// Lets go of everything that load() and subscribeToCrash() began; called by Installation.
    static void unload();
};

}  // namespace trimora::analytics
