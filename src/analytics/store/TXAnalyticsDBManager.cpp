#include "analytics/store/TXAnalyticsDBManager.h"

#include "analytics/ProcessWide.h"
#include "analytics/store/StoreFailure.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"

namespace trimora::analytics {

TXAnalyticsDBManager& TXAnalyticsDBManager::sharedManager() {
    static ProcessWide<TXAnalyticsDBManager> shared;
    return shared.get([] { return new TXAnalyticsDBManager; });
}

void TXAnalyticsDBManager::deleteAllObjects() {
    eventDataAccess_.deleteAllObjects();
    ssidDataAccess_.deleteAllObjects();
    TXAnalyticsCoreDataManager::sharedManager().managedObjectContext().wipeRemoved();
}

void TXAnalyticsDBManager::deleteAllDataForSession(const std::string& session) {
    auto& context = TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
    logFailure(context.performAndWait([&] {
        foundation::Result<void> done = context.removeEventsOfSession(session);
        return done ? context.removeSessionsNamed(session) : done;
    }));
}

}  // namespace trimora::analytics
