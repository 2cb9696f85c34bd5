#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "Mounts.h"
#include "SavingForTests.h"
#include "files/FilesForTests.h"
#include "testing/TemporaryFolder.h"

// Saving to places that are odd, closed or full.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using files::contents;
using files::entriesIn;
using files::put;
using foundation::Bitmap;
using foundation::Result;

class SaveTargets : public ::testing::Test {
 protected:
    void expectRefusal(const fs::path& target, const std::string& why) const {
        const Result<void> saved = savePng(picture_.view(), target);
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error().message, why);
    }

    testing::TemporaryFolder home_;
    fs::path folder_ = home_.path();
    Bitmap picture_ = bandedPicture(300, 300);
};

/// 0 where the save fails with this message, else 1.
int refusal(const Bitmap& picture, const fs::path& target, const std::string& why) {
    const Result<void> saved = savePng(picture.view(), target);
    if (!saved && saved.error().message == why)
        return 0;
    std::fprintf(stderr, "%s\n", saved ? "saved" : saved.error().message.c_str());
    return 1;
}

TEST_F(SaveTargets, ReadOnlyFileIsRefusedAndStays) {
    const fs::path target = folder_ / "kept.png";
    put(target, "old");
    fs::permissions(target, fs::perms(0444));
    fs::permissions(folder_, fs::perms(0777));
    const int outcome =
        asPlainAccount([&] { return refusal(picture_, target, "the file is write-protected"); });
    if (outcome < 0)
        TRIMORA_SKIP("the account cannot be changed");
    EXPECT_EQ(outcome, 0);
    EXPECT_EQ(contents(target), "old");
    EXPECT_EQ(entriesIn(folder_), 1U);
}

TEST_F(SaveTargets, ReadOnlyFolderIsRefusedAndStays) {
    const fs::path target = folder_ / "kept.png";
    put(target, "old");
    fs::permissions(target, fs::perms(0666));
    fs::permissions(folder_, fs::perms(0555));
    const int outcome = asPlainAccount(
        [&] { return refusal(picture_, target, "the file cannot be written: Permission denied"); });
    if (outcome < 0)
        TRIMORA_SKIP("the account cannot be changed");
    EXPECT_EQ(outcome, 0);
    EXPECT_EQ(contents(target), "old");
    EXPECT_EQ(entriesIn(folder_), 1U);
}

TEST_F(SaveTargets, FolderAsTargetIsRefusedAndStays) {
    fs::create_directory(folder_ / "target");
    put(folder_ / "target" / "inside", "kept");
    expectRefusal(folder_ / "target", "a folder of that name exists");
    EXPECT_EQ(contents(folder_ / "target" / "inside"), "kept");
    EXPECT_EQ(entriesIn(folder_), 1U);
}

TEST_F(SaveTargets, PipeAsTargetIsRefusedAndDoesNotBlock) {
    const fs::path target = folder_ / "pipe";
    ASSERT_EQ(::mkfifo(target.c_str(), 0600), 0);
    expectRefusal(target, "what bears that name is not a regular file");
    EXPECT_TRUE(fs::is_fifo(target));
}

TEST_F(SaveTargets, LinkInACircleIsRefused) {
    fs::create_symlink("b", folder_ / "a");
    fs::create_symlink("a", folder_ / "b");
    expectRefusal(folder_ / "a", "the file cannot be written: Too many levels of symbolic links");
}

TEST_F(SaveTargets, LongestAndOddNamesAreNamesLikeOthers) {
    std::string longest(255, 'x');
    longest.replace(251, 4, ".png");
    const std::vector<std::string> names = {longest, "\xff\xfe \x80.png", "line\nbreak.png",
                                            " .png", "-rf.png",           ".hidden"};
    for (const std::string& name : names) {
        ASSERT_TRUE(savePng(picture_.view(), folder_ / name)) << name;
        const auto first = contents(folder_ / name);
        ASSERT_TRUE(savePng(picture_.view(), folder_ / name)) << name;
        EXPECT_EQ(contents(folder_ / name), first);
    }
    EXPECT_EQ(entriesIn(folder_), names.size());
    EXPECT_FALSE(savePng(picture_.view(), folder_ / (longest + "x")));
    EXPECT_EQ(entriesIn(folder_), names.size());
}

TEST_F(SaveTargets, FullFileSystemLeavesTheOldFileAndRoomMakesItWorkAgain) {
    const Bitmap large = bandedPicture(3000, 2500);
    bool met = false;
    const bool allowed = onSmallFileSystem(folder_, "256k", [&] {
        const fs::path target = folder_ / "picture.png";
        put(target, "old");
        const fs::path ballast = folder_ / "ballast";
        std::ofstream(ballast) << std::string(200 << 10, 'b');
        const Result<void> saved = savePng(large.view(), target);
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error().message, "the file cannot be written: No space left on device");
        EXPECT_EQ(contents(target), "old");
        EXPECT_EQ(entriesIn(folder_), 2U);
        fs::remove(ballast);
        EXPECT_TRUE(savePng(picture_.view(), target));
        EXPECT_EQ(contents(target).substr(1, 3), "PNG");
        met = true;
    });
    if (!allowed)
        TRIMORA_SKIP("not permitted to mount a file system");
    EXPECT_TRUE(met);
}

}  // namespace
}  // namespace trimora::reliability
