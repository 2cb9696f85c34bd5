#include "analytics/public/CollectorRecording.h"

#include <utility>

#include "analytics/event/TXEventBuilder.h"
#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"
#include "analytics/store/TXAnalyticsDBManager.h"

namespace trimora::analytics {
namespace {

ManagedObjectContext& context() {
    return TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
}

}  // namespace

void recordEvent(const std::string& name, const Dictionary& data) {
    TXAnalyticsQueue::addEvent(
        [name, data] { return TXEventBuilder::createEventWithName(name, data, context()); });
}

void recordEventLater(const std::string& name, std::function<Dictionary()> data) {
    TXAnalyticsQueue::addEvent([name, found = std::move(data)] {
        return TXEventBuilder::createEventWithName(name, found(), context());
    });
}

bool saveEventOfSession(const std::string& name, const Dictionary& data, const std::string& session) {
    TXEvent event = TXEventBuilder::createEventWithName_forSession(name, data, session, context());
    return TXAnalyticsDBManager::sharedManager().eventDataAccess().saveEvent(event, context());
}

}  // namespace trimora::analytics
