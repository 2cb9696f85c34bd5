#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include "analytics/TelemetrixForTests.h"

namespace trimora::analytics {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class StoreTest : public TelemetrixTest {
 protected:
    static TXAnalyticsSSIDDataAccessDefault& ssids() {
        return TXAnalyticsDBManager::sharedManager().ssidDataAccess();
    }
    static TXAnalyticsEventDataAccessDefault& events() {
        return TXAnalyticsDBManager::sharedManager().eventDataAccess();
    }
    static TXEvent event(const std::string& ssid, const std::string& body) { return {0, ssid, body}; }
    static unsigned modeOf(const std::filesystem::path& path) {
        struct stat status = {};
        ::stat(path.c_str(), &status);
        return status.st_mode & 0777U;
    }
};

TEST_F(StoreTest, NewIdGetsOneRowAndASecondCallUpdatesIt) {
    ssids().saveOrUpdateSSID("A", SessionStatus::active);
    const double begun = sessions().front().changeStatusTime;
    time.advance(2.5);
    ssids().saveOrUpdateSSID("A", SessionStatus::done);
    ASSERT_THAT(sessions(), SizeIs(1));
    EXPECT_EQ(sessions().front().status, 1);
    EXPECT_EQ(sessions().front().changeStatusTime, begun + 2.5);
}

TEST_F(StoreTest, TwoRowsOfOneNameAreReportedAndOnlyTheFirstIsUpdated) {
    for (int i = 0; i < 2; ++i) {
        TXSSID row;
        row.name = "A";
        ASSERT_TRUE(context().save(row));
    }
    ssids().saveOrUpdateSSID("A", SessionStatus::sending);
    EXPECT_EQ(sessions()[0].status, 2);
    EXPECT_EQ(sessions()[1].status, 0);
    const auto warnings = log.texts(foundation::log::Level::warning);
    ASSERT_THAT(warnings, SizeIs(1));
    EXPECT_THAT(warnings[0], ::testing::MatchesRegex(
                                 "Telemetrix Debug: WARNINGS: 'writeStatus' "
                                 "'store/TXAnalyticsSSIDDataAccessDefault':'[0-9]+', Internal Inconsistency. "
                                 "SSID object for any ssid id should be only one at whole application"));
}

TEST_F(StoreTest, DeletingASessionWithoutEventsDeletesOnlyItsRow) {
    TXEvent other = event("B", "{}");
    events().saveEvent(other, context());
    ssids().saveOrUpdateSSID("A", SessionStatus::done);
    TXAnalyticsDBManager::sharedManager().deleteAllDataForSession("A");
    EXPECT_THAT(sessions(), IsEmpty());
    EXPECT_THAT(bodies("B"), SizeIs(1));
}

TEST_F(StoreTest, DeletingASessionDeletesItsEventsAndNoOthers) {
    leaveSession("A", 1, 0);
    leaveSession("B", 1, 0);
    TXAnalyticsDBManager::sharedManager().deleteAllDataForSession("A");
    EXPECT_THAT(bodies("A"), IsEmpty());
    EXPECT_THAT(bodies("B"), SizeIs(1));
    EXPECT_THAT(sessions(), SizeIs(1));
}

TEST_F(StoreTest, EventsComeBackInTheOrderInWhichTheyWereSaved) {
    for (const char* body : {R"({"event":"3"})", R"({"event":"1"})", R"({"event":"2"})"}) {
        TXEvent saved = event("A", body);
        EXPECT_TRUE(events().saveEvent(saved, context()));
    }
    EXPECT_THAT(names("A"), ElementsAre("3", "1", "2"));
}

TEST_F(StoreTest, SavingAnEventAgainReplacesItInItsPlace) {
    TXEvent first = event("A", R"({"event":"1"})");
    TXEvent second = event("A", R"({"event":"2"})");
    events().saveEvent(first, context());
    events().saveEvent(second, context());
    first.body = R"({"event":"new"})";
    events().saveEvent(first, context());
    EXPECT_THAT(names("A"), ElementsAre("new", "2"));
}

TEST_F(StoreTest, FetchWithoutPropertyValuesTellsPlacesOnly) {
    leaveSession("A", 1, 0);
    const auto found = events().eventsForSSIDString("A", PropertyValues::left, context());
    ASSERT_THAT(found, SizeIs(1));
    EXPECT_GT(found[0].row, 0);
    EXPECT_FALSE(found[0].body);
    EXPECT_FALSE(ssids().ssidWithName("A", PropertyValues::left, context()).front().name);
}

TEST_F(StoreTest, SessionsAreFoundByStatusByNameAndAltogether) {
    leaveSession("A", 0, 0);
    leaveSession("B", 1, 0);
    leaveSession("C", 1, 0);
    EXPECT_THAT(ssids().allSSIDWithStatus(SessionStatus::done, PropertyValues::fetched, context()),
                SizeIs(2));
    EXPECT_THAT(ssids().ssidWithName("C", PropertyValues::fetched, context()), SizeIs(1));
    EXPECT_THAT(ssids().allSSID(PropertyValues::fetched, context()), SizeIs(3));
    ssids().deleteSSIDObject(ssids().ssidWithName("C", PropertyValues::left, context()).front(), context());
    ssids().deleteSSID("B", context());
    EXPECT_THAT(sessions(), SizeIs(1));
}

TEST_F(StoreTest, DeletingEverythingEmptiesBothEntitiesAndWipesTheFiles) {
    leaveSession("the-session-id", 1, 0);
    events().deleteEventsForSSIDString("nobody", context());
    TXAnalyticsDBManager::sharedManager().deleteAllObjects();
    EXPECT_THAT(sessions(), IsEmpty());
    EXPECT_THAT(bodies("the-session-id"), IsEmpty());
    std::string raw;
    for (const auto& file : std::filesystem::directory_iterator(home.path() / "Trimora")) {
        std::ifstream stream(file.path(), std::ios::binary);
        raw.append(std::istreambuf_iterator<char>(stream), {});
    }
    EXPECT_THAT(raw, ::testing::Not(HasSubstr("the-session-id")));
}

TEST_F(StoreTest, LiesInTheApplicationsFolderForItsOwnerAlone) {
    leaveSession("A", 1, 0);
    const auto file = TXAnalyticsCoreDataManager::sharedManager().dbFileURL();
    EXPECT_EQ(file, home.path() / "Trimora" / "telemetrix.db");
    EXPECT_EQ(modeOf(file.parent_path()), 0700U);
    for (const auto& entry : std::filesystem::directory_iterator(file.parent_path()))
        EXPECT_EQ(modeOf(entry.path()), 0600U) << entry.path();
}

TEST_F(StoreTest, FolderBearsTheBundleNameWhereThereIsNoDisplayName) {
    bundle.info.erase("CFBundleDisplayName");
    EXPECT_EQ(TXAnalyticsCoreDataManager::sharedManager().dbFileURL(),
              home.path() / "trimora" / "telemetrix.db");
}

TEST_F(StoreTest, FolderThatCannotBeMadeIsWarnedOf) {
    std::ofstream(home.path() / "Trimora") << "in the way";
    EXPECT_FALSE(context().allSessions(PropertyValues::fetched));
    EXPECT_TRUE(log.contains("Wasn't able to create dir " + (home.path() / "Trimora").string()));
}

TEST_F(StoreTest, ModelResourceIsFoundOrWarnedOf) {
    const auto& manager = TXAnalyticsCoreDataManager::sharedManager();
    EXPECT_FALSE(manager.coreDataModelFileURL());
    EXPECT_TRUE(log.contains("Wasn't able to find TelemetrixModel.momd"));
    bundle.resources["TelemetrixModel.momd"] = "/opt/model";
    EXPECT_EQ(manager.coreDataModelFileURL(), "/opt/model");
}

TEST_F(StoreTest, EntitiesAreMadeByName) {
    using Manager = TXAnalyticsCoreDataManager;
    EXPECT_TRUE(std::holds_alternative<TXEvent>(*Manager::entityForName("TXEvent", context())));
    EXPECT_TRUE(std::holds_alternative<TXSSID>(*Manager::entityForName("TXSSID", context())));
    EXPECT_FALSE(Manager::entityForName("TXOther", context()));
}

TEST_F(StoreTest, RequestOfASessionIsTheSameBytesAfterReopening) {
    leaveSession("A", 1, 0);
    leaveSession("A2", 1, 0);
    TXEvent more = event("A", R"({"event":"é\n","z":1,"a":2})");
    events().saveEvent(more, context());
    const auto before = *context().eventsOfSession("A", PropertyValues::fetched);
    quit();
    install();
    const auto after = *context().eventsOfSession("A", PropertyValues::fetched);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_EQ(before[i].body, after[i].body);
}

TEST_F(StoreTest, ReaderOfTheStoreChangesNothing) {
    leaveSession("A", 1, 0);
    StoreSettings reading;
    reading.access = StoreSettings::Access::readOnly;
    StoreCoordinator coordinator(TXAnalyticsCoreDataManager::sharedManager().dbFileURL(), reading, time);
    ManagedObjectContext reader(coordinator);
    EXPECT_THAT(*reader.eventsOfSession("A", PropertyValues::fetched), SizeIs(1));
    TXEvent refused = event("A", "{}");
    EXPECT_FALSE(reader.save(refused));
    EXPECT_EQ(refused.row, 0);
    EXPECT_EQ(coordinator.locks(), nullptr);
    EXPECT_THAT(bodies("A"), SizeIs(1));
}

TEST_F(StoreTest, FailedWorkInATransactionLeavesNothing) {
    const auto done = context().performAndWait([&]() -> foundation::Result<void> {
        leaveSession("A", 1, 0);
        return foundation::Error{"no"};
    });
    EXPECT_FALSE(done);
    EXPECT_THAT(sessions(), IsEmpty());
}

TEST_F(StoreTest, AbsentTextsComeBackAbsent) {
    TXEvent bare;
    bare.ssid = "A";
    ASSERT_TRUE(context().save(bare));
    EXPECT_FALSE(context().eventsOfSession("A", PropertyValues::fetched)->front().body);
    bare.body = "";
    ASSERT_TRUE(context().save(bare));
    EXPECT_EQ(context().eventsOfSession("A", PropertyValues::fetched)->front().body, "");
}

}  // namespace
}  // namespace trimora::analytics
