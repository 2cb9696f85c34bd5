#include "analytics/session/TXSessionRequest.h"

#include "analytics/Diagnostics.h"
#include "analytics/TelemetrixForTests.h"
#include "analytics/session/TXAnalyticsConfig.h"
#include "analytics/session/TXAnalyticsExtensions.h"
#include "analytics/session/TXSessionRequestBuilder.h"

namespace trimora::analytics {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class TXSessionRequestTest : public TelemetrixTest {
 protected:
    static TelemetrixError refusal(const std::optional<std::string>& session) {
        const auto built = TXSessionRequestBuilder::buildRequestForSession(session);
        return std::holds_alternative<TelemetrixError>(built) ? std::get<TelemetrixError>(built)
                                                              : TelemetrixError{};
    }
    static HttpRequest request(const std::string& session) {
        return std::get<TXSessionRequest>(TXSessionRequestBuilder::buildRequestForSession(session)).request();
    }
    /// What a request comes to at a service that answers so.
    std::optional<TelemetrixError> outcome(HttpTransport::Outcome answer) {
        transport.answer = std::move(answer);
        std::optional<TelemetrixError> got = TelemetrixError{"never called", 0, ""};
        TXSessionRequest({"POST", "https://h/stat/4", 30, {}, "[]"}).sendAsync([&](const auto& error) {
            got = error;
        });
        return got;
    }
};

TEST_F(TXSessionRequestTest, ActiveSessionIsRefused) {
    leaveSession("A", 0, 0);
    EXPECT_EQ(refusal("A").code, 99);
    EXPECT_EQ(refusal("A").domain, "TelemetrixErrorDomain");
    EXPECT_EQ(refusal("A").message, "Was not able to create request for session A because of active yet");
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(TXSessionRequestTest, OtherStatusesAndMissingSessionsAreRefused) {
    leaveSession("B", 2, 0);
    leaveSession("C", 7, 0);
    EXPECT_EQ(refusal("B").message,
              "Was not able to create request for session B because of sending already");
    EXPECT_EQ(refusal("C").message,
              "Was not able to create request for session C because session has unknown status");
    EXPECT_EQ(refusal("D").message,
              "Was not able to create request for session D because have no such session in db");
    EXPECT_EQ(refusal("D").code, 99);
    EXPECT_EQ(refusal(std::nullopt).code, 99);
    EXPECT_TRUE(log.contains("session should not be nil"));
}

TEST_F(TXSessionRequestTest, DoneSessionWithoutEventsIsDeletedAndRefused) {
    TXAnalyticsDBManager::sharedManager().ssidDataAccess().saveOrUpdateSSID("A", SessionStatus::done);
    EXPECT_EQ(refusal("A").message, "Have no events to send for such ssid A, session got deleted");
    EXPECT_EQ(statusOf("A"), -1);
}

TEST_F(TXSessionRequestTest, BodyIsTheEventsAsTheyAreInBrackets) {
    leaveSession("A", 1, 0);
    EXPECT_EQ(request("A").body, R"([{"event":"of A"}])");
    TXEvent second{0, "A", R"({ "kept" : "as it is" })"};
    TXEvent without{0, "A", std::nullopt};
    ASSERT_TRUE(context().save(without));
    ASSERT_TRUE(context().save(second));
    EXPECT_EQ(request("A").body, R"([{"event":"of A"},{ "kept" : "as it is" }])");
    EXPECT_EQ(statusOf("A"), 1);
}

TEST_F(TXSessionRequestTest, EmptyArrayIsABareBracketPair) {
    EXPECT_EQ(toJsonArrayString({}), "[]");
    EXPECT_EQ(toJsonArrayString({"", "1"}), "[,1]");
}

TEST_F(TXSessionRequestTest, RequestIsAPostWithThreeHeaders) {
    leaveSession("A", 1, 0);
    const HttpRequest built = request("A");
    const std::string now = std::to_string(foundation::milliseconds(time.wallTime()));
    EXPECT_EQ(built.method, "POST");
    EXPECT_EQ(built.url, "https://service.invalid/stat/4");
    EXPECT_EQ(built.timeoutSeconds, 30.0);
    EXPECT_THAT(built.headers, ElementsAre(Pair("Cookie", "sid=A;uid=device-id;"), Pair("TX-Send-Date", now),
                                           Pair("TX-Version", "4.0.2")));
    EXPECT_EQ(now.size(), 13U);
}

TEST_F(TXSessionRequestTest, MachineWithoutIdSendsTheStatedOne) {
    device.id.reset();
    leaveSession("A", 1, 0);
    EXPECT_THAT(request("A").headers, Contains(Pair("Cookie", "sid=A;uid=hackintosh;")));
}

TEST_F(TXSessionRequestTest, OnlyStatus200IsSuccess) {
    EXPECT_EQ(outcome(200), std::nullopt);
    for (const int status : {100, 201, 204, 206, 301, 302, 307, 401, 404, 413, 429, 500, 503}) {
        const auto error = outcome(status);
        EXPECT_EQ(error->code, -1);
        EXPECT_EQ(error->message, formatted("status code %i at url path https://h/stat/4", status));
    }
}

TEST_F(TXSessionRequestTest, Status400IsWarnedOfAndRejectsTheData) {
    const auto error = outcome(400);
    EXPECT_TRUE(error->is(kServiceRejectedData));
    EXPECT_EQ(error->message,
              "status code 400 reason - bad formatted request at url path https://h/stat/4. Will remove bad "
              "session data");
    EXPECT_TRUE(log.contains("request:'POST https://h/stat/4' http:'400' response:'"));
}

TEST_F(TXSessionRequestTest, TransportErrorIsPassedOnUnchanged) {
    const auto error = outcome(TelemetrixError{"Wire", 400, "cut"});
    EXPECT_EQ(error->domain, "Wire");
    EXPECT_EQ(error->code, 400);
    EXPECT_EQ(error->message, "cut");
}

TEST_F(TXSessionRequestTest, MissingCompletionIsWarnedOf) {
    transport.answer = 200;
    TXSessionRequest({"POST", "https://h/stat/4", 30, {}, "[]"}).sendAsync(nullptr);
    EXPECT_TRUE(log.contains("'sendAsync' 'session/TXSessionRequest'"));
    EXPECT_TRUE(log.contains("Completion block must be provided"));
}

TEST_F(TXSessionRequestTest, WithoutAnAddressSessionsStayDone) {
    ::unsetenv("TRIMORA_ANALYTICS_URL");
    EXPECT_EQ(TXAnalyticsConfig::configuredUrl(), std::nullopt);
    EXPECT_EQ(TXAnalyticsConfig::sharedConfig().url(), std::nullopt);
    EXPECT_TRUE(log.contains("Wasn't able to find the URL for analytics!"));
    leaveSession("A", 1, 0);
    EXPECT_EQ(request("A").url, "");
}

TEST_F(TXSessionRequestTest, StoreThatCannotBeReadRefusesWithoutJudgingTheSession) {
    leaveSession("A", 1, 0);
    const auto file = TXAnalyticsCoreDataManager::sharedManager().dbFileURL();
    quit();
    std::filesystem::rename(file, file.string() + ".away");
    std::filesystem::create_directory(file);
    install();
    const TelemetrixError error = refusal("A");
    EXPECT_EQ(error.domain, "TelemetrixStoreErrorDomain");
    std::filesystem::remove(file);
    std::filesystem::rename(file.string() + ".away", file);
    EXPECT_EQ(request("A").body, R"([{"event":"of A"}])");
}

}  // namespace
}  // namespace trimora::analytics
