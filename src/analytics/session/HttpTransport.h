#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "analytics/session/TelemetrixError.h"

namespace trimora::analytics {

/// A request as it is to go over the wire.
struct HttpRequest {
    std::string method;
    std::string url;  ///< empty where no address is configured: the transport answers with an error
    double timeoutSeconds = 30;  ///< for the whole exchange
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;
};

/// Carries requests to a server and says how that went. The program that links the library provides
/// one; it decides about consent, certificates and proxies.
///
/// What an implementation owes:
/// - send() returns at once. The completion is called exactly once, on a thread of the transport's own
///   that the library may use for disk work, or inside send() where nothing is sent at all.
/// - A status is reported only for a complete answer; anything else is an error. Redirections are
///   reported, not followed. No cookie beside the request's own "Cookie" header is sent.
/// - cancelAll() answers every request still under way with an error and returns when all their
///   completions have returned.
class HttpTransport {
 public:
    /// The status of a complete answer, or why there is none. The error's domain is the transport's
    /// own, never kTelemetrixErrorDomain.
    using Outcome = std::variant<int, TelemetrixError>;
    using Completion = std::function<void(const Outcome&)>;

    virtual ~HttpTransport() = default;
    HttpTransport(const HttpTransport&) = delete;
    HttpTransport& operator=(const HttpTransport&) = delete;

    virtual void send(HttpRequest request, Completion completion) = 0;
    virtual void cancelAll() = 0;

 protected:
    HttpTransport() = default;
};

}  // namespace trimora::analytics
