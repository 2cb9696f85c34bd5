#pragma once

#include <optional>
#include <string>

#include "analytics/event/Dictionary.h"

namespace trimora::analytics {

/// The library as an application sees it: say once that a session has started, then log what the
/// person does.
///
///     Installation telemetrix(wiring);                       // once, before everything else
///     Telemetrix::startSession();                            // id from the application's bundle
///     Telemetrix::logEvent("button open pressed");
///
/// Events are grouped into sessions, kept on disk, and posted when their session is over. Whatever goes
/// wrong stays inside the library: no call reports a failure. A logging call before startSession() is
/// dropped with the log line "Telemetrix : must start a session before logging an event!"; one without
/// a name (std::nullopt) is dropped silently.
///
/// Without an Installation nothing is recorded and nothing happens, but for the lines in the log.
///
/// Class functions only. To be called from the main thread; each returns within microseconds and never
/// waits for the disk or the network.
class Telemetrix {
 public:
    /// Starts recording under this application id. An absent or empty id is warned of; with an absent
    /// one nothing is recorded. The first call brings the library to life (it posts
    /// TXTelemetrixDidStartNotification); later ones only replace the id and ask the location service
    /// again.
    static void startSession(const std::optional<std::string>& applicationId);

    /// As above with the bundle's "TelemetrixInnerId".
    static void startSession();

    /// Whether events are still recorded while the application is in the background; not at first.
    static void setBackgroundSessionEnabled(bool enabled);
    [[nodiscard]] static bool backgroundSessionEnabled();

    /// Ends the session of an application that is in the background with background sessions enabled:
    /// nothing more is recorded until it comes back. Otherwise does nothing; a second call while nothing
    /// is recorded only logs that it has no effect.
    static void stopSession();

    /// The application id of the running session, or nothing.
    [[nodiscard]] static std::optional<std::string> innerId();

    /// Forgets the id: all recording stops until the next startSession().
    static void resetInnerId();

    /// Records an event under the name given and a full stop.
    static void logEvent(const std::optional<std::string>& name);
    static void logEvent(const std::optional<std::string>& name, const Dictionary& parameters);

    /// Records the beginning, and the end, of something that takes time. The library computes no
    /// durations: both are events of one name, told apart by their "end_timed_event".
    static void logTimedEvent(const std::optional<std::string>& name);
    static void logTimedEvent(const std::optional<std::string>& name, const Dictionary& parameters);
    static void endTimedEvent(const std::optional<std::string>& name);
};

}  // namespace trimora::analytics
