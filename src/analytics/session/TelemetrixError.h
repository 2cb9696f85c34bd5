#pragma once

#include <string>

namespace trimora::analytics {

/// The domain of the library's own errors.
inline constexpr const char* kTelemetrixErrorDomain = "TelemetrixErrorDomain";

/// Codes within that domain.
enum TelemetrixErrorCode : int {
    kRequestCannotBeBuilt = 99,  ///< nothing was sent
    kServiceRejectedData = 100,  ///< the service answered 400: the session will never be taken
    kServiceDidNotAccept = -1,   ///< the service answered anything but 200 and 400
};

/// Why a session was not taken by the service. Errors of the transport keep its domain and code.
struct TelemetrixError {
    std::string domain;
    int code = 0;
    std::string message;

    /// Whether it is the library's own error of that code; a transport may use the same numbers.
    [[nodiscard]] bool is(TelemetrixErrorCode own) const {
        return domain == kTelemetrixErrorDomain && code == own;
    }

    /// For the log: domain, code and message.
    [[nodiscard]] std::string description() const {
        return "Error Domain=" + domain + " Code=" + std::to_string(code) + " \"" + message + "\"";
    }
};

/// An error of the library's own domain.
[[nodiscard]] inline TelemetrixError telemetrixError(TelemetrixErrorCode code, std::string message) {
    return {kTelemetrixErrorDomain, code, std::move(message)};
}

}  // namespace trimora::analytics
