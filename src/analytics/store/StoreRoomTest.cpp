#include "analytics/store/StoreRoom.h"

#include "analytics/store/StoreFaultsForTests.h"

namespace trimora::analytics {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::SizeIs;

class StoreRoomTest : public StoreFaultsTest {};

TEST_F(StoreRoomTest, OldestFinishedSessionsMakeRoomForNewEvents) {
    storeSettings.maxEvents = 10;
    installAgain();
    leaveSession("younger", 1, 10);
    leaveSession("older", 1, 20);
    leaveSession("live", 0, 30);
    for (int i = 0; i < 7; ++i)
        ASSERT_TRUE(save("x", "live"));
    EXPECT_EQ(statusOf("older"), 1);
    ASSERT_TRUE(save("x", "live"));
    EXPECT_EQ(statusOf("older"), -1);
    EXPECT_EQ(countEvents("older"), 0U);
    EXPECT_EQ(statusOf("younger"), 1);
    EXPECT_THAT(log.texts(),
                Contains("Telemetrix: Warning! Store is full, dropped 1 finished sessions and 1 events"));
}

TEST_F(StoreRoomTest, LiveSessionThatFillsTheStoreIsKeptAndGrowsNoFurther) {
    storeSettings.maxBytes = 1000;
    installAgain();
    leaveSession("live", 0, 0);
    ASSERT_TRUE(save(std::string(900, 'x'), "live"));
    EXPECT_FALSE(save(std::string(200, 'y'), "live"));
    EXPECT_THAT(log.texts(),
                Contains("Telemetrix: Warning! Wasn't able to save event with reason store is full"));
    EXPECT_EQ(countEvents("live"), 2U);
    EXPECT_TRUE(save("small", "live"));
}

TEST_F(StoreRoomTest, EventThatDoesNotFitTakesNoOtherWithIt) {
    storeSettings.maxBytes = 1000;
    installAgain();
    leaveSession("live", 0, 0);
    std::vector<TXEvent> together = {
        {0, "live", "first"}, {0, "live", std::string(2000, 'x')}, {0, "live", "last"}};
    TXAnalyticsDBManager::sharedManager().eventDataAccess().saveEvents(together, context());
    const auto stored = context().eventsOfSession("live", PropertyValues::fetched);
    ASSERT_THAT(*stored, SizeIs(3));
    EXPECT_EQ((*stored)[1].body, "first");
    EXPECT_EQ((*stored)[2].body, "last");
    EXPECT_THAT(log.texts(),
                ElementsAre("Telemetrix: Warning! Wasn't able to save event with reason store is full"));
}

TEST_F(StoreRoomTest, EventsOfNoSessionMakeRoomBeforeALiveSessionMust) {
    storeSettings.maxEvents = 3;
    installAgain();
    ASSERT_TRUE(save("1", "gone"));
    leaveSession("live", 0, 0);
    ASSERT_TRUE(save("3", "live"));
    ASSERT_TRUE(save("4", "live"));
    EXPECT_EQ(countEvents("gone"), 0U);
    EXPECT_EQ(countEvents("live"), 3U);
}

TEST_F(StoreRoomTest, NumberOfSessionsIsLimitedToo) {
    storeSettings.maxSessions = 3;
    installAgain();
    for (int i = 0; i < 10; ++i)
        leaveSession("session " + std::to_string(i), 1, 100 - i);
    EXPECT_THAT(sessions(), SizeIs(3));
    EXPECT_EQ(sessions().front().name, "session 7");
}

}  // namespace
}  // namespace trimora::analytics
