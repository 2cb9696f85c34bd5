#include "analytics/public/Telemetrix.h"

#include <stdexcept>

#include "analytics/TelemetrixForTests.h"
#include "analytics/public/TLAnalytics.h"
#include "analytics/public/TLAnalyticsCollector.h"
#include "analytics/public/TLEventCollector.h"
#include "analytics/public/TXAnalyticsCollector.h"
#include "analytics/public/telemetrix_bridge.h"

namespace trimora::analytics {
namespace {

using nlohmann::json;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Writes down every call.
class RecordingDelegate final : public TLAnalyticsCollectorDelegate {
 public:
    void logEvent(const std::string& name) override { note("logEvent", name); }
    void logEvent_withParameters(const std::string& name, const Dictionary& p) override {
        note("logEvent:withParameters", name + p.json().value());
    }
    void logTimedEvent(const std::string& name) override { note("logTimedEvent", name); }
    void logTimedEvent_withParameters(const std::string& name, const Dictionary& p) override {
        note("logTimedEvent:withParameters", name + p.json().value());
    }
    void endTimedEvent(const std::string& name) override { note("endTimedEvent", name); }
    void custom(const Dictionary& data) override { note("custom", data.json().value()); }
    void appInstall() override { note("appInstall"); }
    void appStart() override { note("appStart"); }
    void appInfo() override { note("appInfo"); }
    void geoInfo() override { note("geoInfo"); }
    void deviceInfo() override { note("deviceInfo"); }
    void sceneStart(const std::string& id, const std::string& name) override {
        note("sceneStart", id + name);
    }
    void buttonClick(const std::string& name) override { note("buttonClick", name); }
    void levelStart(const std::string& name, const std::string& mode) override {
        note("levelStart", name + mode);
    }
    void levelWin(const std::string& name, const std::string& mode) override {
        note("levelWin", name + mode);
    }
    void levelLose(const std::string& name, const std::string& mode) override {
        note("levelLose", name + mode);
    }
    void lootAppend(const std::string& name, const std::string& volume) override {
        note("lootAppend", name + volume);
    }
    void lootConsume(const std::string& name, const std::string& volume, const std::string& target) override {
        note("lootConsume", name + volume + target);
    }
    void gameOver(const std::string& mode) override { note("gameOver", mode); }

    std::vector<std::string> calls;

