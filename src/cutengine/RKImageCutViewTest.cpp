#include "cutengine/RKImageCutView.h"

#include <gmock/gmock.h>

#include "cutengine/CutViewForTests.h"

namespace trimora::cutengine {
namespace {

using foundation::Point;
using foundation::Size;
using ::testing::ElementsAre;

TEST_F(CutViewTest, StartsWithItsDefaults) {
    EXPECT_EQ(view.brushDiameter(), 20);
    EXPECT_EQ(view.brushHardness(), 1);
    EXPECT_EQ(view.brushAlphaValue(), 0);
    EXPECT_EQ(view.maskScale(), 1);
    EXPECT_EQ(view.dragMode(), DragMode::paint);
    EXPECT_EQ(view.scale(), 0);
    EXPECT_EQ(view.historyLength(), 0);
    EXPECT_EQ(view.historyCurrentState(), -1);
    EXPECT_EQ(view.historyFileIndex(), -1);
    EXPECT_EQ(view.image(), nullptr);
    EXPECT_EQ(view.getResult(), nullptr);
}

TEST_F(CutViewTest, LeftClickOnTheEmptyViewAsksToOpenAPictureAndPaintsNothing) {
    press(kMiddle);
    drag({210, 150}, kMiddle);
    view.mouseUp({});
    EXPECT_THAT(host.openedFor, ElementsAre(&view));
    EXPECT_TRUE(delegate.calls.empty());
    queues.settle();
    EXPECT_TRUE(view.copyMaskPlane().isEmpty());
    EXPECT_FALSE(view.isTracking());
}

TEST_F(CutViewTest, RightClickOnTheEmptyViewDoesNothingAtAll) {
    view.mouseEntered();
    const std::size_t cursorsBefore = host.cursors.size();
    press(kMiddle, MouseButton::right);
    view.mouseUp({MouseButton::right, kMiddle});
    EXPECT_TRUE(host.openedFor.empty());
    EXPECT_TRUE(delegate.calls.empty());
    EXPECT_EQ(host.cursors.size(), cursorsBefore);
    load(200, 100);
    view.updateCursor();
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::brush);
}

TEST_F(CutViewTest, LoadingMakesTheLayersOfAFreshDocument) {
    load(200, 100);
    ASSERT_EQ(view.layer().sublayers().size(), 2U);
    EXPECT_EQ(view.layer().sublayers()[0], view.bluredLayer());
    EXPECT_EQ(view.layer().sublayers()[1], view.imageLayer());
    EXPECT_TRUE(view.bluredLayer()->isHidden());
    EXPECT_EQ(view.imageLayer()->mask(), view.maskLayer());
    EXPECT_EQ(view.imageLayer()->size(), (Size{200, 100}));
    EXPECT_TRUE(view.imageFit());
    EXPECT_EQ(view.historyLength(), 1);
    EXPECT_EQ(view.historyCurrentState(), 0);
    EXPECT_EQ(view.historyFileIndex(), 0);
    EXPECT_EQ(view.bluredLayer()->transform(), view.imageLayer()->transform());
}

TEST_F(CutViewTest, NewPictureShowsWhollyAndItsColourPlaneIsTransparent) {
    load(200, 100);
    const foundation::Bitmap mask = view.copyMaskPlane();
    const foundation::Bitmap colour = view.copyColorPlane();
    ASSERT_EQ(mask.width(), 200);
    ASSERT_EQ(mask.height(), 100);
    EXPECT_EQ(mask.pixel(0, 0), (foundation::Pixel{0, 0, 0, 255}));
    EXPECT_EQ(mask.pixel(199, 99), (foundation::Pixel{0, 0, 0, 255}));
    EXPECT_EQ(colour.pixel(100, 50), foundation::Pixel{});
}

TEST_F(CutViewTest, NewPictureIsDrawnTheSameBeforeItsMaskIsThere) {
    const auto frame = [this] {
        foundation::Bitmap shown = foundation::Bitmap::create(400, 300).value();
        view.drawRect(shown.view(), shown.view().bounds());
        return shown;
    };
    load(300, 200);
    stroke({{200, 150}, {230, 150}});
    const foundation::Bitmap cut = frame();
    view.setImage(greyPicture(300, 200));
    time.advance(1);  // until it has come to rest
    EXPECT_EQ(view.mask(), nullptr);
    const foundation::Bitmap early = frame();
    queues.settle();
    ASSERT_NE(view.mask(), nullptr);
    EXPECT_TRUE(samePixels(early.view(), frame().view()));
    EXPECT_FALSE(samePixels(early.view(), cut.view()));
}

TEST_F(CutViewTest, CommandInBrushModePans) {
    load(800, 600);
    view.flagsChanged({.command = true});
    stroke({kMiddle, {220, 150}});
    EXPECT_EQ(maskAt(kMiddle), 255);
    EXPECT_EQ(view.transform().tx, 220);
    EXPECT_EQ(view.historyLength(), 1);
}

TEST_F(CutViewTest, CommandInHandModePaints) {
    load(800, 600);
    view.setDragMode(DragMode::pan);
    view.flagsChanged({.command = true});
    stroke({kMiddle, {220, 150}});
    EXPECT_EQ(maskAt(kMiddle), 0);
    EXPECT_EQ(view.historyLength(), 2);
}

TEST_F(CutViewTest, RightButtonPansInBrushModeAndPaintsInHandMode) {
    load(800, 600);
    stroke({kMiddle, {220, 150}}, MouseButton::right);
    EXPECT_EQ(view.transform().tx, 220);
    EXPECT_EQ(view.historyLength(), 1);
    view.setDragMode(DragMode::pan);
    stroke({kMiddle, {160, 150}}, MouseButton::right);
    EXPECT_EQ(maskAt(kMiddle), 0);
    stroke({kMiddle, {180, 150}});
    EXPECT_EQ(view.transform().tx, 200);
}

TEST_F(CutViewTest, RightButtonGestureGivesCommandBackToTheKeyboard) {
    load(800, 600);
    view.mouseEntered();
    view.setDragMode(DragMode::pan);
    stroke({kMiddle, {160, 150}}, MouseButton::right);
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::openHand);
    press(kMiddle, MouseButton::right);
    view.flagsChanged({.command = true});
    view.mouseUp({MouseButton::right, kMiddle});
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::brush) << "Command is still held";
}

