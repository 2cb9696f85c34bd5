#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "testing/TemporaryFolder.h"

namespace trimora::host {

/// A real HTTPS server on loopback with its own certificate authority, for one test program: see
/// https_server_for_tests.py for the ways in which it answers. While the object lives, the authority
/// is the one that SSL_CERT_FILE names.
class HttpsServer {
 public:
    HttpsServer();
    ~HttpsServer();
    HttpsServer(const HttpsServer&) = delete;
    HttpsServer& operator=(const HttpsServer&) = delete;

    /// False, and a reason printed, where the machine lacks what it takes.
    [[nodiscard]] bool isRunning() const { return !ports_.empty(); }

    /// Where a post is answered in this way, by a server of this identity.
    [[nodiscard]] std::string url(const std::string& kind, const std::string& identity = "good") const;

    /// What arrived since the last call, as the server wrote it down.
    [[nodiscard]] std::vector<nlohmann::json> takeLedger();
    /// The same without connections on which nothing was asked. Those are noted once the server has
    /// noticed that they are over, which may be after the client, and a test, have gone on.
    [[nodiscard]] std::vector<nlohmann::json> takeRequests();

    /// How long the ledger is: more as soon as another request has arrived whole.
    [[nodiscard]] std::uintmax_t ledgerBytes() const {
        return std::filesystem::file_size(folder_.path() / "ledger");
    }

    /// How posts to url("script") are answered, one after the other; only before the first of them.
    void setScript(const std::vector<std::string>& kinds) const;

 private:
    /// What a certificate is made with; the rest is as it should be.
    struct Certificate {
        std::string host = "localhost";
        std::string validity = "-days 2";
        std::string key = "ec -pkeyopt ec_paramgen_curve:P-256";
        std::string digest = "sha256";
        std::string extensions = "keyUsage=digitalSignature";  // lines
    };

    [[nodiscard]] bool makeCertificates() const;
    [[nodiscard]] bool makeAuthorities() const;
    [[nodiscard]] bool makeBadCertificates() const;
    [[nodiscard]] bool openssl(const std::string& arguments) const;
    [[nodiscard]] bool signedBy(const std::string& authority, const std::string& name,
                                const Certificate& with) const;
    /// Has the server of that name show the other's certificate behind its own.
    void showToo(const std::string& other, const std::string& name) const;

    testing::TemporaryFolder folder_;
    std::map<std::string, int> ports_;
    std::size_t ledgerRead_ = 0;
    std::FILE* input_ = nullptr;  // the server runs until it is closed
    int process_ = -1;
};

}  // namespace trimora::host
