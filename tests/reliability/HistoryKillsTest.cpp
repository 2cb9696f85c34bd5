#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>
#include <string>

#include "IoFaults.h"
#include "Processes.h"
#include "SentinelTree.h"
#include "cutengine/CutViewForTests.h"
#include "cutengine/kernels/MaskCodec.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

// The undo folder of an editor that is killed at any moment: what lies in it are whole masks that were
// once shown, and the next editor begins with a clean one.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using cutengine::RKImageCutView;
using foundation::Bitmap;

std::string pixelsOf(const Bitmap& mask) {
    std::string pixels = std::to_string(mask.width()) + "x" + std::to_string(mask.height()) + " ";
    for (int y = 0; y < mask.height(); ++y)
        pixels.append(reinterpret_cast<const char*>(mask.view().row(y)),
                      static_cast<std::size_t>(mask.width()) * 4);
    return pixels;
}

/// A cut view on a history folder, in which a person works.
class Editor {
 public:
    explicit Editor(const fs::path& folder) : view({queues_, time_, notifications_, folder}, host_) {
        view.setViewSize({200, 150});
    }

    void open() {
        view.setImage(cutengine::Picture::create(
            Bitmap::createFilled(100, 75, {128, 128, 128, 255}, foundation::AlphaMode::opaque).value()));
        queues_.settle();
    }
    void stroke(double x, double y) {
        view.mouseDown({cutengine::MouseButton::left, {x, y}});
        view.mouseUp({cutengine::MouseButton::left, {x, y}});
        queues_.settle();
    }
    void undo() {
        view.prevHistoryState();
        queues_.settle();
    }
    void redo() {
        view.nextHistoryState();
        queues_.settle();
    }
    /// Strokes, undos, redos and resets by chance, `noted` after each with what is shown.
    template <typename Noted>
    void work(std::uint64_t seed, const Noted& noted) {
        std::mt19937_64 random(seed);
        open();
        noted(view.copyMaskPlane());
        for (int i = 0; i < 40; ++i) {
            switch (random() % 8) {
                case 0:
                    undo();
                    break;
                case 1:
                    redo();
                    break;
                case 2:
                    view.resetMask();
                    queues_.settle();
                    break;
                default:
                    stroke(static_cast<double>(random() % 200), static_cast<double>(random() % 150));
            }
            noted(view.copyMaskPlane());
        }
    }

 private:
    foundation::ManualQueueFactory queues_;
    foundation::VirtualTime time_;
    foundation::NotificationCenter notifications_;
    cutengine::RecordingHost host_;

 public:
    RKImageCutView view;
};

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
        Editor(folder_).work(seed, [&](const Bitmap& mask) { script.shown.insert(pixelsOf(mask)); });
        script.calls = static_cast<int>(watcher.calls().size());
        return script;
    }
    void killAt(const Script& script, int call) const {
        IoPlan plan;
        plan.call = call;
        plan.fault = IoFault::kill;
        const Ended ended = inOwnProcess([&] {
            const IoFaults faults(plan);
            Editor(folder_).work(script.seed, [](const Bitmap&) {});
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
        Editor next(folder_);
        next.open();
        EXPECT_EQ(next.view.historyLength(), 1);
        EXPECT_EQ(files::entriesIn(folder_), 1U);
        const std::string untouched = pixelsOf(next.view.copyMaskPlane());
        next.stroke(100, 75);
        EXPECT_NE(pixelsOf(next.view.copyMaskPlane()), untouched);
        next.undo();
        EXPECT_EQ(pixelsOf(next.view.copyMaskPlane()), untouched);
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