 private:
    void note(const std::string& call, const std::string& arguments = "") {
        calls.push_back(call + " " + arguments);
    }
};

class TelemetrixPublicTest : public TelemetrixTest {
 protected:
    /// Bodies stored since the start events.
    std::vector<json> recorded() {
        settle();
        auto all = bodies(manager().currentSession());
        all.erase(all.begin(), all.begin() + 5);
        return all;
    }
    std::vector<std::string> recordedNames() {
        std::vector<std::string> found;
        for (const json& body : recorded())
            found.push_back(body["event"]);
        return found;
    }
    static void logEverything() {
        Telemetrix::logEvent("a");
        Telemetrix::logEvent("a", {{"k", 1}});
        Telemetrix::logTimedEvent("a");
        Telemetrix::logTimedEvent("a", {{"k", 1}});
        Telemetrix::endTimedEvent("a");
    }
    static void logEveryGameEvent() {
        TLEventCollector::sceneStartWithName("menu", "7");
        TLEventCollector::buttonClickWithName("ok");
        TLEventCollector::levelStartWithName("1", "easy");
        TLEventCollector::levelWinWithName("1", "easy");
        TLEventCollector::levelLoseWithName("1", "easy");
        TLEventCollector::lootAppendWithName("coin", "3");
        TLEventCollector::lootConsumeWithName("coin", "3", "door");
        TLEventCollector::gameOverWithMode("easy");
    }
};

TEST_F(TelemetrixPublicTest, EveryLoggingCallBeforeTheStartIsDroppedWithALine) {
    logEverything();
    settle();
    EXPECT_THAT(log.texts(), ElementsAre("Telemetrix : must start a session before logging an event!",
                                         "Telemetrix : must start a session before logging an event!",
                                         "Telemetrix : must start a session before logging an event!",
                                         "Telemetrix : must start a session before logging an event!",
                                         "Telemetrix : must start a session before logging an event!"));
    EXPECT_THAT(sessions(), IsEmpty());
}

TEST_F(TelemetrixPublicTest, NothingHappensWhereTheLibraryIsNotInstalled) {
    quit();
    Telemetrix::logEvent("a");
    telemetrix_log_event();
    EXPECT_TRUE(log.contains("Telemetrix : must start a session before logging an event!"));
    Telemetrix::startSession();
    Telemetrix::startSession("id");
    Telemetrix::setBackgroundSessionEnabled(true);
    Telemetrix::stopSession();
    Telemetrix::resetInnerId();
    EXPECT_EQ(Telemetrix::innerId(), std::nullopt);
    EXPECT_FALSE(Telemetrix::backgroundSessionEnabled());
    install();
    EXPECT_EQ(Telemetrix::innerId(), std::nullopt);
    EXPECT_FALSE(Telemetrix::backgroundSessionEnabled());
}

TEST_F(TelemetrixPublicTest, EventIsStoredUnderItsNameAndAFullStop) {
    start();
    Telemetrix::logEvent("button open pressed");
    const json body = recorded().at(0);
    EXPECT_EQ(body["event"], "button open pressed.");
    EXPECT_EQ(body["data"], "{}");
    EXPECT_EQ(body["end_timed_event"], false);
    EXPECT_EQ(body["app_id"], "app-id");
}

TEST_F(TelemetrixPublicTest, TimedEventsShareTheirNameAndDifferInTheFlag) {
    start();
    Telemetrix::logTimedEvent("cut");
    Telemetrix::logTimedEvent("cut", {{"tool", "brush"}, {"end_timed_event", true}});
    Telemetrix::endTimedEvent("cut");
    const auto all = recorded();
    ASSERT_EQ(all.size(), 3U);
    for (const json& body : all)
        EXPECT_EQ(body["event"], "cut.");
    EXPECT_EQ(all[0]["end_timed_event"], false);
    EXPECT_EQ(all[1]["end_timed_event"], false);
    EXPECT_EQ(all[1]["data"], R"({"tool":"brush"})");
    EXPECT_EQ(all[2]["end_timed_event"], true);
    EXPECT_EQ(all[2]["data"], "{}");
}

TEST_F(TelemetrixPublicTest, ParametersBecomeTheData) {
    start();
    Telemetrix::logEvent("save", {{"width", 20}, {"kind", "png"}});
    Telemetrix::logEvent("save", nullptr);
    const auto all = recorded();
    EXPECT_EQ(json::parse(all[0]["data"].get<std::string>()), (json{{"width", 20}, {"kind", "png"}}));
    EXPECT_EQ(all[1]["data"], "{}");
}

TEST_F(TelemetrixPublicTest, MissingNameIsDroppedSilently) {
    start();
    log.clear();
    Telemetrix::logEvent(std::nullopt);
    Telemetrix::endTimedEvent(std::nullopt);
    Telemetrix::logEvent("");
    EXPECT_THAT(recordedNames(), ElementsAre("."));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(TelemetrixPublicTest, EverythingIsDroppedInTheBackgroundUnlessEnabled) {
    start();
    post(kNSWindowDidResignKeyNotification);
    log.clear();
    logEverything();
    TXAnalyticsCollector::customEvent("a", nullptr);
    TXAnalyticsCollector::gameOverWithMode("a");
    settle();
    EXPECT_THAT(currentNames(), IsEmpty());
    EXPECT_THAT(log.lines(), IsEmpty());
    Telemetrix::setBackgroundSessionEnabled(true);
    Telemetrix::logEvent("a");
    settle();
    EXPECT_THAT(currentNames(), ElementsAre("a."));
}

TEST_F(TelemetrixPublicTest, ResetInnerIdStopsRecordingUntilTheNextStart) {
    start();
    Telemetrix::resetInnerId();
    EXPECT_EQ(Telemetrix::innerId(), std::nullopt);
    Telemetrix::logEvent("a");
    TXAnalyticsCollector::logEvent("a");
    TXAnalyticsCollector::sessionEnd();
    EXPECT_THAT(recordedNames(), IsEmpty());
    Telemetrix::startSession("other");
    Telemetrix::logEvent("b");
    EXPECT_EQ(recorded().at(0)["app_id"], "other");
}

TEST_F(TelemetrixPublicTest, AbsentIdIsWarnedOfAndRecordsNothing) {
    bundle.info.erase("TelemetrixInnerId");
    start();
    EXPECT_TRUE(log.contains("Analytics application id must be provided"));
    EXPECT_EQ(Telemetrix::innerId(), std::nullopt);
    EXPECT_THAT(currentNames(), IsEmpty());
}

TEST_F(TelemetrixPublicTest, EmptyIdIsWarnedOfAndKept) {
    rememberLaunch();
    Telemetrix::startSession("");
    settle();
    EXPECT_TRUE(log.contains("Analytics application id must be provided"));
    EXPECT_EQ(Telemetrix::innerId(), "");
    EXPECT_FALSE(currentNames().empty());
}

TEST_F(TelemetrixPublicTest, OnlyTheFirstStartIsAnnouncedButEachAsksForTheLocation) {
    int announced = 0;
    const auto observation = notifications.observe(kTXTelemetrixDidStartNotification, [&](const auto& n) {
        EXPECT_EQ(n.object, nullptr);
        ++announced;
    });
    location.status = LocationSource::Authorization::authorized;
    Telemetrix::startSession("a");
    EXPECT_EQ(location.started, 0);
    Telemetrix::startSession("b");
    settle();
    EXPECT_EQ(announced, 1);
    EXPECT_EQ(location.started, 2);
}

TEST_F(TelemetrixPublicTest, BackgroundFlagIsAnnounced) {
    std::vector<std::string> heard;
    const auto on = notifications.observe(kTLAnalyticsNeedEnableBackgroundSessionNotification,
                                          [&](const auto& n) { heard.push_back(n.name); });
    const auto off = notifications.observe(kTLAnalyticsNeedDisableBackgroundSessionNotification,
                                           [&](const auto& n) { heard.push_back(n.name); });
    EXPECT_FALSE(Telemetrix::backgroundSessionEnabled());
    Telemetrix::setBackgroundSessionEnabled(true);
    EXPECT_TRUE(Telemetrix::backgroundSessionEnabled());
    Telemetrix::setBackgroundSessionEnabled(false);
    EXPECT_THAT(heard, ElementsAre("TLAnalyticsNeedEnableBackgroundSessionNotification",
                                   "TLAnalyticsNeedDisableBackgroundSessionNotification"));
}

TEST_F(TelemetrixPublicTest, StopSessionInTheForegroundDoesNothing) {
    start();
    Telemetrix::setBackgroundSessionEnabled(true);
    int heard = 0;
    const auto observation =
        notifications.observe(kTXApplicationDidEndSessionManualNotification, [&](const auto&) { ++heard; });
    const std::string session = manager().currentSession();
    Telemetrix::stopSession();
    settle();
    EXPECT_EQ(heard, 0);
    EXPECT_EQ(manager().currentSession(), session);
}

TEST_F(TelemetrixPublicTest, StopSessionPostsBothNotificationsInOrder) {
    start();
    Telemetrix::setBackgroundSessionEnabled(true);
    post(kNSWindowDidResignKeyNotification);
    std::vector<std::string> heard;
    const auto first = notifications.observe(kTXApplicationDidEndSessionManualNotification,
                                             [&](const auto& n) { heard.push_back(n.name); });
    const auto second = notifications.observe(kTLAnalyticsNeedPauseBackgroundSessionNotification,
                                              [&](const auto& n) { heard.push_back(n.name); });
    Telemetrix::stopSession();
    EXPECT_THAT(heard, ElementsAre("TXApplicationDidEndSessionManualNotification",
                                   "TLAnalyticsNeedPauseBackgroundSessionNotification"));
}

TEST_F(TelemetrixPublicTest, SessionEndIsOneEventThatGrows) {
    start();
    for (const int seconds : {1, 2, 3}) {
        time.advance(seconds);
        TXAnalyticsCollector::sessionEnd();
    }
    const auto all = bodies(manager().currentSession());
    ASSERT_EQ(all.size(), 5U);
    EXPECT_EQ(all[4]["data"], R"({"time_on":6,"type":0})");
}

TEST_F(TelemetrixPublicTest, SessionEndReportsWhatIsInconsistent) {
    start();
    const std::string session = manager().currentSession();
    TXEvent broken{0, session, "not json"};
    TXEvent array{0, session, "[1]"};
    TXEvent second{0, session, R"({"event":"session_end"})"};
    TXEvent bare{0, session, std::nullopt};
    for (TXEvent* event : {&broken, &array, &second, &bare})
        ASSERT_TRUE(context().save(*event));
    TXAnalyticsDBManager::sharedManager().ssidDataAccess().deleteSSID(session, context());
    TXAnalyticsCollector::sessionEnd();
    EXPECT_TRUE(
        log.contains("Session inconsistency! Application must have one active session with current session "
                     "id only but has 0"));
    EXPECT_TRUE(log.contains("event body isn't a valid json format not json"));
    EXPECT_TRUE(log.contains("event body isn't a valid json format [1]"));
    EXPECT_TRUE(log.contains("amount of end_session events for session " + session +
                             " is 2, but must be 0 or 1 only!"));
}

TEST_F(TelemetrixPublicTest, DelegateHearsEveryCallBeforeItIsStored) {
    RecordingDelegate delegate;
    TXAnalyticsCollector::setAnalyticsCollectorDelegate(&delegate);
    start(true);
    EXPECT_THAT(delegate.calls,
                ElementsAre("appInstall ", "appStart ", "deviceInfo ", "geoInfo ", "appInfo "));
    delegate.calls.clear();
    logEverything();
    Telemetrix::logEvent("a", nullptr);
    TXAnalyticsCollector::customEvent("c", {{"k", 1}});
    TXAnalyticsCollector::customEvent("c", nullptr);
    EXPECT_THAT(
        delegate.calls,
        ElementsAre("logEvent a.", R"(logEvent:withParameters a.{"k":1})", "logTimedEvent a.",
                    R"(logTimedEvent:withParameters a.{"end_timed_event":false,"k":1})", "endTimedEvent a.",
                    "logEvent:withParameters a.{}", R"(custom {"custom_event_name":"c.","k":1})",
                    R"(custom {"custom_event_name":"c."})"));
    EXPECT_EQ(currentNames().size(), 6U);
    delegate.calls.clear();
    Telemetrix::resetInnerId();
    logEveryGameEvent();
    EXPECT_THAT(delegate.calls, IsEmpty());
    EXPECT_EQ(TXAnalyticsCollector::analyticsCollectorDelegate(), &delegate);
}

TEST_F(TelemetrixPublicTest, DelegateMayLeaveOutEveryOperation) {
    class SilentDelegate final : public TLAnalyticsCollectorDelegate {};
    SilentDelegate delegate;
    start(true);
    const std::size_t before = bodies(manager().currentSession()).size();
    TLAnalyticsCollector::setAnalyticsCollectorDelegate(&delegate);
    logEverything();
    logEveryGameEvent();
    TXAnalyticsCollector::customEvent("custom", nullptr);
    manager().sendStartEvents();
    TXAnalyticsCollector::appInstall();
    TXAnalyticsCollector::appOpen();
    settle();
    EXPECT_EQ(bodies(manager().currentSession()).size(), before + 5 + 8 + 1 + 3 + 2);
}

TEST_F(TelemetrixPublicTest, CrashTextIsRecordedInTheSessionThatIsNamed) {
    TXAnalyticsCollector::appCrash("dropped", "S");  // nothing has been started
    start();
    TXAnalyticsCollector::appCrash("trace", "S");
    settle();
    EXPECT_THAT(names("S"), ElementsAre("app_crash"));
    EXPECT_EQ(bodies("S")[0]["data"], R"({"stacktrace":"trace"})");
}

TEST_F(TelemetrixPublicTest, NothingTheLibraryRecordsByItselfIsRecordedWithoutAnId) {
    start();
    const auto before = currentNames();
    Telemetrix::resetInnerId();
    TXAnalyticsCollector::sessionEnd();
    TXAnalyticsCollector::appInstall();
    TXAnalyticsCollector::appOpen();
    manager().sendStartEvents();
    advance(60);
    EXPECT_EQ(currentNames(), before);
    EXPECT_EQ(bodies(manager().currentSession())[4]["data"], R"({"time_on":0,"type":0})");
}

TEST_F(TelemetrixPublicTest, ExceptionsOfTheApplicationDoNotCrossTheBridge) {
    class ThrowingDelegate final : public TLAnalyticsCollectorDelegate {
        void gameOver(const std::string& /*mode*/) override { throw std::runtime_error("not today"); }
        void buttonClick(const std::string& /*name*/) override { throw 42; }
    };
    ThrowingDelegate delegate;
    start();
    TLAnalyticsCollector::setAnalyticsCollectorDelegate(&delegate);
    telemetrix_game_over("hard");
    EXPECT_TRUE(log.contains("not today"));
    telemetrix_button_click("ok");
    EXPECT_TRUE(log.contains("an exception of unknown type"));
}

TEST_F(TelemetrixPublicTest, GameEventsJoinTheirWordsWithFullStops) {
    RecordingDelegate delegate;
    start();
    TLAnalyticsCollector::setAnalyticsCollectorDelegate(&delegate);
    TXAnalyticsCollector::sceneStartWithId("7", "menu");
    TLAnalyticsCollector::sceneStartWithName("menu", "7");
    logEveryGameEvent();
    EXPECT_THAT(recordedNames(),
                ElementsAre("scene_start.7.menu", "scene_start.7.menu", "scene_start.7.menu",
                            "button_click.ok", "level_start.1.easy", "level_win.1.easy", "level_lose.1.easy",
                            "loot_append.coin.3", "loot_consume.coin.3.door", "game_over.easy"));
    EXPECT_THAT(delegate.calls,
                ElementsAre("sceneStart 7menu", "sceneStart 7menu", "sceneStart 7menu", "buttonClick ok",
                            "levelStart 1easy", "levelWin 1easy", "levelLose 1easy", "lootAppend coin3",
                            "lootConsume coin3door", "gameOver easy"));
}

TEST_F(TelemetrixPublicTest, WrappersForwardOneToOne) {
    start();
    TLAnalyticsCollector::logEvent("1");
    TLAnalyticsCollector::logEvent("2", {{"k", 1}});
    TLAnalyticsCollector::logTimedEvent("3");
    TLAnalyticsCollector::logTimedEvent("4", {{"k", 1}});
    TLAnalyticsCollector::endTimedEvent("5");
    TLAnalyticsCollector::custom({{"k", 1}});
    TLEventCollector::custom({{"custom", "mine"}, {"k", 1}});
    TLEventCollector::custom(nullptr);
    EXPECT_THAT(recordedNames(),
                ElementsAre("1.", "2.", "3.", "4.", "5.", "custom.", "custom.mine.", "custom.."));
    TLAnalytics::shared().start();
    TLAnalytics::shared().startWithoutAppStateTracking();
    TLEventAnalytics::shared().start();
    TLEventAnalytics::shared().startWithoutAppStateTracking();
    TLUnityStatistic::shared().start();
    EXPECT_FALSE(TLUnityStatistic::shared().isStarted());
    TLUnityStatistic::shared().setIsStarted(true);
    TLUnityStatistic::shared().stop();
    EXPECT_TRUE(TLUnityStatistic::shared().isStarted());
    TLUnityStatistic::shared().setIsStarted(false);
}

TEST_F(TelemetrixPublicTest, BridgeForwardsTextsAndJson) {
    rememberLaunch();
    telemetrix_start_session();
    settle();
    telemetrix_custom_event(R"({"custom_event_name":"mine","k":1})");
    telemetrix_log_event();
    telemetrix_log_event_with_data(R"({"k":"é"})");
    telemetrix_log_timed_event();
    telemetrix_log_timed_event_with_data(R"({"k":1})");
    telemetrix_end_timed_event();
    telemetrix_scene_start("7", "menu");
    telemetrix_button_click("ok");
    telemetrix_level_start("1", "easy");
    telemetrix_level_win("1", "easy");
    telemetrix_level_lose("1", "easy");
    telemetrix_loot_append("coin", "3");
    telemetrix_loot_consume("coin", "3", "door");
    telemetrix_game_over("easy");
    EXPECT_THAT(
        recordedNames(),
        ElementsAre("mine.", "custom.", "custom.", "custom_timed.", "custom_timed.", "custom_timed.",
                    "scene_start.7.menu", "button_click.ok", "level_start.1.easy", "level_win.1.easy",
                    "level_lose.1.easy", "loot_append.coin.3", "loot_consume.coin.3.door", "game_over.easy"));
    EXPECT_EQ(recorded()[0]["data"], R"({"k":1})");
    EXPECT_EQ(recorded()[5]["end_timed_event"], true);
}

TEST_F(TelemetrixPublicTest, BridgeDropsWhatItCannotRead) {
    start();
    log.clear();
    telemetrix_button_click(nullptr);
    telemetrix_scene_start("7", nullptr);
    telemetrix_log_event_with_data("no json");
    telemetrix_log_timed_event_with_data("[1]");
    telemetrix_custom_event("\xFF");
    telemetrix_custom_event(R"({"k":1})");
    telemetrix_custom_event(nullptr);
    EXPECT_THAT(recordedNames(), IsEmpty());
    EXPECT_EQ(log.texts().size(), 5U);
    EXPECT_TRUE(log.contains("data is no JSON object"));
    EXPECT_TRUE(log.contains("a text is missing"));
    telemetrix_log_event_with_data(nullptr);
    EXPECT_THAT(recordedNames(), ElementsAre("custom."));
}

TEST_F(TelemetrixPublicTest, BridgeDropsCallsOfWhichAnyTextIsMissing) {
    start();
    log.clear();
    telemetrix_scene_start(nullptr, "menu");
    telemetrix_level_start("1", nullptr);
    telemetrix_level_win(nullptr, "easy");
    telemetrix_level_lose("1", nullptr);
    telemetrix_loot_append(nullptr, "3");
    telemetrix_loot_consume(nullptr, "3", "door");
    telemetrix_loot_consume("coin", nullptr, "door");
    telemetrix_loot_consume("coin", "3", nullptr);
    telemetrix_game_over(nullptr);
    EXPECT_THAT(recordedNames(), IsEmpty());
    EXPECT_EQ(log.texts().size(), 9U);
}

TEST_F(TelemetrixPublicTest, QueueRunsTasksInTheOrderOfTheCalls) {
    std::vector<int> ran;
    TXAnalyticsQueue::addTask([&] {
        ran.push_back(1);
        TXAnalyticsQueue::addTask([&] { ran.push_back(3); });
    });
    TXAnalyticsQueue::addTask([&] { ran.push_back(2); });
    TXAnalyticsQueue::addTaskOnMainQueue([&] {
        EXPECT_TRUE(queues.mainQueue().isCurrent());
        ran.push_back(4);
    });
    EXPECT_THAT(ran, IsEmpty());
    EXPECT_EQ(TXAnalyticsQueue::analyticsSerialQueue().label(), "com.telemetrix.queue");
    settle();
    EXPECT_THAT(ran, ElementsAre(1, 2, 3, 4));
}

TEST_F(TelemetrixPublicTest, EventsQueuedOneAfterTheOtherAreSavedTogetherAndBeforeWhateverFollows) {
    std::vector<std::size_t> savedSoFar;
    const auto noteSaved = [&] { savedSoFar.push_back(bodies("S").size()); };
    const auto addEvents = [&](int count) {
        for (int i = 0; i < count; ++i)
            TXAnalyticsQueue::addEvent([&] {
                noteSaved();
                return TXEvent{0, "S", "{}"};
            });
    };
    addEvents(3);
    TXAnalyticsQueue::addTask(noteSaved);
    addEvents(1);
    settle();
    EXPECT_THAT(savedSoFar, ElementsAre(0, 0, 0, 3, 3));
    EXPECT_EQ(bodies("S").size(), 4U);
}

TEST_F(TelemetrixPublicTest, EventsDoNotWaitForHundredsBehindThem) {
    std::size_t savedWhenTheLastIsBuilt = 0;
    for (int i = 0; i < 300; ++i)
        TXAnalyticsQueue::addEvent([&] {
            savedWhenTheLastIsBuilt = bodies("S").size();
            return TXEvent{0, "S", "{}"};
        });
    settle();
    EXPECT_EQ(savedWhenTheLastIsBuilt, 256U);
}

TEST_F(TelemetrixPublicTest, UninstallationFinishesWhatWasQueued) {
    start();
    Telemetrix::logEvent("last");
    const std::string session = manager().currentSession();
    quit();
    install();
    EXPECT_THAT(names(session), Contains("last."));
}

}  // namespace
}  // namespace trimora::analytics
