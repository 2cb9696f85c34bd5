#pragma once

#include <iosfwd>
#include <string>

#include "analytics/store/ManagedObjectContext.h"
#include "foundation/Result.h"

/// What is in an event store, written for a person to read.
namespace trimora::telemetry {

/// One line for each session: id, status, when the status was written (UTC), how many events.
[[nodiscard]] foundation::Result<void> printSessions(analytics::ManagedObjectContext& store,
                                                     std::ostream& out);

/// One line for each event of the session, in the order in which they are sent: time (UTC), name, data.
/// A text that is no event is shown as it is.
[[nodiscard]] foundation::Result<void> printEvents(analytics::ManagedObjectContext& store,
                                                   const std::string& session, std::ostream& out);

/// The body of the session's post, byte for byte, and nothing else.
[[nodiscard]] foundation::Result<void> printRequest(analytics::ManagedObjectContext& store,
                                                    const std::string& session, std::ostream& out);

}  // namespace trimora::telemetry
