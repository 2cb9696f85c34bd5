#pragma once

#include <optional>
#include <string>

#include "analytics/event/Dictionary.h"
#include "analytics/store/ManagedObjectContext.h"
#include "analytics/store/TXEvent.h"

namespace trimora::analytics {

/// Turns a name and data into an event.
///
/// The text of an event is at once what is stored and what is sent: a compact JSON object with
///   "event"            the name
///   "app_id"           the application id given to Telemetrix::startSession()
///   "timestamp"        the moment of building, Unix time in whole milliseconds
///   "data"             the data as JSON text within a string: encoded twice, as the service wants it
///   "end_timed_event"  taken out of the data; false where it has none
/// The order of the keys means nothing.
///
/// Class functions only; any thread. Nothing fails: data that JSON cannot carry (numbers that are not
/// finite, text that is not UTF-8, anything that is no JSON object) is logged as "Event data format
/// error" and the event is made with an empty "data" text.
class TXEventBuilder {
 public:
    /// An event of the current session (TXSessionManager::currentSession()). It is in no store before
    /// it is saved. A missing name is logged and stands as "" in the text.
    [[nodiscard]] static TXEvent createEventWithName(const std::optional<std::string>& name,
                                                     const Dictionary& data, ManagedObjectContext& context);

    /// An event of the given session.
    [[nodiscard]] static TXEvent createEventWithName_forSession(const std::optional<std::string>& name,
                                                                const Dictionary& data,
                                                                const std::string& session,
                                                                ManagedObjectContext& context);

    /// The text alone.
    [[nodiscard]] static std::optional<std::string> createEventBodyWithName(
        const std::optional<std::string>& name, const Dictionary& data);

    /// The text; nothing where the name or the application id cannot be carried by JSON.
    [[nodiscard]] static std::optional<std::string> jsonStringForEvent(const std::string& name,
                                                                       const Dictionary& data);

    /// The "data" text: "{}" for no data or empty data, "" for data that JSON cannot carry.
    [[nodiscard]] static std::string eventDataToString(const Dictionary& data);

    /// Takes "end_timed_event" out and returns its value; false where there is none.
    static bool removeEndTimedEventFromDictionary(Dictionary& data);
};

}  // namespace trimora::analytics
