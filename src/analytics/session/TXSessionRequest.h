#pragma once

#include <functional>
#include <optional>

#include "analytics/session/HttpTransport.h"
#include "analytics/session/TelemetrixError.h"

namespace trimora::analytics {

/// One prepared post of a session: built by TXSessionRequestBuilder, sent once through the transport of the
/// Wiring. A value; any thread.
class TXSessionRequest {
 public:
    /// Nothing when the service took the session, else why it did not.
    using Completion = std::function<void(const std::optional<TelemetrixError>&)>;

    explicit TXSessionRequest(HttpRequest request) : request_(std::move(request)) {}

    /// What will go over the wire, byte for byte.
    [[nodiscard]] const HttpRequest& request() const { return request_; }

    /// Sends it and returns at once. The completion comes on the transport's own thread: nothing for
    /// a complete answer 200; kServiceRejectedData for 400; kServiceDidNotAccept for any other status;
    /// else the transport's own error. What the answer says beyond its status is not read.
    void sendAsync(Completion completion) const;

 private:
    HttpRequest request_;
};

}  // namespace trimora::analytics
