#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "IoFaults.h"
#include "Processes.h"
#include "analytics/TelemetrixForTests.h"
#include "host/CurlTransport.h"
#include "host/HttpsServerForTests.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

// A program that is killed after the service has got the last byte of a session and before the session is
// deleted here: the service gets it again from the next one, with the same bytes, until that knows.
namespace trimora::reliability {
namespace {

using analytics::HttpRequest;
using analytics::HttpTransport;
using analytics::PropertyValues;
using analytics::Telemetrix;
using analytics::TelemetrixTest;
using analytics::TXEvent;
using analytics::TXSSID;

constexpr int kDone = 1;
constexpr int kNever = -1;
/// A session that is called sent and was not deleted is left alone so long, in seconds.
constexpr double kAnswerIsAwaited = 30;

/// Kills the process at a call for a file that the library makes once it has the service's answer.
class DyingTransport final : public HttpTransport {
 public:
    DyingTransport(HttpTransport& transport, int call) : transport_(transport), call_(call) {}

    void send(HttpRequest request, Completion completion) override {
        transport_.send(std::move(request), [this, answer = std::move(completion)](const Outcome& outcome) {
            if (call_ == 0)
                ::raise(SIGKILL);
            IoPlan plan;
            plan.call = std::max(call_, 0);
            plan.fault = IoFault::kill;
            const IoFaults faults(plan);
            answer(outcome);
        });
    }
    void cancelAll() override { transport_.cancelAll(); }

 private:
    HttpTransport& transport_;
    int call_;
};

class DeliveryKills : public TelemetrixTest {
 protected:
    void SetUp() override {}

    void installOn(HttpTransport& used) {
        transportInUse = &used;
        install();
    }
    /// Sessions that an earlier run has finished, each with its body.
    void leaveSessions(int count) {
        installOn(transport);
        for (int i = 0; i < count; ++i) {
            const std::string name = "session " + std::to_string(i);
            TXSSID session{0, name, kDone, 1'000.0 + i};
            ASSERT_TRUE(context().save(session));
            std::string body;
            for (int n = 0; n <= i % 7; ++n) {
                TXEvent event{0, name,
                              R"({"event":"é )" + std::to_string(n) + std::string(i % 5 * 700, 'x') + "\"}"};
                ASSERT_TRUE(context().save(event));
                body += (n > 0 ? "," : "") + *event.body;
            }
            expected_[name] = "[" + body + "]";
        }
        quit();
    }
    /// A program that sends what it has, a virtual second for every two real milliseconds, until all is gone,
    /// that of programs which were killed among it.
    void send(int killAtCall) {
        const auto curl = host::CurlTransport::create();
        DyingTransport dying(**curl, killAtCall);
        installOn(dying);
        rememberLaunch();
        Telemetrix::startSession();
        for (int i = 0; i < 100 || (i < 4'000 && unsent() > 0); ++i) {
            advance(1);
            ::usleep(2'000);
        }
        quit();
    }
    [[nodiscard]] static std::size_t unsent() {
        const auto left = sessions();
        return static_cast<std::size_t>(
            std::count_if(left.begin(), left.end(), [](const TXSSID& one) { return one.status != 0; }));
    }
    /// Each ends what one start sends; a program that is killed early leaves one.
    void forgetSessionsWithoutEvents() {
        installOn(transport);
        for (const TXSSID& session : sessions()) {
            if (bodies(*session.name).empty())
                analytics::TXAnalyticsDBManager::sharedManager().deleteAllDataForSession(*session.name);
        }
        quit();
    }
    void noteArrivals() {
        for (const auto& request : server_.takeRequests()) {
            std::string session;
            for (const auto& header :
                 request["headers"].get<std::vector<std::pair<std::string, std::string>>>()) {
                if (header.first == "Cookie")
                    session = header.second.substr(4, header.second.find(';') - 4);
            }
            if (!expected_.contains(session))
                continue;  // of the run that sends
            ++copies_[session];
            EXPECT_EQ(request["body"], expected_.at(session)) << session;
        }
    }
    /// Kills a program `microseconds` after the service has got a session whole; false where it was done
    /// before that.
    [[nodiscard]] bool killAfterArrival(unsigned microseconds) {
        const pid_t child = ::fork();
        if (child == 0) {
            send(kNever);
            ::_exit(0);
        }
        const auto before = server_.ledgerBytes();
        while (server_.ledgerBytes() == before) {
            if (::waitpid(child, nullptr, WNOHANG) == child)
                return false;
            ::usleep(100);
        }
        ::usleep(microseconds);
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFSIGNALED(status);
    }

    host::HttpsServer server_;
    std::map<std::string, std::string> expected_;
    std::map<std::string, int> copies_;
};

TEST_F(DeliveryKills, BetweenTheLastByteAndTheDeletionLoseNothing) {
    if (!server_.isRunning())
        GTEST_SKIP() << "no HTTPS server on this machine";
    ::setenv("TRIMORA_ANALYTICS_URL", server_.url("200").c_str(), 1);
    const int kills = testing::byDepth(60, 500, 5'000) / (kSanitized ? 10 : 1);
    leaveSessions(kills + 5);
    if (HasFatalFailure())
        return;
    std::mt19937_64 random = testing::seededGenerator();
    constexpr int kMostCalls = 30;  // there are more: each of these kills
    int killed = 0;
    for (int i = 0; i < kills; ++i) {
        if (i % 2 == 0)
            killed += inOwnProcess([&] {
                          send(i / 2 % kMostCalls);
                          return 0;
                      }).wasKilled()
                          ? 1
                          : 0;
        else
            killed += killAfterArrival(static_cast<unsigned>(random() % 4'000)) ? 1 : 0;
        noteArrivals();
        if (HasFailure())
            return;
    }
    // By now nobody takes what the killed programs had on its way for being on its way still.
    time.advance(kAnswerIsAwaited + 1);
    forgetSessionsWithoutEvents();
    const Ended last = inOwnProcess([&] {
        send(kNever);
        return 0;
    });
    EXPECT_EQ(last.text(), "exit 0");
    noteArrivals();
    installOn(transport);
    EXPECT_EQ(unsent(), 0U);
    quit();
    int again = 0;
    for (const auto& [session, body] : expected_) {
        EXPECT_GE(copies_[session], 1) << session << " never arrived";
        again += copies_[session] > 1 ? 1 : 0;
    }
    // Where it was not deleted in time it came again: those were kills in between.
    EXPECT_GT(again, kills / 5);
    EXPECT_GT(killed, kills / 2);
    std::printf("%d runs, %d killed, %zu sessions, %d of them sent more than once\n", kills, killed,
                expected_.size(), again);
}

}  // namespace
}  // namespace trimora::reliability
