#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "IoFaults.h"
#include "Processes.h"
#include "SavingForTests.h"
#include "files/FilesForTests.h"
#include "testing/Depth.h"
#include "testing/TemporaryFolder.h"

// Saving over a file with every call that it makes failing in every way: what stands there afterwards is
// the old file or the new one, and who was told "saved" has it on the disk.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using files::contents;
using files::put;
using foundation::Bitmap;
using foundation::Result;

constexpr const char* kOld = "what was there before";

/// What stands at the target when the save begins.
enum class Stage : std::uint8_t {
    nothing,
    file,
    linkToFile,
    twoLinks,
    danglingLink,
    hardLink,
    namedFilesOnly
};
constexpr Stage kStages[] = {Stage::nothing,      Stage::file,     Stage::linkToFile,    Stage::twoLinks,
                             Stage::danglingLink, Stage::hardLink, Stage::namedFilesOnly};

class SaveFaults : public ::testing::TestWithParam<Stage> {
 protected:
    void setUpStage() {
        fs::remove_all(folder_);
        fs::create_directories(folder_ / "behind");
        if (stage() == Stage::file || stage() == Stage::namedFilesOnly || stage() == Stage::hardLink)
            put(target_, kOld);
        if (stage() == Stage::hardLink)
            fs::create_hard_link(target_, folder_ / "behind" / "other name");
        if (stage() == Stage::linkToFile || stage() == Stage::twoLinks)
            put(real_, kOld);
        if (stage() == Stage::linkToFile || stage() == Stage::danglingLink)
            fs::create_symlink("behind/real.png", target_);
        if (stage() == Stage::twoLinks) {
            fs::create_symlink("real.png", folder_ / "behind" / "link.png");
            fs::create_symlink("behind/link.png", target_);
        }
    }

    [[nodiscard]] Stage stage() const { return GetParam(); }
    [[nodiscard]] bool isLink() const {
        return stage() == Stage::linkToFile || stage() == Stage::twoLinks || stage() == Stage::danglingLink;
    }
    [[nodiscard]] bool hadFile() const { return stage() != Stage::nothing && stage() != Stage::danglingLink; }
    /// The file's bytes; nothing where there is no file.
    [[nodiscard]] std::optional<std::string> found() const {
        return fs::exists(target_) ? std::optional(contents(target_)) : std::nullopt;
    }
    [[nodiscard]] std::optional<std::string> old() const {
        return hadFile() ? std::optional<std::string>(kOld) : std::nullopt;
    }
    [[nodiscard]] std::vector<std::string> litter() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
            if (entry.path().filename().string().starts_with(".trimora-"))
                names.push_back(entry.path().filename());
        }
        return names;
    }
    [[nodiscard]] IoPlan on(IoPlan plan) const {
        plan.hasUnnamedFiles = stage() != Stage::namedFilesOnly;
        return plan;
    }

    void check(const IoPlan& plan, const Bitmap& picture, const std::string& whole);
    void checkKill(const IoPlan& plan, const Bitmap& picture, const std::string& whole);
    void everyPlan(int width, int height);

    testing::TemporaryFolder home_;
    fs::path folder_ = home_.path() / "pictures";
    fs::path target_ = folder_ / "picture.png";
    fs::path real_ = folder_ / "behind" / "real.png";
    int points_ = 0;
};

/// Whether file and folder were brought to the disk, each after its last change.
bool isSynced(const std::vector<IoCall>& calls) {
    const auto last = [&](const std::string& name) {
        const auto it = std::find_if(calls.rbegin(), calls.rend(),
                                     [&](const IoCall& call) { return call.name == name && call.ok; });
        return calls.rend() - it;  // 0 where there is none
    };
    const auto renamed = last("rename");
    const bool fileSynced = std::any_of(calls.begin() + last("write"), calls.begin() + renamed,
                                        [](const IoCall& call) { return call.name == "fsync" && call.ok; });
    return fileSynced && last("fsync") > renamed;
}

