#include "analytics/event/TXEventBuilder.h"

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/event/StandardEvents.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/session/TXSessionManager.h"
#include "foundation/Result.h"

namespace trimora::analytics {

using foundation::Error;
using foundation::Result;

namespace {

Result<std::string> serialized(const Dictionary& object) {
    if (!object.isObject())
        return Error{"it is not a dictionary"};
    return object.json();
}

}  // namespace

TXEvent TXEventBuilder::createEventWithName(const std::optional<std::string>& name, const Dictionary& data,
                                            ManagedObjectContext& context) {
    return createEventWithName_forSession(name, data, TXSessionManager::sharedManager().currentSession(),
                                          context);
}

TXEvent TXEventBuilder::createEventWithName_forSession(const std::optional<std::string>& name,
                                                       const Dictionary& data, const std::string& session,
                                                       ManagedObjectContext& /*context*/) {
    TXEvent event;
    event.ssid = session;
    event.body = createEventBodyWithName(name, data);
    return event;
}

std::optional<std::string> TXEventBuilder::createEventBodyWithName(const std::optional<std::string>& name,
                                                                   const Dictionary& data) {
    if (!name)
        debugWarning("Event name must be provided");
    return jsonStringForEvent(name.value_or(""), data);
}

std::optional<std::string> TXEventBuilder::jsonStringForEvent(const std::string& name,
                                                              const Dictionary& data) {
    Dictionary remaining = data;
    const bool endTimedEvent = removeEndTimedEventFromDictionary(remaining);
    const Dictionary event = {{"event", name},
                              {"app_id", Telemetrix::innerId().value_or("")},
                              {"timestamp", foundation::milliseconds(wiring().clock.wallTime())},
                              {"data", eventDataToString(remaining)},
                              {events::kEndTimedEventKey, endTimedEvent}};
    const Result<std::string> text = serialized(event);
    return text ? std::optional(*text) : std::nullopt;
}

std::string TXEventBuilder::eventDataToString(const Dictionary& data) {
    if (data.isNull() || (data.isObject() && data.isEmpty()))
        return "{}";
    const Result<std::string> text = serialized(data);
    if (text)
        return *text;
    debugWarning("Event data format error " + text.error().message);
    return "";
}

bool TXEventBuilder::removeEndTimedEventFromDictionary(Dictionary& data) {
    const auto taken = data.take(events::kEndTimedEventKey);
    return taken && taken->boolean().value_or(taken->number().value_or(0) != 0);
}

}  // namespace trimora::analytics
