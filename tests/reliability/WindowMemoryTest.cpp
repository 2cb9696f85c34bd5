#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "AllocationFaults.h"
#include "PicturePool.h"
#include "WindowOrder.h"
#include "WindowProgram.h"
#include "cli/Toolkit.h"
#include "editor/CutViewWidget.h"
#include "foundation/PixelBuffer.h"
#include "testing/Depth.h"
#include "testing/TemporaryFolder.h"

// A person at work in the window while memory runs out: what cannot be done is told, and the program goes on
// with the picture, the mask and the undo steps that it had.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
using ::testing::AnyOf;
using ::testing::Eq;
using ::testing::IsEmpty;

constexpr std::size_t kLarge = 16'384;  // bytes

/// What the person has.
struct Work {
    std::size_t mask;  // a hash of every pixel
    std::int64_t states;
    std::int64_t state;

    friend bool operator==(const Work&, const Work&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Work& work) {
        return out << "mask " << work.mask << ", state " << work.state << " of " << work.states;
    }
};

class WindowMemory : public ::testing::Test {
 protected:
    struct Act {
        const char* name;
        std::function<void()> act;
        std::function<bool()> isDone;  ///< beside what Work tells
    };

    WindowMemory() { begin(); }

    [[nodiscard]] cutengine::RKImageCutView& view() { return program_.cutView(); }

    /// A picture with two strokes, the second of which is taken back.
    void begin() {
        program_.editor().draggingFilesComplete_needsWait({pool_.sound().front()}, false);
        program_.rest();
        stroke(100);
        stroke(150);
        choose("undo_pressed:");
        choose("chooseEraserMode:");
        QGuiApplication::clipboard()->clear();
        program_.rest();
        (void)program_.takeTroubles();
    }
    [[nodiscard]] Work work() {
        if (view().mask() == nullptr)
            return {0, view().historyLength(), view().historyCurrentState()};
        std::string mask;
        for (const auto& tile : view().mask()->levels().front().tiles)
            mask.append(tile->alpha.begin(), tile->alpha.end());
        return {std::hash<std::string>()(mask), view().historyLength(), view().historyCurrentState()};
    }

    /// The queues of the program that a person uses are served by the toolkit's loop.
    void serveQueues() {
        QMetaObject::invokeMethod(
            qApp, [this] { program_.time().turn(); }, Qt::QueuedConnection);
        QCoreApplication::processEvents();
    }
    void choose(const char* selector) {
        QAction& item = program_.wiring().shell().menu().item(selector);
        QMetaObject::invokeMethod(&item, &QAction::trigger, Qt::QueuedConnection);
        serveQueues();
    }
    void stroke(int x) {
        editor::CutViewWidget* const widget = program_.editor().outlets().viCut;
        const QPoint middle = widget->rect().center();
        const QPoint from = middle + QPoint(x - 200, 0);
        QTest::mousePress(widget, Qt::LeftButton, {}, from);
        serveQueues();
        QTest::mouseMove(widget, from + QPoint(40, 0));
        serveQueues();
        QTest::mouseRelease(widget, Qt::LeftButton, {}, from + QPoint(40, 0));
        serveQueues();
    }
    void open(const fs::path& file) {
        QMetaObject::invokeMethod(
            qApp, [this, file] { program_.editor().draggingFilesComplete_needsWait({file}, false); },
            Qt::QueuedConnection);
        serveQueues();
    }

    /// How many large blocks an act takes, and what the person has once it is done.
    std::pair<std::int64_t, Work> whole(const Act& act) {
        begin();
        const std::int64_t taken = actWithFault(act, 0, false);
        return {taken, work()};
    }
    std::int64_t actWithFault(const Act& act, std::int64_t number, bool forEver) {
        foundation::PixelBuffer::trimStock();
        std::int64_t taken = 0;
        {
            const AllocationFaults faults(number, forEver, kLarge);
            act.act();
            taken = AllocationFaults::count();
        }
        program_.rest();
        return taken;
    }
    /// One act with one fault, and what must hold then.
    void actAndLook(const Act& act, const Work& done, std::int64_t number, bool forEver) {
        begin();
        const Work before = work();
        actWithFault(act, number, forEver);
        const Work now = work();
        EXPECT_THAT(now, AnyOf(Eq(before), Eq(done)));
        const auto troubles = program_.takeTroubles();
        EXPECT_TRUE((now == done && act.isDone()) || !troubles.empty()) << "not done, and nobody was told";
        expectOrder(troubles);
    }
    /// Where the person was told that a step cannot be undone its file is not there.
    void expectOrder(const std::vector<std::string>& troubles) {
        const bool isUndoLost = std::any_of(troubles.begin(), troubles.end(), [](const std::string& line) {
            return line.starts_with("Undo cannot be kept");
        });
        if (!isUndoLost) {
            EXPECT_THAT(disorderIn(program_), IsEmpty());
        }
    }

    testing::TemporaryFolder folder_;
    const Toolkit toolkit_{Toolkit::Screen::offscreen};
    const PicturePool pool_{folder_.path() / "pool"};
    OneFilePanels panels_{[] { return fs::path(); }, [this] { return folder_.path() / "saved.png"; }};
    WindowProgram program_{{folder_.path() / "data", folder_.path() / "config", folder_.path() / "cache"},
                           panels_};
};

TEST_F(WindowMemory, ThatRunsOutIsToldAndLeavesTheWorkAsItWas) {
    const auto always = [] { return true; };
    const std::vector<Act> acts = {
        {"stroke", [this] { stroke(220); }, always},
        {"undo", [this] { choose("undo_pressed:"); }, always},
        {"redo", [this] { choose("redo_pressed:"); }, always},
        {"copy", [this] { choose("copy:"); }, [] { return !QGuiApplication::clipboard()->image().isNull(); }},
        {"blur", [this] { choose("chooseBlurMode:"); }, always},
    };
    int points = 0;
    for (const Act& act : acts) {
        const auto [taken, done] = whole(act);
        EXPECT_GT(taken, 0) << act.name;
        for (std::int64_t point = 0; point < testing::byDepth(1, 2, 2) * taken; ++point, ++points) {
            const std::int64_t number = point % taken + 1;
            const bool forEver = point >= taken;
            SCOPED_TRACE(std::string(act.name) + ", large block " + std::to_string(number) +
                         (forEver ? " and all after" : ""));
            actAndLook(act, done, number, forEver);
        }
    }
    std::printf("%d points\n", points);
}

TEST_F(WindowMemory, ThatRunsOutForAPictureLeavesTheOneBefore) {
    const Act act{"open", [this] { open(pool_.sound()[1]); }, [] { return true; }};
    const auto taken = whole(act).first;
    for (std::int64_t number = 1; number <= taken; ++number) {
        SCOPED_TRACE("large block " + std::to_string(number));
        begin();
        const Work before = work();
        actWithFault(act, number, false);
        const bool isOther = view().image() != nullptr && view().image()->size().width != 300;
        EXPECT_TRUE(isOther || work() == before);
        const auto troubles = program_.takeTroubles();
        EXPECT_TRUE(isOther || !troubles.empty()) << "not opened, and nobody was told";
        stroke(100);
        program_.rest();
        EXPECT_GE(view().historyLength(), 2);
        if (troubles.empty()) {
            EXPECT_THAT(disorderIn(program_), IsEmpty());
        }
    }
    std::printf("%d points\n", static_cast<int>(taken));
}

}  // namespace
}  // namespace trimora::reliability
