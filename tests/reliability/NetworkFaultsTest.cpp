#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <string>

#include "BadNetwork.h"
#include "Processes.h"
#include "analytics/TelemetrixForTests.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

// Sessions on their way through a bad network, past a person who comes and goes, restarts and wrong clocks:
// each finished one arrives, always with the same bytes, and the queue is empty in the end.
namespace trimora::reliability {
namespace {

using analytics::PropertyValues;
using analytics::Telemetrix;
using analytics::TelemetrixTest;
using analytics::TXEvent;
using analytics::TXSSID;

constexpr int kActive = 0;
constexpr int kDone = 1;

class NetworkFaults : public TelemetrixTest {
 protected:
    NetworkFaults() {
        transportInUse = &service_;
        service_.setClock(time);
    }

    enum class End : std::uint8_t { byQuit, byKill };
    void end(End how) {
        if (how == End::byQuit)
            post(analytics::kNSApplicationWillTerminateNotification);
        note();
        quit();
    }
    void begin() {
        install();
        start();
        note();
    }
    /// Notes the sessions that are finished now, and what is in them.
    void note() {
        for (const TXSSID& session : sessions()) {
            if (session.status == kActive || !session.name)
                continue;
            std::string text;
            const auto events = context().eventsOfSession(*session.name, PropertyValues::fetched);
            for (const TXEvent& event : events.value())
                text += (text.empty() ? "" : ",") + event.body.value_or("");
            if (!text.empty())
                finished_.emplace(*session.name, "[" + text + "]");
        }
    }
    /// One thing that a person or the network does by chance.
    void happen(std::mt19937_64& random) {
        switch (random() % 9) {
            case 0:
                post(analytics::kNSWindowDidResignKeyNotification);
                break;
            case 1:
            case 2:
                post(analytics::kNSWindowDidBecomeKeyNotification);
                break;
            case 3:
                network.change(0);
                settle();
                break;
            case 4:
                network.change(analytics::reachability::kReachable);
                settle();
                break;
            case 5:
                if (random() % 4 == 0) {
                    end(random() % 2 == 0 ? End::byQuit : End::byKill);
                    begin();
                }
                break;
            case 6:
                advance(static_cast<double>(random() % 4'000) / 10);
                break;
            case 7:
                advance(static_cast<double>(random() % 100) / 10);
                break;
            default:
                Telemetrix::logEvent("event " + std::to_string(random() % 100));
                settle();
        }
        note();
    }
    [[nodiscard]] bool isDrained() const {
        const auto left = sessions();
        return std::all_of(left.begin(), left.end(),
                           [](const TXSSID& session) { return session.status == kActive; });
    }
    /// All is well from here on. A session without events ends the sending until the next start, so there
    /// are a few of those.
    void anHourOfPeace() {
        service_.becomeSane();
        network.change(analytics::reachability::kReachable);
        settle();
        advance(1'800);
        for (int starts = 0; starts == 0 || (starts < 10 && !isDrained()); ++starts) {
            end(End::byKill);  // by Quit each run would leave a further session without events
            begin();
            advance(360);
        }
        note();
    }
    void expectAllDelivered() const {
        for (const auto& [session, body] : finished_) {
            ASSERT_TRUE(service_.accepted().contains(session)) << session << " never arrived";
            for (const std::string& copy : service_.arrived().at(session))
                ASSERT_EQ(copy, body) << session;
        }
        EXPECT_TRUE(isDrained());
    }

    BadNetwork service_{time, queues.mainQueue()};
    std::map<std::string, std::string> finished_;
};

TEST_F(NetworkFaults, ThereAreThirtyTwoKinds) {
    EXPECT_EQ(networkFaults().size(), 32U);
}

TEST_F(NetworkFaults, EachKindAloneCostsNoSession) {
    std::mt19937_64 none;
    int number = 0;
    for (const NetworkFault& fault : networkFaults()) {
        const std::string name = "session " + std::to_string(number++);
        leaveSession(name, kDone, 100);
        service_.poison("of " + name + "\"", fault);
    }
    start();
    note();
    advance(4'000);
    EXPECT_THAT(service_.accepted(), ::testing::IsEmpty());
    EXPECT_EQ(sessions().size(), networkFaults().size() + 1) << "a fault counted as delivered";
    for (int i = 0; i < number; ++i)
        service_.poison("of session " + std::to_string(i) + "\"", {200, nullptr, true, 0.2});
    anHourOfPeace();
    expectAllDelivered();
}

TEST_F(NetworkFaults, PoisonSessionsKeepNoGoodOneAndAreTriedNowAndThen) {
    struct Poison {
        const char* name;
        NetworkFault fault;
    };
    constexpr Poison kPoison[] = {{"poison-500", {500, nullptr, true, 0.2}},
                                  {"poison-413", {413, nullptr, false, 0.2}},
                                  {"poison-400", {400, nullptr, true, 0.2}},
                                  {"poison-reset", {55, "reset", false, 0.2}},
                                  {"poison-slow", {28, "no answer in time", false, 30}}};
    for (const Poison& one : kPoison) {
        leaveSession(one.name, kDone, 10'000);
        service_.poison("of " + std::string(one.name) + "\"", one.fault);
    }
    leaveSession("poison-status", 7, 10'000);
    TXSSID empty{0, "poison-empty", kDone, 0};
    ASSERT_TRUE(context().save(empty));
    TXSSID nameless{0, std::nullopt, kDone, 0};
    ASSERT_TRUE(context().save(nameless));
    for (int i = 0; i < 50; ++i)
        leaveSession("good " + std::to_string(i), kDone, 5'000 + i);
    note();
    start();
    for (int i = 0; i < 9; ++i) {
        advance(1'200);
        end(End::byKill);
        begin();
    }
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(service_.accepted().contains("good " + std::to_string(i))) << i;
    for (const auto& [session, moments] : service_.posts()) {
        for (const double from : moments) {
            const auto inHour = std::count_if(moments.begin(), moments.end(), [&](double moment) {
                return moment >= from && moment < from + 3'600;
            });
            ASSERT_LE(inHour, 65) << session;
        }
    }
}

TEST_F(NetworkFaults, SessionThatWasBeingSentUnderAClockYearsAheadIsSentAgain) {
    constexpr auto kYears = std::chrono::hours(24 * 365 * 10);
    time.setWallTime(time.wallTime() + kYears);
    leaveSession("ahead", 2, 0);
    time.setWallTime(time.wallTime() - kYears);
    start();
    advance(60);
    EXPECT_THAT(service_.accepted(), ::testing::Contains("ahead"));
}

TEST_F(NetworkFaults, SessionFinishedUnderAClockYearsAheadIsSentThoughEachRunLeavesOneWithoutEvents) {
    constexpr auto kYears = std::chrono::hours(24 * 365 * 10);
    time.setWallTime(time.wallTime() + kYears);
    leaveSession("ahead", kDone, 0);
    time.setWallTime(time.wallTime() - kYears);
    start();
    for (int runs = 0; runs < 3; ++runs) {
        end(End::byQuit);
        advance(60);
        begin();
        advance(60);
    }
    EXPECT_THAT(service_.accepted(), ::testing::Contains("ahead"));
}

TEST_F(NetworkFaults, SessionUnderWayIsNotSentAgainWhenTheClockJumps) {
    start();
    service_.poison("app_open", {200, nullptr, true, 20});
    post(analytics::kNSWindowDidResignKeyNotification);
    for (const auto jump : {std::chrono::hours(24 * 3650), std::chrono::hours(-24 * 7300)}) {
        time.setWallTime(time.wallTime() + jump);
        advance(2);
        post(analytics::kNSWindowDidBecomeKeyNotification);
        post(analytics::kNSWindowDidResignKeyNotification);
    }
    advance(100);
    EXPECT_EQ(service_.timesTwiceInFlight(), 0);
}

TEST_F(NetworkFaults, YearWithoutANetworkStaysUnderTheCapAndIsSentAfterwards) {
    const int eventsADay = testing::byDepth(60, 700, 700);
    for (int day = 0; day < 365; ++day) {
        const auto saved = context().performAndWait([&] {
            const std::string name = "day " + std::to_string(day);
            TXSSID session{0, name, kDone, 1'000.0 + day};
            auto outcome = context().save(session);
            for (int i = 0; i < eventsADay && outcome; ++i) {
                TXEvent event{0, name, R"({"event":"button open pressed.","data":{"name":"open"}})"};
                outcome = context().save(event);
            }
            return outcome;
        });
        ASSERT_TRUE(saved) << saved.error().message;
    }
    std::uintmax_t bytes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home.path()))
        bytes += entry.is_regular_file() ? entry.file_size() : 0;
    EXPECT_LT(bytes, std::uintmax_t{64} << 20);
    const std::size_t kept = sessions().size();
    EXPECT_EQ(kept, std::min<std::size_t>(365, 200'000 / static_cast<std::size_t>(eventsADay)));
    start();
    advance(2.0 * static_cast<double>(kept));
    EXPECT_EQ(service_.accepted().size(), kept);
    std::printf("%zu sessions, %ju bytes\n", kept, bytes);
}

class ClockHistories : public NetworkFaults, public ::testing::WithParamInterface<int> {};

TEST_P(ClockHistories, LeaveNoSessionStuckAnHourAfterTheClockIsRight) {
    std::mt19937_64 random(testing::announcedSeed() + static_cast<std::uint64_t>(GetParam()));
    const int count = testing::byDepth(300, 1'250, 25'000) / (kSanitized ? 20 : 1);
    for (int history = 0; history < count; ++history) {
        const auto truth = time.wallTime();
        const double began = time.seconds();
        service_.failBy(30, random);
        start();
        for (int i = 0; i < 10; ++i) {
            if (random() % 2 == 0) {
                const auto days = static_cast<int>(random() % 7300) - 3650;
                time.setWallTime(time.wallTime() + std::chrono::hours(24) * days);
            }
            if (random() % 6 == 0)
                leaveSession("killed " + std::to_string(history) + "-" + std::to_string(i), 2,
                             static_cast<double>(random() % 60));
            happen(random);
        }
        time.setWallTime(truth + std::chrono::seconds(static_cast<long>(time.seconds() - began)));
        anHourOfPeace();
        SCOPED_TRACE("history " + std::to_string(history));
        expectAllDelivered();
        EXPECT_EQ(service_.timesTwiceInFlight(), 0);
        if (HasFailure())
            return;
        finished_.clear();
        quit();
        install();
    }
    std::printf("%d histories\n", count);
}

INSTANTIATE_TEST_SUITE_P(Quarters, ClockHistories, ::testing::Range(0, 4));

class NetworkSequences : public NetworkFaults, public ::testing::WithParamInterface<int> {};

TEST_P(NetworkSequences, DeliverEverySessionWithTheSameBytes) {
    std::mt19937_64 random(testing::announcedSeed() + static_cast<std::uint64_t>(GetParam()));
    const int count = testing::byDepth(250, 500, 5'000) / (kSanitized ? 20 : 1);
    std::size_t delivered = 0;
    for (int sequence = 0; sequence < count; ++sequence) {
        for (int i = static_cast<int>(random() % 3); i > 0; --i)
            leaveSession(std::to_string(sequence) + "-" + std::to_string(i), kDone, 50.0 * i);
        service_.failBy(20 + static_cast<int>(random() % 80), random);
        start();
        for (int i = 0; i < 25; ++i)
            happen(random);
        anHourOfPeace();
        SCOPED_TRACE("sequence " + std::to_string(sequence));
        expectAllDelivered();
        if (HasFailure())
            return;
        delivered += finished_.size();
        finished_.clear();
        quit();
        install();
    }
    EXPECT_EQ(service_.timesTwiceInFlight(), 0);
    std::printf("%d sequences, %zu sessions\n", count, delivered);
}

INSTANTIATE_TEST_SUITE_P(Quarters, NetworkSequences, ::testing::Range(0, 4));

}  // namespace
}  // namespace trimora::reliability
