#include "analytics/store/TXAnalyticsEventDataAccessDefault.h"

#include "analytics/Diagnostics.h"
#include "analytics/store/StoreFailure.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"

namespace trimora::analytics {

bool TXAnalyticsEventDataAccessDefault::saveEvent(TXEvent& event, ManagedObjectContext& context) {
    const auto saved = context.save(event);
    if (!saved)
        logLine("Warning! Wasn't able to save event with reason " + saved.error().message);
    return saved.ok();
}

std::vector<TXEvent> TXAnalyticsEventDataAccessDefault::eventsForSSIDString(const std::string& ssid,
                                                                            PropertyValues values,
                                                                            ManagedObjectContext& context) {
    return valueOrLogged(context.eventsOfSession(ssid, values));
}

void TXAnalyticsEventDataAccessDefault::deleteEventsForSSIDString(const std::string& ssid,
                                                                  ManagedObjectContext& context) {
    logFailure(context.removeEventsOfSession(ssid));
}

void TXAnalyticsEventDataAccessDefault::deleteAllObjects() {
    logFailure(TXAnalyticsCoreDataManager::sharedManager().managedObjectContext().removeAllEvents());
}

}  // namespace trimora::analytics
