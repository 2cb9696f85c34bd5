#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "IoFaults.h"
#include "SentinelTree.h"
#include "cutengine/HistoryStore.h"
#include "files/FilesForTests.h"
#include "testing/CapturedLog.h"
#include "testing/Depth.h"
#include "testing/Seed.h"
#include "testing/TemporaryFolder.h"

// The undo store when its files are damaged, missing, not its own, or cannot be written: a step shows the
// mask that was recorded, or the whole picture, or nothing happens. Never another mask.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using cutengine::HistoryStore;
using files::contents;
using files::put;
using foundation::Bitmap;

constexpr int kWidth = 16;
constexpr int kHeight = 270;  // several of the strips that a file is made of

/// A mask that no other number has; all differ in the same third of it.
Bitmap numberedMask(int number) {
    auto mask = Bitmap::createFilled(kWidth, kHeight, {0, 0, 0, 255});
    std::mt19937 random(static_cast<unsigned>(number));
    for (int i = 0; i < 12; ++i) {
        const int y = kHeight / 2 + static_cast<int>(random() % (kHeight / 3));
        const int x = static_cast<int>(random() % (kWidth - 8));
        for (int j = 0; j < 8; ++j)
            mask->view().row(y)[4 * (x + j) + 3] = static_cast<std::uint8_t>(number);
    }
    return std::move(*mask);
}

/// A store, what it was given, and the mask that it is the history of, which only steps change as far as they
/// say.
class Recorder {
 public:
    explicit Recorder(const fs::path& folder) : store(folder) {}

    void clear() {
        store.clear();
        given_.clear();
    }
    void record(int number) {
        write(number);
        given_.resize(static_cast<std::size_t>(store.currentState()));
        given_.push_back(number);
    }
    /// As record(), where the ring is full: the oldest state goes.
    void recordInFullRing(int number) {
        write(number);
        given_.erase(given_.begin());
        given_.push_back(number);
    }
    void recordAny(int number) {
        if (store.length() == HistoryStore::kLargestLength && store.currentState() == store.length() - 1)
            recordInFullRing(number);
        else
            record(number);
    }

    enum class Outcome : std::uint8_t { shown, wholePicture, nothing, wrong };
    /// Steps, and says what that showed; the counters must agree with it.
    Outcome step(HistoryStore::Step way) {
        const std::int64_t before = store.currentState();
        const auto rows = store.step(way, {});
        const std::int64_t moved = way == HistoryStore::Step::back ? -1 : 1;
        if (store.currentState() != before + (rows ? moved : 0))
            return Outcome::wrong;
        if (!rows)
            return Outcome::nothing;
        if (rows->isWhole && rows->pixels.isEmpty())
            return Outcome::wholePicture;
        if (!rows->pixels.isEmpty())
            copyPixels(rows->pixels.view(),
                       subview(mask_.view(), {0, rows->top, kWidth, rows->pixels.height()}));
        const int expected = given_[static_cast<std::size_t>(store.currentState())];
        const bool same = foundation::samePixels(mask_.view(), numberedMask(expected).view());
        return same ? Outcome::shown : Outcome::wrong;
    }
    Outcome back() { return step(HistoryStore::Step::back); }

    HistoryStore store;

 private:
    void write(int number) {
        mask_ = numberedMask(number);
        (void)store.record(mask_.view(), {0, kHeight / 2, kWidth, kHeight / 3});
    }

    std::vector<int> given_;
    Bitmap mask_ = numberedMask(0);
};

using Outcome = Recorder::Outcome;

class HistoryDamage : public ::testing::Test {
 protected:
    void TearDown() override { EXPECT_TRUE(sentinels_.isUntouched()); }

    [[nodiscard]] fs::path file(int number) const { return folder_ / (std::to_string(number) + ".his"); }
    void put(int number, const std::string& bytes) const { files::put(file(number), bytes); }

    /// Two states, the second shown, the first one's file being what the test made of it: the step back.
    Outcome stepOnto(const std::function<void()>& damage) {
        recorder_.clear();
        recorder_.record(1);
        recorder_.record(2);
        damage();
        return recorder_.back();
    }

    testing::TemporaryFolder home_;
    SentinelTree sentinels_{home_.path() / "documents"};
    fs::path folder_ = home_.path() / "history";
    Recorder recorder_{folder_};
    testing::CapturedLog log_;
};

