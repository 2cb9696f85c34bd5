#include "files/AtomicFile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

#include "files/FilesForTests.h"
#include "testing/TemporaryFolder.h"

namespace trimora::files {
namespace {

namespace fs = std::filesystem;
using foundation::Result;

Result<void> replace(const fs::path& target, std::string_view text) {
    Result<AtomicFile> file = AtomicFile::create(target);
    if (!file)
        return file.error();
    if (Result<void> written = file->write(bytes(text)); !written)
        return written;
    return file->commit();
}

fs::perms permissions(const fs::path& path) {
    return fs::status(path).permissions();
}

class AtomicFileTest : public ::testing::Test {
 protected:
    testing::TemporaryFolder folder_;
    fs::path target_ = folder_.path() / "picture.png";
};

TEST_F(AtomicFileTest, NewFileHoldsWhatWasWritten) {
    Result<AtomicFile> file = AtomicFile::create(target_);
    ASSERT_TRUE(file);
    ASSERT_TRUE(file->write(bytes("one ")));
    ASSERT_TRUE(file->write(bytes("two")));
    EXPECT_FALSE(fs::exists(target_));
    ASSERT_TRUE(file->commit());
    EXPECT_EQ(contents(target_), "one two");
    EXPECT_EQ(entriesIn(folder_.path()), 1U);
}

TEST_F(AtomicFileTest, OldFileStandsUntilTheCommit) {
    put(target_, "old");
    Result<AtomicFile> file = AtomicFile::create(target_);
    ASSERT_TRUE(file->write(bytes("new")));
    EXPECT_EQ(contents(target_), "old");
    ASSERT_TRUE(file->commit());
    EXPECT_EQ(contents(target_), "new");
}

TEST_F(AtomicFileTest, ExistingFileIsKeptWhereAsked) {
    put(target_, "old");
    const Result<AtomicFile> file = AtomicFile::create(target_, Existing::keep);
    ASSERT_FALSE(file);
    EXPECT_EQ(file.error().message, "a file of that name exists");
    EXPECT_EQ(file.error().code, EEXIST);
    EXPECT_EQ(contents(target_), "old");
}

TEST_F(AtomicFileTest, FileThatAppearsMeanwhileIsKeptWhereAsked) {
    Result<AtomicFile> file = AtomicFile::create(target_, Existing::keep);
    ASSERT_TRUE(file->write(bytes("ours")));
    put(target_, "theirs");
    const Result<void> committed = file->commit();
    ASSERT_FALSE(committed);
    EXPECT_EQ(committed.error().message, "a file of that name exists");
    EXPECT_EQ(contents(target_), "theirs");
}

TEST_F(AtomicFileTest, NewFileTakesAFreeNameWhereExistingOnesAreKept) {
    Result<AtomicFile> file = AtomicFile::create(target_, Existing::keep);
    ASSERT_TRUE(file->write(bytes("ours")));
    ASSERT_TRUE(file->commit());
    EXPECT_EQ(contents(target_), "ours");
    EXPECT_EQ(entriesIn(folder_.path()), 1U);
}

TEST_F(AtomicFileTest, WithoutACommitEverythingStaysAndNoLitter) {
    put(target_, "old");
    {
        Result<AtomicFile> file = AtomicFile::create(target_);
        ASSERT_TRUE(file->write(bytes("new")));
    }
    EXPECT_EQ(contents(target_), "old");
    EXPECT_EQ(entriesIn(folder_.path()), 1U);
}

TEST_F(AtomicFileTest, KilledWriterLeavesTheOldFileAndNoLitter) {
    put(target_, "old");
    const pid_t writer = ::fork();
    if (writer == 0) {
        Result<AtomicFile> file = AtomicFile::create(target_);
        (void)file->write(bytes("new"));
        ::raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(writer, &status, 0), writer);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(contents(target_), "old");
    EXPECT_EQ(entriesIn(folder_.path()), 1U);
}

TEST_F(AtomicFileTest, NewFileHasThePermissionsOfAnyNewFile) {
    ASSERT_TRUE(replace(target_, "text"));
    const fs::path other = folder_.path() / "other";
    put(other, "text");
    EXPECT_EQ(permissions(target_), permissions(other));
}

TEST_F(AtomicFileTest, ReplacedFileKeepsItsPermissions) {
    put(target_, "old");
    fs::permissions(target_, fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
    ASSERT_TRUE(replace(target_, "new"));
    EXPECT_EQ(permissions(target_), fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
}

TEST_F(AtomicFileTest, LinkStaysAndTheFileBehindItIsReplaced) {
    fs::create_directory(folder_.path() / "deep");
    const fs::path real = folder_.path() / "deep" / "real.png";
    put(real, "old");
    const fs::path middle = folder_.path() / "middle.png";
    fs::create_symlink("deep/real.png", middle);
    fs::create_symlink(middle, target_);
    ASSERT_TRUE(replace(target_, "new"));
    EXPECT_EQ(contents(real), "new");
    EXPECT_TRUE(fs::is_symlink(target_));
    EXPECT_TRUE(fs::is_symlink(middle));
    EXPECT_EQ(entriesIn(folder_.path() / "deep"), 1U);
}

TEST_F(AtomicFileTest, DanglingLinkGetsItsFile) {
    fs::create_symlink("later.png", target_);
    ASSERT_TRUE(replace(target_, "new"));
    EXPECT_TRUE(fs::is_symlink(target_));
    EXPECT_EQ(contents(folder_.path() / "later.png"), "new");
}

TEST_F(AtomicFileTest, LoopOfLinksIsRefused) {
    fs::create_symlink("other", target_);
    fs::create_symlink("picture.png", folder_.path() / "other");
    EXPECT_EQ(AtomicFile::create(target_).error().code, ELOOP);
}

TEST_F(AtomicFileTest, OtherHardLinkKeepsTheOldContents) {
    put(target_, "old");
    const fs::path other = folder_.path() / "other";
    fs::create_hard_link(target_, other);
    ASSERT_TRUE(replace(target_, "new"));
    EXPECT_EQ(contents(target_), "new");
    EXPECT_EQ(contents(other), "old");
}

TEST_F(AtomicFileTest, FolderAsTargetIsRefused) {
    fs::create_directory(target_);
    EXPECT_EQ(AtomicFile::create(target_).error().message, "a folder of that name exists");
    EXPECT_FALSE(AtomicFile::create(target_ / ""));
    EXPECT_FALSE(AtomicFile::create(""));
}

TEST_F(AtomicFileTest, SpecialFileAsTargetIsRefused) {
    ASSERT_EQ(::mkfifo(target_.c_str(), 0600), 0);
    EXPECT_FALSE(AtomicFile::create(target_));
    EXPECT_FALSE(AtomicFile::create("/dev/null"));
}

TEST_F(AtomicFileTest, MissingFolderIsRefusedWithTheReason) {
    EXPECT_EQ(AtomicFile::create(folder_.path() / "none" / "a.png").error().message,
              "the folder cannot be opened: No such file or directory");
}

TEST_F(AtomicFileTest, NameAsLongAsTheSystemAllowsWorks) {
    const fs::path longest = folder_.path() / std::string(255, 'n');
    ASSERT_TRUE(replace(longest, "one"));
    ASSERT_TRUE(replace(longest, "two"));
    EXPECT_EQ(contents(longest), "two");
    EXPECT_FALSE(AtomicFile::create(folder_.path() / std::string(256, 'n')));
}

TEST_F(AtomicFileTest, NameThatIsNoTextWorks) {
    ASSERT_TRUE(replace(folder_.path() / "\xff\xfe\x80", "one"));
    EXPECT_EQ(contents(folder_.path() / "\xff\xfe\x80"), "one");
}

TEST_F(AtomicFileTest, WriteProtectedFileIsRefused) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "the account of this run may write everything";
    put(target_, "old");
    fs::permissions(target_, fs::perms::owner_read);
    EXPECT_EQ(replace(target_, "new").error().message, "the file is write-protected");
    EXPECT_EQ(contents(target_), "old");
}

TEST_F(AtomicFileTest, WriteProtectedFolderIsRefused) {
    if (::geteuid() == 0)
        GTEST_SKIP() << "the account of this run may write everything";
    fs::permissions(folder_.path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(replace(target_, "new"));
    fs::permissions(folder_.path(), fs::perms::owner_all);
}

TEST_F(AtomicFileTest, FailedWriteTellsAndLeavesTheOldFile) {
    put(target_, "old");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4096, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const Result<void> outcome = replace(target_, std::string(10'000, 'x'));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().message, "the file cannot be written: File too large");
    EXPECT_EQ(contents(target_), "old");
    EXPECT_EQ(entriesIn(folder_.path()), 1U);
}

}  // namespace
}  // namespace trimora::files
