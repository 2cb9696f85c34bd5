#include <gmock/gmock.h>

#include <fstream>

#include "cutengine/CutViewForTests.h"

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
