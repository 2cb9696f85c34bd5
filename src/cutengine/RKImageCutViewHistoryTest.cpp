#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <random>

#include "cutengine/CutViewForTests.h"
#include "cutengine/kernels/MaskCodec.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

namespace trimora::cutengine {
namespace {

using foundation::Point;
namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::Not;

class HistoryTest : public CutViewTest {
 protected:
    HistoryTest() { load(400, 300); }

    /// The n-th of a row of places far enough apart to be told from each other.
    static Point place(int n) { return {20.0 + 24 * (n % 15), 20.0 + 24 * (n / 15)}; }
    void strokes(int count) {
        for (int i = 0; i < count; ++i)
            stroke({place(i)});
    }
    void undo() {
        view.prevHistoryState();
        queues.settle();
    }
    void redo() {
        view.nextHistoryState();
        queues.settle();
    }
    [[nodiscard]] fs::path file(int number) const {
        return view.historyDirectory() / (std::to_string(number) + ".his");
    }
};

TEST_F(HistoryTest, ThirtyFiveStrokesKeepThirtyStates) {
    strokes(35);
    EXPECT_EQ(view.historyLength(), 30);
    EXPECT_EQ(view.historyCurrentState(), 29);
    for (int i = 0; i < 29; ++i) {
        undo();
        EXPECT_EQ(maskAt(place(34 - i)), 255) << "undo " << i;
        EXPECT_EQ(maskAt(place(33 - i)), 0) << "undo " << i;
    }
    EXPECT_EQ(view.historyCurrentState(), 0);
    const auto fileIndex = view.historyFileIndex();
    undo();
    EXPECT_EQ(view.historyCurrentState(), 0);
    EXPECT_EQ(view.historyFileIndex(), fileIndex);
    for (int i = 0; i < 29; ++i)
        redo();
    EXPECT_EQ(view.historyCurrentState(), 29);
    EXPECT_EQ(maskAt(place(34)), 0);
}

TEST_F(HistoryTest, UndoFromTheFirstStateAndRedoAtTheNewestDoNothing) {
    undo();
    EXPECT_EQ(view.historyCurrentState(), 0);
    strokes(1);
    const int changes = delegate.historyChanges;
    redo();
    EXPECT_EQ(view.historyCurrentState(), 1);
    EXPECT_EQ(delegate.historyChanges, changes);
}

TEST_F(HistoryTest, FileNumbersWrapAfterThirtyOneRecordings) {
    strokes(30);
    EXPECT_EQ(view.historyFileIndex(), 30);
    stroke({place(30)});
    EXPECT_EQ(view.historyFileIndex(), 0);
    undo();
    EXPECT_EQ(view.historyFileIndex(), 30);
    redo();
    EXPECT_EQ(view.historyFileIndex(), 0);
    EXPECT_EQ(maskAt(place(30)), 0);
}

TEST_F(HistoryTest, StrokeAfterUndoCutsOffTheRedoBranch) {
    strokes(4);
    undo();
    undo();
    EXPECT_EQ(view.historyCurrentState(), 2);
    stroke({place(7)});
    EXPECT_EQ(view.historyCurrentState(), 3);
    EXPECT_EQ(view.historyLength(), 4);
    redo();
    EXPECT_EQ(view.historyCurrentState(), 3);
    EXPECT_EQ(maskAt(place(2)), 255);
    EXPECT_EQ(maskAt(place(7)), 0);
}

TEST_F(HistoryTest, RedoAskedForTwiceAtOnceStopsAtTheNewestState) {
    strokes(2);
    undo();
    view.nextHistoryState();
    view.nextHistoryState();
    queues.settle();
    EXPECT_EQ(view.historyCurrentState(), 2);
    EXPECT_EQ(maskAt(place(1)), 0);
}

TEST_F(HistoryTest, MissingFileIsLoggedAndChangesNothing) {
    strokes(2);
    fs::remove(file(1));
    testing::CapturedLog log;
    undo();
    EXPECT_THAT(log.texts(), Contains("NO DATA PROVIDER"));
    EXPECT_EQ(view.historyCurrentState(), 2);
    EXPECT_EQ(view.historyFileIndex(), 2);
    EXPECT_EQ(maskAt(place(1)), 0);
}

TEST_F(HistoryTest, FileThatDoesNotDecodeShowsTheWholePictureAndTheCountersHaveMoved) {
    strokes(2);
    std::ofstream(file(1)) << "no picture";
    undo();
    EXPECT_EQ(view.historyCurrentState(), 1);
    EXPECT_EQ(maskAt(place(0)), 255);
    EXPECT_EQ(maskAt(place(1)), 255);
}

TEST_F(HistoryTest, DamagedFileIsNeverShownAsAWrongMask) {
    strokes(2);
    std::fstream damaged(file(1), std::ios::in | std::ios::out | std::ios::binary);
    damaged.seekg(0, std::ios::end);
    const auto middle = static_cast<std::streamoff>(damaged.tellg()) / 2;
    damaged.seekg(middle);
    const char byte = static_cast<char>(damaged.get());
    damaged.seekp(middle);
    damaged.put(static_cast<char>(byte ^ 0x10));
    damaged.close();
    undo();
    EXPECT_EQ(maskAt(place(0)), 255);
}

TEST_F(HistoryTest, NewPictureDeletesEveryFileInTheFolder) {
    strokes(3);
    std::ofstream(view.historyDirectory() / "stray.txt") << "x";
    load(100, 100);
    EXPECT_TRUE(fs::exists(file(0)));
    EXPECT_FALSE(fs::exists(file(1)));
    EXPECT_FALSE(fs::exists(view.historyDirectory() / "stray.txt"));
}

TEST_F(HistoryTest, FirstStateIsTheUntouchedMaskHoweverSoonAStrokeBegins) {
    view.setImage(greyPicture(400, 300));
    stroke({place(0)});
    EXPECT_EQ(view.historyLength(), 2);
    EXPECT_EQ(maskAt(place(0)), 0);
    undo();
    EXPECT_EQ(view.historyCurrentState(), 0);
    EXPECT_EQ(maskAt(place(0)), 255);
}

TEST_F(HistoryTest, FilesArePrivateToTheAccount) {
    EXPECT_EQ(fs::status(view.historyDirectory()).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(file(0)).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(HistoryTest, LinkInTheFolderIsNotFollowedOutOfIt) {
    const fs::path outside = home.path() / "outside";
    std::ofstream(outside) << "precious";
    fs::create_symlink(outside, file(1));
    strokes(1);
    std::string kept;
    std::ifstream(outside) >> kept;
    EXPECT_EQ(kept, "precious");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(file(1))));
    fs::remove(file(0));
    fs::create_symlink(outside, file(0));
    undo();
    EXPECT_EQ(view.historyCurrentState(), 1) << "a link is no history file";
}

TEST_F(HistoryTest, SnapshotThatCannotBeWrittenIsToldOnceAndPaintingGoesOn) {
    strokes(1);
    for (int number = 2; number <= 4; ++number)
        fs::create_directory(file(number));
    testing::CapturedLog log;
    strokes(3);
    EXPECT_EQ(view.historyLength(), 5);
    EXPECT_EQ(view.historyFileIndex(), 4);
    EXPECT_EQ(maskAt(place(2)), 0);
    EXPECT_EQ(host.troubles.size(), 1U);
    EXPECT_EQ(log.texts(foundation::log::Level::warning).size(), 1U);
    undo();
    EXPECT_EQ(view.historyCurrentState(), 4) << "its file was never written";
}

TEST_F(HistoryTest, DelegateHearsOfEveryChange) {
    const int before = delegate.historyChanges;
    strokes(1);
    EXPECT_EQ(delegate.historyChanges, before + 1);
    undo();
    EXPECT_EQ(delegate.historyChanges, before + 2);
    redo();
    EXPECT_EQ(delegate.historyChanges, before + 3);
    view.resetMask();
    queues.settle();
    EXPECT_EQ(delegate.historyChanges, before + 4);
}

TEST_F(HistoryTest, MarkerEndsThePassAndLaterStampsWaitForTheNext) {
    press(place(0));
    view.mouseUp({});
    press(place(1));
    view.mouseUp({});
    queues.settle();
    undo();
    EXPECT_EQ(maskAt(place(0)), 0);
    EXPECT_EQ(maskAt(place(1)), 255) << "each stroke is a state of its own";
}

TEST_F(HistoryTest, MaskFromElsewhereIsScaledToThePlaneAndIsOneStep) {
    foundation::Bitmap left = foundation::Bitmap::createFilled(200, 150, {0, 0, 0, 255}).value();
    for (int y = 0; y < 150; ++y) {
        for (int x = 100; x < 200; ++x)
            left.setPixel(x, y, {});
    }
    view.loadMask(std::move(left));
    queues.settle();
    EXPECT_EQ(maskAt({100, 150}), 255);
    EXPECT_EQ(maskAt({300, 150}), 0);
    EXPECT_EQ(view.copyMaskPlane().width(), 400);
    EXPECT_EQ(view.historyLength(), 2);
    undo();
    EXPECT_EQ(maskAt({300, 150}), 255);
    redo();
    EXPECT_EQ(maskAt({300, 150}), 0);
}

TEST_F(HistoryTest, StrokesGoOnOverAMaskFromElsewhere) {
    view.loadMask(foundation::Bitmap::createFilled(400, 300, {}).value());
    view.setBrushAlphaValue(1);
    stroke({{200, 150}});
    EXPECT_EQ(maskAt({200, 150}), 255);
    EXPECT_EQ(maskAt({100, 150}), 0);
    EXPECT_EQ(view.historyLength(), 3);
}

/// Does anything that a history can go through, in any order, several things before any of them has begun.
class AnyHistory : public HistoryTest {
 protected:
    void begin() {
        view.setImage(greyPicture(between(50, 300), between(50, 700)));
        view.setViewSize({400, 300});
    }
    void startOrEndStroke() {
        const Point at{between(0, 400) * 1.0, between(0, 300) * 1.0};
        if (isPressed_) {
            view.mouseUp({MouseButton::left, at});
        } else {
            view.setBrushHardness(between(0, 1) == 0 ? 1.0F : 0.3F);
            view.setBrushAlphaValue(between(0, 3) == 0 ? 1.0F : 0.0F);
            press(at);
            drag({at.x + between(-30, 30), at.y + between(-30, 30)}, at);
        }
        isPressed_ = !isPressed_;
    }
    void loadAny() {
        const auto side = [&](int own) { return between(0, 1) == 0 ? own : between(20, 500); };
        const foundation::Bitmap plane = view.copyMaskPlane();
        view.loadMask(foundation::Bitmap::createFilled(std::max(1, side(plane.width())),
                                                       std::max(1, side(plane.height())),
                                                       {0, 0, 0, static_cast<std::uint8_t>(between(0, 255))})
                          .value());
    }
    void doAny() {
        const int kind = between(0, 60);
        if (kind == 0)
            begin();
        else if (kind == 1)
            view.resetMask();
        else if (kind == 2)
            loadAny();
        else if (kind < 20)
            view.prevHistoryState();
        else if (kind < 30)
            view.nextHistoryState();
        else
            startOrEndStroke();
        // A mask from elsewhere is recorded later than asked for; a step that is asked for then comes
        // between.
        if (kind == 2 || between(0, 2) == 0)
            queues.settle();
    }
    void comeToRest() {
        if (isPressed_)
            startOrEndStroke();
        queues.settle();
    }

