#include "analytics/session/TXSessionRequest.h"

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/OutOfMemory.h"

namespace trimora::analytics {
namespace {

constexpr int kAccepted = 200;
constexpr int kBadRequest = 400;

std::optional<TelemetrixError> errorForStatus(int status, const HttpRequest& request) {
    const char* const url = request.url.c_str();
    if (status == kAccepted)
        return std::nullopt;
    if (status != kBadRequest)
        return telemetrixError(kServiceDidNotAccept, formatted("status code %i at url path %s", status, url));
    debugWarning(formatted("request:'%s %s' http:'%i' response:'%s' error:'%s'", request.method.c_str(), url,
                           status, "(not read)", "(none)"));
    return telemetrixError(
        kServiceRejectedData,
        formatted(
            "status code %i reason - bad formatted request at url path %s. Will remove bad session data",
            status, url));
}

}  // namespace

void TXSessionRequest::sendAsync(Completion completion) const {
    if (!completion)
        debugWarning("Completion block must be provided");
    wiring().transport.send(request_, [request = request_, answer = std::move(completion)](
                                          const HttpTransport::Outcome& outcome) {
        if (!answer)
            return;
        asFarAsMemoryGoes([&] {
            if (const auto* const error = std::get_if<TelemetrixError>(&outcome))
                answer(*error);
            else
                answer(errorForStatus(std::get<int>(outcome), request));
        });
    });
}

}  // namespace trimora::analytics
