#include "editor/BackgroundModes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controls/ColorPickerView.h"
#include "editor/EditorScreenForTests.h"

namespace trimora::editor {
namespace {

using ::testing::ElementsAre;

class BackgroundModesTest : public EditorScreenTest {
 protected:
    void SetUp() override {
        EditorScreenTest::SetUp();
        observation_ = notifications.observe("clickColor", [this](const auto&) { ++clickColors_; });
    }
    /// Of the three modes.
    std::vector<std::string> images() {
        return {outlets().btnEraserMode->image().toStdString(), outlets().btnColorMode->image().toStdString(),
                outlets().btnBlurMode->image().toStdString()};
    }
    bool planeIsHidden() { return view().bluredLayer()->isHidden(); }

    int clickColors_ = 0;
    foundation::NotificationCenter::Observation observation_;
};

TEST_F(BackgroundModesTest, TransparentSwitchesColourOnAndLeavesTheBlurModeAlone) {
    open({"/p/cat.png"});
    send("chooseBlurMode:");
    click(*outlets().btnEraserMode);
    EXPECT_FALSE(view().isBlurOn());
    EXPECT_TRUE(view().blurMode());
    EXPECT_FALSE(view().colorMode());
    EXPECT_TRUE(view().isColorOn());
    EXPECT_TRUE(planeIsHidden());
    EXPECT_TRUE(outlets().colorPickerView->isHidden());
    EXPECT_THAT(images(), ElementsAre("btnAlphaBack_select", "btnColorBack_unselect", "btnBlur_unselect"));
    EXPECT_EQ(clickColors_, 0);
}

TEST_F(BackgroundModesTest, ColourShowsThePickerWhoseColourCounts) {
    open({"/p/cat.png"});
    click(*outlets().btnColorMode);
    EXPECT_FALSE(view().isBlurOn());
    EXPECT_FALSE(view().blurMode());
    EXPECT_FALSE(view().colorMode());
    EXPECT_FALSE(view().isColorOn());
    EXPECT_FALSE(planeIsHidden());
    EXPECT_FALSE(outlets().colorPickerView->isHidden());
    EXPECT_EQ(clickColors_, 1);
    EXPECT_EQ(view().brushColor(), outlets().colorPickerView->selectedColor());
    EXPECT_THAT(images(), ElementsAre("btnAlphaBack_unselect", "btnColorBack_select", "btnBlur_unselect"));
}

TEST_F(BackgroundModesTest, TheColourButtonTurnsWhenTheColourArrivesAndNotBefore) {
    open({"/p/cat.png"});
    outlets().colorPickerView->setColorDelegate(nullptr);  // a picker that keeps silent
    send("chooseColorMode:");
    EXPECT_EQ(images().at(1), "btnColorBack_unselect");
    controller_->ColorPickerDidSelectNSColor({0, 1, 0, 1});
    EXPECT_EQ(images().at(1), "btnColorBack_select");
    EXPECT_EQ(view().brushColor(), (cutengine::Colour{0, 1, 0, 1}));
}

TEST_F(BackgroundModesTest, ColourThatIsToldBesideTheChoiceOfColourStaysBehind) {
    open({"/p/cat.png"});
    ASSERT_TRUE(planeIsHidden());
    controller_->ColorPickerDidSelectNSColor({0, 1, 0, 1});
    EXPECT_TRUE(planeIsHidden()) << "the picker tells its first colour when it has been made";
}

TEST_F(BackgroundModesTest, APickersColourBeforeItsModeTurnsNoButton) {
    EXPECT_EQ(images().at(1), "btnColorBack_unselect") << "the picker reports one when it is made";
    EXPECT_TRUE(view().brushColor().has_value());
}

TEST_F(BackgroundModesTest, BlurShowsTheBlurredPicture) {
    open({"/p/cat.png"});
    send("chooseColorMode:");
    click(*outlets().btnBlurMode);
    EXPECT_TRUE(view().isBlurOn());
    EXPECT_TRUE(view().blurMode());
    EXPECT_FALSE(view().colorMode());
    EXPECT_FALSE(planeIsHidden());
    EXPECT_TRUE(outlets().colorPickerView->isHidden());
    EXPECT_THAT(images(), ElementsAre("btnAlphaBack_unselect", "btnColorBack_unselect", "btnBlur_select"));
}

TEST_F(BackgroundModesTest, AFurtherPictureKeepsTheModeThatThePanelShows) {
    open({"/p/cat.png"});
    send("chooseBlurMode:");
    open({"/p/dog.png"});
    EXPECT_TRUE(view().isBlurOn());
    EXPECT_FALSE(planeIsHidden());
    EXPECT_EQ(images().at(2), "btnBlur_select");
    send("chooseEraserMode:");
    open({"/p/cat.png"});
    EXPECT_TRUE(planeIsHidden());
    send("chooseColorMode:");
    open({"/p/dog.png"});
    EXPECT_FALSE(planeIsHidden());
    EXPECT_FALSE(view().isBlurOn());
}

TEST_F(BackgroundModesTest, AFirstPictureResetsThePanelAndLeavesTheCutViewsModesAlone) {
    open({"/p/cat.png"});
    send("chooseBlurMode:");
    send("resetState");
    open({"/p/dog.png"});
    EXPECT_THAT(images(), ElementsAre("btnAlphaBack_select", "btnColorBack_unselect", "btnBlur_unselect"));
    EXPECT_TRUE(view().isBlurOn());
    EXPECT_TRUE(planeIsHidden());
}

}  // namespace
}  // namespace trimora::editor
