#include "host/CurlTransport.h"

#include <condition_variable>
#include <mutex>
#include <set>

#include "analytics/TelemetrixForTests.h"
#include "analytics/session/TXAnalyticsExtensions.h"
#include "analytics/session/TXSessionRequest.h"
#include "host/HttpsServerForTests.h"

namespace trimora::host {
namespace {

using analytics::HttpRequest;
using analytics::HttpTransport;
using analytics::TelemetrixError;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// One server for all tests of this program.
HttpsServer& server() {
    static HttpsServer instance;
    return instance;
}

/// Passes requests on and lets the test wait until each has been answered. Waits less long than the
/// library asks for.
class WatchedTransport final : public HttpTransport {
 public:
    explicit WatchedTransport(HttpTransport& transport) : transport_(transport) {}

    void send(HttpRequest request, Completion completion) override {
        {
            const std::scoped_lock lock(mutex_);
            ++underWay_;
        }
        request.timeoutSeconds = timeoutSeconds;
        transport_.send(std::move(request), [this, answer = std::move(completion)](const Outcome& outcome) {
            answer(outcome);
            const std::scoped_lock lock(mutex_);
            --underWay_;
            idle_.notify_all();
        });
    }
    void cancelAll() override { transport_.cancelAll(); }
    void waitUntilIdle() {
        std::unique_lock lock(mutex_);
        idle_.wait(lock, [this] { return underWay_ == 0; });
    }

    double timeoutSeconds = 1.0;

 private:
    HttpTransport& transport_;
    std::mutex mutex_;
    std::condition_variable idle_;
    int underWay_ = 0;
};

class CurlTransportTest : public analytics::TelemetrixTest {
 protected:
    void SetUp() override {
        if (!server().isRunning())
            GTEST_SKIP() << "no HTTPS server on this machine";
        transportInUse = &watched;
        TelemetrixTest::SetUp();
        (void)server().takeRequests();
    }
    void TearDown() override {
        if (installation)
            quit();
    }

    /// What a session's post comes to there, as the library sees it.
    std::optional<TelemetrixError> outcome(const std::string& url, const std::string& body = "[{}]") {
        std::optional<TelemetrixError> got = TelemetrixError{"never called", 0, ""};
        const analytics::TXSessionRequest request(
            analytics::initSessionRequestWithBody(body, "session-id", url));
        request.sendAsync([&](const auto& error) { got = error; });
        watched.waitUntilIdle();
        return got;
    }
    std::optional<TelemetrixError> outcomeOf(const std::string& kind) { return outcome(server().url(kind)); }