TEST_F(CutViewTest, FinishedPanClearsCommandEvenWhileItIsHeld) {
    load(800, 600);
    view.mouseEntered();
    view.flagsChanged({.command = true});
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::openHand);
    stroke({kMiddle, {220, 150}});
    EXPECT_EQ(view.cursorKind(), Cursor::Kind::brush);
}

TEST_F(CutViewTest, GestureTellsTheDelegateWhenItBeginsAndEnds) {
    load(800, 600);
    stroke({kMiddle});
    view.setDragMode(DragMode::pan);
    stroke({kMiddle});
    EXPECT_THAT(delegate.calls, ElementsAre("willStart", "didEnd", "willStart", "didEnd"));
}

TEST_F(CutViewTest, EitherButtonEndsAGestureAndScrollingDuringItIsDropped) {
    load(800, 600);
    const auto before = view.transform();
    press(kMiddle);
    view.scrollWheel({kMiddle, 10});
    EXPECT_EQ(view.transform(), before);
    press({10, 10}, MouseButton::right);
    view.mouseUp({MouseButton::right, kMiddle});
    EXPECT_FALSE(view.isTracking());
    EXPECT_THAT(delegate.calls, ElementsAre("willStart", "didEnd"));
    queues.settle();
    EXPECT_EQ(view.historyLength(), 2);
}

TEST_F(CutViewTest, SecondPressDuringAGestureIsDropped) {
    load(800, 600);
    press(kMiddle);
    press({10, 10});
    view.mouseUp({MouseButton::left, kMiddle});
    EXPECT_THAT(delegate.calls, ElementsAre("willStart", "didEnd"));
    queues.settle();
    EXPECT_EQ(maskAt({10, 10}), 255);
    EXPECT_EQ(maskAt(kMiddle), 0);
}

TEST_F(CutViewTest, WithoutADelegateAllIsDoneAndNobodyIsTold) {
    view.setDelegate(nullptr);
    load(800, 600);
    view.setBrushDiameter(30);
    stroke({kMiddle});
    EXPECT_EQ(maskAt(kMiddle), 0);
    view.prevHistoryState();
    queues.settle();
    EXPECT_EQ(maskAt(kMiddle), 255);
    view.setScale(4);
    view.correctImagePositionWithFiting(false);
    EXPECT_TRUE(delegate.calls.empty());
    EXPECT_TRUE(delegate.diameters.empty());
    EXPECT_TRUE(delegate.miniMaps.empty());
    EXPECT_EQ(delegate.historyChanges, 0);
}

TEST_F(CutViewTest, EmptyViewTakesNoteOfTheBackgroundAndHasNothingToShow) {
    view.setBlurOn(true);
    view.setColorOn(true);
    view.drawBackground();
    queues.settle();
    EXPECT_TRUE(view.isBlurOn());
    EXPECT_TRUE(view.isColorOn());
    EXPECT_EQ(view.mask(), nullptr);
    EXPECT_EQ(view.getResult(), nullptr);
    EXPECT_TRUE(view.copyMaskPlane().isEmpty());
    EXPECT_FALSE(view.isAnimating());
}

TEST_F(CutViewTest, DragWithoutAPressDoesNothing) {
    load(800, 600);
    drag({100, 100}, kMiddle);
    view.mouseUp({});
    queues.settle();
    EXPECT_EQ(view.historyLength(), 1);
    EXPECT_TRUE(delegate.calls.empty());
}