bool mustSucceed(const IoPlan& plan) {
    return plan.fault == IoFault::interrupted || plan.fault == IoFault::partly;
}

void SaveFaults::check(const IoPlan& plan, const Bitmap& picture, const std::string& whole) {
    setUpStage();
    const int open = openFiles();
    Result<void> saved;
    std::vector<IoCall> calls;
    {
        const IoFaults faults(on(plan));
        saved = savePng(picture.view(), target_);
        calls = faults.calls();
    }
    SCOPED_TRACE(describe(plan, calls));
    if (saved) {
        EXPECT_TRUE(isSynced(calls));
        EXPECT_EQ(found(), whole);
    } else {
        EXPECT_FALSE(mustSucceed(plan)) << saved.error().message;
        EXPECT_FALSE(saved.error().message.empty());
        if (saved.error().message.starts_with("the file is written, but may not survive a power cut"))
            EXPECT_EQ(found(), whole);
        else
            EXPECT_EQ(found(), old());
    }
    const bool mayClean = std::none_of(calls.begin(), calls.end(),
                                       [](const IoCall& call) { return call.name == "unlink" && !call.ok; });
    if (mayClean) {
        EXPECT_THAT(litter(), ::testing::IsEmpty());
    }
    EXPECT_EQ(fs::is_symlink(target_), isLink());
    EXPECT_EQ(openFiles(), open);
}

void SaveFaults::checkKill(const IoPlan& plan, const Bitmap& picture, const std::string& whole) {
    setUpStage();
    const Ended ended = inOwnProcess([&] {
        const IoFaults faults(on(plan));
        return savePng(picture.view(), target_) ? 0 : 1;
    });
    SCOPED_TRACE(describe(plan, {}));
    EXPECT_TRUE(ended.wasKilled()) << ended.text();
    EXPECT_THAT(found(), ::testing::AnyOf(old(), whole));
    EXPECT_EQ(fs::is_symlink(target_), isLink());
    EXPECT_THAT(litter(), ::testing::SizeIs(::testing::Le(1)));
    // What a killed save could not take away, the next one does.
    {
        const IoFaults none(on({}));
        EXPECT_TRUE(savePng(picture.view(), target_));
    }
    EXPECT_EQ(found(), whole);
    EXPECT_THAT(litter(), ::testing::IsEmpty());
}

void SaveFaults::everyPlan(int width, int height) {
    const Bitmap picture = bandedPicture(width, height);
    setUpStage();
    std::vector<IoCall> calls;
    {
        const IoFaults faults(on({}));
        ASSERT_TRUE(savePng(picture.view(), target_));
        calls = faults.calls();
    }
    ASSERT_TRUE(isSynced(calls));
    const std::string whole = contents(target_);
    for (const IoPlan& plan : plansFor(calls)) {
        if (plan.fault == IoFault::kill)
            checkKill(plan, picture, whole);
        else
            check(plan, picture, whole);
        ++points_;
        if (HasFailure())
            return;
    }
}

TEST_P(SaveFaults, LeaveTheOldFileOrTheNewOne) {
    everyPlan(16, 16);
    everyPlan(520, 520);
    if (!kSanitized)
        everyPlan(900, 600);
    if (testing::byDepth(1, 2, 2) > 1) {
        everyPlan(1200, 900);
        everyPlan(1500, 1000);
    }
    std::printf("%d points\n", points_);
}

const char* nameOf(Stage stage) {
    constexpr const char* kNames[] = {
        "WithNothingThere",     "OverAFile",     "ThroughALink",       "ThroughTwoLinks",
        "ThroughADanglingLink", "OverAHardLink", "WithoutUnnamedFiles"};
    return kNames[static_cast<std::size_t>(stage)];
}

INSTANTIATE_TEST_SUITE_P(Stages, SaveFaults, ::testing::ValuesIn(kStages),
                         [](const auto& stage) { return nameOf(stage.param); });

}  // namespace
}  // namespace trimora::reliability
