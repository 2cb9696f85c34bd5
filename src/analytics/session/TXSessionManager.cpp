#include "analytics/session/TXSessionManager.h"

#include <utility>

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/OutOfMemory.h"
#include "analytics/ProcessWide.h"
#include "analytics/info/TXStaticAnalyticsInfo.h"
#include "analytics/public/CrashCapture.h"
#include "analytics/public/TXAnalyticsCollector.h"
#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/public/TelemetrixNotifications.h"
#include "analytics/session/SessionIdentifier.h"
#include "analytics/store/TXAnalyticsDBManager.h"

namespace trimora::analytics {
namespace {

constexpr double kUpkeepInterval = 5.0;

std::atomic<TXSessionManager*> living = nullptr;  // what unload() must quieten

foundation::NotificationCenter::Observation& startObservation() {
    static foundation::NotificationCenter::Observation observation;
    return observation;
}

TXAnalyticsSSIDDataAccessDefault& sessions() {
    return TXAnalyticsDBManager::sharedManager().ssidDataAccess();
}

}  // namespace

TXSessionManager& TXSessionManager::sharedManager() {
    static ProcessWide<TXSessionManager> shared;
    return shared.get([] { return new TXSessionManager; });
}

void TXSessionManager::load() {
    startObservation() = wiring().notifications.observe(kTXTelemetrixDidStartNotification, [](const auto&) {
        startObservation().end();
        sharedManager().applicationDidFinishLaunching();
    });
}

void TXSessionManager::unload() {
    startObservation().end();
    TXSessionManager* const manager = living;
    if (manager == nullptr)
        return;
    manager->observations_.clear();
    manager->analyticsReachability_->stopNotifier();
    const std::scoped_lock lock(manager->timerMutex_);
    manager->upkeepTimer_.reset();
    manager->roundTimer_.reset();
}

TXSessionManager::TXSessionManager()
    : analyticsReachability_(TXAnalyticsReachability::reachabilityForInternetConnection()) {
    analyticsReachability_->startNotifier();
    setup();
    living = this;
}

TXSessionManager::~TXSessionManager() {
    living = nullptr;
    analyticsReachability_->stopNotifier();
}

void TXSessionManager::setup() {
    observe(kTelemetrixReachabilityChangedNotification, &TXSessionManager::changedInternetConnection);
    observe(kTXApplicationDidEndSessionManualNotification,
            &TXSessionManager::applicationDidEnterBackgroundManual);
    observe(kNSWindowDidResignKeyNotification, &TXSessionManager::applicationDidEnterBackground);
    observe(kNSWindowDidBecomeKeyNotification, &TXSessionManager::applicationWillEnterForeground);
    observe(kNSApplicationWillTerminateNotification, &TXSessionManager::applicationWillTerminateNotification);
}

void TXSessionManager::observe(const char* notification, void (TXSessionManager::*handler)()) {
    observations_.push_back(wiring().notifications.observe(
        notification, [this, handler](const auto&) { asFarAsMemoryGoes([&] { (this->*handler)(); }); }));
}

std::string TXSessionManager::currentSession() {
    {
        const std::scoped_lock lock(stateMutex_);
        if (!currentSession_.empty())
            return currentSession_;
        currentSession_ = makeSessionIdentifier();
    }
    std::string begun = knownCurrentSession();
    CrashCapture::setSession(begun);
    sessions().saveOrUpdateSSID(begun, SessionStatus::active);
    return begun;
}

void TXSessionManager::setCurrentSession(const std::string& session) {
    {
        const std::scoped_lock lock(stateMutex_);
        currentSession_ = session;
    }
    CrashCapture::setSession(session);
    sessions().saveOrUpdateSSID(session, SessionStatus::active);
}

std::string TXSessionManager::knownCurrentSession() const {
    const std::scoped_lock lock(stateMutex_);
    return currentSession_;
}

std::string TXSessionManager::previousSession() const {
    const std::scoped_lock lock(stateMutex_);
    return previousSession_;
}

bool TXSessionManager::isSendingDoneSessions() const {
    const std::scoped_lock lock(mutex_);
    return isSendingDoneSessions_;
}

void TXSessionManager::startTimer() {
    const std::scoped_lock lock(timerMutex_);
    upkeepTimer_ = wiring().scheduler.every(kUpkeepInterval, wiring().queues.mainQueue(),
                                            whileInstalled([this] { endSessionEvent(); }));
}

// The upkeep reads and writes the store, which the main thread never waits for.
void TXSessionManager::endSessionEvent() {
    if (!isInBackground())
        TXAnalyticsQueue::addTask([] { TXAnalyticsCollector::sessionEnd(); });
}

void TXSessionManager::applicationDidFinishLaunching() {
    startTimer();
    TXAnalyticsQueue::addTask([this] { firstTasks(); });
}

void TXSessionManager::firstTasks() {
    (void)currentSession();
    if (TXStaticAnalyticsInfo::isFirstApplicationLaunch()) {
        TXAnalyticsCollector::appInstall();
        TXStaticAnalyticsInfo::applicationDidFirstLaunch();
    } else {
        startSendAllInactiveSessions();
    }
    TXAnalyticsCollector::appOpen();
    sendStartEvents();
}

void TXSessionManager::sendStartEvents() {
    TXAnalyticsCollector::deviceInfo();
    TXAnalyticsCollector::geoInfo();
    TXAnalyticsCollector::appInfo();
    // Queued as those three are, so that it comes after them.
    TXAnalyticsQueue::addTask([] { TXAnalyticsCollector::sessionEnd(); });
}

void TXSessionManager::applicationDidEnterBackground() {
    loseActive();
}

void TXSessionManager::applicationWillTerminateNotification() {
    loseActive();
    TXAnalyticsQueue::drain();
}

void TXSessionManager::loseActive() {
    isApplicationDidResignActive_ = true;
    firstPassDidCheckDirtyHackLatch_ = false;
    // Queued behind the events of the session that is left, so that they stay in it.
    TXAnalyticsQueue::addTask([this] { leaveSession(); });
}

void TXSessionManager::leaveSession() {
    const std::string left = currentSession();
    {
        const std::scoped_lock lock(stateMutex_);
        previousSession_ = left;
    }
    TXAnalyticsCollector::sessionEnd();
    resetAndSendCurrentActiveSession();
    if (Telemetrix::backgroundSessionEnabled())
        sendStartEvents();
}

std::string TXSessionManager::resetCurrentActiveSession() {
    std::string before = currentSession();
    setCurrentSession(makeSessionIdentifier());
    sessions().saveOrUpdateSSID(before, SessionStatus::done);
    return before;
}

void TXSessionManager::applicationWillEnterForeground() {
    if (firstPassDidCheckDirtyHackLatch_)
        return;
    isApplicationDidResignActive_ = false;
    firstPassDidCheckDirtyHackLatch_ = true;
    TXAnalyticsQueue::addTask([this] { regainSession(); });
}

void TXSessionManager::regainSession() {
    const std::string previous = previousSession();
    if (previous.empty())
        return;
    if (Telemetrix::backgroundSessionEnabled()) {
        if (previous == currentSession())
            resetCurrentActiveSession();
        if (!isForceStopSessionInBackground_)
            TXAnalyticsDBManager::sharedManager().deleteAllDataForSession(previous);
        isForceStopSessionInBackground_ = false;
    }
    setCurrentSession(currentSession());
    TXAnalyticsCollector::appOpen();
    sendStartEvents();
    startSendAllInactiveSessions();
}

void TXSessionManager::applicationDidEnterBackgroundManual() {
    if (Telemetrix::backgroundSessionEnabled())
        TXAnalyticsQueue::addTask([this] { endBackgroundSession(); });
}

void TXSessionManager::endBackgroundSession() {
    TXAnalyticsCollector::sessionEnd();
    sendSession(resetCurrentActiveSession(), [](const auto& error) {
        if (error)
            logLine("an error occurred at sending last active session " + error->description());
    });
    sendStartEvents();
    if (isInBackground())
        isForceStopSessionInBackground_ = true;
}

void TXSessionManager::changedInternetConnection() {
    if (Telemetrix::innerId() &&
        analyticsReachability_->currentReachabilityStatus() != TXAnalyticsReachability::notReachable)
        TXAnalyticsQueue::addTask([this] { startSendAllInactiveSessions(); });
}

}  // namespace trimora::analytics
