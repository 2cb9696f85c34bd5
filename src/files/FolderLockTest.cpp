#include "files/FolderLock.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <optional>

#include "files/FilesForTests.h"
#include "testing/TemporaryFolder.h"

namespace trimora::files {
namespace {

namespace fs = std::filesystem;
using foundation::Result;

/// A second process that does `start` and then lives until it is killed.
class OtherProcess {
 public:
    explicit OtherProcess(const std::function<bool()>& start) {
        std::array<int, 2> ready{};
        EXPECT_EQ(::pipe(ready.data()), 0);
        id_ = ::fork();
        if (id_ == 0) {
            const char answer = start() ? 'y' : 'n';
            if (::write(ready[1], &answer, 1) == 1)
                ::pause();
            ::_exit(1);
        }
        ::close(ready[1]);
        char answer = 'n';
        EXPECT_EQ(::read(ready[0], &answer, 1), 1);
        ::close(ready[0]);
        started_ = answer == 'y';
    }
    ~OtherProcess() { kill(); }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;

    [[nodiscard]] bool started() const { return started_; }
    [[nodiscard]] pid_t id() const { return id_; }

    void kill() {
        if (id_ <= 0)
            return;
        ::kill(id_, SIGKILL);
        ::waitpid(id_, nullptr, 0);
        id_ = -1;
    }

 private:
    pid_t id_ = -1;
    bool started_ = false;
};

class FolderLockTest : public ::testing::Test {
 protected:
    [[nodiscard]] fs::path sideFolder(pid_t owner, int number = 0) const {
        return base_ / ("history-" + std::to_string(owner) + '-' + std::to_string(number));
    }

    testing::TemporaryFolder outside_;
    fs::path base_ = outside_.path() / "Trimora";
    fs::path lockFile_ = outside_.path() / "it.lock";
};

TEST_F(FolderLockTest, IsHeldAgainstEveryoneUntilItGoes) {
    std::optional<FolderLock> first = FolderLock::tryAcquire(lockFile_).value();
    EXPECT_EQ(FolderLock::tryAcquire(lockFile_).error().code, FolderLock::kTaken);
    first.reset();
    EXPECT_TRUE(FolderLock::tryAcquire(lockFile_));
}

TEST_F(FolderLockTest, OfAKilledProcessIsFree) {
    OtherProcess other([&] {
        static std::optional<FolderLock> held;
        Result<FolderLock> lock = FolderLock::tryAcquire(lockFile_);
        if (lock)
            held = std::move(*lock);
        return held.has_value();
    });
    ASSERT_TRUE(other.started());
    EXPECT_FALSE(FolderLock::tryAcquire(lockFile_));
    other.kill();
    EXPECT_TRUE(FolderLock::tryAcquire(lockFile_));
}

TEST_F(FolderLockTest, IsNotTakenThroughALink) {
    fs::create_symlink(outside_.path() / "elsewhere", lockFile_);
    EXPECT_FALSE(FolderLock::tryAcquire(lockFile_));
    EXPECT_FALSE(fs::exists(outside_.path() / "elsewhere"));
}

TEST_F(FolderLockTest, FirstOwnerGetsTheNamedFolderWithWhatWasLeftInIt) {
    {
        const Result<OwnedFolder> earlier = ownedFolder(base_, "history");
        ASSERT_TRUE(earlier);
        ASSERT_TRUE(earlier->folder.write("0.his", bytes("left")));
    }
    const Result<OwnedFolder> now = ownedFolder(base_, "history");
    EXPECT_EQ(now->folder.path(), base_ / "history");
    EXPECT_EQ(text(now->folder.read("0.his", 100)->view()), "left");
}

TEST_F(FolderLockTest, SecondOwnerGetsAFolderOfItsOwnBesideTheFirst) {
    const Result<OwnedFolder> first = ownedFolder(base_, "history");
    const Result<OwnedFolder> second = ownedFolder(base_, "history");
    const Result<OwnedFolder> third = ownedFolder(base_, "history");
    EXPECT_EQ(second->folder.path(), sideFolder(::getpid(), 0));
    EXPECT_EQ(third->folder.path(), sideFolder(::getpid(), 1));
    ASSERT_TRUE(first->folder.write("0.his", bytes("first")));
    ASSERT_TRUE(second->folder.write("0.his", bytes("second")));
    EXPECT_EQ(text(first->folder.read("0.his", 100)->view()), "first");
}

TEST_F(FolderLockTest, FolderOfALivingProcessIsLeftAloneAndOfADeadOneSwept) {
    const Result<OwnedFolder> first = ownedFolder(base_, "history");
    ASSERT_TRUE(first);
    OtherProcess other([&] {
        static std::optional<OwnedFolder> held;
        Result<OwnedFolder> own = ownedFolder(base_, "history");
        if (own)
            held = std::move(*own);
        return held && held->folder.write("0.his", bytes("theirs"));
    });
    ASSERT_TRUE(other.started());
    const fs::path side = sideFolder(other.id());

    { const Result<OwnedFolder> third = ownedFolder(base_, "history"); }
    EXPECT_EQ(contents(side / "0.his"), "theirs");
    other.kill();
    { const Result<OwnedFolder> third = ownedFolder(base_, "history"); }
    EXPECT_FALSE(fs::exists(side));
    EXPECT_FALSE(fs::exists(side.string() + ".lock"));
    EXPECT_TRUE(fs::exists(base_ / "history"));
}

TEST_F(FolderLockTest, SweepingTouchesNothingOfOtherNames) {
    for (const char* name : {"history-old", "history-1", "history-1-", "history-1-2-3", "other-1-2"}) {
        fs::create_directories(base_ / name);
        put(base_ / name / "file", "kept");
    }
    put(base_ / "history-7-7.txt", "kept");
    ASSERT_TRUE(ownedFolder(base_, "history"));
    for (const char* name : {"history-old", "history-1", "history-1-", "history-1-2-3", "other-1-2"})
        EXPECT_EQ(contents(base_ / name / "file"), "kept") << name;
    EXPECT_TRUE(fs::exists(base_ / "history-7-7.txt"));
}

TEST_F(FolderLockTest, SweepingFollowsNoLinkAndKeepsFoldersInside) {
    const fs::path sentinel = outside_.path() / "sentinel";
    fs::create_directory(sentinel);
    put(sentinel / "file", "kept");
    fs::create_directories(base_);
    fs::create_directory_symlink(sentinel, sideFolder(1));
    fs::create_directories(sideFolder(2) / "folder");
    put(sideFolder(2) / "folder" / "file", "kept");
    put(sideFolder(2) / "0.his", "gone");
    ASSERT_TRUE(ownedFolder(base_, "history"));
    EXPECT_EQ(contents(sentinel / "file"), "kept");
    EXPECT_EQ(contents(sideFolder(2) / "folder" / "file"), "kept");
    EXPECT_FALSE(fs::exists(sideFolder(2) / "0.his"));
}

}  // namespace
}  // namespace trimora::files