    /// The file of the shown state is what would be written of the mask by itself, and the screen shows that.
    void check() {
        const foundation::Bitmap plane = view.copyMaskPlane();
        const auto expected = kernels::encodeMask(plane.view());
        std::ifstream opened(file(static_cast<int>(view.historyFileIndex())), std::ios::binary);
        const std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(opened), {}};
        ASSERT_TRUE(expected.value() == bytes);
        const kernels::MaskSnapshot::Level& shown = view.mask()->levels().front();
        for (int y = 0; y < plane.height(); ++y) {
            for (int x = 0; x < plane.width(); ++x)
                ASSERT_EQ(shown.alphaAt(x, y), plane.pixel(x, y).alpha) << x << ' ' << y;
        }
    }

    int between(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random_); }

 private:
    std::mt19937_64 random_ = testing::seededGenerator();
    bool isPressed_ = false;
};

TEST_F(AnyHistory, KeepsWholeMasksWhateverOfThemWasWrittenAndReadAnew) {
    for (int round = testing::byDepth(60, 1'500, 15'000); round > 0; --round) {
        for (int i = between(1, 12); i > 0; --i)
            doAny();
        comeToRest();
        ASSERT_NO_FATAL_FAILURE(check());
    }
}

TEST_F(AnyHistory, ShowsTheMaskOfEachStateAgain) {
    for (int picture = testing::byDepth(3, 60, 600); picture > 0; --picture) {
        begin();
        queues.settle();
        std::vector<foundation::Bitmap> states;
        states.push_back(view.copyMaskPlane());
        for (int step = 0; step < 60; ++step) {
            const int kind = between(0, 9);
            const std::int64_t before = view.historyCurrentState();
            if (kind < 3 && view.historyLength() < 30)
                stroke({{between(0, 400) * 1.0, between(0, 300) * 1.0}});
            else if (kind == 3 && view.historyLength() < 30)
                view.resetMask();
            else if (kind < 8)
                view.prevHistoryState();
            else
                view.nextHistoryState();
            queues.settle();
            const auto now = static_cast<std::size_t>(view.historyCurrentState());
            const foundation::Bitmap plane = view.copyMaskPlane();
            const bool isNew = kind < 4 && view.historyCurrentState() == before + 1;
            if (isNew) {
                states.resize(now);
                states.push_back(view.copyMaskPlane());
            }
            ASSERT_TRUE(samePixels(states[now].view(), plane.view())) << "state " << now;
        }
    }
}