    std::unique_ptr<CurlTransport> curl = CurlTransport::create().value();
    WatchedTransport watched{*curl};
};

TEST_F(CurlTransportTest, WholeAnswer200IsSuccessAndThePostArrivesAsItWasBuilt) {
    const std::string body = R"([{"event":"é"}])";
    EXPECT_EQ(outcome(server().url("200"), body), std::nullopt);
    const auto ledger = server().takeRequests();
    ASSERT_THAT(ledger, SizeIs(1));
    EXPECT_EQ(ledger[0]["method"], "POST");
    EXPECT_EQ(ledger[0]["path"], "/200/stat/4");
    EXPECT_EQ(ledger[0]["body"], body);
    std::map<std::string, std::string> headers;
    for (const auto& header : ledger[0]["headers"])
        headers[header[0]] = header[1];
    EXPECT_EQ(headers["Cookie"], "sid=session-id;uid=device-id;");
    EXPECT_EQ(headers["TX-Send-Date"], std::to_string(foundation::milliseconds(time.wallTime())));
    EXPECT_EQ(headers["TX-Version"], "4.0.2");
    EXPECT_EQ(headers.count("Content-Type"), 0U);
    EXPECT_EQ(headers.count("Expect"), 0U);
}

TEST_F(CurlTransportTest, LargeBodyArrivesWhole) {
    const std::string body = "[\"" + std::string(8 * 1024 * 1024, 'x') + "\"]";
    watched.timeoutSeconds = 30;
    EXPECT_EQ(outcome(server().url("200"), body), std::nullopt);
    EXPECT_EQ(server().takeRequests().at(0)["body"], body);
}

TEST_F(CurlTransportTest, EveryOtherStatusIsToldAndNoRedirectionFollowed) {
    for (const int status : {201, 204, 301, 302, 307, 401, 404, 413, 429, 500, 503}) {
        const auto error = outcomeOf(std::to_string(status));
        ASSERT_TRUE(error) << status;
        EXPECT_TRUE(error->is(analytics::kServiceDidNotAccept)) << status;
        EXPECT_THAT(server().takeRequests(), SizeIs(1)) << status;
    }
    EXPECT_TRUE(outcomeOf("400")->is(analytics::kServiceRejectedData));
}

TEST_F(CurlTransportTest, AnswerThatIsLateOrCutIsATransportError) {
    for (const char* kind :
         {"no-answer", "slow", "cut-in-headers", "cut-in-body", "cut-in-chunks", "reset"}) {
        const auto error = outcomeOf(kind);
        ASSERT_TRUE(error) << kind;
        EXPECT_EQ(error->domain, CurlTransport::kDomain) << kind;
        EXPECT_NE(error->code, 0) << kind;
        EXPECT_FALSE(error->message.empty()) << kind;
        EXPECT_THAT(server().takeRequests(), SizeIs(1)) << kind;
    }
}

TEST_F(CurlTransportTest, ServerWithoutAGoodCertificateSeesNoByteOfTheRequest) {
    constexpr int kNotVerified = 60;
    for (const char* identity :
         {"expired", "not-yet-valid", "self-signed", "wrong-host", "unknown-ca", "short-key", "weak-digest",
          "for-clients", "without-deputy", "signed-by-a-server"}) {
        const auto error = outcome(server().url("200", identity));
        ASSERT_TRUE(error) << identity;
        EXPECT_EQ(error->domain, CurlTransport::kDomain) << identity;
        EXPECT_EQ(error->code, kNotVerified) << identity << ": " << error->message;
        EXPECT_THAT(server().takeRequests(), IsEmpty()) << identity;
    }
}

TEST_F(CurlTransportTest, ServerThatProtectsNothingSeesNoByteOfTheRequest) {
    constexpr int kNoHandshake = 35;
    for (const char* identity : {"old-protocol", "no-cipher", "no-tls"}) {
        const auto error = outcome(server().url("200", identity));
        ASSERT_TRUE(error) << identity;
        EXPECT_EQ(error->domain, CurlTransport::kDomain) << identity;
        EXPECT_EQ(error->code, kNoHandshake) << identity << ": " << error->message;
        EXPECT_THAT(server().takeRequests(), IsEmpty()) << identity;
    }
}

TEST_F(CurlTransportTest, CookiesOfTheServerAreForgotten) {
    EXPECT_EQ(outcomeOf("set-cookie"), std::nullopt);
    EXPECT_EQ(outcomeOf("200"), std::nullopt);
    const auto ledger = server().takeRequests();
    ASSERT_THAT(ledger, SizeIs(2));
    int cookies = 0;
    for (const auto& header : ledger[1]["headers"]) {
        if (header[0] != "Cookie")
            continue;
        ++cookies;
        EXPECT_EQ(header[1], "sid=session-id;uid=device-id;");
    }
    EXPECT_EQ(cookies, 1);
}

TEST_F(CurlTransportTest, AddressThatIsNoneOrNotSecureIsAnError) {
    for (const char* url : {"", "http://localhost/stat/4", "ftp://localhost/stat/4", "no address"}) {
        const auto error = outcome(url);
        ASSERT_TRUE(error) << url;
        EXPECT_EQ(error->domain, CurlTransport::kDomain) << url;
    }
    EXPECT_EQ(outcome("https://localhost:1/stat/4")->domain, CurlTransport::kDomain);
    EXPECT_THAT(server().takeRequests(), IsEmpty());
}

TEST_F(CurlTransportTest, ProxyOfTheEnvironmentIsUsed) {
    ::unsetenv("no_proxy");
    ::setenv("https_proxy", "http://localhost:1", 1);
    EXPECT_EQ(outcomeOf("200")->domain, CurlTransport::kDomain);
    ::unsetenv("https_proxy");
    ::setenv("no_proxy", "*", 1);
    EXPECT_THAT(server().takeRequests(), IsEmpty());
}

TEST_F(CurlTransportTest, CancellingAnswersWhatIsUnderWay) {
    watched.timeoutSeconds = 30;
    std::vector<int> codes;
    for (int i = 0; i < 3; ++i)
        watched.send({"POST", server().url("no-answer"), 30, {}, "[]"},
                     [&](const HttpTransport::Outcome& outcome) {
                         codes.push_back(std::get<TelemetrixError>(outcome).code);
                     });
    watched.cancelAll();
    EXPECT_THAT(codes, ::testing::ElementsAre(42, 42, 42));
    watched.cancelAll();
}

TEST_F(CurlTransportTest, LedgerHoldsEverySessionAndCopiesAreByteIdentical) {
    server().setScript(
        {"500", "cut-in-body", "reset", "200", "503", "no-answer", "cut-in-headers", "302", "429"});
    quit();
    ::setenv("TRIMORA_ANALYTICS_URL", server().url("script").c_str(), 1);
    install();
    std::set<std::string> finished;
    start();
    for (int i = 0; i < 6; ++i) {
        finished.insert(manager().currentSession());
        analytics::Telemetrix::logEvent("edit", {{"number", i}, {"text", "a \"quote\" and \xC3\xA9"}});
        post(analytics::kNSWindowDidResignKeyNotification);
        watched.waitUntilIdle();
        post(analytics::kNSWindowDidBecomeKeyNotification);
        watched.waitUntilIdle();
        advance(12);
        watched.waitUntilIdle();
    }
    for (int i = 0; i < 40 && sessions().size() > 1; ++i) {
        advance(60);
        watched.waitUntilIdle();
    }
    EXPECT_THAT(sessions(), SizeIs(1));
    std::map<std::string, std::set<std::string>> arrived;
    std::size_t posts = 0;
    for (const auto& entry : server().takeRequests()) {
        for (const auto& header : entry["headers"]) {
            const std::string value = header[1];
            if (header[0] == "Cookie")
                arrived[value.substr(4, value.find(';') - 4)].insert(entry["body"].get<std::string>());
        }
        ++posts;
    }
    EXPECT_GT(posts, finished.size());
    for (const std::string& session : finished)
        EXPECT_THAT(arrived[session], SizeIs(1)) << session;
    EXPECT_EQ(arrived.size(), finished.size());
    std::printf("%zu sessions in %zu posts\n", finished.size(), posts);
}

}  // namespace
}  // namespace trimora::host
