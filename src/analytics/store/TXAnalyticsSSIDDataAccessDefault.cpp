#include "analytics/store/TXAnalyticsSSIDDataAccessDefault.h"

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/store/StoreFailure.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"

namespace trimora::analytics {

using foundation::Result;

void TXAnalyticsSSIDDataAccessDefault::saveOrUpdateSSID(const std::string& name, SessionStatus status) {
    auto& context = TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
    logFailure(context.performAndWait([&] { return writeStatus(name, status, context); }));
}

Result<void> TXAnalyticsSSIDDataAccessDefault::writeStatus(const std::string& name, SessionStatus status,
                                                           ManagedObjectContext& context) {
    Result<std::vector<TXSSID>> found = context.sessionsNamed(name, PropertyValues::fetched);
    if (!found)
        return found.error();
    if (found->size() > 1)
        debugWarning(
            "Internal Inconsistency. SSID object for any ssid id should be only one at whole application");
    TXSSID session = found->empty() ? TXSSID{} : found->front();
    const StoreLocks* const locks = TXAnalyticsCoreDataManager::sharedManager().storeCoordinator().locks();
    session.name = name;
    session.status = static_cast<int>(status);
    session.changeStatusTime = creationTime();
    session.owner = locks != nullptr ? locks->owner() : 0;
    return context.save(session);
}

std::vector<TXSSID> TXAnalyticsSSIDDataAccessDefault::allSSIDWithStatus(SessionStatus status,
                                                                        PropertyValues values,
                                                                        ManagedObjectContext& context) {
    return valueOrLogged(context.sessionsWithStatus(static_cast<int>(status), values));
}

std::vector<TXSSID> TXAnalyticsSSIDDataAccessDefault::allSSID(PropertyValues values,
                                                              ManagedObjectContext& context) {
    return valueOrLogged(context.allSessions(values));
}

std::vector<TXSSID> TXAnalyticsSSIDDataAccessDefault::ssidWithName(const std::string& name,
                                                                   PropertyValues values,
                                                                   ManagedObjectContext& context) {
    return valueOrLogged(context.sessionsNamed(name, values));
}

void TXAnalyticsSSIDDataAccessDefault::deleteSSIDObject(const TXSSID& session,
                                                        ManagedObjectContext& context) {
    logFailure(context.remove(session));
}

void TXAnalyticsSSIDDataAccessDefault::deleteSSID(const std::string& name, ManagedObjectContext& context) {
    logFailure(context.removeSessionsNamed(name));
}

void TXAnalyticsSSIDDataAccessDefault::deleteAllObjects() {
    logFailure(TXAnalyticsCoreDataManager::sharedManager().managedObjectContext().removeAllSessions());
}

double TXAnalyticsSSIDDataAccessDefault::creationTime() {
    return std::chrono::duration<double>(wiring().clock.wallTime().time_since_epoch()).count();
}

}  // namespace trimora::analytics
