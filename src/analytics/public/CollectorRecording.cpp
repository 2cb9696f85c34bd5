#include "analytics/public/CollectorRecording.h"

#include <nlohmann/json.hpp>
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

void save(TXEvent event) {
    TXAnalyticsDBManager::sharedManager().eventDataAccess().saveEvent(event, context());
}

}  // namespace

void recordEvent(const std::string& name, const Dictionary& data) {
    TXAnalyticsQueue::addTask(
        [name, data] { save(TXEventBuilder::createEventWithName(name, data, context())); });
}

void recordEventLater(const std::string& name, std::function<Dictionary()> data) {
    TXAnalyticsQueue::addTask([name, found = std::move(data)] {
        save(TXEventBuilder::createEventWithName(name, found(), context()));
    });
}

void saveEventOfSession(const std::string& name, const Dictionary& data, const std::string& session) {
    save(TXEventBuilder::createEventWithName_forSession(name, data, session, context()));
}

}  // namespace trimora::analytics
