#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <memory>

#include "app/MainInterface.h"
#include "app/MessageLine.h"
#include "controls/AppStyle.h"
#include "editor/EditorScreenForTests.h"
#include "editor/RecentFiles.h"

namespace trimora::app {
namespace {

using ::testing::IsEmpty;

/// The editor's own screen in the shell, everything else as the editor's tests have it.
class EditorInShellTest : public editor::EditorScreenTest {
 protected:
    void SetUp() override {
        TelemetrixTest::SetUp();
        rememberLaunch();
        controls::applyAppStyle();
        decoder_.files["/p/cat.png"] = {600, 400, ""};
        shell_ = std::make_unique<MainInterface>(
            MainInterface::Services{{time, time, queues.mainQueue(), notifications},
                                    {queues.mainQueue(), workspace_, [this] { ++quits_; }, [] {},
                                     [] { return std::string(); }, [] {}},
                                    {[] { return std::string(); }, [](const std::string&) {}}});
        controller_ = std::make_unique<editor::ViewController>(services());
        controller_->setToolbar(&shell_->windowController());
        shell_->setContent(*controller_, &controller_->view(),
                           {.cutView = [this] { return &controller_->cutView(); },
                            .recentFiles = [this] { return controller_->recentFiles().files(); },
                            .openRecent = [this](const auto& file) { controller_->openFiles({file}); },
                            .clearRecent = {}});
    }
    void TearDown() override {
        controller_.reset();
        shell_.reset();
        TelemetrixTest::TearDown();
    }

    void show() {
        shell_->window().orderFront();
        rest();
    }
    void openAndPaint() {
        show();
        open({"/p/cat.png"});
        stroke();
    }
    void command(const char* selector) {
        shell_->menu().item(selector).trigger();
        rest();
    }
    QAction& item(const char* selector) { return shell_->menu().item(selector); }
    void answerAlert(int answer) {
        panels_.alerts.back().answer(answer);
        rest();
    }

    std::unique_ptr<MainInterface> shell_;
    int quits_ = 0;
};

TEST_F(EditorInShellTest, AFileThatTheProgramIsStartedWithIsOpenedUnasked) {
    controller_->openFiles({"/p/cat.png"});  // before the window's first turn of the queue
    EXPECT_THAT(panels_.alerts, IsEmpty());
    show();
    EXPECT_NE(view().image(), nullptr);
}

TEST_F(EditorInShellTest, AStrokeEnablesSaveUndoAndRestoreAndUndoTakesItBack) {
    show();
    open({"/p/cat.png"});
    EXPECT_FALSE(item("save_pressed:").isEnabled());
    EXPECT_FALSE(item("undo_pressed:").isEnabled());
    stroke();
    EXPECT_TRUE(item("save_pressed:").isEnabled());
    EXPECT_TRUE(item("reset_pressed:").isEnabled());
    command("undo_pressed:");
    EXPECT_EQ(view().historyCurrentState(), 0);
    EXPECT_FALSE(item("undo_pressed:").isEnabled());
    EXPECT_TRUE(item("redo_pressed:").isEnabled());
}

TEST_F(EditorInShellTest, ToolsAndBackgroundsOfTheMenusReachTheCutViewAndAreChecked) {
    show();
    open({"/p/cat.png"});
    command("hand_pressed_new:");
    EXPECT_EQ(view().dragMode(), cutengine::DragMode::pan);
    EXPECT_TRUE(item("hand_pressed_new:").isChecked());
    command("invertBrush_pressed_new:");
    EXPECT_TRUE(item("invertBrush_pressed_new:").isChecked());
    EXPECT_FALSE(item("hand_pressed_new:").isChecked());
    for (const char* background : {"chooseBlurMode:", "chooseColorMode:", "chooseEraserMode:"}) {
        command(background);
        EXPECT_TRUE(item(background).isChecked()) << background;
    }
}

TEST_F(EditorInShellTest, TheEditorAnswersToEveryRowThatIsSentToIt) {
    for (const MenuRow& row : menuRows()) {
        if (row.receiver == Receiver::editor) {
            EXPECT_TRUE(controller_->respondsToSelector(row.selector)) << row.selector;
        }
    }
}

TEST_F(EditorInShellTest, QuitWithNothingDrawnEndsAtOnce) {
    show();
    open({"/p/cat.png"});
    command("terminate:");
    EXPECT_EQ(quits_, 1);
    EXPECT_THAT(panels_.alerts, IsEmpty());
}

TEST_F(EditorInShellTest, QuitAnsweredWithSaveEndsWhenTheFileIsThere) {
    openAndPaint();
    command("terminate:");
    answerAlert(1000);
    EXPECT_EQ(quits_, 0);
    ASSERT_EQ(panels_.questions.size(), 1U);
    const auto target = home.path() / "cut.png";
    panels_.questions.back().answer(target);
    EXPECT_EQ(quits_, 0);
    rest();
    EXPECT_TRUE(std::filesystem::exists(target));
    EXPECT_EQ(quits_, 1);
}

TEST_F(EditorInShellTest, QuitGoesNoFurtherWhereTheSaveIsCancelledOrFails) {
    openAndPaint();
    command("terminate:");
    answerAlert(1000);
    panels_.questions.back().answer(std::nullopt);
    rest();
    encoder_.failure = foundation::Error{"the disk is full"};
    command("terminate:");
    answerAlert(1000);
    panels_.questions.back().answer(home.path() / "cut.png");
    rest();
    EXPECT_EQ(quits_, 0);
    EXPECT_NE(view().image(), nullptr);
}

TEST_F(EditorInShellTest, QuitAnsweredWithDontSaveEndsAndWithCancelDoesNot) {
    openAndPaint();
    command("terminate:");
    answerAlert(1001);
    EXPECT_EQ(quits_, 0);
    command("terminate:");
    answerAlert(1002);
    EXPECT_EQ(quits_, 1);
    EXPECT_THAT(panels_.questions, IsEmpty());
}

TEST_F(EditorInShellTest, NewWithTheWindowClosedClearsUnasked) {
    openAndPaint();
    shell_->window().close();
    command("new_pressed:");
    EXPECT_EQ(view().image(), nullptr);
    EXPECT_THAT(panels_.alerts, IsEmpty());
    EXPECT_TRUE(shell_->window().isShown());
    EXPECT_FALSE(item("save_pressed:").isEnabled());
}

TEST_F(EditorInShellTest, ClosingAndShowingKeepsPictureAndHistory) {
    openAndPaint();
    const auto picture = view().image();
    command("performClose:");
    EXPECT_FALSE(shell_->window().isVisible());
    shell_->appDelegate().applicationShouldHandleReopen_hasVisibleWindows(false);
    rest();
    EXPECT_EQ(view().image(), picture);
    EXPECT_EQ(view().historyLength(), 2);
}

}  // namespace
}  // namespace trimora::app
