#pragma once

#include <iosfwd>
#include <string>

#include "analytics/store/ManagedObjectContext.h"
#include "foundation/Result.h"

/// What is in an event store, written for a person to read. Works on the disk before it returns. On failure
/// returns an error; some of the text may be written.
namespace trimora::analytics {

/// How an event is written.
enum class EventForm : std::uint8_t {
    readable,  ///< time (UTC), name, data
    asStored,  ///< its body, byte for byte as it would be sent
};

/// One line for each session: id, status, when the status was written (UTC), how many events.
[[nodiscard]] foundation::Result<void> printSessions(ManagedObjectContext& store, std::ostream& out);

/// One line for each event of the session, in the order in which they are sent. A text that is no event is
/// shown as it is.
[[nodiscard]] foundation::Result<void> printEvents(ManagedObjectContext& store, const std::string& session,
                                                   std::ostream& out);

/// Everything: the line of each session and under it, indented, the lines of its events; then those of no
/// session, which are never sent.
[[nodiscard]] foundation::Result<void> printStore(ManagedObjectContext& store, EventForm form,
                                                  std::ostream& out);

/// The body of the session's post, byte for byte, and nothing else.
[[nodiscard]] foundation::Result<void> printRequest(ManagedObjectContext& store, const std::string& session,
                                                    std::ostream& out);

}  // namespace trimora::analytics
