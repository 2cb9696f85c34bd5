#include "analytics/session/TXSessionRequestBuilder.h"

#include "analytics/Diagnostics.h"
#include "analytics/session/TXAnalyticsConfig.h"
#include "analytics/session/TXAnalyticsExtensions.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"
#include "analytics/store/TXAnalyticsDBManager.h"

namespace trimora::analytics {
namespace {

/// Why a session in this status cannot be posted; null where it can.
const char* reasonAgainst(int status) {
    switch (static_cast<SessionStatus>(status)) {
        case SessionStatus::active:
            return "because of active yet";
        case SessionStatus::sending:
            return "because of sending already";
        case SessionStatus::done:
            return nullptr;
    }
    return "because session has unknown status";
}

TelemetrixError cannotCreate(const std::string& session, const char* reason) {
    return telemetrixError(
        kRequestCannotBeBuilt,
        formatted("Was not able to create request for session %s %s", session.c_str(), reason));
}

/// A store that cannot be read now says nothing about the session, which is tried again later.
TelemetrixError storeFailure(const foundation::Error& why) {
    return {"TelemetrixStoreErrorDomain", why.code, why.message};
}

}  // namespace

TXSessionRequestBuilder::Built TXSessionRequestBuilder::buildRequestForSession(
    const std::optional<std::string>& session) {
    if (!session)
        debugWarning("session should not be nil");
    const std::string name = session.value_or("");
    auto& context = TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();

    const auto rows = context.sessionsNamed(name, PropertyValues::fetched);
    if (!rows)
        return storeFailure(rows.error());
    if (rows->empty())
        return cannotCreate(name, "because have no such session in db");
    if (const char* const reason = reasonAgainst(rows->front().status))
        return cannotCreate(name, reason);

    const auto events = context.eventsOfSession(name, PropertyValues::fetched);
    if (!events)
        return storeFailure(events.error());
    if (events->empty()) {
        TXAnalyticsDBManager::sharedManager().ssidDataAccess().deleteSSID(name, context);
        return telemetrixError(
            kRequestCannotBeBuilt,
            formatted("Have no events to send for such ssid %s, session got deleted", name.c_str()));
    }
    const std::string url = TXAnalyticsConfig::sharedConfig().url().value_or("");
    return TXSessionRequest(initSessionRequestWithBody(bodyOfSession(*events), name, url));
}

std::string TXSessionRequestBuilder::bodyOfSession(const std::vector<TXEvent>& events) {
    std::vector<std::string> bodies;
    bodies.reserve(events.size());
    for (const TXEvent& event : events) {
        if (event.body)
            bodies.push_back(*event.body);
    }
    return toJsonArrayString(bodies);
}

}  // namespace trimora::analytics
