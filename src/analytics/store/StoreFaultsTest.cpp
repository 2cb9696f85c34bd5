#include <sched.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <functional>
#include <thread>

#include "analytics/store/StoreFaultsForTests.h"

// What the store does when the machine fails it: full and broken disks, other processes.
namespace trimora::analytics {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

/// Saves more events than fit; true for each that was stored.
std::vector<bool> fillStore() {
    std::vector<bool> outcomes;
    for (int i = 0; i < 400; ++i) {
        TXEvent event{0, "A", std::string(4096, 'x')};
        auto& context = TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
        outcomes.push_back(TXAnalyticsDBManager::sharedManager().eventDataAccess().saveEvent(event, context));
    }
    return outcomes;
}

/// Runs the test on a thread that sees a file system of 512 KiB in this folder.
void onSmallFileSystem(const std::filesystem::path& folder, const std::function<void()>& test) {
    bool allowed = false;
    std::thread thread([&] {
        allowed = ::unshare(CLONE_NEWNS) == 0 &&
                  ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                  ::mount("tmpfs", folder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, "size=512k") == 0;
        if (allowed)
            test();
    });
    thread.join();
    if (!allowed) {
        std::printf("not permitted to mount a file system\n");
        GTEST_SKIP() << "not permitted to mount a file system";
    }
}

TEST_F(StoreFaultsTest, FullDiskLosesOnlyWhatWasNotAcknowledged) {
    onSmallFileSystem(home.path(), [&] {
        const auto ballast = home.path() / "ballast";
        std::ofstream(ballast) << std::string(128 * 1024, 'b');
        ASSERT_TRUE(save("before"));
        const std::vector<bool> outcomes = fillStore();
        EXPECT_THAT(outcomes, AllOf(Contains(true), Contains(false)));
        EXPECT_THAT(
            log.texts(),
            Contains("Telemetrix: Warning! Wasn't able to save event with reason database or disk is full"));
        std::filesystem::remove(ballast);
        EXPECT_TRUE(save("after"));
        EXPECT_EQ(countEvents(),
                  static_cast<std::size_t>(std::count(outcomes.begin(), outcomes.end(), true)) + 2);
        EXPECT_EQ(integrity(), "ok");
        EXPECT_THAT(movedAside(), IsEmpty());
        quit();
    });
}

TEST_F(StoreFaultsTest, LimitOnTheSizeOfFilesIsBorneAsAFullDiskIs) {
    ASSERT_TRUE(save("before"));
    struct rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit full = {256 * 1024, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &full);
    const std::vector<bool> outcomes = fillStore();
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_THAT(outcomes, Contains(false));
    EXPECT_THAT(log.texts(),
                Contains(StartsWith("Telemetrix: Warning! Wasn't able to save event with reason ")));
    EXPECT_TRUE(save("after"));
    EXPECT_EQ(countEvents(),
              static_cast<std::size_t>(std::count(outcomes.begin(), outcomes.end(), true)) + 2);
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

TEST_F(StoreFaultsTest, StoreThatCouldNotBeBegunIsBegunWhenTheFaultEnds) {
    const FailingFiles files;
    FailingFiles::failWrites = true;
    EXPECT_FALSE(save("lost"));
    FailingFiles::failWrites = false;
    EXPECT_TRUE(save("stored"));
    EXPECT_EQ(countEvents(), 1U);
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

/// Another process that has the store's database to itself until it is told to let go.
class LockingProcess {
 public:
    LockingProcess(const std::filesystem::path& file, const char* lock) {
        if (::pipe(told_) != 0 || ::pipe(tells_) != 0)
            return;
        child_ = ::fork();
        if (child_ == 0)
            hold(file, lock);
        holds_ = receive(tells_[0]) == 'L';
    }
    ~LockingProcess() {
        letGo();
        for (const int end : {told_[0], told_[1], tells_[0], tells_[1]})
            ::close(end);
    }
    [[nodiscard]] bool holds() const { return holds_; }
    void letGo() {
        if (child_ < 0)
            return;
        send(told_[1], 'G');
        ::waitpid(child_, nullptr, 0);
        child_ = -1;
    }

 private:
    [[noreturn]] void hold(const std::filesystem::path& file, const char* lock) const {
        sqlite3* database = nullptr;
        const bool locked = sqlite3_open(file.c_str(), &database) == SQLITE_OK &&
                            sqlite3_exec(database, lock, nullptr, nullptr, nullptr) == SQLITE_OK;
        send(tells_[1], locked ? 'L' : 'F');
        (void)receive(told_[0]);
        sqlite3_close(database);
        std::_Exit(0);
    }
    static void send(int pipe, char word) { (void)!::write(pipe, &word, 1); }
    static char receive(int pipe) {
        char word = 0;
        return ::read(pipe, &word, 1) == 1 ? word : '\0';
    }

    int told_[2] = {-1, -1};
    int tells_[2] = {-1, -1};
    pid_t child_ = -1;
    bool holds_ = false;
};

TEST_F(StoreFaultsTest, EventsOfAStoreThatAnotherProcessLocksAreLostWithALineEach) {
    start();
    LockingProcess other(file(), "BEGIN IMMEDIATE");
    ASSERT_TRUE(other.holds());
    for (int i = 0; i < 3; ++i)
        Telemetrix::logEvent("lost");
    EXPECT_THAT(log.texts(), IsEmpty());  // the calls are over, and nobody has waited for the lock
    settle();
    EXPECT_THAT(log.texts(), SizeIs(3));
    EXPECT_THAT(log.texts(),
                Each("Telemetrix: Warning! Wasn't able to save event with reason database is locked"));
    other.letGo();
    Telemetrix::logEvent("stored");
    settle();
    EXPECT_THAT(currentNames(), AllOf(Contains("stored."), Not(Contains("lost."))));
    EXPECT_EQ(integrity(), "ok");
}

TEST_F(StoreFaultsTest, StoreThatAnotherProcessLocksIsOpenedWhenItLetsGo) {
    ASSERT_TRUE(save("before"));
    quit();
    LockingProcess other(file(), "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");
    ASSERT_TRUE(other.holds());
    install();
    EXPECT_FALSE(save("lost"));
    EXPECT_TRUE(
        log.contains("error add persistent store for url file://" + file().string() + " database is locked"));
    other.letGo();
    EXPECT_TRUE(save("after"));
    EXPECT_EQ(countEvents(), 2U);
    EXPECT_THAT(movedAside(), IsEmpty());
}

}  // namespace
}  // namespace trimora::analytics
