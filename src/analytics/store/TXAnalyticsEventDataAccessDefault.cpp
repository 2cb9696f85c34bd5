#include "analytics/store/TXAnalyticsEventDataAccessDefault.h"

#include <sqlite3.h>

#include "analytics/Diagnostics.h"
#include "analytics/store/StoreFailure.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"

namespace trimora::analytics {

namespace {

void logLost(const foundation::Error& why) {
    logLine("Warning! Wasn't able to save event with reason " + why.message);
}

/// Whether another process has the store to itself.
bool isLocked(const foundation::Error& error) {
    return (error.code & 0xff) == SQLITE_BUSY;
}

}  // namespace

bool TXAnalyticsEventDataAccessDefault::saveEvent(TXEvent& event, ManagedObjectContext& context) {
    const auto saved = context.save(event);
    if (!saved)
        logLost(saved.error());
    return saved.ok();
}

void TXAnalyticsEventDataAccessDefault::saveEvents(std::vector<TXEvent>& events,
                                                   ManagedObjectContext& context) {
    const auto saved = context.add(events);
    if (saved)
        return;
    for (TXEvent& event : events) {
        if (isLocked(saved.error()))  // each would wait as long again
            logLost(saved.error());
        else
            saveEvent(event, context);
    }
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
