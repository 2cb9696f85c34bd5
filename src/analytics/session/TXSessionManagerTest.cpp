#include "analytics/session/TXSessionManager.h"

#include "analytics/TelemetrixForTests.h"
#include "analytics/public/TXAnalyticsCollector.h"
#include "analytics/session/TXiOSBackgroundTask.h"

namespace trimora::analytics {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

class TXSessionManagerTest : public TelemetrixTest {
 protected:
    /// A later start at a service that answers everything with this.
    void startAt(HttpTransport::Outcome answer) {
        transport.answer = std::move(answer);
        start();
    }
    void loseKey() { post(kNSWindowDidResignKeyNotification); }
    void regainKey() { post(kNSWindowDidBecomeKeyNotification); }
    [[nodiscard]] int count(const std::string& name, const std::string& session) const {
        const auto all = names(session);
        return static_cast<int>(std::count(all.begin(), all.end(), name));
    }
};

TEST_F(TXSessionManagerTest, FirstStartRecordsInOrderAndPostsNothing) {
    leaveSession("left", 1, 100);
    transport.answer = 200;
    start(true);
    EXPECT_THAT(currentNames(),
                ElementsAre("app_install", "app_open", "device_info", "geo_info", "app_info", "session_end"));
    EXPECT_THAT(posted(), IsEmpty());
    EXPECT_EQ(statusOf("left"), 1);
    EXPECT_FALSE(manager().isSendingDoneSessions());
}

TEST_F(TXSessionManagerTest, LaterStartRecordsNoInstallation) {
    startAt(200);
    EXPECT_THAT(currentNames(),
                ElementsAre("app_open", "device_info", "geo_info", "app_info", "session_end"));
    EXPECT_FALSE(manager().isSendingDoneSessions());
}

TEST_F(TXSessionManagerTest, NothingHappensBeforeTheFirstStart) {
    loseKey();
    regainKey();
    advance(60);
    EXPECT_THAT(sessions(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TXSessionManagerTest, DoneSessionOfTheFarFutureGoesBeforeAllOthers) {
    leaveSession("old", 1, 100);
    leaveSession("of this second", 1, 0);
    EXPECT_EQ(manager().getOldestDoneSession(), "old");
    leaveSession("of the next day", 1, -86400);
    EXPECT_EQ(manager().getOldestDoneSession(), "old");
    leaveSession("far ahead", 1, -86500);
    EXPECT_EQ(manager().getOldestDoneSession(), "far ahead");
}

TEST_F(TXSessionManagerTest, LaterStartPostsDoneSessionsOldestFirstOneSecondApart) {
    leaveSession("middle", 1, 200);
    leaveSession("oldest", 1, 300);
    leaveSession("youngest", 1, 100);
    startAt(200);
    EXPECT_THAT(posted(), ElementsAre("oldest"));
    advance(0.999);
    EXPECT_THAT(posted(), SizeIs(1));
    advance(0.001);
    EXPECT_THAT(posted(), ElementsAre("oldest", "middle"));
    advance(1);
    EXPECT_THAT(posted(), ElementsAre("oldest", "middle", "youngest"));
    EXPECT_TRUE(manager().isSendingDoneSessions());
    advance(1);
    EXPECT_FALSE(manager().isSendingDoneSessions());
    ASSERT_THAT(sessions(), SizeIs(1));
    EXPECT_EQ(sessions().front().status, 0);
    EXPECT_THAT(bodies("oldest"), IsEmpty());
}

TEST_F(TXSessionManagerTest, AgesAreComparedInWholeSeconds) {
    time.advance(0.5);
    leaveSession("first in the store", 1, 10.1);
    leaveSession("older by a fraction", 1, 10.2);
    leaveSession("older by a second", 1, 11.2);
    EXPECT_EQ(manager().getOldestDoneSession(), "older by a second");
    TXAnalyticsDBManager::sharedManager().deleteAllDataForSession("older by a second");
    EXPECT_EQ(manager().getOldestDoneSession(), "first in the store");
}

TEST_F(TXSessionManagerTest, SessionLeftInSendingIsRecoveredAfterThirtySeconds) {
    leaveSession("31 seconds", 2, 31);
    leaveSession("29 seconds", 2, 29);
    leaveSession("30 seconds", 2, 30);
    startAt(200);
    EXPECT_THAT(posted(), ElementsAre("31 seconds"));
    EXPECT_EQ(statusOf("29 seconds"), 2);
    EXPECT_EQ(statusOf("30 seconds"), 2);
    EXPECT_THAT(log.texts(),
                Contains("Telemetrix: session 31 seconds with sending state but time is out for, "
                         "will reset to done one, it might occurr when app exited unexpectedly "
                         "when session was sending"));
}

TEST_F(TXSessionManagerTest, SessionLeftActiveIsRecoveredAndPosted) {
    leaveSession("stale", 0, 5);
    startAt(200);
    EXPECT_THAT(posted(), ElementsAre("stale"));
    EXPECT_THAT(log.texts(),
                Contains("Telemetrix: session stale with active state but it's not current session, "
                         "will reset to done one, it might occurr when app exited unexpectedly "
                         "when session was active"));
    EXPECT_EQ(statusOf(manager().currentSession()), 0);
}

TEST_F(TXSessionManagerTest, ServerErrorWritesTheSessionBackAndTriesAgainAfterSixtySeconds) {
    leaveSession("A", 1, 10);
    startAt(500);
    EXPECT_EQ(statusOf("A"), 1);
    EXPECT_THAT(log.texts(),
                Contains(StartsWith("Telemetrix: error while sending old session, will repeat in "
                                    "60.000000 reason Error Domain=TelemetrixErrorDomain Code=-1 "
                                    "\"status code 500 at url path https://service.invalid/stat/4")));
    advance(59.9);
    EXPECT_THAT(posted(), SizeIs(1));
    advance(0.2);
    EXPECT_THAT(posted(), ElementsAre("A", "A"));
    EXPECT_EQ(transport.requests()[0].body, transport.requests()[1].body);
}

TEST_F(TXSessionManagerTest, MalformedSessionIsDeletedAndTheChainGoesOnAfterSixtySecondsWithoutALine) {
    leaveSession("A", 1, 20);
    leaveSession("B", 1, 10);
    startAt(400);
    EXPECT_EQ(statusOf("A"), -1);
    EXPECT_THAT(bodies("A"), IsEmpty());
    EXPECT_THAT(log.texts(), Not(Contains(HasSubstr("will repeat"))));
    advance(59.9);
    EXPECT_THAT(posted(), ElementsAre("A"));
    advance(0.2);
    EXPECT_THAT(posted(), ElementsAre("A", "B"));
}

TEST_F(TXSessionManagerTest, TransportErrorKeepsTheSessionWhateverItsCode) {
    leaveSession("A", 1, 20);
    startAt(TelemetrixError{"SomeTransport", 100, "no route"});
    EXPECT_EQ(statusOf("A"), 1);
    EXPECT_THAT(log.texts(), Contains("Telemetrix: error while sending old session, will repeat in 60.000000 "
                                      "reason Error Domain=SomeTransport Code=100 \"no route\""));
}

TEST_F(TXSessionManagerTest, RequestThatCannotBeBuiltStopsTheChainForThisRun) {
    TXSSID empty;
    empty.name = "without events";
    empty.status = 1;
    ASSERT_TRUE(context().save(empty));
    leaveSession("waits", 1, 0);
    startAt(200);
    EXPECT_THAT(posted(), IsEmpty());
    EXPECT_EQ(statusOf("without events"), -1);
    EXPECT_TRUE(manager().isSendingDoneSessions());
    advance(7200);
    network.change(reachability::kReachable);
    settle();
    loseKey();
    regainKey();
    EXPECT_THAT(posted(), Not(Contains("waits")));
    EXPECT_EQ(statusOf("waits"), 1);
}

TEST_F(TXSessionManagerTest, LosingKeyEndsAndPostsTheSession) {
    startAt(200);
    const std::string session = manager().currentSession();
    Telemetrix::logEvent("button open pressed");
    advance(7);
    transport.answer.reset();
    loseKey();
    EXPECT_THAT(posted(), ElementsAre(session));
    EXPECT_EQ(statusOf(session), 2);
    EXPECT_EQ(manager().previousSession(), session);
    EXPECT_NE(manager().currentSession(), session);
    EXPECT_TRUE(manager().isInBackground());
    const auto sent = nlohmann::json::parse(transport.requests()[0].body);
    EXPECT_EQ(sent.size(), 6U);
    EXPECT_EQ(sent[5]["event"], "button open pressed.");
    EXPECT_EQ(sent[4]["data"], R"({"time_on":7,"type":0})");
    transport.answerOldest(200);
    EXPECT_EQ(statusOf(session), -1);
    EXPECT_THAT(currentNames(), IsEmpty());
}

TEST_F(TXSessionManagerTest, FailedLastSessionIsTriedOnceMoreAfterTenSeconds) {
    startAt(503);
    const std::string session = manager().currentSession();
    loseKey();
    EXPECT_THAT(
        log.texts(),
        Contains(StartsWith("Telemetrix: Wasn't able to send last active session, will try again one more "
                            "time, error:Error Domain=TelemetrixErrorDomain Code=-1 \"status code 503")));
    EXPECT_EQ(statusOf(session), 1);
    EXPECT_EQ(TXiOSBackgroundTask::openCount(), 1);
    advance(9.9);
    EXPECT_THAT(posted(), SizeIs(1));
    advance(0.2);
    EXPECT_THAT(posted(), ElementsAre(session, session));
    EXPECT_THAT(log.texts(),
                Contains(StartsWith("Telemetrix: Wasn't able to send last active session the second "
                                    "time, error:")));
    EXPECT_EQ(TXiOSBackgroundTask::openCount(), 0);
    advance(86400);
    EXPECT_THAT(posted(), SizeIs(2));
    EXPECT_EQ(statusOf(session), 1);
}

TEST_F(TXSessionManagerTest, MalformedLastSessionIsNotTriedAgain) {
    startAt(400);
    loseKey();
    EXPECT_THAT(log.texts(),
                Contains(StartsWith("Telemetrix: Wasn't able to send last active session, error:Error "
                                    "Domain=TelemetrixErrorDomain Code=100")));
    advance(60);
    EXPECT_THAT(posted(), SizeIs(1));
}

TEST_F(TXSessionManagerTest, TwoLossesAndOneRegainAreOneForegroundRound) {
    startAt(200);
    loseKey();
    loseKey();
    regainKey();
    regainKey();
    EXPECT_EQ(count("app_open", manager().currentSession()), 1);
    EXPECT_THAT(currentNames(),
                ElementsAre("app_open", "device_info", "geo_info", "app_info", "session_end"));
    EXPECT_FALSE(manager().isInBackground());
}

TEST_F(TXSessionManagerTest, RegainBeforeAnyLossRecordsNothing) {
    startAt(200);
    const auto before = currentNames();
    regainKey();
    EXPECT_EQ(currentNames(), before);
}

TEST_F(TXSessionManagerTest, RegainStartsTheClockOfTheSessionAnew) {
    startAt(200);
    loseKey();
    advance(100);
    regainKey();
    advance(5);
    const auto all = bodies(manager().currentSession());
    EXPECT_EQ(all[4]["data"], R"({"time_on":5,"type":0})");
}

TEST_F(TXSessionManagerTest, UpkeepRunsEveryFiveSecondsInTheForegroundOnly) {
    startAt(200);
    const auto timeOn = [&] { return bodies(manager().currentSession())[4]["data"].get<std::string>(); };
    EXPECT_EQ(timeOn(), R"({"time_on":0,"type":0})");
    advance(4.9);
    EXPECT_EQ(timeOn(), R"({"time_on":0,"type":0})");
    advance(0.1);
    EXPECT_EQ(timeOn(), R"({"time_on":5,"type":0})");
    advance(3600);
    EXPECT_EQ(timeOn(), R"({"time_on":3605,"type":0})");
    EXPECT_EQ(count("session_end", manager().currentSession()), 1);
    loseKey();
    advance(60);
    EXPECT_THAT(currentNames(), IsEmpty());
}

TEST_F(TXSessionManagerTest, UpkeepFiresOnTheMainThreadAndWritesOnTheQueue) {
    startAt(200);
    const auto timeOn = [&] { return bodies(manager().currentSession())[4]["data"].get<std::string>(); };
    time.advance(5);
    EXPECT_EQ(queues.manualMain().pending(), 1);
    queues.manualMain().runAll();
    EXPECT_EQ(timeOn(), R"({"time_on":0,"type":0})");
    settle();
    EXPECT_EQ(timeOn(), R"({"time_on":5,"type":0})");
}

TEST_F(TXSessionManagerTest, LosingKeyCountsAtOnceAndLeavesTheDiskToTheQueue) {
    startAt(200);
    const std::string session = manager().currentSession();
    Telemetrix::logEvent("just before");
    notifications.post(kNSWindowDidResignKeyNotification);
    EXPECT_TRUE(manager().isInBackground());
    Telemetrix::logEvent("dropped");
    EXPECT_EQ(manager().currentSession(), session);
    EXPECT_EQ(statusOf(session), 0);
    EXPECT_THAT(posted(), IsEmpty());
    transport.answer.reset();
    settle();
    EXPECT_THAT(posted(), ElementsAre(session));
    EXPECT_THAT(names(session), AllOf(Contains("just before."), Not(Contains("dropped."))));
    EXPECT_EQ(manager().previousSession(), session);
}

TEST_F(TXSessionManagerTest, BackgroundSessionRecordsAndIsThrownAwayUnlessStopped) {
    startAt(200);
    Telemetrix::setBackgroundSessionEnabled(true);
    loseKey();
    const std::string first = manager().previousSession();
    const std::string background = manager().currentSession();
    EXPECT_THAT(currentNames(), ElementsAre("device_info", "geo_info", "app_info", "session_end"));
    EXPECT_EQ(bodies(background)[3]["data"], R"({"time_on":0,"type":1})");
    Telemetrix::logEvent("while away");
    settle();
    EXPECT_THAT(names(background), Contains("while away."));
    regainKey();
    EXPECT_EQ(manager().currentSession(), background);
    EXPECT_EQ(statusOf(first), -1);
}

TEST_F(TXSessionManagerTest, SessionBeforeTheBackgroundIsDeletedOnReturnEvenIfItWasNotPosted) {
    startAt(500);
    Telemetrix::setBackgroundSessionEnabled(true);
    const std::string first = manager().currentSession();
    loseKey();
    EXPECT_EQ(statusOf(first), 1);
    regainKey();
    EXPECT_EQ(statusOf(first), -1);
    EXPECT_THAT(bodies(first), IsEmpty());
}

TEST_F(TXSessionManagerTest, StopSessionEndsTheBackgroundSessionOnce) {
    startAt(200);
    Telemetrix::setBackgroundSessionEnabled(true);
    loseKey();
    const std::string background = manager().currentSession();
    Telemetrix::stopSession();
    settle();
    EXPECT_TRUE(manager().isForceStopSessionInBackground());
    EXPECT_EQ(posted().back(), background);
    Telemetrix::logEvent("dropped");
    settle();
    EXPECT_THAT(currentNames(), Not(Contains("dropped.")));
    Telemetrix::stopSession();
    EXPECT_THAT(log.texts(),
                Contains("Telemetrix: stopSession was called already, to use it again you must start "
                         "new session by moving an app to active state!"));
    const std::string kept = manager().previousSession();
    regainKey();
    EXPECT_FALSE(manager().isForceStopSessionInBackground());
    EXPECT_NE(kept, manager().currentSession());
}

TEST_F(TXSessionManagerTest, StoppedBackgroundSessionThatCannotBePostedIsReported) {
    startAt(500);
    Telemetrix::setBackgroundSessionEnabled(true);
    loseKey();
    Telemetrix::stopSession();
    settle();
    EXPECT_THAT(
        log.texts(),
        Contains(StartsWith("Telemetrix: an error occurred at sending last active session Error Domain=")));
}

TEST_F(TXSessionManagerTest, ReturnWithinTheSameSessionMakesItDone) {
    startAt(200);
    loseKey();
    regainKey();
    // The application lost key, and the session that came is again the one before.
    Telemetrix::setBackgroundSessionEnabled(true);
    post(kNSWindowDidResignKeyNotification);
    manager().setCurrentSession(manager().previousSession());
    const std::string same = manager().previousSession();
    regainKey();
    EXPECT_NE(manager().currentSession(), same);
    EXPECT_EQ(statusOf(same), -1);
}

TEST_F(TXSessionManagerTest, TerminationLeavesTheFinishedSessionInTheStore) {
    startAt(200);
    const std::string session = manager().currentSession();
    transport.answer.reset();
    Telemetrix::logEvent("last");
    notifications.post(kNSApplicationWillTerminateNotification);  // nothing else runs before it returns
    EXPECT_EQ(statusOf(session), 2);
    EXPECT_THAT(names(session), AllOf(Contains("last."), Contains("session_end")));
    quit();
    install();
    EXPECT_EQ(statusOf(session), 1);
}

TEST_F(TXSessionManagerTest, OnlyARegainedNetworkStartsTheChain) {
    startAt(200);
    leaveSession("A", 1, 0);
    network.change(0);
    settle();
    EXPECT_THAT(posted(), IsEmpty());
    network.change(reachability::kReachable);
    settle();
    EXPECT_THAT(posted(), ElementsAre("A"));
}

TEST_F(TXSessionManagerTest, NetworkIsOfNoInterestWithoutAnApplicationId) {
    startAt(200);
    leaveSession("A", 1, 0);
    Telemetrix::resetInnerId();
    network.change(reachability::kReachable);
    settle();
    EXPECT_THAT(posted(), IsEmpty());
}

TEST_F(TXSessionManagerTest, ChainRunsOnceHoweverOftenItIsStarted) {
    leaveSession("A", 1, 20);
    leaveSession("B", 1, 10);
    start();
    manager().startSendAllInactiveSessions();
    settle();
    EXPECT_THAT(posted(), ElementsAre("A"));
    EXPECT_EQ(transport.waiting(), 1);
}

TEST_F(TXSessionManagerTest, TwoPostsNeverTakeOneSession) {
    start();
    leaveSession("A", 1, 0);
    std::optional<TelemetrixError> second;
    manager().sendSession("A", [](const auto&) {});
    manager().sendSession("A", [&](const auto& error) { second = error; });
    EXPECT_THAT(posted(), ElementsAre("A"));
    EXPECT_EQ(second->code, 99);
    EXPECT_EQ(second->message, "Was not able to create request for session A because of sending already");
}

TEST_F(TXSessionManagerTest, MissingCompletionIsWarnedOf) {
    startAt(200);
    leaveSession("A", 1, 0);
    manager().sendSession("A", nullptr);
    EXPECT_TRUE(log.contains("'sendSession' 'session/TXSessionManagerSending'"));
    EXPECT_TRUE(log.contains("Completion block must be provided"));
    EXPECT_EQ(statusOf("A"), -1);
}

TEST_F(TXSessionManagerTest, SessionIdsAreRandomUuids) {
    start();
    const std::string first = manager().currentSession();
    const std::string old = manager().resetCurrentActiveSession();
    EXPECT_EQ(old, first);
    EXPECT_EQ(statusOf(old), 1);
    for (const std::string& id : {first, manager().currentSession()})
        EXPECT_THAT(id, ::testing::MatchesRegex(
                            "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
    EXPECT_NE(first, manager().currentSession());
}

TEST_F(TXSessionManagerTest, HoursWithoutNetworkLoseNothing) {
    startAt(TelemetrixError{"SomeTransport", 6, "no network"});
    std::vector<std::string> left;
    for (int session = 0; session < 24; ++session) {
        advance(300);
        left.push_back(manager().currentSession());
        loseKey();
        advance(300);
        regainKey();
    }
    for (const std::string& session : left)
        EXPECT_EQ(statusOf(session), 1);
    transport.answer = 200;
    advance(61 + 24);
    for (const std::string& session : left)
        EXPECT_EQ(statusOf(session), -1);
}

}  // namespace
}  // namespace trimora::analytics