TEST_F(CutViewTest, KeyIWithCommandOrOptionSwapsCutAndRestore) {
    view.keyDown({kKeyCodeI, {.command = true}});
    EXPECT_EQ(view.brushAlphaValue(), 1);
    view.keyDown({kKeyCodeI, {.option = true}});
    EXPECT_EQ(view.brushAlphaValue(), 0);
    view.keyDown({kKeyCodeI, {}});
    EXPECT_EQ(view.brushAlphaValue(), 0);
    view.keyDown({kKeyCodeZ, {.command = true}});
    EXPECT_EQ(view.brushAlphaValue(), 0);
}

TEST_F(CutViewTest, BrushDiameterIsClampedAndRoundedAndTheDelegateHearsTheRequest) {
    view.setBrushDiameter(250);
    EXPECT_EQ(view.brushDiameter(), 200);
    view.setBrushDiameter(9.4F);
    EXPECT_EQ(view.brushDiameter(), 10);
    view.setBrushDiameterSilent(31.5F);
    EXPECT_EQ(view.brushDiameter(), 32);
    EXPECT_THAT(delegate.diameters, ElementsAre(250, 9.4F));
}

TEST_F(CutViewTest, OptionAndWheelSizeTheBrush) {
    load(800, 600);
    const auto before = view.transform();
    view.flagsChanged({.option = true});
    view.scrollWheel({kMiddle, 15});
    EXPECT_EQ(view.brushDiameter(), 35);
    EXPECT_THAT(delegate.diameters, ElementsAre(35));
    EXPECT_EQ(view.transform(), before);
}

TEST_F(CutViewTest, StrokesQueuedWhenANewPictureArrivesAreDiscarded) {
    load(800, 600);
    press(kMiddle);
    drag({250, 150}, kMiddle);
    view.mouseUp({});
    view.setImage(greyPicture(400, 300));
    queues.settle();
    EXPECT_EQ(maskAt(kMiddle), 255);
    EXPECT_EQ(view.historyLength(), 1);
}

TEST_F(CutViewTest, UndoQueuedWhenANewPictureArrivesIsDiscarded) {
    load(800, 600);
    stroke({kMiddle});
    stroke({{100, 100}});
    view.prevHistoryState();
    view.setImage(greyPicture(800, 600));
    queues.settle();
    EXPECT_EQ(maskAt(kMiddle), 255);
    EXPECT_EQ(view.historyCurrentState(), 0);
}

TEST_F(CutViewTest, PictureWithoutAreaGetsNoPlanes) {
    view.setImage(Picture::createSized({0, 50}, {}));
    queues.settle();
    stroke({kMiddle, {210, 150}});
    EXPECT_TRUE(view.copyMaskPlane().isEmpty());
    EXPECT_EQ(view.mask(), nullptr);
    EXPECT_EQ(view.historyFileIndex(), -1);
}

TEST_F(CutViewTest, ClearingThePictureMovesTheCountersButLeavesNoFiles) {
    load(800, 600);
    stroke({kMiddle});
    view.setImage(nullptr);
    queues.settle();
    EXPECT_EQ(view.historyLength(), 1);
    EXPECT_EQ(view.historyCurrentState(), 0);
    EXPECT_EQ(view.historyFileIndex(), -1);
    EXPECT_TRUE(std::filesystem::is_empty(view.historyDirectory()));
    EXPECT_EQ(view.getResult(), nullptr);
    press(kMiddle);
    EXPECT_EQ(host.openedFor.size(), 1U);
}

TEST_F(CutViewTest, SettersWithoutEffectOnlyStore) {
    view.setBlurMode(true);
    view.setColorMode(true);
    view.setBrushColor(Colour{1, 0, 0, 1});
    view.setImageCursor(Cursor{Cursor::Kind::openHand, {}, nullptr});
    EXPECT_TRUE(view.blurMode());
    EXPECT_TRUE(view.colorMode());
    EXPECT_EQ(view.brushColor(), (Colour{1, 0, 0, 1}));
    EXPECT_EQ(view.imageCursor()->kind, Cursor::Kind::openHand);
    view.setBrushHardness(3);
    EXPECT_EQ(view.brushHardness(), 1);
    view.setBrushHardness(-3);
    EXPECT_EQ(view.brushHardness(), 0);
}

TEST_F(CutViewTest, ViewMayGoWhileWorkIsQueued) {
    {
        RKImageCutView other{{queues, time, notifications, home.path() / "other"}, host};
        other.setViewSize({100, 100});
        other.setImage(greyPicture(50, 50));
        other.setBlurOn(true);
    }
    queues.settle();
    notifications.post("rk.cutView.needsCursorUpdate");
}

}  // namespace
}  // namespace trimora::cutengine
