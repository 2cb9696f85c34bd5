#pragma once

#include <functional>
#include <string>

#include "analytics/event/Dictionary.h"

/// How the collector's events come into the store.
namespace trimora::analytics {

/// Queues an event of the session that is current when the queue gets to it.
void recordEvent(const std::string& name, const Dictionary& data);

/// As above, with data that is only found out on the queue.
void recordEventLater(const std::string& name, std::function<Dictionary()> data);

/// Saves an event of the given session at once; false where that failed, which is logged. On the queue.
bool saveEventOfSession(const std::string& name, const Dictionary& data, const std::string& session);

}  // namespace trimora::analytics
