#include "host/HttpsServerForTests.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace trimora::host {

HttpsServer::HttpsServer() {
    if (!openssl("version")) {
        std::printf("no HTTPS server: the openssl program is missing\n");
        return;
    }
    if (!makeCertificates()) {
        ADD_FAILURE() << "certificates: " << std::ifstream(folder_.path() / "openssl.log").rdbuf();
        return;
    }
    ::setenv("SSL_CERT_FILE", (folder_.path() / "authority.crt").c_str(), 1);
    ::setenv("no_proxy", "*", 1);
    for (const char* const empty : {"ledger", "script"})
        const std::ofstream made(folder_.path() / empty);
    int toServer[2];
    int fromServer[2];
    if (::pipe(toServer) != 0 || ::pipe(fromServer) != 0)
        return;
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(toServer[0], 0);
        ::dup2(fromServer[1], 1);
        for (const int end : {toServer[0], toServer[1], fromServer[0], fromServer[1]})
            ::close(end);
        ::execlp("python3", "python3", TRIMORA_HTTPS_SERVER, folder_.path().c_str(), nullptr);
        std::_Exit(127);
    }
    ::close(toServer[0]);
    ::close(fromServer[1]);
    input_ = ::fdopen(toServer[1], "w");
    std::FILE* const output = ::fdopen(fromServer[0], "r");
    char line[512] = "";
    if (std::fgets(line, sizeof line, output) != nullptr)
        ports_ = nlohmann::json::parse(line).get<std::map<std::string, int>>();
    else
        std::printf("no HTTPS server: python3 is missing or failed\n");
    std::fclose(output);
}

HttpsServer::~HttpsServer() {
    if (input_ != nullptr)
        std::fclose(input_);
    if (process_ > 0)
        ::waitpid(process_, nullptr, 0);
    ::unsetenv("SSL_CERT_FILE");
    ::unsetenv("no_proxy");
}

std::string HttpsServer::url(const std::string& kind, const std::string& identity) const {
    return "https://localhost:" + std::to_string(ports_.at(identity)) + "/" + kind + "/stat/4";
}

std::vector<nlohmann::json> HttpsServer::takeLedger() {
    std::vector<nlohmann::json> entries;
    std::ifstream stream(folder_.path() / "ledger");
    std::size_t number = 0;
    for (std::string line; std::getline(stream, line); ++number) {
        if (stream.eof())
            break;  // the server is still writing this line
        if (number >= ledgerRead_)
            entries.push_back(nlohmann::json::parse(line));
    }
    ledgerRead_ = number;
    return entries;
}

std::vector<nlohmann::json> HttpsServer::takeRequests() {
    std::vector<nlohmann::json> entries = takeLedger();
    std::erase_if(entries, [](const auto& entry) { return entry.contains("handshake"); });
    return entries;
}

void HttpsServer::setScript(const std::vector<std::string>& kinds) const {
    std::ofstream stream(folder_.path() / "script");
    for (const std::string& kind : kinds)
        stream << kind << '\n';
}

bool HttpsServer::openssl(const std::string& arguments) const {
    const std::string command =
        "cd '" + folder_.path().string() + "' && openssl " + arguments + " >openssl.log 2>&1";
    return std::system(command.c_str()) == 0;
}

bool HttpsServer::signedBy(const std::string& authority, const std::string& name,
                           const Certificate& with) const {
    std::ofstream(folder_.path() / (name + ".ext")) << "subjectAltName=DNS:" << with.host << '\n'
                                                    << with.extensions << '\n';
    return openssl("req -newkey " + with.key + " -nodes -subj /CN=" + with.host + " -keyout " + name +
                   ".key -out " + name + ".csr") &&
           openssl("ca -batch -config authority.conf -notext -cert " + authority + ".crt -keyfile " +
                   authority + ".key -md " + with.digest + " " + with.validity + " -extfile " + name +
                   ".ext -in " + name + ".csr -out " + name + ".crt");
}

void HttpsServer::showToo(const std::string& other, const std::string& name) const {
    std::ofstream(folder_.path() / (name + ".crt"), std::ios::app)
        << std::ifstream(folder_.path() / (other + ".crt")).rdbuf();
}

bool HttpsServer::makeAuthorities() const {
    std::ofstream(folder_.path() / "authority.conf")
        << "[ca]\ndefault_ca = tests\n"
           "[tests]\ndatabase = index\nnew_certs_dir = .\n"
           "policy = names\nunique_subject = no\nrand_serial = yes\n"
           "[names]\ncommonName = supplied\n";
    const std::ofstream index(folder_.path() / "index");
    const std::string self = "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 ";
    return openssl(self + "-subj /CN=Authority -keyout authority.key -out authority.crt") &&
           openssl(self + "-subj /CN=Stranger -keyout stranger.key -out stranger.crt") &&
           openssl(self +
                   "-subj /CN=localhost -addext subjectAltName=DNS:localhost -keyout self-signed.key -out "
                   "self-signed.crt") &&
           signedBy("authority", "deputy", {.extensions = "basicConstraints=critical,CA:TRUE"});
}

bool HttpsServer::makeBadCertificates() const {
    const std::string past = "-startdate 20200101000000Z -enddate 20200201000000Z";
    const std::string future = "-startdate 20980101000000Z -enddate 20990101000000Z";
    const bool made = signedBy("authority", "expired", {.validity = past}) &&
                      signedBy("authority", "not-yet-valid", {.validity = future}) &&
                      signedBy("authority", "wrong-host", {.host = "example.org"}) &&
                      signedBy("authority", "short-key", {.key = "rsa:1024"}) &&
                      signedBy("authority", "weak-digest", {.digest = "sha1"}) &&
                      signedBy("authority", "for-clients", {.extensions = "extendedKeyUsage=clientAuth"}) &&
                      signedBy("stranger", "unknown-ca", {}) && signedBy("deputy", "without-deputy", {}) &&
                      signedBy("good", "signed-by-a-server", {});
    if (made)
        showToo("good", "signed-by-a-server");
    return made;
}

bool HttpsServer::makeCertificates() const {
    return makeAuthorities() &&
           signedBy("authority", "good", {.extensions = "basicConstraints=critical,CA:FALSE"}) &&
           makeBadCertificates();
}

}  // namespace trimora::host
