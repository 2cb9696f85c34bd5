#include <fcntl.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>

#include "analytics/TelemetrixForTests.h"
#include "testing/Seed.h"

// What the store does when the machine fails it: killed processes, full and broken disks, damaged files,
// other processes.
namespace trimora::analytics {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

class StoreFaultsTest : public TelemetrixTest {
 protected:
    StoreFaultsTest() { storeSettings.busyMilliseconds = 50; }

    void installAgain() {
        quit();
        install();
    }
    [[nodiscard]] std::filesystem::path file() const { return home.path() / "Trimora" / "telemetrix.db"; }

    static bool save(const std::string& body, const std::string& session = "A") {
        TXEvent event{0, session, body};
        return TXAnalyticsDBManager::sharedManager().eventDataAccess().saveEvent(event, context());
    }
    static std::size_t countEvents(const std::string& session = "A") {
        const auto found = context().eventsOfSession(session, PropertyValues::fetched);
        return found ? found->size() : 0;
    }
    static std::string integrity() {
        std::string answer;
        const auto done =
            TXAnalyticsCoreDataManager::sharedManager().storeCoordinator().read([&](auto& database) {
                auto check = database.statement("PRAGMA integrity_check");
                while (check.step())
                    answer += check.text(0).value_or("");
                return check.result();
            });
        return done ? answer : done.error().message;
    }
    [[nodiscard]] std::vector<std::filesystem::path> movedAside() const {
        std::vector<std::filesystem::path> found;
        for (const auto& entry : std::filesystem::directory_iterator(file().parent_path())) {
            if (entry.path().string().find(".damaged-") != std::string::npos)
                found.push_back(entry.path());
        }
        return found;
    }
    void writeFile(const std::string& contents) const {
        std::filesystem::create_directories(file().parent_path());
        std::ofstream(file(), std::ios::binary) << contents;
    }
    static std::string contentsOf(const std::filesystem::path& path) {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

/// A child process that stores numbered events of one round and tells after each that it is stored.
class Writer {
 public:
    Writer(const std::filesystem::path& file, int round, volatile int* acknowledged) {
        child_ = ::fork();
        if (child_ == 0)
            write(file, round, acknowledged);
    }
    void kill() const {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
    }

 private:
    [[noreturn]] static void write(const std::filesystem::path& file, int round, volatile int* acknowledged) {
        const foundation::VirtualTime clock;
        StoreCoordinator coordinator(file, {}, clock);
        ManagedObjectContext context(coordinator);
        for (int number = 0;; ++number) {
            TXEvent event{0, "round " + std::to_string(round), std::to_string(number)};
            if (!context.save(event))
                std::_Exit(1);
            *acknowledged = number + 1;
        }
    }
    pid_t child_;
};

TEST_F(StoreFaultsTest, NoAcknowledgedEventIsLostInAThousandKills) {
    constexpr int kRounds = 1000;
    void* const shared =
        ::mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    auto* const acknowledged = static_cast<volatile int*>(shared);
    std::mt19937_64 random = testing::seededGenerator();
    std::uniform_int_distribution<int> microseconds(0, 4'000);
    std::filesystem::create_directories(file().parent_path());
    std::size_t total = 0;
    for (int round = 0; round < kRounds; ++round) {
        *acknowledged = 0;
        const Writer writer(file(), round, acknowledged);
        // Every fourth dies while it opens the store, the others while they write.
        while (round % 4 != 0 && *acknowledged == 0)
            ::usleep(50);
        ::usleep(static_cast<useconds_t>(microseconds(random)));
        writer.kill();
        const int promised = *acknowledged;
        const auto found =
            context().eventsOfSession("round " + std::to_string(round), PropertyValues::fetched);
        ASSERT_TRUE(found) << found.error().message;
        // One more than promised may be there: stored, and killed before it could tell.
        ASSERT_GE(static_cast<int>(found->size()), promised) << "round " << round;
        ASSERT_LE(static_cast<int>(found->size()), promised + 1) << "round " << round;
        for (std::size_t i = 0; i < found->size(); ++i)
            ASSERT_EQ((*found)[i].body, std::to_string(i)) << "round " << round;
        total += found->size();
        if (round % 50 == 0) {
            ASSERT_EQ(integrity(), "ok");
        }
    }
    EXPECT_EQ(integrity(), "ok");
    EXPECT_GT(total, 0U);
    std::printf("%d kills, %zu events stored\n", kRounds, total);
    ::munmap(shared, sizeof(int));
    EXPECT_THAT(movedAside(), IsEmpty());
}

TEST_F(StoreFaultsTest, FullDiskLosesOnlyWhatWasNotAcknowledged) {
    ASSERT_TRUE(save("before"));
    struct rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit full = {256 * 1024, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &full);
    int stored = 0;
    int refused = 0;
    for (int i = 0; i < 400; ++i)
        (save(std::string(4096, 'x')) ? stored : refused)++;
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_GT(refused, 0);
    EXPECT_THAT(log.texts(),
                Contains(StartsWith("Telemetrix: Warning! Wasn't able to save event with reason ")));
    EXPECT_TRUE(save("after"));
    EXPECT_EQ(countEvents(), static_cast<std::size_t>(stored + 2));
    EXPECT_EQ(integrity(), "ok");
}

/// The system's own file layer, in which single operations can be made to fail.
class FailingFiles {
 public:
    FailingFiles() {
        original = sqlite3_vfs_find(nullptr);
        layer = *original;
        layer.zName = "failing";
        layer.pNext = nullptr;
        layer.xOpen = open;
        sqlite3_vfs_register(&layer, 1);
        failWrites = false;
        readOnly = false;
    }
    ~FailingFiles() {
        sqlite3_vfs_register(original, 1);
        sqlite3_vfs_unregister(&layer);
    }

    static inline std::atomic<bool> failWrites;
    static inline std::atomic<bool> readOnly;

 private:
    static int open(sqlite3_vfs* /*self*/, const char* name, sqlite3_file* file, int flags, int* out) {
        if (readOnly && (flags & SQLITE_OPEN_READWRITE) != 0)
            return SQLITE_CANTOPEN;
        const int code = original->xOpen(original, name, file, flags, out);
        if (code == SQLITE_OK && file->pMethods != nullptr)
            replaceMethods(file, (flags & SQLITE_OPEN_MAIN_DB) != 0 ? 0 : 1);
        return code;
    }
    /// The database itself and the files beside it have different operations.
    static void replaceMethods(sqlite3_file* file, std::size_t kind) {
        methods[kind] = *file->pMethods;
        plainWrite = methods[kind].xWrite;
        methods[kind].xWrite = write;
        file->pMethods = &methods[kind];
    }
    static int write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 at) {
        return failWrites ? SQLITE_IOERR_WRITE : plainWrite(file, bytes, size, at);
    }

    static inline sqlite3_vfs* original;
    static inline sqlite3_vfs layer;
    static inline sqlite3_io_methods methods[2];
    static inline int (*plainWrite)(sqlite3_file*, const void*, int, sqlite3_int64);
};

TEST_F(StoreFaultsTest, WriteErrorsPassWithoutATrace) {
    const FailingFiles files;
    ASSERT_TRUE(save("before"));
    FailingFiles::failWrites = true;
    EXPECT_FALSE(save("lost"));
    TXAnalyticsDBManager::sharedManager().ssidDataAccess().saveOrUpdateSSID("A", SessionStatus::done);
    FailingFiles::failWrites = false;
    EXPECT_EQ(statusOf("A"), -1);
    EXPECT_TRUE(save("after"));
    EXPECT_EQ(countEvents(), 2U);
    EXPECT_EQ(integrity(), "ok");
    quit();
}

TEST_F(StoreFaultsTest, ReadOnlyStoreIsWrittenAgainWhenItMayBe) {
    ASSERT_TRUE(save("before"));
    quit();
    const FailingFiles files;
    FailingFiles::readOnly = true;
    install();
    EXPECT_FALSE(save("lost"));
    EXPECT_TRUE(log.contains("error add persistent store for url file://" + file().string()));
    FailingFiles::readOnly = false;
    EXPECT_TRUE(save("after"));
    EXPECT_EQ(countEvents(), 2U);
    quit();
}

TEST_F(StoreFaultsTest, LastingFaultIsLoggedOnceAsAFaultOfTheStore) {
    std::filesystem::create_directories(file());
    for (int i = 0; i < 10; ++i)
        EXPECT_FALSE(save("lost"));
    int lines = 0;
    for (const std::string& text : log.texts())
        lines += text.find("error add persistent store") != std::string::npos ? 1 : 0;
    EXPECT_EQ(lines, 1);
}

TEST_F(StoreFaultsTest, FolderInTheDatabasesPlaceIsLeftAloneUntilItGoes) {
    std::filesystem::create_directories(file());
    start();
    Telemetrix::logEvent("lost");
    settle();
    EXPECT_TRUE(std::filesystem::is_directory(file()));
    EXPECT_THAT(movedAside(), IsEmpty());
    std::filesystem::remove(file());
    Telemetrix::logEvent("stored");
    settle();
    EXPECT_THAT(currentNames(), Contains("stored."));
}

TEST_F(StoreFaultsTest, FolderThatVanishedIsMadeAgain) {
    std::filesystem::remove_all(home.path());
    ASSERT_TRUE(save("stored"));
    EXPECT_EQ(countEvents(), 1U);
}

TEST_F(StoreFaultsTest, LockedStoreCostsItsCallersNothing) {
    start();
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(file().c_str(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    const auto begun = std::chrono::steady_clock::now();
    Telemetrix::logEvent("queued only");
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::milliseconds(50));
    settle();
    EXPECT_THAT(log.texts(),
                Contains(StartsWith("Telemetrix: Warning! Wasn't able to save event with reason ")));
    sqlite3_exec(other, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    Telemetrix::logEvent("stored");
    settle();
    EXPECT_THAT(currentNames(), Contains("stored."));
    EXPECT_EQ(integrity(), "ok");
}

TEST_F(StoreFaultsTest, ForeignFileIsMovedAsideWholeAndWarnedOfOnce) {
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

TEST_F(StoreFaultsTest, AnotherProgramsDatabaseIsMovedAside) {
    std::filesystem::create_directories(file().parent_path());
    sqlite3* other = nullptr;
    sqlite3_open(file().c_str(), &other);
    sqlite3_exec(other, "CREATE TABLE recipes (name TEXT)", nullptr, nullptr, nullptr);
    sqlite3_close(other);
    EXPECT_TRUE(save("stored"));
    EXPECT_THAT(movedAside(), SizeIs(1));
    EXPECT_TRUE(log.contains("file is another program's database"));
}

TEST_F(StoreFaultsTest, StoreOfANewerVersionIsLeftAlone) {
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

TEST_F(StoreFaultsTest, DamagedPagesAreFoundAtOpeningAndMovedAside) {
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

TEST_F(StoreFaultsTest, RandomDamageNeverStopsRecording) {
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

TEST_F(StoreFaultsTest, SecondNameIsFoundForASecondDamagedFile) {
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

TEST_F(StoreFaultsTest, OldestFinishedSessionsMakeRoomForNewEvents) {
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

TEST_F(StoreFaultsTest, LiveSessionThatFillsTheStoreIsKeptAndGrowsNoFurther) {
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

TEST_F(StoreFaultsTest, EventsOfNoSessionMakeRoomBeforeALiveSessionMust) {
    storeSettings.maxEvents = 3;
    installAgain();
    ASSERT_TRUE(save("1", "gone"));
    leaveSession("live", 0, 0);
    ASSERT_TRUE(save("3", "live"));
    ASSERT_TRUE(save("4", "live"));
    EXPECT_EQ(countEvents("gone"), 0U);
    EXPECT_EQ(countEvents("live"), 3U);
}

TEST_F(StoreFaultsTest, NumberOfSessionsIsLimitedToo) {
    storeSettings.maxSessions = 3;
    installAgain();
    for (int i = 0; i < 10; ++i)
        leaveSession("session " + std::to_string(i), 1, 100 - i);
    EXPECT_THAT(sessions(), SizeIs(3));
    EXPECT_EQ(sessions().front().name, "session 7");
}

}  // namespace
}  // namespace trimora::analytics