TEST_F(CutViewTest, HistoryFolderThatCannotBeMadeIsToldOnceAndPaintingGoesOn) {
    std::ofstream(home.path() / "in the way") << "a file";
    testing::CapturedLog log;
    RKImageCutView other({queues, time, notifications, home.path() / "in the way"}, host);
    other.setViewSize({400, 300});
    other.setImage(greyPicture(400, 300));
    for (const Point at : {Point{200, 150}, Point{50, 50}}) {
        other.mouseDown({MouseButton::left, at});
        other.mouseUp({MouseButton::left, at});
        queues.settle();
    }
    EXPECT_EQ(host.troubles.size(), 1U);
    EXPECT_THAT(log.texts(foundation::log::Level::warning),
                ::testing::Contains(::testing::StartsWith("no history folder: ")));
    other.prevHistoryState();
    queues.settle();
    EXPECT_EQ(other.copyMaskPlane().pixel(200, 150).alpha, 0) << "there is no state to go back to";
    EXPECT_EQ(other.copyMaskPlane().pixel(50, 249).alpha, 0);
}

TEST_F(CutViewTest, WithoutAFolderForItNoHistoryIsKeptAndNobodyIsToldOfTrouble) {
    RKImageCutView bare({queues, time, notifications, std::nullopt}, host);
    bare.setViewSize({400, 300});
    bare.setImage(greyPicture(400, 300));
    bare.mouseDown({MouseButton::left, {200, 150}});
    bare.mouseUp({MouseButton::left, {200, 150}});
    queues.settle();
    EXPECT_EQ(bare.historyLength(), 2);
    EXPECT_EQ(bare.copyMaskPlane().pixel(200, 150).alpha, 0);
    bare.prevHistoryState();
    queues.settle();
    EXPECT_EQ(bare.historyCurrentState(), 1);
    EXPECT_EQ(bare.copyMaskPlane().pixel(200, 150).alpha, 0);
    EXPECT_TRUE(host.troubles.empty());
    EXPECT_FALSE(std::filesystem::exists("0.his"));
}

}  // namespace
}  // namespace trimora::cutengine
