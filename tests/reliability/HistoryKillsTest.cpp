#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>
#include <string>

#include "HistoryEditor.h"
#include "IoFaults.h"
#include "Processes.h"
#include "SentinelTree.h"
#include "cutengine/kernels/MaskCodec.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

// The undo folder of an editor that is killed at any moment: what lies in it are whole masks that were
// once shown, and the next editor begins with a clean one.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using foundation::Bitmap;

class HistoryKills : public ::testing::Test {
 protected:
    void TearDown() override { EXPECT_TRUE(sentinels_.isUntouched()); }

    /// What a script shows on its way, and how many calls it makes.
    struct Script {
        std::uint64_t seed = 0;
        std::set<std::string> shown;
        int calls = 0;
    };
    Script rehearsed(std::uint64_t seed) const {
        Script script{seed, {}, 0};
        fs::remove_all(folder_);  // with what others left the script only makes more calls
        const IoFaults watcher;
        HistoryEditor(folder_).work(seed, [&](const Bitmap& mask) { script.shown.insert(pixelsOf(mask)); });
        script.calls = static_cast<int>(watcher.calls().size());
        return script;
    }
    void killAt(const Script& script, int call) const {
        IoPlan plan;
        plan.call = call;
        plan.fault = IoFault::kill;
        const Ended ended = inOwnProcess([&] {
            const IoFaults faults(plan);
            HistoryEditor(folder_).work(script.seed, [](const Bitmap&) {});
            return 0;
        });
        ASSERT_TRUE(ended.wasKilled()) << ended.text();
    }
    void checkFolder(const Script& script) const {
        int hidden = 0;
        std::error_code notThereYet;  // killed before it was made
        for (const auto& entry : fs::directory_iterator(folder_, notThereYet)) {
            if (entry.path().extension() == ".part") {
                ++hidden;
                continue;
            }
            const std::string bytes = files::contents(entry.path());
            const auto mask = cutengine::kernels::decodeMask(files::bytes(bytes), 4000);
            ASSERT_TRUE(mask) << entry.path() << ": " << mask.error().message;
            ASSERT_TRUE(script.shown.contains(pixelsOf(*mask))) << entry.path();
        }
        ASSERT_LE(hidden, 1);
    }
    void checkNextEditor() const {
        expectToBeginWell(folder_);
        fs::remove_all(folder_);  // its masks are none of the script's
    }

    testing::TemporaryFolder home_;
    SentinelTree sentinels_{home_.path() / "documents"};
    fs::path folder_ = home_.path() / "history";
};

TEST_F(HistoryKills, LeaveWholeMasksAndTheNextEditorIsWell) {
    std::mt19937_64 random = testing::seededGenerator();
    const int kills = testing::byDepth(1'000, 5'000, 20'000) / (kSanitized ? 10 : 1);
    constexpr int kKillsAScript = 50;
    Script script;
    for (int kill = 0; kill < kills; ++kill) {
        if (kill % kKillsAScript == 0)
            script = rehearsed(random());
        const int call = 1 + static_cast<int>(random() % static_cast<unsigned>(script.calls));
        SCOPED_TRACE("kill " + std::to_string(kill) + " at call " + std::to_string(call));
        killAt(script, call);
        checkFolder(script);
        if (kill % 10 == 0)
            checkNextEditor();
        if (HasFatalFailure() || HasFailure())
            return;
    }
    std::printf("%d kills\n", kills);
}

}  // namespace
}  // namespace trimora::reliability
