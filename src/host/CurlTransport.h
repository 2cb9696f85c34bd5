#pragma once

#include <memory>

#include "analytics/session/HttpTransport.h"
#include "foundation/Result.h"

namespace trimora::host {

/// Posts over HTTPS with libcurl, on one thread of its own.
///
/// - Only "https://" addresses are taken. The server's certificate is checked against the system's
///   authorities, or those in the file that the environment variable SSL_CERT_FILE names (a private
///   authority); there is no way to skip the check.
/// - The proxy settings of the environment (https_proxy, all_proxy, no_proxy) are honoured.
/// - The request's own headers are sent and no others that could contradict them: no content type, no
///   cookies beside its "Cookie".
/// - An answer counts when its last byte has come; its body is thrown away. Redirections are not
///   followed.
/// - Errors have the domain kDomain and libcurl's code.
///
/// send() and cancelAll() from any thread but the transport's own. The destructor cancels what is under
/// way.
class CurlTransport final : public analytics::HttpTransport {
 public:
    static constexpr const char* kDomain = "CurlErrorDomain";

    /// On failure returns an error; nothing changed.
    [[nodiscard]] static foundation::Result<std::unique_ptr<CurlTransport>> create();

    ~CurlTransport() override;

    void send(analytics::HttpRequest request, Completion completion) override;
    void cancelAll() override;

 private:
    class Worker;
    explicit CurlTransport(std::unique_ptr<Worker> worker);

    std::unique_ptr<Worker> worker_;
};

}  // namespace trimora::host
