#include "analytics/event/TXEventBuilder.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

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

/// The writer would turn numbers that are not finite into null without a word.
bool isCarriedByJson(const Dictionary& value) {
    if (value.is_number_float())
        return std::isfinite(value.get<double>());
    if (value.is_structured())
        return std::all_of(value.begin(), value.end(), isCarriedByJson);
    return !value.is_binary() && !value.is_discarded();
}

Result<std::string> serialized(const Dictionary& object) {
    if (!object.is_object())
        return Error{"it is not a dictionary"};
    if (!isCarriedByJson(object))
        return Error{
            "it holds a value that is none of text, finite number, boolean, array, dictionary and null"};
    try {
        return object.dump();
    } catch (const nlohmann::json::exception& failure) {
        return Error{failure.what()};
    }
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
    if (data.is_null() || (data.is_object() && data.empty()))
        return "{}";
    const Result<std::string> text = serialized(data);
    if (text)
        return *text;
    debugWarning("Event data format error " + text.error().message);
    return "";
}

bool TXEventBuilder::removeEndTimedEventFromDictionary(Dictionary& data) {
    const auto found = data.is_object() ? data.find(events::kEndTimedEventKey) : data.end();
    if (found == data.end())
        return false;
    const bool ended = found->is_boolean() ? found->get<bool>() : found->is_number() && *found != 0;
    data.erase(found);
    return ended;
}

}  // namespace trimora::analytics
