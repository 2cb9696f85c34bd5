#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "DiskRecord.h"
#include "DiskServer.h"
#include "HistoryEditor.h"
#include "Mounts.h"
#include "SavingForTests.h"
#include "WholeStore.h"
#include "analytics/store/ManagedObjectContext.h"
#include "analytics/store/StoreCoordinator.h"
#include "cutengine/kernels/MaskCodec.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"
#include "testing/Depth.h"
#include "testing/Seed.h"
#include "testing/TemporaryFolder.h"

// A power cut at any write of the disk, while pictures are saved, events stored and strokes kept for undo.
// Beside them work programs that do not care: what is lost of theirs shows that these are power cuts.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using analytics::ManagedObjectContext;
using analytics::PropertyValues;
using analytics::StoreCoordinator;
using analytics::TXEvent;

/// How far the disk had got when each step of a kind began, and when it was said to last.
class Steps {
 public:
    explicit Steps(const DiskRecord& disk) : disk_(disk) {}

    void begin() { begun_.push_back(disk_.position()); }
    /// All that began so far lasts from now on.
    void promise() { promised_.resize(begun_.size(), disk_.position()); }

    [[nodiscard]] std::size_t begunBy(std::size_t cut) const { return until(begun_, cut); }
    [[nodiscard]] std::size_t promisedBy(std::size_t cut) const { return until(promised_, cut); }

    /// Whether what is found is the state after a number of steps that the cut may leave; `states` begins
    /// with that before all of them.
    template <typename State>
    [[nodiscard]] bool allow(const State& found, const std::vector<State>& states, std::size_t cut) const {
        const auto first = states.begin() + static_cast<long>(promisedBy(cut));
        const auto last = states.begin() + static_cast<long>(begunBy(cut)) + 1;
        return std::find(first, last, found) != last;
    }

 private:
    static std::size_t until(const std::vector<std::size_t>& positions, std::size_t cut) {
        return static_cast<std::size_t>(std::upper_bound(positions.begin(), positions.end(), cut) -
                                        positions.begin());
    }

    const DiskRecord& disk_;
    std::vector<std::size_t> begun_;
    std::vector<std::size_t> promised_;
};

std::optional<std::string> contentsIfThere(const fs::path& file) {
    return fs::exists(file) ? std::optional(files::contents(file)) : std::nullopt;
}

/// Somebody saves one picture after another under the same name.
class SavedPictures {
 public:
    SavedPictures(const fs::path& root, const DiskRecord& disk) : steps_(disk), target_(root / kTarget) {
        fs::create_directory(target_.parent_path());
    }

    void step() {
        steps_.begin();
        EXPECT_TRUE(savePng(bandedPicture(200, 50 + static_cast<int>(versions_.size())).view(), target_));
        versions_.emplace_back(files::contents(target_));
        steps_.promise();
    }
    void check(const fs::path& root, std::size_t cut) const {
        const fs::path target = root / kTarget;
        EXPECT_TRUE(steps_.allow(contentsIfThere(target), versions_, cut)) << "neither the old nor the new";
        EXPECT_TRUE(savePng(bandedPicture(20, 20).view(), target));
        EXPECT_EQ(files::entriesIn(target.parent_path()), 1U);
    }

 private:
    static constexpr const char* kTarget = "pictures/cat.png";
    Steps steps_;
    fs::path target_;
    std::vector<std::optional<std::string>> versions_{std::nullopt};
};

/// Events are stored, and those of old sessions are removed.
class StoredEvents {
 public:
    StoredEvents(const fs::path& root, const DiskRecord& disk)
        : steps_(disk),
          coordinator_(std::in_place, root / kFile, analytics::StoreSettings(), clock_),
          context_(std::in_place, *coordinator_) {}

