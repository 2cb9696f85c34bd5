#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/OutOfMemory.h"
#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/session/TXSessionManager.h"
#include "analytics/session/TXSessionRequestBuilder.h"
#include "analytics/session/TXiOSBackgroundTask.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"
#include "analytics/store/TXAnalyticsDBManager.h"

namespace trimora::analytics {
namespace {

constexpr double kSecondTryDelay = 10.0;
constexpr double kNextRoundDelay = 1.0;
constexpr double kRepeatDelay = 60.0;
constexpr double kSendingTimesOutAfter = 30.0;

TXAnalyticsSSIDDataAccessDefault& sessions() {
    return TXAnalyticsDBManager::sharedManager().ssidDataAccess();
}

StoreLocks* storeLocks() {
    return TXAnalyticsCoreDataManager::sharedManager().storeCoordinator().locks();
}

/// Kept by whoever sends; null while another process does.
std::shared_ptr<void> holdSending() {
    StoreLocks* const locks = storeLocks();
    return locks != nullptr ? locks->holdSending() : nullptr;
}

const TelemetrixError& anotherProcessSends() {
    static const TelemetrixError error{"TelemetrixStoreErrorDomain", 0, "another process is sending"};
    return error;
}

}  // namespace

void TXSessionManager::resetAndSendCurrentActiveSession() {
    const std::string left = resetCurrentActiveSession();
    sendSession(left, [this, left](const std::optional<TelemetrixError>& error) {
        if (!error)
            return;
        if (error->is(kServiceRejectedData) || error->is(kRequestCannotBeBuilt)) {
            logLine("Wasn't able to send last active session, error:" + error->description());
            return;
        }
        logLine("Wasn't able to send last active session, will try again one more time, error:" +
                error->description());
        retryLastSession(left);
    });
}

void TXSessionManager::retryLastSession(const std::string& session) {
    TXiOSBackgroundTask::runAfter(kSecondTryDelay, [this, session](const auto& task) {
        sendSession(session, [task](const std::optional<TelemetrixError>& error) {
            if (error)
                logLine("Wasn't able to send last active session the second time, error:" +
                        error->description());
        });
    });
}

void TXSessionManager::sendSession(const std::string& session, SendCompletion completion) {
    if (!completion) {
        debugWarning("Completion block must be provided");
        completion = [](const auto&) {};
    }
    const auto task = TXiOSBackgroundTask::begin();
    const auto sending = holdSending();
    if (!sending) {
        completion(anotherProcessSends());
        return;
    }
    createRequestWithSession(session, [&](const std::optional<TXSessionRequest>& request,
                                          const std::optional<TelemetrixError>& error) {
        if (!request) {
            completion(error);
            return;
        }
        request->sendAsync([this, session, completion, task, sending](const auto& failure) {
            finishSending(session, failure);
            completion(failure);
        });
    });
}

void TXSessionManager::createRequestWithSession(const std::string& session,
                                                const RequestCompletion& completion) {
    std::optional<TXSessionRequest> request;
    std::optional<TelemetrixError> error;
    {
        const std::scoped_lock lock(mutex_);
        auto built = TXSessionRequestBuilder::buildRequestForSession(session);
        if (auto* const ready = std::get_if<TXSessionRequest>(&built)) {
            request = std::move(*ready);
            sessions().saveOrUpdateSSID(session, SessionStatus::sending);
            underWay_[session] = wiring().clock.seconds();
        } else {
            error = std::get<TelemetrixError>(built);
        }
    }
    completion(request, error);
}

void TXSessionManager::finishSending(const std::string& session,
                                     const std::optional<TelemetrixError>& error) {
    asFarAsMemoryGoes([&] {
        if (!error || error->is(kServiceRejectedData))
            TXAnalyticsDBManager::sharedManager().deleteAllDataForSession(session);
        else
            sessions().saveOrUpdateSSID(session, SessionStatus::done);
    });
    const std::scoped_lock lock(mutex_);
    underWay_.erase(session);
}

bool TXSessionManager::isUnderWay(const std::string& session) const {
    const std::scoped_lock lock(mutex_);
    const auto found = underWay_.find(session);
    return found != underWay_.end() && wiring().clock.seconds() - found->second <= kSendingTimesOutAfter;
}

void TXSessionManager::startSendAllInactiveSessions() {
    {
        const std::scoped_lock lock(mutex_);
        if (std::exchange(isSendingDoneSessions_, true))
            return;
    }
    sendAllInactiveSessions();
}

void TXSessionManager::sendAllInactiveSessions() {
    const auto sending = holdSending();
    if (!sending) {
        scheduleRound(kRepeatDelay);
        return;
    }
    resetAllInactiveSessions();
    const std::optional<std::string> oldest = getOldestDoneSession();
    if (!oldest) {
        const std::scoped_lock lock(mutex_);
        isSendingDoneSessions_ = false;
        return;
    }
    sendSession(*oldest, [this](const std::optional<TelemetrixError>& error) {
        if (const NextRound next = roundAfter(error); next.follows)
            scheduleRound(next.seconds);
    });
}

TXSessionManager::NextRound TXSessionManager::roundAfter(const std::optional<TelemetrixError>& error) const {
    if (!error)
        return {true, kNextRoundDelay};
    // A store whose sessions cannot be turned into requests would be tried without end; the chain
    // stands still until the next run of the application, which isSendingDoneSessions keeps up.
    if (error->is(kRequestCannotBeBuilt))
        return {false, 0};
    if (!error->is(kServiceRejectedData))
        logLine(formatted("error while sending old session, will repeat in %f reason %s", kRepeatDelay,
                          error->description().c_str()));
    return {true, kRepeatDelay};
}

void TXSessionManager::scheduleRound(double seconds) {
    const std::scoped_lock lock(timerMutex_);
    roundTimer_ = wiring().scheduler.after(seconds, TXAnalyticsQueue::analyticsSerialQueue(),
                                           whileInstalled([this] { sendAllInactiveSessions(); }));
}

void TXSessionManager::resetAllInactiveSessions() {
    auto& context = TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
    const double now = TXAnalyticsSSIDDataAccessDefault::creationTime();
    for (const TXSSID& session :
         sessions().allSSIDWithStatus(SessionStatus::sending, PropertyValues::fetched, context)) {
        // Either way: a clock that was wrong when the status was written may have been years ahead. And one
        // that jumps while a request is under way says nothing about that request.
        const std::string name = session.name.value_or("");
        if (std::abs(now - session.changeStatusTime) <= kSendingTimesOutAfter || isUnderWay(name))
            continue;
        logLine(
            formatted("session %s with sending state but time is out for, will reset to done one, it might "
                      "occurr when app exited unexpectedly when session was sending",
                      name.c_str()));
        sessions().saveOrUpdateSSID(name, SessionStatus::done);
    }
    const std::string current = currentSession();
    const StoreLocks* const locks = storeLocks();
    for (const TXSSID& session :
         sessions().allSSIDWithStatus(SessionStatus::active, PropertyValues::fetched, context)) {
        const std::string name = session.name.value_or("");
        const bool isAnothersLive =
            locks != nullptr && session.owner != locks->owner() && locks->isAlive(session.owner);
        if (name == current || isAnothersLive)
            continue;
        logLine(
            formatted("session %s with active state but it's not current session, will reset to done one, it "
                      "might occurr when app exited unexpectedly when session was active",
                      name.c_str()));
        sessions().saveOrUpdateSSID(name, SessionStatus::done);
    }
}

std::optional<std::string> TXSessionManager::getOldestDoneSession() {
    auto& context = TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
    auto done = sessions().allSSIDWithStatus(SessionStatus::done, PropertyValues::fetched, context);
    // Nobody could ask for a session without a name, which would keep all others waiting.
    std::erase_if(done, [](const TXSSID& session) { return !session.name; });
    // One far in the future was written under a wrong clock. In its place among the others it would wait
    // behind the session without events that each run leaves, and which ends the chain, until the clock is
    // there; one of the next day need not wait longer than that.
    constexpr double kNearFuture = 86400;
    const double latest = std::floor(TXAnalyticsSSIDDataAccessDefault::creationTime()) + kNearFuture;
    const auto written = [latest](const TXSSID& session) {
        const double second = std::floor(session.changeStatusTime);
        return second > latest ? -std::numeric_limits<double>::infinity() : second;
    };
    const auto oldest = std::min_element(
        done.begin(), done.end(),
        [&](const TXSSID& one, const TXSSID& other) { return written(one) < written(other); });
    if (oldest == done.end())
        return std::nullopt;
    return oldest->name;
}

}  // namespace trimora::analytics
