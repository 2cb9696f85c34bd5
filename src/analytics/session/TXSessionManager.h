#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "analytics/reachability/TXAnalyticsReachability.h"
#include "analytics/session/TXSessionRequest.h"
#include "foundation/Clock.h"
#include "foundation/NotificationCenter.h"

namespace trimora::analytics {

/// Decides which session events belong to, when a session ends, and when finished ones are posted.
///
/// Life of a session, named by a UUID string: active (0) when it becomes current; done (1) when it is
/// left, when a post of it failed, or when it is found abandoned; sending (2) while a request of it is
/// under way; gone from the store when the service took it or rejected it as malformed, or when it had
/// no events. At most one session of a process is active at a time.
///
/// The application goes to the background when its window loses key status and comes back when a
/// window becomes key. It says so with the notifications of TelemetrixNotifications.h, from the main
/// thread; the manager observes them from the first Telemetrix::startSession() on. The handlers return
/// at once: what needs the disk is queued on "com.telemetrix.queue". Only termination waits for it.
///
/// Several processes on one store: the one that holds the sending lock (StoreLocks) posts; the others
/// leave their finished sessions to it, or to their own next try. The live session of another process
/// is never marked, posted or deleted.
///
/// One for the process; made on first use. Any thread, except where a function says otherwise.
class TXSessionManager {
 public:
    using SendCompletion = std::function<void(const std::optional<TelemetrixError>&)>;
    using RequestCompletion =
        std::function<void(const std::optional<TXSessionRequest>&, const std::optional<TelemetrixError>&)>;

    [[nodiscard]] static TXSessionManager& sharedManager();

    /// Waits for the start notification, which brings the manager to life; called by Installation.
    static void load();
    /// Hears nothing any more, and lets no timer fire; called by Installation.
    static void unload();

    ~TXSessionManager();
    TXSessionManager(const TXSessionManager&) = delete;
    TXSessionManager& operator=(const TXSessionManager&) = delete;

    /// The active session's id. Reading it when there is none begins one, which is written to the store.
    [[nodiscard]] std::string currentSession();
    /// Makes this the active session, as of now, in the store too.
    void setCurrentSession(const std::string& session);
    /// The active session's id as it is; empty where none was begun. Never touches the disk.
    [[nodiscard]] std::string knownCurrentSession() const;

    /// Whether the background session was ended by Telemetrix::stopSession(): nothing is recorded until
    /// the application comes back.
    [[nodiscard]] bool isForceStopSessionInBackground() const { return isForceStopSessionInBackground_; }
    /// Whether the chain that posts done sessions runs.
    [[nodiscard]] bool isSendingDoneSessions() const;
    /// The session that was current when the application last went to the background; empty before.
    [[nodiscard]] std::string previousSession() const;
    [[nodiscard]] bool isInBackground() const { return isApplicationDidResignActive_; }
    [[nodiscard]] TXAnalyticsReachability& analyticsReachability() { return *analyticsReachability_; }

    /// The application has started: begins the five-second upkeep and, queued, the first session. On
    /// the first launch of the installed application records its installation, else begins to post what
    /// waits in the store. Main thread, once.
    void applicationDidFinishLaunching();
    /// The application went to the background (main thread).
    void applicationDidEnterBackground();
    /// The application's background session was ended by hand (main thread).
    void applicationDidEnterBackgroundManual();
    /// The application came back; counted once for each time that it had gone (main thread).
    void applicationWillEnterForeground();
    /// The application ends: as going to the background, and done when this returns (main thread).
    void applicationWillTerminateNotification();
    /// The network came or went.
    void changedInternetConnection();

    /// Upkeep of the "session_end" event, unless the application is in the background.
    void endSessionEvent();

    /// Records "device_info", "geo_info" and "app_info" and refreshes "session_end", in this order.
    void sendStartEvents();

    /// Begins a new session, makes the one before done and returns its id. Works on the disk.
    std::string resetCurrentActiveSession();
    /// Resets, then posts the session before; on failure once more after 10 seconds.
    void resetAndSendCurrentActiveSession();

    /// Posts a done session. Taken or rejected as malformed, its data is removed from the store; failed
    /// otherwise, it is done again. The completion comes on the calling thread or the transport's.
    void sendSession(const std::string& session, SendCompletion completion);

    /// Builds the request of a session and marks it as sending, in one step that no other thread or
    /// process can come between.
    void createRequestWithSession(const std::string& session, const RequestCompletion& completion);

    /// Begins to post all done sessions, oldest first, unless that is under way already.
    void startSendAllInactiveSessions();
    /// One round of that: the oldest, and then the next round.
    void sendAllInactiveSessions();
    /// Finds sessions that a process left behind when it was killed, and makes them done.
    void resetAllInactiveSessions();
    /// The done session whose status was written longest ago, in whole seconds; before all others one that
    /// was written more than a day in the future, as the clock has it.
    [[nodiscard]] std::optional<std::string> getOldestDoneSession();

 private:
    TXSessionManager();

    /// What one round of the chain came to.
    struct NextRound {
        bool follows;
        double seconds;
    };

    void setup();
    void startTimer();
    void firstTasks();
    void loseActive();
    void leaveSession();
    void regainSession();
    void endBackgroundSession();
    void retryLastSession(const std::string& session);
    void finishSending(const std::string& session, const std::optional<TelemetrixError>& error);
    /// Whether its request was made no longer ago than an answer may take.
    [[nodiscard]] bool isUnderWay(const std::string& session) const;
    [[nodiscard]] NextRound roundAfter(const std::optional<TelemetrixError>& error) const;
    void scheduleRound(double seconds);
    void observe(const char* notification, void (TXSessionManager::*handler)());

    mutable std::mutex stateMutex_;  // of the two ids
    std::string currentSession_;
    std::string previousSession_;

    mutable std::mutex mutex_;  // of the next two, and of request building
    bool isSendingDoneSessions_ = false;
    // Sessions whose requests wait for an answer, and since when on the clock that nobody sets.
    std::map<std::string, double> underWay_;

    std::atomic<bool> isForceStopSessionInBackground_ = false;
    std::atomic<bool> isApplicationDidResignActive_ = false;
    bool firstPassDidCheckDirtyHackLatch_ = false;  // main thread only

    std::shared_ptr<TXAnalyticsReachability> analyticsReachability_;
    std::vector<foundation::NotificationCenter::Observation> observations_;
    std::mutex timerMutex_;
    std::unique_ptr<foundation::Timer> upkeepTimer_;
    std::unique_ptr<foundation::Timer> roundTimer_;
};

}  // namespace trimora::analytics
