#include "editor/EditorTools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLineEdit>

#include "controls/CustomSlider.h"
#include "controls/SliderVertical.h"
#include "editor/CursorPreview.h"
#include "editor/EditorScreenForTests.h"

namespace trimora::editor {
namespace {

using cutengine::DragMode;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class EditorToolsTest : public EditorScreenTest {
 protected:
    /// Of Hand, Brush and Restore.
    std::vector<std::string> toolImages() {
        return {outlets().btnHandNew->image().toStdString(), outlets().btnEraserNew->image().toStdString(),
                outlets().btnEraserHistoryNew->image().toStdString()};
    }
    /// Of the quick control that brings back.
    std::vector<std::string> invertImages() {
        return {outlets().btnInvertBrush->image().toStdString(),
                outlets().btnInvertBrush->alternateImage().toStdString()};
    }
    std::vector<std::string> blurImages() {
        return {outlets().btnBlur->image().toStdString(), outlets().btnBlur->alternateImage().toStdString()};
    }
};

TEST_F(EditorToolsTest, TheScreenBeginsWithTheBrush) {
    EXPECT_THAT(toolImages(),
                ElementsAre("hand_noActive_new", "eraser_active", "history_brush_noActive_new"));
    EXPECT_EQ(view().dragMode(), DragMode::paint);
    EXPECT_EQ(view().brushAlphaValue(), 0);
    EXPECT_EQ(controller_->tools().eraserSizeValue(), 0);
    EXPECT_EQ(controller_->tools().invertSizeValue(), 70);
    EXPECT_FALSE(view().isBlurOn());
}

TEST_F(EditorToolsTest, TheHandPansAndLeavesTheBrushAsItIs) {
    open({"/p/cat.png"});
    send("invertBrushSelected:");
    click(*outlets().btnHandNew);
    EXPECT_THAT(toolImages(),
                ElementsAre("hand_active_new", "eraser_noActive", "history_brush_noActive_new"));
    EXPECT_EQ(view().dragMode(), DragMode::pan);
    EXPECT_EQ(view().brushAlphaValue(), 1);
}

TEST_F(EditorToolsTest, TheBrushCutsWithItsOwnSizeAndShowsItsBox) {
    open({"/p/cat.png"});
    outlets().eraserSize->sliderClass().trackTo(90);
    send("invertBrush_pressed_new:");
    click(*outlets().btnEraserNew);
    EXPECT_THAT(toolImages(),
                ElementsAre("hand_noActive_new", "eraser_active", "history_brush_noActive_new"));
    EXPECT_EQ(view().brushAlphaValue(), 0);
    EXPECT_EQ(view().brushDiameter(), 90);
    EXPECT_FALSE(outlets().eraserViewSettings->isHidden());
    EXPECT_TRUE(outlets().invertViewSettings->isHidden());
}

TEST_F(EditorToolsTest, TheRestoreBrushBringsBackWithItsOwnSizeAndShowsItsBox) {
    open({"/p/cat.png"});
    click(*outlets().btnEraserHistoryNew);
    EXPECT_THAT(toolImages(),
                ElementsAre("hand_noActive_new", "eraser_noActive", "history_brush_active_new2"));
    EXPECT_EQ(view().dragMode(), DragMode::paint);
    EXPECT_EQ(view().brushAlphaValue(), 1);
    EXPECT_EQ(view().brushDiameter(), 70);
    EXPECT_TRUE(outlets().eraserViewSettings->isHidden());
    EXPECT_FALSE(outlets().invertViewSettings->isHidden());
}

TEST_F(EditorToolsTest, ABrushWhoseSizeWasNeverSetIsTheSmallest) {
    open({"/p/cat.png"});
    send("brush_pressed_new:");
    EXPECT_EQ(view().brushDiameter(), 10);
    EXPECT_EQ(controller_->tools().eraserSizeValue(), 0);
    EXPECT_EQ(outlets().eraserSize->sliderClass().floatValue(), 10)
        << "the control must not show another one";
}

TEST_F(EditorToolsTest, TheQuickBrushButtonTakesTurnsWithTheHand) {
    send("brush_pressed:");
    EXPECT_EQ(view().dragMode(), DragMode::pan);
    send("brush_pressed:");
    EXPECT_EQ(view().dragMode(), DragMode::paint);
    EXPECT_EQ(view().brushAlphaValue(), 0);
}

TEST_F(EditorToolsTest, TheRestoreToggleTurnsTheBrushOverAndKeepsTheHand) {
    send("handSelected:");
    send("invertBrush_pressed:");
    EXPECT_EQ(view().brushAlphaValue(), 1);
    EXPECT_EQ(view().dragMode(), DragMode::pan);
    EXPECT_THAT(invertImages(), ElementsAre("restore__active", "restore"));
    send("invertBrush_pressed:");
    EXPECT_EQ(view().brushAlphaValue(), 0);
    EXPECT_THAT(invertImages(), ElementsAre("restore", "restore__active"));
    EXPECT_THAT(events(), ElementsAre("button invert pressed", "button invert pressed"));
}

TEST_F(EditorToolsTest, TheBlurToggleTurnsTheBlurOnAndOff) {
    open({"/p/cat.png"});
    send("blur_pressed:");
    EXPECT_TRUE(view().isBlurOn());
    EXPECT_THAT(blurImages(), ElementsAre("blur__active", "blur"));
    send("blur_pressed:");
    EXPECT_FALSE(view().isBlurOn());
    EXPECT_THAT(blurImages(), ElementsAre("blur", "blur__active"));
    EXPECT_THAT(events(), ElementsAre("button blur pressed", "button blur pressed"));
}

TEST_F(EditorToolsTest, BlurringTurnsARestoreBrushBackFirstAndTellsBoth) {
    send("invertBrush_pressed:");
    events();
    send("blur_pressed:");
    EXPECT_EQ(view().brushAlphaValue(), 0);
    EXPECT_TRUE(view().isBlurOn());
    EXPECT_THAT(events(), ElementsAre("button blur pressed", "button invert pressed"));
}

TEST_F(EditorToolsTest, TheQuickSliderSizesTheBrush) {
    outlets().sldBrushDiameter->trackTo(120);
    rest();
    EXPECT_EQ(view().brushDiameter(), 120);
    EXPECT_EQ(controller_->tools().eraserSizeValue(), 0);
}

TEST_F(EditorToolsTest, TheWheelsSizeShowsOnTheQuickSliderAlone) {
    open({"/p/cat.png"});
    view().setBrushDiameter(45);
    EXPECT_EQ(outlets().sldBrushDiameter->floatValue(), 45);
    EXPECT_EQ(outlets().eraserSize->sliderClass().floatValue(), 20);
}

TEST_F(EditorToolsTest, ASizeControlSetsTheBrushItsOwnSizeAndThePreview) {
    open({"/p/cat.png"});
    EXPECT_TRUE(outlets().ViewForCursor->isHidden());
    outlets().invertSize->sliderClass().trackTo(33);
    EXPECT_EQ(view().brushDiameter(), 33);
    EXPECT_EQ(controller_->tools().invertSizeValue(), 33);
    EXPECT_EQ(controller_->tools().eraserSizeValue(), 0);
    EXPECT_FALSE(outlets().ViewForCursor->isHidden());
    EXPECT_FALSE(outlets().ViewForCursor->imageCursor().isNull());
    outlets().invertSize->sliderClass().endTracking();
    EXPECT_TRUE(outlets().ViewForCursor->isHidden());
}

TEST_F(EditorToolsTest, ThePreviewStaysHiddenWithoutAPicture) {
    outlets().eraserSize->sliderClass().trackTo(33);
    EXPECT_TRUE(outlets().ViewForCursor->isHidden());
    EXPECT_EQ(controller_->tools().eraserSizeValue(), 33);
}

TEST_F(EditorToolsTest, KeysSizeTheToolThatPaintsByFivePoints) {
    open({"/p/cat.png"});
    send("largerBrush:");
    EXPECT_EQ(view().brushDiameter(), 25);
    EXPECT_EQ(controller_->tools().eraserSizeValue(), 25);
    view().setBrushDiameter(100);  // as the wheel does
    send("smallerBrush:");
    EXPECT_EQ(view().brushDiameter(), 95);
    send("invertBrush_pressed_new:");
    send("largerBrush:");
    EXPECT_EQ(controller_->tools().invertSizeValue(), 75);
    EXPECT_EQ(controller_->tools().eraserSizeValue(), 95);
    EXPECT_FALSE(outlets().ViewForCursor->isHidden());
    wait(1.3);
    EXPECT_TRUE(outlets().ViewForCursor->isHidden());
}

TEST_F(EditorToolsTest, SwappingGoesFromTheBrushToTheRestoreBrushAndBack) {
    send("swapBrushes:");
    EXPECT_EQ(view().brushAlphaValue(), 1);
    EXPECT_THAT(toolImages(),
                ElementsAre("hand_noActive_new", "eraser_noActive", "history_brush_active_new2"));
    send("swapBrushes:");
    EXPECT_EQ(view().brushAlphaValue(), 0);
}

TEST_F(EditorToolsTest, TheSwapKeyOfTheViewTurnsTheButtonsToo) {
    open({"/p/cat.png"});
    QTest::keyClick(screen().windowHandle(), Qt::Key_I, Qt::ControlModifier);
    rest();
    EXPECT_EQ(view().brushAlphaValue(), 1);
    EXPECT_THAT(toolImages(),
                ElementsAre("hand_noActive_new", "eraser_noActive", "history_brush_active_new2"));
    EXPECT_THAT(invertImages(), ElementsAre("restore__active", "restore"));
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(EditorToolsTest, AClickOnAToolLeavesTheKeyboardWithThePicture) {
    open({"/p/cat.png"});
    EXPECT_TRUE(cutWidget().hasFocus());
    click(*outlets().btnHandNew);
    EXPECT_TRUE(cutWidget().hasFocus());
    EXPECT_TRUE(outlets().btnHandNew->isChecked());
    EXPECT_FALSE(outlets().btnEraserNew->isChecked());
}

}  // namespace
}  // namespace trimora::editor
