#include "files/PrivateFolder.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include "files/FilesForTests.h"
#include "testing/TemporaryFolder.h"

namespace trimora::files {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;

constexpr std::size_t kLimit = 1000;

class PrivateFolderTest : public ::testing::Test {
 protected:
    testing::TemporaryFolder outside_;
    fs::path path_ = outside_.path() / "a" / "b" / "ours";
    PrivateFolder folder_ = PrivateFolder::create(path_).value();
};

unsigned mode(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777U;
}

TEST_F(PrivateFolderTest, IsMadeWithItsParentsForThisAccountAlone) {
    EXPECT_EQ(mode(path_), 0700U);
    EXPECT_EQ(mode(path_.parent_path()), 0700U);
}

TEST_F(PrivateFolderTest, OneThatWasOpenToOthersIsMadePrivate) {
    fs::permissions(path_, fs::perms::all);
    ASSERT_TRUE(PrivateFolder::create(path_ / ""));
    EXPECT_EQ(mode(path_), 0700U);
}

TEST_F(PrivateFolderTest, LinkToAFolderIsRefused) {
    const fs::path link = outside_.path() / "link";
    fs::create_symlink(path_, link);
    EXPECT_FALSE(PrivateFolder::create(link));
    EXPECT_FALSE(PrivateFolder::create(link / ""));
}

TEST_F(PrivateFolderTest, FileInTheWayIsRefused) {
    put(outside_.path() / "file", "");
    EXPECT_FALSE(PrivateFolder::create(outside_.path() / "file"));
    EXPECT_FALSE(PrivateFolder::create(outside_.path() / "file" / "below"));
}

TEST_F(PrivateFolderTest, GivesBackWhatWasWrittenForThisAccountAlone) {
    ASSERT_TRUE(folder_.write("0.his", bytes("first")));
    EXPECT_EQ(text(folder_.read("0.his", kLimit)->view()), "first");
    EXPECT_EQ(mode(path_ / "0.his"), 0600U);
    ASSERT_TRUE(folder_.write("0.his", bytes("second")));
    EXPECT_EQ(text(folder_.read("0.his", kLimit)->view()), "second");
    EXPECT_EQ(entriesIn(path_), 1U);
}

TEST_F(PrivateFolderTest, FileAboveTheLimitIsNotRead) {
    ASSERT_TRUE(folder_.write("big", bytes(std::string(11, 'x'))));
    EXPECT_FALSE(folder_.read("big", 10));
}

TEST_F(PrivateFolderTest, ListsVisiblePlainFilesSorted) {
    put(path_ / "b", "");
    put(path_ / "a", "");
    put(path_ / ".hidden", "");
    fs::create_directory(path_ / "folder");
    fs::create_symlink("a", path_ / "link");
    ASSERT_EQ(::mkfifo((path_ / "pipe").c_str(), 0600), 0);
    EXPECT_THAT(*folder_.list(), ElementsAre("a", "b"));
    EXPECT_THAT(*folder_.list(), ElementsAre("a", "b")) << "a second reading starts anew";
}

TEST_F(PrivateFolderTest, NamesThatLeadElsewhereAreRefused) {
    for (const std::string name : {"", ".", "..", "a/b", "/etc/passwd", "../x"}) {
        EXPECT_FALSE(folder_.read(name, kLimit)) << name;
        EXPECT_FALSE(folder_.write(name, bytes("x"))) << name;
        EXPECT_FALSE(folder_.remove(name)) << name;
    }
    EXPECT_FALSE(folder_.read(std::string_view("a\0b", 3), kLimit));
}

TEST_F(PrivateFolderTest, LinkIsNeitherReadNorWrittenThrough) {
    const fs::path secret = outside_.path() / "secret";
    put(secret, "kept");
    fs::create_symlink(secret, path_ / "0.his");
    EXPECT_FALSE(folder_.read("0.his", kLimit));
    ASSERT_TRUE(folder_.write("0.his", bytes("ours")));
    EXPECT_EQ(contents(secret), "kept");
    EXPECT_FALSE(fs::is_symlink(path_ / "0.his"));
}

TEST_F(PrivateFolderTest, PipeIsNotReadAndDoesNotBlock) {
    ASSERT_EQ(::mkfifo((path_ / "0.his").c_str(), 0600), 0);
    EXPECT_FALSE(folder_.read("0.his", kLimit));
    EXPECT_FALSE(folder_.remove("0.his"));
    EXPECT_TRUE(fs::exists(path_ / "0.his"));
}

TEST_F(PrivateFolderTest, RemovesAFileALinkAndNothingThatIsNotThere) {
    const fs::path secret = outside_.path() / "secret";
    put(secret, "kept");
    put(path_ / "file", "");
    fs::create_symlink(secret, path_ / "link");
    EXPECT_TRUE(folder_.remove("file"));
    EXPECT_TRUE(folder_.remove("link"));
    EXPECT_TRUE(folder_.remove("none"));
    EXPECT_EQ(entriesIn(path_), 0U);
    EXPECT_EQ(contents(secret), "kept");
}

TEST_F(PrivateFolderTest, RemovingAllLeavesFoldersAndWhatLinksPointTo) {
    const fs::path sentinel = outside_.path() / "sentinel";
    fs::create_directory(sentinel);
    put(sentinel / "file", "kept");
    put(path_ / "0.his", "");
    put(path_ / ".left-over", "");
    fs::create_directory(path_ / "folder");
    put(path_ / "folder" / "inside", "kept");
    fs::create_directory_symlink(sentinel, path_ / "link");
    fs::create_symlink(sentinel / "file", path_ / "link2");
    ASSERT_TRUE(folder_.removeAllFiles());
    EXPECT_EQ(contents(sentinel / "file"), "kept");
    EXPECT_EQ(contents(path_ / "folder" / "inside"), "kept");
    EXPECT_EQ(entriesIn(path_), 1U);
}

TEST_F(PrivateFolderTest, GoesOnInTheSameFolderWhenItsPathIsTakenAway) {
    ASSERT_TRUE(folder_.write("0.his", bytes("ours")));
    const fs::path moved = outside_.path() / "moved";
    fs::rename(path_, moved);
    const fs::path lure = outside_.path() / "lure";
    fs::create_directory(lure);
    put(lure / "0.his", "not ours");
    fs::create_directory_symlink(lure, path_);
    EXPECT_EQ(text(folder_.read("0.his", kLimit)->view()), "ours");
    ASSERT_TRUE(folder_.removeAllFiles());
    EXPECT_EQ(entriesIn(moved), 0U);
    EXPECT_EQ(contents(lure / "0.his"), "not ours");
}

TEST_F(PrivateFolderTest, WriteThatFailsLeavesTheOldFile) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "the account of this run may write everything";
    ASSERT_TRUE(folder_.write("0.his", bytes("old")));
    fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(folder_.write("0.his", bytes("new")));
    EXPECT_EQ(text(folder_.read("0.his", kLimit)->view()), "old");
    fs::permissions(path_, fs::perms::owner_all);
}

}  // namespace
}  // namespace trimora::files
