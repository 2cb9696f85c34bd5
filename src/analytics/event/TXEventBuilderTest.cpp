#include "analytics/event/TXEventBuilder.h"

#include <limits>

#include "analytics/TelemetrixForTests.h"
#include "analytics/event/StandardEvents.h"

namespace trimora::analytics {
namespace {

using nlohmann::json;
using ::testing::MatchesRegex;

class TXEventBuilderTest : public TelemetrixTest {
 protected:
    void SetUp() override {
        TelemetrixTest::SetUp();
        Telemetrix::startSession("the-app");
    }
    static json built(const Dictionary& data, const std::string& name = "name") {
        return json::parse(TXEventBuilder::jsonStringForEvent(name, data).value());
    }
};

TEST_F(TXEventBuilderTest, BodyHasItsFiveFields) {
    const json body = built({{"key", 1}});
    EXPECT_EQ(body, (json{{"event", "name"},
                          {"app_id", "the-app"},
                          {"timestamp", foundation::milliseconds(time.wallTime())},
                          {"data", R"({"key":1})"},
                          {"end_timed_event", false}}));
    EXPECT_TRUE(body["timestamp"].is_number_integer());
}

TEST_F(TXEventBuilderTest, EndTimedEventLeavesTheDataAndBecomesAField) {
    const json body = built({{"end_timed_event", true}, {"other", "x"}});
    EXPECT_EQ(body["data"], R"({"other":"x"})");
    EXPECT_EQ(body["end_timed_event"], true);
}

TEST_F(TXEventBuilderTest, NumbersCountAsBooleansForEndTimedEvent) {
    Dictionary data = {{"end_timed_event", 1}};
    EXPECT_TRUE(TXEventBuilder::removeEndTimedEventFromDictionary(data));
    EXPECT_TRUE(data.isEmpty());
    EXPECT_FALSE(TXEventBuilder::removeEndTimedEventFromDictionary(data));
    data = {{"end_timed_event", "yes"}};
    EXPECT_FALSE(TXEventBuilder::removeEndTimedEventFromDictionary(data));
}

TEST_F(TXEventBuilderTest, EmptyAndAbsentDataAreAnEmptyObjectsText) {
    EXPECT_EQ(built(Dictionary::object())["data"], "{}");
    EXPECT_EQ(built(nullptr)["data"], "{}");
    EXPECT_EQ(built({{"end_timed_event", false}})["data"], "{}");
}

TEST_F(TXEventBuilderTest, TextIsCompactAndKeepsUnicode) {
    const std::string text =
        TXEventBuilder::jsonStringForEvent("été \"1\"\n", {{"k", "\xF0\x9F\x8E\xA8"}}).value();
    EXPECT_EQ(text.find(": "), std::string::npos);
    EXPECT_EQ(json::parse(text)["event"], "été \"1\"\n");
    EXPECT_EQ(json::parse(json::parse(text)["data"].get<std::string>())["k"], "\xF0\x9F\x8E\xA8");
}

TEST_F(TXEventBuilderTest, EventsOfOneMillisecondKeepTheOrderOfTheStore) {
    for (const char* name : {"first", "second"}) {
        TXEvent event = TXEventBuilder::createEventWithName_forSession(name, nullptr, "A", context());
        ASSERT_TRUE(context().save(event));
    }
    const auto stored = bodies("A");
    EXPECT_EQ(stored[0]["timestamp"], stored[1]["timestamp"]);
    EXPECT_EQ(stored[0]["event"], "first");
}

TEST_F(TXEventBuilderTest, EventBelongsToTheCurrentSessionAndIsNotYetStored) {
    const TXEvent event = TXEventBuilder::createEventWithName("name", nullptr, context());
    EXPECT_EQ(event.ssid, manager().currentSession());
    EXPECT_EQ(event.row, 0);
    EXPECT_TRUE(bodies(*event.ssid).empty());
}

TEST_F(TXEventBuilderTest, MissingNameIsWarnedOf) {
    const TXEvent event = TXEventBuilder::createEventWithName(std::nullopt, nullptr, context());
    EXPECT_TRUE(event.body);
    EXPECT_TRUE(log.contains("Event name must be provided"));
}

TEST_F(TXEventBuilderTest, DataThatJsonCannotCarryIsWarnedOfAndTheEventIsMade) {
    const std::vector<Dictionary> bad = {
        {{"k", "\xFF\xFE"}},
        {{"k", std::numeric_limits<double>::quiet_NaN()}},
        {{"k", Dictionary::array({1, {{"deep", std::numeric_limits<double>::infinity()}}})}},
        Dictionary::array({1, 2}),
        "text",
    };
    for (const Dictionary& data : bad) {
        log.clear();
        EXPECT_EQ(built(data)["data"], "");
        ASSERT_EQ(log.texts().size(), 1U);
        EXPECT_THAT(log.texts()[0],
                    MatchesRegex("Telemetrix Debug: WARNINGS: 'eventDataToString' "
                                 "'event/TXEventBuilder':'[0-9]+', Event data format error .+"));
    }
}

TEST_F(TXEventBuilderTest, NameThatIsNoTextGivesAnEventWithoutBody) {
    EXPECT_FALSE(TXEventBuilder::jsonStringForEvent("\xC3", nullptr));
    TXEvent event = TXEventBuilder::createEventWithName("\xC3", nullptr, context());
    EXPECT_FALSE(event.body);
    EXPECT_TRUE(context().save(event));
}

TEST_F(TXEventBuilderTest, StandardNamesStandInTheirOrder) {
    EXPECT_THAT(events::kAll, ::testing::ElementsAre("app_open", "app_install", "session_end", "device_info",
                                                     "geo_info", "app_info", "app_crash", "scene_start",
                                                     "button_click", "level_start", "level_win", "level_lose",
                                                     "loot_append", "loot_consume", "game_over"));
}

}  // namespace
}  // namespace trimora::analytics
