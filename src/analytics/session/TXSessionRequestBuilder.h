#pragma once

#include <optional>
#include <string>
#include <variant>

#include "analytics/session/TXSessionRequest.h"
#include "analytics/session/TelemetrixError.h"
#include "analytics/store/ManagedObjectContext.h"

namespace trimora::analytics {

/// Turns a finished session in the store into the request that posts it.
class TXSessionRequestBuilder {
 public:
    using Built = std::variant<TXSessionRequest, TelemetrixError>;

    /// The request, or kRequestCannotBeBuilt: no such session, not finished, being sent, or without
    /// events (its row is then removed). Nothing else in the store is changed. A store that cannot be
    /// read gives an error of the domain "TelemetrixStoreErrorDomain". Works on the disk; the caller
    /// sees to it that no two threads build at one time.
    [[nodiscard]] static Built buildRequestForSession(const std::optional<std::string>& session);

    /// What the request's body is for this session: the events' texts, in the order in which they were
    /// stored, as one JSON array. The same store always gives the same bytes.
    [[nodiscard]] static std::string bodyOfSession(const std::vector<TXEvent>& events);
};

}  // namespace trimora::analytics
