#include "cli/EventLog.h"

#include <utility>

#include "analytics/Installation.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"

namespace trimora {
namespace {

using analytics::PropertyValues;
using Bodies = std::map<std::int64_t, std::string>;

void add(Bodies& bodies, const foundation::Result<std::vector<analytics::TXEvent>>& events) {
    if (!events)
        return;
    for (const analytics::TXEvent& event : *events)
        bodies[event.row] = event.body.value_or("null");
}

Bodies storedBodies() {
    Bodies bodies;
    if (!analytics::isInstalled())
        return bodies;
    auto& context = analytics::TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
    const auto sessions = context.allSessions(PropertyValues::fetched);
    if (!sessions)
        return bodies;
    for (const analytics::TXSSID& session : *sessions)
        add(bodies, context.eventsOfSession(session.name.value_or(""), PropertyValues::fetched));
    add(bodies, context.eventsOfNoSession());
    return bodies;
}

}  // namespace

Json EventLog::news() {
    Bodies stored = storedBodies();
    Json list = Json::array();
    for (const auto& [row, body] : stored) {
        const auto known = known_.find(row);
        if (known == known_.end() || known->second != body)
            list.push_back(Json::parse(body, nullptr, false));
    }
    known_ = std::move(stored);
    return list;
}

}  // namespace trimora