    void step(std::mt19937_64& random) {
        steps_.begin();
        std::set<int> state = states_.back();
        if (random() % 6 == 0 && !state.empty()) {
            const int oldest = *state.begin() / kOfASession;
            EXPECT_TRUE(context_->removeEventsOfSession(std::to_string(oldest)));
            std::erase_if(state, [&](int event) { return event / kOfASession == oldest; });
        } else {
            const int end = next_ + 1 + static_cast<int>(random() % 16);
            EXPECT_TRUE(context_->performAndWait([&] {
                foundation::Result<void> done;
                for (; done && next_ < end; state.insert(next_++)) {
                    TXEvent event{0, std::to_string(next_ / kOfASession),
                                  std::to_string(next_) + std::string(3'000, 'x')};
                    done = context_->save(event);
                }
                return done;
            }));
        }
        states_.push_back(std::move(state));
    }
    void bringToDisk() {
        context_->wipeRemoved();
        steps_.promise();
    }
    void close() {
        context_.reset();
        coordinator_.reset();
    }
    void somebodyBroughtAllToDisk() { steps_.promise(); }

    void check(const fs::path& root, std::size_t cut) const {
        StoreCoordinator coordinator(root / kFile, {}, clock_);
        ManagedObjectContext context(coordinator);
        std::set<int> found;
        for (int session = 0; session <= next_ / kOfASession; ++session) {
            const auto events = context.eventsOfSession(std::to_string(session), PropertyValues::fetched);
            ASSERT_TRUE(events) << events.error().message;
            for (const TXEvent& event : *events)
                EXPECT_TRUE(found.insert(std::stoi(event.body.value_or("-1"))).second) << "there twice";
        }
        EXPECT_TRUE(steps_.allow(found, states_, cut)) << "no state that the store had";
        expectWholeStore(coordinator, root / kFile);
    }

 private:
    static constexpr const char* kFile = "store/telemetrix.db";
    static constexpr int kOfASession = 40;
    foundation::VirtualTime clock_;
    Steps steps_;
    std::optional<StoreCoordinator> coordinator_;
    std::optional<ManagedObjectContext> context_;
    int next_ = 0;
    std::vector<std::set<int>> states_{{}};
};

/// An editor keeps masks for undo, without a promise that they outlive the power.
class KeptMasks {
 public:
    explicit KeptMasks(const fs::path& root) : editor_(std::in_place, root / kFolder) {
        editor_->open();
        note();
    }

    void step(std::mt19937_64& random) {
        editor_->step(random);
        note();
    }
    void close() { editor_.reset(); }
    void check(const fs::path& root) {
        std::error_code notThere;
        for (const auto& entry : fs::directory_iterator(root / kFolder, notThere)) {
            if (entry.path().extension() != ".his")
                continue;
            const std::string bytes = files::contents(entry.path());
            const auto mask = cutengine::kernels::decodeMask(files::bytes(bytes), 4'000);
            mask ? ++whole : ++refused;
            EXPECT_TRUE(!mask || shown_.contains(pixelsOf(*mask))) << entry.path() << " was never shown";
        }
        expectToBeginWell(root / kFolder);
    }

    int whole = 0;    ///< files that the cuts left, and can be read
    int refused = 0;  ///< the others

 private:
    static constexpr const char* kFolder = "history";
    void note() { shown_.insert(pixelsOf(editor_->view.copyMaskPlane())); }

    std::optional<HistoryEditor> editor_;
    std::set<std::string> shown_;
};

/// A program that appends to a file, and waits for the disk or does not.
class AppendedLines {
 public:
    AppendedLines(const fs::path& root, const DiskRecord& disk, bool waits)
        : steps_(disk), name_(waits ? "waiting" : "careless"), waits_(waits), file_(root / name_) {}

    void step() {
        steps_.begin();
        const int file = ::open(file_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
        EXPECT_EQ(::write(file, line_.data(), line_.size()), static_cast<ssize_t>(line_.size()));
        if (waits_) {
            EXPECT_EQ(::fsync(file), 0);
        }
        ::close(file);
        steps_.promise();
    }
    /// How many of the lines that it took for written are lost.
    [[nodiscard]] std::size_t lost(const fs::path& root, std::size_t cut) const {
        const std::string found = contentsIfThere(root / name_).value_or("");
        std::size_t whole = 0;
        while (found.compare(whole * line_.size(), line_.size(), line_) == 0)
            ++whole;
        return steps_.promisedBy(cut) - std::min(whole, steps_.promisedBy(cut));
    }

 private:
    const std::string line_ = std::string(99, '.') + "\n";
    Steps steps_;
    std::string name_;
    bool waits_;
    fs::path file_;
};

/// A program that replaces a file by a renamed one, and does not wait for the disk.
class CarelessReplacements {
 public:
    CarelessReplacements(const fs::path& root, const DiskRecord& disk) : steps_(disk), root_(root) {}

    void step() {
        steps_.begin();
        versions_.emplace_back(std::string(9'000, static_cast<char>('a' + versions_.size() % 26)));
        files::put(root_ / "replacing.new", *versions_.back());
        fs::rename(root_ / "replacing.new", root_ / "replaced");
        steps_.promise();
    }
    [[nodiscard]] bool isLost(const fs::path& root, std::size_t cut) const {
        return !steps_.allow(contentsIfThere(root / "replaced"), versions_, cut);
    }

 private:
    Steps steps_;
    fs::path root_;
    std::vector<std::optional<std::string>> versions_{std::nullopt};
};

/// All who work on one disk.
struct Working {
    Working(const fs::path& root, const DiskRecord& disk)
        : pictures(root, disk),
          events(root, disk),
          masks(root),
          waiting(root, disk, true),
          careless(root, disk, false),
          replacements(root, disk) {}

    void step(std::mt19937_64& random, const MountedDisk& mounted) {
        careless.step();
        switch (random() % 16) {
            case 0:
                mounted.bringToDisk();
                events.somebodyBroughtAllToDisk();
                break;
            case 1:
                events.bringToDisk();
                break;
            case 2:
                waiting.step();
                break;
            case 3:
            case 4:
                replacements.step();
                break;
            case 5:
            case 6:
            case 7:
                pictures.step();
                break;
            case 8:
            case 9:
            case 10:
                masks.step(random);
                break;
            default:
                events.step(random);
        }
    }

    /// Lets go of the disk.
    void close() {
        events.close();
        masks.close();
    }

    SavedPictures pictures;
    StoredEvents events;
    KeptMasks masks;
    AppendedLines waiting;
    AppendedLines careless;
    CarelessReplacements replacements;
};

class PowerCuts : public ::testing::Test {
 protected:
    static constexpr int kCutsOfADisk = 20;
    static constexpr int kSteps = 150;

    void SetUp() override {
        fs::create_directory(served_);
        fs::create_directory(root_);
        files::put(image_, "");
        fs::resize_file(image_, std::size_t{24} << 20);
        const std::string make =
            "PATH=$PATH:/usr/sbin:/sbin mkfs.ext4 -q -F -b 4096 -m 0 "
            "-E nodiscard,lazy_itable_init=0,lazy_journal_init=0 " +
            image_.string();
        ASSERT_EQ(std::system(make.c_str()), 0);
        blank_ = files::contents(image_);
    }
    /// Lets all work on a disk, then looks at what cuts left; false where there can be no such disk.
    bool workAndCut(std::mt19937_64& random) {
        DiskRecord record(blank_);
        std::unique_ptr<Working> working;
        std::size_t begin = 0;
        std::size_t end = 0;
        {
            const auto server = DiskServer::create(record, served_);
            const auto mounted = server ? MountedDisk::create(server->disk(), root_) : nullptr;
            if (!mounted)
                return false;
            working = std::make_unique<Working>(root_, record);
            mounted->bringToDisk();
            begin = record.position();
            for (int i = 0; i < kSteps; ++i)
                working->step(random, *mounted);
            end = record.position();
            working->close();
        }
        for (int i = 0; i < kCutsOfADisk && !HasFailure(); ++i) {
            const std::size_t cut = begin + random() % (end - begin + 1);
            SCOPED_TRACE("cut after " + std::to_string(cut) + " of " + std::to_string(end) + " writes");
            files::put(image_, record.afterCut(cut, random));
            look(*working, cut);
        }
        writes_ += end - begin;
        masksWhole_ += working->masks.whole;
        masksRefused_ += working->masks.refused;
        return true;
    }
    void look(Working& working, std::size_t cut) {
        const auto mounted = MountedDisk::create(image_, root_);
        ASSERT_TRUE(mounted) << "no file system any more";
        EXPECT_EQ(working.waiting.lost(root_, cut), 0U);
        linesLost_ += working.careless.lost(root_, cut) > 0 ? 1 : 0;
        replacementsLost_ += working.replacements.isLost(root_, cut) ? 1 : 0;
        working.pictures.check(root_, cut);
        working.events.check(root_, cut);
        working.masks.check(root_);
        ++cuts_;
    }

    testing::TemporaryFolder home_;
    fs::path served_ = home_.path() / "served";
    fs::path root_ = home_.path() / "root";
    fs::path image_ = home_.path() / "image";
    std::string blank_;
    testing::CapturedLog log_;
    std::size_t writes_ = 0;
    int cuts_ = 0;
    int linesLost_ = 0;
    int replacementsLost_ = 0;
    int masksWhole_ = 0;
    int masksRefused_ = 0;
};

TEST(DiskRecordTest, CutTearsWritesButNotTheFirstBlock) {
    const std::string before(8'192, 'a');
    const std::string after(4'096, 'b');
    DiskRecord record(before);
    ASSERT_TRUE(record.write(0, after));
    ASSERT_TRUE(record.write(4'096, after));
    std::mt19937_64 random = testing::seededGenerator();
    std::set<std::string> first;
    std::set<std::string> second;
    for (int i = 0; i < 200; ++i) {
        const std::string left = record.afterCut(record.position(), random);
        first.insert(left.substr(0, 4'096));
        second.insert(left.substr(4'096));
    }
    EXPECT_EQ(first, (std::set{before.substr(4'096), after}));
    EXPECT_GT(second.size(), 2U);
}

TEST_F(PowerCuts, LeaveSavedPicturesOldOrNewAndStoresWhole) {
    std::mt19937_64 random = testing::seededGenerator();
    const int disks = testing::byDepth(1, 10, 50);
    bool possible = true;
    const bool mine = onOwnMounts([&] {
        for (int i = 0; i < disks && possible && !HasFailure(); ++i)
            possible = workAndCut(random);
    });
    if (!mine || !possible)
        TRIMORA_SKIP("no disk can be made here: that takes root, FUSE and a loop device");
    // Who does not wait for the disk must lose something, or these were no power cuts.
    EXPECT_GT(linesLost_, cuts_ / 4);
    EXPECT_GT(replacementsLost_, 0);
    std::printf(
        "%d cuts in %zu writes; careless programs lost lines in %d, a replaced file in %d; "
        "masks whole %d, refused %d\n",
        cuts_, writes_, linesLost_, replacementsLost_, masksWhole_, masksRefused_);
}

}  // namespace
}  // namespace trimora::reliability