TEST_F(HistoryDamage, NoFlippedBitShowsAnotherMask) {
    std::mt19937_64 random = testing::seededGenerator();
    int harmless = 0;
    const int flips = testing::byDepth(2'000, 20'000, 200'000);
    for (int i = 0; i < flips; ++i) {
        const Outcome outcome = stepOnto([&] {
            std::string bytes = contents(file(0));
            bytes[random() % bytes.size()] ^= static_cast<char>(1U << random() % 8);
            put(0, bytes);
        });
        ASSERT_NE(outcome, Outcome::wrong) << "flip " << i;
        harmless += outcome == Outcome::shown ? 1 : 0;
    }
    std::printf("%d flips, %d without effect\n", flips, harmless);
}

TEST_F(HistoryDamage, NoTruncationShowsAnotherMask) {
    recorder_.record(1);
    const std::size_t size = contents(file(0)).size();
    for (std::size_t length = 0; length < size; ++length) {
        const Outcome outcome = stepOnto([&] { fs::resize_file(file(0), length); });
        ASSERT_NE(outcome, Outcome::wrong) << length << " of " << size << " bytes";
        ASSERT_NE(outcome, Outcome::shown) << length << " of " << size << " bytes";
    }
}

TEST_F(HistoryDamage, WhatIsNoFileIsLeftAloneAndNothingIsShown) {
    const auto replaced = [&](const std::function<void()>& by) {
        const Outcome outcome = stepOnto([&] {
            fs::remove(file(0));
            by();
        });
        fs::remove_all(file(0));
        return outcome;
    };
    EXPECT_EQ(replaced([] {}), Outcome::nothing);
    EXPECT_EQ(replaced([&] { ASSERT_EQ(::mkfifo(file(0).c_str(), 0600), 0); }), Outcome::nothing);
    EXPECT_EQ(replaced([&] { fs::create_symlink("1.his", file(0)); }), Outcome::nothing);
    EXPECT_EQ(replaced([&] { fs::create_symlink(sentinels_.folder() / "0.his", file(0)); }),
              Outcome::nothing);
    EXPECT_EQ(replaced([&] { fs::create_symlink("/dev/zero", file(0)); }), Outcome::nothing);
    EXPECT_EQ(replaced([&] { fs::create_directory(file(0)); }), Outcome::nothing);
    EXPECT_TRUE(log_.contains("NO DATA PROVIDER"));
}

TEST_F(HistoryDamage, ForeignFilesShowTheWholePictureAndCostNothing) {
    EXPECT_EQ(stepOnto([&] { put(0, "dear all"); }), Outcome::wholePicture);
    EXPECT_EQ(stepOnto([&] { put(0, std::string(100'000, '\0')); }), Outcome::wholePicture);
    EXPECT_EQ(stepOnto([&] { put(0, "\x89PNG\r\n\x1a\n" + std::string(5'000, 'x')); }),
              Outcome::wholePicture);
    // A hole of many gigabytes is refused by its size.
    EXPECT_EQ(stepOnto([&] { fs::resize_file(file(0), std::uintmax_t{1} << 36); }), Outcome::nothing);
}

TEST_F(HistoryDamage, LinksInTheFolderAreNeverWrittenThrough) {
    recorder_.record(1);
    for (int number = 1; number <= 30; ++number)
        fs::create_symlink(sentinels_.folder() / (number % 2 == 0 ? "0.his" : "letter.txt"), file(number));
    for (int number = 2; number <= 40; ++number)
        recorder_.recordAny(number);
    EXPECT_EQ(recorder_.back(), Outcome::shown);
    recorder_.clear();
    EXPECT_TRUE(fs::is_empty(folder_));
}

TEST_F(HistoryDamage, MaskThatCouldNotBeWrittenIsNotTakenFromAnotherFile) {
    recorder_.record(1);
    fs::create_directory(file(1));
    recorder_.record(2);
    recorder_.record(3);
    fs::remove(file(1));
    fs::copy_file(file(0), file(1));
    EXPECT_EQ(recorder_.back(), Outcome::nothing);
}

/// Records once round the ring and a little further, with an excursion back on the way.
void runScript(Recorder& recorder) {
    recorder.clear();
    for (int number = 1; number <= 20; ++number)
        recorder.recordAny(number);
    for (int i = 0; i < 3; ++i)
        (void)recorder.back();
    for (int number = 21; number <= 38; ++number)
        recorder.recordAny(number);
}

TEST_F(HistoryDamage, NoFaultOfTheDiskShowsAnotherMask) {
    std::vector<IoCall> calls;
    {
        const IoFaults watcher;
        runScript(recorder_);
        calls = watcher.calls();
    }
    int points = 0;
    for (const IoPlan& plan : plansFor(calls)) {
        if (plan.fault == IoFault::kill)
            continue;
        ++points;
        {
            const IoFaults faults(plan);
            runScript(recorder_);
        }
        for (const auto way : {HistoryStore::Step::back, HistoryStore::Step::forward}) {
            for (int i = 0; i < 30; ++i)
                ASSERT_NE(recorder_.step(way), Outcome::wrong)
                    << describe(plan, calls) << ", state " << recorder_.store.currentState();
        }
    }
    // And when the disk is well again, so is the store.
    runScript(recorder_);
    for (int i = 0; i < 29; ++i)
        ASSERT_EQ(recorder_.back(), Outcome::shown);
    std::printf("%d points\n", points);
}

}  // namespace
}  // namespace trimora::reliability
