#include <sqlite3.h>

#include <random>

#include "analytics/store/StoreFaultsForTests.h"
#include "testing/Seed.h"

// What the store does with a file that is damaged or not its own.
namespace trimora::analytics {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

class StoreDamageTest : public StoreFaultsTest {};

TEST_F(StoreDamageTest, ForeignFileIsMovedAsideWholeAndWarnedOfOnce) {
    const std::string foreign(5000, 'z');
    writeFile(foreign);
    EXPECT_TRUE(save("stored"));
    ASSERT_THAT(movedAside(), SizeIs(1));
    EXPECT_EQ(contentsOf(movedAside()[0]), foreign);
    EXPECT_EQ(movedAside()[0].filename(), "telemetrix.db.damaged-20260101-120000");
    EXPECT_THAT(log.texts(), SizeIs(1));
    EXPECT_THAT(log.texts()[0], StartsWith("Telemetrix: Warning! Store was damaged ("));
    EXPECT_EQ(countEvents(), 1U);
}

TEST_F(StoreDamageTest, AnotherProgramsDatabaseIsMovedAside) {
    std::filesystem::create_directories(file().parent_path());
    sqlite3* other = nullptr;
    sqlite3_open(file().c_str(), &other);
    sqlite3_exec(other, "CREATE TABLE recipes (name TEXT)", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    EXPECT_TRUE(save("stored"));
    EXPECT_THAT(movedAside(), SizeIs(1));
    EXPECT_TRUE(log.contains("file is another program's database"));
}

TEST_F(StoreDamageTest, StoreOfANewerVersionIsLeftAlone) {
    ASSERT_TRUE(save("old"));
    quit();
    sqlite3* other = nullptr;
    sqlite3_open(file().c_str(), &other);
    sqlite3_exec(other, "PRAGMA user_version = 99", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    install();
    EXPECT_FALSE(save("new"));
    EXPECT_TRUE(log.contains("store was written by a newer version"));
    EXPECT_THAT(movedAside(), IsEmpty());
}

TEST_F(StoreDamageTest, DamagedPagesAreFoundAtOpeningAndMovedAside) {
    for (int i = 0; i < 200; ++i)
        ASSERT_TRUE(save(std::string(1000, 'a')));
    quit();
    std::string bytes = contentsOf(file());
    std::fill(bytes.begin() + 8192, bytes.end() - 4096, '\x5a');
    writeFile(bytes);
    install();
    EXPECT_TRUE(save("stored"));
    EXPECT_EQ(countEvents(), 1U);
    ASSERT_THAT(movedAside(), SizeIs(1));
    EXPECT_EQ(contentsOf(movedAside()[0]), bytes);
}

TEST_F(StoreDamageTest, RandomDamageNeverStopsRecording) {
    std::mt19937_64 random = testing::seededGenerator();
    for (int round = 0; round < 30; ++round) {
        ASSERT_TRUE(save("event"));
        quit();
        std::string bytes = contentsOf(file());
        // The header stays: it may turn the file into a newer version's, which is left alone.
        for (int i = 0; i < 40; ++i)
            bytes[100 + random() % (bytes.size() - 100)] = static_cast<char>(random());
        if (round % 3 == 0)
            bytes.resize(random() % bytes.size());
        writeFile(bytes);
        install();
        EXPECT_TRUE(save("stored")) << "round " << round << ": "
                                    << (log.texts().empty() ? "" : log.texts().back());
        EXPECT_EQ(integrity(), "ok") << "round " << round;
        quit();
        std::filesystem::remove_all(file().parent_path());
        install();
    }
}

TEST_F(StoreDamageTest, SecondNameIsFoundForASecondDamagedFile) {
    for (int i = 0; i < 2; ++i) {
        writeFile("nonsense that is no database at all");
        installAgain();
        EXPECT_TRUE(save("stored"));
        quit();
        for (const char* ending : {"-wal", "-shm"})
            std::filesystem::remove(file().string() + ending);
    }
    EXPECT_THAT(movedAside(), SizeIs(2));
    install();
}

/// Writes as another program would.
void writeDirectly(const std::filesystem::path& file, const char* sql) {
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &other), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(other, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(other);
    sqlite3_close(other);
}

TEST_F(StoreDamageTest, DamageThatComesWhileTheStoreIsOpenIsMovedAsideToo) {
    for (int i = 0; i < 200; ++i)
        ASSERT_TRUE(save(std::string(1000, 'a')));
    installAgain();
    ASSERT_EQ(countEvents(), 200U);
    writeDirectly(
        file(), "DELETE FROM TXSSID; INSERT INTO TXSSID (name, status, changeStatusTime) VALUES ('B', 1, 0)");
    std::string bytes = contentsOf(file());
    std::fill(bytes.begin() + 4096, bytes.end(), '\x5a');
    std::fstream(file(), std::ios::in | std::ios::out | std::ios::binary) << bytes;
    EXPECT_TRUE(save("stored"));
    EXPECT_EQ(countEvents(), 1U);
    EXPECT_THAT(movedAside(), SizeIs(1));
}

TEST_F(StoreDamageTest, LostTotalsAreCountedAnewAndNothingElseIsLost) {
    ASSERT_TRUE(save("before"));
    writeDirectly(file(), "DELETE FROM Totals");
    EXPECT_TRUE(save("after"));
    EXPECT_EQ(countEvents(), 2U);
    EXPECT_THAT(movedAside(), IsEmpty());
}

TEST_F(StoreDamageTest, WithoutALockFileEventsAreStoredButNothingIsReplaced) {
    std::filesystem::create_directories(file().parent_path() / "telemetrix.lock");
    ASSERT_TRUE(save("stored"));
    EXPECT_EQ(countEvents(), 1U);
    TXAnalyticsDBManager::sharedManager().ssidDataAccess().saveOrUpdateSSID("A", SessionStatus::active);
    EXPECT_EQ(sessions().front().owner, 0);
    EXPECT_TRUE(log.contains("Telemetrix: the lock file cannot be opened"));
    quit();
    writeFile("nonsense that is no database at all");
    install();
    EXPECT_FALSE(save("lost"));
    EXPECT_THAT(movedAside(), IsEmpty());
    EXPECT_EQ(contentsOf(file()), "nonsense that is no database at all");
}

}  // namespace
}  // namespace trimora::analytics
